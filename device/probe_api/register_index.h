#pragma once
// The probe's register numbering on cores of the Cortex-M group (VNodeRegIdx). On the other cores R0 to R15, CPSR and
// SPSR have the numbers that VCore::MapRegIndex gives.

#include "base/types.h"

enum VNODE_REG_INDEX : U32 {
  VNODE_REG_R0 = 0,
  VNODE_REG_SP = 13,
  VNODE_REG_LR = 14,
  VNODE_REG_PC = 15,
  VNODE_REG_XPSR = 16,
  VNODE_REG_MSP = 17,
  VNODE_REG_PSP = 18,
  VNODE_REG_RAZ = 19,  // reads as zero
  VNODE_REG_CFBP = 20,  // CONTROL, FAULTMASK, BASEPRI, PRIMASK from the high byte down
  VNODE_REG_APSR = 21,
  VNODE_REG_EPSR = 22,
  VNODE_REG_IPSR = 23,
  VNODE_REG_PRIMASK = 24,
  VNODE_REG_BASEPRI = 25,
  VNODE_REG_FAULTMASK = 26,
  VNODE_REG_CONTROL = 27,
  VNODE_REG_FPSCR = 32,
  VNODE_REG_S0 = 33,  // S0 to S31
  VNODE_NUM_REGS = 65,
};
