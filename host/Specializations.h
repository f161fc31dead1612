//===- Specializations.h - Copies for known arguments -----------*- C++ -*-===//
//
/// \file
/// Copies of one function in which constants stand in the place of arguments:
/// one for each tuple of constants.  Folding and pruning happen while a copy is
/// made (CloneAndPruneFunctionInto), so that the calls which remain in it show
/// what it hands on.
///
/// Nothing is decided here.  Which tuples, how many, and which calls are led to
/// the copies is up to those who ask: the ring's hand-off
/// (FunctionSpecializeAction.h), and the plugin's policy.  Both can take back
/// everything.
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_HOST_SPECIALIZATIONS_H
#define INLINERECURSION_HOST_SPECIALIZATIONS_H

#include "llvm/ADT/ArrayRef.h"
#include "llvm/ADT/DenseMap.h"
#include "llvm/ADT/SmallVector.h"
#include "llvm/IR/Attributes.h"
#include <map>

namespace llvm {

class Argument;
class CallBase;
class Constant;
class Function;

namespace inlinerecursion {

/// One entry per formal argument: the constant that stands in its place, or
/// null where the argument is left open.
using ArgumentTuple = SmallVector<Constant *, 4>;

/// May the constants of a call be put in the place of \p A?
bool isReplaceable(const Argument &A);

/// May \p C stand in the place of an argument, every time it is used?
bool isLastingConstant(const Constant &C);

/// What \p Call passes to \p Callee, whose type it has.
ArgumentTuple getConstantArguments(const CallBase &Call,
                                   const Function &Callee);

inline bool hasConstant(const ArgumentTuple &Tuple) {
  return any_of(Tuple, [](Constant *C) { return C != nullptr; });
}

/// May \p F be cloned with other values in the place of its arguments?
bool isSpecializable(const Function &F);

class Specializations {
public:
  /// Of \p Pattern, for which isSpecializable() holds.
  explicit Specializations(Function &Pattern) : Pattern(Pattern) {}

  /// The calls of the pattern and what they are in a copy, null where they have
  /// been folded away.
  using CallMap = DenseMap<const CallBase *, CallBase *>;

  /// The copy for \p Tuple; null if it was not made yet.
  Function *find(const ArgumentTuple &Tuple) const;

  /// Makes the copy for \p Tuple, which there must not be yet, and fills in
  /// where the calls of the pattern have gone.
  Function &make(const ArgumentTuple &Tuple, CallMap *Calls = nullptr);

  /// Makes \p Call, which passes \p Tuple, call the copy for it.
  void redirect(CallBase &Call, const ArgumentTuple &Tuple);

  /// Was any call redirected?
  bool anyRedirected() const { return !Redirected.empty(); }

  /// In the order of making.
  ArrayRef<Function *> getCopies() const { return Copies; }

  /// Everything as it was before.
  void undo();

private:
  struct Redirection {
    CallBase *Call;
    Function *Callee;
    AttributeList Attributes;
  };

  Function &Pattern;
  std::map<ArgumentTuple, Function *> ByTuple;
  SmallVector<Function *, 0> Copies;
  /// How the calls were.
  SmallVector<Redirection, 0> Redirected;
};

} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_HOST_SPECIALIZATIONS_H
