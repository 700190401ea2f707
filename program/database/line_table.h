#pragma once

#include <QHash>
#include <functional>
#include <vector>

#include "base/addr_range.h"
#include "program/database/file_table.h"

// One row of the line table.
struct LINE_ENTRY {
  U32 Addr = 0;
  FILE_INDEX File = -1;
  U32 Line = 0;
  U32 Column = 0;

  bool IsSameLine(const LINE_ENTRY& Other) const { return File == Other.File && Line == Other.Line; }
};

// Addresses to lines and back. Filled once, then asked.
class CLineTable {
public:
  void Clear();
  void Reserve(size_t NumEntries) { m_Entries.reserve(NumEntries); }
  void Add(const LINE_ENTRY& Entry) { m_Entries.push_back(Entry); }
  // Sorts by address; entries at one address stay in the order of adding.
  void Sort();
  // Removes the entries for which the test holds. To be called between Sort and BuildIndex.
  void Remove(const std::function<bool(const LINE_ENTRY&)>& IsUnwanted);
  // Keeps the entry added first where several have one address.
  void BuildIndex();

  // All entries by ascending address.
  const std::vector<LINE_ENTRY>& Entries() const { return m_Entries; }
  // Entry at exactly this address, the nearest one not above it, below it and above it; null if there is none.
  const LINE_ENTRY* At(U32 Addr) const;
  const LINE_ENTRY* AtOrBelow(U32 Addr) const;
  const LINE_ENTRY* Below(U32 Addr) const;
  const LINE_ENTRY* Above(U32 Addr) const;
  // Addresses of a line, ascending.
  QAddrList AddrsOf(FILE_INDEX File, U32 Line) const;
  bool HasLine(FILE_INDEX File, U32 Line) const { return m_ByLine.contains(KeyOf(File, Line)); }
  // Nearest line of the file with code above or below Line; -1 if there is none.
  I64 NextLine(FILE_INDEX File, U32 Line) const;
  I64 PrevLine(FILE_INDEX File, U32 Line) const;

private:
  struct RUN {
    U32 First = 0;
    U32 Count = 0;
  };

  static U64 KeyOf(FILE_INDEX File, U32 Line) { return static_cast<U64>(static_cast<U32>(File)) << 32 | Line; }

  std::vector<LINE_ENTRY> m_Entries;
  std::vector<U32> m_BlockAddrs;  // the first address of every block of entries
  std::vector<U64> m_LineKeys;    // distinct lines, sorted
  QHash<U64, RUN> m_ByLine;       // line to its part of m_LineAddrs
  std::vector<U32> m_LineAddrs;
};
