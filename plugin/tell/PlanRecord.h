//===- PlanRecord.h - What was decided, as a plan ---------------*- C++ -*-===//
//
/// \file
/// Writes the decisions about a module to the plan file that
/// -inlinerecursion-write-plan names.  Obeyed, it makes the same object again.
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_PLUGIN_TELL_PLANRECORD_H
#define INLINERECURSION_PLUGIN_TELL_PLANRECORD_H

#include "llvm/ADT/ArrayRef.h"

namespace llvm {

class Module;

namespace inlinerecursion {

struct Decision;

/// Writes \p Decided about \p M, if that is wanted.  Ends the process if the
/// file cannot be written.
void writePlan(const Module &M, ArrayRef<Decision> Decided);

} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_PLUGIN_TELL_PLANRECORD_H
