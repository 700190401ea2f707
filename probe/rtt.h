#pragma once

#include <chrono>
#include <vector>

#include "probe/probe_config.h"
#include "probe/target.h"

// The Real Time Terminal: byte queues between firmware and debugger in the target's RAM. Works over any target whose
// memory can be read while it runs, and over all others while they are halted.
//
// The control block, words in the target's byte order:
//   char Id[16]               "MORVEK RTT", filled up with zeros; firmware writes it last, when the rest is set up
//   int NumUp, NumDown        numbers of queues to the debugger and to the firmware
//   then NumUp + NumDown queues of 24 bytes each:
//     const char* sName; char* pBuffer; unsigned Size, WrOff, RdOff, Flags
// A queue is empty when both offsets are equal. Its writer alone moves WrOff, its reader alone RdOff. Everything that
// the target holds is checked before it is used.
class CRtt {
public:
  // The block is looked for at the configured address, then in the ranges. It may come into being later.
  void Start(U32 Addr, std::vector<RTT_SEARCH_RANGE> Ranges);
  void Stop() { m_bOn = false; }
  bool IsOn() const { return m_bOn; }
  // Where the control block was found, INVALID_ADDR before.
  U32 FoundAddr() const { return m_FoundAddr; }

  // Bytes moved; 0 as long as there is no control block or its queue makes no sense; negative when the block has no
  // such queue.
  int Read(CTarget& Target, U32 Queue, U8* paData, U32 NumBytes);
  int Write(CTarget& Target, U32 Queue, const U8* paData, U32 NumBytes);

private:
  struct BLOCK {
    U32 Addr;
    U32 NumUp;
    U32 NumDown;
  };
  struct QUEUE {
    U32 Addr;  // of its record
    U32 pBuffer;
    U32 Size;
    U32 WrOff;
    U32 RdOff;
  };
  bool FindBlock(CTarget& Target, BLOCK* pBlock);
  bool Search(CTarget& Target, BLOCK* pBlock);
  // 1, 0 when its contents make no sense, -1 when there is none.
  int FindQueue(CTarget& Target, U32 Index, bool bUp, QUEUE* pQueue);

  bool m_bOn = false;
  U32 m_ConfiguredAddr = INVALID_ADDR;
  std::vector<RTT_SEARCH_RANGE> m_Ranges;
  U32 m_FoundAddr = INVALID_ADDR;
  std::chrono::steady_clock::time_point m_NextSearch;
};
