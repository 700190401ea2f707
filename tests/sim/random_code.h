#pragma once
// Random straight-line Thumb code that behaves predictably: sources are any registers, memory is reached through R7, R9
// and SP, with R6 as an index, and those four are never overwritten by other means than write-back.

#include <random>
#include <string>
#include <vector>

#include "probe/sim/machine.h"

namespace sim_test {

inline constexpr U32 INDEX_REG = 6;
inline constexpr U32 BASE_REG = 7;
inline constexpr U32 HIGH_BASE_REG = 9;

class CRandomCode {
public:
  CRandomCode(sim::ARCH Arch, U32 Seed) : m_Arch(Arch), m_Random(Seed) {}

  // At least NumInsts instructions, IT blocks complete. The names of the patterns are added to what Names() gives.
  std::vector<U16> Make(U32 NumInsts);
  const std::vector<std::string>& Names() const { return m_Names; }
  U32 Random() { return m_Random(); }

private:
  void AddInst(bool bNarrowOnly);
  void AddBlock();
  void AddSkip();
  U32 Pick(U32 Num) { return m_Random() % Num; }

  sim::ARCH m_Arch;
  std::mt19937 m_Random;
  std::vector<U16> m_Code;
  std::vector<std::string> m_Names;
};

}  // namespace sim_test
