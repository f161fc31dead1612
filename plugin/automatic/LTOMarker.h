//===- LTOMarker.h - What a compile step tells the link step ----*- C++ -*-===//
//
/// \file
/// At the end of a compile step with an optimising linker to come, the module
/// is marked, so that whoever runs the same pipeline on it again knows:
///
///  - that it is a link step, which plans tell from a compile step
///    (plan/Planned.h);
///  - if rings were left to it (`-inlinerecursion-lto=link`), so that it leaves
///    nothing itself (ir/LinkStep.h).
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_PLUGIN_AUTOMATIC_LTOMARKER_H
#define INLINERECURSION_PLUGIN_AUTOMATIC_LTOMARKER_H

#include "plugin/ir/LinkStep.h"
#include "plugin/policy/Bounds.h"
#include "llvm/IR/PassManager.h"

namespace llvm {
namespace inlinerecursion {

class LTOMarkerPass : public PassInfoMixin<LTOMarkerPass> {
public:
  PreservedAnalyses run(Module &M, ModuleAnalysisManager &) {
    // Full LTO links modules with the flags and without them.
    if (isLinkToCome(M) && !M.getModuleFlag(CompiledMark)) {
      M.addModuleFlag(Module::Max, CompiledMark, 1);
      if (getDefaultBounds().LeavesToLink)
        M.addModuleFlag(Module::Max, LeftMark, 1);
    }
    return PreservedAnalyses::all();
  }
  void printPipeline(raw_ostream &OS, function_ref<StringRef(StringRef)>) {
    OS << LTOMarkerName;
  }
  static StringRef name() { return "InlineRecursionLTOMarkerPass"; }
};

} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_PLUGIN_AUTOMATIC_LTOMARKER_H
