#pragma once

#include <QHash>
#include <QString>
#include <functional>
#include <optional>

#include "base/elf_sym.h"

// Symbols of one list by a key such as the name; built when first asked.
template <typename KEY>
class CSymbolIndex {
public:
  void Clear() { m_Index.reset(); }

  // Symbols with that key, in the order of the list. KeyOf gives no value for a symbol that is not to be found.
  template <typename KEY_OF>
  ELF_SYM_LIST Find(const KEY& Key, const ELF_SYM_LIST& Symbols, KEY_OF KeyOf) {
    if (!m_Index) {
      m_Index.emplace();
      for (const ELF_SYM_HANDLE Sym : Symbols) {
        const std::optional<KEY> SymKey = KeyOf(Sym);
        if (SymKey) (*m_Index)[*SymKey].append(Sym);
      }
    }
    return m_Index->value(Key);
  }

private:
  std::optional<QHash<KEY, ELF_SYM_LIST>> m_Index;
};
