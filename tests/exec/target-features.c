// A function compiled for a larger target than its callers is not forced into them.
// RUN: %python %S/../tools/compare_rings.py --clang %clang --plugin %plugin --include %S/../../include --scratch %t.dir --ring shuffle %s
#include <inlinerecursion/request.h>
#include <stdio.h>

#ifdef __x86_64__
#include <immintrin.h>

static __m256i Vectors[8];

INLINERECURSION_SPECIALIZE
__attribute__((target("avx2"))) static int shuffle(unsigned N) {
  unsigned Rest = N % 4;
  Vectors[Rest] = _mm256_adds_epi16(Vectors[Rest], _mm256_set1_epi16((short)N));
  Vectors[Rest] = _mm256_shuffle_epi8(Vectors[Rest], Vectors[(Rest + 1) % 4]);
  if (N == 0)
    return _mm256_movemask_epi8(Vectors[0]);
  return shuffle(N - 1) * 3 + (int)Rest;
}

static int isSupported(void) { return __builtin_cpu_supports("avx2"); }
#else
INLINERECURSION_SPECIALIZE
static int shuffle(unsigned N) {
  unsigned Rest = N % 4;
  return N == 0 ? 3 : shuffle(N - 1) * 2 + (int)Rest;
}

static int isSupported(void) { return 1; }
#endif

int main(void) { printf("%d\n", isSupported() ? shuffle(9) : 0); }
