#include "probe/sim_hss.h"

#include <algorithm>
#include <cstring>

#include "probe/memory_access.h"
#include "probe/text.h"

namespace {

constexpr U32 US_PER_SECOND = 1'000'000;

U32 Microseconds(U64 NumCycles, U32 ClockHz) {
  const U64 Rest = NumCycles % ClockHz;
  return static_cast<U32>(NumCycles / ClockHz * US_PER_SECOND + Rest * US_PER_SECOND / ClockHz);
}

bool IsReadable(sim::CMachine& Machine, const VNODE_HSS_BLOCK& Block) {
  std::vector<U8> Bytes(Block.NumBytes);
  return Block.NumBytes && ReadMachine(Machine, Block.Addr, Block.NumBytes, Bytes.data(), 0) == Block.NumBytes;
}

}  // namespace

int CSimHss::Start(const VNODE_HSS_BLOCK* paBlocks, U32 NumBlocks, U32 PeriodUs) {
  if (NumBlocks > VNODE_HSS_MAX_BLOCKS) return VNODE_HSS_TOO_MANY_BLOCKS;
  U64 SampleSize = sizeof(U32);
  for (U32 i = 0; i < NumBlocks; i++) SampleSize += paBlocks[i].NumBytes;
  if (SampleSize > MAX_SAMPLE_SIZE) return VNODE_HSS_NO_MEMORY;
  CBoard::CAccess Machine(m_Board);
  for (U32 i = 0; i < NumBlocks; i++) {
    if (IsReadable(*Machine, paBlocks[i])) continue;
    m_Messages.Add(MSG_KIND::ERROR, FormatText("High-speed sampling: cannot read %u bytes @ 0x%08X",
                                               paBlocks[i].NumBytes, paBlocks[i].Addr));
    return VNODE_HSS_UNSPECIFIED;
  }
  m_Blocks.assign(paBlocks, paBlocks + NumBlocks);
  m_Sample.resize(SampleSize);
  m_Samples.Clear();
  m_NumLost = 0;
  m_StartCycle = Machine->CycleCount();
  const U64 Period = static_cast<U64>(PeriodUs ? PeriodUs : FASTEST_PERIOD_US) * m_Board.Spec().ClockHz / US_PER_SECOND;
  Machine->SetSampler(std::max<U64>(Period, 1), [this](sim::CMachine& At, U64 Cycle) { TakeSample(At, Cycle); });
  m_bOn = true;
  return 0;
}

int CSimHss::Stop() {
  CBoard::CAccess Machine(m_Board);
  if (!m_bOn) return -1;
  m_bOn = false;
  Machine->SetSampler(0, nullptr);
  return 0;
}

void CSimHss::TakeSample(sim::CMachine& Machine, U64 Cycle) {
  const U32 TimeUs = Microseconds(Cycle - m_StartCycle, m_Board.Spec().ClockHz);
  std::memcpy(m_Sample.data(), &TimeUs, sizeof(TimeUs));
  size_t Offset = sizeof(TimeUs);
  for (const VNODE_HSS_BLOCK& Block : m_Blocks) {
    ReadMachine(Machine, Block.Addr, Block.NumBytes, &m_Sample[Offset], 0);
    Offset += Block.NumBytes;
  }
  if (!m_Samples.Push(m_Sample.data(), static_cast<U32>(m_Sample.size()))) m_NumLost++;
}

int CSimHss::Read(void* pData, U32 NumBytes) {
  CBoard::CAccess Machine(m_Board);
  if (m_Sample.empty()) return -1;
  if (m_NumLost) {
    m_Messages.Add(MSG_KIND::WARNING, FormatText("High-speed sampling: the buffer was full, %llu samples are lost",
                                                 static_cast<unsigned long long>(m_NumLost)));
    m_NumLost = 0;
  }
  const U32 SampleSize = static_cast<U32>(m_Sample.size());
  return static_cast<int>(m_Samples.Pop(pData, NumBytes / SampleSize * SampleSize));
}
