// The unit that uses the classes: its compiler may leave their members to the other one.
#include "shapes.h"

namespace geometry {

Shape shape(3);
Square square(4);
Pen* const* pens = &pen;
int32_t total;

namespace {

// Inlined in one place and called through its address in another.
int32_t mix(int32_t value, int32_t low, int32_t high) {
  int32_t sum = half(value);
  for (int32_t i = low; i < high; i++) sum += clamp(i * value, low, high);
  return sum;
}

}  // namespace

int32_t draw(int32_t scale) {
  int32_t sum = mix(scale, 1, 3) + walk(mix, scale) + walk(clamp, scale);
  shape.grow(scale);
  sum += shape.area(2) + square.bounded(sum) + square.area(scale);
  return half(sum);
}

}  // namespace geometry

extern "C" int main() {
  for (int32_t i = 0; i < 3; i++) geometry::total += geometry::draw(i);
  return geometry::clamp(geometry::total, 0, 255);
}
