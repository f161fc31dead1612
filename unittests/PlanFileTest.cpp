//===- PlanFileTest.cpp - Plans of many functions, as a file --------------===//

#include "plugin/plan/PlanFile.h"
#include "plugin/plan/PlanBook.h"
#include "llvm/Support/FileSystem.h"
#include "llvm/Support/MemoryBuffer.h"
#include "gmock/gmock.h"
#include "gtest/gtest.h"
#include <thread>

using namespace llvm;
using namespace llvm::inlinerecursion;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

struct Read {
  std::vector<std::string> Complaints;
  std::vector<PlanDocument> Documents;

  explicit Read(StringRef Text)
      : Documents(readPlans(Text, "a.plan", Complaints)) {}
};

constexpr StringLiteral TwoFiles = R"(---
version:         1
module:          'src/list.c'
functions:
  - name:            walk
    plan:            none
    body:            3f2a9c0d11e2ab47
    reason:          'it is larger: more than 80 instructions'
  - name:            walk
    plan:            'ring copies=3 guard'
    where:           late
---
version:         1
module:          'src/tree.c'
functions:
  - name:            walk
    plan:            split
    file:            'src/tree.h'
...
)";

TEST(PlanFileTest, WhatIsPrintedIsRead) {
  const Read File(TwoFiles);
  EXPECT_THAT(File.Complaints, IsEmpty());
  ASSERT_EQ(File.Documents.size(), 2u);
  const std::vector<PlanEntry> &Lists = File.Documents[0].Functions;
  ASSERT_EQ(Lists.size(), 2u);
  EXPECT_EQ(Lists[0].Name, "walk");
  EXPECT_EQ(Lists[0].File, "src/list.c");
  EXPECT_EQ(Lists[0].Body, "3f2a9c0d11e2ab47");
  EXPECT_EQ(Lists[0].Origin, "a.plan:5");
  EXPECT_EQ(Lists[0].Where, Place::Early);
  EXPECT_EQ(Lists[1].Where, Place::Late);
  EXPECT_EQ(Lists[1].Plan.str(), "ring copies=3 guard");
  EXPECT_EQ(File.Documents[1].Functions[0].File, "src/tree.h");
  EXPECT_EQ(printPlans(File.Documents), TwoFiles.str());
}

TEST(PlanFileTest, OneBadEntryLeavesTheOthers) {
  const Read File("version: 1\n"
                  "functions:\n"
                  "  - name: f\n"
                  "    plan: rung\n"
                  "  - plan: none\n"
                  "  - name: g\n"
                  "    plan: none\n"
                  "    where: never\n"
                  "  - name: h\n"
                  "    plan: ring copies=1\n"
                  "  - name: i\n"
                  "    plan: none\n"
                  "  - name: i\n"
                  "    plan: split\n");
  EXPECT_THAT(
      File.Complaints,
      ElementsAre("a.plan:3: 'f': unknown shape 'rung'; write one of none, "
                  "chain, ring, leaves, split, states",
                  "a.plan:5: an entry without a name; write 'name:' and the "
                  "function",
                  "a.plan:6: 'g': unknown place 'never'; write one of early, "
                  "late, link, link-late",
                  "a.plan:9: 'h': 'copies' takes numbers from 2 to 1000, not "
                  "'1'",
                  "a.plan:13: 'i' has an entry already, at a.plan:11; remove "
                  "one of them"));
  ASSERT_EQ(File.Documents.size(), 1u);
  ASSERT_EQ(File.Documents[0].Functions.size(), 1u);
  EXPECT_EQ(File.Documents[0].Functions[0].Name, "i");
}

/// What is no plan file at all is complained about once.
TEST(PlanFileTest, WhatIsNoPlanFile) {
  for (StringRef Text :
       {"version: 2\nfunctions:\n  - shape: ring\n", "functions: []\n",
        "version: one\n", "ring copies=3\n", "version: 1\nfunctions: [\n",
        "version: 1\nfunctions: none\n", "- version: 1\n",
        "version: 1\nfunction:\n  - name: f\n    plan: none\n",
        "version: 1\nfunctions:\n  - name: f\n    copies: 3\n"}) {
    const Read File(Text);
    EXPECT_EQ(File.Complaints.size(), 1u) << Text.str();
    EXPECT_THAT(File.Documents, IsEmpty()) << Text.str();
  }
}

TEST(PlanFileTest, AnEmptyFileHoldsNothing) {
  const Read File("");
  EXPECT_THAT(File.Complaints, IsEmpty());
  EXPECT_THAT(File.Documents, IsEmpty());
}

class PlanFileOnDisk : public testing::Test {
protected:
  PlanFileOnDisk() {
    SmallString<64> Name;
    if (sys::fs::createTemporaryFile("unittest", "plan", Name))
      std::abort();
    Path = Name.str().str();
    sys::fs::remove(Path);
  }
  ~PlanFileOnDisk() override { sys::fs::remove(Path); }

  std::string getText() const {
    return cantFail(errorOrToExpected(MemoryBuffer::getFile(Path)))
        ->getBuffer()
        .str();
  }

  std::string Path;
};

PlanDocument makeDocument(StringRef Module, StringRef Name, StringRef Plan) {
  PlanEntry Entry;
  Entry.Name = Name.str();
  Entry.File = Module.str();
  Entry.Plan = cantFail(PlanSpec::parse(Plan));
  return {Module.str(), {Entry}};
}

TEST_F(PlanFileOnDisk, EntriesReplaceTheirOwn) {
  cantFail(addToPlanFile(Path, makeDocument("b.c", "g", "split")));
  cantFail(addToPlanFile(Path, makeDocument("b.c", "f", "ring copies=3")));
  cantFail(addToPlanFile(Path, makeDocument("a.c", "f", "states")));
  cantFail(addToPlanFile(Path, makeDocument("b.c", "f", "none")));
  EXPECT_EQ(getText(), "---\n"
                       "version:         1\n"
                       "module:          a.c\n"
                       "functions:\n"
                       "  - name:            f\n"
                       "    plan:            states\n"
                       "---\n"
                       "version:         1\n"
                       "module:          b.c\n"
                       "functions:\n"
                       "  - name:            f\n"
                       "    plan:            none\n"
                       "  - name:            g\n"
                       "    plan:            split\n"
                       "...\n");
}

TEST_F(PlanFileOnDisk, ThreadsDoNotLoseEntries) {
  std::vector<std::thread> Threads;
  for (unsigned I = 0; I != 8; ++I)
    Threads.emplace_back([this, I] {
      for (unsigned J = 0; J != 8; ++J)
        cantFail(
            addToPlanFile(Path, makeDocument("a" + std::to_string(I) + ".c",
                                             "f" + std::to_string(J), "none")));
    });
  for (std::thread &T : Threads)
    T.join();
  std::vector<std::string> Complaints;
  const auto Documents = readPlans(getText(), Path, Complaints);
  EXPECT_THAT(Complaints, IsEmpty());
  ASSERT_EQ(Documents.size(), 8u);
  for (const PlanDocument &Document : Documents)
    EXPECT_EQ(Document.Functions.size(), 8u);
}

TEST_F(PlanFileOnDisk, WhatIsNoPlanFileIsNotOverwritten) {
  {
    std::error_code Code;
    raw_fd_ostream OS(Path, Code);
    OS << "the only copy of something\n";
  }
  Error Failed = addToPlanFile(Path, makeDocument("a.c", "f", "none"));
  EXPECT_THAT(toString(std::move(Failed)),
              testing::HasSubstr("remove the file"));
  EXPECT_EQ(getText(), "the only copy of something\n");
}

TEST(PlanFileTest, AFolderCannotBeWrittenTo) {
  Error Failed =
      addToPlanFile("/nowhere/a.plan", makeDocument("a.c", "f", "none"));
  EXPECT_THAT(toString(std::move(Failed)),
              testing::StartsWith("/nowhere/a.plan: "));
}

//===----------------------------------------------------------------------===//
// Who is meant
//===----------------------------------------------------------------------===//

class Book {
public:
  explicit Book(StringRef Text) : Plans(readPlans(Text, "a.plan", Complaints)) {
    EXPECT_THAT(Complaints, IsEmpty());
  }

  /// The plan for \p Name of \p File; "none of them" or "several".
  std::string find(StringRef Name, StringRef File,
                   Place Where = Place::Early) const {
    const auto Found = Plans.find(Name, File, Where);
    return Found.empty()       ? "none of them"
           : Found.size() == 1 ? Found.front()->Plan.str()
                               : "several";
  }

private:
  std::vector<std::string> Complaints;
  PlanBook Plans;
};

TEST(PlanBookTest, PathsAreComparedFromTheirEnds) {
  EXPECT_EQ(countCommonComponents("/home/a/src/tree.c", "/build/src/tree.c"),
            2u);
  EXPECT_EQ(countCommonComponents("tree.c", "src/tree.c"), 1u);
  EXPECT_EQ(countCommonComponents("src/tree.c", "src/tree.c"), 3u);
  EXPECT_EQ(countCommonComponents("tree.c", "subtree.c"), 0u);
  EXPECT_EQ(countCommonComponents("", "tree.c"), 0u);
}

TEST(PlanBookTest, TheClosestFileCounts) {
  const Book Plans(R"(version: 1
functions:
  - {name: f, plan: none, file: /home/a/one/x.c}
  - {name: f, plan: split, file: /home/a/two/x.c}
)");
  EXPECT_EQ(Plans.find("f", "/build/one/x.c"), "none");
  EXPECT_EQ(Plans.find("f", "two/x.c"), "split");
  EXPECT_EQ(Plans.find("f", "x.c"), "several");
  EXPECT_EQ(Book("version: 1\n"
                 "functions:\n"
                 "  - {name: f, plan: none, file: x.c}\n"
                 "  - {name: f, plan: split, file: one/x.c}\n")
                .find("f", "x.c"),
            "none");
  EXPECT_EQ(Plans.find("f", "y.c"), "none of them");
  EXPECT_EQ(Plans.find("g", "/build/one/x.c"), "none of them");
}

TEST(PlanBookTest, WithoutAFileAllAreMeant) {
  const Book Plans("version: 1\nfunctions:\n  - {name: f, plan: none}\n");
  EXPECT_EQ(Plans.find("f", "x.c"), "none");
  EXPECT_EQ(Plans.find("f", ""), "none");
}

TEST(PlanBookTest, TheLookCounts) {
  const Book Plans(R"(version: 1
functions:
  - {name: f, plan: none, where: late}
  - {name: f, plan: split, where: link}
)");
  EXPECT_EQ(Plans.find("f", "x.c", Place::Early), "none of them");
  EXPECT_EQ(Plans.find("f", "x.c", Place::Late), "none");
  EXPECT_EQ(Plans.find("f", "x.c", Place::Link), "split");
}

TEST(PlanBookTest, NamesMayBeDemangled) {
  const Book Plans(R"(version: 1
functions:
  - {name: 'tree::f(int)', plan: none}
  - {name: 'tree::f', plan: split}
  - {name: _ZN4tree1gEi, plan: states}
  - {name: 'tree::g', plan: none}
  - {name: '(anonymous namespace)::h', plan: chain}
)");
  EXPECT_EQ(Plans.find("_ZN4tree1fEi", "x.cc"), "none");
  EXPECT_EQ(Plans.find("_ZN4tree1fEl", "x.cc"), "split");
  EXPECT_EQ(Plans.find("_ZN4tree1gEi", "x.cc"), "states");
  EXPECT_EQ(Plans.find("_ZN12_GLOBAL__N_11hEi", "x.cc"), "chain");
  EXPECT_EQ(Plans.find("_ZN4leaf1fEi", "x.cc"), "none of them");
  // A name in C that is one in no other language.
  EXPECT_EQ(Plans.find("tree", "x.c"), "none of them");
}

TEST(PlanBookTest, NamesAreThoseOfTheSource) {
  const Book Plans(R"(version: 1
functions:
  - {name: f, plan: none}
  - {name: f.recurse.rest, plan: ring}
)");
  EXPECT_EQ(Plans.find("f.llvm.123456", "x.c"), "none");
  EXPECT_EQ(Plans.find("f.recurse.value", "x.c"), "none");
  EXPECT_EQ(Plans.find("f.llvm.123456.recurse.rest", "x.c"), "ring");
}

} // namespace
