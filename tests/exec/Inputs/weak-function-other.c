int answer(unsigned N) { return 42 + (int)N; }
