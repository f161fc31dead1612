// An entry for another body of the function, or for one that is not there, is a warning, and nothing is done about it; with -g and without, a body is the same.
// RUN: split-file %s %t
// RUN: cd %t && %clang_with_pass -O3 -mllvm -inlinerecursion-write-plan=written.plan -c -o /dev/null a.c
// RUN: cd %t && %clang_with_pass -O3 -g -mllvm -inlinerecursion-plan=written.plan -c -o /dev/null a.c 2>&1 | count 0
// RUN: cd %t && %clang_with_pass -O3 -DCHANGED -mllvm -inlinerecursion-plan=written.plan -Rpass=inlinerecursion -c -o /dev/null a.c 2>&1 | FileCheck a.c --implicit-check-not=warning:
// RUN: cd %t && cp b.c other.c && %clang_with_pass -O3 -mllvm -inlinerecursion-plan=written.plan -c -o /dev/null other.c 2>&1 | count 0

//--- a.c
// CHECK: warning: InlineRecursion: written.plan:5: the plan for 'fib' does not count: it was made for another body of the function; write the plan anew, or remove its 'body:' [-Wbackend-plugin]
// CHECK: warning: InlineRecursion: written.plan:9: the plan for 'gone' does not count: there is no such function in 'a.c'; remove it, or write the plan anew
// CHECK: remark: 'fib' rebuilt as a ring of {{[2-9]}} copies
#ifdef CHANGED
int fib(int N) { return N < 3 ? N : fib(N - 1) + fib(N - 2); }
#else
int fib(int N) { return N < 2 ? N : fib(N - 1) + fib(N - 2); }
int gone(int N) { return N < 2 ? N : gone(N - 1) ^ gone(N - 2); }
#endif

//--- b.c
// Another file, whose functions are its own.
static int fib(int N) { return N < 2 ? N : fib(N - 1) + fib(N - 2); }
int enter(int N) { return fib(N); }
