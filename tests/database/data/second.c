#include "shared.h"

static int Counter;

int SecondStep(int Value) {
  Counter += Clamp(Value, 20);
  Level = Counter;
  return Counter * 2;
}

/* One statement of more than 256 bytes: no line entry stands in its second half. */
void LongStatement(void) {
  __asm volatile(".rept 140\n nop\n .endr");
}
