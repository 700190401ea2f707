// The sensors of the station. Readings are fixed-point numbers, so that no floating point unit is needed.
#ifndef SENSORS_H
#define SENSORS_H

#include <stdint.h>

namespace station {

enum class Quantity : uint8_t { temperature, humidity, pressure };

// The sensors' status register.
struct Status {
  uint32_t ready : 1;
  uint32_t overrun : 1;
  uint32_t gain : 3;
  int32_t offset : 11;
  uint32_t samples : 16;
};

class Sensor {
public:
  constexpr explicit Sensor(Quantity quantity) : quantity_(quantity) {}

  // Takes a reading at that minute of the day.
  int32_t read(uint32_t minute) {
    status_.ready = 1;
    status_.samples++;
    last_ = convert(raw(minute));
    return last_;
  }

  virtual const char* unit() const = 0;

  Quantity quantity() const { return quantity_; }
  int32_t last() const { return last_; }
  const Status& status() const { return status_; }
  void trim(int32_t offset) { status_.offset = offset; }

protected:
  // What the converter delivers, 12 bits.
  virtual uint16_t raw(uint32_t minute) = 0;
  virtual int32_t convert(uint16_t raw) const { return raw + status_.offset; }

private:
  Quantity quantity_;
  Status status_ = {0, 0, 1, 0, 0};
  int32_t last_ = 0;
};

// Hundredths of a degree, from a thermistor's curve.
class Thermometer final : public Sensor {
public:
  constexpr Thermometer() : Sensor(Quantity::temperature) {}
  const char* unit() const override { return "0.01 C"; }

protected:
  uint16_t raw(uint32_t minute) override;
  int32_t convert(uint16_t raw) const override;
};

// Tenths of a percent.
class Hygrometer final : public Sensor {
public:
  constexpr explicit Hygrometer(const Sensor& thermometer) : Sensor(Quantity::humidity), thermometer_(thermometer) {}
  const char* unit() const override { return "0.1 %"; }

protected:
  uint16_t raw(uint32_t minute) override;

private:
  const Sensor& thermometer_;
};

// What can be calibrated against the station's height.
class Calibrated {
public:
  constexpr explicit Calibrated(int16_t metres) : metres_(metres) {}
  int16_t height() const { return metres_; }

private:
  int16_t metres_;
};

// Tenths of a hectopascal at sea level.
class Barometer final : public Sensor, public Calibrated {
public:
  constexpr explicit Barometer(int16_t metres) : Sensor(Quantity::pressure), Calibrated(metres) {}
  const char* unit() const override { return "0.1 hPa"; }

protected:
  uint16_t raw(uint32_t minute) override;
  int32_t convert(uint16_t raw) const override;

private:
  uint32_t noise_ = 1;
};

}  // namespace station

#endif
