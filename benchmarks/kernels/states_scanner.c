// class: states
// sweep: argument 4000 500 2000 8000
//
// A machine of six states that splits a text into words, numbers, spaces and
// comments: one activation for each character, with the table in memory that
// does not change. Here for a state that comes from a table, and for one of the
// two arguments of a recursion that is as deep as the text.
//
// Reference: the same tokens by a loop that looks at the characters themselves.

#include "kernel.h"

enum { Cases = 4, MaxLength = 16000 };
enum Class { Letter, Digit, Blank, Hash, Line, Other, End, Classes };
enum State { Between, InWord, InNumber, InComment, InOther, Stopped, States };

static const unsigned char NextState[States][Classes] = {
    {InWord, InNumber, Between, InComment, Between, InOther, Stopped},
    {InWord, InWord, Between, InComment, Between, InOther, Stopped},
    {InOther, InNumber, Between, InComment, Between, InOther, Stopped},
    {InComment, InComment, InComment, InComment, Between, InComment, Stopped},
    {InWord, InNumber, Between, InComment, Between, InOther, Stopped},
    {Stopped, Stopped, Stopped, Stopped, Stopped, Stopped, Stopped}};

static unsigned char Text[Cases][MaxLength + 1];
static unsigned char ClassOf[256];
static uint32_t Words, Numbers, Comments, Others, Value;

static void scan(const unsigned char *At, int State) {
  KERNEL_CALL();
  if (State == Stopped)
    return;
  unsigned char Character = *At;
  int Next = NextState[State][ClassOf[Character]];
  if (Next == InNumber)
    Value = Value * 10 + Character - '0';
  if (Next == InOther)
    ++Others;
  if (State != Next) {
    if (State == InWord)
      ++Words;
    if (State == InNumber) {
      Numbers += Value;
      Value = 0;
    }
    if (State == InComment)
      ++Comments;
  }
  scan(At + 1, Next);
}

static int classOf(int C) {
  if (C == 0)
    return End;
  if (C == '\n')
    return Line;
  if (C == ' ')
    return Blank;
  if (C == '#')
    return Hash;
  if (C >= '0' && C <= '9')
    return Digit;
  return C >= 'a' && C <= 'z' ? Letter : Other;
}

static void writeText(unsigned char *To, int Length, uint32_t Random) {
  static const char Characters[] = "abcdefgh 0123 4567 xyz 89 +-(,\n#\n\n";
  for (int I = 0; I < Length; ++I)
    To[I] = (unsigned char)
        Characters[kernelRandom(&Random) % (sizeof Characters - 1)];
  To[Length] = 0;
}

static uint64_t total(uint32_t W, uint32_t N, uint32_t C, uint32_t O) {
  return (uint64_t)W * 7919 + N + (uint64_t)C * 104729 + (uint64_t)O * 31;
}

static uint64_t reference(const unsigned char *P) {
  uint32_t W = 0, N = 0, C = 0, O = 0;
  while (*P) {
    int Kind = classOf(*P);
    if (Kind == Letter) {
      while (classOf(*P) == Letter || classOf(*P) == Digit)
        ++P;
      ++W;
    } else if (Kind == Digit) {
      uint32_t Number = 0;
      while (classOf(*P) == Digit)
        Number = Number * 10 + *P++ - '0';
      N += Number;
      if (classOf(*P) == Letter) {
        ++P; // A letter right behind a number is told as something else.
        ++O;
      }
    } else if (Kind == Hash) {
      while (*P && *P != '\n')
        ++P;
      ++C;
    } else {
      O += Kind == Other;
      ++P;
    }
  }
  return total(W, N, C, O);
}

int main(int Argc, char **Argv) {
  long Repeats = kernelRepeats(Argc, Argv, 20000);
  int Length = (int)kernelArgument(Argc, Argv, 2, 4000, 1, MaxLength);
  for (int I = 0; I < 256; ++I)
    ClassOf[I] = (unsigned char)classOf(I);
  for (long Case = 0; Case < Cases; ++Case)
    writeText(Text[Case], Length, 11 + (uint32_t)Case);
  uint64_t Sum = 0;
  for (long R = 0; R < Repeats; ++R) {
    Words = Numbers = Comments = Others = Value = 0;
    kernelClobber(Text);
    scan(Text[R % Cases], Between);
    Sum += total(Words, Numbers, Comments, Others);
  }

  uint64_t Expected = 0;
  for (long Case = 0; Case < Cases; ++Case)
    Expected += kernelShare(Repeats, Cases, Case) * reference(Text[Case]);
  return kernelReport("scanner", Repeats, Sum, Expected);
}
