//===- Plans.cpp - Who has a plan -----------------------------------------===//

#include "plugin/literal/Plans.h"
#include "plugin/ir/Names.h"
#include "plugin/plan/BodyHash.h"
#include "plugin/plan/PlanBook.h"
#include "plugin/plan/PlanOptions.h"
#include "plugin/plan/Planned.h"
#include "llvm/ADT/DenseMap.h"
#include "llvm/ADT/DenseSet.h"
#include "llvm/ADT/STLExtras.h"
#include "llvm/ADT/StringExtras.h"
#include "llvm/IR/DiagnosticInfo.h"
#include "llvm/IR/DiagnosticPrinter.h"
#include "llvm/IR/Module.h"
#include "llvm/Support/Path.h"

using namespace llvm;
using namespace llvm::inlinerecursion;

namespace {
/// What is wrong with an entry of a plan file.  It stands in that file, not in
/// the source.
class PlanFileWarning : public DiagnosticInfo {
public:
  PlanFileWarning(const PlanEntry &Entry, const Twine &Problem)
      : DiagnosticInfo(getKind(), DS_Warning), Entry(Entry),
        Problem(Problem.str()) {}

  void print(DiagnosticPrinter &DP) const override {
    DP << "InlineRecursion: " << Entry.Origin << ": the plan for '"
       << Entry.Name << "' does not count: " << Problem;
  }

private:
  /// One of those that belong to no part of LLVM.
  static int getKind() {
    static const int Kind = getNextAvailablePluginDiagnosticKind();
    return Kind;
  }

  const PlanEntry &Entry;
  const std::string Problem;
};

/// The functions of one module, and the entries that are meant for them.
class Matching {
public:
  Matching(Module &M, const PlanBook &Book)
      : M(M), Book(Book), File(getSourceFile(M)) {}

  void run();

private:
  void findEntries(Function &F, bool IsLate);
  bool isNameOfOne(const PlanEntry &Entry);
  void complainAboutMissing();
  void warn(const PlanEntry &Entry, const Twine &Problem) {
    M.getContext().diagnose(PlanFileWarning(Entry, Problem));
  }

  Module &M;
  const PlanBook &Book;
  const StringRef File;
  /// The functions that each entry may be meant for.
  DenseMap<const PlanEntry *, SmallVector<Function *, 1>> Meant;
  /// The entries whose functions are there.
  DenseSet<const PlanEntry *> Present;
};
} // namespace

void Matching::findEntries(Function &F, bool IsLate) {
  const auto Found = Book.find(F.getName(), File, getPlace(M, IsLate));
  Present.insert(Found.begin(), Found.end());
  for (const PlanEntry *Entry : Found)
    if (Entry->Plan.str() != Found.front()->Plan.str()) {
      warn(*Entry, "so is that of " + Found.front()->Origin +
                       ", and the two differ; remove one of them");
      return;
    }
  if (!Found.empty())
    Meant[Found.front()].push_back(&F);
}

/// Is \p Entry meant for one function, or for those that have its name and what
/// was made of them?
bool Matching::isNameOfOne(const PlanEntry &Entry) {
  const ArrayRef<Function *> Functions = Meant[&Entry];
  const std::string First = getNameInSource(Functions.front()->getName());
  if (all_of(Functions, [&](const Function *F) {
        return getNameInSource(F->getName()) == First;
      }))
    return true;
  warn(Entry, Twine(Functions.size()) +
                  " functions have that name; write it with its parameters, or "
                  "as the linker knows it");
  return false;
}

/// Tells about the entries for this file whose functions are not there.
void Matching::complainAboutMissing() {
  // A linker moves functions, and removes them.
  if (isInLinkStep(M) || File.empty())
    return;
  unsigned Closest = 0;
  for (const PlanEntry &Entry : Book.getEntries())
    Closest = std::max(Closest, countCommonComponents(Entry.File, File));
  auto CountComponents = [](StringRef Path) {
    return unsigned(
        std::distance(sys::path::rbegin(Path), sys::path::rend(Path)));
  };
  for (const PlanEntry &Entry : Book.getEntries()) {
    const unsigned Common = countCommonComponents(Entry.File, File);
    // One path may be the end of the other; what differs is not this file.
    const bool IsThisFile =
        Common == Closest &&
        Common >= std::min(CountComponents(Entry.File), CountComponents(File));
    if (IsThisFile && !Entry.File.empty() && !Present.count(&Entry) &&
        Entry.Where <= Place::Late && !StringRef(Entry.Name).contains('.'))
      warn(Entry, "there is no such function in '" + File +
                      "'; remove it, or write the plan anew");
  }
}

void Matching::run() {
  for (Function &F : M)
    // Of one that hands values on, that one is meant.
    if (!F.isDeclaration() && F.hasName() &&
        !M.getFunction((F.getName() + ValueSuffix).str()))
      for (bool IsLate : {false, true})
        findEntries(F, IsLate);
  // In the order of the file.
  for (const PlanEntry &Entry : Book.getEntries()) {
    if (!Meant.count(&Entry) || !isNameOfOne(Entry))
      continue;
    for (Function *F : Meant[&Entry]) {
      if (!Entry.Body.empty() && Entry.Body != getBodyHash(*F))
        warn(Entry, "it was made for another body of the function; write the "
                    "plan anew, or remove its 'body:'");
      else
        setPlan(*F, Entry.Plan, Entry.Origin,
                Entry.Where == Place::Late || Entry.Where == Place::LinkLate);
    }
  }
  complainAboutMissing();
}

PreservedAnalyses PlansPass::run(Module &M, ModuleAnalysisManager &) {
  const PlanBook *Book = PlanBook::get();
  if (!Book && !isPlanWritten())
    return PreservedAnalyses::all();
  beginPlans(M);
  for (Function &F : M)
    if (!F.isDeclaration())
      F.addFnAttr(BodyMark, hashBody(F));
  if (Book)
    Matching(M, *Book).run();
  // No analysis rests on these attributes.
  return PreservedAnalyses::all();
}

void PlansPass::printPipeline(raw_ostream &OS,
                              function_ref<StringRef(StringRef)>) {
  OS << PlansName;
}
