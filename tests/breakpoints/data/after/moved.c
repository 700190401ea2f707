/* The program after it was changed. */
volatile int sink;

static __attribute__((noinline)) void stays(void) {
  sink = 1;  /* the same line in both */
}

static __attribute__((noinline)) void loses_code(void) {
  /* no code here any more */
  sink = 3;
}

static __attribute__((noinline)) void changes(void) {
  sink = 40;  /* is another statement now */
}

int main(void) {
  for (;;) {
    stays();
    loses_code();
    changes();
  }
}
