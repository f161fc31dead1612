// class: bounded
// sweep: VERTICES 6 5 7
//
// Counts the proper colourings of a graph of VERTICES vertices with five
// colours, the vertex as the only argument. The inner test loops over the
// earlier vertices. Here because the trip count of that second loop is the
// argument, so each copy gets its own unrolled test.
//
// Reference: all assignments, tested edge by edge.

#include "kernel.h"

#ifndef VERTICES
#define VERTICES 6
#endif

enum { Cases = 4, Colours = 5, Vertices = VERTICES };

static unsigned char Edges[Vertices][Vertices];
static int Colour[Vertices];
static uint64_t Count;

static void paint(int Vertex) {
  KERNEL_CALL();
  if (Vertex == Vertices) {
    ++Count;
    return;
  }
  for (int C = 0; C < Colours; ++C) {
    int Clash = 0;
    for (int Other = 0; Other < Vertex; ++Other)
      Clash |= Edges[Vertex][Other] & (Colour[Other] == C);
    if (Clash)
      continue;
    Colour[Vertex] = C;
    paint(Vertex + 1);
  }
}

/// A cycle; the bits of Case add two chords.
static void buildGraph(long Case) {
  for (int A = 0; A < Vertices; ++A)
    for (int B = 0; B < Vertices; ++B)
      Edges[A][B] = (A + 1) % Vertices == B || (B + 1) % Vertices == A;
  Edges[0][3] = Edges[3][0] = Case & 1;
  Edges[1][4] = Edges[4][1] = (Case >> 1) & 1;
}

int main(int Argc, char **Argv) {
  long Repeats = kernelRepeats(Argc, Argv, 16000);
  for (long R = 0; R < Repeats; ++R) {
    buildGraph(R % Cases);
    kernelClobber(Edges);
    paint(0);
  }

  uint64_t Expected = 0;
  for (long Case = 0; Case < Cases; ++Case) {
    buildGraph(Case);
    uint64_t Proper = 0;
    int Assignments = 1;
    for (int V = 0; V < Vertices; ++V)
      Assignments *= Colours;
    for (int Assignment = 0; Assignment < Assignments; ++Assignment) {
      int Given[Vertices], Rest = Assignment, Clash = 0;
      for (int V = 0; V < Vertices; ++V, Rest /= Colours)
        Given[V] = Rest % Colours;
      for (int A = 0; A < Vertices; ++A)
        for (int B = 0; B < A; ++B)
          Clash |= Edges[A][B] && Given[A] == Given[B];
      Proper += !Clash;
    }
    Expected += kernelShare(Repeats, Cases, Case) * Proper;
  }
  return kernelReport("colouring", Repeats, Count, Expected);
}
