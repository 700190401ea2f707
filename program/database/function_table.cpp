#include "program/database/function_table.h"

#include <QSet>
#include <map>

#include "program/database/core_link.h"
#include "program/database/elf_symbol_index.h"
#include "program/elf/elf.h"
#include "program/elf/elf_dwarf_names.h"

namespace {

// The function that holds a start address so far.
struct CANDIDATE {
  U32 Size = 0;
  ELF_SYM_HANDLE Func = 0;
};

using CANDIDATES = std::map<U32, CANDIDATE>;

void Compete(CANDIDATES& Candidates, U32 Start, U32 Size, ELF_SYM_HANDLE Func) {
  const auto [it, bIsNew] = Candidates.try_emplace(Start, CANDIDATE{Size, Func});
  if (bIsNew) return;
  // An alias without size reaches over the padding behind the function, which says more of itself.
  const bool bDerived = ELF_IsSizeDerived(Func);
  const bool bReplaces = bDerived == ELF_IsSizeDerived(it->second.Func) ? Size > it->second.Size : !bDerived;
  if (bReplaces) it->second = {Size, Func};
}

// The abstract entries behind a function's own: they would stand for it a second time.
void AddOrigins(QSet<ELF_SYM_HANDLE>& Origins, ELF_SYM_HANDLE Func) {
  if (ELF_GetHandleKind(Func) != ELF_HANDLE_DWARF) return;
  for (ELF_SYM_HANDLE Origin = ELF_GetAbstractOrigin(Func); Origin != 0 && !Origins.contains(Origin);
       Origin = ELF_GetAbstractOrigin(Origin)) {
    Origins.insert(Origin);
  }
}

QAddrRanges ElfSymbolRanges(ELF_SYM_HANDLE Sym) {
  const CAddrRange Range{ElfSymbolAddr(Sym), ELF_GetSize(Sym)};
  return Range.IsNone() ? QAddrRanges() : QAddrRanges{Range};
}

// The function around an instance. Known has that around the scopes met before: many instances may stand deep in one.
ELF_SYM_HANDLE FuncAround(ELF_SYM_HANDLE Instance, QHash<ELF_SYM_HANDLE, ELF_SYM_HANDLE>& Known) {
  ELF_SYM_LIST Scopes;
  ELF_SYM_HANDLE Func = ELF_GetParent(Instance);
  for (; Func != 0 && ELF_GetTag(Func) != ELF_TAG_FUNC && !Known.contains(Func); Func = ELF_GetParent(Func)) {
    Scopes.append(Func);
  }
  Func = Known.value(Func, Func);
  for (const ELF_SYM_HANDLE Scope : Scopes) Known.insert(Scope, Func);
  return Func;
}

bool IsDropped(ELF_SYM_HANDLE Func) {
  return Func != 0 && ELF_GetNumRanges(Func) != 0 && CodeRangesOf(Func).isEmpty();
}

}  // namespace

QAddrRanges CodeRangesOf(ELF_SYM_HANDLE Func) {
  if (ELF_GetHandleKind(Func) == ELF_HANDLE_SYMBOL) return ElfSymbolRanges(Func);
  QAddrRanges Ranges;
  const U32 Dropped = ELF_RelocToFile(0, 1, 0);
  for (U32 i = 0; i < ELF_GetNumRanges(Func); ++i) {
    // Assemblers describe their functions with the Thumb bit in the address.
    const U32 ThumbBit = ELF_GetRangeLow(Func, i) - AlignedToInst(ELF_GetRangeLow(Func, i));
    const U32 Low = ELF_GetRangeLow(Func, i) - ThumbBit;
    const U32 High = ELF_GetRangeHigh(Func, i) - ThumbBit;
    if (Low != 0 && Low != Dropped && Low < High) Ranges.append({Low, High - Low});
  }
  return Ranges;
}

void CFunctionTable::BuildInlined(const ELF_SYM_LIST& Instances) {
  // In a function that the linker dropped, the ranges of an instance read as offsets from address 0.
  QHash<ELF_SYM_HANDLE, ELF_SYM_HANDLE> Known;
  ELF_SYM_HANDLE Func = 0;
  bool bIsDropped = false;
  for (const ELF_SYM_HANDLE Instance : Instances) {
    const ELF_SYM_HANDLE Around = FuncAround(Instance, Known);
    if (Around != Func) bIsDropped = IsDropped(Around);
    Func = Around;
    if (bIsDropped) continue;
    m_Inlined.append(Instance);
    m_Instances[ELF_GetAbstractOrigin(Instance)].append(Instance);
  }
}

void CFunctionTable::BuildLists(const ELF_FILE* pElf, const ELF_SYM_LIST& ElfFuncSymbols) {
  CANDIDATES Candidates;
  ELF_SYM_LIST OnlyInlined;
  for (U32 i = 0; i < ELF_GetNumFunctions(pElf); ++i) {
    const ELF_SYM_HANDLE Func = ELF_GetFunction(pElf, i);
    const QAddrRanges Ranges = CodeRangesOf(Func);
    if (!Ranges.isEmpty()) {
      Compete(Candidates, Ranges.first().Start, Ranges.first().Size, Func);
    } else if (m_Instances.contains(Func)) {
      OnlyInlined.append(Func);
    }
  }
  for (const ELF_SYM_HANDLE Sym : ElfFuncSymbols) Compete(Candidates, ElfSymbolAddr(Sym), ELF_GetSize(Sym), Sym);
  QSet<ELF_SYM_HANDLE> Origins;
  for (const auto& [Start, Candidate] : Candidates) {
    m_Functions.append(Candidate.Func);
    AddOrigins(Origins, Candidate.Func);
  }
  for (const ELF_SYM_HANDLE Func : OnlyInlined) {
    if (!Origins.contains(Func)) m_Functions.append(Func);
  }
}

void CFunctionTable::AddToTree(const ELF_SYM_LIST& Functions) {
  for (const ELF_SYM_HANDLE Func : Functions) {
    const QAddrRanges Ranges = CodeRangesOf(Func);
    if (!Ranges.isEmpty()) m_Starts.append({Func, Ranges.first().Start});
    for (const CAddrRange& Range : Ranges) {
      // The last instruction's second halfword may belong to nothing else, but no instruction starts there.
      m_Tree.Add(Range.Start, Range.Start + (Range.Size > 2 ? Range.Size - 2 : 0), Func);
    }
  }
}

void CFunctionTable::BuildTree() {
  AddToTree(m_Functions);
  AddToTree(m_Inlined);
  m_Tree.Build();
}
