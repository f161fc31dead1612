// A function for more of the machine than its caller is compiled for is called, not merged into the caller.
// RUN: %compare --chained rotate=34 --chained own=01234 %s
#include <stdio.h>

static unsigned own(unsigned N) { return N ? N + own(N - 1) : 0; }

#ifdef __x86_64__
#include <immintrin.h>

__attribute__((target("avx2"))) static int rotate(int N, int *Values) {
  if (N == 0)
    return 0;
  __m256i V = _mm256_loadu_si256((const __m256i *)Values);
  V = _mm256_permutevar8x32_epi32(V, _mm256_set1_epi32(N));
  V = _mm256_maddubs_epi16(V, _mm256_set1_epi8(3));
  _mm256_storeu_si256((__m256i *)Values, V);
  return Values[N & 7] + rotate(N - 1, Values);
}

static int isSupported(void) { return __builtin_cpu_supports("avx2"); }
#else
static int rotate(int N, int *Values) {
  return N ? Values[N & 7] + rotate(N - 1, Values) : 0;
}

static int isSupported(void) { return 1; }
#endif

int main(int Argc, char **Argv) {
  int Values[8] = {1, 2, 3, 4, 5, 6, 7, 8};
  printf("%d %u\n", isSupported() ? rotate(20 * Argc, Values) : 0, own(5));
}
