// class: unbounded
// sweep: argument 2 0 1 3 4
//
// Matches a pattern of stars, question marks and characters against a text; the
// argument is the number of the pattern. Here for a path through several calls,
// one of which stands in a loop.
//
// Reference: a loop that goes back to the last star.

#include "kernel.h"

enum { Cases = 8, Patterns = 5 };

static const char Text[] =
    "the quick brown fox jumps over the lazy dog and the sleeping cat";
static const char *const Pattern[Patterns] = {"*q?i*b*f*j*l*c?t",
                                              "*e*e*e*e*e*g*t", "*o*o*o*?*a?z*",
                                              "*??*the*??*cat*", "*a*e*i*o*u*"};

static int match(const char *P, const char *T) {
  KERNEL_CALL();
  switch (*P) {
  case '\0':
    return *T == '\0';
  case '*':
    do {
      if (match(P + 1, T))
        return 1;
    } while (*T++);
    return 0;
  case '?':
    return *T && match(P + 1, T + 1);
  default:
    return *P == *T && match(P + 1, T + 1);
  }
}

static int matchInLoop(const char *P, const char *T) {
  const char *BehindStar = NULL, *From = NULL;
  while (*T) {
    if (*P == '*') {
      BehindStar = ++P;
      From = T;
    } else if (*P == '?' || *P == *T) {
      ++P;
      ++T;
    } else if (BehindStar) {
      P = BehindStar;
      T = ++From;
    } else {
      return 0;
    }
  }
  while (*P == '*')
    ++P;
  return *P == '\0';
}

int main(int Argc, char **Argv) {
  long Repeats = kernelRepeats(Argc, Argv, 80000);
  const char *P = Pattern[kernelArgument(Argc, Argv, 2, 2, 0, Patterns - 1)];
  uint64_t Sum = 0, Expected = 0;
  for (long R = 0; R < Repeats; ++R) {
    const char *T = Text + R % Cases;
    kernelClobber(&T);
    Sum += 1 + (uint64_t)match(P, T);
  }

  for (long Case = 0; Case < Cases; ++Case)
    Expected += kernelShare(Repeats, Cases, Case) *
                (1 + (uint64_t)matchInLoop(P, Text + Case));
  return kernelReport("matcher", Repeats, Sum, Expected);
}
