// argument: 11
// Queens on a board, knapsack, change, combinations, permutations.
#include <stdbool.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#define MAX 16
struct board {
  int n;
  int queen[MAX];
  bool column[MAX], up[2 * MAX], down[2 * MAX];
  long solutions;
};
static bool is_free(const struct board *b, int row, int col) {
  return !b->column[col] && !b->up[row + col] && !b->down[row - col + b->n - 1];
}
static void set(struct board *b, int row, int col, bool on) {
  b->column[col] = on;
  b->up[row + col] = on;
  b->down[row - col + b->n - 1] = on;
  b->queen[row] = col;
}
static void place(struct board *b, int row) {
  if (row == b->n) {
    b->solutions++;
    return;
  }
  for (int col = 0; col < b->n; col++)
    if (is_free(b, row, col)) {
      set(b, row, col, true);
      place(b, row + 1);
      set(b, row, col, false);
    }
}
static bool first(struct board *b, int row) {
  if (row == b->n)
    return true;
  for (int col = 0; col < b->n; col++)
    if (is_free(b, row, col)) {
      set(b, row, col, true);
      if (first(b, row + 1))
        return true;
      set(b, row, col, false);
    }
  return false;
}
/* knapsack by include or exclude */
struct item {
  int weight, worth;
};
static int best(const struct item *items, int count, int room) {
  if (count == 0 || room == 0)
    return 0;
  int without = best(items + 1, count - 1, room);
  if (items[0].weight > room)
    return without;
  int with =
      items[0].worth + best(items + 1, count - 1, room - items[0].weight);
  return with > without ? with : without;
}
static long coins(int amount, const int *values, int n) {
  if (amount == 0)
    return 1;
  if (amount < 0 || n == 0)
    return 0;
  return coins(amount - values[0], values, n) +
         coins(amount, values + 1, n - 1);
}
static long combos(int n, int k) {
  if (k == 0 || k == n)
    return 1;
  return combos(n - 1, k - 1) + combos(n - 1, k);
}
static void permute(int *a, int k, int n, long *sum) {
  if (k == n) {
    *sum += a[0] * a[n - 1];
    return;
  }
  for (int i = k; i < n; i++) {
    int t = a[k];
    a[k] = a[i];
    a[i] = t;
    permute(a, k + 1, n, sum);
    t = a[k];
    a[k] = a[i];
    a[i] = t;
  }
}
int main(int argc, char **argv) {
  int n = argc > 1 ? atoi(argv[1]) : 10;
  struct board b;
  memset(&b, 0, sizeof b);
  b.n = n;
  place(&b, 0);
  struct board f;
  memset(&f, 0, sizeof f);
  f.n = 14;
  bool ok = first(&f, 0);
  struct item items[22];
  for (int i = 0; i < 22; i++)
    items[i] = (struct item){3 + i * 7 % 11, 5 + i * 5 % 13};
  int w = best(items, 22, 60);
  int values[] = {50, 25, 10, 5, 2, 1};
  long c = coins(260, values, 6);
  int a[9];
  for (int i = 0; i < 9; i++)
    a[i] = i + 1;
  long s = 0;
  permute(a, 0, 9, &s);
  printf("%ld %d %d %ld %ld %ld\n", b.solutions, ok, w, c, combos(24, 10), s);
}
