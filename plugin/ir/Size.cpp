//===- Size.cpp - What a function takes -----------------------------------===//

#include "plugin/ir/Size.h"
#include "llvm/IR/InstIterator.h"
#include "llvm/IR/Instructions.h"
#include "llvm/IR/Module.h"
#include "llvm/Support/CommandLine.h"
#include "llvm/Support/MathExtras.h"

using namespace llvm;
using namespace llvm::inlinerecursion;

static cl::opt<unsigned> MaxFrameSize(
    "inlinerecursion-max-frame-size", cl::init(256), cl::Hidden,
    cl::desc("Largest size of the local variables in memory of a recursive "
             "function of which copies are inlined into each other (bytes)"));

uint64_t llvm::inlinerecursion::getFrameSize(const Function &F) {
  const DataLayout &DL = F.getParent()->getDataLayout();
  uint64_t Size = 0;
  for (const Instruction &I : instructions(F))
    if (const auto *Alloca = dyn_cast<AllocaInst>(&I))
      if (auto Bits = Alloca->getAllocationSizeInBits(DL))
        Size = SaturatingAdd(Size, uint64_t(Bits->getKnownMinValue() / 8));
  return Size;
}

bool llvm::inlinerecursion::hasLargeFrame(const Function &F) {
  return getFrameSize(F) > MaxFrameSize;
}
