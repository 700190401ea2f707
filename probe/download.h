#pragma once

#include <vector>

#include "device/probe_api/records.h"
#include "probe/sim/machine.h"

// A download in progress: what is written into flash is collected and programmed at the end. Everything else is written
// at once.
class CDownload {
public:
  // A second Begin without End goes on with the same download.
  void Begin() { m_bOpen = true; }
  bool IsOpen() const { return m_bOpen; }
  // Number of bytes accepted, up to the first address that does not answer.
  U32 Write(sim::CMachine& Machine, U32 Addr, U32 NumBytes, const void* pData, U32 AccessWidth);
  // Compares, programs what differs and verifies it. Nothing to do without an open download.
  int End(sim::CMachine& Machine);
  // Closes without programming; Result is what End gives from now on.
  void Abandon(int Result);
  int LastResult() const { return m_LastResult; }
  // Bytes of flash that the last End has programmed.
  U32 NumProgrammed() const { return m_NumProgrammed; }

private:
  bool TakeFlashImage(sim::CMachine& Machine);
  int ProgramChanges(sim::CMachine& Machine);

  bool m_bOpen = false;
  int m_LastResult = VNODE_DOWNLOAD_OK;
  U32 m_NumProgrammed = 0;
  // The flash as it will be, and the offsets of the part that was written. Empty before the first write into flash.
  std::vector<U8> m_Image;
  U32 m_From = 0;
  U32 m_To = 0;
};
