// The values of an argument without sign are told without one.
// RUN: %clang_with_pass -O3 -Rpass=inlinerecursion -c %s -o %t.o 2>&1 | FileCheck %s
// RUN: %clang_with_pass -O3 -g -Rpass=inlinerecursion -c %s -o %t.o 2>&1 | FileCheck %s

// CHECK-DAG: 'bytes' rebuilt for {{[0-9]+}} states of {{.*}} (0 to 255) by
// CHECK-DAG: 'chars' rebuilt for {{[0-9]+}} states of {{.*}} (-6 to 9) by
// CHECK-DAG: 'words' rebuilt for {{[0-9]+}} states of {{.*}} (0 to 4294967295) by

volatile unsigned Sink;

#define WORK(VALUE)                                                            \
  Sink = Sink * 3 + (VALUE) * 77;                                              \
  Sink = Sink ^ ((VALUE) << 3);                                                \
  *Left = *Left * 5 + (VALUE)

void bytes(unsigned char Byte, unsigned *Left) {
  if (Byte == 9)
    return;
  WORK(Byte);
  bytes(Byte + 1, Left);
  if (*Left & 1)
    bytes(Byte + 1, Left);
  Sink = Byte;
}

void chars(signed char Char, unsigned *Left) {
  if (Char == 9)
    return;
  WORK(Char);
  chars(Char + 1, Left);
  if (*Left & 1)
    chars(Char + 1, Left);
  Sink = Char;
}

// A number that fills a register is passed as it is.
void words(unsigned Word, unsigned *Left) {
  if (Word == 9)
    return;
  Sink = Word / 3 + Word % 5;
  WORK(Word);
  words(Word + 1, Left);
  if (*Left & 1)
    words(Word + 1, Left);
  Sink = Word;
}

void enter(unsigned *Left) {
  bytes(250, Left);
  chars(-6, Left);
  words(-6u, Left);
}
