//===- ProfileRepair.cpp - How often copies are entered -------------------===//

#include "plugin/legality/ProfileRepair.h"
#include "host/DirectCalls.h"
#include "plugin/ir/Names.h"
#include "llvm/ADT/DenseMap.h"
#include "llvm/ADT/MapVector.h"
#include "llvm/ADT/STLExtras.h"
#include "llvm/Analysis/BlockFrequencyInfo.h"
#include "llvm/IR/Instructions.h"
#include "llvm/IR/MDBuilder.h"
#include "llvm/IR/Module.h"
#include "llvm/IR/ProfileSummary.h"
#include "llvm/Support/MathExtras.h"
#include "llvm/Transforms/Utils/Cloning.h"

using namespace llvm;
using namespace llvm::inlinerecursion;

namespace {
/// A function and all its copies, in module order.
struct Family {
  Function *Origin = nullptr;
  SmallVector<Function *, 8> Copies;
};
} // namespace

void llvm::inlinerecursion::markOrigin(Function &F) {
  if (F.hasName() && F.getEntryCount())
    F.addFnAttr(OriginMark, F.getName());
}

/// The marked functions of which there are copies.  Takes the marks back.
static SmallVector<Family, 0> takeFamilies(Module &M) {
  MapVector<StringRef, Family> Families;
  for (Function &F : M) {
    const Attribute Mark = F.getFnAttribute(OriginMark);
    if (!Mark.isValid())
      continue;
    const StringRef Name = Mark.getValueAsString();
    F.removeFnAttr(OriginMark);
    if (F.getName() == Name)
      Families[Name].Origin = &F;
    else
      Families[Name].Copies.push_back(&F);
  }
  SmallVector<Family, 0> Copied;
  for (auto &[Name, Members] : Families)
    if (Members.Origin && !Members.Copies.empty())
      Copied.push_back(std::move(Members));
  return Copied;
}

static std::optional<uint64_t> getCount(const CallBase &Call,
                                        FunctionAnalysisManager &FAM) {
  auto *Caller = const_cast<Function *>(Call.getFunction());
  return FAM.getResult<BlockFrequencyAnalysis>(*Caller).getBlockProfileCount(
      Call.getParent());
}

/// How often \p Copy is entered.  Direct calls are the only way into a
/// copy, so their blocks tell; those in its own family do not, as long as they
/// have the counts of all of it.
static std::optional<uint64_t> getEntries(Function &Copy, const Family &Members,
                                          FunctionAnalysisManager &FAM) {
  uint64_t Entries = 0;
  for (const CallBase *Call : findCallsOf<CallBase>(Copy)) {
    if (Call->getFunction() == Members.Origin ||
        is_contained(Members.Copies, Call->getFunction()))
      return std::nullopt;
    const auto Count = getCount(*Call, FAM);
    if (!Count)
      return std::nullopt;
    Entries = SaturatingAdd(Entries, *Count);
  }
  return Entries;
}

static void divideEntries(const Family &Members, FunctionAnalysisManager &FAM) {
  const uint64_t Total = Members.Origin->getEntryCount()->getCount();
  DenseMap<Function *, uint64_t> Known;
  uint64_t KnownTotal = 0;
  for (Function *Copy : Members.Copies)
    if (const auto Entries = getEntries(*Copy, Members, FAM)) {
      Known[Copy] = *Entries;
      KnownTotal = SaturatingAdd(KnownTotal, *Entries);
    }
  // Callers and function do not agree, as samples may not; or it never called
  // itself while it was watched.
  if (KnownTotal >= Total)
    return;

  // The weights of calls in the body, if any, are scaled with the count.
  auto SetCount = [Total](Function *F, uint64_t Count) {
    updateProfileCallee(F, int64_t(Count) - int64_t(Total));
  };
  SetCount(Members.Origin, Total - KnownTotal);
  for (Function *Copy : Members.Copies) {
    const auto It = Known.find(Copy);
    SetCount(Copy, It == Known.end() ? Total - KnownTotal : It->second);
  }
}

/// Gives the calls of \p Copy their weights.
static void weighCalls(Function &Copy, FunctionAnalysisManager &FAM) {
  MDBuilder Metadata(Copy.getContext());
  for (CallInst *Call : findCallsOf(Copy))
    if (const auto Count = getCount(*Call, FAM)) {
      const uint64_t Weight = std::min<uint64_t>(*Count, UINT32_MAX);
      Call->setMetadata(LLVMContext::MD_prof,
                        Metadata.createBranchWeights({uint32_t(Weight)}));
    }
}

static bool hasSampleProfile(const Module &M) {
  Metadata *Summary = M.getProfileSummary(/*IsCS=*/false);
  if (!Summary)
    return false;
  const std::unique_ptr<ProfileSummary> Profile(
      ProfileSummary::getFromMD(Summary));
  return Profile && Profile->getKind() == ProfileSummary::PSK_Sample;
}

void llvm::inlinerecursion::repairProfile(Module &M,
                                          FunctionAnalysisManager &FAM) {
  const SmallVector<Family, 0> Families = takeFamilies(M);
  for (const Family &Members : Families)
    divideEntries(Members, FAM);
  if (!hasSampleProfile(M))
    return;
  for (const Family &Members : Families)
    for (Function *Copy : Members.Copies)
      weighCalls(*Copy, FAM);
}
