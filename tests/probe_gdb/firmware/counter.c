/* Counts for ever, one call an iteration. */

volatile unsigned g_Counter;
volatile unsigned g_Rounds;

__attribute__((noinline)) unsigned NextValue(unsigned Value) {
  return Value + 1;
}

__attribute__((noreturn)) void Run(void) {
  g_Counter = 0;
  g_Rounds = 0;
  for (;;) {
    g_Counter = NextValue(g_Counter);
    if (g_Counter % 1024 == 0) g_Rounds = g_Rounds + 1;
  }
}
