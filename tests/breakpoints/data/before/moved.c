/* The program before it was changed. */
volatile int sink;

static __attribute__((noinline)) void stays(void) {
  sink = 1;  /* the same line in both */
}

static __attribute__((noinline)) void loses_code(void) {
  sink = 2;  /* a comment later */
  sink = 3;
}

static __attribute__((noinline)) void changes(void) {
  sink = 4;  /* reads differently later */
}

int main(void) {
  for (;;) {
    stays();
    loses_code();
    changes();
  }
}

/* Code that the changed program has no more. */
void gone(void) {
  sink = 9;
}
