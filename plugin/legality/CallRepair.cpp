//===- CallRepair.cpp - What rewritten calls have lost --------------------===//

#include "plugin/legality/CallRepair.h"
#include "host/DirectCalls.h"
#include "plugin/ir/Names.h"
#include "plugin/legality/ProfileRepair.h"
#include "plugin/legality/Protection.h"
#include "llvm/Analysis/TargetLibraryInfo.h"
#include "llvm/Analysis/TargetTransformInfo.h"
#include "llvm/IR/Attributes.h"
#include "llvm/IR/Instructions.h"
#include "llvm/IR/Module.h"

using namespace llvm;
using namespace llvm::inlinerecursion;

/// Those of \p Attrs that decide where and how a value is passed.
static AttrBuilder getPassingAttributes(LLVMContext &Context,
                                        AttributeSet Attrs) {
  AttrBuilder Passing(Context);
  for (Attribute::AttrKind Kind :
       {Attribute::ByVal, Attribute::ByRef, Attribute::StructRet,
        Attribute::InReg, Attribute::ZExt, Attribute::SExt, Attribute::Nest,
        Attribute::SwiftSelf, Attribute::SwiftAsync, Attribute::StackAlignment})
    if (Attrs.hasAttribute(Kind))
      Passing.addAttribute(Attrs.getAttribute(Kind));
  // Of any other pointer it says what is known, not where to put it.
  if (Attrs.hasAttribute(Attribute::ByVal) ||
      Attrs.hasAttribute(Attribute::ByRef))
    Passing.addAlignmentAttr(Attrs.getAlignment());
  return Passing;
}

/// Lets \p Call say what \p Callee says about passing values.
static void completeAttributes(CallBase &Call, const Function &Callee) {
  LLVMContext &Context = Call.getContext();
  const AttributeList Wanted = Callee.getAttributes();
  AttributeList Attrs = Call.getAttributes();
  for (unsigned I = 0; I != Callee.arg_size(); ++I)
    Attrs = Attrs.addParamAttributes(
        Context, I, getPassingAttributes(Context, Wanted.getParamAttrs(I)));
  Attrs = Attrs.addRetAttributes(
      Context, getPassingAttributes(Context, Wanted.getRetAttrs()));
  Call.setAttributes(Attrs);
}

/// Would the inliner merge the two, if the callee's cost were no question?
static bool areInlineCompatible(Function &Caller, Function &Callee,
                                FunctionAnalysisManager &FAM) {
  return AttributeFuncs::areInlineCompatible(Caller, Callee) &&
         FAM.getResult<TargetIRAnalysis>(Callee).areInlineCompatible(&Caller,
                                                                     &Callee) &&
         FAM.getResult<TargetLibraryAnalysis>(Caller).areInlineCompatible(
             FAM.getResult<TargetLibraryAnalysis>(Callee),
             /*AllowCallerSuperset=*/true);
}

/// Keeps the inliner from merging calls of \p F into \p F, which another file
/// has.  Once copies have replaced all other calls, LLVM 16 deletes such a
/// function as soon as its last self call is merged, and then reports in which
/// function that was: this one (DefaultInlineAdvice, InlineAdvisor.cpp).
static void keepSelfCalls(Function &F) {
  for (CallBase *Call : findCallsOf<CallBase>(F))
    if (isSelfCall(*Call)) {
      Call->removeFnAttr(Attribute::AlwaysInline);
      Call->setIsNoInline();
    }
}

PreservedAnalyses CallRepairPass::run(Module &M, ModuleAnalysisManager &MAM) {
  removeProtection(M);
  auto &FAM = MAM.getResult<FunctionAnalysisManagerModuleProxy>(M).getManager();
  for (Function &Copy : M) {
    if (Copy.isDeclaration() || !Copy.hasLocalLinkage() ||
        (!hasCloneMark(Copy) && !Copy.hasFnAttribute(StateMark)))
      continue;
    for (CallBase *Call : findCallsOf<CallBase>(Copy)) {
      completeAttributes(*Call, Copy);
      if (!areInlineCompatible(*Call->getFunction(), Copy, FAM)) {
        // In a function that everything is to be inlined into (flatten).
        Call->removeFnAttr(Attribute::AlwaysInline);
        Call->setIsNoInline();
      }
    }
  }
  for (Function &F : M)
    if (F.hasAvailableExternallyLinkage() &&
        (hasCloneMark(F) || F.hasFnAttribute(StateMark)))
      keepSelfCalls(F);
  repairProfile(M, FAM);
  // No analysis rests on these attributes and counts.
  return PreservedAnalyses::all();
}
