#pragma once

#include "device/device_capabilities.h"
#include "device/probe_commands.h"
#include "shell/settings/named_constants.h"

// The stream of executed instructions that the probe records. It survives a disconnect as enabled; which source it has
// comes from the settings at each start. Device thread. Why something is refused goes to the trace error text, which
// logs it as a warning.
class CInstTraceChannel {
public:
  static constexpr U32 MAX_READ_INSTS = 100'000;
  static constexpr U32 MAX_STAT_ITEMS = 999'999;

  CInstTraceChannel(CDeviceContext& Ctx, CProbeCommands& Commands, CDeviceCapabilities& Capabilities)
      : Ctx(Ctx), Commands(Commands), Capabilities(Capabilities) {}

  // 0, also when nothing changes.
  int Enable();
  int Disable();
  // 0 also when it was started already; -1 when refused, and after a failure, which takes the source's capability away
  // for this session.
  int Start();
  int Stop();
  bool IsStarted() const { return bStarted; }
  // The latest instructions, the newest first; the next read gives older ones. Their number, or -1.
  int Read(U32 NumInsts, U32* paInsts);
  // Whether the target ran since the last read that asked this; asking forgets it.
  bool TakeNewEpoch() { return Ctx.State.Exec.bTargetRan.exchange(false); }
  // Drops what is recorded.
  int Flush();
  // Fetch and skip counts of each halfword of the ranges (pairs of start and exclusive end), one range after the other.
  // The number of counters, at most NumItems, or -1.
  int ReadInstStats(U32 NumRanges, const U32* paRanges, U32 NumItems, U64* paFetch, U64* paSkip, U64* pTotalFetch,
                    U64* pTotalSkip);

private:
  U32 Source() const { return Ctx.Settings.TraceSource; }
  // Why the source can't be used; null when it can.
  const char* Obstacle() const;
  int Refuse(const char* sText, DEVICE_ERR_MSGS Domain = ERR_MSG_TRACE);
  int StartProbe();

  CDeviceContext& Ctx;
  CProbeCommands& Commands;
  CDeviceCapabilities& Capabilities;
  std::atomic<bool> bStarted{false};
};
