/* Some are rebuilt and some are not. */
int volatile Sink;

static void down(int Depth) {
  if (Depth == 0)
    return;
  Sink = Depth;
  down(Depth - 1);
  Sink = Depth;
}
void enter(void) { down(5); }

void ring(unsigned N) {
  if (N == 0)
    return;
  ring(N / 2);
  Sink = N;
  ring(N / 3);
  Sink = N;
}

__attribute__((noinline)) int kept(int N) {
  return N < 2 ? N : kept(N - 1) * kept(N - 2);
}

int loop(int N) { return N ? loop(N - 1) : 3; }

void flat(void) { Sink = 3; }
