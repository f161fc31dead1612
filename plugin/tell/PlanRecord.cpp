//===- PlanRecord.cpp - What was decided, as a plan -----------------------===//

#include "plugin/tell/PlanRecord.h"
#include "plugin/ir/Names.h"
#include "plugin/plan/BodyHash.h"
#include "plugin/plan/PlanBook.h"
#include "plugin/plan/PlanOptions.h"
#include "plugin/tell/Decisions.h"
#include "llvm/ADT/STLExtras.h"
#include "llvm/IR/Module.h"
#include "llvm/Support/WithColor.h"
#include <cstdlib>

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

/// Puts \p Entry, about the function \p Name, into \p New. A function and what
/// hands values on in its place have one name in plans, which means the latter.
static void add(PlanDocument &New, PlanEntry Entry, StringRef Name) {
  const auto Same = find_if(New.Functions, [&](const PlanEntry &Other) {
    return Other.Name == Entry.Name && Other.Where == Entry.Where;
  });
  if (Same == New.Functions.end())
    New.Functions.push_back(std::move(Entry));
  else if (Name.contains(ValueSuffix))
    *Same = std::move(Entry);
}

void llvm::inlinerecursion::writePlan(const Module &M,
                                      ArrayRef<Decision> Decided) {
  if (!isPlanWritten())
    return;
  const std::optional<std::string> Path = getWrittenPlanFile(M);
  PlanDocument New;
  New.Module = getSourceFile(M).str();
  for (const Decision &One : Decided)
    if (std::optional<PlanEntry> Entry = makeEntry(M, One))
      add(New, std::move(*Entry), StringRef(One.Function));
  if (!Path || New.Functions.empty())
    return;
  if (Error Failed = addToPlanFile(*Path, std::move(New))) {
    WithColor::error(errs(), "InlineRecursion")
        << "-inlinerecursion-write-plan: " << toString(std::move(Failed))
        << "\n";
    std::exit(1);
  }
}
