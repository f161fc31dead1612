//===- RingSize.cpp - How large a requested ring becomes ------------------===//

#include "plugin/legality/RingSize.h"
#include "host/DirectCalls.h"
#include "host/InliningPlan.h"
#include "plugin/ir/Names.h"
#include "plugin/ir/PassOption.h"
#include "plugin/tell/Remarks.h"
#include "llvm/Analysis/OptimizationRemarkEmitter.h"
#include "llvm/Support/CommandLine.h"

using namespace llvm;
using namespace llvm::inlinerecursion;
using ore::NV;

static cl::opt<unsigned> MaxRingSize(
    "inlinerecursion-max-ring-size", cl::init(20000), cl::Hidden,
    cl::desc("Largest size of a ring of copies, inlined as far as it will be; "
             "a request for a larger one is withdrawn (instructions)"));

static cl::opt<unsigned> SizeOneSelfCall(
    "inlinerecursion-ring-size-one-call", cl::init(1500), cl::Hidden,
    cl::desc("Largest size at which a copy in a ring is inlined, where the "
             "function has one self call (instructions)"));

static cl::opt<unsigned> SizeSelfCalls(
    "inlinerecursion-ring-size-calls", cl::init(300), cl::Hidden,
    cl::desc("Largest size at which a copy in a ring is inlined, where the "
             "function has several self calls (instructions)"));

unsigned llvm::inlinerecursion::getInlinedRingSize(unsigned SelfCalls) {
  return SelfCalls == 1 ? SizeOneSelfCall : SizeSelfCalls;
}

/// Most code of a ring that nobody asked for (instructions).  Kernel: puzzle9.
static constexpr uint64_t MaxUnaskedSize = 900;

bool llvm::inlinerecursion::isTooLargeUnasked(const Function &F,
                                              unsigned Copies) {
  return uint64_t(Copies) * getCodeSize(F) > MaxUnaskedSize;
}

/// The size of a ring of \p Copies copies of \p F, once those that fit are
/// inlined.  How long the ring will be is for the gate to say, so \p Copies is
/// the longest that it may ask for.
static uint64_t estimateRingSize(const Function &F, unsigned Copies) {
  const uint64_t SelfCalls = count_if(
      findCallsOf(F), [](const CallInst *Call) { return isSelfCall(*Call); });
  const uint64_t Limit = getInlinedRingSize(SelfCalls);
  const uint64_t BodySize = F.getInstructionCount();

  // From the copy that closes the ring to the one that is entered.
  uint64_t Total = BodySize, Inlined = 0;
  for (unsigned Copy = 1; Copy < Copies; ++Copy) {
    const uint64_t Size = BodySize + SelfCalls * Inlined;
    Inlined = Size <= Limit ? Size : 0;
    Total += Inlined ? 0 : Size;
  }
  return Total + Inlined;
}

std::optional<Verdict> llvm::inlinerecursion::judgeRingSize(const Function &F,
                                                            unsigned Copies) {
  const uint64_t Size = estimateRingSize(F, Copies);
  if (Size <= MaxRingSize)
    return std::nullopt;
  return refuse("RequestWithdrawn", "raise -inlinerecursion-max-ring-size")
         << "request withdrawn, a ring of " << NV("Copies", Copies)
         << " copies would have " << NV("Instructions", Size)
         << " instructions, more than " << NV("Limit", unsigned(MaxRingSize));
}

void llvm::inlinerecursion::withdrawLargeRequest(Function &F) {
  const auto V = judgeRingSize(F, getPassOption(LongestRingOption));
  if (!V)
    return;
  warnAboutRequest(F, *V);
  F.removeFnAttr(Request);
  if (areRemarksEnabled(*F.getParent()))
    emitRemark(F, *V);
}
