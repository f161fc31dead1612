//===- PluginPass.h - The literal pass, told about --------------*- C++ -*-===//
//
/// \file
/// The literal pass, made fit for a process that runs several pipelines at
/// once, and with remarks about what it decided.  Where nobody listens it runs
/// unobserved.
///
/// A user wants to read once about a function what became of it.  Where passes
/// follow that may still change that, the last word is left to them: to
/// AutoPass about what the pass has costed and refused (the pass's own reason
/// is an analysis remark then), and to RingInliningPass about rings.  With that
/// one to come, rings that sources ask for and the pass refuses are built here,
/// too (RefusedRequests.h).
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_PLUGIN_LITERAL_PLUGINPASS_H
#define INLINERECURSION_PLUGIN_LITERAL_PLUGINPASS_H

#include "llvm/IR/PassManager.h"

namespace llvm {
namespace inlinerecursion {

class PluginPass : public PassInfoMixin<PluginPass> {
public:
  /// Which passes come behind it and have the last word.
  struct Followers {
    bool RingInlining = false;
    bool Auto = false;
    /// Not only of what is told, but also of what is counted.
    bool Summary = false;
  };

  /// \p Level is 0 to 4; 0 leaves it to `inline-recursion-opt-level`.
  explicit PluginPass(int Level) : PluginPass(Level, Followers()) {}
  PluginPass(int Level, Followers Next) : Level(Level), Next(Next) {}

  PreservedAnalyses run(Module &M, ModuleAnalysisManager &MAM);
  void printPipeline(raw_ostream &OS,
                     function_ref<StringRef(StringRef)> MapClassName);
  /// What -debug-pass-manager, -print-after and the like call it.
  static StringRef name() { return "InlineRecursionPass"; }

private:
  int Level;
  Followers Next;
};

/// Prints \p Name with the parameter of the level, if one is given.
void printWithLevel(raw_ostream &OS, StringRef Name, int Level);

} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_PLUGIN_LITERAL_PLUGINPASS_H
