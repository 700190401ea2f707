#pragma once

#include "program/elf/line_header.h"

// One row of a line table: what stands at an address, up to the next row.
struct LINE_ROW {
  U64 Addr = 0;
  U32 OpIndex = 0;
  U32 Line = 1;
  U64 File = 1;  // a number of the header's table
  U64 Column = 0;
  bool bIsStmt = false;
  bool bPrologueEnd = false;
  bool bEndSequence = false;  // the first address behind the code
};

// Runs the program of a line table.
class CLineProgram {
public:
  // The header must outlive the program.
  explicit CLineProgram(const LINE_HEADER& Header);

  // False behind the last row, and at damage.
  bool Next(LINE_ROW& Row);
  const DWARF_DAMAGE& Damage() const { return Wrong; }
  // Files that the program itself has named up to here; they follow those of the header.
  const std::vector<LINE_FILE>& DefinedFiles() const { return aDefined; }

private:
  const LINE_HEADER& Header;
  CByteCursor Bytes;
  LINE_ROW State;
  std::vector<LINE_FILE> aDefined;
  DWARF_DAMAGE Wrong;

  void Reset();
  void Refuse(const char* sWhat, const char* sItem, U64 Value) {
    Wrong = {sWhat, sItem, Value};
    Bytes.Spoil();
  }
  void Emit(LINE_ROW& Row);
  void Advance(U64 NumOps);
  void RunSpecial(U32 Opcode);
  bool RunStandard(U32 Opcode);
  bool RunExtended();
  void SkipOperands(U32 Opcode);
};
