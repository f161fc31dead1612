// class: states
// sweep: argument 2000 500 1000 4000
//
// A calculator: one function for all levels of precedence, entered with level
// 0, which calls itself for the next level; behind the last one a parenthesis
// starts again at 0. Here for levels that each have operators of their own, and
// for a state that returns to the first.
//
// Reference: two stacks, of values and of operators, reading from left to
// right.

#include "kernel.h"

enum { Cases = 4, MaxLength = 100000, Levels = 5 };

static char Texts[Cases][MaxLength];
static const char *Next;

static uint32_t parse(int Level) {
  KERNEL_CALL();
  if (Level == Levels) {
    char First = *Next++;
    if (First == '(') {
      uint32_t Value = parse(0);
      ++Next;
      return Value;
    }
    if (First == '~')
      return ~parse(Levels);
    uint32_t Value = (uint32_t)(First - '0');
    while (*Next >= '0' && *Next <= '9')
      Value = Value * 10 + (uint32_t)(*Next++ - '0');
    return Value;
  }
  uint32_t Value = parse(Level + 1);
  for (;;) {
    char Operator = *Next;
    if (Level == 0 && Operator == '^') {
      ++Next;
      Value ^= parse(Level + 1);
    } else if (Level == 1 && Operator == '|') {
      ++Next;
      Value |= parse(Level + 1);
    } else if (Level == 2 && Operator == '&') {
      ++Next;
      Value &= parse(Level + 1);
    } else if (Level == 3 && (Operator == '+' || Operator == '-')) {
      ++Next;
      uint32_t Right = parse(Level + 1);
      Value = Operator == '+' ? Value + Right : Value - Right;
    } else if (Level == 4 && (Operator == '*' || Operator == '%')) {
      ++Next;
      uint32_t Right = parse(Level + 1);
      Value = Operator == '*' ? Value * Right : Right ? Value % Right : 0;
    } else {
      return Value;
    }
  }
}

static void writeText(char *Text, int Length, uint32_t Random) {
  static const char Operators[] = "|^&+-*%";
  int At = 0, Open = 0;
  while (At < Length) {
    uint32_t Dice = kernelRandom(&Random) % 8;
    if (Dice == 0) {
      Text[At++] = '(';
      ++Open;
      continue;
    }
    if (Dice == 1) {
      Text[At++] = '~';
      continue;
    }
    Text[At++] = (char)('1' + kernelRandom(&Random) % 9);
    if (Dice < 5)
      Text[At++] = (char)('0' + kernelRandom(&Random) % 10);
    if (Open && kernelRandom(&Random) % 4 == 0) {
      Text[At++] = ')';
      --Open;
    }
    Text[At++] = Operators[kernelRandom(&Random) % 7];
  }
  Text[At++] = '7';
  while (Open--)
    Text[At++] = ')';
  Text[At] = 0;
}

static int levelOf(char Operator) {
  switch (Operator) {
  case '^':
    return 1;
  case '|':
    return 2;
  case '&':
    return 3;
  case '+':
  case '-':
    return 4;
  case '*':
  case '%':
    return 5;
  case '~':
    return 6;
  }
  return 0;
}

static uint32_t Stack[MaxLength];
static char Pending[MaxLength];
static int Values, Operators;

static void applyLast(void) {
  char Operator = Pending[--Operators];
  uint32_t Right = Stack[--Values];
  if (Operator == '~') {
    Stack[Values++] = ~Right;
    return;
  }
  uint32_t *Left = &Stack[Values - 1];
  switch (Operator) {
  case '|':
    *Left |= Right;
    break;
  case '^':
    *Left ^= Right;
    break;
  case '&':
    *Left &= Right;
    break;
  case '+':
    *Left += Right;
    break;
  case '-':
    *Left -= Right;
    break;
  case '*':
    *Left *= Right;
    break;
  default:
    *Left = Right ? *Left % Right : 0;
  }
}

static uint32_t reference(const char *Text) {
  Values = Operators = 0;
  while (*Text) {
    char C = *Text++;
    if (C >= '0' && C <= '9') {
      uint32_t Value = (uint32_t)(C - '0');
      while (*Text >= '0' && *Text <= '9')
        Value = Value * 10 + (uint32_t)(*Text++ - '0');
      Stack[Values++] = Value;
    } else if (C == '(' || C == '~') {
      Pending[Operators++] = C;
    } else if (C == ')') {
      while (Pending[Operators - 1] != '(')
        applyLast();
      --Operators;
    } else {
      while (Operators && levelOf(Pending[Operators - 1]) >= levelOf(C))
        applyLast();
      Pending[Operators++] = C;
    }
  }
  while (Operators)
    applyLast();
  return Stack[0];
}

int main(int Argc, char **Argv) {
  long Repeats = kernelRepeats(Argc, Argv, 20000);
  int Length = (int)kernelArgument(Argc, Argv, 2, 2000, 1, MaxLength / 2);
  for (long Case = 0; Case < Cases; ++Case)
    writeText(Texts[Case], Length, 3 + (uint32_t)Case);
  uint64_t Sum = 0;
  for (long R = 0; R < Repeats; ++R) {
    Next = Texts[R % Cases];
    kernelClobber(Texts);
    Sum += parse(0);
  }

  uint64_t Expected = 0;
  for (long Case = 0; Case < Cases; ++Case)
    Expected += kernelShare(Repeats, Cases, Case) * reference(Texts[Case]);
  return kernelReport("precedence", Repeats, Sum, Expected);
}
