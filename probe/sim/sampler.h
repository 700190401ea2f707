#pragma once
// Calls somebody at a fixed period of the target's time, between two instructions.

#include <functional>
#include <utility>

#include "base/types.h"

namespace sim {

class CSampler {
public:
  static constexpr U64 NEVER = ~0ull;

  // The first call is due at once. A period of 0 ends it.
  void Start(U64 Now, U64 PeriodCycles, std::function<void(U64 Now)> Function) {
    m_Function = std::move(Function);
    m_Period = PeriodCycles;
    m_Next = PeriodCycles ? Now : NEVER;
  }
  U64 Deadline() const { return m_Next; }
  // To be called when the deadline has come.
  void Fire(U64 Now) {
    m_Next += ((Now - m_Next) / m_Period + 1) * m_Period;
    m_Function(Now);
  }

private:
  U64 m_Next = NEVER;  // cycle
  U64 m_Period = 0;
  std::function<void(U64 Now)> m_Function;
};

}  // namespace sim
