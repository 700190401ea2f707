#pragma once
// Random sequences of instructions with the registers and the memory that they start with, and how our core runs them.

#include <string>
#include <vector>

#include "tests/sim/core.h"
#include "tests/sim/random_code.h"

namespace sim_test {

inline constexpr U32 SEQUENCE_RAM_START = 0x20000000;
inline constexpr U32 SEQUENCE_RAM_SIZE = 0x4000;

struct SEQUENCE {
  std::vector<U16> aOps;
  std::vector<std::string> aNames;
  REGS Start;
};

class CSequences {
public:
  CSequences(const CORE& Core, U32 Seed, bool bForLibrary)
      : m_Core(Core), m_Code(Core.Arch, Core.Fpu, Seed, bForLibrary) {}
  SEQUENCE Make(U32 NumInsts);
  void FillRAM(std::vector<U8>* paRAM);

private:
  void SetFpRegs(REGS* pRegs);

  const CORE& m_Core;
  CRandomCode m_Code;
};

sim::BOARD_SPEC SequenceBoard(const CORE& Core, U32 FlashSize);
// Access to the FPU for the code that runs.
void EnableFpu(sim::CMachine* pMachine);
// Runs from Start to End, one step after the other or in one go. An empty text, or what went wrong.
std::string RunSequence(sim::CMachine* pMachine, REGS* pRegs, U32 Start, U32 End, bool bSteps);
// What differs, register by register.
std::string Difference(const REGS& Start, const REGS& Ours, const REGS& Theirs);
std::string Listing(const SEQUENCE& Sequence);

}  // namespace sim_test
