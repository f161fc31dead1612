//===- ring.h - what the ring kernels share ---------------------*- C++ -*-===//
//
// A ring kernel's recursive function starts with a remainder of its argument by
// a constant and lets that remainder decide what the activation does. As many
// copies are linked to a ring as the compiler's bound of the remainder says.
//
// INLINERECURSION_SPECIALIZE requests that by an annotation. It comes from the
// plugin's own header where the include path has it, and is empty elsewhere: a
// compiler without the plugin then sees the plain program.
//
// RING_OPAQUE_START makes the start of the recursion a second program argument,
// unknown to the compiler; without it the start is a constant, START if that is
// defined.
//
//===----------------------------------------------------------------------===//

#ifndef BENCH_RING_H
#define BENCH_RING_H

#include "kernel.h"

#ifdef __has_include
#if __has_include("inlinerecursion/request.h")
#include "inlinerecursion/request.h"
#endif
#endif
#ifndef INLINERECURSION_SPECIALIZE
#define INLINERECURSION_SPECIALIZE
#endif

#ifdef RING_OPAQUE_START
#define RING_START(Argc, Argv, Default, Last)                                  \
  ((unsigned)kernelArgument(Argc, Argv, 2, Default, 0, Last))
#define RING_NAME(Name) Name "-opaque"
#else
#ifdef START
#define RING_START(Argc, Argv, Default, Last)                                  \
  ((void)(Argc), (void)(Argv), (unsigned)(START))
#else
#define RING_START(Argc, Argv, Default, Last)                                  \
  ((void)(Argc), (void)(Argv), (unsigned)(Default))
#endif
#define RING_NAME(Name) Name "-const"
#endif

#endif // BENCH_RING_H
