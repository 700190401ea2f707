#include "program/database/addr_index.h"

#include "program/database/elfapi.h"

ELF_SYM_LIST CAddrIndex::Find(U32 Addr, const ELF_SYM_LIST& Symbols) {
  if (!m_Index) {
    m_Index.emplace();
    for (const ELF_SYM_HANDLE Sym : Symbols) {
      const U32 SymAddr = ELFAPI_GetAddr(Sym);
      if (SymAddr != INVALID_ADDR) (*m_Index)[SymAddr].append(Sym);
    }
  }
  return m_Index->value(Addr);
}
