#include "probe/sim/decode.h"
#include "probe/sim/decode_fp.h"

namespace sim {

namespace {

// AND to RSB in the order of the instruction's field; NUM where there is none.
constexpr ALU_OP ALU_FIELD[16] = {ALU_OP::AND, ALU_OP::BIC, ALU_OP::ORR, ALU_OP::ORN, ALU_OP::EOR, ALU_OP::NUM,
                                  ALU_OP::NUM, ALU_OP::NUM, ALU_OP::ADD, ALU_OP::NUM, ALU_OP::ADC, ALU_OP::SBC,
                                  ALU_OP::NUM, ALU_OP::SUB, ALU_OP::RSB, ALU_OP::NUM};

void SetWideAlu(INST* pI, U32 Field, ALU_FORM Form, bool bSetFlags) {
  ALU_OP Op = ALU_FIELD[Field];
  if (Op == ALU_OP::NUM) return SetHandler(pI, RunUndefined);
  if (pI->Rn == PC && Op == ALU_OP::ORR) Op = ALU_OP::MOV;
  if (pI->Rn == PC && Op == ALU_OP::ORN) Op = ALU_OP::MVN;
  if (pI->Rd == PC) {
    const ALU_OP Test = Op == ALU_OP::AND   ? ALU_OP::TST
                        : Op == ALU_OP::EOR ? ALU_OP::TEQ
                        : Op == ALU_OP::ADD ? ALU_OP::CMN
                        : Op == ALU_OP::SUB ? ALU_OP::CMP
                                            : ALU_OP::NUM;
    if (!bSetFlags || Test == ALU_OP::NUM) return SetHandler(pI, RunUndefined);
    Op = Test;
  }
  SetHandler(pI, AluHandler(Op, Form, bSetFlags));
}

U32 Imm12(U16 First, U16 Second) {
  return static_cast<U32>(Bit(First, 10)) << 11 | static_cast<U32>(Bits(Second, 14, 12)) << 8 | (Second & 0xFFu);
}

// The constant that 12 bits of an instruction stand for; sets the carry.
U32 ExpandImm(INST* pI, U32 Field) {
  const U32 Byte = Field & 0xFF;
  pI->ShiftN = CARRY_UNCHANGED;
  switch (Field >> 8) {
    case 0:
      return Byte;
    case 1:
      return Byte << 16 | Byte;
    case 2:
      return Byte << 24 | Byte << 8;
    case 3:
      return Byte * 0x01010101u;
    default:
      break;
  }
  const U32 Value = std::rotr(0x80u | (Field & 0x7F), static_cast<int>(Field >> 7));
  pI->ShiftN = static_cast<U8>(Value >> 31);
  return Value;
}

void DecodeModifiedImm(INST* pI, U16 First, U16 Second) {
  pI->Rn = Bits(First, 3, 0);
  pI->Rd = Bits(Second, 11, 8);
  pI->Imm = ExpandImm(pI, Imm12(First, Second));
  SetWideAlu(pI, Bits(First, 8, 5), ALU_FORM::IMM, Bit(First, 4));
}

void DecodeShiftedReg(const STATE& S, INST* pI, U16 First, U16 Second) {
  pI->Rn = Bits(First, 3, 0);
  pI->Rd = Bits(Second, 11, 8);
  pI->Rm = Bits(Second, 3, 0);
  const U32 Num = static_cast<U32>(Bits(Second, 14, 12)) << 2 | Bits(Second, 7, 6);
  const ALU_FORM Form = SetShift(pI, Bits(Second, 5, 4), Num);
  if (Bits(First, 8, 5) == 6)
    return SetHandler(pI, S.bDSP && !Bit(First, 4) && !Bit(Second, 4) ? RunPackHalves : RunUndefined);
  SetWideAlu(pI, Bits(First, 8, 5), Form, Bit(First, 4));
}

void DecodeSaturate(const STATE& S, INST* pI, U16 First, U16 Second) {
  const bool bUnsigned = Bit(First, 7);
  const U32 Num = static_cast<U32>(Bits(Second, 14, 12)) << 2 | Bits(Second, 7, 6);
  pI->Imm = Bits(Second, 4, 0) + (bUnsigned ? 0u : 1u);
  if (Bit(First, 5) && !Num) {
    pI->Imm = Bits(Second, 3, 0) + (bUnsigned ? 0u : 1u);
    if (!S.bDSP) return SetHandler(pI, RunUndefined);
    return SetHandler(pI, bUnsigned ? RunSaturateUnsigned16 : RunSaturateSigned16);
  }
  pI->ShiftType = Bit(First, 5) ? SHIFT_ASR : SHIFT_LSL;
  pI->ShiftN = static_cast<U8>(Num);
  SetHandler(pI, bUnsigned ? RunSaturateUnsigned : RunSaturateSigned);
}

void DecodeBitField(INST* pI, U16 Second, HANDLER pfRun, bool bInsert) {
  const U32 Low = static_cast<U32>(Bits(Second, 14, 12)) << 2 | Bits(Second, 7, 6);
  const U32 Field = Bits(Second, 4, 0);
  pI->Ra = static_cast<U8>(Low);
  pI->Imm = bInsert ? Field - Low + 1 : Field + 1;
  const bool bFits = bInsert ? Field >= Low : Low + pI->Imm <= 32;
  SetHandler(pI, bFits ? pfRun : RunUndefined);
}

void DecodePlainImm(const STATE& S, INST* pI, U16 First, U16 Second) {
  const U32 Imm = Imm12(First, Second);
  const U32 Imm16 = static_cast<U32>(Bits(First, 3, 0)) << 12 | Imm;
  pI->Rn = Bits(First, 3, 0);
  pI->Rd = Bits(Second, 11, 8);
  switch (Bits(First, 8, 4)) {
    case 0b00000:
    case 0b01010: {
      const U32 Distance = Bit(First, 7) ? 0u - Imm : Imm;
      pI->Imm = pI->Rn == PC ? ((pI->Addr + 4) & ~3u) + Distance : Distance;
      return SetHandler(pI, pI->Rn == PC ? AluHandler(ALU_OP::MOV, ALU_FORM::IMM, false) : RunAdrFromReg);
    }
    case 0b00100:
      pI->Imm = Imm16;
      return SetHandler(pI, AluHandler(ALU_OP::MOV, ALU_FORM::IMM, false));
    case 0b01100:
      pI->Imm = Imm16;
      return SetHandler(pI, RunMovTop);
    case 0b10000:
    case 0b10010:
    case 0b11000:
    case 0b11010:
      return DecodeSaturate(S, pI, First, Second);
    case 0b10100:
      return DecodeBitField(pI, Second, RunBitFieldExtractSigned, false);
    case 0b10110:
      return DecodeBitField(pI, Second, RunBitFieldInsert, true);
    case 0b11100:
      return DecodeBitField(pI, Second, RunBitFieldExtractUnsigned, false);
    default:
      return SetHandler(pI, RunUndefined);
  }
}

// The distance of B.W and BL: sign, two inverted bits, 21 more.
U32 LongDistance(U16 First, U16 Second) {
  const U32 Sign = Bit(First, 10);
  const U32 I1 = Bit(Second, 13) == Sign;
  const U32 I2 = Bit(Second, 11) == Sign;
  return (0u - Sign) << 24 | I1 << 23 | I2 << 22 | (First & 0x3FFu) << 12 | (Second & 0x7FFu) << 1;
}

void DecodeBranchLink(STATE& S, INST* pI, U32 Target) {
  const REGION* pRegion = FindRegion(S, pI->Addr);
  const bool bNear = pRegion && pRegion->Contains(Target);
  pI->Imm = bNear ? static_cast<U32>(static_cast<I32>(Target - pI->Addr) / 2) : Target;
  SetHandler(pI, bNear ? RunBranchLink : RunBranchLinkFar);
}

void DecodeConditionalWide(STATE& S, INST* pI, U16 First, U16 Second) {
  const U32 Distance = (0u - Bit(First, 10)) << 20 | static_cast<U32>(Bit(Second, 11)) << 19 |
                       static_cast<U32>(Bit(Second, 13)) << 18 | (First & 0x3Fu) << 12 | (Second & 0x7FFu) << 1;
  SetBranch(S, pI, Bits(First, 9, 6), pI->Addr + 4 + Distance);
}

void DecodeHintWide(INST* pI, U16 Second) {
  static constexpr HANDLER HINTS[] = {RunNop, RunNop, RunWaitForEvent, RunWaitForInterrupt, RunSendEvent};
  const U32 Hint = Second & 0xFF;
  if (Bits(Second, 10, 8)) return SetHandler(pI, RunUndefined);
  SetHandler(pI, Hint < std::size(HINTS) ? HINTS[Hint] : RunNop);
}

void DecodeBarrier(INST* pI, U16 Second) {
  switch (Bits(Second, 7, 4)) {
    case 2:
      return SetHandler(pI, RunClearExclusive);
    case 4:
    case 5:
    case 6:
      return SetHandler(pI, RunNop);
    default:
      return SetHandler(pI, RunUndefined);
  }
}

void DecodeSystem(INST* pI, U16 First, U16 Second) {
  switch (Bits(First, 10, 4)) {
    case 0b0111000:
    case 0b0111001:
      pI->Rn = Bits(First, 3, 0);
      pI->Imm = Second & 0xFF;
      pI->Ra = Bits(Second, 11, 10);
      return SetHandler(pI, RunWriteSpecial);
    case 0b0111010:
      return DecodeHintWide(pI, Second);
    case 0b0111011:
      return DecodeBarrier(pI, Second);
    case 0b0111110:
    case 0b0111111:
      pI->Rd = Bits(Second, 11, 8);
      pI->Imm = Second & 0xFF;
      return SetHandler(pI, RunReadSpecial);
    default:
      return SetHandler(pI, RunUndefined);
  }
}

void DecodeBranchOrSystem(STATE& S, INST* pI, U16 First, U16 Second) {
  const U32 Target = pI->Addr + 4 + LongDistance(First, Second);
  switch (Second & 0xD000) {
    case 0xD000:
      return DecodeBranchLink(S, pI, Target);
    case 0x9000:
      return SetBranch(S, pI, COND_AL, Target);
    case 0x8000:
      break;
    default:
      return SetHandler(pI, RunUndefined);
  }
  if (Bits(First, 9, 7) != 7) return DecodeConditionalWide(S, pI, First, Second);
  DecodeSystem(pI, First, Second);
}

// The few that ARMv6-M has: BL, MSR, MRS, barriers.
bool IsKnownToV6(U16 First, U16 Second) {
  if (Bits(First, 15, 11) != 0b11110) return false;
  if ((Second & 0xD000) == 0xD000) return true;
  if ((Second & 0xD000) != 0x8000) return false;
  const U32 Code = Bits(First, 10, 4);
  return Code == 0b0111000 || Code == 0b0111110 || (Code == 0b0111011 && Bits(Second, 7, 4) >= 4);
}

}  // namespace

void Decode32(STATE& S, INST* pI, U16 First, U16 Second) {
  pI->Halfwords = 2;
  SetHandler(pI, RunUndefined);
  if (!S.bV7 && !IsKnownToV6(First, Second)) return;
  if ((First & 0xEC00) == 0xEC00) return DecodeCoprocessor(S, pI, First, Second);
  switch (Bits(First, 12, 9)) {
    case 0b0100:
      return Bit(First, 6) ? DecodeDualOrExclusive(pI, First, Second) : DecodeMultiple(pI, First, Second);
    case 0b0101:
      return DecodeShiftedReg(S, pI, First, Second);
    case 0b1100:
      return DecodeSingle(pI, First, Second);
    case 0b1101:
      break;
    default:
      if (Bit(Second, 15)) return DecodeBranchOrSystem(S, pI, First, Second);
      return Bit(First, 9) ? DecodePlainImm(S, pI, First, Second) : DecodeModifiedImm(pI, First, Second);
  }
  if (!Bit(First, 8)) return DecodeRegister(S, pI, First, Second);
  Bit(First, 7) ? DecodeMultiplyLong(S, pI, First, Second) : DecodeMultiply(S, pI, First, Second);
}

}  // namespace sim
