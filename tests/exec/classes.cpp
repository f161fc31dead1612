// Templates, member functions and virtual functions that call themselves.
// RUN: %compare --chained _Z5gcdOfIlET_S0_S0_=234 --chained _Z5gcdOfIjET_S0_S0_=234 %s
#include <cstdio>

template <typename T> T gcdOf(T A, T B) {
  std::printf("gcd ");
  return B == 0 ? A : gcdOf<T>(B, A % B);
}

struct Shape {
  virtual int area(int N) const = 0;
  virtual ~Shape() = default;
};

struct Stairs : Shape {
  int area(int N) const override { return N ? N + area(N - 1) : 0; }
};

struct List {
  int Value;
  const List *Next;
  __attribute__((noinline)) int sum() const {
    return Next ? Value - Next->sum() : Value;
  }
};

int main(int Argc, char **) {
  Stairs S;
  const Shape &Base = S;
  List A{1, nullptr}, B{2, &A}, C{4, &B}, D{8, &C};
  std::printf("%ld\n", gcdOf<long>(1071 * Argc, 462));
  std::printf("%u\n", gcdOf<unsigned>(317811u * Argc, 196418u));
  std::printf("%d %d\n", Base.area(12), D.sum() + B.sum());
}
