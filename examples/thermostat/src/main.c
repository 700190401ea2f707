// A thermostat on a Cortex-M0: a day of a room in a few seconds.

#include "systick.h"
#include "thermostat.h"

#define CYCLES_PER_TICK 16000
#define TICKS_PER_HOUR 100

static room living_room = {1500, 400, false};
static thermostat controller = {MODE_OFF, 0, 25, 0};

volatile uint32_t tick_count;
int32_t trial_result;

void SysTick_Handler(void) { tick_count++; }

static thermostat_mode mode_of_hour(uint32_t hour) {
  switch (hour) {
    case 6:
    case 7:
    case 8:
      return MODE_COMFORT;
    case 17:
    case 18:
    case 19:
    case 20:
    case 21:
      return MODE_COMFORT;
    default:
      return hour < 6 ? MODE_OFF : MODE_ECO;
  }
}

// One day without the timer: the same numbers on every run.
static int32_t trial_day(void) {
  room r = {1800, -350, false};
  thermostat t = {MODE_OFF, 0, 25, 0};
  int32_t sum = 0;
  for (uint32_t hour = 0; hour < 24; hour++) {
    thermostat_set_mode(&t, mode_of_hour(hour));
    for (int minute = 0; minute < 60; minute++) {
      thermostat_step(&t, &r);
      room_step(&r);
    }
    sum += r.temperature;
  }
  return sum / 24 + (int32_t)t.switches;
}

int main(void) {
  trial_result = trial_day();
  SysTick_Start(CYCLES_PER_TICK);
  uint32_t last = 0;
  for (;;) {
    while (tick_count == last) __asm volatile("wfi");
    last = tick_count;
    thermostat_set_mode(&controller, mode_of_hour(last / TICKS_PER_HOUR % 24));
    thermostat_step(&controller, &living_room);
    room_step(&living_room);
  }
}
