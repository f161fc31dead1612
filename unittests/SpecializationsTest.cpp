//===- SpecializationsTest.cpp - Copies for known arguments ---------------===//

#include "host/Specializations.h"
#include "TestModule.h"
#include "llvm/IR/Constants.h"
#include "llvm/Support/ModRef.h"

using namespace llvm;
using namespace llvm::inlinerecursion;
using namespace llvm::unittest;

namespace {

const char *const Text = R"(
@memory = global i32 0
declare i32 @compare(i32)
define i32 @f(i32 %n, ptr %p) memory(argmem: read) {
  %v = load i32, ptr %p
  %stop = icmp eq i32 %n, 0
  br i1 %stop, label %end, label %rec
rec:
  %m = sub i32 %n, 1
  %r = call i32 @f(i32 %m, ptr %p) memory(argmem: read)
  %s = add i32 %r, %v
  ret i32 %s
end:
  ret i32 1
}
define i32 @main(ptr %p) {
  %a = call i32 @f(i32 2, ptr %p)
  %b = call i32 @f(i32 0, ptr @memory) memory(argmem: read)
  ret i32 %a
}
)";

class SpecializationsTest : public ::testing::Test {
protected:
  ArgumentTuple number(unsigned N, Constant *Pointer = nullptr) {
    return {ConstantInt::get(Type::getInt32Ty(TM.module().getContext()), N),
            Pointer};
  }
  CallInst &call(StringRef Function, StringRef Name) {
    return *cast<CallInst>(TestModule::find(TM.function(Function), Name));
  }

  TestModule TM{Text};
  Function &F = TM.function("f");
  Specializations Made{F};
};

TEST_F(SpecializationsTest, CopiesFoldWhatIsKnown) {
  EXPECT_EQ(Made.find(number(2)), nullptr);
  Specializations::CallMap Calls;
  Function &Two = Made.make(number(2), &Calls);
  EXPECT_EQ(Made.find(number(2)), &Two);
  EXPECT_EQ(Made.find(number(1)), nullptr);
  EXPECT_EQ(Two.getName(), "f.specialized.2._");
  EXPECT_TRUE(Two.hasLocalLinkage());
  EXPECT_EQ(Two.size(), 1u);
  // It calls what the function called, with what is known.
  CallBase *Inner = Calls.lookup(&call("f", "r"));
  ASSERT_NE(Inner, nullptr);
  EXPECT_EQ(Inner->getFunction(), &Two);
  EXPECT_EQ(Inner->getCalledFunction(), &F);
  EXPECT_EQ(Inner->getArgOperand(0), number(1)[0]);

  Function &None = Made.make(number(0), &Calls);
  EXPECT_EQ(Calls.lookup(&call("f", "r")), nullptr);
  EXPECT_EQ(Made.getCopies().vec(), std::vector<Function *>({&Two, &None}));
  EXPECT_TRUE(TM.isValid());
}

TEST_F(SpecializationsTest, CopiesAreSeenByNobodyElse) {
  F.setVisibility(GlobalValue::HiddenVisibility);
  F.setDLLStorageClass(GlobalValue::DLLExportStorageClass);
  const Function &Copy = Made.make(number(2));
  EXPECT_TRUE(Copy.isDSOLocal());
  EXPECT_TRUE(Copy.hasDefaultVisibility());
  EXPECT_FALSE(Copy.hasDLLExportStorageClass());
}

TEST_F(SpecializationsTest, CallsAreRedirected) {
  Function &Two = Made.make(number(2));
  EXPECT_FALSE(Made.anyRedirected());
  Made.redirect(call("main", "a"), number(2));
  EXPECT_TRUE(Made.anyRedirected());
  EXPECT_EQ(call("main", "a").getCalledFunction(), &Two);
  EXPECT_EQ(call("main", "b").getCalledFunction(), &F);
  EXPECT_TRUE(TM.isValid());
}

TEST_F(SpecializationsTest, MemoryByNameIsNoArgumentAnyMore) {
  Constant *Memory = TM.module().getNamedGlobal("memory");
  Function &Copy = Made.make(number(0, Memory));
  Made.redirect(call("main", "b"), number(0, Memory));
  const auto Reads = [](MemoryEffects Effects) {
    return isRefSet(Effects.getModRef(MemoryEffects::Other));
  };
  EXPECT_FALSE(Reads(F.getMemoryEffects()));
  EXPECT_TRUE(Reads(Copy.getMemoryEffects()));
  EXPECT_TRUE(Reads(call("main", "b").getMemoryEffects()));
}

TEST_F(SpecializationsTest, UndoLeavesNothing) {
  const std::string Before = TM.text();
  Specializations::CallMap Calls;
  Constant *Memory = TM.module().getNamedGlobal("memory");
  Made.make(number(2), &Calls);
  Made.make(number(1));
  Made.make(number(0, Memory));
  Made.redirect(*Calls.lookup(&call("f", "r")), number(1));
  Made.redirect(call("main", "a"), number(2));
  Made.redirect(call("main", "b"), number(0, Memory));
  EXPECT_NE(TM.text(), Before);
  Made.undo();
  EXPECT_EQ(TM.text(), Before);
  EXPECT_EQ(Made.find(number(2)), nullptr);
  EXPECT_FALSE(Made.anyRedirected());
  EXPECT_TRUE(Made.getCopies().empty());
}

} // namespace
