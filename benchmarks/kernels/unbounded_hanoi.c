// class: unbounded
// sweep: argument 16 13 14 15 17
//
// The towers of Hanoi with some disks; every move is mixed into a checksum that
// depends on the order. Here for two calls around one piece of work with four
// arguments passed on in other places.
//
// Reference: move number m of the solution goes from peg (m & (m - 1)) % 3 to
// peg ((m | (m - 1)) + 1) % 3.

#include "kernel.h"

enum { Cases = 6 };

static const unsigned char Pegs[Cases][3] = {{0, 1, 2}, {0, 2, 1}, {1, 0, 2},
                                             {1, 2, 0}, {2, 0, 1}, {2, 1, 0}};
static uint32_t Checksum;
static int Height;

static void move(int Disk, uint32_t From, uint32_t To, uint32_t Spare) {
  KERNEL_CALL();
  if (Disk == 0)
    return;
  move(Disk - 1, From, Spare, To);
  Checksum = Checksum * 5 + From * 3 + To;
  move(Disk - 1, Spare, To, From);
}

int main(int Argc, char **Argv) {
  long Repeats = kernelRepeats(Argc, Argv, 4000);
  Height = (int)kernelArgument(Argc, Argv, 2, 16, 1, 30);
  uint64_t Sum = 0;
  for (long R = 0; R < Repeats; ++R) {
    const unsigned char *P = Pegs[R % Cases];
    Checksum = 0;
    kernelClobber(&Height);
    move(Height, P[0], P[2], P[1]);
    Sum += Checksum;
  }

  uint64_t Expected = 0;
  for (long Case = 0; Case < Cases; ++Case) {
    // With an even number of disks the rule's pegs 0, 1, 2 are source, target,
    // spare, and with an odd number source, spare, target.
    int Odd = Height % 2;
    uint32_t P[3] = {Pegs[Case][0], Pegs[Case][2 - Odd], Pegs[Case][1 + Odd]};
    uint32_t Value = 0;
    for (uint32_t M = 1; M < 1u << Height; ++M)
      Value = Value * 5 + P[(M & (M - 1)) % 3] * 3 + P[((M | (M - 1)) + 1) % 3];
    Expected += kernelShare(Repeats, Cases, Case) * Value;
  }
  return kernelReport("hanoi", Repeats, Sum, Expected);
}
