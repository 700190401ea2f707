#pragma once
// The same core in an emulation library: memory from address 0 and from PEER_RAM_START, erased flash.

#include <unicorn/unicorn.h>

#include "tests/sim/core.h"

namespace sim_test {

inline constexpr U32 PEER_RAM_START = 0x20000000;

class CPeer {
public:
  CPeer(const CORE& Core, U32 FlashSize, U32 RAMSize);
  ~CPeer() { uc_close(m_pEngine); }
  CPeer(const CPeer&) = delete;
  CPeer& operator=(const CPeer&) = delete;

  void Write(U32 Addr, const void* pData, size_t NumBytes) { uc_mem_write(m_pEngine, Addr, pData, NumBytes); }
  void ReadRAM(U8* pData, size_t NumBytes) { uc_mem_read(m_pEngine, PEER_RAM_START, pData, NumBytes); }
  // From Start to End with these registers; they hold the ones at the end then.
  uc_err Run(REGS* pRegs, U32 Start, U32 End);

private:
  void WriteFlags(U32 APSR);

  uc_engine* m_pEngine = nullptr;
  bool m_bFpu;
  int m_StatusReg;
};

}  // namespace sim_test
