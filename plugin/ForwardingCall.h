//===- ForwardingCall.h - One function for another --------------*- C++ -*-===//
//
/// \file
/// A block that hands all arguments of a function on to another one and returns
/// what that does.
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_PLUGIN_FORWARDINGCALL_H
#define INLINERECURSION_PLUGIN_FORWARDINGCALL_H

#include "llvm/ADT/ArrayRef.h"

namespace llvm {

class BasicBlock;
class Function;
class Value;

namespace inlinerecursion {

/// A new block of \p F, the last one, that calls \p Target, which takes what
/// \p F takes and \p More behind it, no variable arguments, and returns what
/// \p F returns.  Nothing leads to it yet.
BasicBlock &createForwardingCall(Function &F, Function &Target,
                                 ArrayRef<Value *> More = {});

} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_PLUGIN_FORWARDINGCALL_H
