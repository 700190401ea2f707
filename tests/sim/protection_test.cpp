// What the memory protection unit forbids where the random comparison does not go: traced, unaligned, outside of all
// regions, to a lockup; events that no debugger takes.

#include "tests/sim/board.h"
#include "tests/sim/exception_board.h"

namespace sim_test {

namespace {

using sim::STOP;

constexpr U32 ICSR = 0xE000ED04;
constexpr U32 SHCSR = 0xE000ED24;
constexpr U32 MMFAR = 0xE000ED34;
constexpr U32 CPACR = 0xE000ED88;
constexpr U32 MPU_CTRL = 0xE000ED94;
constexpr U32 MPU_RBAR = 0xE000ED9C;
constexpr U32 MPU_RASR = 0xE000EDA0;
constexpr U32 DEMCR = 0xE000EDFC;

constexpr U32 ON = 1, IN_FAULTS = 2, DEFAULT_MAP = 4;  // MPU_CTRL
constexpr U32 XN = 1u << 28;
constexpr U32 PART = RAM_START + 0x100;  // the region of the cases, 256 bytes
constexpr U32 FAULT_HANDLER = HANDLER + 0x40;

// Region of 2^SizeBits bytes with the field AP.
constexpr U32 Rasr(U32 SizeBits, U32 AP, U32 More = 0) {
  return 1 | (SizeBits - 1) << 1 | AP << 24 | More;
}

const std::vector<U16> LOAD = {0x6801, 0xBE00};                 // ldr r1, [r0]; bkpt
const std::vector<U16> LOAD_MASKED = {0xB671, 0x6801, 0xBE00};  // cpsid f; ldr r1, [r0]; bkpt
const std::vector<U16> BRANCH = {0x4700};                       // bx r0

struct PROTECTION_CASE {
  const char* sName;
  std::vector<U16> aCode;
  U32 Control;
  U32 PartRasr;  // of region 2 at PART; regions 0 and 1 hold the flash and all of RAM
  U32 R0;
  U32 Exc;  // 0: nothing forbids it
  U32 CFSR;
  U32 MMFAR = 0;
  bool bUser = false;
  STOP Stop = STOP::BKPT;
};

const PROTECTION_CASE ROWS[] = {
    {"Load", LOAD, ON, Rasr(8, 0), PART + 4, 4, 0x82, PART + 4},
    {"AcrossTheStart", LOAD, ON, Rasr(8, 0), PART - 2, 4, 0x82, PART},
    {"NoRegion", LOAD, ON, 0, 0x40000000, 4, 0x82, 0x40000000},
    {"DefaultMapIsNotForUsers", LOAD, ON | DEFAULT_MAP, 0, 0x40000000, 4, 0x82, 0x40000000, true},
    {"DefaultMap", LOAD, ON | DEFAULT_MAP, 0, 0x40000000, 5, 0x8200},
    {"SystemSpaceIsNotItsBusiness", LOAD, ON, 0, CFSR, 0, 0},
    {"ExecuteNever", BRANCH, ON, Rasr(8, 3, XN), PART | 1, 4, 0x01},
    {"MaskedIsChecked", LOAD_MASKED, ON | IN_FAULTS, Rasr(8, 0), PART, 0, 0x82, PART, false, STOP::LOCKUP},
};

class CProtectedBoard : public CBoard {
public:
  explicit CProtectedBoard(const std::vector<U16>& aCode) : CBoard(sim::ARCH::ARMV7EM, sim::FPU::V4_SINGLE) {
    const std::vector<U16> aStop = {0xBE00};
    Load(aCode);
    Program(HANDLER, 2, aStop.data());
    Program(FAULT_HANDLER, 2, aStop.data());
    const U32 Vector = FAULT_HANDLER | 1;
    Program(4 * 4, 4, &Vector);
    SetWord(PART, 0xBE00BE00);
    SetWord(SHCSR, 1u << 16 | 1u << 17);  // faults of protection and of the bus
    SetWord(CPACR, 0xF << 20);
    SetRegion(0, 0, Rasr(16, 6));
    SetRegion(1, RAM_START, Rasr(14, 3));
  }
  void SetRegion(U32 Number, U32 Base, U32 RASR) {
    SetWord(MPU_RBAR, Base | 1u << 4 | Number);
    SetWord(MPU_RASR, RASR);
  }
};

TEST(CProtection, RunAndTraced) {
  for (U32 i = 0; i < 2 * std::size(ROWS); i++) {
    const PROTECTION_CASE& Case = ROWS[i / 2];
    const bool bTraced = i % 2;
    SCOPED_TRACE(std::string(Case.sName) + (bTraced ? ", traced" : ", run"));
    CProtectedBoard Board(Case.aCode);
    Board.SetRegion(2, PART, Case.PartRasr);
    Board.SetWord(MPU_CTRL, Case.Control);
    Board.WriteReg(VNODE_REG_R0, Case.R0);
    if (Case.bUser) Board.WriteReg(VNODE_REG_CONTROL, 1);
    if (bTraced) Board.StartTrace();
    EXPECT_EQ(Board.Run(MANY, nullptr, false), Case.Stop);
    if (Case.Stop == STOP::BKPT) {
      EXPECT_EQ(Board.Reg(VNODE_REG_IPSR), Case.Exc);
    }
    EXPECT_EQ(Board.Word(CFSR), Case.CFSR);
    EXPECT_EQ(Board.Word(HFSR), Case.Stop == STOP::BKPT ? 0 : FORCED);
    if (Case.MMFAR) {
      EXPECT_EQ(Board.Word(MMFAR), Case.MMFAR);
    }
  }
}

TEST(CNoDebugger, BreakpointsGoToTheMonitorOrFault) {
  for (const bool bMonitor : {false, true}) {
    CProtectedBoard Board({0xBE00});
    const U16 Endless = 0xE7FE;
    Board.Program(HANDLER, 2, &Endless);
    Board.SetHaltingDebug(false);
    Board.SetWord(DEMCR, bMonitor ? 1u << 16 : 0);
    EXPECT_EQ(Board.Run(100, nullptr, false), STOP::SLICE_END);
    EXPECT_EQ(Board.Reg(VNODE_REG_IPSR), bMonitor ? 12u : 3u);
    EXPECT_EQ(Board.Word(HFSR), bMonitor ? 0 : 0x80000000);
    EXPECT_EQ(Board.Word(DFSR) & 2, 2u);
  }
}

TEST(CNoDebugger, NmiEndsALockup) {
  CProtectedBoard Board({0xB671, 0xDE00});  // cpsid f; udf
  EXPECT_EQ(Board.Run(MANY, nullptr, false), STOP::LOCKUP);
  EXPECT_FALSE(Board.CanLeaveLockup());
  Board.SetWord(ICSR, 1u << 31);
  EXPECT_TRUE(Board.CanLeaveLockup());
  EXPECT_EQ(Board.Run(MANY, nullptr, false), STOP::BKPT);
  EXPECT_EQ(Board.Reg(VNODE_REG_IPSR), 2u);
  EXPECT_EQ(Board.Pc(), HANDLER);
}

}  // namespace

}  // namespace sim_test
