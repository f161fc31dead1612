//===- InliningPlan.cpp - Which copies are inlined ------------------------===//

#include "InliningPlan.h"
#include "llvm/ADT/DenseMap.h"
#include "llvm/ADT/STLExtras.h"
#include "llvm/ADT/SmallPtrSet.h"
#include "llvm/IR/InstIterator.h"
#include "llvm/IR/Instructions.h"
#include "llvm/Support/MathExtras.h"

using namespace llvm;

unsigned llvm::getCodeSize(const Function &F) {
  unsigned Size = 0;
  for (const BasicBlock &BB : F)
    Size += BB.sizeWithoutDebug();
  return Size;
}

/// What inlining \p F, of size \p Size, everywhere adds to the program.  The
/// function itself goes away.
static uint64_t getGrowth(const Function &F, unsigned Size) {
  const unsigned Calls = F.getNumUses();
  return Calls > 1 ? uint64_t(Calls - 1) * Size : 0;
}

void llvm::planInlining(ArrayRef<Function *> Group, unsigned MaxInlinedSize,
                        unsigned &GrowthLeft) {
  const SmallPtrSet<Function *, 16> Members(Group.begin(), Group.end());
  SmallPtrSet<Function *, 16> ClosesCycle;
  // What inlining a member adds to its caller; 0 if it is not inlined.
  DenseMap<Function *, unsigned> AddedSize;

  for (Function *F : reverse(Group)) {
    unsigned Size = getCodeSize(*F);
    for (Instruction &I : instructions(*F)) {
      auto *Call = dyn_cast<CallBase>(&I);
      Function *Callee = Call ? Call->getCalledFunction() : nullptr;
      if (!Callee || !Members.contains(Callee))
        continue;
      auto Added = AddedSize.find(Callee);
      if (Added == AddedSize.end())
        ClosesCycle.insert(Callee);
      else
        Size = SaturatingAdd(Size, Added->second);
    }
    const uint64_t Growth = getGrowth(*F, Size);
    const bool Inlined = Size <= MaxInlinedSize && Growth <= GrowthLeft &&
                         !ClosesCycle.contains(F);
    if (Inlined)
      GrowthLeft -= Growth;
    AddedSize[F] = Inlined ? Size : 0;
    F->removeFnAttr(Inlined ? Attribute::NoInline : Attribute::AlwaysInline);
    F->addFnAttr(Inlined ? Attribute::AlwaysInline : Attribute::NoInline);
  }
}
