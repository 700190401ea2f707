#pragma once

// In a header, so that its lines belong to two units once it is inlined.
static inline int Twice(volatile int* pValue) {
  *pValue += 1;
  return *pValue * 2;
}

struct SAMPLE {
  int Id;
  short Values[6];
};

int Accumulate(int Count);
