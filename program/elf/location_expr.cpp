#include "program/elf/location_expr.h"

#include "program/elf/location_nesting.h"

namespace {

constexpr U32 MAX_NESTED_ENTRY_VALUES = 4;
constexpr U64 MAX_IMPLICIT_BYTES = 8;

class CExprTranslator {
public:
  CExprTranslator(const OPERAND_SIZES& Sizes, bool bFrameBase, IExprContext& Context)
      : Sizes(Sizes), bFrameBase(bFrameBase), Context(Context) {}

  ELF_SYM_LOC Translate(CByteCursor Expr) {
    if (!Expr.More()) return {};
    const LOCATION_OPERATION Operation = ReadOperation(Expr, Sizes);
    U64 Added = 0;
    bool bValue = false;
    while (Expr.More()) {
      const LOCATION_OPERATION Next = ReadOperation(Expr, Sizes);
      if (bValue) return {};
      if (Next.Op == OP_PLUS_UCONST && TakesOffset(Operation.Op)) {
        Added += Next.First;
      } else if (Next.Op == OP_STACK_VALUE) {
        bValue = true;
      } else if (Next.Op != OP_NOP) {
        return {};
      }
    }
    if (!Expr.Ok()) return {};
    const ELF_SYM_LOC Place = PlaceOf(Operation, Added);
    return bValue ? NestLocation(ELF_LOC_STACK_VALUE, Place) : Place;
  }

private:
  const OPERAND_SIZES& Sizes;
  bool bFrameBase;
  IExprContext& Context;
  U32 Level = 0;

  static bool TakesOffset(U32 Op) {
    return Op == OP_ADDR || Op == OP_ADDRX || Op == OP_GNU_ADDR_INDEX || Op == OP_FBREG || Op == OP_BREGX ||
           (Op >= OP_BREG0 && Op <= OP_BREG31);
  }

  static ELF_SYM_LOC Constant(U64 Value) {
    ELF_SYM_LOC Loc;
    Loc.Type = ELF_LOC_CONST;
    Loc.Value = Value;
    return Loc;
  }
  static ELF_SYM_LOC Memory(U64 Addr) {
    ELF_SYM_LOC Loc;
    Loc.Type = ELF_LOC_MEM;
    Loc.Addr = static_cast<U32>(Addr);
    return Loc;
  }
  static ELF_SYM_LOC Register(U64 Reg) {
    ELF_SYM_LOC Loc;
    if (Reg > 0xFFFFFFFFu) return Loc;
    Loc.Type = ELF_LOC_REG;
    Loc.Reg = static_cast<U32>(Reg);
    return Loc;
  }
  static ELF_SYM_LOC WithOffset(U32 Type, U64 Offset) {
    ELF_SYM_LOC Loc;
    Loc.Type = Type;
    Loc.Offset = static_cast<I32>(Offset);
    return Loc;
  }

  ELF_SYM_LOC AtRegister(U64 Reg, U64 Offset) const {
    ELF_SYM_LOC Loc = Register(Reg);
    if (Loc.Type == ELF_LOC_NONE) return Loc;
    Loc.Type = ELF_LOC_REG_OFFSET;
    Loc.Offset = static_cast<I32>(Offset);
    return bFrameBase ? Loc : NestLocation(ELF_LOC_REG_INDIRECT, Loc);
  }

  ELF_SYM_LOC PlaceOf(const LOCATION_OPERATION& Operation, U64 Added) {
    const U32 Op = Operation.Op;
    if (Op >= OP_LIT0 && Op <= OP_LIT31) return Constant(Op - OP_LIT0);
    if (Op >= OP_REG0 && Op <= OP_REG31) return Register(Op - OP_REG0);
    if (Op >= OP_BREG0 && Op <= OP_BREG31) return AtRegister(Op - OP_BREG0, Operation.First + Added);
    switch (Op) {
      case OP_ADDR:
        return Memory(Operation.First + Added);
      case OP_CONST1U:
      case OP_CONST1S:
      case OP_CONST2U:
      case OP_CONST2S:
      case OP_CONST4U:
      case OP_CONST4S:
      case OP_CONST8U:
      case OP_CONST8S:
      case OP_CONSTU:
      case OP_CONSTS:
        return Constant(Operation.First);
      case OP_PLUS_UCONST:
        return WithOffset(ELF_LOC_PARENT_LOC, Operation.First);
      case OP_REGX:
        return Register(Operation.First);
      case OP_FBREG:
        return WithOffset(ELF_LOC_BP_INDIRECT, Operation.First + Added);
      case OP_BREGX:
        return AtRegister(Operation.First, Operation.Second + Added);
      case OP_CALL_FRAME_CFA:
        return Context.Cfa();
      case OP_IMPLICIT_VALUE:
        return Constant(ImplicitValue(Operation.Block));
      case OP_ADDRX:
      case OP_CONSTX:
      case OP_GNU_ADDR_INDEX:
      case OP_GNU_CONST_INDEX:
        return Indexed(Op, Operation.First, Added);
      case OP_ENTRY_VALUE:
      case OP_GNU_ENTRY_VALUE:
        return EntryValue(Operation.Block);
      default:
        return {};
    }
  }

  ELF_SYM_LOC Indexed(U32 Op, U64 Index, U64 Added) {
    const std::optional<U64> Value = Context.IndexedAddress(Index);
    if (!Value) return {};
    return Op == OP_CONSTX || Op == OP_GNU_CONST_INDEX ? Constant(*Value) : Memory(*Value + Added);
  }

  // The bytes in target order as the lowest bytes of a number.
  U64 ImplicitValue(CByteCursor Block) {
    if (Block.Left() > MAX_IMPLICIT_BYTES) {
      Context.Complain("DW_OP_implicit_value with data size greater than 8 bytes is not supported");
      Block.Limit(MAX_IMPLICIT_BYTES);
    }
    U64 Value = 0;
    for (U32 i = 0; Block.More(); ++i) {
      const U64 Byte = Block.Int<U8>();
      Value = Block.IsBigEndian() ? Value << 8 | Byte : Value | Byte << (8 * i);
    }
    return Value;
  }

  ELF_SYM_LOC EntryValue(const CByteCursor& Block) {
    ELF_SYM_LOC Inner;
    if (++Level <= MAX_NESTED_ENTRY_VALUES) Inner = Translate(Block);
    --Level;
    const ELF_SYM_LOC Loc = NestLocation(ELF_LOC_ENTRY_VALUE, Inner);
    if (Loc.Type == ELF_LOC_NONE) {
      Context.Complain("'DW_OP_entry_value' operation encountered that does not specify an entry location.");
    }
    return Loc;
  }
};

}  // namespace

ELF_SYM_LOC TranslateExpr(CByteCursor Expr, const OPERAND_SIZES& Sizes, bool bFrameBase, IExprContext& Context) {
  return CExprTranslator(Sizes, bFrameBase, Context).Translate(Expr);
}
