// A traffic light as a state machine.
#ifndef TRAFFIC_H
#define TRAFFIC_H

#include <stdbool.h>
#include <stdint.h>

typedef enum {
  LIGHT_RED,
  LIGHT_RED_YELLOW,
  LIGHT_GREEN,
  LIGHT_YELLOW,
  LIGHT_COUNT,
} light_state;

typedef struct {
  const char *name;
  uint32_t duration;  // ticks
  light_state next;
} light_phase;

typedef struct {
  uint16_t id;
  light_state state;
  uint32_t ticks_left;
  uint32_t changes;
  bool pedestrian_waiting;
} traffic_light;

extern const light_phase phases[LIGHT_COUNT];

void traffic_init(traffic_light *light, uint16_t id, light_state first);
// Advances the light by one tick; true when it has changed.
bool traffic_tick(traffic_light *light);
// A pedestrian shortens the green phase.
void traffic_request(traffic_light *light);

#endif
