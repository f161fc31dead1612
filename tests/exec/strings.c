// Recursion over strings and arrays; at level 4 the budget has no room for the third function.
// RUN: %compare --chained reverse=1234 --chained largest=23 --chained append=1234 %s
#include <stdio.h>
#include <string.h>

static void reverse(char *Text, int First, int Last) {
  if (First >= Last)
    return;
  char Saved = Text[First];
  Text[First] = Text[Last];
  Text[Last] = Saved;
  reverse(Text, First + 1, Last - 1);
}

static int largest(const int *Values, int N) {
  if (N == 1)
    return Values[0];
  int Rest = largest(Values + 1, N - 1);
  return Values[0] > Rest ? Values[0] : Rest;
}

static char *append(char *Out, unsigned N) {
  if (N >= 10)
    Out = append(Out, N / 10);
  *Out = '0' + N % 10;
  return Out + 1;
}

int main(void) {
  char Text[] = "a chain of copies is a chain";
  int Values[] = {3, 9, -4, 27, 15, 27, 8, 0, 1, 2, 26, 5, 6};
  char Digits[16] = "";
  reverse(Text, 0, strlen(Text) - 1);
  *append(Digits, 4023456789u) = 0;
  printf("%s %d %s\n", Text, largest(Values, 13), Digits);
}
