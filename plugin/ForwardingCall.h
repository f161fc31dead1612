//===- ForwardingCall.h - One function for another --------------*- C++ -*-===//
//
/// \file
/// A block that hands all arguments of a function on to another one and returns
/// what that does.
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_PLUGIN_FORWARDINGCALL_H
#define INLINERECURSION_PLUGIN_FORWARDINGCALL_H

namespace llvm {

class BasicBlock;
class Function;

namespace inlinerecursion {

/// A new block of \p F, the last one, that calls \p Target, which has the type
/// of \p F and no variable arguments.  Nothing leads to it yet.
BasicBlock &createForwardingCall(Function &F, Function &Target);

} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_PLUGIN_FORWARDINGCALL_H
