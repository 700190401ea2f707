#include "program/database/line_table.h"

#include <algorithm>

namespace {

constexpr size_t BLOCK_SIZE = 64;  // entries

}  // namespace

void CLineTable::Clear() {
  *this = CLineTable();
}

void CLineTable::Sort() {
  std::stable_sort(m_Entries.begin(), m_Entries.end(),
                   [](const LINE_ENTRY& A, const LINE_ENTRY& B) { return A.Addr < B.Addr; });
}

void CLineTable::Remove(const std::function<bool(const LINE_ENTRY&)>& IsUnwanted) {
  std::erase_if(m_Entries, IsUnwanted);
}

void CLineTable::BuildIndex() {
  const auto itEnd = std::unique(m_Entries.begin(), m_Entries.end(),
                                 [](const LINE_ENTRY& A, const LINE_ENTRY& B) { return A.Addr == B.Addr; });
  m_Entries.erase(itEnd, m_Entries.end());
  for (size_t i = 0; i < m_Entries.size(); i += BLOCK_SIZE) m_BlockAddrs.push_back(m_Entries[i].Addr);
  struct KEYED {
    U64 Key;
    U32 Addr;
  };
  std::vector<KEYED> Sorted;
  Sorted.reserve(m_Entries.size());
  for (const LINE_ENTRY& Entry : m_Entries) {
    Sorted.push_back({KeyOf(Entry.File, Entry.Line), Entry.Addr});
  }
  std::stable_sort(Sorted.begin(), Sorted.end(), [](const KEYED& A, const KEYED& B) { return A.Key < B.Key; });
  m_LineAddrs.reserve(Sorted.size());
  for (const KEYED& Item : Sorted) {
    RUN& Run = m_ByLine[Item.Key];
    if (Run.Count++ == 0) {
      Run.First = static_cast<U32>(m_LineAddrs.size());
      m_LineKeys.push_back(Item.Key);
    }
    m_LineAddrs.push_back(Item.Addr);
  }
}

const LINE_ENTRY* CLineTable::AtOrBelow(U32 Addr) const {
  // The few addresses of the blocks stay in the processor's cache.
  const auto itBlock = std::upper_bound(m_BlockAddrs.begin(), m_BlockAddrs.end(), Addr);
  if (itBlock == m_BlockAddrs.begin()) return nullptr;
  const size_t First = static_cast<size_t>(itBlock - m_BlockAddrs.begin() - 1) * BLOCK_SIZE;
  const auto itFirst = m_Entries.begin() + static_cast<std::ptrdiff_t>(First);
  const auto itEnd = itFirst + static_cast<std::ptrdiff_t>(std::min(BLOCK_SIZE, m_Entries.size() - First));
  const auto it =
      std::upper_bound(itFirst, itEnd, Addr, [](U32 Value, const LINE_ENTRY& Entry) { return Value < Entry.Addr; });
  return &*std::prev(it);
}

const LINE_ENTRY* CLineTable::At(U32 Addr) const {
  const LINE_ENTRY* pEntry = AtOrBelow(Addr);
  return pEntry && pEntry->Addr == Addr ? pEntry : nullptr;
}

const LINE_ENTRY* CLineTable::Below(U32 Addr) const {
  return Addr == 0 ? nullptr : AtOrBelow(Addr - 1);
}

const LINE_ENTRY* CLineTable::Above(U32 Addr) const {
  const auto it = std::upper_bound(m_Entries.begin(), m_Entries.end(), Addr,
                                   [](U32 Value, const LINE_ENTRY& Entry) { return Value < Entry.Addr; });
  return it == m_Entries.end() ? nullptr : &*it;
}

QAddrList CLineTable::AddrsOf(FILE_INDEX File, U32 Line) const {
  const RUN Run = m_ByLine.value(KeyOf(File, Line));
  const auto itFirst = m_LineAddrs.begin() + Run.First;
  return QAddrList(itFirst, itFirst + Run.Count);
}

I64 CLineTable::NextLine(FILE_INDEX File, U32 Line) const {
  const auto it = std::upper_bound(m_LineKeys.begin(), m_LineKeys.end(), KeyOf(File, Line));
  if (it == m_LineKeys.end() || *it >> 32 != static_cast<U32>(File)) return -1;
  return static_cast<U32>(*it);
}

I64 CLineTable::PrevLine(FILE_INDEX File, U32 Line) const {
  const auto it = std::lower_bound(m_LineKeys.begin(), m_LineKeys.end(), KeyOf(File, Line));
  if (it == m_LineKeys.begin() || *std::prev(it) >> 32 != static_cast<U32>(File)) return -1;
  return static_cast<U32>(*std::prev(it));
}
