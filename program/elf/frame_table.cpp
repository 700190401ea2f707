#include "program/elf/frame_table.h"

#include <algorithm>

#include "program/elf/elf_frames.h"

namespace {

constexpr I32 WORD_SCALE = 4;  // bytes; some compilers count frames in words and mark their files with a section
const char WORD_SCALE_SECTION[] = ".note.iar";

I32 Scaled(I32 Offset, I32 Scale) {
  return static_cast<I32>(static_cast<U32>(Offset) * static_cast<U32>(Scale));
}

ELF_SYM_LOC Location(U32 Type, U32 Reg, I32 Offset) {
  ELF_SYM_LOC Loc;
  Loc.Type = Type;
  Loc.Reg = Reg;
  Loc.Offset = Offset;
  return Loc;
}

}  // namespace

ELF_SYM_LOC CFrameTable::Unsupported(const char* sMessage) const {
  pSections->SayOnce(sMessage);
  return {};
}

ELF_SYM_LOC CFrameTable::CfaLocation(const CFA_RULE& Rule) const {
  switch (Rule.Kind) {
    case CFA_KIND::RegOffset:
      return Location(ELF_LOC_REG_OFFSET, Rule.Reg, static_cast<I32>(Rule.Offset));
    case CFA_KIND::Expression:
      return Unsupported("LibDwarf: evaluation of 'DW_EXPR_EXPRESSION' not implemented");
    case CFA_KIND::None:
      break;
  }
  return {};
}

ELF_SYM_LOC CFrameTable::RuleLocation(U32 Reg, const FRAME_RULE& Rule) const {
  switch (Rule.Kind) {
    case FRAME_RULE_KIND::SameValue:
      return Location(ELF_LOC_REG, Reg, 0);
    case FRAME_RULE_KIND::Undefined:
      return Location(ELF_LOC_REG, ELF_REG_UNSPECIFIED, 0);
    case FRAME_RULE_KIND::Offset:
      return Location(ELF_LOC_CFA_INDIRECT, 0, Rule.Value);
    case FRAME_RULE_KIND::ValOffset:
      return Location(ELF_LOC_CFA_OFFSET, 0, Rule.Value);
    case FRAME_RULE_KIND::Register:
      return Location(ELF_LOC_REG, static_cast<U32>(Rule.Value), 0);
    case FRAME_RULE_KIND::Expression:
      return Unsupported("LibDwarf: evaluation of 'DW_EXPR_EXPRESSION' not implemented");
    case FRAME_RULE_KIND::ValExpression:
      return Unsupported("LibDwarf: evaluation of 'DW_EXPR_VAL_EXPRESSION' not implemented");
  }
  return {};
}

void CFrameTable::Load(const CDebugSections& Sections, const CElfImage& Image, const CSymbolTable& Symbols) {
  pSections = &Sections;
  const auto Complain = [&Sections](const char* sWhat, const char* sItem, U64 Value) {
    Sections.Complain(sWhat, "CFrameTable::Load", sItem, Value);
  };
  CfaScale = Image.FindSection(WORD_SCALE_SECTION) >= 0 ? WORD_SCALE : 1;
  DebugFrame.bBigEndian = EhFrame.bBigEndian = Image.IsBigEndian();
  const CByteCursor& Bytes = Sections.Bytes(DEBUG_SECTION::Frame);
  DebugFrame.pData = Bytes.Bytes();
  DebugFrame.Size = static_cast<U32>(Bytes.Left());
  CFrameSectionReader(aCies, aFdes, Complain).Read(DebugFrame);
  const auto IsDropped = [&Symbols](const FRAME_FDE& Fde) { return Symbols.IsDropped(Fde.Low, Fde.High); };
  std::erase_if(aFdes, IsDropped);
  SortFrom(0);

  const I32 EhIndex = Image.FindSection(".eh_frame");
  const U8* pEhData = EhIndex >= 0 ? Image.SectionData(static_cast<U32>(EhIndex)) : nullptr;
  if (!pEhData) return;
  const ELF_SECTION& Section = Image.Sections()[static_cast<U32>(EhIndex)];
  EhFrame.pData = pEhData;
  EhFrame.Size = Section.Size;
  EhFrame.Addr = Section.Addr;
  EhFrame.bEh = true;
  EhFrame.ReadWord = [&Image](U32 Addr) -> std::optional<U32> {
    const U8* pWord = Image.ReadImage(Addr, Addr + static_cast<U32>(sizeof(U32)));
    return pWord ? std::optional<U32>(Image.Load<U32>(pWord)) : std::nullopt;
  };
  const size_t NumDebug = aFdes.size();
  CFrameSectionReader(aCies, aFdes, Complain).Read(EhFrame);
  const auto IsOfNoUse = [&](const FRAME_FDE& Fde) { return IsDropped(Fde) || Find(Fde.Low) != nullptr; };
  aFdes.erase(std::remove_if(aFdes.begin() + static_cast<std::ptrdiff_t>(NumDebug), aFdes.end(), IsOfNoUse),
              aFdes.end());
  SortFrom(NumDebug);
}

void CFrameTable::SortFrom(size_t First) {
  for (size_t i = First; i < aFdes.size(); ++i) {
    if (aFdes[i].Low < aFdes[i].High) aByLow.push_back(static_cast<U32>(i));
  }
  std::sort(aByLow.begin(), aByLow.end(), [this](U32 A, U32 B) {
    if (aFdes[A].Low != aFdes[B].Low) return aFdes[A].Low < aFdes[B].Low;
    return aFdes[A].High != aFdes[B].High ? aFdes[A].High > aFdes[B].High : A < B;
  });
  const auto SameStart = [this](U32 A, U32 B) { return aFdes[A].Low == aFdes[B].Low; };
  aByLow.erase(std::unique(aByLow.begin(), aByLow.end(), SameStart), aByLow.end());
}

const FRAME_FDE* CFrameTable::Find(U32 PC) const {
  const auto Above =
      std::upper_bound(aByLow.begin(), aByLow.end(), PC, [this](U32 Addr, U32 i) { return Addr < aFdes[i].Low; });
  if (Above == aByLow.begin()) return nullptr;
  const FRAME_FDE& Fde = aFdes[*std::prev(Above)];
  return PC < Fde.High ? &Fde : nullptr;
}

bool CFrameTable::RowAt(const FRAME_FDE& Fde, U32 PC, FRAME_ROW& Row) const {
  if (RunFrameProgram(SectionOf(Fde), aCies[Fde.Cie], Fde, PC, Row)) return true;
  pSections->Complain("frame program is damaged", "CFrameTable::RowAt", "pc", Fde.Low);
  return false;
}

U32 CFrameTable::Rules(U32 PC, U32 NumRegs, ELF_SYM_LOC* paRegs) const {
  const FRAME_FDE* pFde = Find(PC);
  FRAME_ROW Row;
  if (!pFde || !RowAt(*pFde, PC, Row)) return 0;
  const U32 NumRows = std::min(NumRegs, NUM_FRAME_REGS);
  for (U32 Reg = 0; Reg < NumRows; ++Reg) {
    paRegs[Reg] = Reg == ELF_CFI_SP ? CfaLocation(Row.Cfa) : RuleLocation(Reg, Row.Rule(Reg));
  }
  if (NumRows > ELF_CFI_SP) paRegs[ELF_CFI_SP].Offset = Scaled(paRegs[ELF_CFI_SP].Offset, CfaScale);
  return NumRows;
}

ELF_SYM_LOC CFrameTable::Cfa(U32 PC) const {
  if (PC != 0 && PC == LastCfaPc) return LastCfa;
  const FRAME_FDE* pFde = Find(PC);
  FRAME_ROW Row;
  if (!pFde || !RowAt(*pFde, PC, Row)) return {};
  LastCfa = CfaLocation(Row.Cfa);
  LastCfaPc = PC;
  return LastCfa;
}

I32 CFrameTable::FrameSize(U32 PC) const {
  const FRAME_FDE* pFde = Find(PC);
  return pFde ? static_cast<I32>(GreatestCfaOffset(SectionOf(*pFde), aCies[pFde->Cie], *pFde)) : -1;
}
