//===- FunctionSpecializeAction.cpp - Constants around a ring -------------===//

#include "FunctionSpecializeAction.h"
#include "BodyComparison.h"
#include "DirectCalls.h"
#include "InliningPlan.h"
#include "Names.h"
#include "RecursionDepthEstimator.h"
#include "Specializations.h"
#include "llvm/ADT/DenseMap.h"
#include "llvm/ADT/STLExtras.h"
#include "llvm/ADT/SetVector.h"
#include "llvm/ADT/SmallString.h"
#include "llvm/Analysis/AssumptionCache.h"
#include "llvm/Analysis/LoopInfo.h"
#include "llvm/Analysis/ScalarEvolution.h"
#include "llvm/Analysis/TargetLibraryInfo.h"
#include "llvm/IR/Attributes.h"
#include "llvm/IR/Constants.h"
#include "llvm/IR/DebugInfoMetadata.h"
#include "llvm/IR/Dominators.h"
#include "llvm/IR/InstIterator.h"
#include "llvm/IR/Instructions.h"
#include "llvm/IR/Module.h"
#include "llvm/Support/CommandLine.h"
#include "llvm/Support/ModRef.h"
#include "llvm/Support/raw_ostream.h"
#include "llvm/Transforms/Utils/Cloning.h"
#include <deque>

using namespace llvm;
using namespace llvm::inlinerecursion;

static cl::opt<unsigned> MaxClonesPerRing(
    "inline-recursion-max-specializations", cl::init(256), cl::Hidden,
    cl::desc("Largest number of specialised clones made of one ring of copies "
             "(clones)"));

static cl::opt<unsigned> MaxInstsPerModule(
    "inline-recursion-max-specialized-size", cl::init(10000), cl::Hidden,
    cl::desc("Largest size of all specialised clones made in one module, with "
             "what is inlined into them (instructions)"));

static cl::opt<unsigned> MaxUnaskedGrowth(
    "inline-recursion-max-unasked-growth", cl::init(200), cl::Hidden,
    cl::desc("Largest size of the specialised clones of rings that no source "
             "asked for, with what is inlined into them (percent of the "
             "module)"));

static cl::opt<unsigned> MaxInlinedSize(
    "inline-recursion-specialized-inline-size", cl::init(300), cl::Hidden,
    cl::desc("Largest size, with what is inlined into it, of a specialised "
             "clone that is itself inlined into its callers (instructions)"));

/// The same where a loop of constant trip count stands around a call.  What is
/// inlined there is repeated by every trip when the compiler unrolls the loop,
/// and that of each further copy in it as often again.
static constexpr unsigned MaxUnrollableSize = 100;

/// Copies that call each other in a circle.
using Ring = SetVector<Function *>;

/// Only copies are local and carry the mark; the function that they were made
/// of is called by nobody but itself, so it never stands in a ring of interest.
static bool isCopy(const Function &F, bool OnlyEligible) {
  return !F.isDeclaration() && F.hasLocalLinkage() &&
         F.hasFnAttribute(CloneMark) &&
         (!OnlyEligible || F.hasFnAttribute(EligibleMark));
}

/// Everything of copies that \p Entry leads to and that leads back to it; empty
/// if it does not stand in a ring.
static Ring findRing(Function *Entry, bool OnlyEligible) {
  auto IsCopy = [OnlyEligible](const Function &F) {
    return isCopy(F, OnlyEligible);
  };
  // Forwards by the calls in the bodies, ...
  Ring Reached;
  Reached.insert(Entry);
  bool LeadsBack = false;
  for (unsigned Next = 0; Next != Reached.size(); ++Next)
    for (CallInst *Call : findCallsIn(*Reached[Next], IsCopy)) {
      Reached.insert(Call->getCalledFunction());
      LeadsBack |= Call->getCalledFunction() == Entry;
    }
  Ring Members;
  if (!LeadsBack)
    return Members;

  // ... and backwards by the use lists, within what was reached.
  Members.insert(Entry);
  for (unsigned Next = 0; Next != Members.size(); ++Next) {
    // Inserting may move the elements, not the function.
    Function *Member = Members[Next];
    for (CallInst *Call : findCallsOf(*Member))
      if (Reached.contains(Call->getFunction()))
        Members.insert(Call->getFunction());
  }
  return Members;
}

/// Those of \p Members that compute the same as \p Pattern.  Two rings whose
/// functions call each other look like one, and are told apart here.
static Ring findAlike(Ring Members, Function *Pattern) {
  // A body is the same only if the copies that it calls are; so start from the
  // whole and take away until nothing changes.
  while (true) {
    Ring Alike;
    auto IsAlike = [&Members](const Function &F) {
      return Members.contains(const_cast<Function *>(&F));
    };
    for (Function *Member : Members)
      if (haveSameBody(*Pattern, *Member, IsAlike, BodyComparison::Exact))
        Alike.insert(Member);
    if (Alike.size() == Members.size())
      return Alike;
    Members = std::move(Alike);
  }
}

std::map<Function *, std::set<CallInst *>>
FunctionSpecializeAction::selectCI(Module &M, bool OnlyEligible) {
  std::map<Function *, std::set<CallInst *>> Selected;
  for (Function &F : M) {
    if (!isCopy(F, OnlyEligible))
      continue;
    const Ring Members = findRing(&F, OnlyEligible);
    if (Members.empty())
      continue;
    for (CallInst *Call : findCallsOf(F))
      if (!Members.contains(Call->getFunction()) &&
          hasConstant(getConstantArguments(*Call, F)))
        Selected[&F].insert(Call);
  }
  return Selected;
}

namespace {

/// Specialises the calls into one ring.
class RingSpecializer {
public:
  /// \p SizeLeft is what the budget still holds, in instructions; nothing is
  /// taken from it if nothing is specialised.  With \p WholeOrNothing that is
  /// the case as soon as any call finds the budget spent.
  RingSpecializer(Function *Entry, const std::set<CallInst *> &Excluded,
                  unsigned &SizeLeft, bool WholeOrNothing)
      : Members(findAlike(findRing(Entry, /*OnlyEligible=*/false), Entry)),
        Pattern(Entry), Excluded(Excluded), SizeLeft(SizeLeft),
        WholeOrNothing(WholeOrNothing), Made(*Entry) {}

  /// Redirects \p Calls, which enter the ring, and all that follows from them.
  /// Returns true if any call was redirected.
  bool run(const SetVector<CallInst *> &Calls);

private:
  /// Makes the copy for \p Tuple, if the budgets allow it.
  bool specialize(const ArgumentTuple &Tuple);

  /// How large a copy may be that is inlined into its callers.
  unsigned getSizeLimit() const;

  /// The copies of the ring; all of them compute the same.
  const Ring Members;
  /// The copy that all specialisations are made of.
  Function *const Pattern;
  const std::set<CallInst *> &Excluded;
  unsigned &SizeLeft;
  const bool WholeOrNothing;
  Specializations Made;
  /// Those for which no budget was left.
  std::set<ArgumentTuple> Refused;
  /// In the order in which the recursion gets there, so that what a budget cuts
  /// off are the deepest activations of the widest search.
  std::deque<CallInst *> Worklist;
};

} // namespace

/// What constants are worth following for in \p F: terminators that have a
/// choice, and remainders, which the ring was built for.
static unsigned countDecisions(Function &F) {
  return count_if(instructions(F), [](const Instruction &I) {
    return (I.isTerminator() && I.getNumSuccessors() > 1) ||
           I.getOpcode() == Instruction::URem ||
           I.getOpcode() == Instruction::SRem;
  });
}

bool RingSpecializer::specialize(const ArgumentTuple &Tuple) {
  if (Made.find(Tuple))
    return true;
  // Whether the next copy fits is decided before it is known how much of it
  // folds away.
  if (Refused.count(Tuple) ||
      Made.getCopies().size() + Refused.size() >= MaxClonesPerRing ||
      getCodeSize(*Pattern) > SizeLeft) {
    Refused.insert(Tuple);
    return false;
  }
  Function &Copy = Made.make(Tuple);
  SizeLeft -= std::min(SizeLeft, getCodeSize(Copy));
  // Where the constants decide nothing, what they lead to decides nothing
  // either: an accumulator beside an open argument goes on for ever.
  if (countDecisions(Copy) < countDecisions(*Pattern))
    for (CallInst *Call : findCallsIn(Copy, [this](Function &Callee) {
           return Members.contains(&Callee);
         }))
      Worklist.push_back(Call);
  return true;
}

/// Does \p F make one of \p Calls in a loop of so few trips, and a known number
/// of them, that the compiler unrolls it as long as it is small?
static bool hasShortLoopAround(Function &F, ArrayRef<CallInst *> Calls) {
  DominatorTree DT(F);
  LoopInfo LI(DT);
  if (none_of(Calls, [&LI](const CallInst *Call) {
        return LI.getLoopFor(Call->getParent());
      }))
    return false;
  const TargetLibraryInfoImpl Library(Triple(F.getParent()->getTargetTriple()));
  TargetLibraryInfo TLI(Library, &F);
  AssumptionCache AC(F);
  ScalarEvolution SE(F, TLI, AC, DT, LI);
  return any_of(Calls, [&](const CallInst *Call) {
    const Loop *L = LI.getLoopFor(Call->getParent());
    const unsigned Trips = L ? SE.getSmallConstantTripCount(L) : 0;
    return Trips > 1 && Trips <= RecursionDepthEstimator::MaxUnrolledTrips;
  });
}

unsigned RingSpecializer::getSizeLimit() const {
  const SmallPtrSet<const Function *, 16> Copies(Made.getCopies().begin(),
                                                 Made.getCopies().end());
  auto IsCopy = [&Copies](const Function &F) { return Copies.contains(&F); };
  if (any_of(Made.getCopies(), [&IsCopy](Function *Copy) {
        return hasShortLoopAround(*Copy, findCallsIn(*Copy, IsCopy));
      }))
    return std::min(MaxUnrollableSize, MaxInlinedSize.getValue());
  return MaxInlinedSize;
}

bool RingSpecializer::run(const SetVector<CallInst *> &Calls) {
  if (!isSpecializable(*Pattern))
    return false;
  const unsigned SizeBefore = SizeLeft;
  Worklist.assign(Calls.begin(), Calls.end());
  while (!Worklist.empty()) {
    CallInst *Call = Worklist.front();
    Worklist.pop_front();
    if (Excluded.count(Call))
      continue;
    const ArgumentTuple Tuple = getConstantArguments(*Call, *Pattern);
    if (!hasConstant(Tuple))
      continue;
    if (specialize(Tuple)) {
      Made.redirect(*Call, Tuple);
    } else if (WholeOrNothing) {
      Made.undo();
      SizeLeft = SizeBefore;
      return false;
    }
  }
  // Callees are made after their callers, but for those that close a cycle.
  planInlining(Made.getCopies(), getSizeLimit(), SizeLeft);
  return Made.anyRedirected();
}

/// Did nobody ask for the ring that the copy \p F stands in?
static bool isUnasked(const Function &F) {
  return F.getFnAttribute(Request).getValueAsString() == FoundRequest;
}

/// The instructions of the program as it was written.  Functions that copies
/// are not to be made of carry the mark as well; only the name tells them from
/// copies.
static uint64_t getSizeWithoutCopies(const Module &M) {
  uint64_t Size = 0;
  for (const Function &F : M)
    if (!F.getName().contains(CloneSuffix))
      Size += getCodeSize(F);
  return Size;
}

bool FunctionSpecializeAction::transform(
    Module &M, std::map<Function *, std::set<CallInst *>> &Selected,
    const std::set<CallInst *> &Excluded) {
  bool Changed = false;
  unsigned SizeLeft = MaxInstsPerModule;
  unsigned UnaskedLeft = std::min<uint64_t>(
      SizeLeft, getSizeWithoutCopies(M) * MaxUnaskedGrowth / 100);
  // The map and its sets are ordered by address; the module's order gives the
  // same result on every machine.
  for (Function &F : M) {
    auto CallsOfF = Selected.find(&F);
    if (CallsOfF == Selected.end())
      continue;
    SetVector<CallInst *> Calls;
    for (User *U : F.users())
      if (auto *Call = dyn_cast<CallInst>(U))
        if (CallsOfF->second.count(Call))
          Calls.insert(Call);

    if (!isUnasked(F)) {
      Changed |= RingSpecializer(&F, Excluded, SizeLeft,
                                 /*WholeOrNothing=*/false)
                     .run(Calls);
      continue;
    }
    const unsigned Allowed = std::min(SizeLeft, UnaskedLeft);
    unsigned Left = Allowed;
    Changed |=
        RingSpecializer(&F, Excluded, Left, /*WholeOrNothing=*/true).run(Calls);
    SizeLeft -= Allowed - Left;
    UnaskedLeft -= Allowed - Left;
  }
  return Changed;
}
