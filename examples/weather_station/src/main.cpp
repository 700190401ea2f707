// A weather station on a Cortex-M3: a day of weather in a few seconds.

#include "station.h"
#include "systick.h"

namespace {

constexpr uint32_t cycles_per_tick = 25000;
constexpr uint32_t minutes_per_tick = 10;

constinit station::Thermometer thermometer;
constinit station::Hygrometer hygrometer{thermometer};
constinit station::Barometer barometer{120};
constinit station::Station weather{thermometer, hygrometer, barometer};

}  // namespace

volatile uint32_t tick_count;
uint32_t alarm_count;
int32_t trial_mean;

extern "C" void SysTick_Handler() {
  tick_count = tick_count + 1;
}

// A slot of an abstract class that nothing has filled.
extern "C" void __cxa_pure_virtual() {
  for (;;) {
  }
}

// One day without the timer: the same numbers on every run.
static int32_t trial_day() {
  thermometer.trim(-25);
  for (uint32_t minute = 0; minute < 24 * 60; minute += 30) weather.poll(minute);
  return weather.mean(station::Quantity::temperature);
}

int main() {
  trial_mean = trial_day();
  SysTick_Start(cycles_per_tick);
  uint32_t last = 0;
  for (;;) {
    while (tick_count == last) __asm volatile("wfi");
    last = tick_count;
    weather.poll(last * minutes_per_tick);
    if (weather.alarm() != station::Alarm::none) alarm_count++;
  }
}
