//===- Copies.cpp - Copies of a function, linked and marked ---------------===//

#include "plugin/rewrite/Copies.h"
#include "plugin/ir/ForwardingCall.h"
#include "llvm/IR/Function.h"
#include "llvm/IR/InstrTypes.h"
#include <algorithm>

using namespace llvm;
using namespace llvm::inlinerecursion;

void llvm::inlinerecursion::redirectCallsIn(Function &Caller, Function &From,
                                            Function &To) {
  redirectCalls(From, To, [&Caller](const CallBase &Call) {
    return Call.getFunction() == &Caller;
  });
}

void llvm::inlinerecursion::mergeIntoCallers(Function &F) {
  F.removeFnAttr(Attribute::NoInline);
  F.addFnAttr(Attribute::AlwaysInline);
}

/// Whether the processor keeps up with a function that others are merged into
/// depends on which of its branches share a cache line.  With an alignment of
/// 16 bytes, that depends on what stands in front of it in the module: the same
/// search for subsets runs at plain clang's speed or 1.4 times as fast.
static constexpr uint64_t MergedAlignment = 64;

void llvm::inlinerecursion::keepFunction(Function &F) {
  F.removeFnAttr(Attribute::AlwaysInline);
  F.addFnAttr(Attribute::NoInline);
  F.setAlignment(std::max(F.getAlign().valueOrOne(), Align(MergedAlignment)));
}
