#include "pump.h"

using HANDLE = void*;
enum class Limit : unsigned long long { Low = 7, High = 0x123456789A };

namespace {
struct Secret;
Secret* volatile Unknown;
}  // namespace

Plant::Pump Pumps[3];
Plant::Valve& First = Pumps[0];
Handle* Opened;
void** Slots;
HANDLE Handles[2];
HANDLE (*Allocate)(unsigned);
int (Plant::Meter::*Method)() = &Plant::Meter::Read;
Limit Largest = Limit::High;
volatile int Input;

namespace Plant {

// Called and inlined.
static int Counted(int Step) {
  static int Calls;
  Calls += Step;
  if (Input == 77) return Calls * Input;
  for (int i = 0; i < Input; i++) Calls += Input;
  return Calls;
}

__attribute__((noinline)) int Run(int Step) {
  return Step > 3 ? Counted(Step) : Counted(9);
}

}  // namespace Plant

static int Outside(int Value) {
  return Value + Input;
}

namespace Plant {
int Calls() {
  return Outside(3) * Outside(Input);
}
}  // namespace Plant

int (*volatile Stored)(int) = Plant::Counted;

extern "C" int main() {
  Opened = OpenHandle(Unknown != nullptr);
  return Pumps[1].Open(2) + Pumps[2].Read() + Plant::Run(3) + Plant::Calls() + (Pumps[0].*Method)() + Stored(4);
}
