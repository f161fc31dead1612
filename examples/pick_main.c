/* Asks for many rooms with four items; see pick.c. */

#include <stdio.h>

const int Worth[8] = {0, 3, 5, 2, 7, 4, 9, 1};

int pick(int Item, int Room);

int main(void) {
  unsigned Checksum = 0;
  for (int Room = 0; Room < 300000; ++Room)
    Checksum = Checksum * 31 + pick(4, Room % 64);
  printf("%08x\n", Checksum);
  return 0;
}
