#include "probe/gdb/cp15.h"

#include <vector>

#include "probe/text.h"

namespace {

// clang-format off
constexpr struct {
  CP15_REGISTER Register;  // CRn, CRm, op1, op2
  const char* sName;
} NAMES[] = {
    {{0, 0, 0, 0}, "midr"},      {{0, 0, 0, 1}, "ctr"},        {{0, 0, 0, 2}, "tcmtr"},     {{0, 0, 0, 3}, "tlbtr"},
    {{0, 0, 0, 4}, "mpuir"},     {{0, 0, 0, 5}, "mpidr"},      {{0, 1, 0, 0}, "id_pfr0"},   {{0, 1, 0, 1}, "id_pfr1"},
    {{0, 1, 0, 2}, "id_dfr0"},   {{0, 1, 0, 3}, "id_afr0"},    {{0, 1, 0, 4}, "id_mmfr0"},  {{0, 1, 0, 5}, "id_mmfr1"},
    {{0, 1, 0, 6}, "id_mmfr2"},  {{0, 1, 0, 7}, "id_mmfr3"},   {{0, 2, 0, 0}, "id_isar0"},  {{0, 2, 0, 1}, "id_isar1"},
    {{0, 2, 0, 2}, "id_isar2"},  {{0, 2, 0, 3}, "id_isar3"},   {{0, 2, 0, 4}, "id_isar4"},  {{0, 2, 0, 5}, "id_isar5"},
    {{0, 0, 1, 1}, "clidr"},     {{0, 0, 1, 0}, "ccsidr"},     {{0, 0, 2, 0}, "csselr"},    {{1, 0, 0, 0}, "sctlr"},
    {{1, 0, 0, 1}, "actlr"},     {{1, 0, 0, 2}, "cpacr"},      {{1, 1, 0, 0}, "scr"},       {{1, 1, 0, 2}, "nsacr"},
    {{2, 0, 0, 0}, "ttbr0"},     {{2, 0, 0, 1}, "ttbr1"},      {{2, 0, 0, 2}, "ttbcr"},     {{3, 0, 0, 0}, "dacr"},
    {{5, 0, 0, 0}, "dfsr"},      {{5, 0, 0, 1}, "ifsr"},       {{6, 0, 0, 0}, "dfar"},      {{6, 0, 0, 2}, "ifar"},
    {{12, 0, 0, 0}, "vbar"},     {{12, 0, 0, 1}, "mvbar"},     {{13, 0, 0, 0}, "fcseidr"},  {{13, 0, 0, 1}, "contextidr"},
    {{13, 0, 0, 2}, "tpidrurw"}, {{13, 0, 0, 3}, "tpidruro"},  {{13, 0, 0, 4}, "tpidrprw"}, {{9, 13, 0, 0}, "pmccntr"},
};
// clang-format on

// Names under which servers describe a register. The last two are the secure world's copy.
std::vector<std::string> SpellingsOf(const char* sName) {
  const std::string s = sName;
  return {s, s + "_el1", s + "_s", s + "_el1_s"};
}

std::string TextOf(const CP15_REGISTER& Register) {
  return FormatText("c%u, c%u, %u, %u", Register.CRn, Register.CRm, Register.Op1, Register.Op2);
}

// Coprocessor, op1, CRn, CRm, op2: the order of the assembler.
std::string OperandsOf(const CP15_REGISTER& Register) {
  return FormatText("15 %u %u %u %u", Register.Op1, Register.CRn, Register.CRm, Register.Op2);
}

// The described register, empty when there is none. Where both worlds have a copy and these differ, nobody here knows
// which one the core would access.
std::string DescribedName(CGdbRegisters& Registers, const CP15_REGISTER& Register, U32* pValue) {
  const char* sName = Cp15Name(Register);
  std::string sFound;
  if (!sName) return {};
  for (const std::string& sSpelling : SpellingsOf(sName)) {
    U32 Value = 0;
    if (!Registers.ReadNamed(sSpelling, &Value)) continue;
    if (!sFound.empty() && Value != *pValue) return {};
    sFound = sSpelling;
    *pValue = Value;
  }
  return sFound;
}

}  // namespace

const char* Cp15Name(const CP15_REGISTER& Register) {
  for (const auto& Row : NAMES) {
    const CP15_REGISTER& R = Row.Register;
    if (R.CRn == Register.CRn && R.CRm == Register.CRm && R.Op1 == Register.Op1 && R.Op2 == Register.Op2) {
      return Row.sName;
    }
  }
  return nullptr;
}

bool ReadCp15(CGdbServer& Server, CGdbRegisters& Registers, const CP15_REGISTER& Register, U32* pValue,
              std::string* psError) {
  std::string sOutput;
  if (!DescribedName(Registers, Register, pValue).empty()) return true;
  if (Server.Monitor("arm mrc " + OperandsOf(Register), &sOutput) && ParseU32(Trimmed(sOutput), pValue)) return true;
  *psError = FormatText("The GDB server does not read the coprocessor register %s", TextOf(Register).c_str());
  return false;
}

bool WriteCp15(CGdbServer& Server, CGdbRegisters& Registers, const CP15_REGISTER& Register, U32 Value,
               std::string* psError) {
  U32 Present = 0;
  std::string sOutput;
  const std::string sName = DescribedName(Registers, Register, &Present);
  if (!sName.empty() && Registers.WriteNamed(sName, Value)) {
    // Not every server that describes a register writes it, though it says so.
    if (Registers.ReadNamed(sName, &Present) && Present == Value) return true;
  } else if (Server.Monitor(FormatText("arm mcr %s 0x%x", OperandsOf(Register).c_str(), Value), &sOutput) &&
             Trimmed(sOutput).empty()) {
    Registers.Invalidate();
    return true;
  }
  *psError = FormatText("The GDB server does not write the coprocessor register %s", TextOf(Register).c_str());
  return false;
}
