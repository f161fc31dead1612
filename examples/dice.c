/* Counts the throws of six dice that have a given weighted sum; the program's
 * other half is dice_main.c.
 *
 * roll() is local to this file, so all its calls are in sight: one from
 * countThrows() with the first die, one from itself with the next. */

unsigned countThrows(unsigned Wanted);

static const unsigned Weight[6] = {1, 2, 3, 5, 7, 11};
static unsigned Sum, Throws, Target;

static void roll(int Die) {
  if (Die == 6) {
    Throws += Sum == Target;
    return;
  }
  for (int Face = 1; Face <= 6; ++Face) {
    Sum += Face * Weight[Die];
    roll(Die + 1);
    Sum -= Face * Weight[Die];
  }
}

unsigned countThrows(unsigned Wanted) {
  Target = Wanted;
  Sum = Throws = 0;
  roll(0);
  return Throws;
}
