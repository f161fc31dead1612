//===- OptionRanges.h - Values that options may not have --------*- C++ -*-===//
//
/// \file
/// The pass takes the values of its options as they are, and divides by one of
/// them.  Here a value out of range is refused as soon as it is read, whichever
/// tool has loaded the library and whichever pass manager it runs: one line
/// that names option, value and range, and the process ends with status 1.
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_PLUGIN_PIPELINE_OPTIONRANGES_H
#define INLINERECURSION_PLUGIN_PIPELINE_OPTIONRANGES_H

namespace llvm {
namespace inlinerecursion {

/// Has the options of the pass and of the plugin refuse what is out of their
/// range.  All of them have to be registered, and none read yet.
void guardOptions();

} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_PLUGIN_PIPELINE_OPTIONRANGES_H
