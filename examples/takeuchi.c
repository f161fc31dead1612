// Takeuchi's function. It calls itself four times, with arguments that no level
// of the pass can follow; the automatic policy rebuilds it.
#include <stdio.h>

static int takeuchi(int X, int Y, int Z) {
  if (X <= Y)
    return Z;
  return takeuchi(takeuchi(X - 1, Y, Z), takeuchi(Y - 1, Z, X),
                  takeuchi(Z - 1, X, Y));
}

int main(void) {
  printf("%d\n", takeuchi(24, 16, 8));
  return 0;
}
