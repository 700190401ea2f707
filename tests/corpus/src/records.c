// Records, unions, bit fields, anonymous members, nested functions and variable-length arrays.
#include "shared.h"

struct node nodes[3] = {{&nodes[1], {1, 2}, {7}, {COLOUR_GREEN, 9}}, {&nodes[2], {3, -4}, {8}, {COLOUR_RED, 1}}};
volatile uint32_t sink;
struct flags status = {1, 5, -2, 0x55, 0x123456789};
const char* const names[] = {"red", "green", "blue"};
int16_t grid[4][3][2];
double ratio = 0.5;
_Bool ready;
struct tail {
  uint8_t count;
  uint32_t values[];
} const* tail;
struct __attribute__((packed)) message {
  uint8_t kind;
  uint32_t payload;
  int (*handler)(const struct message*, int);
} message;
static int counter;

typedef int (*operation)(int, int);

static int add(int a, int b) {
  return a + b;
}

static int __attribute__((noinline)) apply(operation todo, int a, int b) {
  static int calls = 1;
  calls++;
  return todo(a, b) + calls;
}

int32_t __attribute__((noinline)) squares(int n) {
  int32_t values[n];
  int32_t total = 0;
  for (int i = 0; i < n; i++) values[i] = i * i;
  for (int i = 0; i < n; i++) {
    int32_t value = values[i];
    total += value;
  }
  return total;
}

#ifndef __clang__
static int __attribute__((noinline)) nested(int factor, int count) {
  int sum = 0;
  int scaled(int value) {
    sum++;
    return value * factor;
  }
  int result = 0;
  for (int i = 0; i < count; i++) result += scaled(i);
  return result + sum;
}
#endif

static void __attribute__((noinline, cold)) fail(uint32_t code) {
  sink = code;
}

int32_t __attribute__((noinline)) walk(const struct node* first, int limit) {
  int32_t length = 0;
  const struct node* last = first;
  for (const struct node* now = first; now && limit; now = now->next, limit--) {
    length += span(now->at, last->at);
    if (now->age > 4000) fail(now->age);
    last = now;
  }
  return length;
}

int main(void) {
  int32_t result = walk(nodes, 10);
  result += squares((int)sink & 7);
  result += apply(add, result, counter);
#ifndef __clang__
  result += nested(result, 3);
#endif
  status.level = result;
  grid[1][2][0] = (int16_t)result;
#ifdef __ARM_FP
  double weight = ratio * result;
  ratio = weight + 1.5;
#endif
  counter += use_model(result);
  sink = (uint32_t)counter;
  return result;
}
