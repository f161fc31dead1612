//===- NamedPasses.h - The passes that the plugin offers --------*- C++ -*-===//
//
/// \file
/// The table of what can be written behind `-passes=`: names, parameters, and
/// what they stand for.
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_PLUGIN_PIPELINE_NAMEDPASSES_H
#define INLINERECURSION_PLUGIN_PIPELINE_NAMEDPASSES_H

namespace llvm {

class PassBuilder;

namespace inlinerecursion {

/// Registers names and parsers with \p PB.
void registerNamedPasses(PassBuilder &PB);

} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_PLUGIN_PIPELINE_NAMEDPASSES_H
