// class: states
// sweep: argument 4 2 3 6
//
// Strassen's multiplication of matrices of 64 x 64 numbers, halved down to 8
// x 8. The size is the state; the room for the sums lies in one block. Here for
// loops whose bounds are constants in each copy. The input is how many matrices
// go in turn.
//
// Reference: the definition, row by column.

#include "kernel.h"

enum { Size = 64, Smallest = 8, MaxCases = 8 };

static uint32_t Left[MaxCases][Size * Size], Right[MaxCases][Size * Size];
static uint32_t Product[Size * Size];
// Two sums and one product at each size: 3 (32^2 + 16^2 + 8^2) numbers.
static uint32_t Room[Size * Size];

/// Writes the product of A and B, whose rows are so far apart, to N dense rows.
static void multiply(uint32_t *To, const uint32_t *A, int PitchA,
                     const uint32_t *B, int PitchB, uint32_t *Free, int N) {
  KERNEL_CALL();
  if (N <= Smallest) {
    for (int I = 0; I < N; ++I)
      for (int J = 0; J < N; ++J) {
        uint32_t Sum = 0;
        for (int K = 0; K < N; ++K)
          Sum += A[I * PitchA + K] * B[K * PitchB + J];
        To[I * N + J] = Sum;
      }
    return;
  }
  int H = N / 2;
  const uint32_t *A11 = A, *A12 = A + H, *A21 = A + H * PitchA, *A22 = A21 + H;
  const uint32_t *B11 = B, *B12 = B + H, *B21 = B + H * PitchB, *B22 = B21 + H;
  uint32_t *S = Free, *T = S + H * H, *P = T + H * H;
  Free = P + H * H;
  for (int I = 0; I < N * N; ++I)
    To[I] = 0;
#define ADD(Sum, X, Sign, Y, Pitch)                                            \
  for (int I = 0; I < H; ++I)                                                  \
    for (int J = 0; J < H; ++J)                                                \
  Sum[I * H + J] = X[I * Pitch + J] Sign Y[I * Pitch + J]
#define PUT(Row, Column, Sign)                                                 \
  for (int I = 0; I < H; ++I)                                                  \
    for (int J = 0; J < H; ++J)                                                \
  To[(I + Row * H) * N + J + Column * H] Sign P[I * H + J]
  ADD(S, A11, +, A22, PitchA);
  ADD(T, B11, +, B22, PitchB);
  multiply(P, S, H, T, H, Free, H);
  PUT(0, 0, +=);
  PUT(1, 1, +=);
  ADD(S, A21, +, A22, PitchA);
  multiply(P, S, H, B11, PitchB, Free, H);
  PUT(1, 0, +=);
  PUT(1, 1, -=);
  ADD(T, B12, -, B22, PitchB);
  multiply(P, A11, PitchA, T, H, Free, H);
  PUT(0, 1, +=);
  PUT(1, 1, +=);
  ADD(T, B21, -, B11, PitchB);
  multiply(P, A22, PitchA, T, H, Free, H);
  PUT(0, 0, +=);
  PUT(1, 0, +=);
  ADD(S, A11, +, A12, PitchA);
  multiply(P, S, H, B22, PitchB, Free, H);
  PUT(0, 0, -=);
  PUT(0, 1, +=);
  ADD(S, A21, -, A11, PitchA);
  ADD(T, B11, +, B12, PitchB);
  multiply(P, S, H, T, H, Free, H);
  PUT(1, 1, +=);
  ADD(S, A12, -, A22, PitchA);
  ADD(T, B21, +, B22, PitchB);
  multiply(P, S, H, T, H, Free, H);
  PUT(0, 0, +=);
}

static uint64_t checksum(void) {
  uint64_t Sum = 0;
  for (int I = 0; I < Size * Size; ++I)
    Sum += Product[I] * (uint64_t)(I + 1);
  return Sum;
}

int main(int Argc, char **Argv) {
  long Repeats = kernelRepeats(Argc, Argv, 1500);
  long Cases = kernelArgument(Argc, Argv, 2, 4, 1, MaxCases);
  uint32_t Random = 9;
  for (long Case = 0; Case < Cases; ++Case)
    for (int I = 0; I < Size * Size; ++I) {
      Left[Case][I] = kernelRandom(&Random);
      Right[Case][I] = kernelRandom(&Random);
    }
  uint64_t Sum = 0;
  for (long R = 0; R < Repeats; ++R) {
    kernelClobber(Left);
    multiply(Product, Left[R % Cases], Size, Right[R % Cases], Size, Room,
             Size);
    Sum += checksum();
  }

  uint64_t Expected = 0;
  for (long Case = 0; Case < Cases; ++Case) {
    for (int I = 0; I < Size; ++I)
      for (int J = 0; J < Size; ++J) {
        uint32_t Entry = 0;
        for (int K = 0; K < Size; ++K)
          Entry += Left[Case][I * Size + K] * Right[Case][K * Size + J];
        Product[I * Size + J] = Entry;
      }
    Expected += kernelShare(Repeats, Cases, Case) * checksum();
  }
  return kernelReport("strassen", Repeats, Sum, Expected);
}
