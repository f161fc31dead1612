/* Three recursive functions, one of which is no longer the same once copied.
 *
 * places() counts how often its return address changes. That is twice: one call
 * comes from main(), the others from itself. Copies that are inlined are called
 * from nowhere, so places() ought to say noinline; the user guide takes it for a
 * program that the plugin breaks, and finds the function. */

#include <stdio.h>

static int Steps, Places;
static void *Caller;

static int power(int N) { return N == 0 ? 1 : 3 * power(N - 1) + N; }

static void places(int Depth) {
  if (Caller != __builtin_return_address(0))
    ++Places;
  Caller = __builtin_return_address(0);
  if (Depth < 5)
    places(Depth + 1);
  ++Steps;
}

static double fraction(int Level) {
  return Level == 6 ? 13.0 : Level + 2.0 / fraction(Level + 1);
}

int main(void) {
  int Power = power(4);
  places(0);
  printf("places: %d\n", Places);
  printf("%d, %.6f, %d steps\n", Power, fraction(1), Steps);
}
