#include "probe/sim/decode.h"

namespace sim {

namespace {

U32 Signed(U32 Value, bool bAdd) {
  return bAdd ? Value : 0u - Value;
}

// Index by size and sign.
MEM_OP MemOp(U32 Size, bool bLoad, bool bSigned) {
  static constexpr MEM_OP LOADS[] = {MEM_OP::LDRB, MEM_OP::LDRH, MEM_OP::LDR};
  static constexpr MEM_OP SIGNED_LOADS[] = {MEM_OP::LDRSB, MEM_OP::LDRSH, MEM_OP::NUM};
  static constexpr MEM_OP STORES[] = {MEM_OP::STRB, MEM_OP::STRH, MEM_OP::STR};
  if (Size > 2 || (bSigned && !bLoad)) return MEM_OP::NUM;
  return !bLoad ? STORES[Size] : bSigned ? SIGNED_LOADS[Size] : LOADS[Size];
}

// The addressing mode of a single load or store; NUM when there is none.
MEM_MODE SetMode(INST* pI, U16 First, U16 Second) {
  if (pI->Rn == PC) {
    pI->Imm = ((pI->Addr + 4) & ~3u) + Signed(Second & 0xFFF, Bit(First, 7));
    return MEM_MODE::LITERAL;
  }
  if (Bit(First, 7)) {
    pI->Imm = Second & 0xFFF;
    return MEM_MODE::OFFSET;
  }
  if (Bit(Second, 11)) {
    const bool bPre = Bit(Second, 10);
    const bool bWriteBack = Bit(Second, 8);
    pI->Imm = Signed(Second & 0xFF, Bit(Second, 9));
    if (!bPre && !bWriteBack) return MEM_MODE::NUM;
    if (bPre && !bWriteBack) return Bit(Second, 9) ? MEM_MODE::USER : MEM_MODE::OFFSET;
    return bPre ? MEM_MODE::PRE : MEM_MODE::POST;
  }
  pI->Rm = Bits(Second, 3, 0);
  pI->ShiftN = Bits(Second, 5, 4);
  return Bits(Second, 10, 6) ? MEM_MODE::NUM : MEM_MODE::REG;
}

void DecodeExclusiveWord(INST* pI, U16 First, U16 Second) {
  pI->Imm = (Second & 0xFFu) * 4;
  pI->Ra = Bits(Second, 11, 8);
  SetHandler(pI, Bit(First, 4) ? RunLoadExclusive : RunStoreExclusive);
}

void DecodeExclusiveOrTable(INST* pI, U16 First, U16 Second) {
  const bool bLoad = Bit(First, 4);
  pI->Rm = pI->Ra = Bits(Second, 3, 0);
  switch (Bits(Second, 7, 4)) {
    case 0:
      return SetHandler(pI, bLoad ? RunTableBranchByte : RunUndefined);
    case 1:
      return SetHandler(pI, bLoad ? RunTableBranchHalf : RunUndefined);
    case 4:
      return SetHandler(pI, bLoad ? RunLoadExclusiveB : RunStoreExclusiveB);
    case 5:
      return SetHandler(pI, bLoad ? RunLoadExclusiveH : RunStoreExclusiveH);
    default:
      return SetHandler(pI, RunUndefined);
  }
}

}  // namespace

void DecodeMultiple(INST* pI, U16 First, U16 Second) {
  const U32 Mode = Bits(First, 8, 7);
  pI->Rn = Bits(First, 3, 0);
  pI->Imm = Second;
  pI->Ra = Bit(First, 5);
  const bool bKnown = (Mode == 1 || Mode == 2) && pI->Rn != PC && pI->Imm;
  SetHandler(pI, bKnown ? MultipleHandler(Bit(First, 4), Mode == 2) : RunUndefined);
}

void DecodeDualOrExclusive(INST* pI, U16 First, U16 Second) {
  const bool bPre = Bit(First, 8);
  const bool bAdd = Bit(First, 7);
  const bool bWriteBack = Bit(First, 5);
  pI->Rn = Bits(First, 3, 0);
  pI->Rd = Bits(Second, 15, 12);
  if (!bPre && !bWriteBack)
    return bAdd ? DecodeExclusiveOrTable(pI, First, Second) : DecodeExclusiveWord(pI, First, Second);
  pI->Ra = Bits(Second, 11, 8);
  pI->Imm = Signed((Second & 0xFFu) * 4, bAdd);
  pI->ShiftN = static_cast<U8>(bPre | bWriteBack << 1);
  SetHandler(pI, pI->Rd == PC || pI->Ra == PC ? RunUndefined : DualHandler(Bit(First, 4)));
}

void DecodeSingle(INST* pI, U16 First, U16 Second) {
  const bool bLoad = Bit(First, 4);
  pI->Rn = Bits(First, 3, 0);
  pI->Rd = Bits(Second, 15, 12);
  const MEM_OP Op = MemOp(Bits(First, 6, 5), bLoad, Bit(First, 8));
  const MEM_MODE Mode = SetMode(pI, First, Second);
  if (Op == MEM_OP::NUM || Mode == MEM_MODE::NUM || (!bLoad && (pI->Rn == PC || pI->Rd == PC)))
    return SetHandler(pI, RunUndefined);
  if (pI->Rd != PC) return SetHandler(pI, MemHandler(Op, Mode));
  // Loading bytes and halfwords into the PC is a preload hint.
  SetHandler(pI, Op == MEM_OP::LDR ? LoadPCHandler(Mode) : RunNop);
}

}  // namespace sim
