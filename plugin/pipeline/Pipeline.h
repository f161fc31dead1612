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

#include "plugin/automatic/AutoPass.h"
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

/// What can stand between the angle brackets behind a pass's name.
struct PassParameters {
  /// `level=N`, 0 to 4; 0 leaves it to `inline-recursion-opt-level`.
  int Level = 0;
  /// `find-requests` or `no-find-requests`; without either, the option
  /// `inlinerecursion-find-requests` decides.
  bool FindRequests;
  /// `auto` or `no-auto`; without either, the option `inlinerecursion-auto`
  /// decides.
  bool Auto;
  /// `copies=N`, `function-growth=N`, `module-growth=N`.
  AutoLimits Limits;

  PassParameters();
};

/// Which of them a pass takes.
struct AcceptedParameters {
  bool Level = false;
  bool FindRequests = false;
  bool Auto = false;
  bool Limits = false;
};

/// Reads \p Text, parameters separated by semicolons.  Returns an error that
/// names the parameter if one is unknown, malformed or not \p Accepted.
Expected<PassParameters> parsePassParameters(StringRef Text,
                                             AcceptedParameters Accepted);

/// Registers names, parsers and extension points with \p PB.
void registerPipeline(PassBuilder &PB);

} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_PLUGIN_PIPELINE_H
