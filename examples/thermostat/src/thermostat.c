#include "thermostat.h"

static const int32_t targets[] = {[MODE_OFF] = 500, [MODE_ECO] = 1700, [MODE_COMFORT] = 2150};

void thermostat_set_mode(thermostat *t, thermostat_mode mode) {
  t->mode = mode;
  t->target = targets[mode];
}

void thermostat_step(thermostat *t, room *r) {
  bool heating = r->heating;
  if (r->temperature < t->target - t->hysteresis) heating = true;
  if (r->temperature > t->target + t->hysteresis) heating = false;
  if (heating != r->heating) {
    r->heating = heating;
    t->switches++;
  }
}

void room_step(room *r) {
  r->temperature += (r->outside - r->temperature) / 64;
  if (r->heating) r->temperature += 40;
}
