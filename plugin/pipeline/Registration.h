//===- Registration.h - What a PassBuilder is told --------------*- C++ -*-===//
//
/// \file
/// All of the plugin, for the library's entry point and for whoever links the
/// plugin's objects.
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_PLUGIN_PIPELINE_REGISTRATION_H
#define INLINERECURSION_PLUGIN_PIPELINE_REGISTRATION_H

#include "plugin/pipeline/NamedPasses.h"
#include "plugin/pipeline/Pipeline.h"

namespace llvm {
namespace inlinerecursion {

/// Registers names, parsers and extension points with \p PB.
inline void registerPlugin(PassBuilder &PB) {
  registerNamedPasses(PB);
  registerExtensionPoints(PB);
}

} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_PLUGIN_PIPELINE_REGISTRATION_H
