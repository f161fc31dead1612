//===- kernel.h - what every benchmark kernel shares ------------*- C++ -*-===//
//
// A kernel is one C or C++ program around one directly recursive function. It
// takes an optional count of repeats, runs the recursion that often, prints one
// result line and compares the result with one computed another way, without
// recursion or from a closed form. Exit status: 0 right, 1 wrong, 2 bad
// arguments.
//
// Repeats must not be mergeable: a compiler that proves the recursion free of
// side effects may hoist it out of the repeat loop, and then nothing is
// measured. So every kernel runs a small number of different cases in turn
// (case = repeat % cases, read by the recursion from globals) and the expected
// total is the sum of the reference results, each times the repeats that ran
// that case. In addition every repeat passes its state through kernelClobber,
// or parts of an inlined recursion (sums of values that no repeat changes) move
// out of the loop even though the calls do not.
//
// Two lines of a kernel's header comment are read by ./bench:
//
//   // class: unbounded
//   // sweep: argument 30 31 32     the input is the second program argument
//   // sweep: DEPTH 6 4 5 7         the input is a constant: -DDEPTH=6 ...
//
// The first input is the one of a short measurement. Where it is a constant,
// that is the point of the kernel. An input with commas stands for several
// arguments.
//
// KERNEL_CALL stands in the recursive function. With -DKERNEL_COUNT the program
// counts the activations there, prints their number, and by default does a
// twentieth of its repeats: so it is known, independently of any compiler, how
// many repeats make the same work for another input, and what one call costs.
//
//===----------------------------------------------------------------------===//

#ifndef BENCH_KERNEL_H
#define BENCH_KERNEL_H

#include <inttypes.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>

#ifdef KERNEL_COUNT
static uint64_t kernelCalls;
#define KERNEL_CALL() ((void)++kernelCalls)
enum { KernelShare = 20 };
#else
#define KERNEL_CALL() ((void)0)
enum { KernelShare = 1 };
#endif

/// Returns argument number Index as an integer in [Low, High], or Default when
/// it is absent.
static inline long kernelArgument(int Argc, char **Argv, int Index,
                                  long Default, long Low, long High) {
  if (Argc <= Index)
    return Default;
  char *End;
  long Value = strtol(Argv[Index], &End, 10);
  if (End == Argv[Index] || *End || Value < Low || Value > High) {
    fprintf(stderr,
            "%s: argument %d is '%s', but must be an integer from %ld to %ld\n",
            Argv[0], Index, Argv[Index], Low, High);
    exit(2);
  }
  return Value;
}

/// Returns the repeat count: the first argument, or Default.
static inline long kernelRepeats(int Argc, char **Argv, long Default) {
  return kernelArgument(Argc, Argv, 1, Default / KernelShare, 1, 2000000000);
}

/// Returns how many of Repeats repeats ran case Case of Cases.
static inline uint64_t kernelShare(long Repeats, long Cases, long Case) {
  return (uint64_t)(Repeats / Cases + (Case < Repeats % Cases));
}

/// Lets the compiler assume that State and all other escaped memory changed, at
/// the cost of no instruction.
static inline void kernelClobber(void *State) {
  __asm__ volatile("" : : "r"(State) : "memory");
}

/// Prints the result line and returns the exit status.
static inline int kernelReport(const char *Name, long Repeats, uint64_t Got,
                               uint64_t Expected) {
  printf("%s repeats %ld result %" PRIu64 "\n", Name, Repeats, Got);
#ifdef KERNEL_COUNT
  printf("calls %" PRIu64 "\n", kernelCalls);
#endif
  if (Got == Expected)
    return 0;
  fprintf(stderr, "%s: wrong result %" PRIu64 ", expected %" PRIu64 "\n", Name,
          Got, Expected);
  return 1;
}

/// Steps a 32-bit linear congruential generator and returns its upper bits.
static inline uint32_t kernelRandom(uint32_t *State) {
  *State = *State * 1664525u + 1013904223u;
  return *State >> 8;
}

#endif // BENCH_KERNEL_H
