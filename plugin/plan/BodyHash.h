//===- BodyHash.h - Is a function still what a plan was made for -*- C++
//-*-===//
//
/// \file
/// A number for what a function does, as it enters the plugin: instructions,
/// types and constants, without names of values, debug information and
/// attributes.  The same source has the same number with -g and without, at
/// every level, in every process and on every machine; names that the linker
/// gave to local functions count as what they were.  llvm::StructuralHash looks
/// at opcodes only, which a change of a constant leaves as they are.
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_PLUGIN_PLAN_BODYHASH_H
#define INLINERECURSION_PLUGIN_PLAN_BODYHASH_H

#include "llvm/ADT/StringRef.h"
#include <string>

namespace llvm {

class Function;

namespace inlinerecursion {

/// Sixteen hexadecimal digits for \p F, which has a body.
std::string hashBody(const Function &F);

/// \p Name without what the plugin puts behind the name of a function that it
/// passes values to in place of references, and thin link-time optimisation
/// behind the names of local functions that other files call.
std::string getNameInSource(StringRef Name);

} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_PLUGIN_PLAN_BODYHASH_H
