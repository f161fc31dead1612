// class: bounded
// sweep: SIZE 7 5 6 8
//
// Cheapest assignment of SIZE tasks to as many workers by exhaustive search
// with a bound, in C++: std::array, references, an unnamed namespace. The
// worker is the only argument. Here because the pruning test reads memory, so
// the levels do not fold into one another, and because names are mangled.
//
// Reference: std::next_permutation over all assignments.

#include "kernel.h"
#include <algorithm>
#include <array>
#include <numeric>

#ifndef SIZE
#define SIZE 7
#endif

namespace {

constexpr int Size = SIZE, Cases = 8;

std::array<std::array<int, Size>, Size> Costs;
std::array<bool, Size> Taken;
int Spent, Cheapest;

void assign(int Worker) {
  KERNEL_CALL();
  for (int Task = 0; Task < Size; ++Task) {
    int Cost = Costs[Worker][Task];
    if (Taken[Task] || Spent + Cost >= Cheapest)
      continue;
    if (Worker == Size - 1) {
      Cheapest = Spent + Cost;
      continue;
    }
    Taken[Task] = true;
    Spent += Cost;
    assign(Worker + 1);
    Spent -= Cost;
    Taken[Task] = false;
  }
}

void fillCosts(long Case) {
  uint32_t Random = 4711 + static_cast<uint32_t>(Case) * 31;
  for (auto &Row : Costs)
    for (int &Cost : Row)
      Cost = 40 + static_cast<int>(kernelRandom(&Random) % 50);
}

} // namespace

int main(int Argc, char **Argv) {
  long Repeats = kernelRepeats(Argc, Argv, 25000);
  uint64_t Sum = 0;
  for (long R = 0; R < Repeats; ++R) {
    fillCosts(R % Cases);
    Spent = 0;
    Cheapest = 1 << 20;
    kernelClobber(&Costs);
    assign(0);
    Sum += static_cast<uint64_t>(Cheapest);
  }

  uint64_t Expected = 0;
  for (long Case = 0; Case < Cases; ++Case) {
    fillCosts(Case);
    std::array<int, Size> Order;
    std::iota(Order.begin(), Order.end(), 0);
    int Best = 1 << 20;
    do {
      int Cost = 0;
      for (int I = 0; I < Size; ++I)
        Cost += Costs[I][Order[I]];
      Best = std::min(Best, Cost);
    } while (std::next_permutation(Order.begin(), Order.end()));
    Expected += kernelShare(Repeats, Cases, Case) * static_cast<uint64_t>(Best);
  }
  return kernelReport("assignment", Repeats, Sum, Expected);
}
