// A program for the core model's tests: vectors, literals between functions, an IT block, data in RAM.
#include <stdint.h>

int counter = 7;
extern uint32_t stack_top;

int scale(int n) {
  __asm volatile("cmp %0, #3\n ite gt\n addgt %0, #1\n suble %0, #1\n" : "+r"(n) : : "cc");
  return n * 0x1234567 + counter;
}

__attribute__((noinline)) int twice(int n) { return scale(n) + scale(n + 1); }

void reset(void) {
  for (;;) counter = twice(counter);
}

void fault(void) {
  for (;;) __asm volatile("bkpt #0xAB");
}

__attribute__((section(".vectors"), used)) void* const vectors[] = {&stack_top, reset, fault, fault};
