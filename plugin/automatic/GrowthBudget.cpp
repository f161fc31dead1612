//===- GrowthBudget.cpp - What functions of a module may grow by ----------===//

#include "plugin/automatic/GrowthBudget.h"
#include "llvm/ADT/STLExtras.h"
#include "llvm/ADT/SmallVector.h"
#include "llvm/Support/MathExtras.h"
#include <algorithm>
#include <limits>

using namespace llvm;
using namespace llvm::inlinerecursion;

GrowthBudget::GrowthBudget(uint64_t Limit, ArrayRef<unsigned> Demands)
    : Left(Limit), Cap(std::numeric_limits<uint64_t>::max()) {
  SmallVector<unsigned, 8> Sorted(Demands);
  llvm::sort(Sorted);
  uint64_t Rest = Limit;
  for (auto [I, Demand] : enumerate(Sorted)) {
    const uint64_t EqualPart = Rest / (Sorted.size() - I);
    if (Demand > EqualPart) {
      Cap = EqualPart;
      return;
    }
    Rest -= Demand;
  }
}

uint64_t GrowthBudget::getShare() const {
  return std::min(Left, SaturatingAdd(Cap, Unused));
}

void GrowthBudget::take(unsigned Demand, uint64_t Growth) {
  const uint64_t Share = std::min<uint64_t>(Demand, Cap) + Unused;
  Unused = Share > Growth ? Share - Growth : 0;
  Left -= std::min(Left, Growth);
}
