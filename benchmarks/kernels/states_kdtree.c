// class: states
// sweep: argument 4000 1000 2000 8000
//
// A k-d tree of some points in space in a balanced, implicit layout: nearest
// point, and points in a ball. The axis goes round with the depth, 0, 1, 2,
// from 0. Here for a state that comes back, beside a range that does not.
//
// Reference: all points one by one.

#include "kernel.h"

enum { MaxPoints = 20000, Cases = 8, Grid = 1024 };

struct Point {
  int At[3];
};

static struct Point Points[MaxPoints];
static struct Point Query;
static int Best, Radius;
static uint64_t Inside;

static int squareOf(int X) { return X * X; }

static int distance(const struct Point *P) {
  return squareOf(P->At[0] - Query.At[0]) + squareOf(P->At[1] - Query.At[1]) +
         squareOf(P->At[2] - Query.At[2]);
}

static void nearest(int Low, int High, int Axis) {
  KERNEL_CALL();
  if (Low >= High)
    return;
  int Middle = (Low + High) / 2;
  int Distance = distance(&Points[Middle]);
  if (Distance < Best)
    Best = Distance;
  int Offset = Query.At[Axis] - Points[Middle].At[Axis];
  int Next = (Axis + 1) % 3;
  if (Offset <= 0) {
    nearest(Low, Middle, Next);
    if (squareOf(Offset) < Best)
      nearest(Middle + 1, High, Next);
  } else {
    nearest(Middle + 1, High, Next);
    if (squareOf(Offset) < Best)
      nearest(Low, Middle, Next);
  }
}

static void countInside(int Low, int High, int Axis) {
  KERNEL_CALL();
  if (Low >= High)
    return;
  int Middle = (Low + High) / 2;
  if (distance(&Points[Middle]) <= squareOf(Radius))
    ++Inside;
  int Offset = Query.At[Axis] - Points[Middle].At[Axis];
  if (Offset <= Radius)
    countInside(Low, Middle, (Axis + 1) % 3);
  if (Offset >= -Radius)
    countInside(Middle + 1, High, (Axis + 1) % 3);
}

/// Orders points by sifting, which needs no recursion.
static void sortPoints(struct Point *P, int Count, int Axis) {
  for (int Gap = Count / 2; Gap > 0; Gap /= 2)
    for (int I = Gap; I < Count; ++I) {
      struct Point Moved = P[I];
      int J = I;
      for (; J >= Gap && P[J - Gap].At[Axis] > Moved.At[Axis]; J -= Gap)
        P[J] = P[J - Gap];
      P[J] = Moved;
    }
}

static void buildTree(int Count) {
  int Stack[64][3], Depth = 0;
  Stack[Depth][0] = 0, Stack[Depth][1] = Count, Stack[Depth++][2] = 0;
  while (Depth) {
    --Depth;
    int Low = Stack[Depth][0], High = Stack[Depth][1], Axis = Stack[Depth][2];
    if (High - Low < 2)
      continue;
    sortPoints(Points + Low, High - Low, Axis);
    int Middle = (Low + High) / 2, Next = (Axis + 1) % 3;
    Stack[Depth][0] = Low, Stack[Depth][1] = Middle, Stack[Depth++][2] = Next;
    Stack[Depth][0] = Middle + 1, Stack[Depth][1] = High;
    Stack[Depth++][2] = Next;
  }
}

static void ask(long Case) {
  uint32_t Random = 100 + (uint32_t)Case;
  for (int I = 0; I < 3; ++I)
    Query.At[I] = (int)(kernelRandom(&Random) % Grid);
  Radius = 100 + 10 * (int)Case;
}

int main(int Argc, char **Argv) {
  long Repeats = kernelRepeats(Argc, Argv, 250000);
  int Count = (int)kernelArgument(Argc, Argv, 2, 4000, 1, MaxPoints);
  uint32_t Random = 5;
  for (int I = 0; I < Count; ++I)
    for (int A = 0; A < 3; ++A)
      Points[I].At[A] = (int)(kernelRandom(&Random) % Grid);
  buildTree(Count);
  uint64_t Sum = 0;
  for (long R = 0; R < Repeats; ++R) {
    ask(R % Cases);
    Best = 3 * Grid * Grid;
    kernelClobber(&Query);
    nearest(0, Count, 0);
    countInside(0, Count, 0);
    Sum += (uint64_t)Best;
  }

  uint64_t Expected = 0;
  for (long Case = 0; Case < Cases; ++Case) {
    ask(Case);
    int Least = 3 * Grid * Grid;
    uint64_t Near = 0;
    for (int I = 0; I < Count; ++I) {
      int Distance = distance(&Points[I]);
      if (Distance < Least)
        Least = Distance;
      Near += Distance <= squareOf(Radius);
    }
    Expected += kernelShare(Repeats, Cases, Case) * ((uint64_t)Least + Near);
  }
  return kernelReport("kdtree", Repeats, Sum + Inside, Expected);
}
