//===- FunctionSpecializeAction.h - Constants around a ring -----*- C++ -*-===//
#ifndef INLINERECURSION_HOST_FUNCTIONSPECIALIZEACTION_H
#define INLINERECURSION_HOST_FUNCTIONSPECIALIZEACTION_H

#include <map>
#include <set>

namespace llvm {

class CallInst;
class Function;
class Module;

/// Specialises functions for the constants that their callers pass.
class FunctionSpecializeAction {
public:
  /// The calls worth specialising, per called function.
  std::map<Function *, std::set<CallInst *>> selectCI(Module &M, bool Flag);

  /// Specialises the \p Selected calls but none of the \p Excluded ones.
  /// Returns true if the module was changed.
  bool transform(Module &M,
                 std::map<Function *, std::set<CallInst *>> &Selected,
                 const std::set<CallInst *> &Excluded);
};

} // namespace llvm

#endif // INLINERECURSION_HOST_FUNCTIONSPECIALIZEACTION_H
