//===- Printer.h - What the pass would decide -------------------*- C++ -*-===//
//
/// \file
/// `print<inlinerecursion>`: for each directly recursive function the summary
/// of its costing record and what the pass would do with it, and why.
///
/// It runs the pass for real, on a copy of the module, so that clone budget and
/// the calls added by earlier chains are those of a real run.  The module
/// itself stays as it is.
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_PLUGIN_LITERAL_PRINTER_H
#define INLINERECURSION_PLUGIN_LITERAL_PRINTER_H

#include "llvm/IR/PassManager.h"

namespace llvm {
namespace inlinerecursion {

/// Prints to dbgs(), where the costing record prints its summary.
class PrinterPass : public PassInfoMixin<PrinterPass> {
public:
  /// \p Level is 0 to 4; 0 leaves it to `inline-recursion-opt-level`.
  explicit PrinterPass(int Level) : Level(Level) {}

  PreservedAnalyses run(Module &M, ModuleAnalysisManager &MAM);
  void printPipeline(raw_ostream &OS,
                     function_ref<StringRef(StringRef)> MapClassName);
  static StringRef name() { return "InlineRecursionPrinterPass"; }
  /// A user who asks for it by name gets it, whatever else is skipped.
  static bool isRequired() { return true; }

private:
  int Level;
};

} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_PLUGIN_LITERAL_PRINTER_H
