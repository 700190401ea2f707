// Takes readings, keeps a history and raises alarms.
#ifndef STATION_H
#define STATION_H

#include "ring_buffer.h"
#include "sensors.h"

namespace station {

enum class Alarm : uint8_t { none = 0, frost = 1, heat = 2, storm = 4 };

constexpr Alarm operator|(Alarm a, Alarm b) {
  return static_cast<Alarm>(static_cast<uint8_t>(a) | static_cast<uint8_t>(b));
}

struct Reading {
  uint16_t minute;
  Quantity quantity;
  int32_t value;
};

template <typename T>
constexpr T clamp(T value, T low, T high) {
  return value < low ? low : value > high ? high : value;
}

class Station {
public:
  static constexpr uint32_t sensor_count = 3;
  static constexpr uint32_t history_size = 48;

  constexpr Station(Sensor& first, Sensor& second, Sensor& third) : sensors_{&first, &second, &third} {}

  void poll(uint32_t minute);
  int32_t mean(Quantity quantity) const;
  Alarm alarm() const { return alarm_; }

private:
  Alarm judge(const Reading& reading) const;

  Sensor* sensors_[sensor_count];
  RingBuffer<Reading, history_size> history_;
  Alarm alarm_ = Alarm::none;
  union {
    uint32_t word;
    uint8_t bytes[4];
  } checksum_ = {0};
};

}  // namespace station

#endif
