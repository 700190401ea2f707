// A class that is complete in one unit and declared in the other, and functions that are inlined in both.
#ifndef SHAPES_H
#define SHAPES_H

#include <stdint.h>

static inline int32_t half(int32_t value) {
  return value / 2;
}

namespace geometry {

struct Pen;  // the scene only points to it

inline int32_t clamp(int32_t value, int32_t low, int32_t high) {
  if (value < low) return low;
  return value > high ? high : value;
}

// The debug information of its compiler stands where its first virtual function does.
class Shape {
public:
  explicit constexpr Shape(int32_t size) : size(size) {}
  virtual int32_t area(int32_t scale) const;
  virtual void grow(int32_t by);
  int32_t bounded(int32_t high) const { return clamp(size, 0, high); }

protected:
  int32_t size;
};

class Square : public Shape {
public:
  explicit constexpr Square(int32_t size) : Shape(size) {}
  int32_t area(int32_t scale) const override;
  int16_t corners[4] = {};
};

using Step = int32_t (*)(int32_t, int32_t, int32_t);
extern Pen* const pen;
int32_t walk(Step step, int32_t value);

}  // namespace geometry
#endif
