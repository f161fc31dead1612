// Body of the ring_knight* kernels: counts the knight's tours over the squares
// of a board of five by five that are not blocked, from the square that is the
// argument. The remainder by five is the column, which decides which of the
// eight moves stay on the board.
//
// Reference: the same search with an explicit stack over coordinates.

#include "ring.h"

enum { Squares = 25, Cases = 6 };

static unsigned Visited, Everything;
static uint64_t Steps[5];
static uint64_t Tours;

INLINERECURSION_SPECIALIZE
static void tour(int Square) {
  KERNEL_CALL();
  unsigned Column = (unsigned)(Square % 5);
  ++Steps[Column];
  Visited |= 1u << Square;
  if (Visited == Everything)
    ++Tours;
  for (int Move = 0; Move < 8; ++Move) {
    static const signed char Across[8] = {1, 2, 2, 1, -1, -2, -2, -1};
    static const signed char Along[8] = {2, 1, -1, -2, -2, -1, 1, 2};
    int There = Square + Across[Move] + 5 * Along[Move];
    if (Column + (unsigned)Across[Move] < 5 && There >= 0 && There < Squares &&
        !(Visited >> There & 1))
      tour(There);
  }
  Visited &= ~(1u << Square);
}

/// Returns the squares a case blocks; the start stays free.
static unsigned blockedSquares(unsigned Case) {
  return 1u << (7 + Case) | 1u << (22 - Case) | 1u << 3;
}

static uint64_t referenceTours(unsigned Blocked, unsigned Start) {
  static const int DX[8] = {-2, -2, -1, -1, 1, 1, 2, 2};
  static const int DY[8] = {-1, 1, -2, 2, -2, 2, -1, 1};
  unsigned char Board[5][5];
  int Path[Squares], Next[Squares], Length = 0, Goal = 0;
  uint64_t Checksum = 0;
  for (int I = 0; I < Squares; ++I) {
    Board[I / 5][I % 5] = Blocked >> I & 1;
    Goal += !Board[I / 5][I % 5] || I == (int)Start;
  }
  Path[0] = (int)Start;
  Next[0] = -1;
  while (Length >= 0) {
    int X = Path[Length] % 5, Y = Path[Length] / 5;
    if (Next[Length] < 0) {
      Board[Y][X] = 1;
      Checksum += (uint64_t)(X + 1) + (Length + 1 == Goal ? 1000 : 0);
      Next[Length] = 0;
    }
    int Move = Next[Length]++;
    if (Move == 8) {
      Board[Y][X] = 0;
      --Length;
      continue;
    }
    int X2 = X + DX[Move], Y2 = Y + DY[Move];
    if (X2 < 0 || X2 > 4 || Y2 < 0 || Y2 > 4 || Board[Y2][X2])
      continue;
    Path[++Length] = Y2 * 5 + X2;
    Next[Length] = -1;
  }
  return Checksum;
}

int main(int Argc, char **Argv) {
  long Repeats = kernelRepeats(Argc, Argv, 540);
  unsigned Start = RING_START(Argc, Argv, 0, Squares - 1);
  for (long R = 0; R < Repeats; ++R) {
    Visited = blockedSquares((unsigned)(R % Cases)) & ~(1u << Start);
    Everything = (1u << Squares) - 1;
    kernelClobber(&Visited);
    tour(Start);
  }
  uint64_t Checksum = 1000 * Tours;
  for (unsigned I = 0; I < 5; ++I)
    Checksum += (I + 1) * Steps[I];

  uint64_t Expected = 0;
  for (unsigned Case = 0; Case < Cases; ++Case) {
    uint64_t Share = kernelShare(Repeats, Cases, Case);
    if (Share)
      Expected += Share * referenceTours(blockedSquares(Case), Start);
  }
  return kernelReport(NAME, Repeats, Checksum, Expected);
}
