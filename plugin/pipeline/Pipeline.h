//===- Pipeline.h - Where the plugin stands in a pipeline -------*- C++ -*-===//
//
/// \file
/// The way of a module through the plugin, and the places in a default pipeline
/// at which it runs.
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_PLUGIN_PIPELINE_PIPELINE_H
#define INLINERECURSION_PLUGIN_PIPELINE_PIPELINE_H

#include "llvm/IR/PassManager.h"

namespace llvm {

class PassBuilder;

namespace inlinerecursion {

struct PassParameters;

/// The whole way of a module through the plugin, up to the inliner.
/// \p SecondLookFollows: BehindInlinerPass stands behind the inliner.
void addPipeline(ModulePassManager &MPM, const PassParameters &Parameters,
                 bool SecondLookFollows);

/// Registers the places in the default pipelines with \p PB.
void registerExtensionPoints(PassBuilder &PB);

} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_PLUGIN_PIPELINE_PIPELINE_H
