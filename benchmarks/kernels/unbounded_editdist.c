// class: unbounded
// sweep: argument 9 8 7 6
//
// Edit distance without memory: three calls per mismatch, exponential in the
// length. Here for two arguments that both count down to their own end.
//
// Reference: the usual table.

#include "kernel.h"

enum { Cases = 6 };

static const char *const Words[Cases][2] = {
    {"kitten", "sitting"},  {"saturday", "sundays"},  {"recursion", "incision"},
    {"abcdefg", "gfedcba"}, {"parallel", "unallied"}, {"copying", "chains"}};
static const char *A, *B;

static int distance(int I, int J) {
  KERNEL_CALL();
  if (I == 0)
    return J;
  if (J == 0)
    return I;
  if (A[I - 1] == B[J - 1])
    return distance(I - 1, J - 1);
  int Best = distance(I - 1, J);
  int Insert = distance(I, J - 1);
  int Replace = distance(I - 1, J - 1);
  Best = Insert < Best ? Insert : Best;
  return (Replace < Best ? Replace : Best) + 1;
}

/// The words are compared up to this length.
static int Longest;

static int length(const char *S) {
  int N = 0;
  while (S[N] && N < Longest)
    ++N;
  return N;
}

int main(int Argc, char **Argv) {
  long Repeats = kernelRepeats(Argc, Argv, 12000);
  Longest = (int)kernelArgument(Argc, Argv, 2, 9, 1, 15);
  uint64_t Sum = 0, Expected = 0;
  for (long R = 0; R < Repeats; ++R) {
    A = Words[R % Cases][0];
    B = Words[R % Cases][1];
    kernelClobber(&A);
    kernelClobber(&B);
    Sum += (uint64_t)distance(length(A), length(B));
  }

  for (long Case = 0; Case < Cases; ++Case) {
    const char *S = Words[Case][0], *T = Words[Case][1];
    int Table[16][16];
    for (int I = 0; I <= length(S); ++I)
      for (int J = 0; J <= length(T); ++J) {
        int Value = I > J ? I : J;
        if (I > 0 && J > 0) {
          Value = Table[I - 1][J - 1] + (S[I - 1] != T[J - 1]);
          if (Table[I - 1][J] + 1 < Value)
            Value = Table[I - 1][J] + 1;
          if (Table[I][J - 1] + 1 < Value)
            Value = Table[I][J - 1] + 1;
        }
        Table[I][J] = Value;
      }
    Expected += kernelShare(Repeats, Cases, Case) *
                (uint64_t)Table[length(S)][length(T)];
  }
  return kernelReport("editdist", Repeats, Sum, Expected);
}
