#include "program/elf/location_ops.h"

#include <array>

namespace {

enum class OPERAND : U8 {
  Unknown,
  None,
  U8,
  U16,
  U32,
  U64,
  S8,
  S16,
  S32,
  Leb,
  Sleb,
  Addr,
  Offset,
  LebBlock,
  ByteBlock
};

struct OPERANDS {
  OPERAND First = OPERAND::Unknown;
  OPERAND Second = OPERAND::None;
};

struct OPERANDS_ROW {
  U8 FirstOp;
  U8 LastOp;
  OPERANDS Operands;
};

constexpr OPERANDS_ROW aRows[] = {
    {OP_ADDR, OP_ADDR, {OPERAND::Addr}},
    {OP_DEREF, OP_DEREF, {OPERAND::None}},
    {OP_CONST1U, OP_CONST1U, {OPERAND::U8}},
    {OP_CONST1S, OP_CONST1S, {OPERAND::S8}},
    {OP_CONST2U, OP_CONST2U, {OPERAND::U16}},
    {OP_CONST2S, OP_CONST2S, {OPERAND::S16}},
    {OP_CONST4U, OP_CONST4U, {OPERAND::U32}},
    {OP_CONST4S, OP_CONST4S, {OPERAND::S32}},
    {OP_CONST8U, OP_CONST8S, {OPERAND::U64}},
    {OP_CONSTU, OP_CONSTU, {OPERAND::Leb}},
    {OP_CONSTS, OP_CONSTS, {OPERAND::Sleb}},
    {OP_DUP, OP_NE, {OPERAND::None}},  // the stack, arithmetic and comparisons, but for the next three
    {OP_PICK, OP_PICK, {OPERAND::U8}},
    {OP_PLUS_UCONST, OP_PLUS_UCONST, {OPERAND::Leb}},
    {OP_BRA, OP_BRA, {OPERAND::S16}},
    {OP_SKIP, OP_SKIP, {OPERAND::S16}},
    {OP_LIT0, OP_REG31, {OPERAND::None}},
    {OP_BREG0, OP_BREG31, {OPERAND::Sleb}},
    {OP_REGX, OP_REGX, {OPERAND::Leb}},
    {OP_FBREG, OP_FBREG, {OPERAND::Sleb}},
    {OP_BREGX, OP_BREGX, {OPERAND::Leb, OPERAND::Sleb}},
    {OP_PIECE, OP_PIECE, {OPERAND::Leb}},
    {OP_DEREF_SIZE, OP_XDEREF_SIZE, {OPERAND::U8}},
    {OP_NOP, OP_PUSH_OBJECT_ADDRESS, {OPERAND::None}},
    {OP_CALL2, OP_CALL2, {OPERAND::U16}},
    {OP_CALL4, OP_CALL4, {OPERAND::U32}},
    {OP_CALL_REF, OP_CALL_REF, {OPERAND::Offset}},
    {OP_FORM_TLS_ADDRESS, OP_CALL_FRAME_CFA, {OPERAND::None}},
    {OP_BIT_PIECE, OP_BIT_PIECE, {OPERAND::Leb, OPERAND::Leb}},
    {OP_IMPLICIT_VALUE, OP_IMPLICIT_VALUE, {OPERAND::LebBlock}},
    {OP_STACK_VALUE, OP_STACK_VALUE, {OPERAND::None}},
    {OP_IMPLICIT_POINTER, OP_IMPLICIT_POINTER, {OPERAND::Offset, OPERAND::Sleb}},
    {OP_ADDRX, OP_CONSTX, {OPERAND::Leb}},
    {OP_ENTRY_VALUE, OP_ENTRY_VALUE, {OPERAND::LebBlock}},
    {OP_CONST_TYPE, OP_CONST_TYPE, {OPERAND::Leb, OPERAND::ByteBlock}},
    {OP_REGVAL_TYPE, OP_REGVAL_TYPE, {OPERAND::Leb, OPERAND::Leb}},
    {OP_DEREF_TYPE, OP_XDEREF_TYPE, {OPERAND::U8, OPERAND::Leb}},
    {OP_CONVERT, OP_REINTERPRET, {OPERAND::Leb}},
    {OP_GNU_PUSH_TLS_ADDRESS, OP_GNU_PUSH_TLS_ADDRESS, {OPERAND::None}},
    {OP_GNU_UNINIT, OP_GNU_UNINIT, {OPERAND::None}},
    {OP_GNU_IMPLICIT_POINTER, OP_GNU_IMPLICIT_POINTER, {OPERAND::Offset, OPERAND::Sleb}},
    {OP_GNU_ENTRY_VALUE, OP_GNU_ENTRY_VALUE, {OPERAND::LebBlock}},
    {OP_GNU_CONST_TYPE, OP_GNU_CONST_TYPE, {OPERAND::Leb, OPERAND::ByteBlock}},
    {OP_GNU_REGVAL_TYPE, OP_GNU_REGVAL_TYPE, {OPERAND::Leb, OPERAND::Leb}},
    {OP_GNU_DEREF_TYPE, OP_GNU_DEREF_TYPE, {OPERAND::U8, OPERAND::Leb}},
    {OP_GNU_CONVERT, OP_GNU_CONVERT, {OPERAND::Leb}},
    {OP_GNU_REINTERPRET, OP_GNU_REINTERPRET, {OPERAND::Leb}},
    {OP_GNU_PARAMETER_REF, OP_GNU_PARAMETER_REF, {OPERAND::U32}},
    {OP_GNU_ADDR_INDEX, OP_GNU_CONST_INDEX, {OPERAND::Leb}},
    {OP_GNU_VARIABLE_VALUE, OP_GNU_VARIABLE_VALUE, {OPERAND::Offset}},
};

constexpr std::array<OPERANDS, 256> OperandsByOp() {
  std::array<OPERANDS, 256> aOperands = {};
  for (const OPERANDS_ROW& Row : aRows) {
    for (U32 Op = Row.FirstOp; Op <= Row.LastOp; ++Op) aOperands[Op] = Row.Operands;
  }
  return aOperands;
}

constexpr std::array<OPERANDS, 256> OPERANDS_BY_OP = OperandsByOp();

U64 ReadOperand(CByteCursor& Bytes, OPERAND Kind, const OPERAND_SIZES& Sizes, CByteCursor& Block) {
  switch (Kind) {
    case OPERAND::Unknown:
      Bytes.Spoil();
      return 0;
    case OPERAND::None:
      return 0;
    case OPERAND::U8:
      return Bytes.Int<::U8>();
    case OPERAND::U16:
      return Bytes.Int<::U16>();
    case OPERAND::U32:
      return Bytes.Int<::U32>();
    case OPERAND::U64:
      return Bytes.Int<::U64>();
    case OPERAND::S8:
      return static_cast<::U64>(Bytes.SInt(1));
    case OPERAND::S16:
      return static_cast<::U64>(Bytes.SInt(2));
    case OPERAND::S32:
      return static_cast<::U64>(Bytes.SInt(4));
    case OPERAND::Leb:
      return Bytes.Leb();
    case OPERAND::Sleb:
      return static_cast<::U64>(Bytes.Sleb());
    case OPERAND::Addr:
      return Bytes.UInt(Sizes.AddrSize);
    case OPERAND::Offset:
      return Bytes.UInt(Sizes.OffsetSize);
    case OPERAND::LebBlock:
      Block = Bytes.Take(Bytes.Leb());
      return 0;
    case OPERAND::ByteBlock:
      Block = Bytes.Take(Bytes.Int<::U8>());
      return 0;
  }
  return 0;
}

}  // namespace

LOCATION_OPERATION ReadOperation(CByteCursor& Bytes, const OPERAND_SIZES& Sizes) {
  LOCATION_OPERATION Operation;
  Operation.Op = static_cast<U32>(Bytes.Int<U8>());
  const OPERANDS& Operands = OPERANDS_BY_OP[Operation.Op];
  Operation.First = ReadOperand(Bytes, Operands.First, Sizes, Operation.Block);
  Operation.Second = ReadOperand(Bytes, Operands.Second, Sizes, Operation.Block);
  return Operation;
}
