// The limit on the size of specialisations holds for the code that comes out, with what is inlined into them: a small one leaves little more than the ring.
// RUN: %clang_with_pass -O2 -mllvm -inline-recursion-max-specialized-size=0 -c -o %t.ring.o %s
// RUN: %clang_with_pass -O2 -mllvm -inline-recursion-max-specialized-size=500 -c -o %t.specialized.o %s
// RUN: %python %S/../tools/text_ratio.py --at-least 1 --at-most 4 %t.ring.o %t.specialized.o

int use(int, int);

static int search(unsigned N, int A, int B) {
  unsigned Rest = N % 8;
  if (use(A, B))
    return Rest;
  return search(N + 1, A * 3, B) + search(N + 2, A, B * 5) +
         search(N + 3, A ^ B, A);
}

int start(void) { return search(0, 1, 2) + search(1, 5, 7); }
