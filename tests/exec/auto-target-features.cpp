// The first test, compiled for a larger target than its callers, is not forced into them, whether they catch exceptions or not.
// RUN: %python %S/../tools/compare_auto.py --clang %clangxx --plugin %plugin --scratch %t.dir --ring _Z4walkP4Nodei %s
#include <cstdio>

#ifdef __x86_64__
#include <immintrin.h>
#define TARGET __attribute__((target("avx2")))
static __m256i Seen;
TARGET static void see() { Seen = _mm256_shuffle_epi8(Seen, Seen); }
static bool isSupported() { return __builtin_cpu_supports("avx2"); }
#else
#define TARGET
static volatile int Seen;
static void see() { Seen = Seen + 1; }
static bool isSupported() { return true; }
#endif

struct Node {
  Node *Left, *Right;
  int Value;
};

TARGET int walk(Node *N, int K) {
  if (!N) {
    see();
    return K;
  }
  if (N->Value > 1000)
    throw 5;
  int A = walk(N->Left, K * 3 + 1);
  int B = walk(N->Right, A ^ K);
  return A * 5 - B * 3 + K;
}

static Node D = {nullptr, nullptr, 1}, C = {nullptr, &D, 2},
            B = {&C, nullptr, 3}, A = {&B, &D, 4}, Large = {&A, nullptr, 1001};
static Node *volatile Root = &A;

int main() {
  if (!isSupported()) {
    std::puts("no");
    return 0;
  }
  std::printf("%d\n", walk(Root, 3));
  try {
    std::printf("%d\n", walk(Root, 4));
    Root = &Large;
    walk(Root, 5);
  } catch (int I) {
    std::printf("caught %d\n", I);
  }
}
