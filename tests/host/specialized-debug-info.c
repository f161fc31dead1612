// Every specialisation has a subprogram of its own, and the variables that were arguments keep their constants in it.
// RUN: %clang_with_pass -I %S/../../include -O2 -g -S -emit-llvm -o - %s | %opt -passes=verify -disable-output -
// RUN: %clang_with_pass -I %S/../../include -O2 -g -c -o /dev/null %s
// RUN: %clang_with_pass -I %S/../../include -O2 -g -mllvm -print-after=inlinerecursion -c -o /dev/null %s 2>&1 | FileCheck %s
#include <inlinerecursion/request.h>

int use(int);

INLINERECURSION_SPECIALIZE
static int walk(unsigned Cell) {
  unsigned Column = Cell % 4;
  use(Column);
  return Cell == 0 ? 0 : walk(Cell - 1) + use(Cell);
}

int start(void) { return walk(1) + walk(0); }

// CHECK: define internal i32 @walk.specialized.1({{.*}} !dbg [[ONE:![0-9]+]] {
// CHECK: call void @llvm.dbg.value(metadata i32 1, metadata [[CELL:![0-9]+]],
// CHECK: define internal i32 @walk.specialized.0({{.*}} !dbg [[NONE:![0-9]+]] {
// CHECK-DAG: [[ONE]] = distinct !DISubprogram(name: "walk"
// CHECK-DAG: [[NONE]] = distinct !DISubprogram(name: "walk"
// CHECK-DAG: [[CELL]] = !DILocalVariable(name: "Cell", arg: 1, scope: [[ONE]]
