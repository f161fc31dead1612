//===- OptionRanges.cpp - Values that options may not have ----------------===//

#include "plugin/pipeline/OptionRanges.h"
#include "plugin/ir/PassOption.h"
#include "plugin/policy/Bounds.h"
#include "llvm/Support/WithColor.h"
#include <cstdlib>

using namespace llvm;
using namespace llvm::inlinerecursion;

namespace {
/// Of an option whose type holds more than what makes sense.
struct OptionRange {
  StringLiteral Option;
  unsigned Most;
  StringLiteral Unit;
};
} // namespace

// All others are any unsigned number, or true or false, which LLVM checks.
static constexpr OptionRange Ranges[] = {
    // Beyond that the estimate of what folds away divides by zero.
    {"inline-recursion-profitablity", 100, "percent"},
    // Rings are measured copy by copy before they are built.
    {"special-inline-recursion-depth", 1000, "copies"},
    {"inlinerecursion-auto-copies", MaxCopiesAtAll, "copies"},
};

static constexpr StringLiteral LevelOption = "inline-recursion-opt-level";
static constexpr int MaxLevel = 4;

/// Ends the process, which must not go on with \p Value.
static void refuseValue(const OptionRange &Range, unsigned Value) {
  WithColor::error(errs(), "InlineRecursion")
      << "-" << Range.Option << "=" << Value
      << " is out of range: it takes 0 to " << Range.Most << " " << Range.Unit
      << "\n";
  // As LLVM does about a value that is no number.
  std::exit(1);
}

void llvm::inlinerecursion::guardOptions() {
  for (const OptionRange &Range : Ranges)
    findPassOption<unsigned>(Range.Option)
        .setCallback([&Range](const unsigned &Value) {
          if (Value > Range.Most)
            refuseValue(Range, Value);
        });
  // The pass says something itself and goes on.
  findPassOption<int>(LevelOption).setCallback([](const int &Level) {
    if (Level < 0 || Level > MaxLevel)
      WithColor::warning(errs(), "InlineRecursion")
          << "-" << LevelOption << "=" << Level
          << " is out of range: it takes 0 to " << MaxLevel
          << "; level 2 is taken\n";
  });
}
