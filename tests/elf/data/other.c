#include "sample.h"

volatile int Elsewhere = 7;

__attribute__((section(".ramcode"), used)) int InRam(int Value) { return Value + Elsewhere; }

__attribute__((used)) int UsesInline(void) { return Twice(&Elsewhere) + Accumulate(2); }

// Two sections of code for one function, so that it has a list of ranges.
__attribute__((used)) int Split(int Value) {
  if (__builtin_expect(Value == 77, 0)) return InRam(Value) + Accumulate(Value);
  return Value + 1;
}
