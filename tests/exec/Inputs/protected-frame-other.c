#include <stdio.h>
#include <string.h>

int around(int N);
void printOwn(void);

void fill(char *Buffer, int Size, int N) { memset(Buffer, N, Size); }

int main(int Argc, char **Argv) {
  printOwn();
  printf("%d\n", around(700 * Argc));
}
