#pragma once
// The same core in an emulation library: memory from address 0 and from PEER_RAM_START, erased flash.

#include <gtest/gtest.h>
#include <unicorn/unicorn.h>

#include <array>
#include <vector>

#include "probe/sim/machine.h"

namespace sim_test {

inline constexpr U32 PEER_RAM_START = 0x20000000;
inline constexpr U32 APSR_MASK = 0xF80F0000;

struct REGS {
  std::array<U32, 15> R;
  U32 APSR;
  bool operator==(const REGS&) const = default;
};

class CPeer {
public:
  CPeer(sim::ARCH Arch, U32 FlashSize, U32 RAMSize) {
    EXPECT_EQ(uc_open(UC_ARCH_ARM, static_cast<uc_mode>(UC_MODE_THUMB | UC_MODE_MCLASS), &m_pEngine), UC_ERR_OK);
    uc_ctl_set_cpu_model(m_pEngine, Arch == sim::ARCH::ARMV6M   ? UC_CPU_ARM_CORTEX_M0
                                    : Arch == sim::ARCH::ARMV7M ? UC_CPU_ARM_CORTEX_M3
                                                                : UC_CPU_ARM_CORTEX_M4);
    EXPECT_EQ(uc_mem_map(m_pEngine, 0, FlashSize, UC_PROT_ALL), UC_ERR_OK);
    EXPECT_EQ(uc_mem_map(m_pEngine, PEER_RAM_START, RAMSize, UC_PROT_ALL), UC_ERR_OK);
    const std::vector<U8> aErased(FlashSize, 0xFF);
    Write(0, aErased.data(), FlashSize);
  }
  ~CPeer() { uc_close(m_pEngine); }

  void Write(U32 Addr, const void* pData, size_t NumBytes) {
    EXPECT_EQ(uc_mem_write(m_pEngine, Addr, pData, NumBytes), UC_ERR_OK);
  }
  void ReadRAM(U8* pData, size_t NumBytes) { uc_mem_read(m_pEngine, PEER_RAM_START, pData, NumBytes); }

  static int RegId(U32 Index) {
    return Index < 13 ? UC_ARM_REG_R0 + static_cast<int>(Index) : Index == 13 ? UC_ARM_REG_SP : UC_ARM_REG_LR;
  }

  uc_err Run(REGS* pRegs, U32 Start, U32 End) {
    for (U32 i = 0; i < 15; i++) uc_reg_write(m_pEngine, RegId(i), &pRegs->R[i]);
    uc_reg_write(m_pEngine, UC_ARM_REG_XPSR_NZCVQG, &pRegs->APSR);
    const uc_err Error = uc_emu_start(m_pEngine, Start | 1, End, 0, 0);
    for (U32 i = 0; i < 15; i++) uc_reg_read(m_pEngine, RegId(i), &pRegs->R[i]);
    uc_reg_read(m_pEngine, UC_ARM_REG_XPSR, &pRegs->APSR);
    pRegs->APSR &= APSR_MASK;
    return Error;
  }

private:
  uc_engine* m_pEngine = nullptr;
};

}  // namespace sim_test
