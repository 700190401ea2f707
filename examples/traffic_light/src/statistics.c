#include "statistics.h"

void history_add(history *h, uint32_t sample) {
  h->samples[h->next] = sample;
  h->next = (h->next + 1) % HISTORY_SIZE;
  if (h->count < HISTORY_SIZE) h->count++;
}

summary history_summary(const history *h) {
  summary s = {UINT32_MAX, 0, 0};
  uint64_t total = 0;
  for (uint32_t i = 0; i < h->count; i++) {
    uint32_t sample = h->samples[i];
    if (sample < s.minimum) s.minimum = sample;
    if (sample > s.maximum) s.maximum = sample;
    total += sample;
  }
  if (h->count) s.mean = (uint32_t)total / h->count;
  return s;
}

static int partition(uint32_t *values, int count) {
  uint32_t pivot = values[count - 1];
  int boundary = 0;
  for (int i = 0; i < count - 1; i++) {
    if (values[i] < pivot) {
      uint32_t other = values[boundary];
      values[boundary++] = values[i];
      values[i] = other;
    }
  }
  values[count - 1] = values[boundary];
  values[boundary] = pivot;
  return boundary;
}

void sort(uint32_t *values, int count) {
  if (count < 2) return;
  int boundary = partition(values, count);
  sort(values, boundary);
  sort(values + boundary + 1, count - boundary - 1);
}

uint32_t fibonacci(uint32_t n) {
  if (n < 2) return n;
  return fibonacci(n - 1) + fibonacci(n - 2);
}

uint32_t checksum(const void *data, uint32_t size) {
  const uint8_t *bytes = data;
  uint32_t sum = 0xFFFFFFFFu;
  for (uint32_t i = 0; i < size; i++) {
    sum ^= bytes[i];
    for (int bit = 0; bit < 8; bit++) sum = (sum >> 1) ^ (sum & 1 ? 0xEDB88320u : 0);
  }
  return ~sum;
}
