// class: unbounded
// sweep: argument 128 32 64 256
//
// Draws a Sierpinski triangle into a bitmap by divide and conquer: three
// quarters of the square by recursion, the fourth stays empty. Here for three
// calls with computed coordinates and a halved size.
//
// Reference: cell (x, y) is drawn exactly when x and y share no bit.

#include "kernel.h"

enum { Size = 256, Cases = 256 };

static unsigned char Bitmap[Size * Size];
static unsigned Colour;

static void draw(unsigned X, unsigned Y, unsigned Extent) {
  KERNEL_CALL();
  if (Extent == 1) {
    Bitmap[Y * Size + X] = (unsigned char)(Bitmap[Y * Size + X] + Colour);
    return;
  }
  unsigned Half = Extent / 2;
  draw(X, Y, Half);
  draw(X + Half, Y, Half);
  draw(X, Y + Half, Half);
}

int main(int Argc, char **Argv) {
  long Repeats = kernelRepeats(Argc, Argv, 130000);
  unsigned Extent = (unsigned)kernelArgument(Argc, Argv, 2, 128, 1, Size);
  if (Extent & (Extent - 1)) {
    fprintf(stderr, "%s: the extent must be a power of two, not %u\n", Argv[0],
            Extent);
    return 2;
  }
  unsigned Total = 0;
  for (long R = 0; R < Repeats; ++R) {
    Colour = (unsigned)(R % Cases);
    Total = (Total + Colour) % 256;
    kernelClobber(Bitmap);
    draw(0, 0, Extent);
  }

  uint64_t Sum = 0, Expected = 0;
  for (unsigned Y = 0; Y < Size; ++Y)
    for (unsigned X = 0; X < Size; ++X) {
      uint64_t Weight = (uint64_t)Y * 1000 + X;
      Sum += (Bitmap[Y * Size + X] + 1u) * Weight;
      int Drawn = (X & Y) == 0 && X < Extent && Y < Extent;
      Expected += (Drawn ? Total + 1 : 1) * Weight;
    }
  return kernelReport("sierpinski", Repeats, Sum, Expected);
}
