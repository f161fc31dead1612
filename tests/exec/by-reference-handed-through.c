// An argument that is handed through as it came may point to what the body changes,
// if a caller from elsewhere passes that: only calls that pass a variable of their own
// take values.
// RUN: %clang -O2 %s -o %t.plain && %t.plain > %t.expected
// RUN: %clang -O2 -fpass-plugin=%plugin %s -o %t.with && %t.with > %t.got
// RUN: cmp %t.expected %t.got
// RUN: FileCheck %s --input-file %t.got
#include <stdio.h>

int Counter;
int Seen[32], Used;

// CHECK: 1 2 3 4 5
// CHECK-NEXT: 7 7 7 7 7
__attribute__((used)) void walk(const int *Value, int Left) {
  if (Left == 0)
    return;
  ++Counter;
  Seen[Used++] = *Value;
  walk(Value, Left - 1);
  Seen[Used++] = *Value;
}

static void print(void) {
  for (int I = 0; I != Used / 2; ++I)
    printf("%d%c", Seen[I], I == Used / 2 - 1 ? '\n' : ' ');
  Used = 0;
}

void (*volatile Enter)(const int *, int) = walk;

int main(void) {
  Enter(&Counter, 5);
  print();
  int Mine = 7;
  walk(&Mine, 5);
  print();
}
