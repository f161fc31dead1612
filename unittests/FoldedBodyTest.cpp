//===- FoldedBodyTest.cpp - A function with known arguments ---------------===//

#include "plugin/recursion/FoldedBody.h"
#include "TestModule.h"
#include "llvm/IR/Constants.h"

using namespace llvm;
using namespace llvm::inlinerecursion;
using namespace llvm::unittest;

namespace {

/// @f of a module, folded.
class Folded {
public:
  explicit Folded(const std::string &Assembly)
      : TM(Assembly), F(TM.function("f")), Body(F, TM.functionAnalyses()) {}

  /// With the number \p N in the place of the first argument.
  FoldedBody &with(unsigned N) {
    ArgumentTuple Tuple(F.arg_size());
    Tuple[0] = ConstantInt::get(F.getArg(0)->getType(), N);
    Body.fold(Tuple);
    return Body;
  }
  FoldedBody &with(Constant *C) {
    ArgumentTuple Tuple(F.arg_size());
    Tuple[0] = C;
    Body.fold(Tuple);
    return Body;
  }
  FoldedBody &withNothing() {
    Body.fold(ArgumentTuple(F.arg_size()));
    return Body;
  }

private:
  TestModule TM;

public:
  Function &F;

private:
  FoldedBody Body;
};

const char *const Branching = R"(
@g = external global i32
define void @f(i32 %n, i32 %k) {
  %stop = icmp eq i32 %n, 0
  br i1 %stop, label %end, label %rec
rec:
  %m = sub i32 %n, 1
  store i32 %k, ptr @g
  store i32 %k, ptr @g
  call void @f(i32 %m, i32 %k)
  br label %end
end:
  ret void
}
)";

TEST(FoldedBodyTest, BranchesThatAreNotTakenAreGone) {
  Folded F(Branching);
  EXPECT_EQ(F.withNothing().getSize(), 8u);
  EXPECT_EQ(F.withNothing().getSelfCalls().size(), 1u);
  EXPECT_EQ(F.withNothing().getSaved(), 0.0);

  // The test, the branch and the subtraction are known.
  EXPECT_EQ(F.with(3).getSize(), 5u);
  ASSERT_EQ(F.with(3).getSelfCalls().size(), 1u);
  FoldedBody &Three = F.with(3);
  const auto Passed = Three.getPassed(*Three.getSelfCalls().front());
  ASSERT_EQ(Passed.size(), 1u);
  EXPECT_EQ(Passed.front()[0],
            ConstantInt::get(Type::getInt32Ty(F.F.getContext()), 2));
  EXPECT_EQ(Passed.front()[1], nullptr);
  EXPECT_GT(Three.getSaved(), 0.0);
  EXPECT_LT(Three.getSaved(), Three.getTime());

  // Only the return is left.
  EXPECT_EQ(F.with(0u).getSize(), 1u);
  EXPECT_TRUE(F.with(0u).getSelfCalls().empty());
}

TEST(FoldedBodyTest, WhatIsKnownAnywayIsNotSaved) {
  std::string Text = Branching;
  const double Before = Folded(Text).with(3).getSaved();
  Text.insert(Text.find("  %m ="),
              "  %c = mul i32 3, 5\n  %d = add i32 %c, 2\n");
  EXPECT_EQ(Folded(Text).with(3).getSaved(), Before);
  EXPECT_EQ(Folded(Text).withNothing().getSaved(), 0.0);
}

/// \p Trips says when the loop ends.
std::string looping(const std::string &Trips) {
  return R"(
@g = external global i32
define void @f(i32 %n, i32 %k) {
entry:
  br label %loop
loop:
  %i = phi i32 [ 0, %entry ], [ %next, %loop ]
  store volatile i32 %i, ptr @g
  store volatile i32 %i, ptr @g
  %next = add nuw nsw i32 %i, 1
  %done = icmp eq i32 %next, )" +
         Trips + R"(
  br i1 %done, label %end, label %loop
end:
  %m = sub i32 %n, 1
  call void @f(i32 %m, i32 %k)
  ret void
}
)";
}

TEST(FoldedBodyTest, LoopsOfKnownTripsAreWorthMore) {
  const double Unknown = Folded(looping("%k")).with(4).getSaved();
  EXPECT_GT(Folded(looping("%n")).with(4).getSaved(), Unknown + 1);
  // Too many to be unrolled.
  EXPECT_EQ(Folded(looping("%n")).with(1000).getSaved(), Unknown);
  // Known whatever the arguments are.
  EXPECT_EQ(Folded(looping("4")).with(4).getSaved(), Unknown);
}

TEST(FoldedBodyTest, CallsThroughPointersBecomeDirect) {
  Folded F(R"(
declare i32 @compare(i32)
define void @f(ptr %p, i32 %n) {
  %c = call i32 %p(i32 %n)
  call void @f(ptr %p, i32 %c)
  ret void
}
)");
  const double Unknown = F.withNothing().getSaved();
  EXPECT_EQ(Unknown, 0.0);
  Function *Compare = F.F.getParent()->getFunction("compare");
  EXPECT_GT(F.with(Compare).getSaved(), 10.0);
  // The call is still there.
  EXPECT_EQ(F.with(Compare).getSize(), 3u);
}

TEST(FoldedBodyTest, EachTripPassesItsOwn) {
  Folded F(R"(
define void @f(i32 %n, i32 %k) {
entry:
  %any = icmp sgt i32 %n, 0
  br i1 %any, label %loop, label %end
loop:
  %i = phi i32 [ 0, %entry ], [ %next, %loop ]
  call void @f(i32 %i, i32 %k)
  %next = add nuw nsw i32 %i, 1
  %done = icmp eq i32 %next, %n
  br i1 %done, label %end, label %loop
end:
  ret void
}
)");
  FoldedBody &Three = F.with(3);
  EXPECT_EQ(Three.getPassed(*Three.getSelfCalls().front()).size(), 3u);
  EXPECT_EQ(F.with(1).getPassed(*F.with(1).getSelfCalls().front()).size(), 1u);
  EXPECT_TRUE(F.with(0u).getSelfCalls().empty());
}

} // namespace
