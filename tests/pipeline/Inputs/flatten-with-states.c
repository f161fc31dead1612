int Seen[64];

__attribute__((flatten)) static int walk(int Row, int X) {
  if (Row == 20) {
    Seen[X & 63]++;
    return X;
  }
  int R = 0;
  if (Row % 3 == 0)
    X ^= Seen[Row];
  switch (X & 3) {
  case 0:
    return walk(Row + 1, X * 3);
  case 1:
    R = walk(Row + 1, X * 5 + 1);
    Seen[2] += R;
    return R + walk(Row + 1, X + R);
  default:
    return walk(Row + 1, X * 7 + 3) ^ Row;
  }
}

int enter(int X) { return walk(0, X); }
