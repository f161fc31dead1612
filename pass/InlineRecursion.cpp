//===- InlineRecursion.cpp - Chains of copies for recursive functions -----===//
//
/// \file
/// The pass has three rooms, in the order in which a function walks through
/// them: entry and driver, costing, transformation.  The costing and the gate
/// decide and change no code; the clone chain changes code and decides nothing.
///
/// The pass is silent: it emits no remarks and prints nothing but the warning
/// about an invalid optimisation level (and the costing summary, for whoever
/// calls it).  What tells users about its decisions lives outside.
//
//===----------------------------------------------------------------------===//

#include "InlineRecursion.h"
#include "../host/FunctionSpecializeAction.h"
#include "../host/Names.h"
#include "../host/RecursionDepthEstimator.h"
#include "llvm/ADT/PostOrderIterator.h"
#include "llvm/ADT/STLExtras.h"
#include "llvm/Analysis/ScalarEvolution.h"
#include "llvm/Analysis/ScalarEvolutionExpressions.h"
#include "llvm/IR/CFG.h"
#include "llvm/IR/Constants.h"
#include "llvm/IR/Dominators.h"
#include "llvm/IR/Function.h"
#include "llvm/IR/Instructions.h"
#include "llvm/IR/Module.h"
#include "llvm/PassRegistry.h"
#include "llvm/Support/CommandLine.h"
#include "llvm/Support/Debug.h"
#include "llvm/Transforms/Utils/BasicBlockUtils.h"
#include "llvm/Transforms/Utils/Cloning.h"

using namespace llvm;
using inlinerecursion::CloneMark;
using inlinerecursion::CloneSuffix;
using inlinerecursion::EligibleMark;
using inlinerecursion::Request;

// The current function's depth, carried from the decision to the chain.  The
// driver resets it for every function, so a value given by the user never
// reaches the transformation.
static cl::opt<unsigned>
    InlineRecursiveDepth("inline-recursion-depth", cl::init(1), cl::Hidden,
                         cl::desc("Inline recursion function depth"));

static cl::opt<int>
    InlineRecursiveLevel("inline-recursion-opt-level", cl::init(0), cl::Hidden,
                         cl::desc("Inline recursion optimization level"));

static cl::opt<unsigned> SpecialInlineRecMaxDepthArg(
    "special-inline-recursion-depth", cl::init(10), cl::ReallyHidden,
    cl::desc("Speical Inline recursion function depth to avoid code bloat"));

static cl::opt<unsigned>
    MaxCloneThreshold("maximum-clone-limit-inline-recursion", cl::init(25),
                      cl::Hidden, cl::desc("Inline recursion max clone limit"));

static cl::opt<unsigned> MaxNumOfCallSitePerFun(
    "inline-recursion-max-callsite-fun", cl::init(1), cl::ReallyHidden,
    cl::desc("Maximum callsites of a candidate function inside a function"));

static cl::opt<unsigned> MaxNumOfCallSiteInModule(
    "inline-recursion-max-callsite-mod", cl::init(2), cl::ReallyHidden,
    cl::desc(
        "Maximum number of callsite of a candidate function inside a module"));

static cl::opt<unsigned> DefaultRecursionDepthThreshold(
    "default-recursion-depth-threshold", cl::init(7), cl::Hidden,
    cl::desc("Maximum recursion depth eligible for inlining"));

static cl::opt<unsigned> InlineRecursionProfitablityRatio(
    "inline-recursion-profitablity", cl::init(10), cl::Hidden,
    cl::desc("Inline profitablity percentage considering function size"));

/// The plain `call` that \p V is, if it calls \p F directly and with F's own
/// type; else null.  An `invoke` or `callbr` of F is not one.
static CallInst *getDirectCallTo(Value *V, const Function *F) {
  auto *Call = dyn_cast<CallInst>(V);
  return Call && Call->getCalledFunction() == F ? Call : nullptr;
}

//===----------------------------------------------------------------------===//
// Entry and driver
//
//   module -> each function -> filter -> gate ----------------> budget -> chain
//                                          \-> costing -------/
//          -> hand-off to the specialisation component, if a ring was built
//===----------------------------------------------------------------------===//

char InlineRecursionLegacy::ID = 0;

INITIALIZE_PASS(InlineRecursionLegacy, "inlinerecursion",
                "Inline recursive function using function cloning", false,
                false)

InlineRecursionLegacy::InlineRecursionLegacy(int OptLevel)
    : ModulePass(ID), OptLevel(OptLevel) {
  initializeInlineRecursionLegacyPass(*PassRegistry::getPassRegistry());
}

InlineRecursionLegacy::~InlineRecursionLegacy() = default;

Pass *llvm::createInlineRecursionLegacyPass(int OptLevel) {
  return new InlineRecursionLegacy(OptLevel);
}

// Everything is declared preserved although functions are added and calls
// rewritten: the on-the-fly function analyses of a legacy module pass are
// rebuilt at every request anyway.
void InlineRecursionLegacy::getAnalysisUsage(AnalysisUsage &AU) const {
  AU.addRequiredID(ScalarEvolutionWrapperPass::ID);
  AU.setPreservesAll();
}

bool InlineRecursionLegacy::runOnModule(Module &M) {
  // Every getAnalysis<X>(F) of a legacy module pass runs the on-the-fly
  // function manager anew and frees what the call before returned.  Asking it
  // for the dominator tree would leave the ScalarEvolution of the same function
  // dangling, so the tree is one of our own.
  DominatorTree DT;
  auto GetSE = [this](Function &F) {
    return &getAnalysis<ScalarEvolutionWrapperPass>(F).getSE();
  };
  auto GetDT = [&DT](Function &F) {
    DT.recalculate(F);
    return &DT;
  };

  InlineRecursion Driver;
  Driver.SpecializeSeen = false;
  Driver.SpecialDepthLimit = SpecialInlineRecMaxDepthArg;
  Driver.OptLevel = OptLevel;
  Driver.GetSE = GetSE;
  Driver.GetDT = GetDT;
  return Driver.processModule(M);
}

PreservedAnalyses InlineRecursionPass::run(Module &M,
                                           ModuleAnalysisManager &MAM) {
  FunctionAnalysisManager &FAM =
      MAM.getResult<FunctionAnalysisManagerModuleProxy>(M).getManager();
  if (M.empty())
    return PreservedAnalyses::all();

  auto GetSE = [&FAM](Function &F) {
    return &FAM.getResult<ScalarEvolutionAnalysis>(F);
  };
  auto GetDT = [&FAM](Function &F) {
    return &FAM.getResult<DominatorTreeAnalysis>(F);
  };

  InlineRecursion Driver;
  Driver.SpecializeSeen = false;
  Driver.SpecialDepthLimit = SpecialInlineRecMaxDepthArg;
  Driver.OptLevel = OptLevel;
  Driver.GetSE = GetSE;
  Driver.GetDT = GetDT;
  return Driver.processModule(M) ? PreservedAnalyses::none()
                                 : PreservedAnalyses::all();
}

bool InlineRecursion::processModule(Module &M) {
  if (OptLevel == 0 && InlineRecursiveLevel != 0)
    OptLevel = InlineRecursiveLevel;
  CloneCount = 0;

  // Copies are appended to the list while it is walked, and are refused by
  // their mark when their turn comes.
  bool Changed = false;
  for (Function &F : M)
    Changed |= inlineRecursionFunction(&F);

  if (!Changed)
    return false;
  if (!SpecializeSeen)
    return true;

  FunctionSpecializeAction Action;
  std::map<Function *, std::set<CallInst *>> Selected =
      Action.selectCI(M, true);
  const std::set<CallInst *> Excluded;
  Action.transform(M, Selected, Excluded);
  return true;
}

bool InlineRecursion::inlineRecursionFunction(Function *F) {
  InlineRecursiveDepth = 1;

  if (!isLegalToInlineRecursion(F))
    return false;

  const bool SpecializeAllowed = isSpecializeAllowed(F);
  SpecializeSeen |= SpecializeAllowed;
  if (!SpecializeAllowed) {
    ScalarEvolution *SE = GetSE(*F);
    DominatorTree *DT = GetDT(*F);
    InlineRecursionCosting Costing(F, SE, DT, OptLevel);
    Costing.analyzeFunction();
    if (!Costing.isProfitableToInline())
      return false;
  }

  // The budget counts requested levels, before the chain is built.
  const unsigned Requested = InlineRecursiveDepth + CloneCount;
  if (Requested > MaxCloneThreshold)
    return false;
  CloneCount = Requested;

  SmallVector<Function *, 4> Clones;
  for (unsigned Level = 0; Level < InlineRecursiveDepth; ++Level)
    transformInlineRecursion(F, Level, Clones, SpecializeAllowed);
  return true;
}

bool InlineRecursion::isLegalToInlineRecursion(Function *F) {
  // Nothing to copy.
  if (F->isDeclaration())
    return false;
  // A copy, or a function that was chained before.
  if (F->hasFnAttribute(CloneMark))
    return false;
  // Not to be optimised.
  if (F->hasOptNone())
    return false;
  // Known not to call itself.
  return !F->doesNotRecurse();
}

//===----------------------------------------------------------------------===//
// Costing
//===----------------------------------------------------------------------===//

void InlineRecursion::InlineRecursionCosting::analyzeFunction() {
  // The census: direct call uses of F across the module.
  unsigned NumOfCallSites = 0;
  for (User *U : F->users()) {
    CallInst *Call = getDirectCallTo(U, F);
    if (!Call)
      continue;
    ++NumOfCandidateFunCallSite[Call->getFunction()];
    ++NumOfCallSites;
  }
  NumOfCandidateFunCallSiteInMod = NumOfCallSites;

  for (BasicBlock &BB : *F) {
    ++NumOfBlocks;
    for (Instruction &I : BB) {
      ++NumOfInsts;
      if (isa<BranchInst>(I))
        ++NumOfBranches;
      if (isa<CallInst>(I))
        ++NumOfFunctionCalls;
      if (getDirectCallTo(&I, F)) {
        ++NumOfRecursiveCalls;
        IsRecursiveFunction = true;
      }
    }
  }
}

/// Are \p A and \p B (constants of one type) known to be equal?
static bool isSameConstant(ScalarEvolution *SE, const SCEV *A, const SCEV *B) {
  const auto *Difference = dyn_cast<SCEVConstant>(SE->getMinusSCEV(A, B));
  return Difference && Difference->getAPInt().isZero();
}

const SCEV *InlineRecursion::InlineRecursionCosting::estimateRecursionDepth() {
  RecursionDepthEstimator Estimator(F, SE, DT);
  if (!Estimator.canEstimateRecursionDepth())
    return nullptr;

  const SCEV *Agreed = nullptr;
  for (CallInst *Call : Estimator.getCallSites()) {
    auto [First, Second] = Estimator.identifyRecursionDepthForCallSite(Call);
    if (!isa_and_nonnull<SCEVConstant>(First) ||
        !isa_and_nonnull<SCEVConstant>(Second))
      return nullptr;
    // One depth per site ...
    if (!isSameConstant(SE, Second, First))
      return nullptr;
    // ... and the same one at all sites.
    if (!Agreed)
      Agreed = First;
    else if (!isSameConstant(SE, Agreed, First))
      return nullptr;
  }
  return Agreed;
}

bool InlineRecursion::InlineRecursionCosting::checkIfFunctionCalledOnce() {
  unsigned NumOfOutsideCalls = 0;
  for (User *U : F->users()) {
    CallInst *Call = getDirectCallTo(U, F);
    if (!Call)
      return false;
    if (Call->getFunction() != F)
      ++NumOfOutsideCalls;
  }
  return NumOfOutsideCalls == 1;
}

/// Collects what would fold away in the users of \p V, and in their users, if
/// \p V were a constant: the instructions themselves into \p SimplifiedInsts,
/// and the `br` and `switch` instructions that would be decided into
/// \p DecidedTerminators.  \p VisitedValues guards against walking twice.  The
/// maps are only added to, every entry is true, and the order of entries is
/// that of a depth-first walk (a user's own users before the next user).
///
/// An operation counts only if one operand is an integer literal, whichever of
/// the two carries \p V; memory, selects, PHIs and calls end the walk.
static void estimateInstSimplificationWhenValueIsConstant(
    Value *V, MapVector<Instruction *, bool> &SimplifiedInsts,
    MapVector<Instruction *, bool> &DecidedTerminators,
    MapVector<Value *, bool> &VisitedValues) {
  // The stack is explicit, so that no def-use chain is too long for it: for
  // each value on the current path, the use to look at next.
  SmallVector<std::pair<Value *, Value::use_iterator>, 16> Path;
  auto Enter = [&](Value *Entered) {
    if (VisitedValues.insert({Entered, true}).second)
      Path.push_back({Entered, Entered->use_begin()});
  };

  Enter(V);
  while (!Path.empty()) {
    auto &[Current, NextUse] = Path.back();
    if (NextUse == Current->use_end()) {
      Path.pop_back();
      continue;
    }
    auto *I = dyn_cast<Instruction>((NextUse++)->getUser());
    if (!I)
      continue;
    if (isa<BranchInst, SwitchInst>(I)) {
      DecidedTerminators[I] = true;
    } else if (isa<GetElementPtrInst>(I)) {
      SimplifiedInsts[I] = true;
    } else if (isa<CastInst>(I) || (isa<BinaryOperator, CmpInst>(I) &&
                                    (isa<ConstantInt>(I->getOperand(0)) ||
                                     isa<ConstantInt>(I->getOperand(1))))) {
      SimplifiedInsts[I] = true;
      Enter(I);
    }
  }
}

/// Replaces the count of every block D in \p RegionSizes by the number of
/// instructions in the blocks that D dominates.
///
/// One subtree sum over the dominator tree serves all of them.  It yields what
/// asking `dominates` for every pair of blocks would: an unreachable block is
/// dominated by every block, and dominates no reachable one but itself.
static void
measureDominatedRegions(Function &F, DominatorTree &DT,
                        MapVector<BasicBlock *, unsigned> &RegionSizes) {
  unsigned UnreachableSize = 0;
  for (BasicBlock &BB : F)
    if (!DT.isReachableFromEntry(&BB))
      UnreachableSize += BB.size();

  DenseMap<const DomTreeNode *, unsigned> SubtreeSizes;
  for (DomTreeNode *Node : post_order(DT.getRootNode())) {
    unsigned Size = Node->getBlock()->size();
    for (DomTreeNode *Child : Node->children())
      Size += SubtreeSizes.lookup(Child);
    SubtreeSizes[Node] = Size;
  }

  for (auto &[BB, Size] : RegionSizes)
    Size = SubtreeSizes.lookup(DT.getNode(BB)) + UnreachableSize;
}

std::optional<InlineRecursion::InlineRecursionCosting::InlineBenefit>
InlineRecursion::InlineRecursionCosting::estimateInlineBenefit() {
  if (F->arg_size() != 1)
    return std::nullopt;

  MapVector<Instruction *, bool> SimplifiedInsts;
  MapVector<Instruction *, bool> DecidedTerminators;
  MapVector<Value *, bool> VisitedValues;
  estimateInstSimplificationWhenValueIsConstant(
      F->getArg(0), SimplifiedInsts, DecidedTerminators, VisitedValues);

  // The code that runs only behind one side of a decided branch or switch.
  MapVector<BasicBlock *, unsigned> RegionSizes;
  for (auto &Entry : DecidedTerminators)
    for (BasicBlock *Successor : successors(Entry.first))
      RegionSizes[Successor] = 0;
  if (!RegionSizes.empty())
    measureDominatedRegions(*F, *DT, RegionSizes);

  unsigned DeadCode = 0;
  for (auto &Entry : DecidedTerminators) {
    if (auto *Branch = dyn_cast<BranchInst>(Entry.first)) {
      DeadCode += std::max(RegionSizes[Branch->getSuccessor(0)],
                           RegionSizes[Branch->getSuccessor(1)]);
      continue;
    }
    // All cases, and what the default has more than the smallest of them; zero
    // stands for no smallest yet, and an empty region resets it.
    auto *Switch = cast<SwitchInst>(Entry.first);
    unsigned Smallest = 0;
    for (auto &Case : Switch->cases()) {
      const unsigned Size = RegionSizes[Case.getCaseSuccessor()];
      if (Size <= Smallest || Smallest == 0)
        Smallest = Size;
      DeadCode += Size;
    }
    const unsigned DefaultSize = RegionSizes[Switch->getDefaultDest()];
    if (DefaultSize > Smallest && Smallest != 0)
      DeadCode += DefaultSize - Smallest;
  }

  const unsigned Divisor = InlineRecursionProfitablityRatio == 0
                               ? 1
                               : 100 / InlineRecursionProfitablityRatio;
  const unsigned Limit = NumOfInsts / Divisor;
  const uint64_t Benefit = uint64_t(DeadCode >> 1) + SimplifiedInsts.size();
  return InlineBenefit{Benefit, Limit};
}

bool InlineRecursion::InlineRecursionCosting::
    estimateInlineBenefitAndCheckInlineFeasiblity() {
  std::optional<InlineBenefit> Estimate = estimateInlineBenefit();
  return Estimate && Estimate->Benefit > Estimate->Limit;
}

bool InlineRecursion::InlineRecursionCosting::isProfitableToInline() {
  if (!IsRecursiveFunction)
    return false;
  // Several recursive calls per body grow the inlined code exponentially.
  if (NumOfRecursiveCalls != 1)
    return false;

  if (OptLevel > 4) {
    // Only this record is corrected, so the warning comes once per function.
    dbgs() << "Invalid Inline Recursion Opt Level: "
           << static_cast<int>(OptLevel) << "\n"
           << "Setting to default Inline Recursion Opt Level: 2\n";
    OptLevel = 2;
  }

  switch (OptLevel) {
  case 0:
    return isProfitableToInlineInDefaultFlow();
  case 1:
    return NumOfInsts <= 20 && NumOfBranches <= 5 && NumOfFunctionCalls == 1;
  case 2:
    return NumOfInsts <= 50 && NumOfBranches <= 10 && NumOfFunctionCalls <= 4;
  case 3:
    return true;
  default:
    break;
  }

  // Level 4: a budget of call sites, over the module and per caller.
  if (NumOfCandidateFunCallSiteInMod > MaxNumOfCallSiteInModule)
    return false;
  if (any_of(NumOfCandidateFunCallSite, [](const auto &CallerAndCount) {
        return CallerAndCount.second > MaxNumOfCallSitePerFun;
      }))
    return false;
  InlineRecursiveDepth = 10;
  return true;
}

bool InlineRecursion::InlineRecursionCosting::
    isProfitableToInlineInDefaultFlow() {
  // Entered from exactly one place, and by nothing that is not a direct call.
  if (!checkIfFunctionCalledOnce())
    return false;

  const auto *Estimate = cast_or_null<SCEVConstant>(estimateRecursionDepth());
  if (!Estimate)
    return false;
  const auto Depth =
      static_cast<unsigned>(Estimate->getAPInt().getRawData()[0]);
  if (Depth > DefaultRecursionDepthThreshold)
    return false;

  if (!estimateInlineBenefitAndCheckInlineFeasiblity())
    return false;

  InlineRecursiveDepth = Depth;
  return true;
}

void InlineRecursion::InlineRecursionCosting::printFunctionParameters() {
  raw_ostream &OS = dbgs();
  OS << "InlineRecursion: Function " << F->getName() << " Summary:\n"
     << "   IsRecursiveFunction: " << static_cast<int>(IsRecursiveFunction)
     << "\n"
     << "   NumOfBlocks: " << NumOfBlocks << "\n"
     << "   NumOfInsts: " << NumOfInsts << "\n"
     << "   NumOfBranches: " << NumOfBranches << "\n"
     << "   NumOfFunctionCalls: " << NumOfFunctionCalls << "\n"
     << "   NumOfRecursiveCalls: " << NumOfRecursiveCalls << "\n"
     << "   NumOfCandidateFunCallSiteInMod: " << NumOfCandidateFunCallSiteInMod
     << "\n";
  for (const auto &[Caller, Count] : NumOfCandidateFunCallSite)
    OS << "   NumOfCandidateFunCallSite in " << Caller->getName() << ": "
       << Count << "\n";
}

//===----------------------------------------------------------------------===//
// Transformation
//
//   BEFORE            AFTER, a chain of 3          AFTER, a ring of 3
//
//   caller            caller                       caller
//     |                 |                            |
//     v                 v                            v
//     F <-+             F.recurse.clone              F.recurse.clone <-----+
//     |   |             |                            |   (alwaysinline)    |
//     +---+             v                            v                     |
//                       F.recurse.clone.1            F.recurse.clone.1     |
//                       |                            |   (alwaysinline)    |
//                       v                            v                     |
//                       F.recurse.clone.2            F.recurse.clone.2 ----+
//                       |                                (noinline)
//                       v
//                       F <-+                        F <-+  (uncalled)
//                       |   |                        |   |
//                       +---+                        +---+
//
//===----------------------------------------------------------------------===//

bool InlineRecursion::isSpecializeAllowed(Function *F) {
  if (!F->hasFnAttribute(Request))
    return false;

  ScalarEvolution *SE = GetSE(*F);
  for (Instruction &I : F->getEntryBlock()) {
    if (I.getOpcode() != Instruction::URem &&
        I.getOpcode() != Instruction::SRem)
      continue;
    if (!isa<ConstantInt>(I.getOperand(1)) || !isa<Argument>(I.getOperand(0)))
      continue;
    const SCEV *Remainder = SE->getSCEV(&I);
    if (!Remainder)
      continue;
    // The exclusive end, read as signed: the full range's, which has all bits
    // set, falls below 1.  A wider value counts by its lowest word.
    const APInt Upper = SE->getUnsignedRange(Remainder).getUpper();
    const auto Bound = Upper.getBitWidth() <= 64
                           ? Upper.getSExtValue()
                           : static_cast<int64_t>(Upper.getRawData()[0]);
    if (Bound < 1 || Bound > SpecialDepthLimit)
      continue;
    InlineRecursiveDepth = static_cast<unsigned>(Bound);
    F->addFnAttr(EligibleMark);
    return true;
  }
  return false;
}

/// Replaces \p Old by a plain call of \p Target, which has the type of the
/// function that \p Old calls.  Arguments, name, uses and debug location stay;
/// call-site attributes, operand bundles, tail-call marker and other metadata
/// do not.
static void retargetCall(CallInst *Old, Function *Target) {
  SmallVector<Value *, 8> Args(Old->args());
  CallInst *New = CallInst::Create(Target->getFunctionType(), Target, Args);
  New->setCallingConv(Target->getCallingConv());
  New->takeName(Old);
  if (!Old->use_empty())
    Old->replaceAllUsesWith(New);
  ReplaceInstWithInst(Old, New);
}

void InlineRecursion::transformInlineRecursion(
    Function *F, unsigned Level, SmallVector<Function *, 4> &Clones,
    bool SpecializeAllowed) {
  // The map is not seeded with F, so the copy's recursive calls still call F.
  ValueToValueMapTy VMap;
  Function *NewF = CloneFunction(F, VMap);
  Clones.push_back(NewF);
  NewF->setName(F->getName() + CloneSuffix);

  NewF->addFnAttr(CloneMark);
  if (!F->hasFnAttribute(CloneMark))
    F->addFnAttr(CloneMark);

  // The copies are there to be inlined ...
  if (NewF->hasFnAttribute(Attribute::NoInline))
    NewF->removeFnAttr(Attribute::NoInline);
  if ((OptLevel & ~4U) == 0)
    NewF->addFnAttr(Attribute::AlwaysInline);

  // ... all but the one that closes a ring, where the inliner has to stop.
  if (SpecializeAllowed) {
    const unsigned Last = InlineRecursiveDepth - 1;
    if (Last > Level) {
      NewF->addFnAttr(Attribute::AlwaysInline);
    } else if (Last == Level) {
      if (NewF->hasFnAttribute(Attribute::AlwaysInline))
        NewF->removeFnAttr(Attribute::AlwaysInline);
      NewF->addFnAttr(Attribute::NoInline);
    }
  }

  NewF->setLinkage(GlobalValue::InternalLinkage);

  // Rewriting changes the use list, so first gather, then rewrite.  A call that
  // also passes F as an argument stands in the list more than once; only the
  // use as callee counts here.
  const bool ClosesRing =
      SpecializeAllowed && Level + 1 == InlineRecursiveDepth;
  SmallVector<CallInst *, 4> ClosingCalls, EntryCalls;
  for (Use &U : F->uses()) {
    CallInst *Call = getDirectCallTo(U.getUser(), F);
    if (!Call || !Call->isCallee(&U))
      continue;
    Function *Caller = Call->getFunction();
    if (Caller == NewF) {
      if (ClosesRing)
        ClosingCalls.push_back(Call);
    } else if (Caller != F) {
      EntryCalls.push_back(Call);
    }
  }

  for (CallInst *Call : ClosingCalls)
    retargetCall(Call, Clones.front());
  for (CallInst *Call : EntryCalls)
    retargetCall(Call, NewF);
}
