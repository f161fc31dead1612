// A chained function is still reached by an alias, an ifunc, the start of its section, and outside of its file.
// RUN: %compare --chained down=1234 --chained up=1234 %s %S/Inputs/names-and-sections.c
#include <stdio.h>

__attribute__((used, section("recursive"))) unsigned down(unsigned N) {
  return N ? N + 2 * down(N - 1) : 1;
}
unsigned other(unsigned N) __attribute__((alias("down")));

static unsigned up(unsigned N) { return N > 9 ? N : N + 3 * up(N + 1); }
static unsigned (*resolve(void))(unsigned) { return up; }
unsigned chosen(unsigned N) __attribute__((ifunc("resolve")));

extern char __start_recursive[], __stop_recursive[];
unsigned elsewhere(unsigned N);

int main(int Argc, char **Argv) {
  char *Down = (char *)down;
  printf("%d\n", __start_recursive <= Down && Down < __stop_recursive);
  printf("%d\n", (void *)down == (void *)other);
  printf("%u %u %u\n", down(7 * Argc), other(7 * Argc), elsewhere(7 * Argc));
  printf("%u %u\n", up(Argc), chosen(Argc));
}
