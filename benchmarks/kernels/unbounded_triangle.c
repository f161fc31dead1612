// class: unbounded
// sweep: argument 14 10 11 12 13
//
// The largest sum on a way down a triangle of numbers, by trying both ways on
// at each place. Here for calls that are equal to others as deep as they are:
// both places of a row lead to the one below and between them.
//
// Reference: row by row from the bottom.

#include "kernel.h"

enum { MaxRows = 24, Cases = 4 };

static uint32_t Triangle[Cases][MaxRows][MaxRows];
static uint32_t (*Places)[MaxRows];
static int Rows;

static uint32_t best(int Row, int Place) {
  KERNEL_CALL();
  if (Row == Rows)
    return 0;
  uint32_t Left = best(Row + 1, Place);
  uint32_t Right = best(Row + 1, Place + 1);
  return Places[Row][Place] + (Left > Right ? Left : Right);
}

int main(int Argc, char **Argv) {
  long Repeats = kernelRepeats(Argc, Argv, 4000);
  Rows = (int)kernelArgument(Argc, Argv, 2, 14, 1, MaxRows);
  uint32_t Random = 5;
  for (long Case = 0; Case < Cases; ++Case)
    for (int I = 0; I < MaxRows; ++I)
      for (int J = 0; J <= I; ++J)
        Triangle[Case][I][J] = kernelRandom(&Random) % 1000;
  uint64_t Sum = 0;
  for (long R = 0; R < Repeats; ++R) {
    Places = Triangle[R % Cases];
    kernelClobber(Triangle);
    Sum += best(0, 0);
  }

  uint64_t Expected = 0;
  for (long Case = 0; Case < Cases; ++Case) {
    uint32_t Below[MaxRows + 1] = {0};
    for (int I = Rows - 1; I >= 0; --I)
      for (int J = 0; J <= I; ++J) {
        uint32_t Best = Below[J] > Below[J + 1] ? Below[J] : Below[J + 1];
        Below[J] = Triangle[Case][I][J] + Best;
      }
    Expected += kernelShare(Repeats, Cases, Case) * Below[0];
  }
  return kernelReport("triangle", Repeats, Sum, Expected);
}
