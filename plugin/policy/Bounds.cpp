//===- Bounds.cpp - How far the automatic policy may go -------------------===//

#include "plugin/policy/Bounds.h"
#include "host/InliningPlan.h"
#include "llvm/ADT/StringExtras.h"
#include "llvm/IR/Module.h"
#include "llvm/Support/CommandLine.h"
#include "llvm/Support/raw_ostream.h"
#include <algorithm>

using namespace llvm;
using namespace llvm::inlinerecursion;

static cl::opt<unsigned>
    MaxCopies("inlinerecursion-auto-copies", cl::init(9), cl::Hidden,
              cl::desc("Most copies in a ring that nobody asked for (copies)"));

static cl::opt<unsigned> MaxFunctionGrowth(
    "inlinerecursion-auto-function-growth", cl::init(900), cl::Hidden,
    cl::desc("Most code that such a ring adds for one function "
             "(instructions)"));

static cl::opt<unsigned> MaxModuleGrowth(
    "inlinerecursion-auto-module-growth", cl::init(1500), cl::Hidden,
    cl::desc("Most code that such rings add to a module, if its share of the "
             "module is not larger (instructions)"));

static cl::opt<unsigned> ModuleShare(
    "inlinerecursion-auto-module-share", cl::init(1), cl::Hidden,
    cl::desc("Most code that such rings add to a large module (percent of its "
             "instructions)"));

/// The part of the growth that is left below -O3, as a divisor.
static constexpr unsigned ShareBelowO3 = 12;

Bounds llvm::inlinerecursion::getDefaultBounds() {
  return {MaxCopies, MaxFunctionGrowth, /*InlinerFollows=*/true,
          MaxModuleGrowth};
}

Bounds llvm::inlinerecursion::getBoundsBelowO3() {
  Bounds Limits = getDefaultBounds();
  Limits.FunctionGrowth /= ShareBelowO3;
  Limits.ModuleGrowth /= ShareBelowO3;
  return Limits;
}

uint64_t llvm::inlinerecursion::findGrowthLimit(const Module &M,
                                                const Bounds &Limits) {
  uint64_t Size = 0;
  for (const Function &F : M)
    Size += getCodeSize(F);
  return std::max<uint64_t>(Limits.ModuleGrowth, Size * ModuleShare / 100);
}

static constexpr LimitParameter Parameters[] = {
    {"copies", &Bounds::Copies, MaxCopiesAtAll},
    {"function-growth", &Bounds::FunctionGrowth, ~0u},
    {"module-growth", &Bounds::ModuleGrowth, ~0u},
};

ArrayRef<LimitParameter> llvm::inlinerecursion::getLimitParameters() {
  return Parameters;
}

raw_ostream &llvm::inlinerecursion::operator<<(raw_ostream &OS,
                                               const Bounds &Limits) {
  ListSeparator Next(";");
  for (const LimitParameter &P : Parameters)
    OS << Next << P.Name << "=" << Limits.*P.Field;
  return OS;
}
