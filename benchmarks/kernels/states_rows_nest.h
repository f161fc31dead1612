// The nine loops of the states_rows* kernels in C and C++: the body of a
// function of Row, which calls itself by FILL_ROW(Row + 1). Every square tries
// the digits that nothing blocks and that the row does not have yet.

// Lets a digit in a column block squares in the rows below, or takes that back.
#define BLOCK(Column, Digit, By)                                               \
  for (int R = Row + 1; R <= Side; ++R)                                        \
    Blocked[Column][Digit][R] += By;                                           \
  for (int R = Row + 1; R <= BoxEnd; ++R)                                      \
    for (int X = Column / Box * Box; X < Column / Box * Box + Box; ++X)        \
      Blocked[X][Digit][R] += By

// A digit for the square in a column, unless the square or the row refuses it.
#define FOR_DIGIT(Column, Digit, Used)                                         \
  for (int Digit = 0; Digit < Side; ++Digit)                                   \
    if ((Blocked[Column][Digit][Row] | (Used >> Digit & 1)) == 0)

int BoxEnd = (Row - 1) / Box * Box + Box;
FOR_DIGIT(0, A, 0) {
  int UsedA = 1 << A;
  BLOCK(0, A, 1);
  FOR_DIGIT(1, B, UsedA) {
    int UsedB = UsedA | 1 << B;
    BLOCK(1, B, 1);
    FOR_DIGIT(2, C, UsedB) {
      int UsedC = UsedB | 1 << C;
      BLOCK(2, C, 1);
      FOR_DIGIT(3, D, UsedC) {
        int UsedD = UsedC | 1 << D;
        BLOCK(3, D, 1);
        FOR_DIGIT(4, E, UsedD) {
          int UsedE = UsedD | 1 << E;
          BLOCK(4, E, 1);
          FOR_DIGIT(5, F, UsedE) {
            int UsedF = UsedE | 1 << F;
            BLOCK(5, F, 1);
            FOR_DIGIT(6, G, UsedF) {
              int UsedG = UsedF | 1 << G;
              BLOCK(6, G, 1);
              FOR_DIGIT(7, H, UsedG) {
                int UsedH = UsedG | 1 << H;
                BLOCK(7, H, 1);
                FOR_DIGIT(8, I, UsedH) {
                  ++Rows[Row];
                  if (Row < Side) {
                    BLOCK(8, I, 1);
                    FILL_ROW(Row + 1);
                    BLOCK(8, I, -1);
                  } else {
                    const int Digits[Side] = {A, B, C, D, E, F, G, H, I};
                    ++Solutions;
                    LastRows += numberOf(Digits);
                  }
                }
                BLOCK(7, H, -1);
              }
              BLOCK(6, G, -1);
            }
            BLOCK(5, F, -1);
          }
          BLOCK(4, E, -1);
        }
        BLOCK(3, D, -1);
      }
      BLOCK(2, C, -1);
    }
    BLOCK(1, B, -1);
  }
  BLOCK(0, A, -1);
}

#undef BLOCK
#undef FOR_DIGIT
