#pragma once

#include <QHash>
#include <QString>

#include "base/addr_range.h"
#include "base/elf_sym.h"

struct ELF_FILE;

// The ELF symbols that lie in code, by address.
class CElfSymbolIndex {
public:
  void Clear() { *this = CElfSymbolIndex(); }
  void Build(const ELF_FILE* pElf);

  const ELF_SYM_LIST& AllSymbols() const { return m_AllSymbols; }
  // Function symbols without those whose names begin with "?" or "$".
  const ELF_SYM_LIST& FuncSymbols() const { return m_FuncSymbols; }
  // Symbols at exactly this address: functions first, mapping symbols last.
  ELF_SYM_LIST At(U32 Addr) const { return m_ByAddr.value(Addr); }

private:
  void AddCodeSymbol(ELF_SYM_HANDLE Sym);

  ELF_SYM_LIST m_AllSymbols;
  ELF_SYM_LIST m_FuncSymbols;
  QHash<U32, ELF_SYM_LIST> m_ByAddr;
};

// Address on the target of an ELF symbol, rounded down to the instruction alignment where it is a function.
U32 ElfSymbolAddr(ELF_SYM_HANDLE Sym);
bool IsElfFuncSymbol(ELF_SYM_HANDLE Sym);
// Lowest address of a function symbol, as a floor for line entries; 0 without function symbols.
U32 LowestFuncAddr(const ELF_FILE* pElf);
