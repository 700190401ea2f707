enum second { MODE_B = 2, SHARED = 6 };
struct cfg {
  int a, b, c;
};

volatile int level = 2;
extern volatile int same_level __attribute__((alias("level")));
__thread int task_number = 1, task_state = 2;
static volatile struct cfg counter = {1, 2, 22};

__attribute__((noinline)) void init(void) {
  level = MODE_B;
}

int second(void) {
  init();
  return counter.c + level + SHARED;
}
