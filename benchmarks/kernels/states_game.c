// class: states
// sweep: argument 3 2 4 5
//
// A game on three heaps: the sides take one, two or three from a heap in turn,
// and a heap pays more to one side than to the other. The search looks seven
// moves ahead. Side and depth are the state. Here for a state of two parts, one
// of which goes to and fro. The input is how large the heaps are.
//
// Reference: the values of all positions of each depth, from a table of the
// positions that are one move nearer to the end.

#include "kernel.h"

enum { Heaps = 3, Depth = 7, Cases = 4, Positions = 4096 };

static int Heap[Heaps];
static int Pays[2][Heaps];

static int search(int Side, int Left) {
  KERNEL_CALL();
  if (Left == 0) {
    int Value = 0;
    for (int I = 0; I < Heaps; ++I)
      Value += Heap[I] * (Pays[Side][I] - Pays[Side ^ 1][I]);
    return Value;
  }
  int Best = -1000000;
  for (int I = 0; I < Heaps; ++I)
    for (int Taken = 1; Taken <= 3 && Taken <= Heap[I]; ++Taken) {
      Heap[I] -= Taken;
      int Value = Taken * Pays[Side][I] - search(Side ^ 1, Left - 1);
      Heap[I] += Taken;
      if (Value > Best)
        Best = Value;
    }
  return Best == -1000000 ? 0 : Best;
}

static void setUp(long Case, int Height) {
  for (int I = 0; I < Heaps; ++I) {
    Heap[I] = Height + (int)(Case + I) % 3;
    Pays[0][I] = 2 + (int)(Case * 3 + I * 5) % 7;
    Pays[1][I] = 1 + (int)(Case * 5 + I * 3) % 8;
  }
}

/// Heap heights in a number, four bits each.
static int heightOf(int Position, int I) { return Position >> 4 * I & 15; }

static int reference(void) {
  static int Value[2][Positions];
  for (int Left = 0; Left <= Depth; ++Left) {
    // Sides take turns, so the side to move follows from the depth.
    int Side = (Depth - Left) % 2;
    for (int Position = 0; Position < Positions; ++Position) {
      int Best = -1000000;
      for (int I = 0; I < Heaps; ++I)
        for (int Taken = 1;
             Left && Taken <= 3 && Taken <= heightOf(Position, I); ++Taken) {
          int Next = Value[(Left - 1) % 2][Position - (Taken << 4 * I)];
          int Worth = Taken * Pays[Side][I] - Next;
          Best = Worth > Best ? Worth : Best;
        }
      if (Best == -1000000)
        Best = 0;
      for (int I = 0; Left == 0 && I < Heaps; ++I)
        Best += heightOf(Position, I) * (Pays[Side][I] - Pays[1 - Side][I]);
      Value[Left % 2][Position] = Best;
    }
  }
  return Value[Depth % 2][Heap[0] | Heap[1] << 4 | Heap[2] << 8];
}

int main(int Argc, char **Argv) {
  long Repeats = kernelRepeats(Argc, Argv, 300);
  int Height = (int)kernelArgument(Argc, Argv, 2, 3, 1, 13);
  uint64_t Sum = 0;
  for (long R = 0; R < Repeats; ++R) {
    setUp(R % Cases, Height);
    kernelClobber(Heap);
    Sum += (uint64_t)(search(0, Depth) + 1000);
  }

  uint64_t Expected = 0;
  for (long Case = 0; Case < Cases; ++Case) {
    setUp(Case, Height);
    Expected +=
        kernelShare(Repeats, Cases, Case) * (uint64_t)(reference() + 1000);
  }
  return kernelReport("game", Repeats, Sum, Expected);
}
