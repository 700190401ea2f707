#pragma once

#include <QHash>
#include <QString>

#include "base/types.h"

// Finished disassembly texts by address. A text answers only for the same bytes, mode and IT state, so code that
// changes in RAM is decoded anew. No lock.
class CTextCache {
public:
  struct KEY {
    U32 Word = 0;  // the bytes at the address, as read
    U8 NumBytes = 0;
    U8 Mode = 0;
    U8 ITState = 0;
    bool operator==(const KEY&) const = default;
  };
  struct ENTRY {
    KEY Key;
    U32 Length = 0;  // bytes
    U8 NextITState = 0;
    QString sText;
  };

  // Null if there is no text for this address and key; the pointer lives until the next Store or Clear.
  const ENTRY* Find(U32 Addr, const KEY& Key) const {
    const auto Entry = Entries.constFind(Addr);
    return Entry != Entries.constEnd() && Entry->Key == Key ? &*Entry : nullptr;
  }
  void Store(U32 Addr, const ENTRY& Entry) {
    if (Entries.size() >= MAX_ENTRIES) Entries.clear();
    Entries.insert(Addr, Entry);
  }
  void Clear() { Entries.clear(); }

private:
  static constexpr qsizetype MAX_ENTRIES = 1 << 16;
  QHash<U32, ENTRY> Entries;
};
