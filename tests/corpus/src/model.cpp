// Namespaces, templates, inheritance, member functions, lambdas, references and constants.
#include "shared.h"

namespace model {

enum class Level : uint8_t { low, medium = 4, high };

constexpr int32_t table[] = {2, 3, 5, 7, 11};
constexpr int32_t limit = 40;

class Base {
public:
  explicit constexpr Base(int id) : id(id) {}
  virtual int32_t value(int32_t scale) const = 0;
  virtual void reset() {}
  static uint32_t made;
  int number() const { return id; }

protected:
  int id;

private:
  bool on : 1 = true;
  uint8_t kind : 3 = 2;
};

struct Mixin {
  int32_t extra = 3;
  int32_t more(int32_t by) { return extra += by; }
};

template <typename T, int N>
class Ring {
public:
  struct Slot {
    T value{};
    bool used = false;
  };
  void push(const T& value) {
    slots[next % N].value = value;
    slots[next % N].used = true;
    ++next;
  }
  T last() const { return slots[(next + N - 1) % N].value; }
  static constexpr int size = N;

private:
  Slot slots[N] = {};
  unsigned next = 0;
};

class Derived final : public Base, public Mixin {
public:
  explicit constexpr Derived(int id) : Base(id) {}
  int32_t value(int32_t scale) const override;
  void reset() override { extra = 0; }
  Ring<int16_t, 4> history;

private:
  Level level = Level::medium;
};

uint32_t Base::made;

int32_t Derived::value(int32_t scale) const {
  int32_t sum = extra;
  for (int32_t prime : table) sum += prime * scale;
  return sum > limit ? sum : limit;
}

inline namespace v2 {
Derived device{7};
Ring<int32_t, 2> numbers;
}  // namespace v2

namespace {
int32_t hidden = 5;

int32_t __attribute__((noinline)) twice(const int32_t& value, int32_t&& step) {
  return 2 * value + step;
}
}  // namespace

}  // namespace model

namespace shortcut = model;

using Method = int32_t (model::Base::*)(int32_t) const;
int32_t model::Mixin::*member_pointer = &model::Mixin::extra;
Method method_pointer = &model::Base::value;

extern "C" void __cxa_pure_virtual() {
  for (;;) {
  }
}

template <typename FUNCTION>
static int32_t __attribute__((noinline)) each(int32_t count, FUNCTION function) {
  int32_t total = 0;
  for (int32_t i = 0; i < count; i++) total += function(i);
  return total;
}

extern "C" int32_t use_model(int seed) {
  using namespace shortcut;
  Base& base = device;
  auto scaled = [seed, &base](int32_t by) { return base.value(by) + seed; };
  int32_t sum = each(3, scaled);
  device.history.push(static_cast<int16_t>(sum));
  numbers.push(sum);
  sum += device.more(hidden) + twice(sum, 4) + device.history.last();
  if (method_pointer == nullptr) sum += device.*member_pointer;
  Base::made += static_cast<uint32_t>(sum);
  struct Local {
    int32_t a;
    Level level;
  } local = {sum, Level::high};
  sink = static_cast<uint32_t>(local.a);
  return sum + local.a + numbers.last();
}
