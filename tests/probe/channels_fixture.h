#pragma once
// Boards with the firmware of firmware/channels.c, and its symbols.

#include "probe_fixture.h"

namespace v7em {
#include "firmware/channels_v7em.inc"
}

class ChannelsTest : public CProbeTest {
protected:
  // Leaves the core halted at its first instruction.
  void LoadV7() { Connect("nRF52840_xxAA"), Load(0, v7em::IMAGE, sizeof(v7em::IMAGE)); }

  void Run() { API.VNODEARM_GoEx(0, 1); }
  // Until the firmware has counted so many milliseconds of its own.
  void RunTicks(U32 TicksAddr, U32 NumTicks) {
    const U32 From = ReadWord(TicksAddr);
    Run();
    EXPECT_TRUE(WaitFor([&] { return ReadWord(TicksAddr) - From >= NumTicks && ReadWord(TicksAddr) < 0x10000000; }));
    EXPECT_EQ(API.VNODEARM_Halt(), 0);
  }
  void WriteWord(U32 Addr, U32 Value) { EXPECT_EQ(API.VNODEARM_WriteU32(Addr, Value), 0); }
};
