//===- PlanOptions.h - Which plan files a compilation has -------*- C++ -*-===//
//
/// \file
/// The two options, and what they mean for a module.
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_PLUGIN_PLAN_PLANOPTIONS_H
#define INLINERECURSION_PLUGIN_PLAN_PLANOPTIONS_H

#include "llvm/ADT/StringRef.h"
#include "llvm/IR/PassManager.h"
#include <optional>
#include <string>

namespace llvm {

class Module;

namespace inlinerecursion {

/// The plan file to obey; empty if there is none.
StringRef getObeyedPlanFile();

/// Is a plan file to be written?
bool isPlanWritten();

/// The file that the decisions about \p M are to be written to; none if there
/// is no such file, and the user has been told why.
std::optional<std::string> getWrittenPlanFile(const Module &M);

} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_PLUGIN_PLAN_PLANOPTIONS_H
