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

// In a larger one, a call is a small part of what an activation costs.
static cl::opt<unsigned> MaxBodySize(
    "inlinerecursion-auto-body-size", cl::init(80), cl::Hidden,
    cl::desc("Largest body that such a ring is built of (instructions)"));

static cl::opt<unsigned> RequestedGrowth(
    "inlinerecursion-auto-requested-growth", cl::init(10000), cl::Hidden,
    cl::desc("Most code that copies add to a module that its source asks for "
             "(instructions)"));

static cl::opt<unsigned> MaxStateGrowth(
    "inlinerecursion-auto-state-growth", cl::init(20000), cl::Hidden,
    cl::desc(
        "Most code that copies for the states of arguments add to a module "
        "(instructions)"));

static cl::opt<unsigned> PlannedGrowth(
    "inlinerecursion-plan-growth", cl::init(100000), cl::Hidden,
    cl::desc("Most code that copies add for a function whose plan asks for "
             "them (instructions)"));

namespace {
enum class LTOStep { Compile, Link };
} // namespace

static cl::opt<LTOStep> BuildsFrom(
    "inlinerecursion-lto", cl::init(LTOStep::Compile), cl::Hidden,
    cl::desc("With link-time optimisation, the step that builds rings of "
             "functions that other files may call"),
    cl::values(clEnumValN(LTOStep::Compile, "compile", "the compiler"),
               clEnumValN(LTOStep::Link, "link",
                          "the linker, which has the plugin, too")));

/// Below -O3, the part of a function's growth that is left, as a divisor: 300
/// instructions.  With them, everyday programs (benchmarks/everyday) gain what
/// they gain with 900, for two thirds of the code; half of them leave out the
/// rings of three and four self calls (flood fill: 1.07 in place of 1.30).
///
/// A module may grow by as much as at -O3.  What that adds is little where
/// functions are bounded, and the share of each is what is missing where many
/// recursive functions stand in one file: 19 of them gain 1.19 with 1500
/// instructions, 1.10 with 1000, 1.05 with 125, and no more with 2000.
static constexpr unsigned FunctionShareBelowO3 = 3;

/// Below -O3, the part of the largest body: three fifths are 48 instructions.
/// One copy more of a body of 50 adds 50, to save half of a call for each
/// activation, which is about an eighth of its time.  Everyday programs gain
/// as much without larger ones, and a parser of 23 kilobytes grows by 370 bytes
/// in place of 1350.
static constexpr unsigned BodyPartsBelowO3 = 3;
static constexpr unsigned BodyParts = 5;

/// Below -O3, most copies in a ring.  Six save five calls of six; each of the
/// three more that a loop takes at -O3 saves a fortieth of the calls or less,
/// and adds as much code as the one that saves half of them.  Of what rings add
/// to the time to compile five walks over a tree, they were a fifth.  Kernel:
/// narytree, which gains nothing with five.
static constexpr unsigned RingCopiesBelowO3 = 6;

/// Below -O3, the part of what copies for states may add, as a divisor.
static constexpr unsigned StateShareBelowO3 = 2;

Bounds llvm::inlinerecursion::getDefaultBounds() {
  return {MaxCopies,
          MaxFunctionGrowth,
          /*InlinerFollows=*/true,
          MaxModuleGrowth,
          RequestedGrowth,
          MaxBodySize,
          /*LeavesToLink=*/BuildsFrom == LTOStep::Link,
          MaxStateGrowth,
          /*RingCopies=*/~0u,
          PlannedGrowth};
}

Bounds llvm::inlinerecursion::getBoundsBelowO3() {
  Bounds Limits = getDefaultBounds();
  Limits.FunctionGrowth /= FunctionShareBelowO3;
  Limits.BodySize = uint64_t(Limits.BodySize) * BodyPartsBelowO3 / BodyParts;
  Limits.StateGrowth /= StateShareBelowO3;
  Limits.RingCopies = RingCopiesBelowO3;
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
    {"state-growth", &Bounds::StateGrowth, ~0u},
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
