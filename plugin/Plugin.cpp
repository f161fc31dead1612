//===- Plugin.cpp - What a compiler finds in the library ------------------===//
//
/// \file
/// Registration only.  `-load-pass-plugin` and `-fpass-plugin` call
/// llvmGetPassPluginInfo; plain `-load` runs the static initialisers, which
/// make the legacy pass known by its argument.
///
//===----------------------------------------------------------------------===//

#include "pass/InlineRecursion.h"
#include "plugin/pipeline/OptionRanges.h"
#include "plugin/pipeline/Registration.h"
#include "llvm/PassRegistry.h"
#include "llvm/Passes/PassPlugin.h"

using namespace llvm;
using namespace llvm::inlinerecursion;

namespace {
struct PrepareProcess {
  PrepareProcess() {
    initializeInlineRecursionLegacyPass(*PassRegistry::getPassRegistry());
    // All options are there: this file is the last that is linked.
    guardOptions();
  }
};
} // namespace

static PrepareProcess Prepare;

extern "C" LLVM_ATTRIBUTE_WEAK PassPluginLibraryInfo llvmGetPassPluginInfo() {
  return {LLVM_PLUGIN_API_VERSION, "InlineRecursion", "0.1.0", registerPlugin};
}
