// A self call that has become a loop, and others behind that loop: the ring is
// made of all of it, and entered by the test at the loop's top.
// RUN: %python %S/../tools/compare_auto.py --clang %clang --plugin %plugin --scratch %t.dir --ring common --ring differ %s
#include <stdint.h>
#include <stdio.h>

static char A[24], B[24];
static uint32_t Steps;

// The longest common subsequence goes on with both where they are equal.
static int common(int I, int J) {
  if (I < 0 || J < 0)
    return 0;
  if (A[I] == B[J])
    return 1 + common(I - 1, J - 1);
  int X = common(I - 1, J), Y = common(I, J - 1);
  return X > Y ? X : Y;
}

// Every activation leaves a trace, and one of three ends early.
static void differ(int I, int J) {
  if (I < 0 || J < 0)
    return;
  Steps = Steps * 5 + I * 31 + J;
  if (A[I] == B[J]) {
    differ(I - 1, J - 1);
    return;
  }
  differ(I - 1, J);
  Steps ^= I + 7;
  if (Steps % 3 == 0)
    return;
  differ(I, J - 1);
  ++Steps;
}

int main(void) {
  uint32_t Random = 1;
  for (int I = 0; I < 24; ++I) {
    A[I] = "acgt"[(Random = Random * 1664525u + 1013904223u) >> 30];
    B[I] = "acgt"[(Random = Random * 1664525u + 1013904223u) >> 30];
  }
  for (int Length = -1; Length < 11; ++Length) {
    differ(Length, 10);
    printf("%d %d %u\n", common(Length, 9), common(9, Length), Steps);
  }
  return 0;
}
