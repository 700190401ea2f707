#pragma once

#include <initializer_list>
#include <memory>
#include <vector>

#include "core/decoder/inst_row.h"
#include "core/decoder/text_template.h"

// One row with its text template taken apart.
struct TABLE_ENTRY {
  const INST_ROW* pRow;
  CTextTemplate Template;
};

// Decode tables made ready for look-up: rows are spread over buckets by some bits of the word, so that a look-up tries
// a handful of rows. Constant after construction, so any thread may look up.
class CRowTable {
public:
  // IndexLow and IndexWidth say which bits of the word select the bucket. The order of the spans is the order of trial.
  CRowTable(std::initializer_list<std::span<const INST_ROW>> Spans, U32 IndexLow, U32 IndexWidth);
  const TABLE_ENTRY* Find(U32 Word, U32 ArchVersion) const;
  const std::vector<std::unique_ptr<TABLE_ENTRY>>& Entries() const { return aEntry; }

private:
  void Spread(const TABLE_ENTRY& Entry);

  U32 Low;
  U32 NumBuckets;
  std::vector<std::unique_ptr<TABLE_ENTRY>> aEntry;
  std::vector<std::vector<const TABLE_ENTRY*>> aBucket;
};

// The tables of the Thumb decoder.
const CRowTable& Thumb16Table();
const CRowTable& Thumb32Table();
