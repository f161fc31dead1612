// argument: 60
// Game search, a tree of owned nodes, and the recursions of textbooks.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <vector>
struct Board {
  int cell[9] = {0};
  bool wins(int p) const {
    static const int lines[8][3] = {{0, 1, 2}, {3, 4, 5}, {6, 7, 8}, {0, 3, 6},
                                    {1, 4, 7}, {2, 5, 8}, {0, 4, 8}, {2, 4, 6}};
    for (auto &l : lines)
      if (cell[l[0]] == p && cell[l[1]] == p && cell[l[2]] == p)
        return true;
    return false;
  }
};
static long positions;
static int search(Board &b, int player, int alpha, int beta, int left) {
  positions++;
  if (b.wins(-player))
    return -10 - left;
  if (left == 0)
    return 0;
  for (int i = 0; i < 9; i++) {
    if (b.cell[i])
      continue;
    b.cell[i] = player;
    int score = -search(b, -player, -beta, -alpha, left - 1);
    b.cell[i] = 0;
    if (score > alpha)
      alpha = score;
    if (alpha >= beta)
      break;
  }
  return alpha;
}
static int nim(int a, int b, int c, int turn) {
  if (a == 0 && b == 0 && c == 0)
    return -turn;
  int best = -turn;
  for (int i = 1; i <= a && best != turn; i++)
    if (nim(a - i, b, c, -turn) == turn)
      best = turn;
  for (int i = 1; i <= b && best != turn; i++)
    if (nim(a, b - i, c, -turn) == turn)
      best = turn;
  for (int i = 1; i <= c && best != turn; i++)
    if (nim(a, b, c - i, -turn) == turn)
      best = turn;
  return best;
}
struct Tree {
  int value;
  std::vector<std::unique_ptr<Tree>> children;
};
static std::unique_ptr<Tree> grow(int depth, unsigned &seed) {
  auto t = std::make_unique<Tree>();
  seed = seed * 1103515245 + 12345;
  t->value = int(seed >> 16 & 255) - 128;
  if (depth > 0)
    for (int i = 0; i < 4; i++)
      t->children.push_back(grow(depth - 1, seed));
  return t;
}
static int minimax(const Tree &t, bool maximize) {
  if (t.children.empty())
    return t.value;
  int best = maximize ? -1000 : 1000;
  for (const auto &c : t.children) {
    int v = minimax(*c, !maximize);
    best = maximize ? std::max(best, v) : std::min(best, v);
  }
  return best;
}
static int fib(int n) { return n < 2 ? n : fib(n - 1) + fib(n - 2); }
static int ack(int m, int n) {
  return m == 0 ? n + 1 : n == 0 ? ack(m - 1, 1) : ack(m - 1, ack(m, n - 1));
}
static void hanoi(int n, int a, int b, int c, long &moves) {
  if (n == 0)
    return;
  hanoi(n - 1, a, c, b, moves);
  moves += a ^ b;
  hanoi(n - 1, c, b, a, moves);
}
int main(int argc, char **argv) {
  int n = argc > 1 ? atoi(argv[1]) : 3;
  unsigned seed = 3;
  long r = 0;
  auto tree = grow(7, seed);
  for (int i = 0; i < n; i++) {
    Board b;
    r += search(b, 1, -1000, 1000, 9);
    r += minimax(*tree, true) + minimax(*tree, false);
    r += nim(3, 4, 3, 1);
    r += fib(24) + ack(2, 100 + i);
    hanoi(15, 0, 1, 2, r);
  }
  printf("%ld %ld\n", r, positions);
}
