// The unit in which the classes and the pen are complete.
#include "shapes.h"

namespace geometry {

struct Pen {
  int32_t width;
  uint8_t colour[3];
};

static Pen black = {1, {0, 0, 0}};
Pen* const pen = &black;

int32_t Shape::area(int32_t scale) const {
  return half(clamp(size * scale, 0, 1000));
}

void Shape::grow(int32_t by) {
  size = clamp(size + by, 1, 500);
}

int32_t Square::area(int32_t scale) const {
  return size * size * half(scale) + corners[0];
}

int32_t __attribute__((noinline)) walk(Step step, int32_t value) {
  return step(value, 0, black.width) + half(value);
}

}  // namespace geometry
