#pragma once

#include <QHash>

#include "base/addr_range.h"
#include "base/elf_sym.h"
#include "program/database/interval_tree.h"

struct ELF_FILE;

// Code ranges of a function or inlined instance as the reader gives them, the entry's range first; ranges that start at
// 0 belong to code that the linker dropped and are left out.
QAddrRanges CodeRangesOf(ELF_SYM_HANDLE Func);

// The functions of the program and what is inlined in them.
class CFunctionTable {
public:
  void Clear() { *this = CFunctionTable(); }
  // The steps of building, in this order.
  void BuildInlined(const ELF_SYM_LIST& Instances);
  void BuildLists(const ELF_FILE* pElf, const ELF_SYM_LIST& ElfFuncSymbols);
  void BuildTree();

  // Sorted by address; functions that exist only as inlined instances have none and stand last. One that has code of
  // its own, too, stands there once.
  const ELF_SYM_LIST& Functions() const { return m_Functions; }
  // All inlined instances but those in functions that the linker dropped.
  const ELF_SYM_LIST& Inlined() const { return m_Inlined; }
  // Instances of an abstract function.
  ELF_SYM_LIST InstancesOf(ELF_SYM_HANDLE Func) const { return m_Instances.value(Func); }
  // Every function and inlined instance with code, and where it starts.
  struct FUNC_START {
    ELF_SYM_HANDLE Func = 0;
    U32 Addr = 0;
  };
  const QList<FUNC_START>& Starts() const { return m_Starts; }
  // Functions and inlined instances that cover the address, outermost first.
  ELF_SYM_LIST At(U32 Addr) const { return m_Tree.Find(Addr); }

private:
  void AddToTree(const ELF_SYM_LIST& Functions);

  ELF_SYM_LIST m_Functions;
  ELF_SYM_LIST m_Inlined;
  QHash<ELF_SYM_HANDLE, ELF_SYM_LIST> m_Instances;
  QList<FUNC_START> m_Starts;
  CIntervalTree m_Tree;
};
