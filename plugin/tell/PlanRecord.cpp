//===- PlanRecord.cpp - What was decided, as a plan -----------------------===//

#include "plugin/tell/PlanRecord.h"
#include "plugin/ir/Names.h"
#include "plugin/plan/BodyHash.h"
#include "plugin/plan/PlanBook.h"
#include "plugin/plan/PlanOptions.h"
#include "plugin/tell/Decisions.h"
#include "llvm/ADT/StringMap.h"
#include "llvm/ADT/StringSet.h"
#include "llvm/IR/Module.h"
#include "llvm/Support/WithColor.h"
#include <cstdlib>
#include <set>

using namespace llvm;
using namespace llvm::inlinerecursion;

/// \p Decided as an entry; none for a function without a name, and for more
/// copies than plans can ask for.
static std::optional<PlanEntry> makeEntry(const Module &M,
                                          const Decision &Decided) {
  if (Decided.Function.front() == '\1')
    return std::nullopt;
  PlanEntry Entry;
  Entry.Name = getNameInSource(Decided.Function);
  Entry.File = getSourceFile(M).str();
  Entry.Body = Decided.Body;
  Entry.Reason = Decided.Reason;
  Entry.Where = Decided.Where;
  if (Decided.Plan.empty())
    return Entry;
  Expected<PlanSpec> Plan = PlanSpec::parse(Decided.Plan);
  if (!Plan) {
    consumeError(Plan.takeError());
    return std::nullopt;
  }
  Entry.Plan = std::move(*Plan);
  return Entry;
}

static bool handsValuesOn(const Decision &Decided) {
  return StringRef(Decided.Function).contains(ValueSuffix);
}

/// The entries for what was \p Decided about \p M.  A name has one for each
/// place: where a function hands values on to another one beside it, that one
/// is meant, as it is where plans are obeyed.  What is planned for later alone
/// is left until then, which need not be said.
static std::vector<PlanEntry> makeEntries(const Module &M,
                                          ArrayRef<Decision> Decided) {
  StringSet<> HandedOn;
  StringMap<const Decision *> Last;
  for (const Decision &One : Decided) {
    Last[One.Function] = &One;
    if (handsValuesOn(One))
      HandedOn.insert(getNameInSource(One.Function));
  }
  std::vector<PlanEntry> Entries;
  std::set<std::pair<std::string, Place>> Seen;
  for (const Decision &One : Decided) {
    if (One.Plan.empty() && Last[One.Function] != &One)
      continue;
    std::optional<PlanEntry> Entry = makeEntry(M, One);
    if (Entry && handsValuesOn(One) == HandedOn.contains(Entry->Name) &&
        Seen.emplace(Entry->Name, Entry->Where).second)
      Entries.push_back(std::move(*Entry));
  }
  return Entries;
}

void llvm::inlinerecursion::writePlan(const Module &M,
                                      ArrayRef<Decision> Decided) {
  if (!isPlanWritten())
    return;
  const std::optional<std::string> Path = getWrittenPlanFile(M);
  PlanDocument New;
  New.Module = getSourceFile(M).str();
  New.Functions = makeEntries(M, Decided);
  if (!Path || New.Functions.empty())
    return;
  if (Error Failed = addToPlanFile(*Path, std::move(New))) {
    WithColor::error(errs(), "InlineRecursion")
        << "-inlinerecursion-write-plan: " << toString(std::move(Failed))
        << "\n";
    std::exit(1);
  }
}
