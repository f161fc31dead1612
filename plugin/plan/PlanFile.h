//===- PlanFile.h - Plans of many functions, as a file ----------*- C++ -*-===//
//
/// \file
/// A plan file is YAML, one document for each source file or one for all:
///
///   ---
///   version:         1
///   module:          src/tree.c
///   functions:
///     - name:            walk
///       plan:            ring copies=3 guard staggered no-pass-sum
///       body:            3f2a9c0d11e2ab47
///       reason:          ring of 3 copies by the automatic policy
///   ...
///
/// All keys of an entry but `name` and `plan` may be missing:
///
///   name    as the linker knows the function, or demangled, with or without
///           the types of its parameters
///   plan    what is to become of it (PlanSpec.h)
///   file    the source file that it is from, in place of `module`
///   where   early, late, link or link-late (enum Place); early
///   body    its hash (BodyHash.h); the entry does not count if it differs
///   reason  for readers
///
/// What is wrong in a file is told in one line each, and what is wrong does not
/// count: a plan is never worth a failed compilation.  A file that cannot be
/// read at all is another matter, as somebody has named the wrong one.
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_PLUGIN_PLAN_PLANFILE_H
#define INLINERECURSION_PLUGIN_PLAN_PLANFILE_H

#include "plugin/plan/PlanSpec.h"
#include "llvm/ADT/StringRef.h"
#include "llvm/Support/Error.h"
#include <string>
#include <vector>

namespace llvm {
namespace inlinerecursion {

/// Which look at the function an entry is for.
enum class Place {
  /// In front of the inliner.
  Early,
  /// Behind it.
  Late,
  /// The same two, in a link step.
  Link,
  LinkLate
};

/// As it stands in files.
StringRef getPlaceName(Place Where);

/// One function in a file.
struct PlanEntry {
  std::string Name;
  std::string File;
  std::string Body;
  std::string Reason;
  Place Where = Place::Early;
  PlanSpec Plan;
  /// `FILE:LINE`; empty for what is not read from a file.
  std::string Origin;
};

/// The entries of one source file, or of several.
struct PlanDocument {
  /// Empty where none is named.
  std::string Module;
  std::vector<PlanEntry> Functions;
};

/// Reads \p Text, the file \p Name.  Each entry has a file if it or its
/// document names one.  Everything that is wrong is appended to \p Complaints
/// as one line, and left out.
std::vector<PlanDocument> readPlans(StringRef Text, StringRef Name,
                                    std::vector<std::string> &Complaints);

/// As readPlans() reads them.
std::string printPlans(const std::vector<PlanDocument> &Documents);

/// Puts \p New into the file \p Path, in place of what stands there about the
/// same functions; the file need not exist.  Documents and entries are in the
/// order of their names, whoever wrote them first.  Several processes and
/// threads may write to one file at a time.
Error addToPlanFile(StringRef Path, PlanDocument New);

} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_PLUGIN_PLAN_PLANFILE_H
