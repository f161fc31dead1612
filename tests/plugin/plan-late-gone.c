// A function that is left to a plan behind the inliner, where it is not there any more, was left alone: so it is written.
// RUN: split-file %s %t && cd %t
// RUN: %clang_with_pass -O3 -mllvm -inlinerecursion-plan=late.plan -mllvm -inlinerecursion-write-plan=written.plan -c -o a.o power.c
// RUN: FileCheck power.c < written.plan

//--- late.plan
version: 1
functions:
  - {name: power, plan: ring copies=3, where: late}
//--- power.c
// CHECK: - name: {{.*}}power
// CHECK-NEXT: plan: {{.*}}none
// CHECK-NEXT: body:
static int power(int N) { return N == 0 ? 1 : 3 * power(N - 1) ^ N; }
static int pick(int Wanted) { return Wanted ? power(4) : 1; }
int enter(void) { return pick(0); }
