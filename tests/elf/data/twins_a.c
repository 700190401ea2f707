// What the other units have names for, too.
enum first { MODE_A = 1, SHARED = 5 };
struct cfg {
  int a;
};

static volatile int level = 1;
static volatile struct cfg counter = {11};

__attribute__((noinline)) static void init(void) {
  level = MODE_A;
}

int first(void) {
  init();
  return counter.a + level + SHARED;
}
