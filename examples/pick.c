/* What room is left at best behind some items that may be taken or not; how many
 * items there are is said in the program's other half, pick_main.c. */

extern const int Worth[8];

int pick(int Item, int Room) {
  if (Item == 0 || Room <= 0)
    return Room;
  int Without = pick(Item - 1, Room);
  int With = pick(Item - 1, Room - Worth[Item]);
  return With > Without ? With : Without;
}
