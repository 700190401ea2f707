#include "probe/gdb/register_map.h"

#include <iterator>

#include "device/probe_api/register_index.h"
#include "probe/text.h"

namespace {

constexpr U32 NUM_SINGLE_REGISTERS = 32;
constexpr U32 BANKED_CPSR = 8;
constexpr U32 BANKED_PC = 9;

// The registers that a mode has of its own, by the probe's numbers: SPSR, and what follows it.
struct BANK {
  U32 Mode;
  const char* sSuffix;
  U32 SPSR;      // 0: none
  U32 First;     // number of the first of them
  U32 FirstReg;  // which is this register
};

constexpr BANK BANKS[] = {
    {CPU_MODE_USR, "_usr", 0, 10, 8},   {CPU_MODE_FIQ, "_fiq", 17, 18, 8},  {CPU_MODE_SVC, "_svc", 25, 26, 13},
    {CPU_MODE_ABT, "_abt", 28, 29, 13}, {CPU_MODE_IRQ, "_irq", 31, 32, 13}, {CPU_MODE_UND, "_und", 34, 35, 13},
};
constexpr U32 LAST_BANKED_REG = 14;
constexpr U32 FIRST_MODE_REG = 13;  // R8 to R12 have one further copy, for FIQ

const GDB_REGISTER* FindAny(const TARGET_DESCRIPTION& Description, const std::string& sName,
                            const std::string& sAlias) {
  const GDB_REGISTER* pRegister = Description.Find(sName);
  return pRegister ? pRegister : Description.Find(sAlias);
}

std::string AliasOf(U32 Reg) {
  constexpr const char* ALIASES[] = {"sp", "lr", "pc"};
  return Reg >= FIRST_MODE_REG ? ALIASES[Reg - FIRST_MODE_REG] : FormatText("r%u", Reg);
}

const GDB_REGISTER* FindSuffixed(const TARGET_DESCRIPTION& Description, U32 Reg, const char* sSuffix) {
  return FindAny(Description, AliasOf(Reg) + sSuffix, FormatText("r%u%s", Reg, sSuffix));
}

REGISTER_PLACE Whole(const GDB_REGISTER* pRegister) {
  return {pRegister, 0, pRegister ? pRegister->NumBits : 0};
}

// A single precision register, by itself or as half of a double precision one.
REGISTER_PLACE FindSingle(const TARGET_DESCRIPTION& Description, U32 Number) {
  if (const GDB_REGISTER* pSingle = Description.Find(FormatText("s%u", Number))) return Whole(pSingle);
  const GDB_REGISTER* pDouble = Description.Find(FormatText("d%u", Number / 2));
  if (!pDouble || pDouble->NumBits != 64) return {};
  return {pDouble, Number % 2 * 32, 32};
}

// What the present mode uses. A mode that is none counts as the last one.
bool IsInUse(const BANK& Bank, U32 Reg, U32 Mode) {
  const BANK* pPresent = &BANKS[Mode == CPU_MODE_SYS ? 0 : std::size(BANKS) - 1];
  for (const BANK& Candidate : BANKS) {
    if (Candidate.Mode == Mode) pPresent = &Candidate;
  }
  if (Reg >= FIRST_MODE_REG) return pPresent == &Bank;
  return Bank.Mode == (pPresent->Mode == CPU_MODE_FIQ ? CPU_MODE_FIQ : CPU_MODE_USR);
}

}  // namespace

REGISTER_PLACE FindCoreRegister(const TARGET_DESCRIPTION& Description, U32 Reg) {
  return Whole(FindSuffixed(Description, Reg, ""));
}

namespace {

REGISTER_PLACE FindInBank(const TARGET_DESCRIPTION& Description, const BANK& Bank, U32 Reg, U32 Mode) {
  const GDB_REGISTER* pNamed = FindSuffixed(Description, Reg, Bank.sSuffix);
  if (pNamed || !IsInUse(Bank, Reg, Mode)) return Whole(pNamed);
  return FindCoreRegister(Description, Reg);
}

}  // namespace

REGISTER_PLACE FindStatusRegister(const TARGET_DESCRIPTION& Description) {
  return Whole(FindAny(Description, "xpsr", "cpsr"));
}

REGISTER_PLACE FindCortexMRegister(const TARGET_DESCRIPTION& Description, U32 Index) {
  if (Index <= VNODE_REG_PC) return FindCoreRegister(Description, Index);
  if (Index >= VNODE_REG_S0 && Index < VNODE_REG_S0 + NUM_SINGLE_REGISTERS) {
    return FindSingle(Description, Index - VNODE_REG_S0);
  }
  constexpr struct {
    U32 Index;
    const char* sName;
  } NAMES[] = {
      {VNODE_REG_MSP, "msp"},         {VNODE_REG_PSP, "psp"},     {VNODE_REG_PRIMASK, "primask"},
      {VNODE_REG_BASEPRI, "basepri"}, {VNODE_REG_FPSCR, "fpscr"}, {VNODE_REG_FAULTMASK, "faultmask"},
      {VNODE_REG_CONTROL, "control"},
  };
  if (Index == VNODE_REG_XPSR) return FindStatusRegister(Description);
  for (const auto& Row : NAMES) {
    if (Row.Index == Index) return Whole(Description.Find(Row.sName));
  }
  return {};
}

REGISTER_PLACE FindBankedRegister(const TARGET_DESCRIPTION& Description, U32 Index, U32 Mode) {
  if (Index < BANKED_CPSR) return FindCoreRegister(Description, Index);
  if (Index == BANKED_CPSR) return FindStatusRegister(Description);
  if (Index == BANKED_PC) return FindCoreRegister(Description, VNODE_REG_PC);
  for (const BANK& Bank : BANKS) {
    if (Bank.SPSR == Index) {
      const GDB_REGISTER* pNamed = Description.Find(std::string("spsr") + Bank.sSuffix);
      return Whole(pNamed || !IsInUse(Bank, FIRST_MODE_REG, Mode) ? pNamed : Description.Find("spsr"));
    }
    const U32 Reg = Bank.FirstReg + Index - Bank.First;
    if (Index >= Bank.First && Reg <= LAST_BANKED_REG) return FindInBank(Description, Bank, Reg, Mode);
  }
  return {};
}

bool IsBankedRegister(U32 Index) {
  return Index > BANKED_PC;
}
