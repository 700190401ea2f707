#ifndef SHARED_H
#define SHARED_H

extern volatile int Level;

static inline int Clamp(int Value, int Limit) {
  if (Value > Limit) {
    Level = Limit;
    return Limit;
  }
  Level = Value;
  return Value;
}

int SecondStep(int Value);
int DroppedByLinker(int Value);

#endif
