#pragma once

#include "device/device_context.h"

// High-speed sampling: the probe reads memory blocks at a fixed interval while the target runs, and stamps each sample.
// Device thread. Failures are logged as warnings.
class CHssChannel {
public:
  static constexpr U32 MAX_READ_BYTES = 1'000'000;

  explicit CHssChannel(CDeviceContext& Ctx) : Ctx(Ctx) {}

  // paAddrRanges: 1 to 511 pairs of start and exclusive end. Intervals below 0 count as 0. 0 or -1.
  int Start(U32 Cnt, const U32* paAddrRanges, int IntervalUs, int Flags);
  int Stop();
  bool IsStarted() const { return bStarted; }
  // Number of bytes read: whole samples, each a U32 time in microseconds and the bytes of the blocks in their order. -1
  // on failure.
  int Read(U32 NumBytes, U8* paData);

private:
  int Fail(const QString& sText);

  CDeviceContext& Ctx;
  std::atomic<bool> bStarted{false};
};
