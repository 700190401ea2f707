#pragma once

#include <mutex>
#include <vector>

#include "device/probe_commands.h"

// The real time terminal: ring buffers in the target's RAM that the probe reads and writes while the target runs.
// Device thread unless said otherwise. Failures are logged as warnings.
class CRttChannel {
public:
  static constexpr U32 MAX_SEARCH_RANGES = 99;
  static constexpr U32 MAX_TRANSFER_BYTES = 999'999;

  CRttChannel(CDeviceContext& Ctx, CProbeCommands& Commands) : Ctx(Ctx), Commands(Commands) {}

  // Memory in which the probe looks for the control block from the next start on. False when the list is full. Any
  // thread.
  bool AddSearchRange(U32 Addr, U32 NumBytes);
  // Forgets them; when a project is closed. Main thread.
  void ClearSearchRanges();

  // Tells the probe where the control block is, or where to look for it, and starts. 0 or -1.
  int Start();
  // 0 or -1.
  int Stop();
  bool IsStarted() const { return bStarted; }
  // Number of bytes moved, which may be 0; -1 on failure. Buffer 0 is the terminal's.
  int Read(U32 Buffer, U32 NumBytes, U8* paData);
  int Write(U32 Buffer, U32 NumBytes, const U8* paData);

private:
  void InitRTTSearchRanges();
  void InitRTTCtrlBlockAddr();
  int Fail(const char* sText);

  CDeviceContext& Ctx;
  CProbeCommands& Commands;
  std::atomic<bool> bStarted{false};
  std::mutex RangesMutex;
  std::vector<std::pair<U32, U32>> Ranges;  // address and size
};
