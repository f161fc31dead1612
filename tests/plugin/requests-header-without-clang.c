// On another compiler the request is nothing at all, in C and in C++, and including the header twice changes nothing.
// RUN: gcc -Werror -I %S/../../include -E -P %s | FileCheck %s
// RUN: gcc -Werror -x c++ -I %S/../../include -E -P %s | FileCheck %s
// RUN: gcc -Wall -Wextra -Werror -pedantic -std=c89 -I %S/../../include -c -o /dev/null -x c %S/Inputs/requests-c89.inc
// RUN: %clang -I %S/../../include -E -P %s | FileCheck %s --check-prefix=CLANG
#include <inlinerecursion/request.h>
#include <inlinerecursion/request.h>

// CHECK-NOT: attribute
// CHECK: {{^}}begin int f(unsigned N);
// CLANG: begin __attribute__((annotate("specialize-inline-recursion-function"))) int f(unsigned N);
begin INLINERECURSION_SPECIALIZE int f(unsigned N);
