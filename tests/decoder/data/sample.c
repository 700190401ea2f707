// Integer code of many shapes, compiled for each core to hold the decoder against another disassembler.
#include <stdint.h>

volatile uint32_t sink;
extern int outside(int, const char*);

int dense_switch(int n, int m) {
  switch (n) {
    case 0: return m + 1;
    case 1: return m * 3;
    case 2: return m ^ n;
    case 3: return m - 77;
    case 4: return m << 3;
    case 5: return outside(m, "five");
    case 6: return m / 7;
    case 7: return m % 10;
    default: return -1;
  }
}

uint32_t bits(uint32_t a, uint32_t b) {
  a = (a >> 3) & 0x1FF;
  b |= (a & 0x1F) << 7;
  return (b << 5 | b >> 27) + __builtin_clz(b | 1) + __builtin_bswap32(a);
}

int64_t wide(int64_t a, int32_t b, uint64_t c) { return a * b + (int64_t)(c >> 13) - (a << 9); }
int32_t divide(int32_t a, uint32_t b) { return a / 13 + (int32_t)(b / (uint32_t)(a | 1)); }

typedef struct { uint8_t a; int8_t b; uint16_t c; int16_t d; uint32_t e; uint64_t f; } RECORD;

uint64_t fields(RECORD* p, const RECORD* q, unsigned n) {
  uint64_t sum = 0;
  for (unsigned i = 0; i < n; ++i) {
    p[i].a = q[n - i].a + 1;
    p[i].b = q[i].b >> 1;
    p[i].c ^= q[i].c;
    p[i].d -= q[i].d;
    sum += p[i].e * q[i].f;
  }
  return sum;
}

int saturate(int v) { return v > 127 ? 127 : v < -128 ? -128 : v; }
int minimum(int a, int b, int c) { int m = a < b ? a : b; return m < c ? m : c; }
void constants(uint32_t* p) { p[0] = 0x12345678; p[1] = 0xFF00FF00; p[2] = 0xABCD; p[3] = 0x00AB00AB; p[300] = 0x80000000; }
int chain(const char* s) { int n = 0; while (*s) n = n * 31 + *s++; return n; }
void barrier(void) { __asm volatile("dsb\n isb\n cpsid i\n wfi\n cpsie i\n svc #3\n bkpt #0xAB\n" ::: "memory"); sink = 1; }
