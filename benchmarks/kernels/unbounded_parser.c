// class: unbounded
// sweep: argument 1200 300 600 601 602 900
//
// Parses and evaluates a generated expression text by precedence climbing: one
// function that calls itself for the right operand and for a parenthesis. Here
// as the parser shape: the recursion follows the data and cannot be predicted.
//
// Reference: two stacks, one of operands and one of operators.

#include "kernel.h"

enum { Cases = 4, Capacity = 8192, MostOperands = 1200 };

static char Text[Cases][Capacity];
static const char *Position;

static int strength(char Operator) {
  switch (Operator) {
  case '+':
  case '-':
    return 1;
  case '*':
    return 2;
  case '^':
    return 3;
  default:
    return 0;
  }
}

static uint32_t combine(char Operator, uint32_t A, uint32_t B) {
  switch (Operator) {
  case '+':
    return A + B;
  case '-':
    return A - B;
  case '*':
    return A * B;
  default:
    return A ^ B;
  }
}

static uint32_t parse(int Weakest) {
  KERNEL_CALL();
  uint32_t Value = 0;
  if (*Position == '(') {
    ++Position;
    Value = parse(1);
    ++Position;
  } else {
    while (*Position >= '0' && *Position <= '9')
      Value = Value * 10 + (uint32_t)(*Position++ - '0');
  }
  for (;;) {
    char Operator = *Position;
    int Strength = strength(Operator);
    if (Strength == 0 || Strength < Weakest)
      return Value;
    ++Position;
    Value = combine(Operator, Value, parse(Strength + 1));
  }
}

/// Writes operands, operators and parentheses; what stays open is closed last.
static void writeText(long Case, int Operands) {
  char *Out = Text[Case];
  uint32_t Random = 1 + (uint32_t)Case;
  int Open = 0;
  for (int I = 0; I < Operands; ++I) {
    for (; Open < 30 && kernelRandom(&Random) % 3 == 0; ++Open)
      *Out++ = '(';
    *Out++ = (char)('1' + kernelRandom(&Random) % 9);
    if (kernelRandom(&Random) % 2)
      *Out++ = (char)('0' + kernelRandom(&Random) % 10);
    for (; Open > 0 && kernelRandom(&Random) % 3 == 0; --Open)
      *Out++ = ')';
    *Out++ = "+-*^"[kernelRandom(&Random) % 4];
  }
  *Out++ = '7';
  while (Open-- > 0)
    *Out++ = ')';
  *Out = 0;
}

static uint32_t referenceValue(const char *P) {
  static uint32_t Operands[Capacity];
  static char Operators[Capacity];
  int Values = 0, Waiting = 0;
  for (;; ++P) {
    if (*P >= '0' && *P <= '9') {
      uint32_t Value = 0;
      for (; *P >= '0' && *P <= '9'; ++P)
        Value = Value * 10 + (uint32_t)(*P - '0');
      Operands[Values++] = Value;
      --P;
      continue;
    }
    if (*P == '(') {
      Operators[Waiting++] = '(';
      continue;
    }
    while (Waiting > 0 && Operators[Waiting - 1] != '(' &&
           strength(Operators[Waiting - 1]) >= strength(*P)) {
      uint32_t B = Operands[--Values], A = Operands[--Values];
      Operands[Values++] = combine(Operators[--Waiting], A, B);
    }
    if (!*P)
      return Operands[0];
    if (*P == ')')
      --Waiting;
    else
      Operators[Waiting++] = *P;
  }
}

int main(int Argc, char **Argv) {
  long Repeats = kernelRepeats(Argc, Argv, 60000);
  int Operands =
      (int)kernelArgument(Argc, Argv, 2, MostOperands, 1, MostOperands);
  uint64_t Sum = 0, Expected = 0;
  for (long Case = 0; Case < Cases; ++Case)
    writeText(Case, Operands);
  for (long R = 0; R < Repeats; ++R) {
    kernelClobber(Text);
    Position = Text[R % Cases];
    Sum += parse(1);
  }
  for (long Case = 0; Case < Cases; ++Case)
    Expected += kernelShare(Repeats, Cases, Case) * referenceValue(Text[Case]);
  return kernelReport("parser", Repeats, Sum, Expected);
}
