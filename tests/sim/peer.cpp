#include "tests/sim/peer.h"

#include <cstdio>
#include <cstdlib>
#include <vector>

namespace sim_test {

namespace {

int RegId(U32 Index) {
  return Index < 13 ? UC_ARM_REG_R0 + static_cast<int>(Index) : Index == 13 ? UC_ARM_REG_SP : UC_ARM_REG_LR;
}

int ModelOf(const CORE& Core) {
  if (Core.Arch == sim::ARCH::ARMV6M) return UC_CPU_ARM_CORTEX_M0;
  if (Core.Arch == sim::ARCH::ARMV7M) return UC_CPU_ARM_CORTEX_M3;
  return Core.Fpu == sim::FPU::V5_SINGLE ? UC_CPU_ARM_CORTEX_M7 : UC_CPU_ARM_CORTEX_M4;
}

void Check(uc_err Error) {
  if (Error == UC_ERR_OK) return;
  std::fprintf(stderr, "emulation library: %s\n", uc_strerror(Error));
  std::abort();
}

}  // namespace

CPeer::CPeer(const CORE& Core, U32 FlashSize, U32 RAMSize)
    : m_bFpu(Core.Fpu != sim::FPU::NONE),
      m_StatusReg(Core.Fpu == sim::FPU::V5_DOUBLE ? UC_ARM_REG_CPSR : UC_ARM_REG_XPSR) {
  // The library's cores of this family have no double precision: an application core has the same instructions.
  const bool bApplicationCore = Core.Fpu == sim::FPU::V5_DOUBLE;
  const int Class = bApplicationCore ? 0 : UC_MODE_MCLASS;
  Check(uc_open(UC_ARCH_ARM, static_cast<uc_mode>(UC_MODE_THUMB | Class), &m_pEngine));
  Check(uc_ctl_set_cpu_model(m_pEngine, bApplicationCore ? static_cast<int>(UC_CPU_ARM_MAX) : ModelOf(Core)));
  Check(uc_mem_map(m_pEngine, 0, FlashSize, UC_PROT_ALL));
  Check(uc_mem_map(m_pEngine, PEER_RAM_START, RAMSize, UC_PROT_ALL));
  const std::vector<U8> aErased(FlashSize, 0xFF);
  Write(0, aErased.data(), FlashSize);
  if (!m_bFpu) return;
  if (bApplicationCore) {
    const U32 Access = 0x00F00000;
    const U32 Enable = 0x40000000;
    Check(uc_reg_write(m_pEngine, UC_ARM_REG_C1_C0_2, &Access));
    Check(uc_reg_write(m_pEngine, UC_ARM_REG_FPEXC, &Enable));
  }
  // The first floating point instruction sets FPSCR to its default, flags included.
  constexpr U16 CODE[] = {0xEEB0, 0x0A40, 0xBF00};  // vmov.f32 s0, s0
  Write(0, CODE, sizeof(CODE));
  Check(uc_emu_start(m_pEngine, 1, 4, 0, 0));
  Write(0, aErased.data(), FlashSize);
}

void CPeer::WriteFlags(U32 APSR) {
  if (m_StatusReg == UC_ARM_REG_XPSR) {
    uc_reg_write(m_pEngine, UC_ARM_REG_XPSR_NZCVQG, &APSR);
    return;
  }
  U32 Status;
  uc_reg_read(m_pEngine, m_StatusReg, &Status);
  Status = (Status & ~APSR_MASK) | APSR;
  uc_reg_write(m_pEngine, m_StatusReg, &Status);
}

uc_err CPeer::Run(REGS* pRegs, U32 Start, U32 End) {
  for (U32 i = 0; i < pRegs->R.size(); i++) uc_reg_write(m_pEngine, RegId(i), &pRegs->R[i]);
  WriteFlags(pRegs->APSR);
  if (m_bFpu) {
    for (U32 i = 0; i < NUM_S_REGS; i++) uc_reg_write(m_pEngine, UC_ARM_REG_S0 + static_cast<int>(i), &pRegs->S[i]);
    uc_reg_write(m_pEngine, UC_ARM_REG_FPSCR, &pRegs->FPSCR);
  }
  const uc_err Error = uc_emu_start(m_pEngine, Start | 1, End, 0, 0);
  for (U32 i = 0; i < pRegs->R.size(); i++) uc_reg_read(m_pEngine, RegId(i), &pRegs->R[i]);
  uc_reg_read(m_pEngine, m_StatusReg, &pRegs->APSR);
  pRegs->APSR &= APSR_MASK;
  if (m_bFpu) {
    for (U32 i = 0; i < NUM_S_REGS; i++) uc_reg_read(m_pEngine, UC_ARM_REG_S0 + static_cast<int>(i), &pRegs->S[i]);
    uc_reg_read(m_pEngine, UC_ARM_REG_FPSCR, &pRegs->FPSCR);
  }
  return Error;
}

}  // namespace sim_test
