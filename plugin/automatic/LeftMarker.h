//===- LeftMarker.h - What a compile step has left to the linker *- C++ -*-===//
//
/// \file
/// At the end of a compile step that leaves rings to the linker
/// (`-inlinerecursion-lto=link`): says so in the module (ir/LinkStep.h), so
/// that whoever runs the same pipeline on it again leaves nothing.
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_PLUGIN_AUTOMATIC_LEFTMARKER_H
#define INLINERECURSION_PLUGIN_AUTOMATIC_LEFTMARKER_H

#include "plugin/ir/LinkStep.h"
#include "llvm/IR/PassManager.h"

namespace llvm {
namespace inlinerecursion {

class LeftMarkerPass : public PassInfoMixin<LeftMarkerPass> {
public:
  PreservedAnalyses run(Module &M, ModuleAnalysisManager &) {
    // Full LTO links modules with the flag and without it.
    if (isLinkToCome(M))
      M.addModuleFlag(Module::Max, LeftMark, 1);
    return PreservedAnalyses::all();
  }
  static StringRef name() { return "InlineRecursionLeftMarkerPass"; }
};

} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_PLUGIN_AUTOMATIC_LEFTMARKER_H
