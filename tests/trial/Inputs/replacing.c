/* Has its own steps(), which the shared object of replaced.c is to call, too.
 */
#include <stdio.h>
unsigned askLibrary(unsigned N);
unsigned steps(unsigned N) { return N == 0 ? 5 : 100; }
int main(void) {
  printf("%u\n", askLibrary(20));
  return 0;
}
