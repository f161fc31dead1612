//===- SlowModel.cpp - The pass's decisions, worked out the long way ------===//

#include "SlowModel.h"
#include "llvm/IR/Constants.h"
#include <algorithm>
#include <numeric>

using namespace llvm;
using namespace llvm::unittest;

/// Runs \p Action on every instruction of \p F.
static void
forEachInstruction(const Function &F,
                   const std::function<void(const Instruction &)> &Action) {
  for (const BasicBlock &BB : F)
    for (const Instruction &I : BB)
      Action(I);
}

static bool isDirectCall(const Instruction &I, const Function &Callee) {
  if (I.getOpcode() != Instruction::Call)
    return false;
  const auto &Call = cast<CallInst>(I);
  return Call.getCalledOperand() == &Callee &&
         Call.getFunctionType() == Callee.getFunctionType();
}

/// How often \p I mentions \p F.
static unsigned countMentions(const Instruction &I, const Function &F) {
  return std::count(I.op_begin(), I.op_end(), &F);
}

//===----------------------------------------------------------------------===//
// Counts
//===----------------------------------------------------------------------===//

ModelSummary llvm::unittest::summarize(const Function &F) {
  ModelSummary Summary;
  Summary.Blocks = F.size();
  forEachInstruction(F, [&](const Instruction &I) {
    const bool IsCall = I.getOpcode() == Instruction::Call;
    ++Summary.Insts;
    Summary.Branches += I.getOpcode() == Instruction::Br;
    Summary.Calls += IsCall;
    Summary.SelfCalls += isDirectCall(I, F);
  });

  // Where in the use list each caller stands first.
  std::map<const Use *, unsigned> Place;
  for (const Use &U : F.uses())
    Place.emplace(&U, Place.size());
  std::map<unsigned, std::pair<const Function *, unsigned>> ByPlace;
  for (const Function &Caller : *F.getParent()) {
    unsigned Mentions = 0, First = ~0U;
    forEachInstruction(Caller, [&](const Instruction &I) {
      if (!isDirectCall(I, F))
        return;
      for (const Use &U : I.operands())
        if (U.get() == &F) {
          ++Mentions;
          First = std::min(First, Place.at(&U));
        }
    });
    if (Mentions)
      ByPlace[First] = {&Caller, Mentions};
    Summary.Mentions += Mentions;
  }
  for (const auto &[First, Caller] : ByPlace)
    Summary.Callers.push_back(Caller);
  return Summary;
}

ModelUses llvm::unittest::countUses(const Function &F) {
  ModelUses Uses;
  unsigned InCalls = 0;
  for (const Function &Caller : *F.getParent())
    forEachInstruction(Caller, [&](const Instruction &I) {
      if (!isDirectCall(I, F))
        return;
      InCalls += countMentions(I, F);
      if (&Caller != &F)
        Uses.Outside += countMentions(I, F);
    });
  Uses.Any = F.getNumUses() != 0;
  Uses.OnlyCalls = F.getNumUses() == InCalls;
  return Uses;
}

//===----------------------------------------------------------------------===//
// Benefit
//===----------------------------------------------------------------------===//

static bool hasIntegerLiteral(const Instruction &I) {
  return std::any_of(I.op_begin(), I.op_end(), [](const Use &Operand) {
    return isa<ConstantInt>(Operand.get());
  });
}

ModelFolding llvm::unittest::foldWithConstant(const Argument &A) {
  ModelFolding Folding;
  std::set<const Value *> Known = {&A};
  for (size_t Before = 0; Before != Known.size();) {
    Before = Known.size();
    forEachInstruction(*A.getParent(), [&](const Instruction &I) {
      if (std::none_of(I.op_begin(), I.op_end(), [&](const Use &Operand) {
            return Known.count(Operand.get());
          }))
        return;
      const bool IsCalculation = I.isBinaryOp() ||
                                 I.getOpcode() == Instruction::ICmp ||
                                 I.getOpcode() == Instruction::FCmp;
      if (I.isCast() || (IsCalculation && hasIntegerLiteral(I))) {
        Folding.Folded.insert(&I);
        Known.insert(&I);
      } else if (I.getOpcode() == Instruction::GetElementPtr) {
        Folding.Folded.insert(&I);
      } else if (I.getOpcode() == Instruction::Br ||
                 I.getOpcode() == Instruction::Switch) {
        Folding.Decided.insert(&I);
      }
    });
  }
  return Folding;
}

/// The blocks that control can get to without entering \p Without.
static std::set<const BasicBlock *> getReachable(const Function &F,
                                                 const BasicBlock *Without) {
  std::set<const BasicBlock *> Reached;
  if (&F.getEntryBlock() != Without)
    Reached.insert(&F.getEntryBlock());
  for (size_t Before = 0; Before != Reached.size();) {
    Before = Reached.size();
    for (const BasicBlock &BB : F)
      if (Reached.count(&BB))
        for (unsigned N = 0; N != BB.getTerminator()->getNumSuccessors(); ++N)
          if (BB.getTerminator()->getSuccessor(N) != Without)
            Reached.insert(BB.getTerminator()->getSuccessor(N));
  }
  return Reached;
}

unsigned llvm::unittest::countBehind(const BasicBlock &Gate) {
  const Function &F = *Gate.getParent();
  const auto Reached = getReachable(F, /*Without=*/nullptr);
  const auto Around = getReachable(F, &Gate);
  unsigned Size = 0;
  for (const BasicBlock &BB : F) {
    const bool Behind = Reached.count(&Gate) && !Around.count(&BB);
    if (!Reached.count(&BB) || Behind)
      Size += std::distance(BB.begin(), BB.end());
  }
  return Size;
}

/// The code that does not run once \p Terminator is decided, by an estimate
/// that is rough for a switch: what its cases hold, and how much larger the
/// default is than the smallest case.
static unsigned countDead(const Instruction &Terminator) {
  if (const auto *Branch = dyn_cast<BranchInst>(&Terminator))
    return std::max(countBehind(*Branch->getSuccessor(0)),
                    countBehind(*Branch->getSuccessor(1)));

  const auto &Switch = cast<SwitchInst>(Terminator);
  std::vector<unsigned> Cases;
  for (unsigned N = 1; N != Switch.getNumSuccessors(); ++N)
    Cases.push_back(countBehind(*Switch.getSuccessor(N)));
  // The smallest after the last empty one: an empty one makes it start anew.
  auto LastEmpty = std::find(Cases.rbegin(), Cases.rend(), 0u);
  auto Smallest = std::min_element(LastEmpty.base(), Cases.end());
  const unsigned Default = countBehind(*Switch.getDefaultDest());
  unsigned Dead = std::accumulate(Cases.begin(), Cases.end(), 0u);
  if (Smallest != Cases.end() && Default > *Smallest)
    Dead += Default - *Smallest;
  return Dead;
}

std::optional<ModelBenefit> llvm::unittest::weigh(const Function &F,
                                                  unsigned Percentage) {
  if (F.arg_size() != 1)
    return std::nullopt;
  const ModelFolding Folding = foldWithConstant(*F.getArg(0));
  unsigned Dead = 0;
  for (const Instruction *Terminator : Folding.Decided)
    Dead += countDead(*Terminator);
  unsigned Insts = 0;
  forEachInstruction(F, [&](const Instruction &) { ++Insts; });
  const unsigned Share = Percentage ? 100 / Percentage : 1;
  return ModelBenefit{Dead / 2 + Folding.Folded.size(), Insts / Share};
}

//===----------------------------------------------------------------------===//
// Verdicts
//===----------------------------------------------------------------------===//

std::optional<APInt> llvm::unittest::agreedDepth(const EstimatorPlan &Plan) {
  if (!Plan.CanEstimate || Plan.Sites.empty())
    return std::nullopt;
  std::set<std::string> Said;
  for (unsigned Site : Plan.Sites)
    for (const PlannedBound &Bound :
         {Plan.Bounds[Site].first, Plan.Bounds[Site].second})
      Said.insert(Bound.Kind == PlannedBound::Constant
                      ? toString(Bound.Value, 16, /*Signed=*/false)
                      : "unknown");
  if (Said.size() != 1 || Said.count("unknown"))
    return std::nullopt;
  return Plan.Bounds[Plan.Sites.front()].first.Value;
}

ModelFacts llvm::unittest::getFacts(const Function &F,
                                    const EstimatorPlan &Plan,
                                    const ModelOptions &Options) {
  return {summarize(F), countUses(F), agreedDepth(Plan),
          weigh(F, Options.Percentage)};
}

/// The rule of level 0.
static ModelVerdict decideByEstimates(const ModelFacts &Facts,
                                      const ModelOptions &Options) {
  const ModelUses &Uses = Facts.Uses;
  if (!Uses.Any || !Uses.OnlyCalls || Uses.Outside != 1 || !Facts.Depth ||
      !Facts.Benefit || Facts.Benefit->Benefit <= Facts.Benefit->Limit)
    return {};
  const unsigned Depth = Facts.Depth->zextOrTrunc(32).getZExtValue();
  if (Depth > Options.MaxDepth)
    return {};
  return {true, Depth, ""};
}

ModelVerdict llvm::unittest::decide(const ModelFacts &Facts,
                                    const ModelOptions &Options) {
  const ModelSummary &Summary = Facts.Summary;
  if (Summary.SelfCalls != 1)
    return {};
  switch (Options.Level) {
  case 0:
    return decideByEstimates(Facts, Options);
  case 1:
    return {Summary.Insts <= 20 && Summary.Branches <= 5 && Summary.Calls == 1,
            std::nullopt, ""};
  case 3:
    return {true, std::nullopt, ""};
  case 4:
    if (Summary.Mentions > Options.MaxSites)
      return {};
    for (const auto &[Caller, Mentions] : Summary.Callers)
      if (Mentions > Options.MaxSitesPerCaller)
        return {};
    return {true, 10, ""};
  }
  ModelVerdict Verdict;
  Verdict.Accepted =
      Summary.Insts <= 50 && Summary.Branches <= 10 && Summary.Calls <= 4;
  if (Options.Level != 2)
    Verdict.Warning = "Invalid Inline Recursion Opt Level: " +
                      std::to_string(static_cast<int>(Options.Level)) +
                      "\nSetting to default Inline Recursion Opt Level: 2\n";
  return Verdict;
}

std::optional<unsigned> llvm::unittest::passGate(const Function &F,
                                                 ScalarEvolution &SE,
                                                 const ModelOptions &Options) {
  if (!F.hasFnAttribute("specialize-inline-recursion-function"))
    return std::nullopt;
  for (const Instruction &I : F.getEntryBlock()) {
    if ((I.getOpcode() != Instruction::URem &&
         I.getOpcode() != Instruction::SRem) ||
        !isa<Argument>(I.getOperand(0)) || !isa<ConstantInt>(I.getOperand(1)))
      continue;
    const APInt Bound =
        SE.getUnsignedRange(SE.getSCEV(const_cast<Instruction *>(&I)))
            .getUpper();
    if (Bound.isStrictlyPositive() && Bound.sle(Options.MaxRingDepth))
      return Bound.getZExtValue();
  }
  return std::nullopt;
}

//===----------------------------------------------------------------------===//
// Modules
//===----------------------------------------------------------------------===//

static constexpr const char *CloneMark = "llvm.recurse.clone";
static constexpr const char *EligibleMark =
    "specialize-inline-recursion-function-eligible";

std::vector<ModelFunction> llvm::unittest::readFunctions(const Module &M) {
  std::map<const Value *, ModelIndex> Index;
  for (const Function &F : M)
    Index.emplace(&F, Index.size());
  auto Find = [&](const Value *V) {
    auto It = Index.find(V);
    return It == Index.end() ? NoFunction : It->second;
  };

  std::vector<ModelFunction> Functions;
  for (const Function &F : M) {
    ModelFunction Read;
    Read.Name = F.getName().str();
    Read.Declaration = F.empty();
    Read.Marked = F.hasFnAttribute(CloneMark);
    Read.Eligible = F.hasFnAttribute(EligibleMark);
    Read.AlwaysInline = F.hasFnAttribute(Attribute::AlwaysInline);
    Read.NoInline = F.hasFnAttribute(Attribute::NoInline);
    Read.Internal = F.hasInternalLinkage();
    forEachInstruction(F, [&](const Instruction &I) {
      const auto *Plain = dyn_cast<CallInst>(&I);
      ModelCall Call;
      for (const Use &Operand : I.operands()) {
        const ModelIndex Mentioned = Find(Operand.get());
        if (Plain && Plain->isCallee(&Operand))
          Call.Callee = Mentioned;
        else if (Mentioned == NoFunction)
          continue;
        else if (Plain && Plain->isBundleOperand(&Operand))
          Call.Bundled.push_back(Mentioned);
        else if (Plain)
          Call.Passed.push_back(Mentioned);
        else
          Read.Mentioned.push_back(Mentioned);
      }
      if (Plain) {
        Call.Direct =
            Call.Callee != NoFunction &&
            isDirectCall(I, *cast<Function>(Plain->getCalledOperand()));
        Read.Calls.push_back(Call);
      }
    });
    Functions.push_back(Read);
  }
  return Functions;
}

namespace {

/// Plays the pass on lists of calls.
class Replay {
public:
  Replay(Module &M, const std::map<std::string, EstimatorPlan> &Plans,
         const ModelOptions &Options,
         const std::function<ScalarEvolution &(Function &)> &GetSE)
      : Options(Options) {
    Outcome.Functions = readFunctions(M);
    for (Function &F : M) {
      Originals.push_back(&F);
      auto Plan = Plans.find(F.getName().str());
      Facts.push_back(getFacts(
          F, Plan == Plans.end() ? EstimatorPlan() : Plan->second, Options));
      Gates.push_back(F.empty() ? std::nullopt
                                : passGate(F, GetSE(F), Options));
      unsigned InInstructions = 0;
      for (const ModelFunction &User : Outcome.Functions)
        InInstructions += countAll(User, Facts.size() - 1);
      UsedByConstants.push_back(F.getNumUses() > InInstructions);
    }
  }

  ModelOutcome run() {
    bool GateSeen = false;
    for (ModelIndex Index = 0; Index != Outcome.Functions.size(); ++Index)
      if (visit(Index, GateSeen))
        Outcome.Changed = true;
    Outcome.HandedOver = Outcome.Changed && GateSeen;
    return Outcome;
  }

private:
  /// Mentions of \p Index in direct calls of it.
  static unsigned countInCalls(const ModelFunction &User, ModelIndex Index) {
    unsigned Mentions = 0;
    for (const ModelCall &Call : User.Calls)
      if (Call.Direct && Call.Callee == Index)
        Mentions +=
            1 + countIn(Call.Passed, Index) + countIn(Call.Bundled, Index);
    return Mentions;
  }
  static unsigned countAll(const ModelFunction &User, ModelIndex Index) {
    unsigned Mentions = countIn(User.Mentioned, Index);
    for (const ModelCall &Call : User.Calls)
      Mentions += (Call.Callee == Index) + countIn(Call.Passed, Index) +
                  countIn(Call.Bundled, Index);
    return Mentions;
  }
  static unsigned countIn(const std::vector<ModelIndex> &Indices,
                          ModelIndex Index) {
    return std::count(Indices.begin(), Indices.end(), Index);
  }

  /// What was known of the function, with its uses as they are by now.  Its own
  /// body has not changed in any way that counts.
  ModelFacts getFactsByNow(ModelIndex Index) const {
    ModelFacts Now = Facts[Index];
    Now.Summary.Callers.clear();
    Now.Summary.Mentions = 0;
    Now.Uses = {UsedByConstants[Index], !UsedByConstants[Index], 0};
    for (ModelIndex User = 0; User != Outcome.Functions.size(); ++User) {
      const unsigned InCalls = countInCalls(Outcome.Functions[User], Index);
      const unsigned All = countAll(Outcome.Functions[User], Index);
      if (InCalls)
        Now.Summary.Callers.push_back({nullptr, InCalls});
      Now.Summary.Mentions += InCalls;
      Now.Uses.Any |= All != 0;
      Now.Uses.OnlyCalls &= All == InCalls;
      if (User != Index)
        Now.Uses.Outside += InCalls;
    }
    return Now;
  }

  bool visit(ModelIndex Index, bool &GateSeen) {
    Outcome.Depth = 1;
    if (Outcome.Functions[Index].Declaration || Outcome.Functions[Index].Marked)
      return false;
    const Function &F = *Originals[Index];
    if (F.hasFnAttribute(Attribute::OptimizeNone) ||
        F.hasFnAttribute(Attribute::NoRecurse))
      return false;

    if (F.hasFnAttribute("specialize-inline-recursion-function"))
      Outcome.Log.push_back("SE " + F.getName().str());
    const bool Ring = Gates[Index].has_value();
    if (Ring) {
      GateSeen = true;
      Outcome.Functions[Index].Eligible = true;
      Outcome.Depth = *Gates[Index];
    } else {
      Outcome.Log.push_back("SE " + F.getName().str());
      Outcome.Log.push_back("DT " + F.getName().str());
      const ModelVerdict Verdict = decide(getFactsByNow(Index), Options);
      Outcome.Warnings += Verdict.Warning;
      if (Verdict.Depth)
        Outcome.Depth = *Verdict.Depth;
      if (!Verdict.Accepted)
        return false;
    }

    if (Granted + Outcome.Depth > Options.MaxCopies)
      return false;
    Granted += Outcome.Depth;
    Outcome.Copies[F.getName().str()] = Outcome.Depth;
    if (Outcome.Depth)
      chain(Index, Ring);
    return true;
  }

  /// All copies at once: what calls what follows from who stands where.
  void chain(ModelIndex Index, bool Ring) {
    const ModelIndex First = Outcome.Functions.size();
    const ModelIndex End = First + Outcome.Depth;
    // Calls from anywhere else enter the first copy.
    for (ModelIndex User = 0; User != First; ++User)
      if (User != Index)
        redirect(Outcome.Functions[User], Index, First);

    Outcome.Functions[Index].Marked = true;
    for (ModelIndex Place = First; Place != End; ++Place) {
      ModelFunction Copy = Outcome.Functions[Index];
      const bool IsLast = Place + 1 == End;
      Copy.Name += ".recurse.clone";
      Copy.Internal = true;
      Copy.NoInline = Ring && IsLast;
      Copy.AlwaysInline |= Options.Level == 0 || Options.Level == 4 || Ring;
      Copy.AlwaysInline &= !Copy.NoInline;
      if (!IsLast)
        redirect(Copy, Index, Place + 1);
      else if (Ring)
        redirect(Copy, Index, First);
      Outcome.Functions.push_back(Copy);
    }
  }

  /// A rewritten call has the arguments of the old one and nothing else.
  static void redirect(ModelFunction &User, ModelIndex From, ModelIndex To) {
    for (ModelCall &Call : User.Calls)
      if (Call.Direct && Call.Callee == From) {
        Call.Callee = To;
        Call.Bundled.clear();
      }
  }

  const ModelOptions &Options;
  ModelOutcome Outcome;
  std::vector<const Function *> Originals;
  std::vector<ModelFacts> Facts;
  std::vector<std::optional<unsigned>> Gates;
  std::vector<bool> UsedByConstants;
  unsigned Granted = 0;
};

} // namespace

ModelOutcome llvm::unittest::replay(
    Module &M, const std::map<std::string, EstimatorPlan> &Plans,
    const ModelOptions &Options,
    const std::function<ScalarEvolution &(Function &)> &GetSE) {
  return Replay(M, Plans, Options, GetSE).run();
}
