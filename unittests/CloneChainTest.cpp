//===- CloneChainTest.cpp - The shape that the copies form ----------------===//
///
/// \file
/// The transformation, called directly: links, attributes, and what a rewired
/// call keeps of the call that it replaces.
///
//===----------------------------------------------------------------------===//

#include "TestModule.h"
#include "llvm/IR/DebugInfoMetadata.h"

using namespace llvm;
using namespace llvm::unittest;
using ::testing::ElementsAre;
using ::testing::MatchesRegex;

namespace {

constexpr const char *CloneMark = "llvm.recurse.clone";

class CloneChainTest : public PassTest {
protected:
  using CloneList = SmallVector<Function *, 4>;

  static void addLink(TestModule &TM, unsigned Level, CloneList &Clones,
                      bool SpecializeAllowed, unsigned OptLevel,
                      StringRef Name = "f") {
    LoggingDriver Driver(TM, OptLevel);
    Driver->transformInlineRecursion(&TM.function(Name), Level, Clones,
                                     SpecializeAllowed);
    EXPECT_TRUE(TM.isValid());
  }

  /// Builds all links of a chain of \p Depth around `f`, and then names the
  /// copies copy0, copy1, ...: the symbol table is free in what it appends to a
  /// name that is taken.
  static CloneList build(TestModule &TM, unsigned Depth, bool SpecializeAllowed,
                         unsigned OptLevel = 3) {
    setDepth(Depth);
    CloneList Clones;
    for (unsigned Level = 0; Level < Depth; ++Level) {
      addLink(TM, Level, Clones, SpecializeAllowed, OptLevel);
      EXPECT_EQ(Clones.size(), Level + 1);
    }
    EXPECT_EQ(depth(), Depth);
    for (auto [I, Clone] : enumerate(Clones))
      Clone->setName("copy" + Twine(I));
    return Clones;
  }

  /// "A" for alwaysinline, "N" for noinline, "-" for neither, per copy.
  static std::string inlining(const CloneList &Clones) {
    std::string Text;
    for (Function *Clone : Clones) {
      const bool Always = Clone->hasFnAttribute(Attribute::AlwaysInline);
      const bool Never = Clone->hasFnAttribute(Attribute::NoInline);
      Text += Always && Never ? "!" : Always ? "A" : Never ? "N" : "-";
    }
    return Text;
  }

  static CallInst *onlyCall(Function &F) {
    CallInst *Found = nullptr;
    for (BasicBlock &BB : F)
      for (Instruction &I : BB)
        if (auto *Call = dyn_cast<CallInst>(&I)) {
          EXPECT_EQ(Found, nullptr);
          Found = Call;
        }
    return Found;
  }
};

TEST_F(CloneChainTest, AChainOfOne) {
  TestModule TM(countdown("f") + caller("main", "f"));
  const CloneList Clones = build(TM, 1, false);
  EXPECT_THAT(TM.functionNames(), ElementsAre("f", "main", "copy0"));
  EXPECT_EQ(Clones[0], &TM.function("copy0"));
  EXPECT_THAT(TM.calleesOf("main"), ElementsAre("copy0"));
  EXPECT_THAT(TM.calleesOf("copy0"), ElementsAre("f"));
  EXPECT_THAT(TM.calleesOf("f"), ElementsAre("f"));
}

TEST_F(CloneChainTest, AChainOfTwo) {
  TestModule TM(countdown("f") + caller("main", "f"));
  build(TM, 2, false);
  EXPECT_THAT(TM.calleesOf("main"), ElementsAre("copy0"));
  EXPECT_THAT(TM.calleesOf("copy0"), ElementsAre("copy1"));
  EXPECT_THAT(TM.calleesOf("copy1"), ElementsAre("f"));
  EXPECT_THAT(TM.calleesOf("f"), ElementsAre("f"));
}

TEST_F(CloneChainTest, AChainOfThree) {
  TestModule TM(countdown("f") + caller("main", "f") + caller("other", "f"));
  const CloneList Clones = build(TM, 3, false);
  EXPECT_THAT(TM.functionNames(),
              ElementsAre("f", "main", "other", "copy0", "copy1", "copy2"));
  EXPECT_THAT(Clones, ElementsAre(&TM.function("copy0"), &TM.function("copy1"),
                                  &TM.function("copy2")));
  EXPECT_THAT(TM.calleesOf("main"), ElementsAre("copy0"));
  EXPECT_THAT(TM.calleesOf("other"), ElementsAre("copy0"));
  EXPECT_THAT(TM.calleesOf("copy0"), ElementsAre("copy1"));
  EXPECT_THAT(TM.calleesOf("copy1"), ElementsAre("copy2"));
  EXPECT_THAT(TM.calleesOf("copy2"), ElementsAre("f"));
  EXPECT_THAT(TM.calleesOf("f"), ElementsAre("f"));
}

TEST_F(CloneChainTest, ARingOfOneCallsItself) {
  TestModule TM(countdown("f") + caller("main", "f"));
  const CloneList Clones = build(TM, 1, true);
  EXPECT_THAT(TM.calleesOf("main"), ElementsAre("copy0"));
  EXPECT_THAT(TM.calleesOf("copy0"), ElementsAre("copy0"));
  EXPECT_THAT(TM.calleesOf("f"), ElementsAre("f"));
  EXPECT_EQ(inlining(Clones), "N");
}

TEST_F(CloneChainTest, ARingOfTwo) {
  TestModule TM(countdown("f") + caller("main", "f"));
  const CloneList Clones = build(TM, 2, true);
  EXPECT_THAT(TM.calleesOf("main"), ElementsAre("copy0"));
  EXPECT_THAT(TM.calleesOf("copy0"), ElementsAre("copy1"));
  EXPECT_THAT(TM.calleesOf("copy1"), ElementsAre("copy0"));
  EXPECT_THAT(TM.calleesOf("f"), ElementsAre("f"));
  EXPECT_EQ(inlining(Clones), "AN");
}

TEST_F(CloneChainTest, ARingOfThree) {
  TestModule TM(countdown("f") + caller("main", "f"));
  const CloneList Clones = build(TM, 3, true);
  EXPECT_THAT(TM.calleesOf("copy0"), ElementsAre("copy1"));
  EXPECT_THAT(TM.calleesOf("copy1"), ElementsAre("copy2"));
  EXPECT_THAT(TM.calleesOf("copy2"), ElementsAre("copy0"));
  EXPECT_THAT(TM.calleesOf("f"), ElementsAre("f"));
  EXPECT_EQ(inlining(Clones), "AAN");
}

TEST_F(CloneChainTest, EveryRecursiveCallOfACopyIsRewired) {
  const std::string Twice = R"(
define i32 @f(i32 %n) {
  %a = call i32 @f(i32 %n)
  %b = call i32 @f(i32 %a)
  ret i32 %b
})";
  TestModule Chain(Twice), Ring(Twice);
  build(Chain, 2, false);
  EXPECT_THAT(Chain.calleesOf("copy0"), ElementsAre("copy1", "copy1"));
  EXPECT_THAT(Chain.calleesOf("copy1"), ElementsAre("f", "f"));
  build(Ring, 2, true);
  EXPECT_THAT(Ring.calleesOf("copy1"), ElementsAre("copy0", "copy0"));
  EXPECT_THAT(Ring.calleesOf("f"), ElementsAre("f", "f"));
}

TEST_F(CloneChainTest, NoOutsideCallersIsNoObstacle) {
  TestModule TM(countdown("f"));
  build(TM, 2, false);
  EXPECT_THAT(TM.calleesOf("copy0"), ElementsAre("copy1"));
  EXPECT_THAT(TM.calleesOf("copy1"), ElementsAre("f"));
}

TEST_F(CloneChainTest, LevelsZeroAndFourAskForInlining) {
  struct {
    unsigned OptLevel;
    const char *Chain;
    const char *Ring;
  } const Rows[] = {{0, "AA", "AN"}, {1, "--", "AN"},          {2, "--", "AN"},
                    {3, "--", "AN"}, {4, "AA", "AN"},          {5, "--", "AN"},
                    {8, "--", "AN"}, {4294967295u, "--", "AN"}};
  for (const auto &Row : Rows) {
    SCOPED_TRACE(Row.OptLevel);
    TestModule Chain(countdown("f")), Ring(countdown("f"));
    EXPECT_EQ(inlining(build(Chain, 2, false, Row.OptLevel)), Row.Chain);
    EXPECT_EQ(inlining(build(Ring, 2, true, Row.OptLevel)), Row.Ring);
    EXPECT_FALSE(Chain.function("f").hasFnAttribute(Attribute::AlwaysInline));
    EXPECT_FALSE(Ring.function("f").hasFnAttribute(Attribute::NoInline));
  }
}

TEST_F(CloneChainTest, InheritedNoInlineIsDropped) {
  TestModule Chain(countdown("f", "noinline")),
      Ring(countdown("f", "noinline"));
  EXPECT_EQ(inlining(build(Chain, 2, false)), "--");
  EXPECT_EQ(inlining(build(Ring, 3, true)), "AAN");
  EXPECT_TRUE(Chain.function("f").hasFnAttribute(Attribute::NoInline));
}

TEST_F(CloneChainTest, InheritedAlwaysInlineIsKeptButAtTheEndOfARing) {
  TestModule Chain(countdown("f", "alwaysinline")),
      Ring(countdown("f", "alwaysinline"));
  EXPECT_EQ(inlining(build(Chain, 2, false)), "AA");
  EXPECT_EQ(inlining(build(Ring, 3, true)), "AAN");
  EXPECT_TRUE(Ring.function("f").hasFnAttribute(Attribute::AlwaysInline));
}

TEST_F(CloneChainTest, ALinkBeyondTheDepthIsLeftAlone) {
  TestModule TM(countdown("f") + caller("main", "f"));
  CloneList Clones;
  setDepth(1);
  addLink(TM, 1, Clones, /*SpecializeAllowed=*/true, /*OptLevel=*/3);
  EXPECT_EQ(inlining(Clones), "-");
  // Not the last level, so the ring is not closed either.
  EXPECT_THAT(TM.calleesOf("f.recurse.clone"), ElementsAre("f"));
  EXPECT_THAT(TM.calleesOf("main"), ElementsAre("f.recurse.clone"));

  addLink(TM, 2, Clones, /*SpecializeAllowed=*/true, /*OptLevel=*/0);
  EXPECT_EQ(inlining(Clones), "-A");
}

TEST_F(CloneChainTest, TheLastLevelIsUnsignedAndThirtyTwoBitsWide) {
  // Depth 0 has level 4294967295 as its last.
  TestModule TM(countdown("f"));
  CloneList Clones;
  setDepth(0);
  addLink(TM, 0, Clones, /*SpecializeAllowed=*/true, /*OptLevel=*/3);
  EXPECT_EQ(inlining(Clones), "A");
  EXPECT_THAT(TM.calleesOf("f.recurse.clone"), ElementsAre("f"));
  addLink(TM, 4294967295u, Clones, /*SpecializeAllowed=*/true, /*OptLevel=*/3);
  EXPECT_EQ(inlining(Clones), "AN");
  EXPECT_THAT(TM.calleesOf(Clones[1]->getName()),
              ElementsAre("f.recurse.clone"));
}

TEST_F(CloneChainTest, AllCopiesAndTheFunctionAreMarked) {
  TestModule TM(countdown("f") + caller("main", "f"));
  build(TM, 3, false);
  for (Function &F : TM.module()) {
    EXPECT_EQ(F.hasFnAttribute(CloneMark), F.getName() != "main");
    EXPECT_TRUE(F.getFnAttribute(CloneMark).getValueAsString().empty());
  }
}

TEST_F(CloneChainTest, AMarkThatTheFunctionHasStaysAsItIs) {
  TestModule TM(countdown("f", "\"llvm.recurse.clone\"=\"kept\""));
  const CloneList Clones = build(TM, 1, false);
  EXPECT_EQ(TM.function("f").getFnAttribute(CloneMark).getValueAsString(),
            "kept");
  EXPECT_EQ(Clones[0]->getFnAttribute(CloneMark).getValueAsString(), "");
}

TEST_F(CloneChainTest, CopiesAreInternal) {
  TestModule TM("define weak_odr hidden i32 @f(i32 %n) {\n"
                "  %r = call i32 @f(i32 %n)\n  ret i32 %r\n}\n"
                "define dllexport i32 @g(i32 %n) {\n"
                "  %r = call i32 @g(i32 %n)\n  ret i32 %r\n}\n");
  setDepth(1);
  for (const char *Name : {"f", "g"}) {
    CloneList Clones;
    addLink(TM, 0, Clones, false, 3, Name);
    EXPECT_EQ(Clones[0]->getLinkage(), GlobalValue::InternalLinkage);
    EXPECT_EQ(Clones[0]->getVisibility(), GlobalValue::DefaultVisibility);
    EXPECT_EQ(Clones[0]->getDLLStorageClass(),
              GlobalValue::DefaultStorageClass);
    EXPECT_TRUE(Clones[0]->isDSOLocal());
  }
  EXPECT_EQ(TM.function("f").getLinkage(), GlobalValue::WeakODRLinkage);
  EXPECT_EQ(TM.function("f").getVisibility(), GlobalValue::HiddenVisibility);
  EXPECT_EQ(TM.function("g").getDLLStorageClass(),
            GlobalValue::DLLExportStorageClass);
}

TEST_F(CloneChainTest, CopiesKeepEveryArgumentAndAttribute) {
  TestModule TM("define fastcc i32 @f(i32 zeroext %n, ptr nonnull %unused) "
                "nounwind \"some\"=\"thing\" {\n"
                "  %r = call fastcc i32 @f(i32 %n, ptr %unused)\n"
                "  ret i32 %r\n}\n");
  Function &F = TM.function("f");
  const CloneList Clones = build(TM, 1, false);
  EXPECT_EQ(Clones[0]->getFunctionType(), F.getFunctionType());
  EXPECT_EQ(Clones[0]->getCallingConv(), CallingConv::Fast);
  EXPECT_TRUE(Clones[0]->doesNotThrow());
  EXPECT_TRUE(Clones[0]->hasParamAttribute(0, Attribute::ZExt));
  EXPECT_TRUE(Clones[0]->hasParamAttribute(1, Attribute::NonNull));
  EXPECT_EQ(Clones[0]->getFnAttribute("some").getValueAsString(), "thing");
}

TEST_F(CloneChainTest, ATakenNameIsMadeUnique) {
  TestModule TM(countdown("f") + leaf("f.recurse.clone"));
  CloneList Clones;
  setDepth(1);
  addLink(TM, 0, Clones, false, 3);
  EXPECT_THAT(Clones[0]->getName().str(),
              MatchesRegex("f\\.recurse\\.clone\\.[0-9]+"));
}

TEST_F(CloneChainTest, CopiesAreNamedAfterTheFunctionAndNotTheLevel) {
  TestModule TM(countdown("f"));
  CloneList Clones;
  setDepth(9);
  addLink(TM, 7, Clones, false, 3);
  EXPECT_EQ(Clones[0]->getName(), "f.recurse.clone");
  addLink(TM, 8, Clones, false, 3);
  EXPECT_THAT(Clones[1]->getName().str(),
              MatchesRegex("f\\.recurse\\.clone\\.[0-9]+"));
}

TEST_F(CloneChainTest, AFunctionWithoutANameHasNamedCopies) {
  TestModule TM(countdown("f"));
  Function &F = TM.function("f");
  F.setName("");
  setDepth(1);
  CloneList Clones;
  LoggingDriver Driver(TM, 3);
  Driver->transformInlineRecursion(&F, 0, Clones, false);
  EXPECT_EQ(Clones[0]->getName(), ".recurse.clone");
}

TEST_F(CloneChainTest, ARewiredCallIsPlain) {
  TestModule TM(R"(
define fastcc i32 @f(ptr %p, i32 %n) {
  %r = call fastcc i32 @f(ptr %p, i32 %n)
  ret i32 %r
}
define fastcc i32 @main(ptr %p, i32 %n) {
  %value = tail call fastcc noundef i32 @f(ptr nonnull %p, i32 %n) nounwind [ "deopt"(i32 7, i32 %n) ], !prof !0
  %used = add i32 %value, %value
  ret i32 %used
}
!0 = !{!"branch_weights", i32 5}
)");
  Function &Main = TM.function("main");
  build(TM, 1, false);
  CallInst *Call = onlyCall(Main);
  ASSERT_NE(Call, nullptr);
  EXPECT_EQ(Call->getCalledFunction(), &TM.function("copy0"));
  EXPECT_EQ(Call->arg_size(), 2u);
  EXPECT_EQ(Call->getArgOperand(0), Main.getArg(0));
  EXPECT_EQ(Call->getArgOperand(1), Main.getArg(1));
  EXPECT_EQ(Call->getName(), "value");
  EXPECT_EQ(Call->getCallingConv(), CallingConv::Fast);
  EXPECT_TRUE(Call->getAttributes().isEmpty());
  EXPECT_FALSE(Call->hasOperandBundles());
  EXPECT_EQ(Call->getTailCallKind(), CallInst::TCK_None);
  EXPECT_FALSE(Call->hasMetadata());
  Instruction *Used = TestModule::find(Main, "used");
  EXPECT_EQ(Used->getOperand(0), Call);
  EXPECT_EQ(Used->getOperand(1), Call);
  EXPECT_EQ(Call->getNextNode(), Used);
  EXPECT_EQ(Call->getPrevNode(), nullptr);
}

TEST_F(CloneChainTest, ARewiredCallStaysWhereItWasAndKeepsItsLocation) {
  TestModule TM(R"(
define void @f(i32 %n) {
  call void @f(i32 %n)
  ret void
}
define void @main() !dbg !4 {
  fence seq_cst
  call void @f(i32 1), !dbg !6
  call void @f(i32 2), !dbg !8
  ret void
}
!llvm.dbg.cu = !{!0}
!llvm.module.flags = !{!7}
!0 = distinct !DICompileUnit(language: DW_LANG_C99, file: !1, emissionKind: FullDebug)
!1 = !DIFile(filename: "f.c", directory: "/")
!2 = !DISubroutineType(types: !{})
!4 = distinct !DISubprogram(name: "main", file: !1, line: 1, type: !2, unit: !0, spFlags: DISPFlagDefinition)
!6 = !DILocation(line: 12, column: 3, scope: !4)
!7 = !{i32 2, !"Debug Info Version", i32 3}
!8 = !DILocation(line: 13, column: 4, scope: !4)
)");
  Function &Main = TM.function("main");
  build(TM, 1, false);
  Instruction *First = Main.getEntryBlock().front().getNextNode();
  Instruction *Second = First->getNextNode();
  for (auto [I, Line, Argument] :
       {std::tuple(First, 12u, 1u), std::tuple(Second, 13u, 2u)}) {
    auto *Call = dyn_cast<CallInst>(I);
    ASSERT_NE(Call, nullptr);
    EXPECT_EQ(Call->getCalledFunction()->getName(), "copy0");
    ASSERT_TRUE(Call->getDebugLoc());
    EXPECT_EQ(Call->getDebugLoc().getLine(), Line);
    EXPECT_EQ(cast<ConstantInt>(Call->getArgOperand(0))->getZExtValue(),
              Argument);
  }
}

TEST_F(CloneChainTest, TheCallingConventionIsTheCallees) {
  // A mismatch is undefined when it runs, but valid IR.
  TestModule TM("define fastcc i32 @f(i32 %n) {\n  ret i32 %n\n}\n" +
                caller("main", "f"));
  build(TM, 1, false);
  EXPECT_EQ(onlyCall(TM.function("main"))->getCallingConv(), CallingConv::Fast);
}

TEST_F(CloneChainTest, OtherUsesKeepTheFunction) {
  TestModule TM(countdown("f") + R"(
@g = global ptr @f
declare i32 @pers(...)
declare void @take(ptr)
define void @main(i32 %n) personality ptr @pers {
entry:
  call void @take(ptr @f)
  call void @f()
  %c = icmp eq ptr @f, null
  %r = invoke i32 @f(i32 %n) to label %fine unwind label %pad
fine:
  ret void
pad:
  %l = landingpad { ptr, i32 } cleanup
  resume { ptr, i32 } %l
})");
  Function &F = TM.function("f"), &Main = TM.function("main");
  build(TM, 2, true);
  EXPECT_EQ(TM.module().getGlobalVariable("g")->getInitializer(), &F);
  EXPECT_EQ(cast<CallInst>(&Main.getEntryBlock().front())->getArgOperand(0),
            &F);
  EXPECT_THAT(TM.calleesOf("main"), ElementsAre("take", "f"));
  EXPECT_EQ(TestModule::find(Main, "c")->getOperand(0), &F);
  EXPECT_EQ(cast<InvokeInst>(TestModule::find(Main, "r"))->getCalledFunction(),
            &F);
}

TEST_F(CloneChainTest, ACallThatPassesTheFunctionIsRewiredOnce) {
  TestModule TM(R"(
define void @f(ptr %p) {
  call void @f(ptr @f)
  ret void
}
define void @main() {
  call void @f(ptr @f)
  ret void
})");
  Function &F = TM.function("f");
  build(TM, 2, true);
  EXPECT_THAT(TM.calleesOf("main"), ElementsAre("copy0"));
  EXPECT_THAT(TM.calleesOf("copy0"), ElementsAre("copy1"));
  EXPECT_THAT(TM.calleesOf("copy1"), ElementsAre("copy0"));
  EXPECT_THAT(TM.calleesOf("f"), ElementsAre("f"));
  for (const char *Name : {"main", "f", "copy0", "copy1"})
    EXPECT_EQ(onlyCall(TM.function(Name))->getArgOperand(0), &F);
}

TEST_F(CloneChainTest, NoAnalysisIsAskedFor) {
  TestModule TM(countdown("f"));
  LoggingDriver Driver(TM, 3);
  CloneList Clones;
  setDepth(1);
  Driver->transformInlineRecursion(&TM.function("f"), 0, Clones, false);
  EXPECT_TRUE(Driver.log().empty());
  EXPECT_EQ(Driver->CloneCount, 0u);
  EXPECT_FALSE(Driver->SpecializeSeen);
}

} // namespace
