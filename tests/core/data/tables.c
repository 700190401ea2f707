// Jump tables, literal pools and, where the core has them, both instruction sets calling each other.
#if __ARM_ARCH < 6
#define OTHER_SET __attribute__((target("arm"), noinline))
#else
#define OTHER_SET __attribute__((noinline))
#endif

volatile int state;
int step(int n);

OTHER_SET int choose(int n) {
  switch (n) {
    case 0: return state;
    case 1: return state + 0x12345678;
    case 2: state = 7; return step(3);
    case 3: state ^= 0x00ff1234; return 9;
    case 4: return step(state) + 1;
    case 5: state = n * 1000003; return 11;
    default: return -1;
  }
}

__attribute__((noinline)) int step(int n) {
  switch (n) {
    case 10: return choose(0);
    case 11: state = 0x76543210; return 3;
    case 12: return choose(state) * 5;
    case 13: state += 77777; return 8;
    case 14: return choose(2) - 1;
    case 15: state = -n; return 0;
    default: return n;
  }
}

void reset(void) {
  for (;;) state = choose(step(state));
}
