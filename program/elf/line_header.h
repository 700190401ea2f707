#pragma once

#include <vector>

#include "program/elf/unit_header.h"

struct LINE_FILE {
  const char* sName = nullptr;  // lives in the file; null where a table names it in a way that is not read
  U64 Dir = 0;
};

// Sections that a line table and its texts stand in.
struct LINE_SECTIONS {
  CByteCursor Line;     // .debug_line
  CByteCursor LineStr;  // .debug_line_str
  CByteCursor Str;      // .debug_str
};

// Directories or files of a table; more are damage.
inline constexpr size_t MAX_LINE_FILES = 1 << 20;

// What stands in front of a line program.
struct LINE_HEADER {
  U32 Version = 0;
  bool b64 = false;  // offsets of 8 bytes
  U32 MinInstLength = 1;
  U32 MaxOps = 1;  // operations of an instruction; more than 1 where addresses have an index of operations
  bool bIsStmt = false;
  I32 LineBase = 0;
  U32 LineRange = 0;
  U32 OpcodeBase = 0;
  const U8* pOpcodeLengths = nullptr;  // operands of the opcodes from 1 up to OpcodeBase
  std::vector<const char*> aDirs;      // by their numbers; number 0 is the directory of compilation
  std::vector<LINE_FILE> aFiles;
  U32 FirstFile = 1;  // number of the first one
  CByteCursor Program;
};

// Reads the header at that offset of .debug_line, of versions 2 to 5. No count of it is trusted: each directory and
// file takes bytes of the header.
DWARF_DAMAGE ReadLineHeader(const LINE_SECTIONS& Sections, U64 Offset, LINE_HEADER& Header);
