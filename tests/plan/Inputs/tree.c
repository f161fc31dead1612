extern volatile int Sink;
void walk(unsigned N) {
  if (N == 0)
    return;
  walk(N / 2);
  Sink = N;
  walk(N / 3);
}
__attribute__((noinline)) void kept(unsigned N) {
  if (N == 0)
    return;
  kept(N / 2);
  Sink = N;
  kept(N / 3);
}
void plainFunction(void) { Sink = 1; }
