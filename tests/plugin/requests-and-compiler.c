// clang builds the ring that the source asks for; without a request only if it is to look for them.
// RUN: %clang_with_pass -I %S/../../include -O2 -Rpass=inlinerecursion -c -o /dev/null %s 2>&1 | FileCheck %s --check-prefixes=ASKED,FOUND
// RUN: %clang_with_pass -I %S/../../include -O2 -Rpass=inlinerecursion -mllvm -inlinerecursion-find-requests=false -mllvm -inlinerecursion-auto=false -c -o /dev/null %s 2>&1 | FileCheck %s --check-prefix=ASKED --implicit-check-not="'found'"
#include <inlinerecursion/request.h>

void use(unsigned);

// ASKED: requests-and-compiler.c:[[#@LINE+2]]:1: remark: 'asked' rebuilt as a ring of 4 copies, as requested
INLINERECURSION_SPECIALIZE
int asked(unsigned N) {
  use(N % 4);
  return N ? asked(N - 1) * 3 + 1 : 0;
}

// FOUND: requests-and-compiler.c:[[#@LINE+1]]:1: remark: 'found' rebuilt as a ring of 8 copies, without being asked
int found(unsigned N) {
  use(N % 8);
  return N ? found(N - 1) * 3 + 1 : 0;
}
