// class: bounded
//
// Counts the proper colourings of a graph of six vertices with five colours,
// the vertex as the only argument. The inner test loops over the earlier
// vertices. Here because the trip count of that second loop is the argument, so
// each copy gets its own unrolled test.
//
// Reference: all 5^6 assignments, tested edge by edge.

#include "kernel.h"

enum { Cases = 4, Colours = 5 };

static unsigned char Edges[6][6];
static int Colour[6];
static uint64_t Count;

static void paint(int Vertex) {
  if (Vertex == 6) {
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

/// A six-cycle; the bits of Case add two chords.
static void buildGraph(long Case) {
  for (int A = 0; A < 6; ++A)
    for (int B = 0; B < 6; ++B)
      Edges[A][B] = (A + 1) % 6 == B || (B + 1) % 6 == A;
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
    for (int Assignment = 0; Assignment < 15625; ++Assignment) {
      int Given[6], Rest = Assignment, Clash = 0;
      for (int V = 0; V < 6; ++V, Rest /= Colours)
        Given[V] = Rest % Colours;
      for (int A = 0; A < 6; ++A)
        for (int B = 0; B < A; ++B)
          Clash |= Edges[A][B] && Given[A] == Given[B];
      Proper += !Clash;
    }
    Expected += kernelShare(Repeats, Cases, Case) * Proper;
  }
  return kernelReport("colouring", Repeats, Count, Expected);
}
