//===- SpecializeActionTest.cpp - Constants around a ring -----------------===//

#include "TestModule.h"
#include "host/FunctionSpecializeAction.h"
#include "host/InliningPlan.h"
#include "llvm/Support/ModRef.h"

using namespace llvm;
using namespace llvm::unittest;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using ::testing::UnorderedElementsAre;

namespace {

using Selection = std::map<Function *, std::set<CallInst *>>;

/// A call of \p Callee with a constant, in a function of its own.
std::string entry(const std::string &Name, const std::string &Callee,
                  int Value) {
  return "define i32 @" + Name + "() {\n  %r = call i32 @" + Callee + "(i32 " +
         std::to_string(Value) + ")\n  ret i32 %r\n}\n";
}

/// A function of one call for each of \p Callees, before which stand \p Filler
/// other instructions.
std::string calls(const std::string &Name,
                  const std::vector<std::string> &Callees,
                  unsigned Filler = 0) {
  std::string Text = "define void @" + Name + "(i32 %n) {\n";
  for (unsigned I = 0; I != Filler; ++I)
    Text += "  %f" + std::to_string(I) + " = add i32 %n, 1\n";
  for (const std::string &Callee : Callees)
    Text += "  call void @" + Callee + "(i32 %n)\n";
  return Text + "  ret void\n}\n";
}

class SpecializeActionTest : public PassTest {
protected:
  /// Turns the functions that ask for it into rings, and goes no further.
  static void buildRings(TestModule &TM) {
    LoggingDriver Driver(TM);
    // A copy of the walk without what comes behind it.
    std::vector<Function *> Functions;
    for (Function &F : TM.module())
      Functions.push_back(&F);
    for (Function *F : Functions)
      Driver->inlineRecursionFunction(F);
  }

  static CallInst *firstCall(TestModule &TM, StringRef Caller) {
    for (BasicBlock &BB : TM.function(Caller))
      for (Instruction &I : BB)
        if (auto *Call = dyn_cast<CallInst>(&I))
          return Call;
    return nullptr;
  }

  static unsigned countSpecialized(TestModule &TM) {
    return count_if(TM.module(), [](const Function &F) {
      return F.getName().contains(".specialized.");
    });
  }

  ScopedOption<unsigned> CloneLimit{"maximum-clone-limit-inline-recursion",
                                    1000};
};

TEST_F(SpecializeActionTest, SelectsTheCallsThatEnterWithAConstant) {
  TestModule TM(remainder("f", 4) + entry("main", "f", 9) +
                entry("other", "f", 9) + caller("open", "f"));
  buildRings(TM);
  const std::string Before = TM.text();
  const Selection Selected =
      FunctionSpecializeAction().selectCI(TM.module(), true);
  ASSERT_THAT(Selected, SizeIs(1));
  EXPECT_EQ(Selected.begin()->first, &TM.function("f.recurse.clone"));
  EXPECT_THAT(
      Selected.begin()->second,
      UnorderedElementsAre(firstCall(TM, "main"), firstCall(TM, "other")));
  // It only reads.
  EXPECT_EQ(TM.text(), Before);
}

TEST_F(SpecializeActionTest, TheFlagAsksForTheGatesMark) {
  TestModule TM(remainder("f", 4) + entry("main", "f", 9));
  buildRings(TM);
  for (Function &F : TM.module())
    F.removeFnAttr("specialize-inline-recursion-function-eligible");
  EXPECT_THAT(FunctionSpecializeAction().selectCI(TM.module(), true),
              IsEmpty());
  const Selection Selected =
      FunctionSpecializeAction().selectCI(TM.module(), false);
  ASSERT_THAT(Selected, SizeIs(1));
  EXPECT_THAT(Selected.begin()->second,
              UnorderedElementsAre(firstCall(TM, "main")));
}

TEST_F(SpecializeActionTest, ChainsAreNoRings) {
  TestModule TM(countdown("f") + entry("main", "f", 9));
  LoggingDriver Driver(TM, 3);
  EXPECT_TRUE(Driver->inlineRecursionFunction(&TM.function("f")));
  ASSERT_THAT(TM.calleesOf("main"), ElementsAre("f.recurse.clone"));
  EXPECT_THAT(FunctionSpecializeAction().selectCI(TM.module(), false),
              IsEmpty());
}

TEST_F(SpecializeActionTest, InvokesAreNotSelected) {
  TestModule TM(remainder("f", 4) + R"(
declare i32 @personality(...)
define i32 @main() personality ptr @personality {
  %r = invoke i32 @f(i32 9) to label %normal unwind label %broken
normal:
  ret i32 %r
broken:
  %pad = landingpad { ptr, i32 } cleanup
  resume { ptr, i32 } %pad
}
)");
  buildRings(TM);
  EXPECT_TRUE(TM.module().getFunction("f.recurse.clone"));
  EXPECT_THAT(FunctionSpecializeAction().selectCI(TM.module(), true),
              IsEmpty());
}

TEST_F(SpecializeActionTest, CallsInsideTheRingAreNotSelected) {
  std::string Text = remainder("f", 4) + entry("main", "f", 9);
  const StringRef Inner = "@f(i32 %less)";
  Text.replace(Text.find(Inner.str()), Inner.size(), "@f(i32 7)");
  TestModule TM(Text);
  buildRings(TM);
  const Selection Selected =
      FunctionSpecializeAction().selectCI(TM.module(), true);
  ASSERT_THAT(Selected, SizeIs(1));
  EXPECT_THAT(Selected.begin()->second,
              UnorderedElementsAre(firstCall(TM, "main")));
}

TEST_F(SpecializeActionTest, OtherUsesOfACopyAreNotSelected) {
  TestModule TM(remainder("f", 4) + entry("main", "f", 9) +
                "declare void @take(ptr)\n");
  buildRings(TM);
  Function &Copy = TM.function("f.recurse.clone");
  new GlobalVariable(TM.module(), Copy.getType(), /*isConstant=*/true,
                     GlobalValue::InternalLinkage, &Copy, "table");
  CallInst *Entry = firstCall(TM, "main");
  CallInst::Create(&TM.function("take"), {&Copy}, "", Entry);
  const Selection Selected =
      FunctionSpecializeAction().selectCI(TM.module(), true);
  ASSERT_THAT(Selected, SizeIs(1));
  EXPECT_THAT(Selected.begin()->second, UnorderedElementsAre(Entry));
}

TEST_F(SpecializeActionTest, TheOriginalIsNoCopy) {
  TestModule TM(remainder("f", 4) + entry("main", "f", 9));
  buildRings(TM);
  firstCall(TM, "main")->setCalledFunction(&TM.function("f"));
  EXPECT_THAT(FunctionSpecializeAction().selectCI(TM.module(), true),
              IsEmpty());
}

TEST_F(SpecializeActionTest, AFunctionWithoutCopiesIsNoRing) {
  // The gate lets it pass, and then the budget is too small.
  TestModule TM(remainder("f", 4) + entry("main", "f", 9));
  TM.function("f").setLinkage(GlobalValue::InternalLinkage);
  ScopedOption<unsigned> Limit("maximum-clone-limit-inline-recursion", 3);
  buildRings(TM);
  EXPECT_TRUE(TM.function("f").hasFnAttribute(
      "specialize-inline-recursion-function-eligible"));
  EXPECT_THAT(FunctionSpecializeAction().selectCI(TM.module(), true),
              IsEmpty());
}

TEST_F(SpecializeActionTest, OnlyCallsLeadBack) {
  // @q computes the same as @p, but it leads back to it by an address only.
  auto Make = [](const std::string &Name) {
    return "define internal void @" + Name + R"((i32 %n) "llvm.recurse.clone"
    "specialize-inline-recursion-function-eligible" {
  %r = urem i32 %n, 4
  %done = icmp eq i32 %r, 0
  br i1 %done, label %base, label %recurse
base:
  ret void
recurse:
  call void @take(ptr @p)
  %less = sub i32 %n, 1
  call void @)" +
           Name + "(i32 %less)\n  call void @q(i32 %less)\n  ret void\n}\n";
  };
  TestModule TM("declare void @take(ptr)\n" + Make("p") + Make("q") +
                "define void @main() {\n  call void @p(i32 9)\n"
                "  ret void\n}\n");
  FunctionSpecializeAction Action;
  Selection Selected = Action.selectCI(TM.module(), true);
  EXPECT_TRUE(Action.transform(TM.module(), Selected, {}));
  EXPECT_THAT(TM.calleesOf("p.specialized.9"),
              ElementsAre("take", "p.specialized.8", "q"));
}

TEST_F(SpecializeActionTest, LimitsByDefault) {
  EXPECT_EQ(getOption<unsigned>("inline-recursion-max-specializations"), 256u);
  EXPECT_EQ(getOption<unsigned>("inline-recursion-max-specialized-size"),
            10000u);
  EXPECT_EQ(getOption<unsigned>("inline-recursion-max-unasked-growth"), 200u);
  EXPECT_EQ(getOption<unsigned>("inline-recursion-specialized-inline-size"),
            300u);
}

TEST_F(SpecializeActionTest, NamesHaveTheSign) {
  TestModule TM(remainder("f", 4) + entry("main", "f", -3));
  buildRings(TM);
  FunctionSpecializeAction Action;
  Selection Selected = Action.selectCI(TM.module(), true);
  EXPECT_TRUE(Action.transform(TM.module(), Selected, {}));
  EXPECT_THAT(TM.calleesOf("main"), ElementsAre("f.specialized.-3"));
}

TEST_F(SpecializeActionTest, NothingSelectedChangesNothing) {
  TestModule TM(remainder("f", 4) + entry("main", "f", 9));
  buildRings(TM);
  const std::string Before = TM.text();
  Selection None;
  EXPECT_FALSE(FunctionSpecializeAction().transform(TM.module(), None, {}));
  EXPECT_EQ(TM.text(), Before);
}

TEST_F(SpecializeActionTest, OnlyWhatIsSelectedIsRedirected) {
  TestModule TM(remainder("f", 4) + entry("main", "f", 9) +
                entry("other", "f", 9));
  buildRings(TM);
  FunctionSpecializeAction Action;
  Selection Selected = Action.selectCI(TM.module(), true);
  Selected.begin()->second.erase(firstCall(TM, "other"));
  EXPECT_TRUE(Action.transform(TM.module(), Selected, {}));
  EXPECT_THAT(TM.calleesOf("main"), ElementsAre("f.specialized.9"));
  EXPECT_THAT(TM.calleesOf("other"), ElementsAre("f.recurse.clone"));
  EXPECT_TRUE(TM.isValid());
}

TEST_F(SpecializeActionTest, ExcludedCallsAreNeverTouched) {
  TestModule TM(remainder("f", 4) + entry("main", "f", 9) +
                entry("other", "f", 8));
  buildRings(TM);
  FunctionSpecializeAction Action;
  Selection Selected = Action.selectCI(TM.module(), true);
  CallInst *Kept = firstCall(TM, "main");
  EXPECT_TRUE(Action.transform(TM.module(), Selected, {Kept}));
  EXPECT_EQ(firstCall(TM, "main"), Kept);
  EXPECT_THAT(TM.calleesOf("main"), ElementsAre("f.recurse.clone"));
  EXPECT_THAT(TM.calleesOf("other"), ElementsAre("f.specialized.8"));
  EXPECT_FALSE(TM.module().getFunction("f.specialized.9"));
}

TEST_F(SpecializeActionTest, AllExcludedIsNoChange) {
  TestModule TM(remainder("f", 4) + entry("main", "f", 9));
  buildRings(TM);
  const std::string Before = TM.text();
  FunctionSpecializeAction Action;
  Selection Selected = Action.selectCI(TM.module(), true);
  EXPECT_FALSE(
      Action.transform(TM.module(), Selected, {firstCall(TM, "main")}));
  EXPECT_EQ(TM.text(), Before);
}

TEST_F(SpecializeActionTest, SpecialisationsAreNoCopiesOfTheRing) {
  TestModule TM(remainder("f", 4) + entry("main", "f", 5));
  buildRings(TM);
  FunctionSpecializeAction Action;
  Selection Selected = Action.selectCI(TM.module(), true);
  EXPECT_TRUE(Action.transform(TM.module(), Selected, {}));
  const Function &F = TM.function("f.specialized.5");
  EXPECT_TRUE(F.hasInternalLinkage());
  EXPECT_FALSE(
      F.hasFnAttribute("specialize-inline-recursion-function-eligible"));
  // A second round finds nothing left to do.
  EXPECT_THAT(Action.selectCI(TM.module(), true), IsEmpty());
}

TEST_F(SpecializeActionTest, AHundredEntriesShareWhatTheyMeet) {
  // The remainder ends every walk at a multiple of eight, at the latest.
  std::string Text = remainder("f", 8);
  for (int I = 0; I != 100; ++I)
    Text += entry("main" + std::to_string(I), "f", I);
  TestModule TM(Text);
  buildRings(TM);
  ASSERT_THAT(TM.functionNames(), SizeIs(1 + 100 + 8));
  FunctionSpecializeAction Action;
  Selection Selected = Action.selectCI(TM.module(), true);
  EXPECT_TRUE(Action.transform(TM.module(), Selected, {}));
  EXPECT_EQ(countSpecialized(TM), 100u);
  EXPECT_THAT(TM.calleesOf("main99"), ElementsAre("f.specialized.99"));
  EXPECT_THAT(TM.calleesOf("f.specialized.99"),
              ElementsAre("f.specialized.98"));
  EXPECT_THAT(TM.calleesOf("f.specialized.96"), IsEmpty());
  EXPECT_TRUE(TM.isValid());
}

TEST_F(SpecializeActionTest, TheFirstEntriesGetWhatTheLimitAllows) {
  std::string Text = remainder("f", 8);
  for (int I = 1; I != 6; ++I)
    Text += entry("main" + std::to_string(I), "f", 8 * I);
  TestModule TM(Text);
  buildRings(TM);
  ScopedOption<unsigned> Limit("inline-recursion-max-specializations", 3);
  FunctionSpecializeAction Action;
  Selection Selected = Action.selectCI(TM.module(), true);
  EXPECT_TRUE(Action.transform(TM.module(), Selected, {}));
  EXPECT_EQ(countSpecialized(TM), 3u);
}

TEST_F(SpecializeActionTest, TheClonesOfEveryRingAreCountedAlone) {
  TestModule TM(remainder("f", 8) + remainder("g", 8) + entry("a", "f", 16) +
                entry("b", "f", 8) + entry("c", "g", 16) + entry("d", "g", 8));
  buildRings(TM);
  ScopedOption<unsigned> Limit("inline-recursion-max-specializations", 1);
  FunctionSpecializeAction Action;
  Selection Selected = Action.selectCI(TM.module(), true);
  EXPECT_TRUE(Action.transform(TM.module(), Selected, {}));
  EXPECT_EQ(countSpecialized(TM), 2u);
}

TEST_F(SpecializeActionTest, TheSizeIsCountedForTheWholeModule) {
  TestModule TM(remainder("f", 8) + remainder("g", 8) + entry("a", "f", 16) +
                entry("c", "g", 16));
  buildRings(TM);
  // The body has seven instructions.
  ScopedOption<unsigned> Limit("inline-recursion-max-specialized-size", 7);
  FunctionSpecializeAction Action;
  Selection Selected = Action.selectCI(TM.module(), true);
  EXPECT_TRUE(Action.transform(TM.module(), Selected, {}));
  EXPECT_EQ(countSpecialized(TM), 1u);
}

/// As remainder(), of a ring that was found.
std::string foundRemainder(const std::string &Name, unsigned Divisor) {
  const std::string Request = "\"specialize-inline-recursion-function\"";
  std::string Text = remainder(Name, Divisor);
  Text.insert(Text.find(Request) + Request.size(), "=\"found\"");
  return Text;
}

TEST_F(SpecializeActionTest, AFoundRingIsSpecializedAsAWholeOrNotAtAll) {
  // f has seven instructions and main two.  Seven specialisations are left of
  // two instructions each, and f must still fit behind them.
  for (const auto &[Growth, Expected] :
       {std::pair(0u, 0u), {100u, 0u}, {233u, 0u}, {234u, 8u}}) {
    TestModule TM(foundRemainder("f", 8) + entry("main", "f", 7));
    buildRings(TM);
    const std::string Before = TM.text();
    ScopedOption<unsigned> Limit("inline-recursion-max-unasked-growth", Growth);
    FunctionSpecializeAction Action;
    Selection Selected = Action.selectCI(TM.module(), true);
    EXPECT_EQ(Action.transform(TM.module(), Selected, {}), Expected != 0);
    EXPECT_EQ(countSpecialized(TM), Expected) << Growth;
    EXPECT_TRUE(TM.isValid());
    if (Expected == 0) {
      EXPECT_EQ(TM.text(), Before);
    }
  }
}

TEST_F(SpecializeActionTest, AFoundRingIsNotCutOffByTheLimitOnClones) {
  for (const auto &[Clones, Expected] : {std::pair(7u, 0u), {8u, 8u}}) {
    TestModule TM(foundRemainder("f", 8) + entry("main", "f", 7));
    buildRings(TM);
    ScopedOption<unsigned> Growth("inline-recursion-max-unasked-growth", 1000);
    ScopedOption<unsigned> Limit("inline-recursion-max-specializations",
                                 Clones);
    FunctionSpecializeAction Action;
    Selection Selected = Action.selectCI(TM.module(), true);
    EXPECT_EQ(Action.transform(TM.module(), Selected, {}), Expected != 0);
    EXPECT_EQ(countSpecialized(TM), Expected);
  }
}

TEST_F(SpecializeActionTest, WhatIsUndonePromisesWhatItPromisedBefore) {
  TestModule TM(R"(@table = global [8 x i32] zeroinitializer
define i32 @f(i32 %n, ptr %p) "specialize-inline-recursion-function"="found" {
  %rem = urem i32 %n, 8
  %done = icmp eq i32 %rem, 0
  br i1 %done, label %base, label %recurse
base:
  %x = load i32, ptr %p
  ret i32 %x
recurse:
  %less = sub i32 %n, 1
  %r = call i32 @f(i32 %less, ptr %p)
  ret i32 %r
}
define i32 @main() {
  %r = call i32 @f(i32 7, ptr @table)
  ret i32 %r
}
)");
  buildRings(TM);
  firstCall(TM, "main")
      ->setMemoryEffects(MemoryEffects::argMemOnly(ModRefInfo::Ref));
  const std::string Before = TM.text();
  ScopedOption<unsigned> Limit("inline-recursion-max-unasked-growth", 150);
  FunctionSpecializeAction Action;
  Selection Selected = Action.selectCI(TM.module(), true);
  EXPECT_FALSE(Action.transform(TM.module(), Selected, {}));
  EXPECT_EQ(TM.text(), Before);
}

TEST_F(SpecializeActionTest, WhatIsNotSpecializedTakesNothingFromTheLimit) {
  // f would need 21 of 18 instructions, g 11.
  TestModule TM(foundRemainder("f", 8) + foundRemainder("g", 8) +
                entry("a", "f", 7) + entry("b", "g", 2));
  buildRings(TM);
  ScopedOption<unsigned> Limit("inline-recursion-max-unasked-growth", 100);
  FunctionSpecializeAction Action;
  Selection Selected = Action.selectCI(TM.module(), true);
  EXPECT_TRUE(Action.transform(TM.module(), Selected, {}));
  EXPECT_EQ(countSpecialized(TM), 3u);
  EXPECT_THAT(TM.calleesOf("a"), ElementsAre("f.recurse.clone"));
  EXPECT_THAT(TM.calleesOf("b"), ElementsAre("g.specialized.2"));
}

TEST_F(SpecializeActionTest, FoundRingsShareWhatTheModuleMayGrow) {
  TestModule TM(foundRemainder("f", 8) + foundRemainder("g", 8) +
                entry("a", "f", 4) + entry("b", "g", 4));
  buildRings(TM);
  ScopedOption<unsigned> Limit("inline-recursion-max-unasked-growth", 100);
  FunctionSpecializeAction Action;
  Selection Selected = Action.selectCI(TM.module(), true);
  EXPECT_TRUE(Action.transform(TM.module(), Selected, {}));
  EXPECT_EQ(countSpecialized(TM), 5u);
  EXPECT_THAT(TM.calleesOf("b"), ElementsAre("g.recurse.clone"));
}

TEST_F(SpecializeActionTest, ARequestInTheSourceGetsMoreThanAFoundRing) {
  TestModule TM(remainder("f", 8) + foundRemainder("g", 8) +
                entry("a", "f", 7) + entry("b", "g", 7));
  buildRings(TM);
  ScopedOption<unsigned> Limit("inline-recursion-max-unasked-growth", 0);
  FunctionSpecializeAction Action;
  Selection Selected = Action.selectCI(TM.module(), true);
  EXPECT_TRUE(Action.transform(TM.module(), Selected, {}));
  EXPECT_EQ(countSpecialized(TM), 8u);
  EXPECT_THAT(TM.calleesOf("b"), ElementsAre("g.recurse.clone"));
}

TEST_F(SpecializeActionTest, FoundRingsAreBoundedByTheLimitOfTheModuleToo) {
  TestModule TM(foundRemainder("f", 8) + entry("main", "f", 7));
  buildRings(TM);
  ScopedOption<unsigned> Growth("inline-recursion-max-unasked-growth", 1000);
  ScopedOption<unsigned> Limit("inline-recursion-max-specialized-size", 20);
  FunctionSpecializeAction Action;
  Selection Selected = Action.selectCI(TM.module(), true);
  EXPECT_FALSE(Action.transform(TM.module(), Selected, {}));
  EXPECT_EQ(countSpecialized(TM), 0u);
}

/// The number of specialisations, at most three, of a ring @f(i32 n, i32 m)
/// that does \p Work and goes on unless %done; entered with \p Entry.
unsigned countFollowed(const std::string &Work, const std::string &Entry) {
  ScopedOption<unsigned> Limit("inline-recursion-max-specializations", 3);
  TestModule TM(R"(@p = global i1 false
define void @f(i32 %n, i32 %m) "specialize-inline-recursion-function" {
)" + Work + R"(
  br i1 %done, label %base, label %recurse
base:
  ret void
recurse:
  %n1 = sub i32 %n, 1
  %m1 = sub i32 %m, 1
  br label %go
go:
  call void @f(i32 %n1, i32 %m1)
  ret void
}
define void @main(i32 %x) {
  call void @f()" +
                Entry + ")\n  ret void\n}\n");
  LoggingDriver Driver(TM);
  EXPECT_TRUE(Driver->inlineRecursionFunction(&TM.function("f")));
  FunctionSpecializeAction Action;
  Selection Selected = Action.selectCI(TM.module(), true);
  EXPECT_TRUE(Action.transform(TM.module(), Selected, {}));
  EXPECT_TRUE(TM.isValid());
  return count_if(TM.module(), [](const Function &F) {
    return F.getName().contains(".specialized.");
  });
}

TEST_F(SpecializeActionTest, ConstantsAreFollowedWhereTheyDecide) {
  const std::string Open = "\n  %done = load volatile i1, ptr @p";
  // Remainders.
  const std::string Unsigned = "  %r = urem i32 %n, 4" + Open;
  const std::string Signed = "  %r = srem i32 %n, 4" + Open;
  EXPECT_EQ(countFollowed(Unsigned, "i32 99, i32 %x"), 3u);
  EXPECT_EQ(countFollowed(Signed, "i32 99, i32 %x"), 3u);
  // A branch of two ways.
  EXPECT_EQ(countFollowed("  %r = urem i32 %n, 4\n"
                          "  %done = icmp eq i32 %m, 0",
                          "i32 %x, i32 99"),
            3u);
  // Neither; that a branch of one way goes away is no decision.
  EXPECT_EQ(countFollowed(Unsigned, "i32 %x, i32 99"), 1u);
}

TEST_F(SpecializeActionTest, WhatMustNotBeDuplicatedIsNotSpecialised) {
  auto IsSpecialised = [](const std::string &Inside) {
    TestModule TM(R"(@p = global ptr null
declare void @once()
define void @f(i32 %n) "specialize-inline-recursion-function" {
entry:
  %r = urem i32 %n, 4
  %done = icmp eq i32 %r, 0
  br i1 %done, label %base, label %recurse
base:
  ret void
recurse:
  )" + Inside + R"(
  %less = sub i32 %n, 1
  call void @f(i32 %less)
  ret void
}
define void @main() {
  call void @f(i32 9)
  ret void
}
)");
    buildRings(TM);
    FunctionSpecializeAction Action;
    Selection Selected = Action.selectCI(TM.module(), true);
    return Action.transform(TM.module(), Selected, {});
  };
  EXPECT_TRUE(IsSpecialised("call void @once()"));
  EXPECT_FALSE(IsSpecialised("call void @once() noduplicate"));
  EXPECT_FALSE(IsSpecialised("store ptr blockaddress(@f, %base), ptr @p"));
}

TEST_F(SpecializeActionTest, MetadataOfTheFunctionIsKept) {
  TestModule TM(remainder("f", 4) + entry("main", "f", 9));
  Function &F = TM.function("f");
  LLVMContext &Context = F.getContext();
  auto *Zero =
      ConstantAsMetadata::get(ConstantInt::get(Type::getInt64Ty(Context), 0));
  MDNode *Type = MDNode::get(Context, {Zero, MDString::get(Context, "type")});
  F.setMetadata(LLVMContext::MD_type, Type);
  buildRings(TM);
  FunctionSpecializeAction Action;
  Selection Selected = Action.selectCI(TM.module(), true);
  EXPECT_TRUE(Action.transform(TM.module(), Selected, {}));
  EXPECT_EQ(TM.function("f.specialized.9").getMetadata(LLVMContext::MD_type),
            Type);
}

TEST_F(SpecializeActionTest, MemoryOfAReplacedPointerIsAnyMemory) {
  auto Effects = [](const std::string &Pointer) {
    TestModule TM(R"(@g = global i32 0
define void @f(i32 %n, ptr %p) memory(argmem: read)
    "specialize-inline-recursion-function" {
  %r = urem i32 %n, 4
  %v = load i32, ptr %p
  %done = icmp eq i32 %r, %v
  br i1 %done, label %base, label %recurse
base:
  ret void
recurse:
  %less = sub i32 %n, 1
  call void @f(i32 %less, ptr %p)
  ret void
}
define void @main(ptr %x) {
  call void @f(i32 9, ptr )" +
                  Pointer + ")\n  ret void\n}\n");
    buildRings(TM);
    FunctionSpecializeAction Action;
    Selection Selected = Action.selectCI(TM.module(), true);
    EXPECT_TRUE(Action.transform(TM.module(), Selected, {}));
    const MemoryEffects Effects =
        TM.function(TM.calleesOf("main").front()).getMemoryEffects();
    EXPECT_EQ(Effects.getModRef(MemoryEffects::ArgMem), ModRefInfo::Ref);
    EXPECT_EQ(Effects.getModRef(MemoryEffects::InaccessibleMem),
              ModRefInfo::NoModRef);
    return Effects.getModRef(MemoryEffects::Other);
  };
  EXPECT_EQ(Effects("@g"), ModRefInfo::Ref);
  EXPECT_EQ(Effects("%x"), ModRefInfo::NoModRef);
}

TEST_F(SpecializeActionTest, ArgumentsWithAPlaceOfTheirOwnStay) {
  auto Callee = [](const std::string &Attribute) {
    TestModule TM("@g = global i32 0\ndefine void @f(i32 %n, ptr " + Attribute +
                  R"( %p) "specialize-inline-recursion-function" {
  %r = urem i32 %n, 4
  %done = icmp eq i32 %r, 0
  br i1 %done, label %base, label %recurse
base:
  ret void
recurse:
  %less = sub i32 %n, 1
  call void @f(i32 %less, ptr )" +
                  Attribute + R"( %p)
  ret void
}
define void @main() {
  call void @f(i32 9, ptr )" +
                  Attribute + R"( @g)
  ret void
}
)");
    buildRings(TM);
    FunctionSpecializeAction Action;
    Selection Selected = Action.selectCI(TM.module(), true);
    EXPECT_TRUE(Action.transform(TM.module(), Selected, {}));
    EXPECT_TRUE(TM.isValid());
    return TM.calleesOf("main").front();
  };
  EXPECT_EQ(Callee("nonnull"), "f.specialized.9.g");
  for (const char *Attribute :
       {"byval(i32)", "inalloca(i32)", "nest", "swiftself", "swiftasync"})
    EXPECT_EQ(Callee(Attribute), "f.specialized.9._") << Attribute;
}

/// One way in which the functions @f and @g, which call themselves and each
/// other, differ: what stands in the place of `$where` in each of them.
struct Difference {
  const char *Where, *InF, *InG;
};

/// The two functions, and a call that enters @f with 9.
std::string makeTwins(const Difference &Differs) {
  const std::map<std::string, std::string> Places = {
      {"$conv", ""},    {"$arg", ""},
      {"$attr", ""},    {"$gc", ""},
      {"$pers", ""},    {"$flag", ""},
      {"$meta", ""},    {"$more", ""},
      {"$less", "1"},   {"$test", "eq"},
      {"$kind", "add"}, {"$from", "[ 1, %entry ], [ 2, %other ]"}};
  auto Fill = [&](std::string Text, const char *What) {
    for (const auto &[Where, Usual] : Places)
      Text.replace(Text.find(Where), Where.size(),
                   Where == Differs.Where ? What : Usual);
    return Text;
  };
  auto Make = [&](const std::string &Name, const char *What) {
    return Fill("define $conv i32 @" + Name + R"((i32 $arg %n) $attr
    "specialize-inline-recursion-function" $gc $pers {
entry:
  %rem = urem i32 %n, 4
  %done = icmp $test i32 %rem, 0
  br i1 %done, label %base, label %other
other:
  %end = icmp eq i32 %n, 99
  br i1 %end, label %base, label %recurse $meta
base:
  %last = phi i32 $from
  ret i32 %last
recurse:
  %less = sub $flag i32 %n, $less
  %a = call i32 @f(i32 %less)
  %b = call i32 @g(i32 %less)
  %s = $kind i32 %a, %b
  $more
  ret i32 %s
}
)",
                What);
  };
  return "declare i32 @p1(...)\ndeclare i32 @p2(...)\n!0 = !{}\n" +
         Make("f", Differs.InF) + Make("g", Differs.InG) +
         entry("main", "f", 9);
}

TEST_F(SpecializeActionTest, OnlyTheSameBodyIsReplaced) {
  // Whom a specialisation of @f calls instead of @f and @g, which are entered
  // with 8.
  auto CalledBySpecialization = [](const Difference &Differs) {
    TestModule TM(makeTwins(Differs));
    buildRings(TM);
    FunctionSpecializeAction Action;
    Selection Selected = Action.selectCI(TM.module(), true);
    EXPECT_TRUE(Action.transform(TM.module(), Selected, {}));
    EXPECT_TRUE(TM.isValid());
    return TM.calleesOf("f.specialized.9");
  };
  EXPECT_THAT(CalledBySpecialization({"", "", ""}),
              ElementsAre("f.specialized.8", "f.specialized.8"));
  const Difference Differences[] = {
      {"$conv", "", "fastcc"},
      {"$arg", "", "signext"},
      {"$attr", "", "nounwind"},
      {"$gc", "", "gc \"shadow-stack\""},
      {"$gc", "gc \"shadow-stack\"", ""},
      {"$gc", "gc \"erlang\"", "gc \"shadow-stack\""},
      {"$pers", "", "personality ptr @p1"},
      {"$pers", "personality ptr @p2", ""},
      {"$pers", "personality ptr @p2", "personality ptr @p1"},
      {"$flag", "", "nsw"},
      {"$less", "1", "2"},
      {"$test", "eq", "ne"},
      {"$meta", "", ", !unpredictable !0"},
      {"$meta", ", !unpredictable !0", ""},
      {"$more", "", "%x = add i32 %s, 1"},
      {"$more", "%x = add i32 %s, 1", ""},
      {"$from", "[ 1, %entry ], [ 2, %other ]", "[ 1, %other ], [ 2, %entry ]"},
      {"$kind", "add", "mul"},
  };
  for (const Difference &Differs : Differences) {
    const std::vector<std::string> Called = CalledBySpecialization(Differs);
    const std::string What =
        std::string(Differs.Where) + " " + Differs.InF + "/" + Differs.InG;
    EXPECT_THAT(Called, ElementsAre("f.specialized.8",
                                    ::testing::StartsWith("g.recurse.clone")))
        << What;
  }
  // What is the same in both is none.
  for (const Difference &Same :
       {Difference{"$gc", "gc \"a\"", "gc \"a\""},
        Difference{"$pers", "personality ptr @p1", "personality ptr @p1"}})
    EXPECT_THAT(CalledBySpecialization(Same),
                ElementsAre("f.specialized.8", "f.specialized.8"))
        << Same.Where;
  // Whether a copy is to be inlined is nothing that it computes.
  EXPECT_THAT(CalledBySpecialization({"$attr", "", "alwaysinline"}),
              ElementsAre("f.specialized.8", "f.specialized.8"));
}

/// What planInlining() says about the functions of a module, in the order of
/// \p Names, as a string of `i` (inlined) and `-`.
std::string plan(const std::string &Text, const std::vector<std::string> &Names,
                 unsigned MaxInlinedSize, unsigned GrowthLeft = ~0U,
                 function_ref<void(TestModule &)> Prepare = {}) {
  TestModule TM(Text);
  if (Prepare)
    Prepare(TM);
  std::vector<Function *> Group;
  for (const std::string &Name : Names)
    Group.push_back(&TM.function(Name));
  planInlining(Group, MaxInlinedSize, GrowthLeft);
  std::string Result;
  for (Function *F : Group) {
    const bool Inlined = F->hasFnAttribute(Attribute::AlwaysInline);
    // Always one of them.
    EXPECT_NE(Inlined, F->hasFnAttribute(Attribute::NoInline)) << Result;
    Result += Inlined ? 'i' : '-';
  }
  EXPECT_TRUE(TM.isValid());
  return Result;
}

TEST(InliningPlanTest, AnEmptyGroup) {
  unsigned GrowthLeft = 0;
  planInlining({}, 100, GrowthLeft);
}

TEST(InliningPlanTest, TheLimitIsIncluded) {
  const std::string Text = calls("a", {}, 9);
  EXPECT_EQ(plan(Text, {"a"}, 9), "-");
  EXPECT_EQ(plan(Text, {"a"}, 10), "i");
  EXPECT_EQ(plan(Text, {"a"}, 0), "-");
}

TEST(InliningPlanTest, WhatIsInlinedCountsForEveryCallOfIt) {
  // b has 10 instructions; a has 4, and 24 with both calls of b inlined.
  const std::string Text = calls("b", {}, 9) + calls("a", {"b", "b"}, 1);
  EXPECT_EQ(plan(Text, {"a", "b"}, 24), "ii");
  EXPECT_EQ(plan(Text, {"a", "b"}, 23), "-i");
  EXPECT_EQ(plan(Text, {"a", "b"}, 9), "i-");
}

TEST(InliningPlanTest, WhatIsNotInlinedDoesNotCount) {
  // The three levels above the large one start anew.
  const std::string Text = calls("d", {}, 100) + calls("c", {"d"}) +
                           calls("b", {"c", "c"}) + calls("a", {"b", "b"});
  EXPECT_EQ(plan(Text, {"a", "b", "c", "d"}, 20), "iii-");
  EXPECT_EQ(plan(Text, {"a", "b", "c", "d"}, 16), "-ii-");
}

TEST(InliningPlanTest, ACycleIsCutWhereItCloses) {
  const std::string Text = "declare void @outside(i32)\n" + calls("a", {"b"}) +
                           calls("b", {"c"}) + calls("c", {"a", "outside"});
  EXPECT_EQ(plan(Text, {"a", "b", "c"}, 1000), "-ii");
  EXPECT_EQ(plan(calls("a", {"a"}), {"a"}, 1000), "-");
  EXPECT_EQ(plan(calls("a", {"b"}) + calls("b", {"b"}), {"a", "b"}, 1000),
            "i-");
  // Also where it does not close at the first.
  EXPECT_EQ(plan(calls("a", {"b"}) + calls("b", {"c"}) + calls("c", {"b"}),
                 {"a", "b", "c"}, 1000),
            "i-i");
}

TEST(InliningPlanTest, CallsOfOthersDoNotCount) {
  const std::string Text = calls("large", {}, 500) + calls("a", {"large"});
  EXPECT_EQ(plan(Text, {"a"}, 2), "i");
}

TEST(InliningPlanTest, EarlierMarksAreOverridden) {
  auto Mark = [](TestModule &TM) {
    TM.function("a").addFnAttr(Attribute::AlwaysInline);
    TM.function("b").addFnAttr(Attribute::NoInline);
  };
  EXPECT_EQ(
      plan(calls("b", {}) + calls("a", {"b"}, 50), {"a", "b"}, 10, ~0U, Mark),
      "-i");
}

TEST(InliningPlanTest, SizesSaturate) {
  std::string Text = calls("f0", {}, 2);
  std::vector<std::string> Names = {"f0"};
  for (unsigned I = 1; I != 70; ++I) {
    const std::string Below = Names.front();
    Names.insert(Names.begin(), "f" + std::to_string(I));
    Text += calls(Names.front(), {Below, Below, Below});
  }
  // Level k has 5 * 3^k - 2 instructions and three calls.  Up to level 17 all
  // of that fits into what 32 bits can count; wrapped around, the next ones
  // would seem to fit as well.
  const std::string Plan = plan(Text, Names, ~0U);
  EXPECT_EQ(Plan.substr(70 - 20), "i-" + std::string(18, 'i'));
}

TEST(InliningPlanTest, GrowthIsTakenFromTheBudget) {
  // Three instructions, called three times: inlined, six more of them.
  const std::string Text = calls("f0", {}, 2) + calls("f1", {"f0", "f0", "f0"});
  EXPECT_EQ(plan(Text, {"f1", "f0"}, 100, 6).back(), 'i');
  EXPECT_EQ(plan(Text, {"f1", "f0"}, 100, 5).back(), '-');
  // One of two calls takes the place of the function, the other one adds.
  const std::string Twice = calls("f0", {}, 2) + calls("f1", {"f0", "f0"});
  EXPECT_EQ(plan(Twice, {"f1", "f0"}, 100, 3).back(), 'i');
  EXPECT_EQ(plan(Twice, {"f1", "f0"}, 100, 2).back(), '-');
}

} // namespace
