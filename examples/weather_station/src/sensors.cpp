#include "sensors.h"

namespace station {

namespace {

constexpr uint32_t MINUTES_PER_DAY = 24 * 60;
constexpr uint32_t CURVE_POINTS = 17;
constexpr uint32_t RAW_PER_POINT = 4096 / (CURVE_POINTS - 1);

struct Curve {
  int16_t points[CURVE_POINTS];
};

// A thermistor in a voltage divider: steep at the ends, flat in the middle.
constexpr Curve make_curve() {
  Curve curve = {};
  for (int32_t i = 0; i < static_cast<int32_t>(CURVE_POINTS); i++) {
    const int32_t x = i - 8;
    curve.points[i] = static_cast<int16_t>(1500 + 350 * x + 5 * x * x * x);
  }
  return curve;
}

constexpr Curve thermistor = make_curve();
static_assert(thermistor.points[8] == 1500);

// A triangle over the day, 0 at midnight and `peak` at noon.
inline int32_t daily(uint32_t minute, int32_t peak) {
  const int32_t now = static_cast<int32_t>(minute % MINUTES_PER_DAY);
  const int32_t half = MINUTES_PER_DAY / 2;
  return peak * (now < half ? now : 2 * half - now) / half;
}

}  // namespace

uint16_t Thermometer::raw(uint32_t minute) {
  return static_cast<uint16_t>(1600 + daily(minute, 1200));
}

int32_t Thermometer::convert(uint16_t raw) const {
  const uint32_t point = raw / RAW_PER_POINT;
  const int32_t part = raw % RAW_PER_POINT;
  const int32_t low = thermistor.points[point];
  const int32_t high = thermistor.points[point + 1];
  return low + (high - low) * part / static_cast<int32_t>(RAW_PER_POINT) + status().offset;
}

uint16_t Hygrometer::raw(uint32_t) {
  const int32_t dryness = thermometer_.last() / 5;
  return static_cast<uint16_t>(dryness < 900 ? 950 - dryness : 50);
}

uint16_t Barometer::raw(uint32_t minute) {
  noise_ = noise_ * 1664525u + 1013904223u;
  return static_cast<uint16_t>(2000 + daily(minute, 60) + (noise_ >> 28));
}

int32_t Barometer::convert(uint16_t raw) const {
  constexpr int32_t tenths_per_100_metres = 120;
  return 8000 + raw + height() * tenths_per_100_metres / 100 + status().offset;
}

}  // namespace station
