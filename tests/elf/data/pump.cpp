// The functions that decide which unit describes a class.
#include "pump.h"

namespace {
struct Secret {
  int Inside;
} Hidden = {4};
}  // namespace

namespace Plant {

int Valve::NumValves = 5;

int Valve::Open(int Step) {
  return Position + Step;
}

int Meter::Read() {
  return Count + Hidden.Inside;
}

int Pump::Open(int Step) {
  return Position + Step + NumValves;
}

int Pump::Read() {
  return static_cast<int>(Flow);
}

}  // namespace Plant
