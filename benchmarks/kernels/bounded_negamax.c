// class: bounded
// sweep: PLIES 5 3 4
//
// Depth-limited game search: plain negamax, PLIES plies, seven moves in a loop,
// on a four-in-a-row board of seven columns and six rows. The ply is the only
// argument; board, heights and side to move are globals. Here as the realistic
// constant-depth search: the leaves do real work (wins, pairs and threes in
// four directions), so the gain is what remains beside it.
//
// The board is two sets of 49 bits, seven per column with the seventh always
// empty, so shifts by 1, 6, 7 and 8 never join two columns wrongly.
//
// Reference: the same tree walked with an explicit stack over a character
// grid, evaluated square by square.

#include "kernel.h"

#ifndef PLIES
#define PLIES 5
#endif

enum { Plies = PLIES, Cases = 2, Columns = 7, Rows = 6, Win = 10000 };

static uint64_t Board[2];
static int Height[Columns];
static int Side;

static int countBits(uint64_t Bits) {
  Bits -= (Bits >> 1) & 0x5555555555555555u;
  Bits = (Bits & 0x3333333333333333u) + ((Bits >> 2) & 0x3333333333333333u);
  Bits = (Bits + (Bits >> 4)) & 0x0f0f0f0f0f0f0f0fu;
  return (int)((Bits * 0x0101010101010101u) >> 56);
}

static int hasWon(uint64_t Stones) {
  for (int Shift = 1; Shift <= 8; Shift = Shift == 1 ? 6 : Shift + 1) {
    uint64_t Pairs = Stones & (Stones >> Shift);
    if (Pairs & (Pairs >> (2 * Shift)))
      return 1;
  }
  return 0;
}

static int rate(uint64_t Stones) {
  int Rating = 0;
  for (int Shift = 1; Shift <= 8; Shift = Shift == 1 ? 6 : Shift + 1) {
    uint64_t Pairs = Stones & (Stones >> Shift);
    Rating += 2 * countBits(Pairs) + 7 * countBits(Pairs & (Pairs >> Shift));
  }
  return Rating;
}

static int search(int Ply) {
  KERNEL_CALL();
  if (Ply == Plies)
    return rate(Board[Side]) - rate(Board[Side ^ 1]);
  int Best = -2 * Win;
  for (int Column = 0; Column < Columns; ++Column) {
    if (Height[Column] == Rows)
      continue;
    uint64_t Stone = (uint64_t)1 << (7 * Column + Height[Column]);
    Board[Side] |= Stone;
    ++Height[Column];
    int Score;
    if (hasWon(Board[Side])) {
      Score = Win - Ply;
    } else {
      Side ^= 1;
      Score = -search(Ply + 1);
      Side ^= 1;
    }
    --Height[Column];
    Board[Side] ^= Stone;
    if (Score > Best)
      Best = Score;
  }
  return Best;
}

static const char *const Openings[Cases] = {"2425", "33342"};

static void playOpening(long Case) {
  Board[0] = Board[1] = 0;
  Side = 0;
  for (int I = 0; I < Columns; ++I)
    Height[I] = 0;
  for (const char *Move = Openings[Case]; *Move; ++Move) {
    int Column = *Move - '0';
    Board[Side] |= (uint64_t)1 << (7 * Column + Height[Column]++);
    Side ^= 1;
  }
}

static char Grid[Columns][Rows];

/// Returns how many lines of Length stones of Player start anywhere.
static int countLines(char Player, int Length) {
  static const int Steps[4][2] = {{0, 1}, {1, 0}, {1, 1}, {1, -1}};
  int Lines = 0;
  for (int Step = 0; Step < 4; ++Step)
    for (int X = 0; X < Columns; ++X)
      for (int Y = 0; Y < Rows; ++Y) {
        int I = 0;
        for (; I < Length; ++I) {
          int X2 = X + I * Steps[Step][0], Y2 = Y + I * Steps[Step][1];
          if (X2 >= Columns || Y2 < 0 || Y2 >= Rows || Grid[X2][Y2] != Player)
            break;
        }
        Lines += I == Length;
      }
  return Lines;
}

static int referenceScore(long Case) {
  int Tops[Columns] = {0};
  for (int X = 0; X < Columns; ++X)
    for (int Y = 0; Y < Rows; ++Y)
      Grid[X][Y] = 0;
  char Player = 1;
  for (const char *Move = Openings[Case]; *Move; ++Move) {
    Grid[*Move - '0'][Tops[*Move - '0']++] = Player;
    Player = (char)(3 - Player);
  }
  int Next[Plies] = {0}, Best[Plies] = {-2 * Win};
  int Ply = 0;
  for (;;) {
    int Score;
    if (Next[Ply] < Columns) {
      int Column = Next[Ply]++;
      if (Tops[Column] == Rows)
        continue;
      Grid[Column][Tops[Column]++] = Player;
      if (countLines(Player, 4)) {
        Score = Win - Ply;
      } else if (Ply == Plies - 1) {
        char Other = (char)(3 - Player);
        Score = 2 * countLines(Player, 2) + 7 * countLines(Player, 3) -
                2 * countLines(Other, 2) - 7 * countLines(Other, 3);
      } else {
        ++Ply;
        Next[Ply] = 0;
        Best[Ply] = -2 * Win;
        Player = (char)(3 - Player);
        continue;
      }
    } else {
      if (Ply == 0)
        return Best[0];
      Score = -Best[Ply--];
      Player = (char)(3 - Player);
    }
    int Column = Next[Ply] - 1;
    Grid[Column][--Tops[Column]] = 0;
    if (Score > Best[Ply])
      Best[Ply] = Score;
  }
}

int main(int Argc, char **Argv) {
  long Repeats = kernelRepeats(Argc, Argv, 1600);
  uint64_t Sum = 0;
  for (long R = 0; R < Repeats; ++R) {
    playOpening(R % Cases);
    kernelClobber(Board);
    Sum += (uint64_t)(search(0) + 3 * Win);
  }

  uint64_t Expected = 0;
  for (long Case = 0; Case < Cases; ++Case) {
    uint64_t Share = kernelShare(Repeats, Cases, Case);
    if (Share)
      Expected += Share * (uint64_t)(referenceScore(Case) + 3 * Win);
  }
  return kernelReport("negamax", Repeats, Sum, Expected);
}
