// Two rings whose functions call each other, and cyclic constants around both, do not multiply by inlining.
// RUN: %clang -w -O2 -c -o %t.plain.o %s
// RUN: %clang_with_pass -I %S/../../include -O2 -Rpass=inlinerecursion -c -o %t.ring.o %s 2>&1 | FileCheck %s
// RUN: %python %S/../tools/text_ratio.py --at-least 1 --at-most 30 %t.plain.o %t.ring.o

int use(unsigned);
static int odd(unsigned N);

// CHECK-DAG: 'even' rebuilt as a ring of 4 copies
static int even(unsigned N) {
  unsigned Rest = N % 4;
  if (use(Rest))
    return 0;
  return even((N + 1) % 16) + odd((N + 2) % 16);
}

// CHECK-DAG: 'odd' rebuilt as a ring of 8 copies
static int odd(unsigned N) {
  unsigned Rest = N % 8;
  if (use(Rest + 1))
    return 1;
  return odd((N + 3) % 16) + even((N + 5) % 16);
}

int start(void) { return even(3) + odd(4); }
