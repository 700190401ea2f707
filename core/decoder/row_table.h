#pragma once

#include <initializer_list>
#include <vector>

#include "core/decoder/inst_row.h"
#include "core/decoder/text_template.h"

// One row with its text template taken apart.
struct TABLE_ENTRY {
  const INST_ROW* pRow;
  U8 aMinArch[2];  // first architecture version, by whether it is the M profile
  ROW_ORDER Order;
  CTextTemplate Template;
};

// Rows of one file.
struct ROW_SET {
  std::span<const INST_ROW> Rows;
  U8 MinArch = 0;                      // first architecture version in which this table has any of them
  ROW_ORDER Order = ROW_SPECIAL_CASE;  // how all of them stand to the rows of later sets
};

// Bits of the word that take part in the choice of a bucket.
struct INDEX_FIELD {
  U32 Low = 0;
  U32 Width = 0;
};

// Decode tables made ready for look-up: rows are spread over buckets by some bits of the word, so that a look-up tries
// a handful of rows. Constant after construction, so any thread may look up.
class CRowTable {
public:
  // The order of the sets and of the rows in them is the order of trial.
  CRowTable(std::initializer_list<ROW_SET> Sets, INDEX_FIELD High, INDEX_FIELD Low);
  // Null when no row of this architecture version and profile matches.
  const TABLE_ENTRY* Find(U32 Word, U32 ArchVersion, bool bMProfile) const {
    const SLOT* pSlot = &aSlot[aFirstSlot[IndexOf(Word)]];
    while ((Word & pSlot->Mask) != pSlot->Value || ArchVersion < pSlot->aMinArch[bMProfile]) ++pSlot;
    return pSlot->Entry != NO_ENTRY ? &aEntry[pSlot->Entry] : nullptr;
  }
  const std::vector<TABLE_ENTRY>& Entries() const { return aEntry; }

private:
  static constexpr U16 NO_ENTRY = 0xFFFF;

  struct SLOT {
    U32 Mask;
    U32 Value;
    U16 Entry;
    U8 aMinArch[2];
  };

  U32 IndexOf(U32 Word) const {
    return (Word >> High.Low & ((1u << High.Width) - 1)) << Low.Width | (Word >> Low.Low & ((1u << Low.Width) - 1));
  }
  void FillBuckets();

  INDEX_FIELD High;
  INDEX_FIELD Low;
  std::vector<TABLE_ENTRY> aEntry;
  std::vector<SLOT> aSlot;      // the rows of each bucket, then one that matches everything and has no entry
  std::vector<U16> aFirstSlot;  // of each bucket; buckets with the same rows share them
};

const CRowTable& Thumb16Table();
const CRowTable& Thumb32Table();
const CRowTable& SimdTable();
// Words whose condition is not 15 are looked up with the condition "always".
const CRowTable& ArmTable();
