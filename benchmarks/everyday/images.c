// argument: 110
// Flood fill, islands, a quadtree.
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#define W 200
#define H 200
struct image {
  unsigned char pixel[H][W];
  int painted;
};
static void fill(struct image *im, int x, int y, unsigned char from,
                 unsigned char to) {
  if (x < 0 || y < 0 || x >= W || y >= H)
    return;
  if (im->pixel[y][x] != from)
    return;
  im->pixel[y][x] = to;
  im->painted++;
  fill(im, x + 1, y, from, to);
  fill(im, x - 1, y, from, to);
  fill(im, x, y + 1, from, to);
  fill(im, x, y - 1, from, to);
}
static int island(unsigned char (*g)[W], int x, int y) {
  if (x < 0 || y < 0 || x >= W || y >= H || g[y][x] != 1)
    return 0;
  g[y][x] = 2;
  return 1 + island(g, x + 1, y) + island(g, x - 1, y) + island(g, x, y + 1) +
         island(g, x, y - 1);
}
struct quad {
  int solid;
  unsigned char color;
  struct quad *sub[4];
};
static struct quad *build(const struct image *im, int x, int y, int size) {
  struct quad *q = calloc(1, sizeof *q);
  int same = 1;
  for (int i = 0; i < size && same; i++)
    for (int j = 0; j < size; j++)
      if (im->pixel[y + i][x + j] != im->pixel[y][x]) {
        same = 0;
        break;
      }
  q->color = im->pixel[y][x];
  if (same || size == 1) {
    q->solid = 1;
    return q;
  }
  int h = size / 2;
  q->sub[0] = build(im, x, y, h);
  q->sub[1] = build(im, x + h, y, h);
  q->sub[2] = build(im, x, y + h, h);
  q->sub[3] = build(im, x + h, y + h, h);
  return q;
}
static int quads(const struct quad *q) {
  if (q->solid)
    return 1;
  int n = 1;
  for (int i = 0; i < 4; i++)
    n += quads(q->sub[i]);
  return n;
}
static int color_at(const struct quad *q, int x, int y, int size) {
  if (q->solid)
    return q->color;
  int h = size / 2;
  return color_at(q->sub[(x >= h) + 2 * (y >= h)], x % h, y % h, h);
}
static void drop(struct quad *q) {
  if (!q)
    return;
  for (int i = 0; i < 4; i++)
    drop(q->sub[i]);
  free(q);
}
int main(int argc, char **argv) {
  int n = argc > 1 ? atoi(argv[1]) : 40;
  static struct image im;
  static unsigned char grid[H][W];
  long r = 0;
  unsigned s = 7;
  for (int k = 0; k < n; k++) {
    for (int y = 0; y < H; y++)
      for (int x = 0; x < W; x++) {
        s = s * 1103515245 + 12345;
        im.pixel[y][x] = (s >> 16) % 10 < 3;
        grid[y][x] = (s >> 16) % 10 < 6;
      }
    fill(&im, 0, 0, im.pixel[0][0], 5);
    for (int y = 0; y < H; y += 7)
      for (int x = 0; x < W; x += 7) {
        if (im.pixel[y][x] == 0)
          fill(&im, x, y, 0, 6);
        r += island(grid, x, y);
      }
    struct quad *q = build(&im, 0, 0, 128);
    r += quads(q) + im.painted;
    for (int i = 0; i < 2000; i++)
      r += color_at(q, i * 7 % 128, i * 13 % 128, 128);
    drop(q);
  }
  printf("%ld\n", r);
}
