// What the C and the C++ units of the corpus share.
#ifndef SHARED_H
#define SHARED_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef enum { COLOUR_RED, COLOUR_GREEN = 5, COLOUR_BLUE, COLOUR_NEGATIVE = -3 } colour;

struct flags {
  unsigned valid : 1;
  unsigned mode : 3;
  int level : 7;
  unsigned : 5;
  uint8_t rest;
  uint64_t wide : 40;
};

typedef struct {
  int16_t x, y;
} point;

struct node {
  struct node* next;
  point at;
  union {
    uint32_t word;
    float real;
    struct {
      uint8_t low, high;
    } bytes;
  };
  struct {
    colour shade : 4;
    unsigned age : 12;
  };
};

static inline int32_t span(point a, point b) {
  int32_t dx = a.x - b.x;
  int32_t dy = a.y - b.y;
  if (dx < 0) dx = -dx;
  return dx > dy ? dx : dy;
}

// Sums n squares with a variable-length array.
int32_t squares(int n);
int32_t walk(const struct node* first, int limit);
int32_t use_model(int seed);
extern struct node nodes[3];
extern volatile uint32_t sink;

#ifdef __cplusplus
}
#endif
#endif
