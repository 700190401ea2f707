#pragma once
// Boards with the firmware of firmware/channels.c, and its symbols.

#include <chrono>
#include <thread>

#include "probe_fixture.h"

namespace v7em {
#include "firmware/channels_v7em.inc"
}
namespace v6m {
#include "firmware/channels_v6m.inc"
}

class ChannelsTest : public CProbeTest {
protected:
  // Leave the core halted at its first instruction.
  void LoadV7() { Load("nRF52840_xxAA", v7em::IMAGE, sizeof(v7em::IMAGE)); }
  void LoadV6() { Load("nRF51822_xxAA", v6m::IMAGE, sizeof(v6m::IMAGE)); }

  void Run() { API.VNODEARM_GoEx(0, 1); }
  // Until the firmware has counted so many milliseconds of its own.
  void RunTicks(U32 TicksAddr, U32 NumTicks);
  void Load(const char* sDevice, const U8* paImage, U32 NumBytes);
  void WriteWord(U32 Addr, U32 Value) { EXPECT_EQ(API.VNODEARM_WriteU32(Addr, Value), 0); }
};

// Calls Done until it gives true, for a few seconds of a busy host.
template <class DONE>
bool WaitFor(DONE Done) {
  for (int i = 0; i < 5000; i++) {
    if (Done()) return true;
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  return false;
}
