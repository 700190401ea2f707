#pragma once
// Random straight-line Thumb code that behaves predictably: sources are any registers, memory is reached through R7, R9
// and SP, with R6 as an index, and those four are never overwritten by other means than write-back. On cores with an
// FPU every other instruction is one of it.

#include <random>
#include <string>
#include <vector>

#include "tests/sim/pattern.h"

namespace sim_test {

inline constexpr U32 INDEX_REG = 6;
inline constexpr U32 BASE_REG = 7;
inline constexpr U32 HIGH_BASE_REG = 9;

class CRandomCode {
public:
  // With bForLibrary without the instructions that the emulation library is known to get wrong.
  CRandomCode(sim::ARCH Arch, sim::FPU Fpu, U32 Seed, bool bForLibrary);

  // At least NumInsts instructions, IT blocks complete. The names of the patterns are added to what Names() gives.
  std::vector<U16> Make(U32 NumInsts);
  const std::vector<std::string>& Names() const { return m_Names; }
  U32 Random() { return m_Random(); }

private:
  enum class PLACE { ANYWHERE, IN_BLOCK, SKIPPED };
  void AddInst(PLACE Place);
  void AddBlock();
  void AddModeChange();
  void AddSkip();
  U32 Pick(U32 Num) { return m_Random() % Num; }

  sim::ARCH m_Arch;
  bool m_bFpu;
  std::vector<const PATTERN*> m_Patterns;  // that the core knows
  std::mt19937 m_Random;
  std::vector<U16> m_Code;
  std::vector<std::string> m_Names;
};

}  // namespace sim_test
