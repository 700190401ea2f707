#pragma once

#include <unordered_map>

#include "program/elf/die.h"
#include "program/elf/source_table.h"

// Decodes the line tables of units into a CSourceTable. A table that several units share is decoded once.
class CLineReader {
public:
  CLineReader(const CDieReader& Reader, CSourceTable& Table) : Reader(Reader), Table(Table) {}

  // Position of the file table of the unit with that top entry, -1 if it has none.
  I32 ReadFiles(const CDie& Unit);
  // Appends the rows of the unit's table unless another unit did.
  void ReadLines(const CDie& Unit);

private:
  struct TABLE_STATE {
    I32 FileTable = -1;
    bool bLinesRead = false;
  };

  const CDieReader& Reader;
  CSourceTable& Table;
  std::unordered_map<U32, TABLE_STATE> Tables;  // by offset in .debug_line

  TABLE_STATE* StateOf(const CDie& Unit, U32& Offset);
  void DecodeFiles(Dwarf_Line_Context pContext, TABLE_STATE& State);
  void AppendRow(Dwarf_Line pLine, I32 FileTable);
};
