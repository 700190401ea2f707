#include "shared.h"

volatile int Level;
static int Counter = 5;
const int Table[4] = {1, 2, 3, 4};

int DroppedByLinker(int Value) {
  Level = Value * 3;
  return Value + 1;
}

__attribute__((noinline)) int FirstStep(int Value) {
  int Sum = Clamp(Value, 10);
  for (int Index = 0; Index < Value; ++Index) {
    int Part = Table[Index & 3];
    Sum += Part;
    Level = Sum;
  }
  return Sum;
}

int main(void) {
  Counter = FirstStep(Counter);
  Level = SecondStep(Counter);
  for (;;) {
  }
}
