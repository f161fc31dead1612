// Output, counters and early exits by longjmp come in the order of the source.
// RUN: %python %S/../tools/compare_auto.py --clang %clang --plugin %plugin --scratch %t.dir --ring trace --leaf-chain search --ring permute %s
#include <setjmp.h>
#include <stdio.h>

static jmp_buf Out;
static int Budget;

static void tell(const char *Format, int A, int B) { printf(Format, A, B); }

static int trace(int N, int K) {
  static int Calls;
  if (N <= 0)
    return K + Calls;
  tell("(%d.%d", N, ++Calls);
  int A = trace(N - 1, K * 2 + 1);
  tell(",%d", A % 10, 0);
  int B = trace(N - 2, A % 7);
  tell(")", 0, 0);
  return A * 3 - B;
}

static int search(unsigned N, int Depth) {
  if (Depth == 0)
    return 0;
  if (--Budget == 0)
    longjmp(Out, (int)(N % 100) + 1);
  int A = search(N * 5 + 3, Depth - 1);
  int B = search(N * 7 + A, Depth - 1);
  return A - B + Depth;
}

static long Sum;
static void permute(char *Text, int Left) {
  if (Left == 0) {
    for (int I = 0; Text[I]; ++I)
      Sum = Sum * 31 + Text[I];
    return;
  }
  for (int I = 0; I <= Left; ++I) {
    char Kept = Text[I];
    Text[I] = Text[Left];
    Text[Left] = Kept;
    permute(Text, Left - 1);
    Text[Left] = Text[I];
    Text[I] = Kept;
  }
}

int main(void) {
  printf(" %d\n", trace(9, 3));
  for (int Start = 1; Start < 900; Start += 13) {
    Budget = Start;
    int Found = setjmp(Out);
    printf("%d ", Found ? Found : search((unsigned)Start, 9));
  }
  char Text[] = "abcdefg";
  // Not known to the compiler, which would follow it to its end.
  volatile int Last = 6;
  permute(Text, Last);
  printf("\n%ld\n", Sum);
}
