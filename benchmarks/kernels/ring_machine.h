// Body of the ring_machine* kernels: a state machine of seven states that runs
// down from its start, one activation a step; the state is the remainder of the
// argument by seven. Every step reads and changes the state's register, before
// and after the rest of the run.
//
// Reference: two loops, down for what happens before the inner call and up for
// what happens after it.

#include "ring.h"

enum { Start0 = 1000 };

static uint32_t Registers[7];

INLINERECURSION_SPECIALIZE
static uint32_t run(int Step) {
  KERNEL_CALL();
  int State = Step % 7;
  uint32_t Before = Registers[State];
  if (Step == 0)
    return Before;
  switch (State) {
  case 0:
    Registers[0] = Before + Registers[3];
    break;
  case 1:
    Registers[1] = Before ^ (uint32_t)Step;
    break;
  case 2:
    Registers[2] = Before * 5 + 1;
    break;
  case 3:
    Registers[3] = Before - Registers[6];
    break;
  case 4:
    Registers[4] = (Before << 7 | Before >> 25) ^ Registers[1];
    break;
  case 5:
    Registers[5] = Before + 17;
    break;
  default:
    Registers[6] = ~Before;
    break;
  }
  uint32_t Rest = run(Step - 1);
  Registers[State] ^= Rest >> 3;
  return Rest * 31 + Before;
}

static uint32_t referenceRun(uint32_t *R, unsigned Start) {
  static uint32_t Before[Start0 + 1];
  for (unsigned Step = Start; Step > 0; --Step) {
    unsigned State = Step % 7;
    uint32_t B = Before[Step] = R[State];
    R[State] = State == 0   ? B + R[3]
               : State == 1 ? B ^ Step
               : State == 2 ? B * 5 + 1
               : State == 3 ? B - R[6]
               : State == 4 ? (B << 7 | B >> 25) ^ R[1]
               : State == 5 ? B + 17
                            : ~B;
  }
  uint32_t Result = R[0];
  for (unsigned Step = 1; Step <= Start; ++Step) {
    R[Step % 7] ^= Result >> 3;
    Result = Result * 31 + Before[Step];
  }
  return Result;
}

/// The registers start afresh every 16 repeats, so the reference needs 16 runs.
enum { Cases = 16 };

static void resetRegisters(uint32_t *R) {
  for (uint32_t I = 0; I < 7; ++I)
    R[I] = I * 0x9e3779b9u;
}

int main(int Argc, char **Argv) {
  long Repeats = kernelRepeats(Argc, Argv, 100000);
  unsigned Start = RING_START(Argc, Argv, Start0, Start0);
  uint64_t Sum = 0;
  for (long R = 0; R < Repeats; ++R) {
    if (R % Cases == 0)
      resetRegisters(Registers);
    kernelClobber(Registers);
    Sum += run(Start);
  }

  uint32_t Copy[7];
  uint64_t Expected = 0;
  resetRegisters(Copy);
  for (long Case = 0; Case < Cases; ++Case)
    Expected += kernelShare(Repeats, Cases, Case) * referenceRun(Copy, Start);
  return kernelReport(NAME, Repeats, Sum, Expected);
}
