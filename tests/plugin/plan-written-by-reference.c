// Where a function hands values on to one beside it, and both call themselves, one entry is written, for the one that hands no references on: it is the one that an entry is meant for.
// RUN: rm -rf %t && mkdir %t && cd %t
// RUN: %clang_with_pass -O3 -Rpass=inlinerecursion -mllvm -inlinerecursion-write-plan=one.plan -c -o a.o %s 2>&1 | FileCheck %s --check-prefix=REMARKS
// RUN: FileCheck %s < one.plan
// The second time, the file is read first.
// RUN: %clang_with_pass -O3 -mllvm -inlinerecursion-write-plan=one.plan -c -o a.o %s
// RUN: %clang_with_pass -O3 -mllvm -inlinerecursion-plan=one.plan -c -o b.o %s && cmp a.o b.o

// REMARKS-DAG: remark: 'walk' rebuilt as a ring of 5 copies
// REMARKS-DAG: remark: 'walk.recurse.value' rebuilt as a ring of 3 copies

// CHECK: functions:
// CHECK-NEXT:   - name:            walk
// CHECK-NEXT:     plan:            'ring copies=3 {{.*}}'
// CHECK-NEXT:     body:
// CHECK-NEXT:     reason:
// CHECK-NEXT: ...

int walk(int N, int *Limit) {
  if (N <= 0)
    return *Limit;
  int Next = *Limit - 1;
  return walk(N - 1, Limit) * 3 + walk(N - 2, &Next);
}
