#include "probe/sim/decode.h"

namespace sim {

namespace {

// 16-bit data processing sets the flags outside IT blocks only.
void SetAlu(INST* pI, ALU_OP Op, ALU_FORM Form) {
  const bool bCompares = Op == ALU_OP::TST || Op == ALU_OP::CMP || Op == ALU_OP::CMN;
  pI->pfRun = AluHandler(Op, Form, true);
  pI->pfRunIT = AluHandler(Op, Form, bCompares);
}

void SetAluImm(INST* pI, ALU_OP Op, U32 Imm) {
  pI->Imm = Imm;
  pI->ShiftN = CARRY_UNCHANGED;
  SetAlu(pI, Op, ALU_FORM::IMM);
}

void DecodeShiftAddSub(INST* pI, U16 Op) {
  pI->Rd = Bits(Op, 2, 0);
  if (Bits(Op, 12, 11) != 3) {
    pI->Rm = Bits(Op, 5, 3);
    SetAlu(pI, ALU_OP::MOV, SetShift(pI, Bits(Op, 12, 11), Bits(Op, 10, 6)));
    return;
  }
  const ALU_OP AluOp = Bit(Op, 9) ? ALU_OP::SUB : ALU_OP::ADD;
  pI->Rn = Bits(Op, 5, 3);
  pI->Rm = Bits(Op, 8, 6);
  if (Bit(Op, 10)) return SetAluImm(pI, AluOp, pI->Rm);
  SetAlu(pI, AluOp, ALU_FORM::REG);
}

void DecodeImm8(INST* pI, U16 Op) {
  static constexpr ALU_OP OPS[] = {ALU_OP::MOV, ALU_OP::CMP, ALU_OP::ADD, ALU_OP::SUB};
  pI->Rd = pI->Rn = Bits(Op, 10, 8);
  SetAluImm(pI, OPS[Bits(Op, 12, 11)], Op & 0xFF);
}

void DecodeDataProcessing(INST* pI, U16 Op) {
  const U32 Code = Bits(Op, 9, 6);
  pI->Rd = pI->Rn = Bits(Op, 2, 0);
  pI->Rm = Bits(Op, 5, 3);
  switch (Code) {
    case 2:
    case 3:
    case 4:
    case 7: {
      const U32 Type = Code == 7 ? static_cast<U32>(SHIFT_ROR) : Code - 2;
      pI->pfRun = ShiftRegHandler(Type, true);
      pI->pfRunIT = ShiftRegHandler(Type, false);
      return;
    }
    case 9:
      pI->Rn = pI->Rm;
      return SetAluImm(pI, ALU_OP::RSB, 0);
    case 13:
      pI->pfRun = RunMultiplyFlags;
      pI->pfRunIT = RunMultiply;
      return;
    default:
      break;
  }
  static constexpr ALU_OP OPS[] = {ALU_OP::AND, ALU_OP::EOR, ALU_OP::NUM, ALU_OP::NUM, ALU_OP::NUM, ALU_OP::ADC,
                                   ALU_OP::SBC, ALU_OP::NUM, ALU_OP::TST, ALU_OP::NUM, ALU_OP::CMP, ALU_OP::CMN,
                                   ALU_OP::ORR, ALU_OP::NUM, ALU_OP::BIC, ALU_OP::MVN};
  SetAlu(pI, OPS[Code], ALU_FORM::REG);
}

void DecodeHighRegs(INST* pI, U16 Op) {
  pI->Rd = pI->Rn = static_cast<U8>(Bits(Op, 2, 0) | Bit(Op, 7) << 3);
  pI->Rm = Bits(Op, 6, 3);
  switch (Bits(Op, 9, 8)) {
    case 0:
      return SetHandler(pI, HighRegHandler(HIGH_OP::ADD, pI->Rd == PC));
    case 1:
      return SetHandler(pI, HighRegHandler(HIGH_OP::CMP, false));
    case 2:
      return SetHandler(pI, HighRegHandler(HIGH_OP::MOV, pI->Rd == PC));
    default:
      return SetHandler(pI, Bit(Op, 7) ? RunBranchLinkExchange : RunBranchExchangeReg);
  }
}

void DecodeLoadStoreReg(INST* pI, U16 Op) {
  static constexpr MEM_OP OPS[] = {MEM_OP::STR, MEM_OP::STRH, MEM_OP::STRB, MEM_OP::LDRSB,
                                   MEM_OP::LDR, MEM_OP::LDRH, MEM_OP::LDRB, MEM_OP::LDRSH};
  pI->Rd = Bits(Op, 2, 0);
  pI->Rn = Bits(Op, 5, 3);
  pI->Rm = Bits(Op, 8, 6);
  SetHandler(pI, MemHandler(OPS[Bits(Op, 11, 9)], MEM_MODE::REG));
}

void DecodeLoadStoreImm(INST* pI, U16 Op) {
  struct ROW {
    MEM_OP Op;
    U8 Shift;
  };
  static constexpr ROW ROWS[] = {{MEM_OP::STR, 2},  {MEM_OP::LDR, 2},  {MEM_OP::STRB, 0},
                                 {MEM_OP::LDRB, 0}, {MEM_OP::STRH, 1}, {MEM_OP::LDRH, 1}};
  const ROW& Row = ROWS[Bits(Op, 15, 11) - 12];
  pI->Rd = Bits(Op, 2, 0);
  pI->Rn = Bits(Op, 5, 3);
  pI->Imm = static_cast<U32>(Bits(Op, 10, 6)) << Row.Shift;
  SetHandler(pI, MemHandler(Row.Op, MEM_MODE::OFFSET));
}

// LDR and STR on SP, LDR literal, ADR, ADD Rd, SP.
void DecodeImm8Words(INST* pI, U16 Op) {
  const U32 Imm = static_cast<U32>(Op & 0xFF) * 4;
  pI->Rd = Bits(Op, 10, 8);
  pI->Rn = SP;
  pI->Imm = Imm;
  switch (Bits(Op, 15, 11)) {
    case 0b01001:
      pI->Imm = ((pI->Addr + 4) & ~3u) + Imm;
      return SetHandler(pI, MemHandler(MEM_OP::LDR, MEM_MODE::LITERAL));
    case 0b10010:
      return SetHandler(pI, MemHandler(MEM_OP::STR, MEM_MODE::OFFSET));
    case 0b10011:
      return SetHandler(pI, MemHandler(MEM_OP::LDR, MEM_MODE::OFFSET));
    case 0b10100:
      pI->Imm = ((pI->Addr + 4) & ~3u) + Imm;
      return SetHandler(pI, AluHandler(ALU_OP::MOV, ALU_FORM::IMM, false));
    default:
      return SetHandler(pI, AluHandler(ALU_OP::ADD, ALU_FORM::IMM, false));
  }
}

void DecodePushPop(INST* pI, U16 Op) {
  const bool bPop = Bit(Op, 11);
  pI->Imm = (Op & 0xFF) | static_cast<U32>(Bit(Op, 8)) << (bPop ? PC : LR);
  pI->Rn = SP;
  pI->Ra = 1;
  SetHandler(pI, MultipleHandler(bPop, !bPop));
}

void DecodeHintOrIT(const STATE& S, INST* pI, U16 Op) {
  if (Op & 0xF) {
    pI->Imm = Op & 0xFF;
    return SetHandler(pI, S.bV7 ? RunIfThen : RunUndefined);
  }
  static constexpr HANDLER HINTS[] = {RunNop, RunNop, RunWaitForEvent, RunWaitForInterrupt, RunSendEvent};
  const U32 Hint = Bits(Op, 7, 4);
  SetHandler(pI, Hint < std::size(HINTS) ? HINTS[Hint] : RunNop);
}

void DecodeCompareBranch(INST* pI, U16 Op) {
  pI->Rn = Bits(Op, 2, 0);
  pI->Imm = pI->Addr + 4 + (Bits(Op, 7, 3) * 2 | Bit(Op, 9) << 6);
  SetHandler(pI, Bit(Op, 11) ? RunBranchIfNotZero : RunBranchIfZero);
}

void DecodeExtendOrReverse(INST* pI, U16 Op, const HANDLER (&aHandlers)[4]) {
  pI->Rd = Bits(Op, 2, 0);
  pI->Rm = Bits(Op, 5, 3);
  SetHandler(pI, aHandlers[Bits(Op, 7, 6)]);
}

void DecodeMisc(const STATE& S, INST* pI, U16 Op) {
  static constexpr HANDLER EXTENDS[] = {RunExtendS16, RunExtendS8, RunExtendU16, RunExtendU8};
  static constexpr HANDLER REVERSES[] = {RunReverseBytes, RunReverseHalves, RunUndefined, RunReverseSigned};
  switch (Bits(Op, 11, 8)) {
    case 0b0000:
      pI->Rd = pI->Rn = SP;
      pI->Imm = (Op & 0x7Fu) * 4;
      return SetHandler(pI, AluHandler(Bit(Op, 7) ? ALU_OP::SUB : ALU_OP::ADD, ALU_FORM::IMM, false));
    case 0b0010:
      return DecodeExtendOrReverse(pI, Op, EXTENDS);
    case 0b1010:
      return DecodeExtendOrReverse(pI, Op, REVERSES);
    case 0b0001:
    case 0b0011:
    case 0b1001:
    case 0b1011:
      if (S.bV7) return DecodeCompareBranch(pI, Op);
      return SetHandler(pI, RunUndefined);
    case 0b0100:
    case 0b0101:
    case 0b1100:
    case 0b1101:
      return DecodePushPop(pI, Op);
    case 0b0110:
      pI->Imm = S.bV7 ? Op & 0x13 : Op & 0x12;
      return SetHandler(pI, (Op & 0xFFEC) == 0xB660 ? RunChangeState : RunUndefined);
    case 0b1110:
      pI->Flags = INST_IGNORES_IT | INST_DOES_NOT_RUN;
      return SetHandler(pI, RunBreakpoint);
    case 0b1111:
      return DecodeHintOrIT(S, pI, Op);
    default:
      return SetHandler(pI, RunUndefined);
  }
}

void DecodeMultiple16(INST* pI, U16 Op) {
  const bool bLoad = Bit(Op, 11);
  pI->Rn = Bits(Op, 10, 8);
  pI->Imm = Op & 0xFF;
  pI->Ra = !(bLoad && Bit(Op, pI->Rn));
  SetHandler(pI, MultipleHandler(bLoad, false));
}

void DecodeConditional(STATE& S, INST* pI, U16 Op) {
  const U32 Cond = Bits(Op, 11, 8);
  if (Cond == 14) return SetHandler(pI, RunUndefined);
  if (Cond == 15) return SetHandler(pI, RunSupervisorCall);
  const I32 Distance = static_cast<I8>(Op & 0xFF) * 2;
  SetBranch(S, pI, Cond, pI->Addr + 4 + static_cast<U32>(Distance));
}

}  // namespace

ALU_FORM SetShift(INST* pI, U32 Type, U32 Num) {
  pI->ShiftType = static_cast<U8>(Type);
  pI->ShiftN = static_cast<U8>(Num);
  if (!Num) {
    if (Type == SHIFT_LSL) return ALU_FORM::REG;
    if (Type == SHIFT_ROR) pI->ShiftType = SHIFT_RRX;
    pI->ShiftN = Type == SHIFT_ROR ? 1 : 32;
  }
  return ALU_FORM::SHIFTED_REG;
}

void SetBranch(STATE& S, INST* pI, U32 Cond, U32 Target) {
  const REGION* pRegion = FindRegion(S, pI->Addr);
  pI->Rd = static_cast<U8>(Cond);
  if (Cond != COND_AL) pI->Flags |= INST_CONDITIONAL;
  if (pRegion && pRegion->Contains(Target)) {
    pI->Imm = static_cast<U32>(static_cast<I32>(Target - pI->Addr) / 2);
    return SetHandler(pI, Cond == COND_AL ? RunBranchNear : BranchIfHandler(Cond));
  }
  pI->Imm = Target;
  SetHandler(pI, RunBranchFar);
}

void Decode16(STATE& S, INST* pI, U16 Op) {
  pI->Halfwords = 1;
  switch (Bits(Op, 15, 10)) {
    case 0b000000 ... 0b000111:
      return DecodeShiftAddSub(pI, Op);
    case 0b001000 ... 0b001111:
      return DecodeImm8(pI, Op);
    case 0b010000:
      return DecodeDataProcessing(pI, Op);
    case 0b010001:
      return DecodeHighRegs(pI, Op);
    case 0b010010 ... 0b010011:
      return DecodeImm8Words(pI, Op);
    case 0b010100 ... 0b010111:
      return DecodeLoadStoreReg(pI, Op);
    case 0b011000 ... 0b100011:
      return DecodeLoadStoreImm(pI, Op);
    case 0b100100 ... 0b101011:
      return DecodeImm8Words(pI, Op);
    case 0b101100 ... 0b101111:
      return DecodeMisc(S, pI, Op);
    case 0b110000 ... 0b110011:
      return DecodeMultiple16(pI, Op);
    case 0b110100 ... 0b110111:
      return DecodeConditional(S, pI, Op);
    default: {
      const I32 Distance = static_cast<I32>(static_cast<U32>(Op) << 21) >> 20;
      return SetBranch(S, pI, COND_AL, pI->Addr + 4 + static_cast<U32>(Distance));
    }
  }
}

}  // namespace sim
