unsigned other(unsigned N);
unsigned down(unsigned N);
unsigned elsewhere(unsigned N) { return other(N) + down(N); }
