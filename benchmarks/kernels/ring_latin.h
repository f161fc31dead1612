// Body of the ring_latin* kernels: counts the Latin squares of order five below
// a given first row, cell after cell from the start, which lies in row two;
// what is left of it is given too. Visits counts the calls per column.
//
// Reference: row by row, over all sequences of four permutations none of which
// agrees anywhere with a row above.

#include "ring.h"

enum { Order = 5, Cells = Order * Order, Cases = 5, Permutations = 120 };

static unsigned RowUsed[Order + 1], ColumnUsed[Order];
static uint64_t Visits[Order];
static uint64_t Squares;

INLINERECURSION_SPECIALIZE
static void fill(int Cell) {
  KERNEL_CALL();
  unsigned Column = (unsigned)(Cell % 5);
  ++Visits[Column];
  if (Cell == Cells) {
    ++Squares;
    return;
  }
  unsigned Row = (unsigned)Cell / 5;
  unsigned Free = 31 & ~(RowUsed[Row] | ColumnUsed[Column]);
  while (Free) {
    unsigned Symbol = Free & (0 - Free);
    Free ^= Symbol;
    RowUsed[Row] |= Symbol;
    ColumnUsed[Column] |= Symbol;
    fill(Cell + 1);
    RowUsed[Row] ^= Symbol;
    ColumnUsed[Column] ^= Symbol;
  }
}

static unsigned Rows[Permutations][Order];

/// Lists the permutations of five symbols by counting and dropping repeats.
static void listPermutations(void) {
  unsigned Count = 0;
  for (unsigned Number = 0; Number < 3125; ++Number) {
    unsigned Rest = Number, Seen = 0, Row[Order];
    for (unsigned I = 0; I < Order; ++I, Rest /= Order) {
      Row[I] = Rest % Order;
      Seen |= 1u << Row[I];
    }
    if (Seen != 31)
      continue;
    for (unsigned I = 0; I < Order; ++I)
      Rows[Count][I] = Row[I];
    ++Count;
  }
}

static int agree(unsigned A, unsigned B) {
  for (unsigned I = 0; I < Order; ++I)
    if (Rows[A][I] == Rows[B][I])
      return 1;
  return 0;
}

/// Returns the checksum of one search below row number First: column zero is
/// visited once at the start, unless cells of row two are given, and once for
/// every way to complete a further row, and a complete square counts 1000. The
/// given cells hold the next symbol of the row above.
static uint64_t referenceSearch(unsigned First, unsigned Given) {
  static unsigned char Clash[Permutations][Permutations];
  unsigned List[Permutations], Length = 0;
  for (unsigned A = 0; A < Permutations; ++A) {
    if (!agree(First, A))
      List[Length++] = A;
    for (unsigned B = 0; B < Permutations; ++B)
      Clash[A][B] = (unsigned char)agree(A, B);
  }
  uint64_t Checksum = Given == 0;
  for (unsigned A = 0; A < Length; ++A) {
    unsigned Same = 0;
    while (Same < Given &&
           Rows[List[A]][Same] == Rows[First][(Same + 1) % Order])
      ++Same;
    if (Same < Given)
      continue;
    ++Checksum;
    for (unsigned B = 0; B < Length; ++B) {
      if (Clash[List[A]][List[B]])
        continue;
      ++Checksum;
      for (unsigned C = 0; C < Length; ++C) {
        if (Clash[List[A]][List[C]] || Clash[List[B]][List[C]])
          continue;
        ++Checksum;
        for (unsigned D = 0; D < Length; ++D)
          if (!Clash[List[A]][List[D]] && !Clash[List[B]][List[D]] &&
              !Clash[List[C]][List[D]])
            Checksum += 1001;
      }
    }
  }
  return Checksum;
}

int main(int Argc, char **Argv) {
  long Repeats = kernelRepeats(Argc, Argv, 4000);
  unsigned Start = RING_START(Argc, Argv, Order, 2 * Order - 1);
  for (long R = 0; R < Repeats; ++R) {
    for (unsigned I = 0; I < Order; ++I)
      ColumnUsed[I] = 1u << (I + (unsigned)R) % Order;
    RowUsed[1] = 0;
    for (unsigned I = 0; I < Start - Order; ++I) {
      unsigned Symbol = 1u << (I + 1 + (unsigned)R) % Order;
      RowUsed[1] |= Symbol;
      ColumnUsed[I] |= Symbol;
    }
    kernelClobber(ColumnUsed);
    fill(Start);
  }
  uint64_t Checksum = 1000 * Squares + Visits[0];

  listPermutations();
  return kernelReport(NAME, Repeats, Checksum,
                      (uint64_t)Repeats * referenceSearch(0, Start - Order));
}
