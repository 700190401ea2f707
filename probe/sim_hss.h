#pragma once

#include <vector>

#include "probe/board.h"
#include "probe/byte_ring.h"
#include "probe/target.h"

// High-speed sampling on the simulated board. Samples are taken in target time, so that their distances are exact
// whatever the host does; while the core is halted there are none.
class CSimHss : public CHssSampler {
public:
  static constexpr U32 BUFFER_SIZE = 1u << 23;      // bytes
  static constexpr U32 MAX_SAMPLE_SIZE = 1u << 16;  // bytes
  static constexpr U32 FASTEST_PERIOD_US = 10;      // what a period of 0 stands for

  CSimHss(CBoard& Board, CMessages& Messages) : m_Board(Board), m_Messages(Messages), m_Samples(BUFFER_SIZE) {}
  ~CSimHss() override { Stop(); }

  int Start(const VNODE_HSS_BLOCK* paBlocks, U32 NumBlocks, U32 PeriodUs) override;
  int Stop() override;
  int Read(void* pData, U32 NumBytes) override;
  // The caller has the machine.
  bool IsOn() const { return m_bOn; }

private:
  void TakeSample(sim::CMachine& Machine, U64 Cycle);

  CBoard& m_Board;
  CMessages& m_Messages;
  // Guarded by the board.
  bool m_bOn = false;
  std::vector<VNODE_HSS_BLOCK> m_Blocks;
  std::vector<U8> m_Sample;  // the one that is being taken
  CByteRing m_Samples;
  U64 m_StartCycle = 0;
  U64 m_NumLost = 0;  // samples since the last report
};
