#include "program/elf/frame_ops.h"

#include <array>

namespace {

enum class OPERANDS : U8 { Unknown, None, U8, U16, U32, U64, Leb, Sleb, LebLeb, LebSleb, Expr, LebExpr };

struct OPERANDS_ROW {
  U8 Op;
  OPERANDS Operands;
};

constexpr OPERANDS_ROW aRows[] = {
    {CFA_NOP, OPERANDS::None},
    {CFA_SET_LOC, OPERANDS::None},
    {CFA_ADVANCE_LOC1, OPERANDS::U8},
    {CFA_ADVANCE_LOC2, OPERANDS::U16},
    {CFA_ADVANCE_LOC4, OPERANDS::U32},
    {CFA_OFFSET_EXTENDED, OPERANDS::LebLeb},
    {CFA_RESTORE_EXTENDED, OPERANDS::Leb},
    {CFA_UNDEFINED, OPERANDS::Leb},
    {CFA_SAME_VALUE, OPERANDS::Leb},
    {CFA_REGISTER, OPERANDS::LebLeb},
    {CFA_REMEMBER_STATE, OPERANDS::None},
    {CFA_RESTORE_STATE, OPERANDS::None},
    {CFA_DEF_CFA, OPERANDS::LebLeb},
    {CFA_DEF_CFA_REGISTER, OPERANDS::Leb},
    {CFA_DEF_CFA_OFFSET, OPERANDS::Leb},
    {CFA_DEF_CFA_EXPRESSION, OPERANDS::Expr},
    {CFA_EXPRESSION, OPERANDS::LebExpr},
    {CFA_OFFSET_EXTENDED_SF, OPERANDS::LebSleb},
    {CFA_DEF_CFA_SF, OPERANDS::LebSleb},
    {CFA_DEF_CFA_OFFSET_SF, OPERANDS::Sleb},
    {CFA_VAL_OFFSET, OPERANDS::LebLeb},
    {CFA_VAL_OFFSET_SF, OPERANDS::LebSleb},
    {CFA_VAL_EXPRESSION, OPERANDS::LebExpr},
    {CFA_ADVANCE_LOC8, OPERANDS::U64},
    {CFA_GNU_WINDOW_SAVE, OPERANDS::None},
    {CFA_GNU_ARGS_SIZE, OPERANDS::Leb},
    {CFA_GNU_NEGATIVE_OFFSET_EXTENDED, OPERANDS::LebLeb},
};

constexpr U32 NUM_PLAIN_OPS = 0x40;
constexpr U32 OPERAND_BITS = 0x3f;

constexpr std::array<OPERANDS, NUM_PLAIN_OPS> OperandsByOp() {
  std::array<OPERANDS, NUM_PLAIN_OPS> aOperands = {};
  for (const OPERANDS_ROW& Row : aRows) aOperands[Row.Op] = Row.Operands;
  return aOperands;
}

constexpr std::array<OPERANDS, NUM_PLAIN_OPS> OPERANDS_BY_OP = OperandsByOp();

void ReadOperands(CByteCursor& Program, FRAME_INST& Inst) {
  switch (OPERANDS_BY_OP[Inst.Op]) {
    case OPERANDS::Unknown:
      return Program.Spoil();
    case OPERANDS::None:
      return;
    case OPERANDS::U8:
      Inst.First = Program.Int<::U8>();
      return;
    case OPERANDS::U16:
      Inst.First = Program.Int<::U16>();
      return;
    case OPERANDS::U32:
      Inst.First = Program.Int<::U32>();
      return;
    case OPERANDS::U64:
      Inst.First = Program.Int<::U64>();
      return;
    case OPERANDS::Leb:
      Inst.First = Program.Leb();
      return;
    case OPERANDS::Sleb:
      Inst.Second = Program.Sleb();
      return;
    case OPERANDS::LebLeb:
      Inst.First = Program.Leb();
      Inst.Second = static_cast<I64>(Program.Leb());
      return;
    case OPERANDS::LebSleb:
      Inst.First = Program.Leb();
      Inst.Second = Program.Sleb();
      return;
    case OPERANDS::LebExpr:
      Inst.First = Program.Leb();
      [[fallthrough]];
    case OPERANDS::Expr:
      Inst.Expr = Program.Take(Program.Leb());
      return;
  }
}

}  // namespace

FRAME_INST ReadFrameInst(CByteCursor& Program) {
  FRAME_INST Inst;
  const U32 Byte = static_cast<U32>(Program.Int<U8>());
  if (Byte >= NUM_PLAIN_OPS) {
    Inst.Op = Byte & ~OPERAND_BITS;
    Inst.First = Byte & OPERAND_BITS;
    if (Inst.Op == CFA_OFFSET) Inst.Second = static_cast<I64>(Program.Leb());
    return Inst;
  }
  Inst.Op = Byte;
  ReadOperands(Program, Inst);
  return Inst;
}
