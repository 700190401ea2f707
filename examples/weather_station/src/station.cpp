#include "station.h"

namespace station {

namespace {

struct Limit {
  Quantity quantity;
  int32_t low, high;
  Alarm below, above;
};

constexpr Limit limits[] = {
    {Quantity::temperature, 300, 2400, Alarm::frost, Alarm::heat},
    {Quantity::pressure, 10050, 10900, Alarm::storm, Alarm::none},
};

}  // namespace

Alarm Station::judge(const Reading& reading) const {
  Alarm raised = Alarm::none;
  for (const Limit& limit : limits) {
    if (limit.quantity != reading.quantity) continue;
    if (reading.value < limit.low) raised = raised | limit.below;
    if (reading.value > limit.high) raised = raised | limit.above;
  }
  return raised;
}

void Station::poll(uint32_t minute) {
  alarm_ = Alarm::none;
  for (Sensor* sensor : sensors_) {
    const int32_t value = clamp<int32_t>(sensor->read(minute), -9999, 99999);
    const Reading reading = {static_cast<uint16_t>(minute), sensor->quantity(), value};
    history_.push(reading);
    alarm_ = alarm_ | judge(reading);
    checksum_.word = checksum_.word * 31 + static_cast<uint32_t>(value);
  }
}

int32_t Station::mean(Quantity quantity) const {
  int64_t sum = 0;
  int32_t count = 0;
  history_.for_each([&](const Reading& reading) {
    if (reading.quantity != quantity) return;
    sum += reading.value;
    count++;
  });
  return count ? static_cast<int32_t>(sum) / count : 0;
}

}  // namespace station
