//===- States.cpp - What constants do along a recursion -------------------===//

#include "plugin/recursion/States.h"
#include "host/DirectCalls.h"
#include "host/InliningPlan.h"
#include "plugin/recursion/FoldedBody.h"
#include "llvm/ADT/STLExtras.h"
#include "llvm/ADT/SetVector.h"
#include "llvm/ADT/SmallBitVector.h"
#include "llvm/ADT/SmallPtrSet.h"
#include "llvm/IR/Constants.h"
#include <map>
#include <optional>

using namespace llvm;
using namespace llvm::inlinerecursion;

uint64_t StateSet::getSize() const {
  uint64_t Size = 0;
  for (const State &S : States)
    Size += S.Size;
  return Size;
}

double llvm::inlinerecursion::getSavedShare(ArrayRef<State> States) {
  // Every activation counts the same, however much it does: of how often a
  // state is met nothing is known.
  double Shares = 0;
  for (const State &S : States)
    Shares += S.Time > 0 ? S.Saved / S.Time : 0;
  return States.empty() ? 0 : Shares / States.size();
}

bool StateSet::isKnown(unsigned Index) const {
  return any_of(States, [Index](const State &S) {
    return S.Arguments[Index] != nullptr;
  });
}

SmallVector<unsigned, 4> StateSet::getKnownArguments() const {
  SmallVector<unsigned, 4> Known;
  for (unsigned I = 0; !empty() && I != States.front().Arguments.size(); ++I)
    if (isKnown(I))
      Known.push_back(I);
  return Known;
}

/// The part of what is saved that is enough to do with fewer states.
static constexpr double EnoughShare = 0.9;

/// Is \p C worth to be followed?  Where data is says nothing about it, and
/// makes states of what differs in nothing else.
static bool isTelling(const Constant &C) {
  if (!C.getType()->isPointerTy())
    return true;
  const Value *Base = C.stripInBoundsConstantOffsets();
  const auto *Global = dyn_cast<GlobalVariable>(Base);
  return isa<Function>(Base) || isa<ConstantPointerNull>(Base) ||
         (Global && Global->isConstant());
}

/// \p Tuple without what is not worth to be followed.
static ArgumentTuple keepTelling(ArgumentTuple Tuple) {
  for (Constant *&C : Tuple)
    if (C && !isTelling(*C))
      C = nullptr;
  return Tuple;
}

/// Is \p Call of \p F one from outside with a constant worth to be followed?
static bool isEntry(const CallBase &Call, const Function &F) {
  return !isSelfCall(Call) &&
         hasConstant(keepTelling(getConstantArguments(Call, F)));
}

bool llvm::inlinerecursion::isEnteredWithConstants(const Function &F) {
  return anyCallOf<CallBase>(
      F, [&F](const CallBase &Call) { return isEntry(Call, F); });
}

namespace {
/// The search from the calls from outside of one function.
class StateSearch {
public:
  StateSearch(Function &F, FunctionAnalysisManager &FAM,
              std::optional<ArrayRef<unsigned>> Wanted = std::nullopt)
      : F(F), Size(getCodeSize(F)), Folder(F, FAM), Wanted(Wanted) {}

  StateSet run();

private:
  enum Outcome { Closed, Retry, OutOfWork };

  bool searchFrom(CallBase &Entry);
  Outcome closeAround(const ArgumentTuple &Passed, SmallBitVector &Known);
  void dropIdle(const ArgumentTuple &Passed, SmallBitVector &Known);
  void takeBack();
  Outcome closeOver(const ArgumentTuple &Entry, SmallBitVector &Known);
  Outcome follow(size_t From, CallBase &Call, SmallBitVector &Known);
  std::optional<unsigned> addState(const ArgumentTuple &Tuple);
  void dropGrowing(SmallBitVector &Known);

  Function &F;
  const unsigned Size;
  FoldedBody Folder;
  /// The arguments that states may be of; none if that is to be found out.
  const std::optional<ArrayRef<unsigned>> Wanted;
  unsigned Work = 0;
  StateSet Found;
  std::map<ArgumentTuple, unsigned> Numbers;
  /// How many states there were in front of the call from outside that is
  /// looked at.
  size_t Before = 0;
};
} // namespace

/// The argument by which the tuples of \p Passed, two or more, can be told from
/// each other; none if there is no such number.
static std::optional<unsigned> findSelector(ArrayRef<ArgumentTuple> Passed) {
  for (unsigned I = 0; I != Passed.front().size(); ++I) {
    SmallPtrSet<Constant *, 16> Values;
    for (const ArgumentTuple &Tuple : Passed)
      if (isa_and_nonnull<ConstantInt>(Tuple[I]))
        Values.insert(Tuple[I]);
    if (Values.size() == Passed.size())
      return I;
  }
  return std::nullopt;
}

/// \p Tuple without the arguments that are not in \p Known.
static ArgumentTuple restrict(ArgumentTuple Tuple,
                              const SmallBitVector &Known) {
  for (unsigned I = 0; I != Tuple.size(); ++I)
    if (!Known.test(I))
      Tuple[I] = nullptr;
  return Tuple;
}

/// The number of the state \p Tuple; none if there are too many.
std::optional<unsigned> StateSearch::addState(const ArgumentTuple &Tuple) {
  const auto [Place, IsNew] =
      Numbers.try_emplace(Tuple, unsigned(Found.States.size()));
  if (!IsNew)
    return Place->second;
  if (Found.States.size() - Before == MaxStates) {
    Numbers.erase(Place);
    return std::nullopt;
  }
  Found.States.emplace_back().Arguments = Tuple;
  return Place->second;
}

/// Takes out of \p Known the argument that takes most values.
void StateSearch::dropGrowing(SmallBitVector &Known) {
  unsigned Most = 0, Growing = 0;
  for (unsigned I : Known.set_bits()) {
    SmallPtrSet<Constant *, 16> Values;
    for (size_t S = Before; S != Found.States.size(); ++S)
      Values.insert(Found.States[S].Arguments[I]);
    if (Values.size() > Most) {
      Most = Values.size();
      Growing = I;
    }
  }
  Known.reset(Growing);
  Found.Growing = F.getArg(Growing);
}

/// Adds what \p Call, made in the state \p From, leads to.
StateSearch::Outcome StateSearch::follow(size_t From, CallBase &Call,
                                         SmallBitVector &Known) {
  // What is not known in one trip is lost.
  const SmallVector<ArgumentTuple, 4> EachTrip = Folder.getPassed(Call);
  SmallBitVector Still = Known;
  for (const ArgumentTuple &Trip : EachTrip)
    for (unsigned I : Known.set_bits())
      if (!Trip[I] || !isTelling(*Trip[I]))
        Still.reset(I);
  if (Still != Known) {
    Known = Still;
    return Retry;
  }
  SmallVector<ArgumentTuple, 4> Passed;
  for (const ArgumentTuple &Trip : EachTrip)
    if (const ArgumentTuple Tuple = restrict(Trip, Known);
        !is_contained(Passed, Tuple))
      Passed.push_back(Tuple);
  std::optional<unsigned> Selector;
  if (Passed.size() > 1 && !(Selector = findSelector(Passed))) {
    for (unsigned I : Still.set_bits())
      if (any_of(Passed, [&](const ArgumentTuple &Tuple) {
            return Tuple[I] != Passed.front()[I];
          }))
        Known.reset(I);
    return Retry;
  }
  for (const ArgumentTuple &Tuple : Passed) {
    const std::optional<unsigned> Number = addState(Tuple);
    if (!Number) {
      dropGrowing(Known);
      return Retry;
    }
    Found.States[From].Next.push_back({&Call, *Number, Selector});
  }
  return Closed;
}

/// Follows the self calls from \p Entry on with the arguments in \p Known.
/// Where that does not end, or an argument is not known everywhere, it is taken
/// out of \p Known.
StateSearch::Outcome StateSearch::closeOver(const ArgumentTuple &Entry,
                                            SmallBitVector &Known) {
  addState(restrict(Entry, Known));
  for (size_t Next = Before; Next < Found.States.size(); ++Next) {
    Work += Size;
    if (Work > MaxWork)
      return OutOfWork;
    Folder.fold(Found.States[Next].Arguments);
    for (CallBase *Call : Folder.getSelfCalls())
      if (const Outcome Result = follow(Next, *Call, Known); Result != Closed)
        return Result;
    State &S = Found.States[Next];
    S.Size = Folder.getSize();
    S.Time = Folder.getTime();
    S.Saved = Folder.getSaved();
  }
  return Closed;
}

/// The states that were found since Before are none.
void StateSearch::takeBack() {
  for (size_t S = Before; S != Found.States.size(); ++S)
    Numbers.erase(Found.States[S].Arguments);
  Found.States.resize(Before);
}

/// Finds the states that a call with \p Passed leads to, with as many arguments
/// of \p Known as there can be.  Retry if there are none.
StateSearch::Outcome StateSearch::closeAround(const ArgumentTuple &Passed,
                                              SmallBitVector &Known) {
  while (Known.any()) {
    const ArgumentTuple First = restrict(Passed, Known);
    if (Numbers.count(First))
      return Closed;
    const Outcome Result = closeOver(First, Known);
    if (Result == Closed)
      return Closed;
    takeBack();
    if (Result == OutOfWork)
      return OutOfWork;
  }
  return Retry;
}

/// Takes arguments out of \p Known that make more states and save next to
/// nothing.
void StateSearch::dropIdle(const ArgumentTuple &Passed, SmallBitVector &Known) {
  for (unsigned I = 0; I != Passed.size(); ++I) {
    const ArrayRef<State> New = ArrayRef(Found.States).drop_front(Before);
    if (!Known.test(I) || Known.count() == 1 || New.size() == 1)
      continue;
    const size_t Count = New.size();
    const double Share = inlinerecursion::getSavedShare(New);
    const Argument *const Growing = Found.Growing;
    std::vector<State> Kept(New.begin(), New.end());
    takeBack();
    SmallBitVector Fewer = Known;
    Fewer.reset(I);
    if (closeAround(Passed, Fewer) == Closed) {
      const auto Tried = ArrayRef(Found.States).drop_front(Before);
      // One state for all that is left is what constant propagation between
      // functions finds by itself, where the function is local.
      if (Tried.size() > (F.hasLocalLinkage() ? 1 : 0) &&
          Tried.size() < Count &&
          inlinerecursion::getSavedShare(Tried) >= Share * EnoughShare) {
        Known = Fewer;
        continue;
      }
    }
    takeBack();
    Found.Growing = Growing;
    for (State &S : Kept) {
      Numbers[S.Arguments] = Found.States.size();
      Found.States.push_back(std::move(S));
    }
  }
}

/// Adds the states that \p Entry leads to.  False if there is no more time to
/// look.
bool StateSearch::searchFrom(CallBase &Entry) {
  const ArgumentTuple Passed = keepTelling(getConstantArguments(Entry, F));
  SmallBitVector Known(Passed.size());
  for (unsigned I = 0; I != Passed.size(); ++I)
    Known[I] = Passed[I] != nullptr && (!Wanted || is_contained(*Wanted, I));

  Before = Found.States.size();
  const Outcome Result = closeAround(Passed, Known);
  if (Result != Closed)
    return Result != OutOfWork;
  if (!Wanted)
    dropIdle(Passed, Known);
  Found.Entries.emplace_back(&Entry, Numbers.at(restrict(Passed, Known)));
  return true;
}

/// The calls of \p F from outside with constants, in the order of the module:
/// that of the use list differs between ways to make the same module, and what
/// is found from one call counts for the next one.
static SmallVector<CallBase *, 8> findEntries(Function &F) {
  SmallPtrSet<const Function *, 8> Callers;
  for (const CallBase *Call : findCallsOf<CallBase>(F))
    if (isEntry(*Call, F))
      Callers.insert(Call->getFunction());
  SmallVector<CallBase *, 8> Entries;
  if (Callers.empty())
    return Entries;
  const auto IsF = [&F](const Function &Callee) { return &Callee == &F; };
  for (Function &Caller : *F.getParent())
    if (Callers.contains(&Caller))
      for (CallBase *Call : findCallsIn<CallBase>(Caller, IsF))
        if (isEntry(*Call, F))
          Entries.push_back(Call);
  return Entries;
}

StateSet StateSearch::run() {
  for (CallBase *Call : findEntries(F))
    if (!searchFrom(*Call))
      break;
  return std::move(Found);
}

StateSet llvm::inlinerecursion::findStates(Function &F,
                                           FunctionAnalysisManager &FAM) {
  if (!isSpecializable(F) || !isEnteredWithConstants(F))
    return {};
  return StateSearch(F, FAM).run();
}

StateSet llvm::inlinerecursion::findStatesOf(Function &F,
                                             ArrayRef<unsigned> Wanted,
                                             FunctionAnalysisManager &FAM) {
  if (!isSpecializable(F) || !isEnteredWithConstants(F))
    return {};
  return StateSearch(F, FAM, Wanted).run();
}
