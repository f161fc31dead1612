//===- BodyComparison.cpp - Do two functions do the same? -----------------===//

#include "BodyComparison.h"
#include "llvm/ADT/DenseMap.h"
#include "llvm/ADT/STLExtras.h"
#include "llvm/ADT/SmallVector.h"
#include "llvm/IR/Attributes.h"
#include "llvm/IR/DebugInfoMetadata.h"
#include "llvm/IR/Instructions.h"

using namespace llvm;
using namespace llvm::inlinerecursion;

/// What a function promises and how it is called, but for its inlining.
static AttributeList getInterface(const Function &F) {
  AttributeMask Inlining;
  Inlining.addAttribute(Attribute::AlwaysInline);
  Inlining.addAttribute(Attribute::NoInline);
  return F.getAttributes().removeFnAttributes(F.getContext(), Inlining);
}

static bool hasSameInterface(const Function &A, const Function &B) {
  return A.getFunctionType() == B.getFunctionType() &&
         A.getCallingConv() == B.getCallingConv() &&
         getInterface(A) == getInterface(B) && A.hasGC() == B.hasGC() &&
         (!A.hasGC() || A.getGC() == B.getGC()) &&
         A.hasPersonalityFn() == B.hasPersonalityFn() &&
         (!A.hasPersonalityFn() ||
          A.getPersonalityFn() == B.getPersonalityFn());
}

/// What \p Loop, the metadata of a loop, says about it.  The first operand is
/// the node itself, and with debug information there are the places where the
/// loop begins and ends, which cloning maps to those of the copy.
static SmallVector<Metadata *, 4> getLoopProperties(const MDNode &Loop) {
  SmallVector<Metadata *, 4> Properties;
  for (Metadata *Property : drop_begin(Loop.operands()))
    if (!isa_and_nonnull<DILocation>(Property))
      Properties.push_back(Property);
  return Properties;
}

static bool hasSameMetadata(const Instruction &A, const Instruction &B) {
  SmallVector<std::pair<unsigned, MDNode *>, 4> OfA, OfB;
  A.getAllMetadataOtherThanDebugLoc(OfA);
  B.getAllMetadataOtherThanDebugLoc(OfB);
  auto IsSame = [](const auto &EntryA, const auto &EntryB) {
    return EntryA == EntryB || (EntryA.first == LLVMContext::MD_loop &&
                                EntryB.first == LLVMContext::MD_loop &&
                                getLoopProperties(*EntryA.second) ==
                                    getLoopProperties(*EntryB.second));
  };
  return std::equal(OfA.begin(), OfA.end(), OfB.begin(), OfB.end(), IsSame);
}

/// The instructions of \p F, debug information left out: it must not change the
/// code.
static SmallVector<const Instruction *, 0> getInstructions(const Function &F) {
  SmallVector<const Instruction *, 0> Instructions;
  for (const BasicBlock &BB : F)
    for (const Instruction &I : BB.instructionsWithoutDebug())
      Instructions.push_back(&I);
  return Instructions;
}

namespace {
/// Knows of each value of one function which one of the other stands for it.
class Counterparts {
public:
  Counterparts(const Function &A, const Function &B,
               ArrayRef<const Instruction *> InstsOfA,
               ArrayRef<const Instruction *> InstsOfB) {
    for (auto [ArgA, ArgB] : zip(A.args(), B.args()))
      Counterpart[&ArgA] = &ArgB;
    for (auto [BlockA, BlockB] : zip(A, B))
      Counterpart[&BlockA] = &BlockB;
    for (auto [InstA, InstB] : zip(InstsOfA, InstsOfB))
      Counterpart[InstA] = InstB;
  }

  bool isSame(const Value *InA, const Value *InB) const {
    auto It = Counterpart.find(InA);
    return (It != Counterpart.end() ? It->second : InA) == InB;
  }

private:
  DenseMap<const Value *, const Value *> Counterpart;
};
} // namespace

/// Is \p U the callee of a plain call, and one of those that are alike?
static bool isLink(const Use &U, function_ref<bool(const Function &)> IsAlike) {
  const auto *Call = dyn_cast<CallInst>(U.getUser());
  const auto *Callee = dyn_cast<Function>(U);
  return Call && Call->isCallee(&U) && Callee && IsAlike(*Callee);
}

bool llvm::inlinerecursion::haveSameBody(
    const Function &A, const Function &B,
    function_ref<bool(const Function &)> IsAlike, BodyComparison Kind) {
  const bool IsExact = Kind == BodyComparison::Exact;
  const auto InstsOfA = getInstructions(A), InstsOfB = getInstructions(B);
  if (A.getFunctionType() != B.getFunctionType() || A.size() != B.size() ||
      InstsOfA.size() != InstsOfB.size() ||
      (IsExact && !hasSameInterface(A, B)))
    return false;

  const Counterparts Known(A, B, InstsOfA, InstsOfB);
  auto IsSameOperation = [&](const Instruction &InA, const Instruction &InB) {
    auto IsRewritten = [&IsAlike](const Instruction &I) {
      const auto *Call = dyn_cast<CallInst>(&I);
      return Call && isLink(Call->getCalledOperandUse(), IsAlike);
    };
    if (!IsExact && IsRewritten(InA) && IsRewritten(InB))
      return InA.getNumOperands() == InB.getNumOperands();
    return InA.isSameOperationAs(&InB) &&
           InA.hasSameSubclassOptionalData(&InB) &&
           (!IsExact || hasSameMetadata(InA, InB));
  };
  auto IsSameOperand = [&](auto Pair) {
    const auto &[InA, InB] = Pair;
    return Known.isSame(InA, InB) ||
           (isLink(InA, IsAlike) && isLink(InB, IsAlike));
  };
  auto IsSameBlock = [&Known](auto Pair) {
    return Known.isSame(std::get<0>(Pair), std::get<1>(Pair));
  };
  return all_of(zip(InstsOfA, InstsOfB), [&](auto Pair) {
    const auto [InA, InB] = Pair;
    if (!Known.isSame(InA->getParent(), InB->getParent()) ||
        !IsSameOperation(*InA, *InB) ||
        !all_of(zip(InA->operands(), InB->operands()), IsSameOperand))
      return false;
    const auto *Phi = dyn_cast<PHINode>(InA);
    return !Phi || all_of(zip(Phi->blocks(), cast<PHINode>(InB)->blocks()),
                          IsSameBlock);
  });
}
