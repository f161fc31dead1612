int f(int N) { return N < 2 ? 1 : N * f(N - 1); }

int caller(int N) { return f(N); }
