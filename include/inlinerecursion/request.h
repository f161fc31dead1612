/*===- request.h - Ask for copies, or for none ---------------------- C -*-===*\
|*
|* For recursive functions whose first statement takes a remainder of an
|* argument by a constant from 2 to 64 (the row and column of a cell index, a
|* state that cycles, ...) and that step it by constants: the compiler plugin
|* InlineRecursion gives each remainder a copy of the function of its own, and
|* where the recursion starts with a constant, each argument.
|*
|*   INLINERECURSION_SPECIALIZE
|*   static int solve(unsigned Cell) {
|*     unsigned Column = Cell % 9;
|*     ...
|*
|* A function that is to stay as it is, whatever the plugin would make of it:
|*
|*   INLINERECURSION_NONE
|*   static int walk(struct Node *N) {
|*     ...
|*
|* A function of which the plugin is to make so many copies, 2 to 1000, whether
|* or not it would find that they pay.  The number is a constant expression; in
|* a template it may depend on the parameters:
|*
|*   INLINERECURSION_COPIES(4)
|*   static int height(struct Node *N) {
|*     ...
|*
|* A function for which the plugin is to follow a plan, in the words in which it
|* writes plans itself: a shape (none, chain, ring, leaves, split, states), and
|* what is known of its numbers.  The plugin decides what is left open, and warns
|* if what is asked for cannot be built:
|*
|*   INLINERECURSION_PLAN("ring copies=3 no-guard")
|*   static int height(struct Node *N) {
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
#define INLINERECURSION_NONE __attribute__((annotate("inlinerecursion-none")))
#else
#define INLINERECURSION_SPECIALIZE
#define INLINERECURSION_NONE
#endif

/* Annotations of older ones have no values. */
#if defined(__clang__) && __clang_major__ >= 14
#define INLINERECURSION_COPIES(Count)                                          \
  __attribute__((annotate("inlinerecursion-copies", Count)))
#define INLINERECURSION_PLAN(Words)                                            \
  __attribute__((annotate("inlinerecursion-plan", Words)))
#else
#define INLINERECURSION_COPIES(Count)
#define INLINERECURSION_PLAN(Words)
#endif

#endif /* INLINERECURSION_REQUEST_H */
