#include "probe/sim/decode.h"

namespace sim {

namespace {

void DecodeExtend(const STATE& S, INST* pI, U16 First, U16 Second) {
  static constexpr HANDLER PLAIN[] = {RunExtendS16,  RunExtendU16, RunExtendS8x2,
                                      RunExtendU8x2, RunExtendS8,  RunExtendU8};
  static constexpr HANDLER ADDING[] = {RunExtendAddS16,  RunExtendAddU16, RunExtendAddS8x2,
                                       RunExtendAddU8x2, RunExtendAddS8,  RunExtendAddU8};
  const U32 Code = Bits(First, 6, 4);
  const bool bAdding = pI->Rn != PC;
  pI->ShiftN = static_cast<U8>(Bits(Second, 5, 4) * 8);
  const bool bBase = !bAdding && Code != 2 && Code != 3;
  if (Code >= std::size(PLAIN) || (!bBase && !S.bDSP)) return SetHandler(pI, RunUndefined);
  SetHandler(pI, bAdding ? ADDING[Code] : PLAIN[Code]);
}

// Saturating addition, reversal, SEL, CLZ.
void DecodeMiscellaneous(const STATE& S, INST* pI, U16 First, U16 Second) {
  static constexpr HANDLER SATURATING[] = {RunSaturatingAdd, RunSaturatingDoubleAdd, RunSaturatingSub,
                                           RunSaturatingDoubleSub};
  static constexpr HANDLER REVERSES[] = {RunReverseBytes, RunReverseHalves, RunReverseBits, RunReverseSigned};
  const U32 Code = Bits(Second, 5, 4);
  switch (Bits(First, 5, 4)) {
    case 0:
      return SetHandler(pI, S.bDSP ? SATURATING[Code] : RunUndefined);
    case 1:
      return SetHandler(pI, REVERSES[Code]);
    case 2:
      return SetHandler(pI, S.bDSP && !Code ? RunSelectBytes : RunUndefined);
    default:
      return SetHandler(pI, Code ? RunUndefined : RunCountLeadingZeros);
  }
}

}  // namespace

void DecodeRegister(const STATE& S, INST* pI, U16 First, U16 Second) {
  pI->Rn = Bits(First, 3, 0);
  pI->Rd = Bits(Second, 11, 8);
  pI->Rm = Bits(Second, 3, 0);
  if (Bits(Second, 15, 12) != 15) return SetHandler(pI, RunUndefined);
  if (!Bit(First, 7)) {
    if (Bit(Second, 7)) return DecodeExtend(S, pI, First, Second);
    return SetHandler(pI, Bits(Second, 6, 4) ? RunUndefined : ShiftRegHandler(Bits(First, 6, 5), Bit(First, 4)));
  }
  if (Bits(Second, 7, 6) == 2 && !Bit(First, 6)) return DecodeMiscellaneous(S, pI, First, Second);
  if (Bit(Second, 7) || !S.bDSP) return SetHandler(pI, RunUndefined);
  SetHandler(pI, ParallelHandler(Bits(First, 6, 4), Bits(Second, 6, 4)));
}

void DecodeMultiply(const STATE& S, INST* pI, U16 First, U16 Second) {
  const U32 Code = Bits(First, 6, 4);
  pI->Rn = Bits(First, 3, 0);
  pI->Rd = Bits(Second, 11, 8);
  pI->Rm = Bits(Second, 3, 0);
  pI->Ra = Bits(Second, 15, 12);
  pI->ShiftN = Bits(Second, 5, 4);  // which halves
  if (Bits(Second, 7, 6)) return SetHandler(pI, RunUndefined);
  if (Code == 0) {
    if (pI->ShiftN > 1) return SetHandler(pI, RunUndefined);
    return SetHandler(pI, pI->ShiftN ? RunMultiplySubtract : pI->Ra == PC ? RunMultiply : RunMultiplyAdd);
  }
  static constexpr HANDLER DSP[] = {
      nullptr,        RunMultiplyHalves,      RunMultiplyDual,    RunMultiplyWordHalf, RunMultiplyDualSubtract,
      RunMultiplyTop, RunMultiplyTopSubtract, RunSumOfDifferences};
  const bool bKnown =
      S.bDSP && (Code == 1 || pI->ShiftN <= 1) && !(Code == 7 && pI->ShiftN) && !(Code == 6 && pI->Ra == PC);
  SetHandler(pI, bKnown ? DSP[Code] : RunUndefined);
}

void DecodeMultiplyLong(const STATE& S, INST* pI, U16 First, U16 Second) {
  const U32 Code = static_cast<U32>(Bits(First, 6, 4)) << 4 | Bits(Second, 7, 4);
  pI->Rn = Bits(First, 3, 0);
  pI->Rd = Bits(Second, 15, 12);
  pI->Ra = Bits(Second, 11, 8);
  pI->Rm = Bits(Second, 3, 0);
  pI->ShiftN = Bits(Second, 5, 4);
  switch (Code) {
    case 0x00:
      return SetHandler(pI, RunMultiplyLongSigned);
    case 0x1F:
    case 0x3F:
      pI->Rd = pI->Ra;
      return SetHandler(pI, Code == 0x1F ? RunDivideSigned : RunDivideUnsigned);
    case 0x20:
      return SetHandler(pI, RunMultiplyLongUnsigned);
    case 0x40:
      return SetHandler(pI, RunMultiplyAddLongSigned);
    case 0x60:
      return SetHandler(pI, RunMultiplyAddLongUnsigned);
    default:
      break;
  }
  if (!S.bDSP) return SetHandler(pI, RunUndefined);
  switch (Code) {
    case 0x48 ... 0x4B:
      return SetHandler(pI, RunMultiplyHalvesLong);
    case 0x4C ... 0x4D:
      return SetHandler(pI, RunMultiplyDualLong);
    case 0x5C ... 0x5D:
      return SetHandler(pI, RunMultiplyDualSubtractLong);
    case 0x66:
      return SetHandler(pI, RunMultiplyAccumulateTwice);
    default:
      return SetHandler(pI, RunUndefined);
  }
}

}  // namespace sim
