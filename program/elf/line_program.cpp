#include "program/elf/line_program.h"

#include <algorithm>

namespace {

constexpr U32 MAX_OPCODE = 255;

enum STANDARD_OPCODE : U32 {
  LNS_EXTENDED = 0,
  LNS_COPY = 1,
  LNS_ADVANCE_PC = 2,
  LNS_ADVANCE_LINE = 3,
  LNS_SET_FILE = 4,
  LNS_SET_COLUMN = 5,
  LNS_NEGATE_STMT = 6,
  LNS_SET_BASIC_BLOCK = 7,
  LNS_CONST_ADD_PC = 8,
  LNS_FIXED_ADVANCE_PC = 9,
  LNS_SET_PROLOGUE_END = 10,
  LNS_SET_EPILOGUE_BEGIN = 11,
  LNS_SET_ISA = 12,
};

// Operands of the opcodes above. A table that says otherwise means something else by the opcode.
constexpr U8 aNumOperands[] = {0, 0, 1, 1, 1, 1, 0, 0, 0, 1, 0, 0, 1};

enum EXTENDED_OPCODE : U32 {
  LNE_END_SEQUENCE = 1,
  LNE_SET_ADDRESS = 2,
  LNE_DEFINE_FILE = 3,
};

}  // namespace

CLineProgram::CLineProgram(const LINE_HEADER& Header) : Header(Header), Bytes(Header.Program) {
  Reset();
  if (Bytes.More() && Header.LineRange == 0) Refuse("line table without range of lines", "line_range", 0);
}

void CLineProgram::Reset() {
  State = {};
  State.bIsStmt = Header.bIsStmt;
}

void CLineProgram::Emit(LINE_ROW& Row) {
  Row = State;
  State.bPrologueEnd = false;
}

bool CLineProgram::Next(LINE_ROW& Row) {
  while (Bytes.More()) {
    const U64 At = Bytes.Position();
    const U32 Opcode = static_cast<U32>(Bytes.Int<U8>());
    bool bRow = true;
    if (Opcode >= Header.OpcodeBase) {
      RunSpecial(Opcode);
    } else if (Opcode == LNS_EXTENDED) {
      bRow = RunExtended();
    } else {
      bRow = RunStandard(Opcode);
    }
    if (!Bytes.Ok()) {
      if (!Wrong.sWhat) Refuse("operand outside the line program", "opcode at", At);
      return false;
    }
    if (!bRow) continue;
    Emit(Row);
    if (State.bEndSequence) Reset();
    return true;
  }
  return false;
}

void CLineProgram::Advance(U64 NumOps) {
  if (Header.MaxOps <= 1) {
    State.Addr += Header.MinInstLength * NumOps;
    return;
  }
  const U64 Index = State.OpIndex + NumOps;
  State.Addr += Header.MinInstLength * (Index / Header.MaxOps);
  State.OpIndex = static_cast<U32>(Index % Header.MaxOps);
}

void CLineProgram::RunSpecial(U32 Opcode) {
  const U32 Adjusted = Opcode - Header.OpcodeBase;
  Advance(Adjusted / Header.LineRange);
  State.Line += static_cast<U32>(Header.LineBase + static_cast<I32>(Adjusted % Header.LineRange));
}

void CLineProgram::SkipOperands(U32 Opcode) {
  for (U32 i = Header.pOpcodeLengths[Opcode - 1]; i != 0 && Bytes.Ok(); --i) Bytes.Leb();
}

// True where the opcode appends a row.
bool CLineProgram::RunStandard(U32 Opcode) {
  if (Opcode >= std::size(aNumOperands) || Header.pOpcodeLengths[Opcode - 1] != aNumOperands[Opcode]) {
    SkipOperands(Opcode);
    return false;
  }
  switch (Opcode) {
    case LNS_COPY:
      return true;
    case LNS_ADVANCE_PC:
      Advance(Bytes.Leb());
      break;
    case LNS_ADVANCE_LINE:
      State.Line += static_cast<U32>(Bytes.Sleb());
      break;
    case LNS_SET_FILE:
      State.File = Bytes.Leb();
      break;
    case LNS_SET_COLUMN:
      State.Column = Bytes.Leb();
      break;
    case LNS_NEGATE_STMT:
      State.bIsStmt = !State.bIsStmt;
      break;
    case LNS_CONST_ADD_PC:
      Advance((MAX_OPCODE - Header.OpcodeBase) / Header.LineRange);
      break;
    case LNS_FIXED_ADVANCE_PC:
      State.Addr += Bytes.Int<U16>();
      State.OpIndex = 0;
      break;
    case LNS_SET_PROLOGUE_END:
      State.bPrologueEnd = true;
      break;
    case LNS_SET_ISA:
      Bytes.Leb();
      break;
    default:  // basic blocks and epilogues have no place in a row
      break;
  }
  return false;
}

bool CLineProgram::RunExtended() {
  const U64 Length = Bytes.Leb();
  if (Length == 0) {
    Refuse("extended opcode without bytes", "length", Length);
    return false;
  }
  CByteCursor Operands = Bytes.Take(Length);
  switch (Operands.Int<U8>()) {
    case LNE_END_SEQUENCE:
      State.bEndSequence = true;
      return true;
    case LNE_SET_ADDRESS:
      State.Addr = Operands.UInt(static_cast<U32>(std::min<U64>(Length - 1, sizeof(U64) + 1)));
      State.OpIndex = 0;
      if (Bytes.Ok() && !Operands.Ok()) Refuse("address of an unknown size", "length", Length);
      return false;
    case LNE_DEFINE_FILE: {
      const char* sName = Operands.Text();
      aDefined.push_back({sName, Operands.Leb()});
      if (aDefined.size() > MAX_LINE_FILES) Refuse("too many files", "files", MAX_LINE_FILES);
      if (Bytes.Ok() && !Operands.Ok()) Refuse("file outside its opcode", "length", Length);
      return false;
    }
    default:  // discriminators, and opcodes of compilers' own
      return false;
  }
}
