//===- SlowModelTest.cpp - The pass against a second opinion --------------===//
///
/// \file
/// Random modules, on which the pass and SlowModel.h have to agree.
///
/// INLINERECURSION_RANDOM_MODULES=FIRST:END in the environment gives the seeds
/// of the modules; a failure names the one to look at.
///
//===----------------------------------------------------------------------===//

#include "SlowModel.h"
#include "RandomFunctions.h"
#include "ScriptedHost.h"
#include "llvm/Analysis/ScalarEvolutionExpressions.h"

using namespace llvm;
using namespace llvm::unittest;

namespace {

constexpr StringLiteral CloneSuffix = ".recurse.clone";

/// What the modules of a run came to, so that agreement about nothing shows.
using Tally = std::map<std::string, unsigned>;

struct SeedRange {
  uint64_t First = 1, End = 1501;
};

SeedRange getSeeds() {
  SeedRange Seeds;
  if (const char *Asked = std::getenv("INLINERECURSION_RANDOM_MODULES")) {
    auto [First, End] = StringRef(Asked).split(':');
    if (First.getAsInteger(10, Seeds.First) ||
        End.getAsInteger(10, Seeds.End) || Seeds.First >= Seeds.End) {
      errs() << "INLINERECURSION_RANDOM_MODULES is '" << Asked
             << "'; give two numbers FIRST:END, the smaller one first\n";
      std::exit(1);
    }
  }
  return Seeds;
}

EstimatorPlan makePlan(Random &R, bool CanEstimate, unsigned SelfCalls) {
  EstimatorPlan Plan;
  Plan.CanEstimate = CanEstimate;
  const unsigned Width = R.pick<unsigned>({8, 16, 32, 32, 32, 64, 128});
  auto MakeDepth = [&] {
    APInt Depth(Width, R.percent(80) ? R.below(8) : R.below(30));
    // Only the low 32 bits count.
    if (Width > 32 && R.percent(30))
      Depth |= APInt::getOneBitSet(Width, 32 + R.below(Width - 32));
    return Depth;
  };
  const APInt Depth = MakeDepth();
  auto MakeBound = [&]() -> PlannedBound {
    if (R.percent(90))
      return {PlannedBound::Constant, Depth};
    switch (R.below(3)) {
    case 0:
      return {PlannedBound::Null, APInt(Width, 0)};
    case 1:
      return {PlannedBound::Variable, APInt(Width, 0)};
    default:
      return {PlannedBound::Constant, MakeDepth()};
    }
  };
  for (unsigned Call = 0; Call != SelfCalls; ++Call) {
    if (!R.percent(5))
      Plan.Sites.push_back(Call);
    // One after the other, in the order of the seed.
    PlannedBound First = MakeBound(), Second = MakeBound();
    Plan.Bounds.push_back({First, Second});
  }
  return Plan;
}

ModelOptions makeOptions(Random &R) {
  ModelOptions Options;
  Options.Level = R.pick<unsigned>({0, 0, 0, 0, 1, 2, 3, 4, 4, 5, ~0U, 8});
  Options.Percentage = R.percent(40) ? 10 : R.below(101);
  Options.MaxDepth = R.percent(60) ? 7 : R.below(12);
  Options.MaxSitesPerCaller = R.percent(40) ? 1 : R.below(4);
  Options.MaxSites = R.percent(30) ? 2 : R.below(8);
  Options.MaxCopies = R.percent(50) ? 25 : R.below(40);
  Options.MaxRingDepth = R.percent(50) ? 10 : R.below(20);
  return Options;
}

/// The calls of \p F to itself, in layout order.
std::vector<CallInst *> selfCalls(Function &F) {
  std::vector<CallInst *> Calls;
  for (BasicBlock &BB : F)
    for (Instruction &I : BB)
      if (auto *Call = dyn_cast<CallInst>(&I))
        if (Call->getCalledFunction() == &F)
          Calls.push_back(Call);
  return Calls;
}

/// One random module with all that belongs to it.
class Case {
public:
  Case(uint64_t Seed, HostScript &Script)
      : Seed(Seed), TM(makeRandomModule(Seed)) {
    shuffleUses(TM.module(), Seed);
    Random R(Seed + 1000003);
    Options = makeOptions(R);
    Script.CanEstimate = !R.percent(5);
    for (Function &F : TM.module())
      Plans[F.getName().str()] =
          makePlan(R, Script.CanEstimate, selfCalls(F).size());
    Script.CallSites = [this](Function &F) {
      std::vector<CallInst *> Calls = selfCalls(F), Listed;
      for (unsigned Site : plan(F).Sites)
        Listed.push_back(Calls.at(Site));
      return Listed;
    };
    Script.DepthOf = [this](ScalarEvolution &SE, CallInst &Call) {
      Function &F = *Call.getFunction();
      const std::vector<CallInst *> Calls = selfCalls(F);
      const unsigned Site =
          std::find(Calls.begin(), Calls.end(), &Call) - Calls.begin();
      const auto &[First, Second] = plan(F).Bounds.at(Site);
      return DepthPair(make(SE, F, First), make(SE, F, Second));
    };
  }

  const EstimatorPlan &plan(const Function &F) const {
    return Plans.at(F.getName().str());
  }

  /// Everything that is needed to see a failure again.
  std::string explain(const std::string &What) const {
    std::string Text;
    raw_string_ostream OS(Text);
    OS << What << "; INLINERECURSION_RANDOM_MODULES=" << Seed << ":" << Seed + 1
       << ", level " << Options.Level << ", percentage " << Options.Percentage
       << ", depth up to " << Options.MaxDepth << ", copies up to "
       << Options.MaxCopies << ", rings up to " << Options.MaxRingDepth
       << ", call sites up to " << Options.MaxSitesPerCaller << " and "
       << Options.MaxSites << "\n"
       << makeRandomModule(Seed);
    for (const auto &[Name, Plan] : Plans) {
      OS << "estimates for " << Name << (Plan.CanEstimate ? ":" : ": none");
      for (unsigned Site : Plan.Sites)
        OS << " " << describe(Plan.Bounds[Site].first) << "/"
           << describe(Plan.Bounds[Site].second);
      OS << "\n";
    }
    return OS.str();
  }

  const uint64_t Seed;
  TestModule TM;
  ModelOptions Options;
  std::map<std::string, EstimatorPlan> Plans;

private:
  static std::string describe(const PlannedBound &Bound) {
    switch (Bound.Kind) {
    case PlannedBound::Null:
      return "null";
    case PlannedBound::Variable:
      return "variable";
    case PlannedBound::Constant:
      return toString(Bound.Value, 10, /*Signed=*/false);
    }
    return "";
  }
  static const SCEV *make(ScalarEvolution &SE, Function &F,
                          const PlannedBound &Bound) {
    switch (Bound.Kind) {
    case PlannedBound::Null:
      return nullptr;
    case PlannedBound::Variable:
      for (Instruction &I : F.getEntryBlock())
        if (SE.isSCEVable(I.getType()))
          return SE.getUnknown(&I);
      return SE.getCouldNotCompute();
    case PlannedBound::Constant:
      return SE.getConstant(Bound.Value);
    }
    return nullptr;
  }
};

/// The pass's options as the model has them.
class ScopedOptions {
public:
  explicit ScopedOptions(const ModelOptions &Options)
      : Percentage("inline-recursion-profitablity", Options.Percentage),
        MaxDepth("default-recursion-depth-threshold", Options.MaxDepth),
        PerCaller("inline-recursion-max-callsite-fun",
                  Options.MaxSitesPerCaller),
        InModule("inline-recursion-max-callsite-mod", Options.MaxSites),
        Copies("maximum-clone-limit-inline-recursion", Options.MaxCopies) {}

private:
  ScopedOption<unsigned> Percentage, MaxDepth, PerCaller, InModule, Copies;
};

class SlowModelTest : public ScriptedHostTest {
protected:
  /// Runs \p Check on every module, until one of them fails.
  void forEachModule(function_ref<void(Case &)> Check) {
    const SeedRange Seeds = getSeeds();
    for (uint64_t Seed = Seeds.First; Seed != Seeds.End; ++Seed) {
      Case C(Seed, Script);
      ScopedOptions Scoped(C.Options);
      Check(C);
      Script.Log.clear();
      if (HasFailure())
        return;
    }
    // Single modules need not hold everything.
    IsWhole = Seeds.End - Seeds.First >= 1000;
  }

  void expectAll(const Tally &Seen, const std::vector<std::string> &Wanted) {
    if (!IsWhole)
      return;
    for (const std::string &What : Wanted)
      EXPECT_TRUE(Seen.count(What)) << "no module came to: " << What;
  }

  bool IsWhole = false;
};

//===----------------------------------------------------------------------===//
// Functions
//===----------------------------------------------------------------------===//

using Callers = std::vector<std::pair<const Function *, unsigned>>;

/// Both answers in words.
std::string describe(const ModelSummary &Summary) {
  std::string Text;
  raw_string_ostream OS(Text);
  OS << Summary.Blocks << " blocks, " << Summary.Insts << " instructions, "
     << Summary.Branches << " branches, " << Summary.Calls << " calls, "
     << Summary.SelfCalls << " of itself; mentioned " << Summary.Mentions
     << " times:";
  for (const auto &[Caller, Mentions] : Summary.Callers)
    OS << " " << Caller->getName() << " " << Mentions;
  return OS.str();
}

std::string describe(const Costing &Record) {
  ModelSummary Summary;
  Summary.Blocks = Record.NumOfBlocks;
  Summary.Insts = Record.NumOfInsts;
  Summary.Branches = Record.NumOfBranches;
  Summary.Calls = Record.NumOfFunctionCalls;
  Summary.SelfCalls = Record.NumOfRecursiveCalls;
  Summary.Callers = Callers(Record.NumOfCandidateFunCallSite.begin(),
                            Record.NumOfCandidateFunCallSite.end());
  Summary.Mentions = Record.NumOfCandidateFunCallSiteInMod;
  return describe(Summary);
}

template <typename BenefitT>
std::string describeBenefit(const std::optional<BenefitT> &Benefit) {
  return Benefit ? std::to_string(Benefit->Benefit) + " of " +
                       std::to_string(Benefit->Limit)
                 : "none";
}

std::string describe(bool Accepted, unsigned Depth, unsigned Level,
                     const std::string &Printed) {
  return std::string(Accepted ? "yes" : "no") + ", depth " +
         std::to_string(Depth) + ", level " + std::to_string(Level) + " " +
         Printed;
}

TEST_F(SlowModelTest, FunctionsAreJudgedAlike) {
  Tally Seen;
  unsigned Functions = 0;
  forEachModule([&](Case &C) {
    for (Function &F : C.TM.module()) {
      if (F.empty())
        continue;
      ++Functions;
      const std::string Name = F.getName().str();
      const EstimatorPlan &Plan = C.plan(F);
      const ModelFacts Facts = getFacts(F, Plan, C.Options);

      Costing Record = C.TM.analyzedRecord(Name);
      ASSERT_EQ(describe(Record), describe(Facts.Summary))
          << C.explain("counts of " + Name);
      ASSERT_EQ(Record.IsRecursiveFunction, Facts.Summary.SelfCalls != 0)
          << C.explain("recursion of " + Name);
      ASSERT_EQ(Record.checkIfFunctionCalledOnce(), Facts.Uses.Any &&
                                                        Facts.Uses.OnlyCalls &&
                                                        Facts.Uses.Outside == 1)
          << C.explain("entries of " + Name);
      const auto *Depth =
          cast_or_null<SCEVConstant>(Record.estimateRecursionDepth());
      ASSERT_EQ(Depth ? toString(Depth->getAPInt(), 10, false) : "none",
                Facts.Depth ? toString(*Facts.Depth, 10, false) : "none")
          << C.explain("depth of " + Name);
      const auto Benefit = Record.estimateInlineBenefit();
      ASSERT_EQ(describeBenefit(Benefit), describeBenefit(Facts.Benefit))
          << C.explain("benefit in " + Name);
      ASSERT_EQ(Record.estimateInlineBenefitAndCheckInlineFeasiblity(),
                Facts.Benefit && Facts.Benefit->Benefit > Facts.Benefit->Limit)
          << C.explain("balance of " + Name);
      if (Benefit && Benefit->Benefit > Facts.Summary.Insts)
        ++Seen["more benefit than code"];

      ModelOptions Options = C.Options;
      for (unsigned Level : {0u, 1u, 2u, 3u, 4u, 5u, 12u, ~0u}) {
        Options.Level = Level;
        const ModelVerdict Verdict = decide(Facts, Options);
        Costing Judge = C.TM.analyzedRecord(Name, Level);
        setDepth(77);
        bool Accepted = false;
        std::string Printed;
        auto Ask = [&] { Accepted = Judge.isProfitableToInline(); };
        if (Level > 4)
          Printed = debugOutputOf(Ask);
        else
          Ask();
        ASSERT_EQ(describe(Accepted, depth(), Judge.OptLevel, Printed),
                  describe(Verdict.Accepted, Verdict.Depth.value_or(77),
                           Verdict.Warning.empty() ? Level : 2,
                           Verdict.Warning))
            << C.explain("verdict on " + Name + " at level " +
                         std::to_string(Level));
        ++Seen["level " + std::to_string(Level) + (Accepted ? " yes" : " no")];
      }
    }
  });
  expectAll(Seen, {"level 0 yes", "level 0 no", "level 1 yes", "level 1 no",
                   "level 2 yes", "level 2 no", "level 3 yes", "level 3 no",
                   "level 4 yes", "level 4 no", "level 5 yes", "level 5 no",
                   "more benefit than code"});
  RecordProperty("functions", Functions);
}

//===----------------------------------------------------------------------===//
// Modules
//===----------------------------------------------------------------------===//

/// Functions are told apart by their place: whatever makes the names of further
/// copies unique is LLVM's business.
std::string describe(const std::vector<ModelFunction> &Functions) {
  std::string Text;
  raw_string_ostream OS(Text);
  for (size_t Index = 0; Index != Functions.size(); ++Index) {
    const ModelFunction &F = Functions[Index];
    StringRef Name = F.Name;
    const size_t Suffix = Name.find(CloneSuffix);
    OS << "#" << Index << " "
       << (Suffix == StringRef::npos
               ? Name
               : Name.take_front(Suffix + CloneSuffix.size()))
       << (F.Marked ? " marked" : "") << (F.Eligible ? " eligible" : "")
       << (F.AlwaysInline ? " alwaysinline" : "")
       << (F.NoInline ? " noinline" : "") << (F.Internal ? " internal" : "")
       << ":";
    for (const ModelCall &Call : F.Calls) {
      OS << (Call.Direct ? " #" : " ?");
      if (Call.Callee != NoFunction)
        OS << Call.Callee;
      for (ModelIndex Passed : Call.Passed)
        OS << ",#" << Passed;
      for (ModelIndex Bundled : Call.Bundled)
        OS << ",[#" << Bundled << "]";
    }
    OS << "\n";
  }
  return OS.str();
}

TEST_F(SlowModelTest, ModulesAreRewrittenAlike) {
  Tally Seen;
  forEachModule([&](Case &C) {
    auto GetSE = [&](Function &F) -> ScalarEvolution & {
      return C.TM.scalarEvolution(F);
    };
    const ModelOutcome Outcome =
        replay(C.TM.module(), C.Plans, C.Options, GetSE);

    // The level comes from the driver or from the option.
    const bool ByOption = C.Seed % 2 || C.Options.Level == 0;
    ScopedOption<int> Level("inline-recursion-opt-level",
                            ByOption ? static_cast<int>(C.Options.Level) : 3);
    LoggingDriver Driver(C.TM, ByOption ? 0 : C.Options.Level,
                         C.Options.MaxRingDepth);
    bool Changed = false;
    const std::string Printed =
        debugOutputOf([&] { Changed = Driver->processModule(C.TM.module()); });

    std::vector<ModelFunction> After = readFunctions(C.TM.module());
    ASSERT_TRUE(C.TM.isValid()) << C.explain("invalid module");
    ASSERT_EQ(describe(After), describe(Outcome.Functions))
        << C.explain("module");
    ASSERT_EQ(Changed, Outcome.Changed) << C.explain("result");
    ASSERT_EQ(Printed, Outcome.Warnings) << C.explain("warnings");
    ASSERT_EQ(depth(), Outcome.Depth) << C.explain("depth left behind");
    ASSERT_EQ(Driver.log(), Outcome.Log) << C.explain("analyses");
    ASSERT_EQ(std::count_if(Script.Log.begin(), Script.Log.end(),
                            [](const std::string &Entry) {
                              return StringRef(Entry).startswith("select") ||
                                     StringRef(Entry).startswith("transform");
                            }),
              Outcome.HandedOver ? 2 : 0)
        << C.explain("hand-over");

    const std::string AtLevel =
        "level " + std::to_string(static_cast<int>(C.Options.Level));
    for (const auto &[Name, Copies] : Outcome.Copies)
      ++Seen[AtLevel + ", " + std::to_string(Copies) + " copies"];
    if (Outcome.Copies.size() > 1)
      ++Seen["several chains"];
    if (Outcome.HandedOver)
      ++Seen["handed over"];
  });
  expectAll(Seen,
            {"level 0, 0 copies", "level 0, 1 copies", "level 0, 5 copies",
             "level 0, 7 copies", "level 1, 1 copies", "level 2, 1 copies",
             "level 3, 1 copies", "level 4, 10 copies", "level 5, 1 copies",
             "level -1, 1 copies", "several chains", "handed over"});
}

} // namespace
