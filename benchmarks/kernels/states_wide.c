// class: states
// sweep: argument 5 3 4 7
//
// How alike two texts of 9 and 9 letters are, without a table: the longest
// common subsequence by plain recursion from (0, 0). Here for constants that do
// not pay: a hundred pairs of places, of which nothing but two subscripts
// follows. The input is how many pairs of texts go in turn.
//
// Reference: the usual table.

#include "kernel.h"

enum { Length = 9, MaxCases = 8 };

static unsigned char First[MaxCases][Length], Second[MaxCases][Length];
static const unsigned char *A, *B;

static int alike(int I, int J) {
  KERNEL_CALL();
  if (I == Length || J == Length)
    return 0;
  if (A[I] == B[J])
    return 1 + alike(I + 1, J + 1);
  int Down = alike(I + 1, J), Along = alike(I, J + 1);
  return Down > Along ? Down : Along;
}

int main(int Argc, char **Argv) {
  long Repeats = kernelRepeats(Argc, Argv, 20000);
  long Cases = kernelArgument(Argc, Argv, 2, 5, 1, MaxCases);
  uint32_t Random = 12;
  for (long Case = 0; Case < Cases; ++Case)
    for (int I = 0; I < Length; ++I) {
      First[Case][I] = (unsigned char)(kernelRandom(&Random) % 5);
      Second[Case][I] = (unsigned char)(kernelRandom(&Random) % 5);
    }
  uint64_t Sum = 0;
  for (long R = 0; R < Repeats; ++R) {
    A = First[R % Cases];
    B = Second[R % Cases];
    kernelClobber(First);
    Sum += (uint64_t)alike(0, 0);
  }

  uint64_t Expected = 0;
  for (long Case = 0; Case < Cases; ++Case) {
    int Table[Length + 1][Length + 1] = {{0}};
    for (int I = Length - 1; I >= 0; --I)
      for (int J = Length - 1; J >= 0; --J) {
        int Down = Table[I + 1][J], Along = Table[I][J + 1];
        Table[I][J] = First[Case][I] == Second[Case][J]
                          ? 1 + Table[I + 1][J + 1]
                      : Down > Along ? Down
                                     : Along;
      }
    Expected += kernelShare(Repeats, Cases, Case) * (uint64_t)Table[0][0];
  }
  return kernelReport("wide", Repeats, Sum, Expected);
}
