#include "program/database/elf_symbol_index.h"

#include <algorithm>

#include "program/database/core_link.h"
#include "program/elf/elf.h"

namespace {

constexpr I32 FIRST_RESERVED_SECTION = 0xFF00;
constexpr U32 SECTION_EXECUTABLE = 4;

// What a symbol's name begins with that the linker or the compiler made up.
bool IsMadeUpName(const char* sName) {
  return sName && (*sName == '?' || *sName == '$');
}

bool IsInCode(const ELF_FILE* pElf, ELF_SYM_HANDLE Sym) {
  const I32 Section = ELF_GetSectionIndex(Sym);
  if (Section <= 0) return false;
  if (Section >= FIRST_RESERVED_SECTION) return true;
  return (ELF_GetSectionFlags(pElf, static_cast<U32>(Section)) & SECTION_EXECUTABLE) != 0;
}

// Order of the symbols at one address.
int Rank(ELF_SYM_HANDLE Sym) {
  if (IsMadeUpName(ELF_GetName(Sym))) return 2;
  return IsElfFuncSymbol(Sym) ? 0 : 1;
}

}  // namespace

bool IsElfFuncSymbol(ELF_SYM_HANDLE Sym) {
  if (ELF_GetHandleKind(Sym) != ELF_HANDLE_SYMBOL) return false;
  const U32 Type = ELF_GetTag(Sym);
  return Type == ELF_SYMBOL_FUNC || Type == ELF_SYMBOL_THUMB_FUNC;
}

U32 ElfSymbolAddr(ELF_SYM_HANDLE Sym) {
  const U32 Value = ELF_GetValue(Sym);
  return IsElfFuncSymbol(Sym) ? AlignedToInst(Value) : Value;
}

U32 LowestFuncAddr(const ELF_FILE* pElf) {
  U32 Lowest = INVALID_ADDR;
  for (U32 i = 0; i < ELF_GetNumSymbols(pElf); ++i) {
    const ELF_SYM_HANDLE Sym = ELF_GetSymbolHandle(pElf, i);
    if (IsElfFuncSymbol(Sym) && ELF_GetValue(Sym) != 0) Lowest = std::min(Lowest, ElfSymbolAddr(Sym));
  }
  return Lowest == INVALID_ADDR ? 0 : Lowest;
}

void CElfSymbolIndex::AddCodeSymbol(ELF_SYM_HANDLE Sym) {
  const char* sName = ELF_GetName(Sym);
  if (!sName || !*sName) return;
  m_AllSymbols.append(Sym);
  m_ByAddr[ElfSymbolAddr(Sym)].append(Sym);
  if (IsElfFuncSymbol(Sym) && !IsMadeUpName(sName)) m_FuncSymbols.append(Sym);
}

void CElfSymbolIndex::Build(const ELF_FILE* pElf) {
  for (U32 i = 0; i < ELF_GetNumSymbols(pElf); ++i) {
    const ELF_SYM_HANDLE Sym = ELF_GetSymbolHandle(pElf, i);
    const U32 Type = ELF_GetTag(Sym);
    // Neither names an address.
    if (Sym == 0 || Type == ELF_SYMBOL_FILE || Type == ELF_SYMBOL_SECTION) continue;
    if (IsInCode(pElf, Sym)) AddCodeSymbol(Sym);
  }
  for (ELF_SYM_LIST& Symbols : m_ByAddr) {
    std::stable_sort(Symbols.begin(), Symbols.end(),
                     [](ELF_SYM_HANDLE A, ELF_SYM_HANDLE B) { return Rank(A) < Rank(B); });
  }
}
