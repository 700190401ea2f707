#include "core/decoder/operand_text.h"

#include "base/endian.h"
#include "core/decoder/names.h"

namespace {

constexpr U32 LABEL_SIZE = 128;   // characters
constexpr U32 NUM_LOW_REGS = 13;  // R0 to R12 take part in runs

bool FindLabel(const INST& Inst, U32 Addr, char (&sLabel)[LABEL_SIZE], U32& Offset) {
  const DISASM_API* pAPI = Inst.pContext->pAPI;
  if (pAPI == nullptr || !pAPI->pfGetLabel) return false;
  sLabel[0] = 0;
  return pAPI->pfGetLabel(Addr, sLabel, LABEL_SIZE, Offset) > 0 && sLabel[0] != 0;
}

bool ReadWord(const INST& Inst, U32 Addr, U32& Value) {
  const DISASM_API* pAPI = Inst.pContext->pAPI;
  if (pAPI == nullptr || !pAPI->pfReadData) return false;
  U8 aByte[4];
  if (pAPI->pfReadData(Addr, sizeof(aByte), aByte) != static_cast<int>(sizeof(aByte))) return false;
  Value = LoadInt<U32>(aByte, Inst.pContext->BigEndian != 0);
  return true;
}

void WriteSeparator(CTextWriter& Out, bool& bFirst) {
  if (!bFirst) Out.Add(", ");
  bFirst = false;
}

}  // namespace

void WriteShift(CTextWriter& Out, U32 Type, U32 Amount) {
  enum { LSL, LSR, ASR, ROR };
  if (Type == LSL && Amount == 0) return;
  if (Type == ROR && Amount == 0) {
    Out.Add(", RRX #1");
    return;
  }
  if ((Type == LSR || Type == ASR) && Amount == 0) Amount = 32;
  Out.Add(", %s #%u", ShiftName(Type), Amount);
}

void WriteRegList(CTextWriter& Out, U32 Mask) {
  bool bFirst = true;
  U32 Reg = 0;
  while (Reg < 16) {
    if ((Mask >> Reg & 1) == 0) {
      ++Reg;
      continue;
    }
    U32 Last = Reg;
    while (Reg < NUM_LOW_REGS && Last + 1 < NUM_LOW_REGS && (Mask >> (Last + 1) & 1) != 0) ++Last;
    WriteSeparator(Out, bFirst);
    if (Last > Reg) {
      Out.Add("%s-%s", RegName(Reg), RegName(Last));
    } else {
      Out.Add("%s", RegName(Reg));
    }
    Reg = Last + 1;
  }
}

void WriteTarget(CTextWriter& Out, const INST& Inst) {
  const U32 Addr = static_cast<U32>(Inst.Info.Target);
  char sLabel[LABEL_SIZE];
  U32 Offset = 0;
  if (!FindLabel(Inst, Addr, sLabel, Offset)) {
    Out.Add("0x%.08X", Addr);
  } else if (Offset != 0) {
    Out.Add("0x%.08X\t; <%s>+0x%.02X", Addr, sLabel, Offset);
  } else {
    Out.Add("%s\t; 0x%.08X", sLabel, Addr);
  }
}

void WriteLiteral(CTextWriter& Out, const INST& Inst) {
  const U32 Addr = static_cast<U32>(Inst.Info.Target);
  U32 Value = 0;
  if (!ReadWord(Inst, Addr, Value)) {
    const I32 Offset = static_cast<I32>(Addr - ((Inst.Addr + 4) & ~3u));
    Out.Add("[PC, #%s0x%.02X]\t; [0x%.08X]", Offset < 0 ? "-" : "", static_cast<U32>(Offset < 0 ? -Offset : Offset),
            Addr);
    return;
  }
  char sLabel[LABEL_SIZE];
  U32 Offset = 0;
  if (FindLabel(Inst, Value, sLabel, Offset) && Offset == 0) {
    Out.Add("=%s\t; [0x%.08X] =0x%.08X", sLabel, Addr, Value);
  } else {
    Out.Add("=0x%.08X\t; [0x%.08X]", Value, Addr);
  }
}

void WriteIndexed(CTextWriter& Out, U32 Rn, U32 Offset, bool bPre, bool bUp, bool bWriteBack) {
  const char* sSign = bUp ? "" : "-";
  if (!bPre) {
    Out.Add("[%s], #%s0x%.2X", RegName(Rn), sSign, Offset);
  } else if (Offset == 0 && bUp) {
    Out.Add("[%s]%s", RegName(Rn), bWriteBack ? "!" : "");
  } else {
    Out.Add("[%s, #%s0x%.2X]%s", RegName(Rn), sSign, Offset, bWriteBack ? "!" : "");
  }
}

U32 ExpandModifiedImmediate(U32 Imm12) {
  const U32 Byte = Imm12 & 0xFF;
  switch (Imm12 >> 8) {
    case 0:
      return Byte;
    case 1:
      return Byte << 16 | Byte;
    case 2:
      return Byte << 24 | Byte << 8;
    case 3:
      return Byte << 24 | Byte << 16 | Byte << 8 | Byte;
    default:
      break;
  }
  const U32 Rotation = Imm12 >> 7;
  const U32 Value = 0x80 | (Imm12 & 0x7F);
  return Value >> Rotation | Value << (32 - Rotation);
}
