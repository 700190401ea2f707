// What the simulated board tells of itself.

#include "device/probe_api/register_index.h"
#include "probe/sim_target.h"
#include "probe/text.h"

namespace {

constexpr struct {
  const char* sName;
  U32 Index;
} REGISTERS[] = {
    {"R0", 0},
    {"R1", 1},
    {"R2", 2},
    {"R3", 3},
    {"R4", 4},
    {"R5", 5},
    {"R6", 6},
    {"R7", 7},
    {"R8", 8},
    {"R9", 9},
    {"R10", 10},
    {"R11", 11},
    {"R12", 12},
    {"SP", VNODE_REG_SP},
    {"LR", VNODE_REG_LR},
    {"PC", VNODE_REG_PC},
    {"xPSR", VNODE_REG_XPSR},
    {"MSP", VNODE_REG_MSP},
    {"PSP", VNODE_REG_PSP},
    {"CONTROL", VNODE_REG_CONTROL},
    {"PRIMASK", VNODE_REG_PRIMASK},
    {"BASEPRI", VNODE_REG_BASEPRI},
    {"FAULTMASK", VNODE_REG_FAULTMASK},
    {"FPSCR", VNODE_REG_FPSCR},
};

}  // namespace

TARGET_STATUS CSimTarget::Status() {
  TARGET_STATUS Status;
  Status.sKind = "Simulated board";
  CBoard::CAccess Machine(m_Board);
  Status.Counters = {{"instructions", Machine->InstructionCount()}, {"cycles", Machine->CycleCount()}};
  if (m_Swo.PortMask()) Status.Channels.push_back(FormatText("SWO, ports 0x%08X", m_Swo.PortMask()));
  if (m_Hss.IsOn()) Status.Channels.push_back("high-speed sampling");
  if (!m_Board.IsHalted()) {
    Status.sRunState = Machine->IsInLockup() ? "lockup" : Machine->IsSleeping() ? "asleep" : "running";
    return Status;
  }
  Status.sRunState = "halted";
  for (const auto& Register : REGISTERS) {
    U32 Value = 0;
    if (Machine->ReadReg(Register.Index, &Value)) Status.Registers.push_back({Register.sName, Value});
  }
  return Status;
}
