#include "probe/sim/nvic.h"

#include <algorithm>
#include <bit>

namespace sim {

namespace {

// Orders all exceptions, sub-priority included; the number decides between equals.
int FullPriority(U32 Exc, U8 Configured) {
  return Exc < EXC_MEMMANAGE ? static_cast<int>(Exc) - 4 : Configured;
}

}  // namespace

void CNvic::Reset(U32 NumIRQs, U32 NumPriorityBits) {
  *this = CNvic();
  m_NumExceptions = std::min(16 + NumIRQs, MAX_EXCEPTIONS);
  m_PriorityMask = static_cast<U8>(0xFF00 >> NumPriorityBits);
  m_aEnabled[0] =
      (1u << EXC_NMI) | (1u << EXC_HARDFAULT) | (1u << EXC_SVCALL) | (1u << EXC_PENDSV) | (1u << EXC_SYSTICK);
}

int CNvic::ApplyGroup(U32 Priority, U32 PriGroup) const {
  return static_cast<int>(Priority & ~((2u << PriGroup) - 1));
}

int CNvic::GroupPriority(U32 Exc, U32 PriGroup) const {
  return Exc < EXC_MEMMANAGE ? static_cast<int>(Exc) - 4 : ApplyGroup(m_aPriority[Exc], PriGroup);
}

int CNvic::ActivePriority(U32 PriGroup) const {
  int Best = PRIORITY_THREAD;
  for (U32 Word = 0; Word < NUM_WORDS; Word++) {
    for (U32 Bits = m_aActive[Word]; Bits; Bits &= Bits - 1) {
      Best = std::min(Best, GroupPriority(Word * 32 + std::countr_zero(Bits), PriGroup));
    }
  }
  return Best;
}

U32 CNvic::NumActive() const {
  U32 Num = 0;
  for (U32 Bits : m_aActive) Num += std::popcount(Bits);
  return Num;
}

bool CNvic::IsAnotherActive(U32 Exc) const {
  return NumActive() > (IsActive(Exc) ? 1u : 0u);
}

U32 CNvic::HighestPending(bool bFaultsOnly) const {
  U32 Found = EXC_NONE;
  int Best = PRIORITY_THREAD;
  for (U32 Word = 0; Word < NUM_WORDS; Word++) {
    U32 Bits = m_aPending[Word] & m_aEnabled[Word];
    if (bFaultsOnly) Bits &= Word ? 0 : ~((1u << EXC_PENDSV) | (1u << EXC_SYSTICK) | (0xFFFFu << EXC_IRQ0));
    for (; Bits; Bits &= Bits - 1) {
      const U32 Exc = Word * 32 + std::countr_zero(Bits);
      const int Priority = FullPriority(Exc, m_aPriority[Exc]);
      if (Priority >= Best) continue;
      Best = Priority;
      Found = Exc;
    }
  }
  return Found;
}

U32 CNvic::IrqWord(SET Which, U32 Index) const {
  const BITS& aBits = Which == SET::ENABLED ? m_aEnabled : Which == SET::PENDING ? m_aPending : m_aActive;
  if (Index >= NUM_WORDS) return 0;
  const U32 High = Index + 1 < NUM_WORDS ? aBits[Index + 1] << 16 : 0;
  return aBits[Index] >> 16 | High;
}

void CNvic::ChangeIrqWord(SET Which, U32 Index, U32 Bits, bool bOn) {
  BITS& aBits = Which == SET::ENABLED ? m_aEnabled : Which == SET::PENDING ? m_aPending : m_aActive;
  for (; Bits; Bits &= Bits - 1) {
    const U32 Exc = EXC_IRQ0 + Index * 32 + std::countr_zero(Bits);
    if (Exc < m_NumExceptions) Set(aBits, Exc, bOn);
  }
}

}  // namespace sim
