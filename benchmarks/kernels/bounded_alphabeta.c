// class: bounded
// sweep: PLIES 5 4 3 6
//
// Depth-limited game search with cutoffs: alpha-beta over an abstract game,
// PLIES plies, seven moves of which some are barred, a table-driven evaluation
// of eight steps at the leaves. The ply is the only argument. Here because the
// loop around the call is left early, and by an exit that no compiler can
// count, so its seven trips are a bound only.
//
// Reference: the plain minimax value of the same tree, without cutoffs, by an
// explicit stack.

#include "kernel.h"

#ifndef PLIES
#define PLIES 5
#endif

enum { Cases = 16, Moves = 7, Plies = PLIES, Worst = -1000000 };

static uint32_t Position, Steps[64], Weights[64];
static int Beta[Plies + 1];

static int rate(uint32_t P) {
  int Rating = 0;
  for (uint32_t I = 0; I < 8; ++I) {
    Rating += (int)((Weights[(P >> I) & 63] ^ (P * 7 + I)) & 255);
    if (Rating & 1)
      Rating -= (int)(Steps[((uint32_t)Rating + I) & 63] & 127);
  }
  return Rating;
}

static int search(int Ply) {
  KERNEL_CALL();
  if (Ply == Plies)
    return rate(Position);
  int Best = Worst;
  for (int Move = 0; Move < Moves; ++Move) {
    uint32_t Old = Position;
    if (((Old >> Move) & 3) == 3)
      continue;
    Position = (Old * 33 + Steps[Move]) ^ (Old >> 5);
    Beta[Ply + 1] = -Best;
    int Score = -search(Ply + 1);
    Position = Old;
    if (Score > Best) {
      Best = Score;
      if (Ply && Best >= Beta[Ply])
        break;
    }
  }
  return Best;
}

static uint32_t startPosition(long Case) { return (uint32_t)Case * 977 + 3; }

static int referenceValue(uint32_t Start) {
  uint32_t Positions[Plies + 1] = {Start};
  int Best[Plies + 1] = {Worst}, Next[Plies + 1] = {0};
  int Ply = 0;
  for (;;) {
    int Value;
    if (Ply == Plies) {
      Value = rate(Positions[Ply]);
    } else if (Next[Ply] == Moves) {
      Value = Best[Ply];
    } else {
      int Move = Next[Ply]++;
      uint32_t Old = Positions[Ply];
      if (((Old >> Move) & 3) != 3) {
        ++Ply;
        Positions[Ply] = (Old * 33 + Steps[Move]) ^ (Old >> 5);
        Best[Ply] = Worst;
        Next[Ply] = 0;
      }
      continue;
    }
    if (Ply == 0)
      return Value;
    --Ply;
    if (-Value > Best[Ply])
      Best[Ply] = -Value;
  }
}

int main(int Argc, char **Argv) {
  long Repeats = kernelRepeats(Argc, Argv, 8000);
  uint32_t Random = 7;
  for (int I = 0; I < 64; ++I) {
    Steps[I] = kernelRandom(&Random);
    Weights[I] = kernelRandom(&Random);
  }
  uint64_t Sum = 0;
  for (long R = 0; R < Repeats; ++R) {
    Position = startPosition(R % Cases);
    kernelClobber(&Position);
    Sum += (uint64_t)(search(0) + 2000000);
  }

  uint64_t Expected = 0;
  for (long Case = 0; Case < Cases; ++Case)
    Expected += kernelShare(Repeats, Cases, Case) *
                (uint64_t)(referenceValue(startPosition(Case)) + 2000000);
  return kernelReport("alphabeta", Repeats, Sum, Expected);
}
