// Small calculations over the crossing's history.
#ifndef STATISTICS_H
#define STATISTICS_H

#include <stdint.h>

#define HISTORY_SIZE 32

typedef struct {
  uint32_t samples[HISTORY_SIZE];
  uint32_t count;
  uint32_t next;
} history;

typedef struct {
  uint32_t minimum;
  uint32_t maximum;
  uint32_t mean;
} summary;

void history_add(history *h, uint32_t sample);
summary history_summary(const history *h);

// Sorts with recursion, so that there is a call stack to look at.
void sort(uint32_t *values, int count);
// Ackermann's cousin that everybody knows: deep, but not endless.
uint32_t fibonacci(uint32_t n);
uint32_t checksum(const void *data, uint32_t size);

#endif
