// class: unbounded
// sweep: argument 1000 500 1001 1002 2000 4000
//
// Depth-first search on a directed graph in adjacency arrays; the order in
// which vertices finish makes the checksum. Here for a call that most
// iterations of the loop around it skip.
//
// Reference: the same order with an explicit stack of edge positions.

#include "kernel.h"

enum { Most = 4000, Degree = 5, Cases = 8 };

static int Vertices;
static int Targets[Most * Degree], FirstEdge[Most + 1];
static uint32_t Mark[Most], Epoch;
static uint32_t Checksum;

static void search(int Vertex) {
  KERNEL_CALL();
  Mark[Vertex] = Epoch;
  for (int E = FirstEdge[Vertex]; E < FirstEdge[Vertex + 1]; ++E)
    if (Mark[Targets[E]] != Epoch)
      search(Targets[E]);
  Checksum = Checksum * 33 + (uint32_t)Vertex;
}

static uint32_t referenceChecksum(int Start) {
  static unsigned char Seen[Most];
  static int Stack[Most], Next[Most];
  for (int I = 0; I < Vertices; ++I) {
    Seen[I] = 0;
    Next[I] = FirstEdge[I];
  }
  uint32_t Value = 0;
  int Height = 1;
  Stack[0] = Start;
  Seen[Start] = 1;
  while (Height > 0) {
    int Vertex = Stack[Height - 1];
    if (Next[Vertex] == FirstEdge[Vertex + 1]) {
      Value = Value * 33 + (uint32_t)Vertex;
      --Height;
      continue;
    }
    int Target = Targets[Next[Vertex]++];
    if (Seen[Target])
      continue;
    Seen[Target] = 1;
    Stack[Height++] = Target;
  }
  return Value;
}

int main(int Argc, char **Argv) {
  long Repeats = kernelRepeats(Argc, Argv, 90000);
  Vertices = (int)kernelArgument(Argc, Argv, 2, 1000, 10, Most);
  uint32_t Random = 7;
  int Edges = 0;
  for (int V = 0; V < Vertices; ++V) {
    FirstEdge[V] = Edges;
    for (uint32_t I = kernelRandom(&Random) % Degree + 1; I > 0; --I)
      Targets[Edges++] = (int)(kernelRandom(&Random) % (uint32_t)Vertices);
  }
  FirstEdge[Vertices] = Edges;

  uint64_t Sum = 0;
  for (long R = 0; R < Repeats; ++R) {
    ++Epoch;
    Checksum = 0;
    search((int)(R % Cases) * (Vertices / 10));
    Sum += Checksum;
  }

  uint64_t Expected = 0;
  for (long Case = 0; Case < Cases; ++Case)
    Expected += kernelShare(Repeats, Cases, Case) *
                referenceChecksum((int)Case * (Vertices / 10));
  return kernelReport("dfs", Repeats, Sum, Expected);
}
