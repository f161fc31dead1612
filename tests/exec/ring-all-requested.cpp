// Every function of a program that calls itself asks for a ring: those that qualify get one, and the program is the same.
// RUN: %python %S/../tools/compare_rings.py --clang %clangxx --plugin %plugin --include %S/../../include --scratch %t.dir --ring _ZL5powerjj --ring _ZN4Node3sumEj --ring _Z5countIcEiT_j --ring _ZL9hailstoney --no-ring _ZL7nothingj --no-ring _ZL3fibj %s
#include <cstdio>
#include <inlinerecursion/request.h>

INLINERECURSION_SPECIALIZE
static unsigned power(unsigned Base, unsigned N) {
  unsigned Odd = N % 2;
  if (N == 0)
    return 1;
  unsigned Half = power(Base, N / 2);
  return Odd ? Half * Half * Base : Half * Half;
}

// Three self calls that do not step by constants, and no constant ever enters
// it: the request is withdrawn.
INLINERECURSION_SPECIALIZE
static unsigned fib(unsigned N) {
  unsigned Rest = N % 4;
  if (N < 3)
    return N;
  return fib(N - 1) + fib(N - N / 3) + fib(N - N / 2) + Rest;
}

// No power of two, so nothing is known of the remainder.
INLINERECURSION_SPECIALIZE
static unsigned nothing(unsigned N) {
  unsigned Rest = N % 5;
  if (N == 0)
    return 0;
  return nothing(N - 1) * 3 + nothing(N / 2) + Rest;
}

INLINERECURSION_SPECIALIZE
static unsigned long long hailstone(unsigned long long N) {
  unsigned Rest = N % 2;
  if (N <= 1)
    return 0;
  if (Rest)
    return hailstone(3 * N + 1) * 3 + 1;
  return hailstone(N / 2) * 5 + 1;
}

struct Node {
  int Value;
  Node *Next;
  INLINERECURSION_SPECIALIZE int sum(unsigned Position);
};

__attribute__((noinline)) int Node::sum(unsigned Position) {
  unsigned Column = Position % 8;
  int Own = Value * static_cast<int>(Column);
  return Next ? Own - Next->sum(Position + 1) : Own;
}

template <typename T>
INLINERECURSION_SPECIALIZE __attribute__((noinline)) int count(T Character,
                                                               unsigned N) {
  unsigned Rest = N % 4;
  std::putchar(Character + Rest);
  if (N == 0)
    return std::putchar('\n');
  return count<T>(Character, N - 1) * 3 + static_cast<int>(Rest);
}

int main() {
  volatile unsigned Start = 14;
  std::printf("%u %u\n", power(3, 13), power(Start, Start));
  std::printf("%u\n", fib(Start));
  std::printf("%u\n", nothing(9) + nothing(Start));
  std::printf("%llu %llu\n", hailstone(27), hailstone(Start));
  Node C{7, nullptr}, B{-3, &C}, A{5, &B};
  std::printf("%d\n", A.sum(6) + A.sum(Start));
  std::printf("%d\n", count('a', 11) + count('A', Start));
}
