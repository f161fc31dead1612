// Templates, members and lambdas that call themselves make rings, each its own.
// RUN: %python %S/../tools/compare_auto.py --clang %clangxx --plugin %plugin --scratch %t.dir --ring _ZN4TreeIiE4walkERKSt8functionIFviEE --ring _Z4foldIiET_PK4TreeIS0_ES0_ --ring '_ZZ4mainENK3$_1clIS_EElT_ii' %s
#include <cstdio>
#include <functional>

template <typename T> struct Tree {
  Tree *Left, *Right;
  T Value;
  void walk(const std::function<void(T)> &Visit) {
    if (Value == T())
      return;
    Left->walk(Visit);
    Visit(Value);
    Right->walk(Visit);
    Visit(Value + 1);
  }
};

template <typename T> T fold(const Tree<T> *Root, T Start) {
  if (Root->Value == T())
    return Start;
  T Left = fold(Root->Left, Start * 3 + Root->Value);
  return fold(Root->Right, Left) - Left;
}

static Tree<int> None = {&None, &None, 0}, A = {&None, &None, 7},
                 B = {&A, &None, 3}, C = {&B, &A, 5}, D = {&B, &C, 9};

int main() {
  int Sum = 0;
  D.walk([&](int Value) { Sum = Sum * 7 + Value; });
  std::printf("%d\n", Sum);
  std::printf("%d\n", fold(&D, 2));
  auto Paths = [](auto Self, int X, int Y) -> long {
    if (X == 0 || Y == 0)
      return 1;
    long Down = Self(Self, X - 1, Y);
    return Self(Self, X, Y - 1) * 3 ^ Down;
  };
  std::printf("%ld\n", Paths(Paths, 9, 8));
}
