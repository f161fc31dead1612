// What is read through a pointer may be null, change while the recursion lasts,
// or be what another argument writes to.
// RUN: %clang -O2 -w %s -o %t.plain
// RUN: %t.plain > %t.expected
// RUN: FileCheck %s --input-file %t.expected
// RUN: %clang_with_pass -O1 -w %s -o %t.1
// RUN: %t.1 | diff %t.expected -
// RUN: %clang_with_pass -O2 -w %s -o %t.2
// RUN: %t.2 | diff %t.expected -
// RUN: %clang_with_pass -O3 -w %s -o %t.3
// RUN: %t.3 | diff %t.expected -
// RUN: %clang_with_pass -O2 -w -mllvm -inlinerecursion-auto-state-growth=0 -mllvm -inlinerecursion-auto-copies=1 %s -o %t.bare
// RUN: %t.bare | diff %t.expected -
#include <setjmp.h>
#include <stdio.h>
#include <stdlib.h>

// CHECK: handed 3086715
// Handed through, and written to by the other name.
int handed(const int *P, int *Q, int N) {
  if (N == 0)
    return *P;
  *Q = *Q * 3 + N;
  int A = handed(P, Q, N - 1);
  *Q += 1;
  return A * 5 + *P;
}

// CHECK-NEXT: seldom 4996
// Null, and read where it is not.
int seldom(const int *P, int N) {
  if (N == 0)
    return 1;
  int A = seldom(P, N - 1);
  if (N > 100)
    A += *P;
  return A * 3 + seldom(P, N / 2);
}

// CHECK-NEXT: stepped
// A variable of each activation beside one that is handed through.
int stepped(const int *Row, const int *Last, int *Out) {
  if (*Row >= *Last)
    return *Row;
  int Next = *Row + 1;
  *Out -= 1;
  int A = stepped(&Next, Last, Out);
  Next = A;
  return A * 3 + *Row + *Last + Next;
}

// CHECK-NEXT: kept
// The callee keeps the address, and the next activation writes there.
static int *Kept;
int kept(const int *P, int N) {
  int Next = *P + 1;
  if (Kept)
    *Kept += 7;
  if (N == 0)
    return *P;
  Kept = &Next;
  int A = kept(&Next, N - 1);
  Kept = 0;
  return A * 3 + Next + *P;
}

// CHECK-NEXT: both
// Passed twice, once to be written to.
int both(const int *P, int *Q, int N) {
  *Q += N;
  if (N == 0)
    return *P;
  int Next = *P + 1;
  int A = both(&Next, &Next, N - 1);
  return A * 3 + *P + Next;
}

// CHECK-NEXT: global
static int Shared = 4;
int global(const int *P, int N) {
  Shared += N;
  if (N == 0)
    return *P;
  int A = global(&Shared, N - 1);
  return A * 3 + *P;
}

// CHECK-NEXT: heap
int heap(const int *P, int *Memory, int N) {
  Memory[N] += 5;
  if (N == 0)
    return *P;
  int A = heap(Memory + N / 2, Memory, N - 1);
  return A * 3 + *P;
}

// CHECK-NEXT: half
// Two types at one place.
typedef union Both {
  int Whole;
  short Half;
} Both;
int half(const Both *P, int N) {
  if (N == 0)
    return P->Half;
  Both Next = {.Whole = P->Whole * 77 + 65535};
  return half(&Next, N - 1) * 3 + P->Whole;
}

// CHECK-NEXT: observed
// Volatile: each read is one.
int observed(const volatile int *P, int N) {
  if (N == 0)
    return *P + *P;
  volatile int Next = *P + 1;
  int A = observed(&Next, N - 1);
  Next = A;
  return A * 3 + *P + Next;
}

// CHECK-NEXT: jumped
static jmp_buf Places[8];
int jumped(const int *P, int N) {
  if (N == 0)
    return *P;
  if (N == 3)
    longjmp(Places[0], *P);
  int Next = *P + 2;
  return jumped(&Next, N - 1) + 1;
}
__attribute__((noinline)) int jumper(int Start) {
  volatile int Begin = Start;
  int Copy = Start;
  int Came = setjmp(Places[0]);
  if (Came)
    return Came * 100 + Begin;
  Begin = 17;
  return jumped(&Copy, 6);
}

// CHECK-NEXT: chosen
int chosen(const int *P, int N) {
  if (N <= 0)
    return *P;
  int A = *P + 1, B = *P * 2;
  return chosen(N % 3 ? &A : &B, N - 1) * 3 + A - B;
}

int main(int Count, char **Arguments) {
  int *X = malloc(sizeof(int) * 16);
  for (int I = 0; I != 16; ++I)
    X[I] = Count + I;
  printf("handed %d\n", handed(X, X, 5));
  printf("seldom %d\n", seldom(Count > 3 ? X : NULL, 7));
  for (int I = 0; I != 16; ++I)
    X[I] = Count + I;
  int Zero = 0;
  printf("stepped %d", stepped(&Zero, X + 8, X + 8));
  printf(" %d\n", stepped(X, X + 1, X + 1));
  printf("kept %d\n", kept(X, 6));
  printf("both %d\n", both(X, X, 6));
  printf("global %d %d\n", global(&Shared, 6), global(X, 5));
  printf("heap %d\n", heap(X + 3, X, 9));
  Both Start = {.Whole = Count};
  printf("half %d\n", half(&Start, 6));
  printf("observed %d\n", observed(X, 6));
  printf("jumped %d\n", jumper(Count));
  printf("chosen %d\n", chosen(X, 9));
}
