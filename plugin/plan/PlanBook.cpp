//===- PlanBook.cpp - The plans that a compilation obeys ------------------===//

#include "plugin/plan/PlanBook.h"
#include "plugin/plan/BodyHash.h"
#include "plugin/plan/PlanOptions.h"
#include "llvm/ADT/STLExtras.h"
#include "llvm/ADT/StringExtras.h"
#include "llvm/Demangle/Demangle.h"
#include "llvm/IR/Module.h"
#include "llvm/Support/MemoryBuffer.h"
#include "llvm/Support/Path.h"
#include "llvm/Support/WithColor.h"
#include <cstdlib>

using namespace llvm;
using namespace llvm::inlinerecursion;

unsigned llvm::inlinerecursion::countCommonComponents(StringRef A,
                                                      StringRef B) {
  // The same path is closer than one that goes on.
  unsigned Count = A == B && !A.empty();
  auto ItA = sys::path::rbegin(A), ItB = sys::path::rbegin(B);
  while (ItA != sys::path::rend(A) && ItB != sys::path::rend(B) &&
         *ItA == *ItB) {
    ++Count;
    ++ItA;
    ++ItB;
  }
  return Count;
}

StringRef llvm::inlinerecursion::getSourceFile(const Module &M) {
  // Flang 16 calls all of its modules the same.
  const StringRef File = M.getSourceFileName();
  return sys::path::has_extension(File) || File == "-" ? File : "";
}

PlanBook::PlanBook(std::vector<PlanDocument> Read) {
  for (PlanDocument &Document : Read)
    append_range(Entries, std::move(Document.Functions));
  for (const PlanEntry &Entry : Entries)
    ByName[Entry.Name].push_back(&Entry);
}

/// What \p Name is called in a source in C++: with its parameters, and without.
/// Empty for other names.
static std::pair<std::string, std::string>
demangleBoth(const std::string &Name) {
  // Refers to the name as long as it lives.
  ItaniumPartialDemangler Demangler;
  if (Demangler.partialDemangle(Name.c_str()) || !Demangler.isFunction())
    return {};
  auto Take = [](char *Text) {
    const std::string Result = Text ? Text : "";
    std::free(Text);
    return Result;
  };
  const std::string Scope =
      Take(Demangler.getFunctionDeclContextName(nullptr, nullptr));
  const std::string Base =
      Take(Demangler.getFunctionBaseName(nullptr, nullptr));
  return {Take(Demangler.finishDemangle(nullptr, nullptr)),
          Scope.empty() ? Base : Scope + "::" + Base};
}

SmallVector<const PlanEntry *, 1> PlanBook::find(StringRef Name, StringRef File,
                                                 Place Where) const {
  SmallVector<const PlanEntry *, 1> Best;
  unsigned MostCommon = 0;
  // A name that is said more exactly counts, wherever it is said.
  auto Consider = [&](StringRef Key) {
    if (Key.empty() || !Best.empty())
      return;
    for (const PlanEntry *Entry : ByName.lookup(Key)) {
      const unsigned Common = countCommonComponents(Entry->File, File);
      if (Entry->Where != Where ||
          (!Entry->File.empty() && !File.empty() && Common == 0))
        continue;
      if (Common > MostCommon)
        Best.clear();
      if (Common >= MostCommon)
        Best.push_back(Entry);
      MostCommon = std::max(MostCommon, Common);
    }
  };
  const std::string InSource = getNameInSource(Name);
  const auto [Whole, WithoutParameters] = demangleBoth(InSource);
  Consider(InSource);
  Consider(Whole);
  Consider(WithoutParameters);
  return Best;
}

/// What \p Path holds.
static std::unique_ptr<PlanBook> readBook(StringRef Path) {
  auto Text = MemoryBuffer::getFile(Path, /*IsText=*/true);
  if (!Text) {
    WithColor::error(errs(), "InlineRecursion")
        << "-inlinerecursion-plan=" << Path << ": " << Text.getError().message()
        << "; name a file that can be read\n";
    // As LLVM does about an option that it cannot follow.
    std::exit(1);
  }
  std::vector<std::string> Complaints;
  auto Book = std::make_unique<PlanBook>(
      readPlans((*Text)->getBuffer(), Path, Complaints));
  for (const std::string &Line : Complaints)
    WithColor::warning(errs(), "InlineRecursion") << Line << "\n";
  return Book;
}

const PlanBook *PlanBook::get() {
  const StringRef Path = getObeyedPlanFile();
  if (Path.empty())
    return nullptr;
  // The options of a process do not change.  Threads may come here at once.
  static const std::unique_ptr<PlanBook> Book = readBook(Path);
  return Book.get();
}
