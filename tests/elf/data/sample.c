#include "sample.h"

volatile int Counter;
struct SAMPLE Samples[3];
unsigned char Matrix[4][5];
char _MORVEK_RTT[24];
static const char Greeting[] = "hello";
extern int Elsewhere;

int Accumulate(int Count) {
  int Sum = 0;
  for (int i = 0; i < Count; ++i) {
    Sum += Twice(&Counter);
    if (Sum > 1000) break;
  }
  return Sum;
}

int main(void) {
  Samples[1].Id = Accumulate(3);
  Matrix[2][1] = (unsigned char)Greeting[Counter];
  return Twice(&Counter) + Elsewhere;
}
