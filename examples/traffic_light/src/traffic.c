#include "traffic.h"

#define GREEN_REST_TICKS 2

const light_phase phases[LIGHT_COUNT] = {
    [LIGHT_RED] = {"red", 12, LIGHT_RED_YELLOW},
    [LIGHT_RED_YELLOW] = {"red-yellow", 2, LIGHT_GREEN},
    [LIGHT_GREEN] = {"green", 10, LIGHT_YELLOW},
    [LIGHT_YELLOW] = {"yellow", 3, LIGHT_RED},
};

static void enter(traffic_light *light, light_state state) {
  light->state = state;
  light->ticks_left = phases[state].duration;
}

void traffic_init(traffic_light *light, uint16_t id, light_state first) {
  light->id = id;
  light->changes = 0;
  light->pedestrian_waiting = false;
  enter(light, first);
}

bool traffic_tick(traffic_light *light) {
  if (light->ticks_left > 1) {
    light->ticks_left--;
    return false;
  }
  enter(light, phases[light->state].next);
  light->changes++;
  if (light->state == LIGHT_RED) light->pedestrian_waiting = false;
  return true;
}

void traffic_request(traffic_light *light) {
  light->pedestrian_waiting = true;
  if (light->state == LIGHT_GREEN && light->ticks_left > GREEN_REST_TICKS) light->ticks_left = GREEN_REST_TICKS;
}
