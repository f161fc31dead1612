// What is decided is written in the language of plans, with the reason and a hash of the body; several compilations write to one file, each its own entries; a second compilation of a file replaces them.
// RUN: split-file %s %t
// RUN: cd %t && %clang_with_pass -O3 -mllvm -inlinerecursion-write-plan=all.plan -c -o b.o b.c
// RUN: cd %t && %clang_with_pass -O3 -mllvm -inlinerecursion-write-plan=all.plan -c -o a.o a.c
// RUN: FileCheck %s --check-prefix=ALL < %t/all.plan
// RUN: cd %t && cp all.plan before.plan && %clang_with_pass -O3 -mllvm -inlinerecursion-write-plan=all.plan -c -o b2.o b.c && cmp all.plan before.plan
// RUN: cd %t && %clang_with_pass -O3 -c -o plain.o b.c && cmp plain.o b.o && cmp plain.o b2.o
// Beside the record that the compiler writes beside the object.
// RUN: cd %t && mkdir beside && %clang_with_pass -O3 -mllvm -inlinerecursion-write-plan -fsave-optimization-record -c -o beside/b.o b.c
// RUN: FileCheck %s --check-prefix=BESIDE < %t/beside/b.plan.yaml

// ALL: ---
// ALL-NEXT: version:         1
// ALL-NEXT: module:          a.c
// ALL-NEXT: functions:
// ALL-NEXT:   - name:            gcd
// ALL-NEXT:     plan:            none
// ALL-NEXT:     body:            {{[0-9a-f]+}}
// ALL-NEXT:     reason:          its recursion becomes a loop
// ALL-NEXT:   - name:            power
// ALL-NEXT:     plan:            'chain copies=5 rules'
// ALL-NEXT:     body:
// ALL-NEXT:     reason:          chain of 5 copies at level 0,
// ALL-NEXT: ---
// ALL-NEXT: version:         1
// ALL-NEXT: module:          b.c
// ALL-NEXT: functions:
// ALL-NEXT:   - name:            fib
// ALL-NEXT:     plan:            'ring copies=4 no-guard no-staggered no-pass-sum no-loop-first'
// ALL-NEXT:     body:
// ALL-NEXT:     reason:          ring of 4 copies by the automatic policy, so that equal calls merge
// ALL-NEXT: ...
// BESIDE: module:          b.c

//--- a.c
int gcd(int A, int B) { return B ? gcd(B, A % B) : A; }
static int power(int N) { return N == 0 ? 1 : 3 * power(N - 1) ^ N; }
int enter(void) { return power(4); }

//--- b.c
int fib(int N) { return N < 2 ? N : fib(N - 1) + fib(N - 2); }
