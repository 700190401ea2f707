// A compiled program on our core and on an emulation library: the whole of RAM and the registers have to agree at its
// end.

#include <cstring>

#include "tests/sim/board.h"
#include "tests/sim/peer.h"

namespace sim_test {

namespace {

using sim::ARCH;
using sim::STOP;

struct ROW {
  const char* sName;
  ARCH Arch;
  U64 SliceSize;  // 0: steps
};

constexpr ROW ROWS[] = {{"v6m", ARCH::ARMV6M, 997},
                        {"v7m", ARCH::ARMV7M, 1},
                        {"v7em", ARCH::ARMV7EM, ~0ull},
                        {"v6m", ARCH::ARMV6M, 0},
                        {"v7em", ARCH::ARMV7EM, 0}};

U32 VectorOf(const std::vector<U8>& aImage, U32 Index) {
  U32 Value;
  std::memcpy(&Value, &aImage[Index * 4], 4);
  return Value;
}

class CProgram : public testing::TestWithParam<ROW> {};

TEST_P(CProgram, EndsAsOnThePeer) {
  const ROW& Row = GetParam();
  const std::vector<U8> aImage = ReadImage(Row.sName);
  const U32 End = VectorOf(aImage, 2) & ~1u;
  CBoard Board(Row.Arch);
  Board.Program(0, FLASH_SIZE, aImage.data());
  Board.Reset();
  STOP Stop = STOP::SLICE_END;
  for (U32 i = 0; i < 10'000'000 && Stop == STOP::SLICE_END; i++)
    Stop = Row.SliceSize ? Board.Run(Row.SliceSize, nullptr, false) : Board.Step();
  EXPECT_EQ(Stop, STOP::BKPT);
  EXPECT_EQ(Board.Pc(), End);
  EXPECT_GT(Board.InstructionCount(), 20'000u);

  CPeer Peer({Row.sName, Row.Arch, sim::FPU::NONE}, FLASH_SIZE, RAM_SIZE);
  Peer.Write(0, aImage.data(), aImage.size());
  REGS Regs = {};
  Regs.R[VNODE_REG_SP] = VectorOf(aImage, 0);
  Regs.R[VNODE_REG_LR] = 0xFFFFFFFF;
  EXPECT_EQ(Peer.Run(&Regs, VectorOf(aImage, 1), End), UC_ERR_OK);
  for (U32 i = 0; i < VNODE_REG_PC; i++) EXPECT_EQ(Board.Reg(i), Regs.R[i]) << "R" << i;
  EXPECT_EQ(Board.Reg(VNODE_REG_APSR), Regs.APSR);
  std::vector<U8> aOurs(RAM_SIZE);
  std::vector<U8> aTheirs(RAM_SIZE);
  EXPECT_EQ(Board.ReadMem(RAM_START, RAM_SIZE, aOurs.data()), RAM_SIZE);
  Peer.ReadRAM(aTheirs.data(), RAM_SIZE);
  EXPECT_TRUE(aOurs == aTheirs);
}

INSTANTIATE_TEST_SUITE_P(Cores, CProgram, testing::ValuesIn(ROWS));

}  // namespace

}  // namespace sim_test
