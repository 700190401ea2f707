#pragma once
// A small board to run test code on, and the register and stop names that tests use.

#include <gtest/gtest.h>

#include <vector>

#include "device/probe_api/register_index.h"
#include "probe/sim/machine.h"

namespace sim_test {

inline constexpr U32 FLASH_SIZE = 0x10000;
inline constexpr U32 RAM_START = 0x20000000;
inline constexpr U32 RAM_SIZE = 0x4000;
inline constexpr U32 CODE_START = 0x100;
inline constexpr U32 HANDLER = 0x200;

inline sim::BOARD_SPEC MakeSpec(sim::ARCH Arch = sim::ARCH::ARMV7EM, sim::FPU Fpu = sim::FPU::NONE) {
  sim::BOARD_SPEC Spec;
  Spec.Arch = Arch;
  Spec.Fpu = Fpu;
  Spec.Flash = {0, FLASH_SIZE};
  Spec.RAM[0] = {RAM_START, RAM_SIZE};
  return Spec;
}

class CBoard : public sim::CMachine {
public:
  explicit CBoard(sim::ARCH Arch = sim::ARCH::ARMV7EM, sim::FPU Fpu = sim::FPU::NONE) : CMachine(MakeSpec(Arch, Fpu)) {}

  // Vectors that all lead to a return at HANDLER, code at CODE_START; reset.
  void Load(const std::vector<U16>& aCode) {
    std::vector<U32> aVectors(48, HANDLER | 1);
    aVectors[0] = RAM_START + RAM_SIZE;
    aVectors[1] = CODE_START | 1;
    Program(0, static_cast<U32>(aVectors.size() * 4), aVectors.data());
    Program(CODE_START, static_cast<U32>(aCode.size() * 2), aCode.data());
    Program(HANDLER, 2, "\x70\x47");  // bx lr
    Reset();
  }
  U32 Reg(U32 Index) const {
    U32 Value = 0;
    EXPECT_TRUE(ReadReg(Index, &Value));
    return Value;
  }
  U32 Pc() const { return Reg(VNODE_REG_PC); }
  U32 Word(U32 Addr) {
    U32 Value = 0;
    EXPECT_EQ(ReadMem(Addr, 4, &Value, 4), 4u);
    return Value;
  }
  void SetWord(U32 Addr, U32 Value) { EXPECT_EQ(WriteMem(Addr, 4, &Value, 4), 4u); }
};

}  // namespace sim_test
