#pragma once

#include <QHash>
#include <optional>

#include "base/elf_sym.h"

// Symbols of one list by address; built when first asked.
class CAddrIndex {
public:
  void Clear() { m_Index.reset(); }
  // Symbols that begin at the address, in the order of the list.
  ELF_SYM_LIST Find(U32 Addr, const ELF_SYM_LIST& Symbols);

private:
  std::optional<QHash<U32, ELF_SYM_LIST>> m_Index;
};
