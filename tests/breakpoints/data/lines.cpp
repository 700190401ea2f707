// Lines that have several addresses: templates, inlined functions, constructors, loops, one line for two statements.

#include <stdint.h>

volatile uint32_t sink;
extern "C" uint32_t pass_count;
uint32_t pass_count;

template <typename T>
struct Accumulator {
  T sum;
  __attribute__((noinline)) void add(T value) {
    sum = static_cast<T>(sum + value);  // LINE template
    sink = static_cast<uint32_t>(sum);
  }
};

struct Base {
  uint32_t id;
  __attribute__((noinline)) explicit Base(uint32_t number) : id(number) {
    sink = id;  // LINE constructor
  }
};
struct Derived : Base {
  explicit Derived(uint32_t number) : Base(number + 1) {}
};

static inline __attribute__((always_inline)) uint32_t mix(uint32_t value) {
  sink = value;                // LINE inline
  return value * 2654435761u;  // LINE inline value
}

__attribute__((noinline)) uint32_t first(uint32_t value) {
  return mix(value) + 1;
}

__attribute__((noinline)) uint32_t second(uint32_t value) {
  return mix(value + 3) ^ mix(value);
}

__attribute__((noinline)) uint32_t loop(uint32_t count) {
  uint32_t total = 0;
  for (uint32_t i = 0; i < count; i++) total += sink;  // LINE loop
  return total;
}

int main() {
  Accumulator<int32_t> wide = {0};
  Accumulator<uint8_t> narrow = {0};
  for (;;) {
    wide.add(static_cast<int32_t>(pass_count));
    narrow.add(static_cast<uint8_t>(pass_count));
    const Derived object(pass_count);
    sink = first(object.id); sink = second(object.id);  // LINE pair
    sink = loop(4);
    pass_count++;  // LINE end of pass
  }
}
