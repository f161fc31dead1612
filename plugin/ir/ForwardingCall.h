//===- ForwardingCall.h - One function for another --------------*- C++ -*-===//
//
/// \file
/// Calls that lead to another function than before: those that are there, and
/// a block that hands all arguments of a function on and returns what the other
/// one does.
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_PLUGIN_IR_FORWARDINGCALL_H
#define INLINERECURSION_PLUGIN_IR_FORWARDINGCALL_H

#include "llvm/ADT/ArrayRef.h"
#include "llvm/ADT/STLFunctionalExtras.h"

namespace llvm {

class BasicBlock;
class CallBase;
class Function;
class Value;

namespace inlinerecursion {

/// A new block of \p F, the last one, that calls \p Target, which takes what
/// \p F takes and \p More behind it, no variable arguments, and returns what
/// \p F returns.  Nothing leads to it yet.
BasicBlock &createForwardingCall(Function &F, Function &Target,
                                 ArrayRef<Value *> More = {});

/// Lets the direct calls of \p From that are \p Wanted call \p To, which has
/// its type.
void redirectCalls(Function &From, Function &To,
                   function_ref<bool(const CallBase &)> Wanted);

} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_PLUGIN_IR_FORWARDINGCALL_H
