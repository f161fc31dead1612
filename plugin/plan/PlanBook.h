//===- PlanBook.h - The plans that a compilation obeys ----------*- C++ -*-===//
//
/// \file
/// Finds the entry of a plan file that a function of a module is meant by.
///
///   -inlinerecursion-plan=FILE ---> PlanBook ---> attributes (Planned.h)
///
/// Names are those of the linker or demangled.  Functions of the same name are
/// told apart by their files, of which paths need not agree from the root: of
/// several entries that one counts whose path is the module's, or has most
/// components in common with it at its end.  So a plan that was written on one
/// machine holds on another.
///
//===----------------------------------------------------------------------===//

#ifndef INLINERECURSION_PLUGIN_PLAN_PLANBOOK_H
#define INLINERECURSION_PLUGIN_PLAN_PLANBOOK_H

#include "plugin/plan/PlanFile.h"
#include "llvm/ADT/ArrayRef.h"
#include "llvm/ADT/SmallVector.h"
#include "llvm/ADT/StringMap.h"

namespace llvm {

class Module;

namespace inlinerecursion {

class PlanBook {
public:
  explicit PlanBook(std::vector<PlanDocument> Read);

  /// The plans that the options say are to be obeyed; null if none are.  Read
  /// once in a process, when all complaints are told; ends the process if the
  /// file cannot be read.
  static const PlanBook *get();

  /// The entries for \p Name, a name of the linker, of the source file \p File,
  /// at \p Where; more than one if they cannot be told apart.
  SmallVector<const PlanEntry *, 1> find(StringRef Name, StringRef File,
                                         Place Where) const;

  const std::vector<PlanEntry> &getEntries() const { return Entries; }

private:
  std::vector<PlanEntry> Entries;
  StringMap<SmallVector<const PlanEntry *, 1>> ByName;
};

/// How many components the paths \p A and \p B have in common at their ends,
/// and one more if they are the same.
unsigned countCommonComponents(StringRef A, StringRef B);

/// The source file that \p M is of, as it stands in plan files; empty where the
/// compiler does not say, as flang does not.
StringRef getSourceFile(const Module &M);

} // namespace inlinerecursion
} // namespace llvm

#endif // INLINERECURSION_PLUGIN_PLAN_PLANBOOK_H
