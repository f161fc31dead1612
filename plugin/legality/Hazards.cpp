//===- Hazards.cpp - What must not be cloned or redirected ----------------===//

#include "plugin/legality/Hazards.h"
#include "host/DirectCalls.h"
#include "host/InliningPlan.h"
#include "plugin/ir/Names.h"
#include "plugin/ir/Size.h"
#include "llvm/ADT/STLExtras.h"
#include "llvm/ADT/StringExtras.h"
#include "llvm/IR/InlineAsm.h"
#include "llvm/IR/InstIterator.h"
#include "llvm/IR/Instructions.h"
#include "llvm/IR/IntrinsicInst.h"
#include "llvm/IR/Module.h"
#include "llvm/Support/CommandLine.h"

using namespace llvm;
using namespace llvm::inlinerecursion;

static cl::opt<unsigned> MaxFunctionSize(
    "inlinerecursion-max-function-size", cl::init(5000), cl::Hidden,
    cl::desc("Largest recursive function that copies are made of "
             "(instructions)"));

template <typename InstT, typename PredicateT>
static bool anyInstruction(const Function &F, PredicateT Wanted) {
  return any_of(instructions(F), [&](const Instruction &I) {
    const auto *Found = dyn_cast<InstT>(&I);
    return Found && Wanted(*Found);
  });
}

template <typename PredicateT>
static bool anyArgument(const Function &F, PredicateT Wanted) {
  return any_of(F.args(), Wanted);
}

//===----------------------------------------------------------------------===//
// Hazards
//===----------------------------------------------------------------------===//

// The user's word, and one that no request overrules.
static bool isNotWanted(const Function &F) {
  return F.hasFnAttribute(NoneMark);
}

// Which body runs is decided by the linker or the loader; copies of this one
// would run whatever they decide.  ODR linkage and available_externally promise
// that every definition does the same, and are copied as they are inlined.
static bool isInterposable(const Function &F) { return F.isInterposable(); }

// A local function in a comdat group can only be called from the group.  The
// copies stand outside, and the last one calls the function: the linker finds a
// relocation against a discarded section.
static bool isLocalInComdat(const Function &F) {
  return F.hasComdat() && F.hasLocalLinkage();
}

// A table of labels keeps pointing into the function, and a jump through it
// leads from a copy to there.  No inliner takes such a copy anyway.
static bool hasBlockAddress(const Function &F) {
  return any_of(F, [](const BasicBlock &BB) { return BB.hasAddressTaken(); });
}

// The bundle is part of what the call does (the funclet it belongs to, the
// state to deoptimise to, the argument memory set up before), and is lost.
static bool hasCallWithBundle(const Function &F) {
  return anyCallOf(
      F, [](const CallInst &Call) { return Call.hasOperandBundles(); });
}

// Rewritten calls are not tail calls: the recursion needs stack without bound,
// and a variadic thunk loses the arguments that it does not name.
static bool hasMustTailCall(const Function &F) {
  return anyCallOf(F,
                   [](const CallInst &Call) { return Call.isMustTailCall(); });
}

// The same for the conventions that promise tail calls by themselves.
static bool hasTailCallConvention(const Function &F) {
  switch (F.getCallingConv()) {
  case CallingConv::Tail:
  case CallingConv::SwiftTail:
  case CallingConv::GHC:
  case CallingConv::HiPE:
    return true;
  default:
    return false;
  }
}

// The body is all there is: it knows where return address and arguments are,
// and that holds for a call only.
static bool isNaked(const Function &F) {
  return F.hasFnAttribute(Attribute::Naked);
}

// The intrinsics of a coroutine that is not split yet name the function that
// they stand in, by address.
static bool isUnsplitCoroutine(const Function &F) {
  return F.isPresplitCoroutine();
}

// The argument is tied to the instruction that made it.  Without the attribute
// at the call the module is malformed right behind the pass.
static bool hasTiedArgument(const Function &F) {
  return anyArgument(F, [](const Argument &A) {
    return A.hasInAllocaAttr() || A.hasPreallocatedAttr() ||
           A.hasSwiftErrorAttr();
  });
}

// Filters and handlers find the local variables of this one function.
static bool hasEscapedFrame(const Function &F) {
  return anyInstruction<IntrinsicInst>(F, [](const IntrinsicInst &I) {
    return I.getIntrinsicID() == Intrinsic::localescape;
  });
}

// Not to be inlined, a function has a frame for each activation, and asks for
// it, or for where it returns to.  That is the one use of noinline that changes
// what the program does; Clang and GCC ask for the attribute wherever the
// answer shall be this activation's.  Inlined into each other, copies all
// answer for the outermost one.
static bool asksForOwnFrame(const Function &F) {
  return F.hasFnAttribute(Attribute::NoInline) &&
         anyInstruction<IntrinsicInst>(F, [](const IntrinsicInst &I) {
           switch (I.getIntrinsicID()) {
           case Intrinsic::returnaddress:
           case Intrinsic::addressofreturnaddress:
           case Intrinsic::frameaddress:
           case Intrinsic::sponentry:
             return true;
           default:
             return false;
           }
         });
}

/// Does \p Statement, assembly text without leading space, define a name that
/// can be defined only once?  A name with `${:uid}` in it is another one in
/// each copy, and numeric labels may be repeated.
static bool definesSymbol(StringRef Statement) {
  if (Statement.startswith(".macro"))
    return true;
  if (Statement.startswith("\""))
    return true;
  const StringRef Name = Statement.take_while([](char C) {
    return isAlnum(C) || C == '_' || C == '.' || C == '$' || C == '@';
  });
  return !Name.empty() && !isDigit(Name.front()) &&
         Statement.drop_front(Name.size()).ltrim(" \t").startswith(":");
}

// The copies define the name again, which the assembler refuses.
static bool hasAsmLabel(const Function &F) {
  return anyInstruction<CallBase>(F, [](const CallBase &Call) {
    const auto *Asm = dyn_cast<InlineAsm>(Call.getCalledOperand());
    if (!Asm)
      return false;
    for (StringRef Rest = Asm->getAsmString(); !Rest.empty();) {
      const size_t End = Rest.find_first_of("\n;{|");
      if (definesSymbol(Rest.take_front(End).ltrim()))
        return true;
      Rest = End == StringRef::npos ? StringRef() : Rest.drop_front(End + 1);
    }
    return false;
  });
}

// Such data is usually an offset from the function to something, and an offset
// from the function is no constant next to a copy.
static bool hasDataAtEntry(const Function &F) {
  return F.hasPrefixData() || F.hasPrologueData();
}

// The function, or a call in it, says that there must be one of it.
static bool isNotDuplicable(const Function &F) {
  return F.hasFnAttribute(Attribute::NoDuplicate) ||
         anyInstruction<CallBase>(
             F, [](const CallBase &Call) { return Call.cannotDuplicate(); });
}

// Only the call says how the argument's memory is aligned, and forgets it.
static bool hasAlignmentOfCall(const Function &F) {
  return anyCallOf(F, [&F](const CallInst &Call) {
    return anyArgument(F, [&Call](const Argument &A) {
      return A.hasByValAttr() && Call.getParamAlign(A.getArgNo()).valueOrOne() >
                                     A.getParamAlign().valueOrOne();
    });
  });
}

// Ten copies of a large function take the optimiser for ever.
static bool isTooLarge(const Function &F) {
  return getCodeSize(F) > MaxFunctionSize;
}

// Flattened, one frame holds the variables of all copies, however many are
// entered.  A recursion that leads through other functions needs that frame
// each time around.  Copies that stay functions of their own have it as the
// function had.
static bool wouldMultiplyFrame(const Function &F) { return hasLargeFrame(F); }

//===----------------------------------------------------------------------===//
// Wishes
//===----------------------------------------------------------------------===//

// The pass drops it, for copies are there to be inlined.  Whoever writes it may
// depend on a frame, a return address or a section of its own.
static bool isNotToBeInlined(const Function &F) {
  return F.hasFnAttribute(Attribute::NoInline) ||
         anyCallOf(F, [](const CallInst &Call) {
           return Call.getAttributes().hasFnAttr(Attribute::NoInline);
         });
}

// Copies cost space.
static bool isOptimisedForSize(const Function &F) { return F.hasOptSize(); }

// They would hardly run.
static bool isCold(const Function &F) {
  return F.hasFnAttribute(Attribute::Cold);
}

//===----------------------------------------------------------------------===//
// The lists
//===----------------------------------------------------------------------===//

// What can be told from the function itself stands before what needs a walk
// over its calls or its body.
static const ProtectionReason Hazards[] = {
    {"NotWanted", "its source wants no copies of it (INLINERECURSION_NONE)",
     isNotWanted},
    {"Interposable", "another definition may take its place", isInterposable,
     "make it static"},
    {"LocalInComdat",
     "it is local to a comdat group, which the linker may discard",
     isLocalInComdat},
    {"Naked", "it has no prologue and epilogue (naked)", isNaked},
    {"UnsplitCoroutine", "it is a coroutine", isUnsplitCoroutine},
    {"TailCallConvention", "its calling convention promises tail calls",
     hasTailCallConvention},
    {"TiedArgument",
     "an argument is tied to its call (inalloca, preallocated or swifterror)",
     hasTiedArgument},
    {"DataAtEntry", "data stands in front of its code or at its entry",
     hasDataAtEntry},
    {"BlockAddress", "the address of one of its labels is taken",
     hasBlockAddress, "use a switch in place of the computed goto"},
    {"MustTail", "a call of it must be a tail call (musttail)",
     hasMustTailCall},
    {"OperandBundle", "a call of it carries an operand bundle",
     hasCallWithBundle},
    {"CallAlignment",
     "a call aligns an argument in memory more than the function asks for",
     hasAlignmentOfCall, "pass it by pointer"},
    {"EscapedFrame", "other functions reach its local variables (localescape)",
     hasEscapedFrame},
    {"OwnFrame",
     "it is not to be inlined (noinline), and asks for its frame or where it "
     "returns to",
     asksForOwnFrame},
    {"AsmLabel", "inline assembly in it defines a symbol", hasAsmLabel,
     "use numeric labels, or %= in their names"},
    {"NoDuplicate", "it, or a call in it, must not be duplicated",
     isNotDuplicable},
    {"TooLarge",
     "it has more instructions than inlinerecursion-max-function-size allows",
     isTooLarge, "raise -inlinerecursion-max-function-size"},
    {"LargeFrame",
     "its local variables take more stack than "
     "inlinerecursion-max-frame-size allows",
     wouldMultiplyFrame, "keep large variables elsewhere",
     /*LeavesStates=*/true},
};

static const ProtectionReason Wishes[] = {
    {"NoInline", "it, or a call of it, is not to be inlined (noinline)",
     isNotToBeInlined, "remove noinline"},
    // Clang optimises cold functions for size, too.
    {"Cold", "it is rarely called (cold)", isCold, "remove cold"},
    {"OptimisedForSize", "it is to be optimised for size", isOptimisedForSize,
     "compile it with -O2 or -O3"},
};

ArrayRef<ProtectionReason> llvm::inlinerecursion::getHazards() {
  return Hazards;
}

ArrayRef<ProtectionReason> llvm::inlinerecursion::getWishes() { return Wishes; }

const ProtectionReason *
llvm::inlinerecursion::findReason(ArrayRef<ProtectionReason> Reasons,
                                  const Function &F) {
  const auto *Found =
      find_if(Reasons, [&F](const ProtectionReason &R) { return R.Holds(F); });
  return Found == Reasons.end() ? nullptr : Found;
}
