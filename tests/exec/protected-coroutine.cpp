// A generator that delegates to itself.
// RUN: %compare --std c++20 --chained _ZL3ownj=1234 %s
#include <coroutine>
#include <cstdio>

struct Generator {
  struct promise_type {
    int Value = 0;
    Generator get_return_object() {
      return {std::coroutine_handle<promise_type>::from_promise(*this)};
    }
    std::suspend_always initial_suspend() { return {}; }
    std::suspend_always final_suspend() noexcept { return {}; }
    std::suspend_always yield_value(int V) {
      Value = V;
      return {};
    }
    void return_void() {}
    void unhandled_exception() {}
  };

  std::coroutine_handle<promise_type> Handle;
  Generator(std::coroutine_handle<promise_type> Handle) : Handle(Handle) {}
  Generator(const Generator &) = delete;
  ~Generator() { Handle.destroy(); }
  bool next() {
    Handle.resume();
    return !Handle.done();
  }
};

static Generator countDown(int N) {
  if (N == 0)
    co_return;
  co_yield N;
  Generator Below = countDown(N - 1);
  while (Below.next())
    co_yield Below.Handle.promise().Value;
}

static unsigned own(unsigned N) { return N ? N + own(N - 1) : 0; }

int main(int Argc, char **) {
  Generator G = countDown(5 * Argc);
  while (G.next())
    std::printf("%d ", G.Handle.promise().Value);
  std::printf("%u\n", own(5));
}
