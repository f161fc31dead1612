/* Finds the point of a tree that is nearest to a place. Each level of the tree looks
   at one of three axes in turn. */
#include <stdio.h>
#include <stdlib.h>

struct point {
  double At[3];
  struct point *Child[2];
};

static double Best = 1e9;

static void nearest(const struct point *Point, const double *Place, int Axis) {
  if (!Point)
    return;
  double X = Place[0] - Point->At[0], Y = Place[1] - Point->At[1],
         Z = Place[2] - Point->At[2];
  if (X * X + Y * Y + Z * Z < Best)
    Best = X * X + Y * Y + Z * Z;
  double Distance = Place[Axis] - Point->At[Axis];
  int Side = Distance > 0;
  nearest(Point->Child[Side], Place, (Axis + 1) % 3);
  if (Distance * Distance < Best)
    nearest(Point->Child[!Side], Place, (Axis + 1) % 3);
}

static struct point *build(unsigned Levels, unsigned Seed) {
  if (Levels == 0)
    return NULL;
  struct point *Point = malloc(sizeof *Point);
  for (int Axis = 0; Axis != 3; ++Axis)
    Point->At[Axis] = (Seed = Seed * 1103515245 + 12345) >> 16 & 63;
  Point->Child[0] = build(Levels - 1, Seed);
  Point->Child[1] = build(Levels - 1, Seed + 7);
  return Point;
}

int main(void) {
  const double Place[3] = {20, 30, 40};
  nearest(build(15, 1), Place, 0);
  printf("%g\n", Best);
}
