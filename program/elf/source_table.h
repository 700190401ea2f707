#pragma once

#include <deque>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "base/types.h"

struct SRC_LINE {
  U32 Addr;
  U32 Line;
  I32 File;  // in CSourceTable, -1 for none
  U16 Column;
  U8 Flags;  // ELF_LINE_FLAGS
};

// The source files of a program with the units that name them, and the rows of all line tables.
class CSourceTable {
public:
  // Position of the path, which is appended when it is new; -1 for the names of no file.
  I32 Intern(const std::string& sPath);
  // Notes that the compilation unit with that top entry names the files of a table.
  void AddUnit(I32 FileTable, U32 UnitEntry);
  // One file table of a line program: FirstNumber is the number of its first file, aFiles are positions. Its position.
  I32 AddFileTable(U32 FirstNumber, std::vector<I32> aFiles);
  // Appends a file to a table.
  void AddToFileTable(I32 FileTable, I32 File) { aFileTables[FileTable].aFiles.push_back(File); }
  // File of a number as DW_AT_decl_file and line rows give it, -1 if there is none.
  I32 FileOf(I32 FileTable, I64 Number) const;
  void AddLine(const SRC_LINE& Line) { aLines.push_back(Line); }
  // The run of code that the lines added last are of ends at that address. Marks those of them without code.
  void EndRun(U32 Addr);
  void DropLinesFrom(size_t First) { aLines.resize(First); }

  U32 NumFiles() const { return static_cast<U32>(aFiles.size()); }
  const char* Path(U32 File) const { return File < aFiles.size() ? aFiles[File].sPath.c_str() : nullptr; }
  const std::vector<U32>& UnitsOf(U32 File) const { return aFiles[File].aUnits; }
  const std::vector<SRC_LINE>& Lines() const { return aLines; }

private:
  struct FILE_ENTRY {
    std::string sPath;
    std::vector<U32> aUnits;
  };
  struct FILE_TABLE {
    U32 FirstNumber;
    std::vector<I32> aFiles;
  };

  std::deque<FILE_ENTRY> aFiles;  // a deque, for the hash below points into its texts
  std::unordered_map<std::string_view, I32> FileByPath;
  std::vector<FILE_TABLE> aFileTables;
  std::vector<SRC_LINE> aLines;
  U64 NumPathBytes = 0;
  U64 NumUnitsOfFiles = 0;
};
