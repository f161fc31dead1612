/*===- request.h - Ask for a ring of copies ------------------------- C -*-===*\
|*
|* For recursive functions whose first statement takes a remainder of an
|* argument by a small constant (the row and column of a cell index, a state
|* that cycles, ...): the compiler plugin InlineRecursion gives each remainder
|* a copy of the function of its own, and where the recursion starts with a
|* constant, each argument.
|*
|*   INLINERECURSION_SPECIALIZE
|*   static int solve(unsigned Cell) {
|*     unsigned Column = Cell % 9;
|*     ...
|*
|* Without the plugin, and on compilers other than clang, it means nothing.
|*
\*===----------------------------------------------------------------------===*/

#ifndef INLINERECURSION_REQUEST_H
#define INLINERECURSION_REQUEST_H

#if defined(__clang__)
#define INLINERECURSION_SPECIALIZE                                             \
  __attribute__((annotate("specialize-inline-recursion-function")))
#else
#define INLINERECURSION_SPECIALIZE
#endif

#endif /* INLINERECURSION_REQUEST_H */
