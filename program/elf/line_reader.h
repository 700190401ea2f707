#pragma once

#include <unordered_map>

#include "program/elf/die.h"
#include "program/elf/line_program.h"
#include "program/elf/source_table.h"

// Decodes the line tables of units into a CSourceTable. A table that several units share is decoded once.
class CLineReader {
public:
  CLineReader(const CDieReader& Reader, CSourceTable& Table) : Reader(Reader), Table(Table) {}

  // Position of the file table of the unit with that top entry, -1 if it has none.
  I32 ReadFiles(const CDie& Unit);
  // Appends the rows of the unit's table unless another unit did. A damaged table has none.
  void ReadLines(const CDie& Unit);

private:
  struct TABLE_STATE {
    I32 FileTable = -1;
    bool bFilesRead = false;
    bool bLinesRead = false;
  };

  const CDieReader& Reader;
  CSourceTable& Table;
  std::unordered_map<U32, TABLE_STATE> Tables;  // by offset in .debug_line
  U64 NumBytesRead = 0;                         // of all programs
  U64 NumEntriesRead = 0;                       // directories and files of all headers

  const CDebugSections& Sections() const { return Reader.DebugSections(); }
  TABLE_STATE* StateOf(const CDie& Unit, U32& Offset);
  bool ReadHeader(U32 Offset, LINE_HEADER& Header) const;
  I32 PathOf(const LINE_HEADER& Header, const LINE_FILE& File, const std::string& sCompDir);
  void AppendRows(const LINE_HEADER& Header, I32 FileTable, const std::string& sCompDir);
  void Complain(const DWARF_DAMAGE& Damage) const {
    Sections().Complain(Damage.sWhat, "CLineReader", Damage.sItem, Damage.Value);
  }
};
