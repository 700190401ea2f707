// What a core of version 8.1 without vectors adds: selection by flags, loops, half precision, change of security state.
float state;
int table[64];

__attribute__((noinline)) int choose(int a, int b, int c) {
  return (a > b ? c + 1 : a) + (a < 0 ? -b : c) + (b == c) + (c > a ? ~b : a);
}

__attribute__((noinline)) _Float16 mix(_Float16 a, _Float16 b) {
  _Float16 sum = a * b + (_Float16)1.5f;
  return sum / (_Float16)(int)a;
}

__attribute__((noinline)) void fill(int* p, int n) {
  for (int i = 0; i < n; ++i) p[i] += i;
}

typedef int __attribute__((cmse_nonsecure_call)) OTHER(int);

__attribute__((cmse_nonsecure_entry)) int enter(OTHER* pOther, int n) { return pOther(n) + 1; }

void reset(void) {
  for (;;) {
    state = mix(state, 2);
    fill(table, choose(table[0], table[1], table[2]));
  }
}
