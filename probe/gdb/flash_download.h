#pragma once

#include <map>
#include <vector>

#include "device/probe_api/records.h"
#include "probe/gdb/memory.h"

// A download through a GDB server: what is written into the flash of the server's memory map is collected, and
// programmed at the end. Everything else is written at once.
class CFlashDownload {
public:
  CFlashDownload(CGdbServer& Server, CGdbMemory& Memory) : m_Server(Server), m_Memory(Memory) {}

  void Begin() { m_bOpen = true; }
  bool IsOpen() const { return m_bOpen; }
  // Number of bytes accepted; negative when the connection is gone.
  int Write(U32 Addr, U32 NumBytes, const void* pData, U32 AccessWidth);
  // Programs the blocks that differ and reads them back. VNODE_DOWNLOAD_RESULTS; that of the last one when none is
  // open.
  int End();
  void Abandon(int Result);
  // Bytes of flash that the last End has programmed.
  U32 NumProgrammed() const { return m_NumProgrammed; }

private:
  using BLOCK = std::vector<U8>;

  BLOCK* GetBlock(const GDB_MEMORY_REGION& Region, U32 Addr, U32* pStart);
  int CollectFlash(const GDB_MEMORY_REGION& Region, U32 Addr, U32 NumBytes, const U8* paData);
  int ProgramAll();
  int ProgramBlock(U32 Start, const BLOCK& Wanted);
  bool WriteBlock(U32 Start, const BLOCK& Wanted);

  CGdbServer& m_Server;
  CGdbMemory& m_Memory;
  bool m_bOpen = false;
  int m_LastResult = VNODE_DOWNLOAD_OK;
  U32 m_NumProgrammed = 0;
  std::map<U32, BLOCK> m_Blocks;  // by their addresses: whole erase blocks as they will be
};
