//===- SpecializationGateTest.cpp - Who may be a ring ---------------------===//

#include "TestModule.h"

using namespace llvm;
using namespace llvm::unittest;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

constexpr const char *Eligible =
    "specialize-inline-recursion-function-eligible";

class SpecializationGateTest : public PassTest {
protected:
  /// The depth that the gate sets for a function with \p Entry before the end
  /// of its entry block, or 0 if it refuses; checks what comes with either.
  static unsigned gate(const std::string &Entry, int64_t Limit = 10,
                       const std::string &Parameters = "i32 %n, i32 %m") {
    TestModule TM("@g = global i32 0\ndefine void @f(" + Parameters +
                  ") \"specialize-inline-recursion-function\" {\n" + Entry +
                  "\n  ret void\n}\n");
    Function &F = TM.function("f");
    LoggingDriver Driver(TM, 0, Limit);
    setDepth(77);
    const bool Accepted = Driver->isSpecializeAllowed(&F);
    EXPECT_THAT(Driver.log(), ElementsAre("SE f"));
    EXPECT_EQ(F.hasFnAttribute(Eligible), Accepted);
    // Seeing is the driver's part.
    EXPECT_FALSE(Driver->SpecializeSeen);
    if (!Accepted) {
      EXPECT_EQ(depth(), 77u);
      return 0;
    }
    EXPECT_TRUE(F.getFnAttribute(Eligible).getValueAsString().empty());
    return depth();
  }
};

TEST_F(SpecializationGateTest, WithoutTheRequestNothingIsAsked) {
  TestModule TM(remainder("f", 4));
  Function &F = TM.function("f");
  F.removeFnAttr("specialize-inline-recursion-function");
  LoggingDriver Driver(TM);
  setDepth(77);
  EXPECT_FALSE(Driver->isSpecializeAllowed(&F));
  EXPECT_THAT(Driver.log(), IsEmpty());
  EXPECT_FALSE(F.hasFnAttribute(Eligible));
  EXPECT_EQ(depth(), 77u);
}

TEST_F(SpecializationGateTest, TheBoundOfTheRemainderIsTheDepth) {
  EXPECT_EQ(gate("%r = urem i32 %n, 4"), 4u);
  EXPECT_EQ(gate("%r = urem i32 %n, 2"), 2u);
  EXPECT_EQ(gate("%r = urem i32 %m, 8"), 8u);
  EXPECT_EQ(gate("%r = urem i32 %n, 1"), 1u);
  EXPECT_EQ(gate("%r = urem i64 %n, 4", 10, "i64 %n"), 4u);
  EXPECT_EQ(gate("%r = urem i128 %n, 4", 10, "i128 %n"), 4u);
}

TEST_F(SpecializationGateTest, TheBoundIsTheOneThatScalarEvolutionKnows) {
  // Of a signed remainder it knows the number of sign bits: [-8, 8).
  EXPECT_EQ(gate("%r = srem i32 %n, 6"), 8u);
  EXPECT_EQ(gate("%r = srem i32 %n, 4"), 4u);
  // Of an unsigned one by anything but a power of two it knows nothing, and
  // the bound of the full range has all bits set.
  EXPECT_EQ(gate("%r = urem i32 %n, 3", 4294967295), 0u);
}

TEST_F(SpecializationGateTest, NoRemainderNoRing) {
  EXPECT_EQ(gate(""), 0u);
  EXPECT_EQ(gate("%r = and i32 %n, 3"), 0u);
  EXPECT_EQ(gate("%r = udiv i32 %n, 3"), 0u);
}

TEST_F(SpecializationGateTest, OnlyAnArgumentByALiteral) {
  EXPECT_EQ(gate("%a = add i32 %n, 1\n%r = urem i32 %a, 4"), 0u);
  EXPECT_EQ(gate("%a = ptrtoint ptr @g to i32\n%r = urem i32 %a, 4"), 0u);
  EXPECT_EQ(gate("%r = urem i32 ptrtoint (ptr @g to i32), 4"), 0u);
  EXPECT_EQ(gate("%r = urem i32 %n, %m"), 0u);
  EXPECT_EQ(gate("%r = urem i32 9, %n"), 0u);
  EXPECT_EQ(gate("%r = urem <2 x i32> %v, <i32 4, i32 4>", 10, "<2 x i32> %v"),
            0u);
}

TEST_F(SpecializationGateTest, TheLimitIsIncluded) {
  EXPECT_EQ(gate("%r = urem i32 %n, 8", 8), 8u);
  EXPECT_EQ(gate("%r = urem i32 %n, 8", 7), 0u);
  EXPECT_EQ(gate("%r = urem i32 %n, 16"), 0u);
  EXPECT_EQ(gate("%r = urem i32 %n, 1", 1), 1u);
  EXPECT_EQ(gate("%r = urem i32 %n, 1", 0), 0u);
  EXPECT_EQ(gate("%r = urem i32 %n, 1073741824", 4294967295), 1073741824u);
}

TEST_F(SpecializationGateTest, BoundsThatReadAsNegativeAreRefused) {
  // [0, 0x80000000), and 8 in four bits is -8.
  EXPECT_EQ(gate("%r = urem i32 %n, -2147483648", 4294967295), 0u);
  EXPECT_EQ(gate("%r = urem i4 %n, -8", 10, "i4 %n"), 0u);
}

TEST_F(SpecializationGateTest, AWideBoundCountsByItsLowestWord) {
  // 2^64 has a lowest word of zero.
  EXPECT_EQ(
      gate("%r = urem i128 %n, 18446744073709551616", 4294967295, "i128 %n"),
      0u);
}

TEST_F(SpecializationGateTest, TheFirstThatQualifiesDecides) {
  EXPECT_EQ(gate("%a = urem i32 %n, 2\n%b = urem i32 %n, 4"), 2u);
  EXPECT_EQ(gate("%a = urem i32 %n, 4\n%b = urem i32 %n, 2"), 4u);
  EXPECT_EQ(gate("%a = urem i32 %n, 16\n%b = urem i32 %n, 2"), 2u);
  EXPECT_EQ(gate("%a = urem i32 %n, %m\n%b = urem i32 %n, 2"), 2u);
}

TEST_F(SpecializationGateTest, LaterBlocksAreNotLookedAt) {
  EXPECT_EQ(gate("br label %next\nnext:\n%r = urem i32 %n, 4"), 0u);
}

} // namespace
