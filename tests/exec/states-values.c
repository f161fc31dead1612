// Copies for states do what the function does: counters that wrap, cycles, tables,
// toggles and callbacks, beside calls with something unknown.
// RUN: %python %S/../tools/compare_auto.py --clang %clang --plugin %plugin --scratch %t.dir --states wraps --states axis --states machine --states toggle --states apply --ring apply.specialized._.square --ring apply.specialized._.twice %s
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

static volatile unsigned Sink;

// Wraps from 255 to 0, entered on both sides.
unsigned wraps(unsigned char Byte, unsigned *Left) {
  if (Byte == 9)
    return *Left;
  if (Byte > 250)
    Sink = Sink * 3 + Byte;
  else if (Byte & 1)
    Sink = Sink ^ (Byte * 77u);
  else
    Sink = Sink + (Byte << 3);
  *Left = *Left * 5 + Byte;
  unsigned A = wraps(Byte + 1, Left);
  if (*Left & 1)
    A ^= wraps(Byte + 1, Left);
  return A * 3 + Byte;
}

typedef struct Node {
  struct Node *Child[2];
  double At[3];
} Node;

static Node *make(unsigned Depth, unsigned Seed) {
  if (Depth == 0)
    return 0;
  Node *N = malloc(sizeof(Node));
  for (int I = 0; I != 3; ++I)
    N->At[I] = (Seed * 7 + I * 13) % 29;
  N->Child[0] = Seed % 5 == 2 ? 0 : make(Depth - 1, Seed * 3 + 1);
  N->Child[1] = make(Depth - 1, Seed * 5 + 2);
  return N;
}

// The axis of a tree of points.
int axis(const Node *N, const double *Point, int Axis) {
  if (!N)
    return 0;
  int Count = Axis == 0   ? N->At[0] > 3
              : Axis == 1 ? N->At[1] < 20
                          : N->At[2] == Point[2];
  Sink += Axis;
  int Next = (Axis + 1) % 3;
  if (Point[Axis] <= N->At[Axis] + 4)
    Count += axis(N->Child[0], Point, Next) * 3;
  if (Point[Axis] >= N->At[Axis] - 4)
    Count += axis(N->Child[1], Point, Next) * 5;
  return Count + Axis;
}

// A machine that reads a text in nested brackets.
static const unsigned char Next[5] = {3, 4, 0, 2, 1};
static const char Weights[5] = {1, -4, 9, 33, 2};
int machine(const char **Text, unsigned State) {
  int Sum = 0;
  for (; **Text; ++*Text) {
    if (**Text == '(') {
      ++*Text;
      Sum = Sum * 7 + machine(Text, Next[State]);
      if (!**Text)
        break;
    } else if (**Text == ')') {
      break;
    } else if (State == 3) {
      Sum ^= **Text;
    } else if (State == 1) {
      Sum -= **Text * 2;
    }
    Sum += Weights[State];
  }
  return Sum;
}

// Who is to move.
int toggle(unsigned *Heap, int Player, int Depth) {
  if (Depth == 0 || *Heap == 0)
    return Player ? (int)*Heap : -(int)*Heap;
  int Best = Player ? -100000 : 100000;
  for (unsigned Take = 1; Take <= 3 && Take <= *Heap; ++Take) {
    *Heap -= Take;
    int Value = toggle(Heap, !Player, Depth - 1) + (int)Take;
    *Heap += Take;
    if (Player ? Value > Best : Value < Best)
      Best = Value;
  }
  Sink += Player ? 3 : 5;
  return Best;
}

static int twice(int X) { return X * 2 + 1; }
static int square(int X) { return X * X % 1009; }
int apply(const Node *N, int (*Do)(int)) {
  if (!N)
    return 1;
  int A = apply(N->Child[0], Do);
  A += Do((int)N->At[0]);
  int B = apply(N->Child[1], Do);
  return Do(A ^ B) + Do(A - B);
}

int main(int Count, char **Arguments) {
  unsigned Left = 3;
  printf("%u", wraps(250, &Left));
  printf(" %u", wraps(3, &Left));
  printf(" %u %u\n", wraps((unsigned char)(Count + 4), &Left), Left);
  Node *Tree = make(9, Count);
  double Point[3] = {11, 9, 20};
  printf("%d %d %d\n", axis(Tree, Point, 0), axis(Tree, Point, 2),
         axis(Tree, Point, Count));
  const char *Text = "ab(cd(e)f(g(h)(ij(k)l)))m(n)(o(p(q(r(s)))))";
  const char *Place = Text;
  int A = machine(&Place, 0);
  Place = Text + 3;
  int B = machine(&Place, 1);
  Place = Text;
  printf("%d %d %d\n", A, B, machine(&Place, Count));
  unsigned Heap = 17;
  printf("%d %d %d\n", toggle(&Heap, 1, 9), toggle(&Heap, 0, 8),
         toggle(&Heap, Count, 8));
  printf("%d %d %d %u\n", apply(Tree, twice), apply(Tree, square),
         apply(Tree, Count > 2 ? twice : square), Sink);
}
