#include <cstddef>
volatile int Sink;
namespace ns {
template <class T> struct Box {
  int walk(int N) const;
  template <class U> int deep(U u, int N) const {
    if (N < 2)
      return 1;
    Sink = N;
    return deep<U>(u, N - 1) + deep<U>(u, N - 2);
  }
  int operator()(int N) const {
    if (N < 2)
      return 1;
    Sink = N;
    return (*this)(N - 1) + (*this)(N - 2);
  }
  bool operator<(int N) const {
    if (N < 2)
      return 1;
    Sink = N;
    return (*this < N - 1) + (*this < N - 2);
  }
  int operator[](int N) const & {
    if (N < 2)
      return 1;
    Sink = N;
    return (*this)[N - 1] + (*this)[N - 2];
  }
  operator T *() const {
    static int N;
    if (N-- > 0) {
      return *this;
    }
    return nullptr;
  }
};
template <class T> int Box<T>::walk(int N) const {
  if (N < 2)
    return 1;
  Sink = N;
  return walk(N - 1) + walk(N - 2);
}
namespace {
int hidden(int N, int (*f)(int)) {
  if (N < 2)
    return 1;
  Sink = N;
  return hidden(N - 1, f) + hidden(N - 2, f);
}
} // namespace
template <class T> T *fun(T *p, int N) {
  if (N < 2)
    return p;
  Sink = N;
  fun(p, N - 2);
  return fun(p, N - 1) + 1;
}
[[gnu::abi_tag("v2")]] int tagged(int N) {
  if (N < 2)
    return 1;
  Sink = N;
  return tagged(N - 1) + tagged(N - 2);
}
template <int Number> std::size_t num(int N) {
  if (N < 2)
    return Number;
  Sink = N;
  return num<Number>(N - 1) + num<Number>(N - 2);
}
} // namespace ns
struct S {
  S(int N) {
    if (N < 2)
      return;
    Sink = N;
    S a(N - 1), b(N - 2);
  }
  ~S() {}
};
int plain(int N) {
  if (N < 2)
    return 1;
  Sink = N;
  return plain(N - 1) + plain(N - 2);
}
auto lam() {
  struct L {
    static int go(int N) {
      if (N < 2)
        return 1;
      Sink = N;
      return go(N - 1) + go(N - 2);
    }
  };
  return L::go(Sink);
}
template struct ns::Box<char>;
int use(ns::Box<char> &b) {
  int x = 5;
  S s(Sink);
  return b.deep<short>(1, Sink) + *ns::fun<int>(&x, Sink) +
         ns::hidden(Sink, nullptr) + ns::num<3>(Sink) + lam();
}
int both(int N) {
  if (N < 2)
    return 1;
  Sink = N;
  return both(N - 1) + both(N - 2);
}
int both(long N) {
  if (N < 2)
    return 1;
  Sink = N;
  return both(N - 1) + both(N - 2);
}
