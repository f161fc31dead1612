//===- DiscardedProfiles.cpp - Profiles of another shape ------------------===//

#include "plugin/legality/DiscardedProfiles.h"
#include "plugin/ir/Names.h"
#include "plugin/recursion/SelfCalls.h"
#include "plugin/tell/Remarks.h"
#include "llvm/ADT/STLExtras.h"
#include "llvm/ADT/StringSet.h"
#include "llvm/IR/Module.h"

using namespace llvm;
using namespace llvm::inlinerecursion;

/// What LLVM annotates a function with whose profile was of another shape.
static constexpr StringLiteral HashMismatch = "instr_prof_hash_mismatch";

static bool hasHashMismatch(const Function &F) {
  const auto *Notes = cast_or_null<MDTuple>(F.getMetadata("annotation"));
  return Notes && any_of(Notes->operands(), [](const MDOperand &Note) {
           const auto *Text = dyn_cast<MDString>(Note);
           return Text && Text->getString() == HashMismatch;
         });
}

/// Does its shape depend on what the plugin does?
static bool concernsPlugin(const Function &F) {
  return hasCloneMark(F) || F.getName().contains(PluginSuffix) ||
         isDirectlyRecursive(F);
}

PreservedAnalyses DiscardedProfilesPass::run(Module &M,
                                             ModuleAnalysisManager &) {
  if (!M.getProfileSummary(/*IsCS=*/false))
    return PreservedAnalyses::all();
  // Of all copies, and of what is left of the function, the user knows one.
  StringSet<> Told;
  for (Function &F : M) {
    // The annotation is still there when a linker sees the module again.
    if (!hasHashMismatch(F) || F.hasFnAttribute(ProfileToldMark) ||
        !concernsPlugin(F))
      continue;
    F.addFnAttr(ProfileToldMark);
    const StringRef Origin = F.getName().split(PluginSuffix).first;
    if (Told.insert(Origin).second)
      tellDiscardedProfile(F, Origin);
  }
  // No analysis rests on the marks.
  return PreservedAnalyses::all();
}
