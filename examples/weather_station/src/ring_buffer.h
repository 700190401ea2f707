// The last values of something, the oldest making room for the newest.
#ifndef RING_BUFFER_H
#define RING_BUFFER_H

#include <stdint.h>

namespace station {

template <typename T, uint32_t CAPACITY>
class RingBuffer {
public:
  void push(const T& value) {
    values_[(first_ + count_) % CAPACITY] = value;
    if (count_ < CAPACITY) {
      count_++;
    } else {
      first_ = (first_ + 1) % CAPACITY;
    }
  }

  uint32_t size() const { return count_; }
  // Oldest first.
  const T& operator[](uint32_t index) const { return values_[(first_ + index) % CAPACITY]; }

  template <typename VISITOR>
  void for_each(VISITOR visit) const {
    for (uint32_t i = 0; i < count_; i++) visit((*this)[i]);
  }

private:
  T values_[CAPACITY] = {};
  uint32_t first_ = 0;
  uint32_t count_ = 0;
};

}  // namespace station

#endif
