/* A shared object with an exported function, of which the main program may have
 * another one (replacing.c). */
unsigned steps(unsigned N) {
  return N == 0 ? 0 : 1 + steps(N / 2) + steps(N / 3);
}
unsigned askLibrary(unsigned N) { return steps(N); }
