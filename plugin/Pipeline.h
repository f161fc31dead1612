//===- Pipeline.h - How the pass gets into a compiler's pipeline -*- C++
//-*-===//
//
/// \file
/// The passes that the plugin offers by name, their parameters, and the places
/// in a default pipeline at which they run.
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_PLUGIN_PIPELINE_H
#define INLINERECURSION_PLUGIN_PIPELINE_H

#include "llvm/IR/PassManager.h"
#include "llvm/Support/Error.h"

namespace llvm {

class PassBuilder;

namespace inlinerecursion {

/// The literal pass, made fit for a process that runs several pipelines at
/// once, and with remarks about what it decided.
class PluginPass : public PassInfoMixin<PluginPass> {
public:
  /// \p Level is 0 to 4; 0 leaves it to `inline-recursion-opt-level`.
  explicit PluginPass(int Level) : Level(Level) {}

  PreservedAnalyses run(Module &M, ModuleAnalysisManager &MAM);
  void printPipeline(raw_ostream &OS,
                     function_ref<StringRef(StringRef)> MapClassName);
  /// What -debug-pass-manager, -print-after and the like call it.
  static StringRef name() { return "InlineRecursionPass"; }

private:
  int Level;
};

/// Reads the parameters of a pass, separated by semicolons: `level=N` with N
/// from 0 to 4.  Returns the level (0 if it is not given), or an error that
/// names what is wrong with which parameter.
Expected<int> parseLevelParameter(StringRef Params);

/// Registers names, parsers and extension points with \p PB.
void registerPipeline(PassBuilder &PB);

} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_PLUGIN_PIPELINE_H
