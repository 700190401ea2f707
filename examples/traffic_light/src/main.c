// Two traffic lights at a crossing, driven by the system timer.

#include "statistics.h"
#include "systick.h"
#include "traffic.h"

#define CYCLES_PER_TICK 64000
#define REQUEST_PERIOD 37

static traffic_light main_street;
static traffic_light side_street;
static history waiting_times;

volatile uint32_t tick_count;
uint32_t self_test_result;

void SysTick_Handler(void) { tick_count++; }

// Works without the timer, so that it gives the same numbers on every run.
static uint32_t self_test(void) {
  uint32_t numbers[16];
  uint32_t seed = 12345;
  for (int i = 0; i < 16; i++) {
    seed = seed * 1103515245u + 12345u;
    numbers[i] = seed >> 16 & 0x3FF;
  }
  sort(numbers, 16);
  return checksum(numbers, sizeof numbers) + fibonacci(10);
}

static void crossing_step(uint32_t now) {
  bool changed = traffic_tick(&main_street);
  if (traffic_tick(&side_street)) changed = true;
  if (now % REQUEST_PERIOD == 0) traffic_request(&side_street);
  if (changed) history_add(&waiting_times, main_street.ticks_left + side_street.ticks_left);
}

int main(void) {
  self_test_result = self_test();
  traffic_init(&main_street, 1, LIGHT_GREEN);
  traffic_init(&side_street, 2, LIGHT_RED);
  SysTick_Start(CYCLES_PER_TICK);

  uint32_t last = 0;
  for (;;) {
    while (tick_count == last) __asm volatile("wfi");
    last = tick_count;
    crossing_step(last);
    if (waiting_times.count == HISTORY_SIZE) {
      summary s = history_summary(&waiting_times);
      self_test_result = checksum(&s, sizeof s);
    }
  }
}
