//===- FunctionSpecializeAction.cpp - Constants around a ring -------------===//

#include "FunctionSpecializeAction.h"
#include "BodyComparison.h"
#include "DirectCalls.h"
#include "InliningPlan.h"
#include "Names.h"
#include "llvm/ADT/DenseMap.h"
#include "llvm/ADT/STLExtras.h"
#include "llvm/ADT/SetVector.h"
#include "llvm/ADT/SmallString.h"
#include "llvm/IR/Attributes.h"
#include "llvm/IR/Constants.h"
#include "llvm/IR/DebugInfoMetadata.h"
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

/// Copies that call each other in a circle.
using Ring = SetVector<Function *>;

/// One entry per formal argument: the constant that stands in its place, or
/// null where the argument is left open.
using ArgumentTuple = SmallVector<Constant *, 4>;

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

/// May the constants of a call be put in the place of \p A?
static bool isReplaceable(const Argument &A) {
  // The callee owns a copy of the pointee, not the caller's object.
  if (A.hasPassPointeeByValueCopyAttr() || A.hasInAllocaAttr())
    return false;
  // Held in registers by convention; their uses must be the argument itself.
  return !A.hasSwiftErrorAttr() && !A.hasNestAttr() &&
         !A.hasAttribute(Attribute::SwiftSelf) &&
         !A.hasAttribute(Attribute::SwiftAsync);
}

/// What \p Call passes to \p Callee.
static ArgumentTuple getConstantArguments(const CallInst &Call,
                                          const Function &Callee) {
  ArgumentTuple Tuple;
  for (const Argument &A : Callee.args()) {
    auto *C = dyn_cast<Constant>(Call.getArgOperand(A.getArgNo()));
    // Undefined values differ from use to use, and so do the addresses of
    // thread-local variables from thread to thread.
    if (C && (!isReplaceable(A) || isa<UndefValue>(C) ||
              C->containsUndefOrPoisonElement() || C->isThreadDependent()))
      C = nullptr;
    Tuple.push_back(C);
  }
  return Tuple;
}

static bool hasConstant(const ArgumentTuple &Tuple) {
  return any_of(Tuple, [](Constant *C) { return C != nullptr; });
}

/// May \p F be cloned with other values in the place of its arguments?
static bool isSpecializable(const Function &F) {
  for (const BasicBlock &BB : F) {
    // A clone's own blocks would be reached through the addresses of F's.
    if (BB.hasAddressTaken())
      return false;
    for (const Instruction &I : BB)
      if (auto *Call = dyn_cast<CallBase>(&I))
        if (Call->cannotDuplicate())
          return false;
  }
  return true;
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
        WholeOrNothing(WholeOrNothing) {}

  /// Redirects \p Calls, which enter the ring, and all that follows from them.
  /// Returns true if any call was redirected.
  bool run(const SetVector<CallInst *> &Calls);

private:
  /// Makes \p Call, which passes \p Tuple, call \p Clone.
  void redirect(CallInst &Call, Function &Clone, const ArgumentTuple &Tuple);

  /// Everything as it was before.
  void undo();

  /// The specialisation for \p Tuple, made on first request; null if a budget
  /// is spent.
  Function *getSpecialization(const ArgumentTuple &Tuple);

  Function *clonePattern(const ArgumentTuple &Tuple);

  /// The copies of the ring; all of them compute the same.
  const Ring Members;
  /// The copy that all specialisations are made of.
  Function *const Pattern;
  const std::set<CallInst *> &Excluded;
  unsigned &SizeLeft;
  const bool WholeOrNothing;
  struct Redirection {
    CallInst *Call;
    Function *Callee;
    AttributeList Attributes;
  };
  /// How the calls were, for undo().
  SmallVector<Redirection, 0> Redirected;
  std::map<ArgumentTuple, Function *> Specializations;
  /// The same in the order of making.
  SmallVector<Function *, 0> Clones;
  /// In the order in which the recursion gets there, so that what a budget cuts
  /// off are the deepest activations of the widest search.
  std::deque<CallInst *> Worklist;
};

} // namespace

/// The name of the original function, ".specialized" and the constants that
/// have a short name.
static SmallString<64> getCloneName(const Function &Pattern,
                                    const ArgumentTuple &Tuple) {
  SmallString<64> Name = Pattern.getName();
  const size_t Suffix = Name.str().rfind(CloneSuffix);
  if (Suffix != StringRef::npos)
    Name.truncate(Suffix);
  raw_svector_ostream OS(Name);
  OS << SpecializedSuffix;
  for (const Constant *C : Tuple) {
    OS << ".";
    if (const auto *I = dyn_cast_or_null<ConstantInt>(C))
      I->getValue().print(OS, /*isSigned=*/true);
    else if (const auto *G = dyn_cast_or_null<GlobalValue>(C))
      OS << G->getName();
    else
      OS << (C ? "c" : "_");
  }
  return Name;
}

static bool replacesPointer(const ArgumentTuple &Tuple) {
  return any_of(Tuple,
                [](Constant *C) { return C && C->getType()->isPointerTy(); });
}

/// \p Effects of a function that does not get at its memory by its arguments
/// any more but by the name of a global.
static MemoryEffects withoutArguments(MemoryEffects Effects) {
  return Effects | MemoryEffects(MemoryEffects::Other,
                                 Effects.getModRef(MemoryEffects::ArgMem));
}

Function *RingSpecializer::clonePattern(const ArgumentTuple &Tuple) {
  // The pruning clone is made of a plain copy, for two reasons.  Two functions
  // must not share one DISubprogram, and only CloneFunction makes a new one.
  // And it simplifies while the new function has no terminators yet, which some
  // analyses of an argument run into (programUndefinedIfPoison in
  // ValueTracking.cpp): until the new function is complete, it uses the
  // arguments of the copy.
  ValueToValueMapTy PlainVMap;
  Function *Source = CloneFunction(Pattern, PlainVMap);

  Function *Clone =
      Function::Create(Pattern->getFunctionType(), GlobalValue::InternalLinkage,
                       Pattern->getAddressSpace(),
                       getCloneName(*Pattern, Tuple), Pattern->getParent());
  Clone->copyAttributesFrom(Pattern);
  Clone->copyMetadata(Source, 0);
  // No link of the ring any more.
  Clone->removeFnAttr(EligibleMark);
  if (replacesPointer(Tuple))
    Clone->setMemoryEffects(withoutArguments(Clone->getMemoryEffects()));

  ValueToValueMapTy VMap;
  for (auto [Formal, New, C] : zip(Source->args(), Clone->args(), Tuple)) {
    New.setName(Formal.getName());
    VMap[&Formal] = C ? static_cast<Value *>(C) : &Formal;
  }
  SmallVector<ReturnInst *, 4> Returns;
  CloneAndPruneFunctionInto(Clone, Source, VMap, /*ModuleLevelChanges=*/false,
                            Returns);
  for (auto [Formal, New] : zip(Source->args(), Clone->args()))
    Formal.replaceAllUsesWith(&New);
  Source->eraseFromParent();
  return Clone;
}

/// What constants are worth following for in \p F: terminators that have a
/// choice, and remainders, which the ring was built for.
static unsigned countDecisions(Function &F) {
  return count_if(instructions(F), [](const Instruction &I) {
    return (I.isTerminator() && I.getNumSuccessors() > 1) ||
           I.getOpcode() == Instruction::URem ||
           I.getOpcode() == Instruction::SRem;
  });
}

Function *RingSpecializer::getSpecialization(const ArgumentTuple &Tuple) {
  auto [Entry, Inserted] = Specializations.try_emplace(Tuple, nullptr);
  if (!Inserted)
    return Entry->second;
  // Whether the next clone fits is decided before it is known how much of it
  // folds away.
  if (Specializations.size() > MaxClonesPerRing ||
      getCodeSize(*Pattern) > SizeLeft)
    return nullptr;

  Function *Clone = clonePattern(Tuple);
  SizeLeft -= std::min(SizeLeft, getCodeSize(*Clone));
  Entry->second = Clone;
  Clones.push_back(Clone);
  // Where the constants decide nothing, what they lead to decides nothing
  // either: an accumulator beside an open argument goes on for ever.
  if (countDecisions(*Clone) < countDecisions(*Pattern))
    for (CallInst *Call : findCallsIn(*Clone, [this](Function &Callee) {
           return Members.contains(&Callee);
         }))
      Worklist.push_back(Call);
  return Clone;
}

void RingSpecializer::redirect(CallInst &Call, Function &Clone,
                               const ArgumentTuple &Tuple) {
  Redirected.push_back({&Call, Call.getCalledFunction(), Call.getAttributes()});
  Call.setCalledFunction(&Clone);
  if (replacesPointer(Tuple) &&
      Call.getAttributes().hasFnAttr(Attribute::Memory))
    Call.setMemoryEffects(
        withoutArguments(Call.getAttributes().getMemoryEffects()));
}

void RingSpecializer::undo() {
  for (const Redirection &R : Redirected) {
    R.Call->setCalledFunction(R.Callee);
    R.Call->setAttributes(R.Attributes);
  }
  // Now they only call the ring, and nobody calls them.
  for (Function *Clone : Clones)
    Clone->eraseFromParent();
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
    if (Function *Clone = getSpecialization(Tuple)) {
      redirect(*Call, *Clone, Tuple);
    } else if (WholeOrNothing) {
      undo();
      SizeLeft = SizeBefore;
      return false;
    }
  }
  // Callees are made after their callers, but for those that close a cycle.
  planInlining(Clones, MaxInlinedSize, SizeLeft);
  return !Redirected.empty();
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
