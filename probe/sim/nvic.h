#pragma once
// The state of all exceptions, by exception number: external interrupts follow the 16 of the system.

#include <array>

#include "base/types.h"

namespace sim {

inline constexpr U32 MAX_EXCEPTIONS = 16 + 240;

enum EXCEPTION : U32 {
  EXC_NONE = 0,
  EXC_RESET = 1,
  EXC_NMI = 2,
  EXC_HARDFAULT = 3,
  EXC_MEMMANAGE = 4,
  EXC_BUSFAULT = 5,
  EXC_USAGEFAULT = 6,
  EXC_SVCALL = 11,
  EXC_DEBUGMON = 12,
  EXC_PENDSV = 14,
  EXC_SYSTICK = 15,
  EXC_IRQ0 = 16,
};

inline constexpr int PRIORITY_THREAD = 256;  // below every exception

class CNvic {
public:
  // Which of the priority bits exist, from the top one down.
  void Reset(U32 NumIRQs, U32 NumPriorityBits);

  bool IsPending(U32 Exc) const { return Get(m_aPending, Exc); }
  bool IsActive(U32 Exc) const { return Get(m_aActive, Exc); }
  bool IsEnabled(U32 Exc) const { return Get(m_aEnabled, Exc); }
  void SetPending(U32 Exc, bool bOn) { Set(m_aPending, Exc, bOn); }
  void SetActive(U32 Exc, bool bOn) { Set(m_aActive, Exc, bOn); }
  void SetEnabled(U32 Exc, bool bOn) { Set(m_aEnabled, Exc, bOn); }
  U8 Priority(U32 Exc) const { return m_aPriority[Exc]; }
  void SetPriority(U32 Exc, U8 Value) { m_aPriority[Exc] = Value & m_PriorityMask; }
  U8 PriorityMask() const { return m_PriorityMask; }
  U32 NumExceptions() const { return m_NumExceptions; }

  // The number that preemption compares, smaller is more urgent; fixed ones are negative.
  int GroupPriority(U32 Exc, U32 PriGroup) const;
  int ApplyGroup(U32 Priority, U32 PriGroup) const;

  // The group priority of the most urgent active exception, and of nothing but those.
  int ActivePriority(U32 PriGroup) const;
  U32 NumActive() const;
  bool IsAnotherActive(U32 Exc) const;
  // The pending and enabled exception that would be taken first, EXC_NONE if there is none. With bFaultsOnly those that
  // a debugger's interrupt mask does not hold back.
  U32 HighestPending(bool bFaultsOnly) const;

  // Views of 32 external interrupts, bit 0 is interrupt 32 * Index.
  enum class SET { ENABLED, PENDING, ACTIVE };
  U32 IrqWord(SET Which, U32 Index) const;
  void ChangeIrqWord(SET Which, U32 Index, U32 Bits, bool bOn);

private:
  static constexpr U32 NUM_WORDS = MAX_EXCEPTIONS / 32;
  using BITS = std::array<U32, NUM_WORDS>;
  static bool Get(const BITS& aBits, U32 Exc) { return aBits[Exc / 32] >> (Exc % 32) & 1; }
  static void Set(BITS& aBits, U32 Exc, bool bOn) {
    if (bOn) {
      aBits[Exc / 32] |= 1u << (Exc % 32);
    } else {
      aBits[Exc / 32] &= ~(1u << (Exc % 32));
    }
  }

  BITS m_aPending = {};
  BITS m_aActive = {};
  BITS m_aEnabled = {};
  std::array<U8, MAX_EXCEPTIONS> m_aPriority = {};
  U8 m_PriorityMask = 0xF0;
  U32 m_NumExceptions = 16;
};

}  // namespace sim
