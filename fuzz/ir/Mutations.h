//===- Mutations.h - Random changes that make IR recursive ------*- C++ -*-===//
//
/// \file
/// LLVM's own mutations of IR, with some more for what the plugin is about:
/// self calls, calls from outside with constants, remainders at the entry,
/// attributes that decide what may be copied.
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_FUZZ_IR_MUTATIONS_H
#define INLINERECURSION_FUZZ_IR_MUTATIONS_H

#include "llvm/FuzzMutate/IRMutator.h"
#include <memory>

namespace llvm {
namespace inlinerecursion {

std::unique_ptr<IRMutator> makeMutator();

/// Mutates \p M once; false if the verifier does not accept what came of it.
/// LLVM's mutations do not know every rule, so that happens.
bool mutateOnce(IRMutator &Mutator, Module &M, unsigned Seed, size_t Size,
                size_t MaxSize);

} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_FUZZ_IR_MUTATIONS_H
