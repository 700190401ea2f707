// A two-point controller with hysteresis over a simulated room.
#ifndef THERMOSTAT_H
#define THERMOSTAT_H

#include <stdbool.h>
#include <stdint.h>

typedef struct {
  int32_t temperature;  // in hundredths of a degree Celsius
  int32_t outside;
  bool heating;
} room;

typedef enum { MODE_OFF, MODE_ECO, MODE_COMFORT } thermostat_mode;

typedef struct {
  thermostat_mode mode;
  int32_t target;
  int32_t hysteresis;
  uint32_t switches;
} thermostat;

void thermostat_set_mode(thermostat *t, thermostat_mode mode);
void thermostat_step(thermostat *t, room *r);
void room_step(room *r);

#endif
