#pragma once

#include "base/elf_sym.h"
#include "program/elf/debug_sections.h"
#include "program/elf/frame_program.h"
#include "program/elf/symbol_table.h"

// The call frame information of a file: .debug_frame and, for code that has none there, .eh_frame. Addresses are those
// in the file.
class CFrameTable {
public:
  // Entries of code that the linker dropped are left out. Sections and image must outlive the table.
  void Load(const CDebugSections& Sections, const CElfImage& Image, const CSymbolTable& Symbols);

  const std::vector<FRAME_FDE>& Entries() const { return aFdes; }
  // By the first common information entry, 0 without one.
  U32 ReturnRegister() const { return aCies.empty() ? 0 : aCies[0].ReturnReg; }

  // Rules at PC for registers 0 to NumRegs - 1; the number of those written, 0 where nothing is known.
  U32 Rules(U32 PC, U32 NumRegs, ELF_SYM_LOC* paRegs) const;
  // Canonical frame address at PC, empty where it is not known.
  ELF_SYM_LOC Cfa(U32 PC) const;
  // Greatest distance of the canonical frame address from its register in the function at PC, -1 without entry.
  I32 FrameSize(U32 PC) const;

private:
  const CDebugSections* pSections = nullptr;
  FRAME_SECTION DebugFrame;
  FRAME_SECTION EhFrame;
  std::vector<FRAME_CIE> aCies;
  std::vector<FRAME_FDE> aFdes;  // in file order
  std::vector<U32> aByLow;       // positions in aFdes by ascending start, the longest of each start
  I32 CfaScale = 1;
  mutable U32 LastCfaPc = 0;  // 0: none
  mutable ELF_SYM_LOC LastCfa;

  void SortFrom(size_t First);
  const FRAME_FDE* Find(U32 PC) const;
  // The rules at PC by an entry; false where its program is damaged.
  bool RowAt(const FRAME_FDE& Fde, U32 PC, FRAME_ROW& Row) const;
  ELF_SYM_LOC CfaLocation(const CFA_RULE& Rule) const;
  ELF_SYM_LOC RuleLocation(U32 Reg, const FRAME_RULE& Rule) const;
  ELF_SYM_LOC Unsupported(const char* sMessage) const;
  const FRAME_SECTION& SectionOf(const FRAME_FDE& Fde) const { return aCies[Fde.Cie].bEh ? EhFrame : DebugFrame; }
};
