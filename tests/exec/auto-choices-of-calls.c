// Recursion by a switch, and by many calls: the test is made in front of the
// calls, and the choice between them by who goes on, with counters, work in
// front of it, leaves of several kinds, and a jump into the next case.
// RUN: %python %S/../tools/compare_auto.py --clang %clang --plugin %plugin --scratch %t.dir --split evaluate --split counted --split falls --split octants --split few --ring few.recurse.rest %s
#include <stdint.h>
#include <stdio.h>

enum Kind { Constant, Variable, Add, Subtract, Multiply, Not, Choose, Kinds };

typedef struct Expression {
  enum Kind Kind;
  uint32_t Value;
  struct Expression *A, *B, *C;
} Expression;

static uint32_t Variables[8], Steps, Seen;

static uint32_t evaluate(const Expression *E) {
  switch (E->Kind) {
  case Constant:
    return E->Value;
  case Variable:
    return Variables[E->Value % 8];
  case Add:
    return evaluate(E->A) + evaluate(E->B);
  case Subtract:
    return evaluate(E->A) - evaluate(E->B);
  case Multiply:
    return evaluate(E->A) * evaluate(E->B);
  case Not:
    return ~evaluate(E->A);
  default:
    return evaluate(E->A) & 1 ? evaluate(E->B) : evaluate(E->C);
  }
}

// Memory that the test reads changes while the recursion runs.
static uint32_t counted(Expression *E, uint32_t Depth) {
  Steps = Steps * 3 + Depth;
  switch (E->Kind) {
  case Constant:
    return E->Value += Steps;
  case Variable:
    E->Kind = Constant;
    return Depth;
  case Add:
    return counted(E->A, Depth + 1) * 3 - counted(E->B, Depth + 2);
  case Subtract:
    return counted(E->B, Depth + 1) - counted(E->A, Depth + 2);
  case Not:
    if (Depth % 4 == 1)
      E->Kind = Constant;
    return ~counted(E->A, Depth * 2);
  default:
    return (counted(E->A, Depth + 3) ^ counted(E->B, Depth + 4)) * 5;
  }
}

static uint32_t falls(const Expression *E, uint32_t Weight) {
  uint32_t Sum = Weight;
  switch (E->Kind) {
  case Variable:
    return Sum * 3;
  case Constant:
    return Sum;
  case Choose:
    Sum += falls(E->C, Sum + 1);
    Sum ^= falls(E->B, 2);
    /* fall through */
  case Add:
  case Multiply:
    Sum = Sum * 5 + falls(E->B, Sum);
    /* fall through */
  case Not:
    Sum = Sum * 7 - falls(E->A, Weight / 2);
    break;
  default:
    Sum += falls(E->B, 4) * 2;
    Sum -= falls(E->A, Sum);
    break;
  }
  return Sum;
}

typedef struct Cube {
  uint32_t Value;
  struct Cube *Octants[8];
} Cube;

static void octants(Cube *C, uint32_t Mark) {
  if (!C)
    return;
  octants(C->Octants[0], Mark + 1);
  octants(C->Octants[1], Mark + 2);
  Seen = Seen * 31 + C->Value;
  octants(C->Octants[2], Mark + 3);
  octants(C->Octants[3], Mark + 5);
  C->Value ^= Mark;
  octants(C->Octants[4], Mark + 7);
  octants(C->Octants[5], Mark + 11);
  octants(C->Octants[6], Mark + C->Value);
  octants(C->Octants[7], Mark * 2);
  Seen += Mark;
}

// No more calls than copies are made of.
static uint32_t few(const Expression *E) {
  ++Steps;
  switch (E->Kind) {
  case Constant:
  case Variable:
    return E->Value;
  case Not:
    return few(E->A) / 3;
  default:
    return few(E->A) * 3 - few(E->B);
  }
}

static Expression Pool[4096];
static Cube Cubes[512];
static uint32_t Random, Used;

static uint32_t next(void) {
  return (Random = Random * 1664525 + 1013904223) >> 8;
}

static Expression *grow(int Depth) __attribute__((noinline));
static Expression *grow(int Depth) {
  Expression *E = &Pool[Used++];
  E->Kind = (enum Kind)(next() % Kinds);
  E->Value = next();
  if (Depth == 0 || Used > 4000)
    E->Kind = next() & 1 ? Constant : Variable;
  if (E->Kind <= Variable)
    return E;
  E->A = grow(Depth - 1);
  E->B = grow(Depth - 1);
  E->C = grow(Depth - 1);
  return E;
}

int main(void) {
  for (uint32_t I = 0; I < 8; ++I)
    Variables[I] = I * 77;
  for (uint32_t Seed = 1; Seed < 40; ++Seed) {
    Random = Seed;
    Used = 0;
    Expression *E = grow((int)(Seed % 7));
    printf("%u %u ", evaluate(E), few(E));
    printf("%u ", falls(E, Seed));
    printf("%u %u\n", counted(E, 1), Steps);
  }
  for (uint32_t I = 0; I < 512; ++I) {
    Cubes[I].Value = next();
    for (uint32_t K = 0; K < 8; ++K)
      Cubes[I].Octants[K] =
          I * 8 + K + 1 < 512 && next() % 5 ? &Cubes[I * 8 + K + 1] : NULL;
  }
  octants(&Cubes[0], 1);
  octants(NULL, 1);
  printf("%u %u\n", Seen, Cubes[9].Value);
  return 0;
}
