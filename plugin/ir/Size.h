//===- Size.h - What a function takes ---------------------------*- C++ -*-===//
//
/// \file
/// Beside getCodeSize(), which the pass's collaborators use as well
/// (host/InliningPlan.h).
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_PLUGIN_IR_SIZE_H
#define INLINERECURSION_PLUGIN_IR_SIZE_H

#include <cstdint>

namespace llvm {

class Function;

namespace inlinerecursion {

/// The local variables of \p F in memory, as far as their size is known
/// (bytes).
uint64_t getFrameSize(const Function &F);

/// Are they more than may stand in one frame several times?
bool hasLargeFrame(const Function &F);

} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_PLUGIN_IR_SIZE_H
