unsigned replaced(unsigned N) { return 42 + N; }
