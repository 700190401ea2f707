// vexor-inspect frames: the rows of call frame information, one for each address from which a rule differs.
#include <cstdio>

#include "inspect/inspect.h"
#include "program/elf/elf.h"
#include "program/elf/elf_frames.h"
#include "program/elf/elf_types.h"

namespace {

// S0 and D0 in the numbering of the debug information; compilers use both.
constexpr U32 FIRST_SINGLE_REG = 64;
constexpr U32 FIRST_DOUBLE_REG = 256;
constexpr U32 NUM_VFP_REGS = 32;
constexpr U32 NUM_REGS = FIRST_DOUBLE_REG + NUM_VFP_REGS;
constexpr U32 STEP = 2;  // bytes, the shortest instruction

struct FRAME_ROW {
  ELF_SYM_LOC aRegs[NUM_REGS];
  U32 NumRegs = 0;

  bool operator==(const FRAME_ROW& Other) const {
    return NumRegs == Other.NumRegs && std::equal(aRegs, aRegs + NumRegs, Other.aRegs);
  }
};

bool IsUnchanged(const ELF_SYM_LOC& Loc, U32 Reg) {
  return Loc.Type == ELF_LOC_NONE || (Loc.Type == ELF_LOC_REG && (Loc.Reg == Reg || Loc.Reg >= ELF_REG_UNSPECIFIED));
}

std::string NameOf(U32 Reg) {
  if (Reg >= FIRST_DOUBLE_REG) return "D" + std::to_string(Reg - FIRST_DOUBLE_REG);
  const bool bSingle = Reg >= FIRST_SINGLE_REG && Reg < FIRST_SINGLE_REG + NUM_VFP_REGS;
  return bSingle ? "S" + std::to_string(Reg - FIRST_SINGLE_REG) : "R" + std::to_string(Reg);
}

void Print(U32 Start, U32 End, const FRAME_ROW& Row) {
  std::printf("0x%08x\t0x%08x\t%s\t", Start, End, CfaText(Row.aRegs[ELF_CFI_SP]).c_str());
  const char* sSeparator = "";
  for (U32 i = 0; i < Row.NumRegs; ++i) {
    if (i == ELF_CFI_SP || IsUnchanged(Row.aRegs[i], i)) continue;
    std::printf("%s%s=%s", sSeparator, NameOf(i).c_str(), ELF_GetLocationText(Row.aRegs[i]));
    sSeparator = " ";
  }
  std::printf("\n");
}

void PrintEntry(const ELF_FILE* pFile, U32 Low, U32 High, const INSPECT_OPTIONS& Options) {
  FRAME_ROW Row;
  U32 Start = std::max(Low, Options.From & ~(STEP - 1));
  const U32 End = std::min(High, Options.To);
  if (Start >= End) return;
  Row.NumRegs = ELF_GetCfiRegs(pFile, Start, NUM_REGS, Row.aRegs);
  for (U32 Addr = Start; End - Addr > STEP;) {
    Addr += STEP;
    FRAME_ROW Next;
    Next.NumRegs = ELF_GetCfiRegs(pFile, Addr, NUM_REGS, Next.aRegs);
    if (Next == Row) continue;
    Print(Start, Addr, Row);
    Start = Addr;
    Row = Next;
  }
  Print(Start, End, Row);
}

}  // namespace

std::string CfaText(const ELF_SYM_LOC& Cfa) {
  if (Cfa.Type != ELF_LOC_REG_OFFSET && Cfa.Type != ELF_LOC_REG) return "?";
  const std::string sReg = Cfa.Reg == ELF_CFI_SP ? "SP" : "R" + std::to_string(Cfa.Reg);
  if (Cfa.Type == ELF_LOC_REG || Cfa.Offset == 0) return sReg;
  return sReg + (Cfa.Offset < 0 ? " - " : " + ") + std::to_string(std::abs(I64{Cfa.Offset}));
}

const char* InspectFrames(const INSPECT_OPTIONS& Options) {
  const CInspectedFile File(Options);
  if (!File.Get()) return FILE_NOT_READ;
  for (U32 i = 0; i < ELF_GetNumFdes(File.Get()); ++i) {
    PrintEntry(File.Get(), ELF_GetFdeLow(File.Get(), i), ELF_GetFdeHigh(File.Get(), i), Options);
  }
  return nullptr;
}
