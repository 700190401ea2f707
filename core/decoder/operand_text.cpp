#include "core/decoder/operand_text.h"

#include <cmath>

#include "base/endian.h"
#include "core/decoder/names.h"

namespace {

constexpr U32 LABEL_SIZE = 128;   // characters
constexpr U32 NUM_LOW_REGS = 13;  // R0 to R12 take part in runs

struct LABEL {
  char sName[LABEL_SIZE];
  U32 Offset = 0;
};

bool FindLabel(const INST& Inst, U32 Addr, LABEL& Label) {
  const DISASM_API* pAPI = Inst.pContext->pAPI;
  if (pAPI == nullptr || !pAPI->pfGetLabel) return false;
  Label.sName[0] = 0;
  return pAPI->pfGetLabel(Addr, Label.sName, LABEL_SIZE, Label.Offset) > 0 && Label.sName[0] != 0;
}

bool ReadWord(const INST& Inst, U32 Addr, U32& Value) {
  const DISASM_API* pAPI = Inst.pContext->pAPI;
  if (pAPI == nullptr || !pAPI->pfReadData) return false;
  U8 aByte[4];
  if (pAPI->pfReadData(Addr, sizeof(aByte), aByte) != static_cast<int>(sizeof(aByte))) return false;
  Value = LoadInt<U32>(aByte, (Inst.pContext->BigEndian | Inst.pContext->BigEndianData) != 0);
  return true;
}

void WriteSeparator(CTextWriter& Out, bool& bFirst) {
  if (!bFirst) Out.Add(", ");
  bFirst = false;
}

void WriteAddr(CTextWriter& Out, U32 Addr) {
  Out.Add("0x");
  Out.AddHex(Addr, 8);
}

void WriteSignedHex(CTextWriter& Out, U32 Offset, bool bUp) {
  Out.Add(bUp ? "#0x" : "#-0x");
  Out.AddHex(Offset, 2);
}

// "[PC, #0x..]", the literal's distance from the PC.
void WritePCRelative(CTextWriter& Out, const INST& Inst) {
  const U32 Base = Inst.PC & ~3u;
  const U32 Addr = static_cast<U32>(Inst.Info.Target);
  const bool bUp = static_cast<I32>(Addr - Base) >= 0;
  Out.Add("[PC, ");
  WriteSignedHex(Out, bUp ? Addr - Base : Base - Addr, bUp);
  Out.Add(']');
}

void WriteLiteralAddr(CTextWriter& Out, U32 Addr) {
  Out.Add("\t; [");
  WriteAddr(Out, Addr);
  Out.Add(']');
}

}  // namespace

void WriteHex(CTextWriter& Out, U32 Value, U32 MinDigits) {
  Out.Add("#0x");
  Out.AddHex(Value, MinDigits);
}

void WriteDec(CTextWriter& Out, U32 Value) {
  Out.Add('#');
  Out.AddDec(Value);
}

void WriteShift(CTextWriter& Out, U32 Type, U32 Amount) {
  enum { LSL, LSR, ASR, ROR };
  if (Type == LSL && Amount == 0) return;
  if (Type == ROR && Amount == 0) {
    Out.Add(", RRX #1");
    return;
  }
  if ((Type == LSR || Type == ASR) && Amount == 0) Amount = 32;
  Out.Add(", ");
  Out.Add(ShiftName(Type));
  Out.Add(" #");
  Out.AddDec(Amount);
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
    Out.Add(RegName(Reg));
    if (Last > Reg) {
      Out.Add('-');
      Out.Add(RegName(Last));
    }
    Reg = Last + 1;
  }
}

void WriteTarget(CTextWriter& Out, const INST& Inst) {
  const U32 Addr = static_cast<U32>(Inst.Info.Target);
  LABEL Label;
  if (!FindLabel(Inst, Addr, Label)) {
    WriteAddr(Out, Addr);
  } else if (Label.Offset != 0) {
    Out.Format("0x%.08X\t; <%s>+0x%.02X", Addr, Label.sName, Label.Offset);
  } else {
    Out.Format("%s\t; 0x%.08X", Label.sName, Addr);
  }
}

void WriteLiteral(CTextWriter& Out, const INST& Inst) {
  const U32 Addr = static_cast<U32>(Inst.Info.Target);
  U32 Value = 0;
  LABEL Label;
  if (!ReadWord(Inst, Addr, Value)) {
    WritePCRelative(Out, Inst);
    WriteLiteralAddr(Out, Addr);
  } else if (FindLabel(Inst, Value, Label) && Label.Offset == 0) {
    Out.Format("=%s\t; [0x%.08X] =0x%.08X", Label.sName, Addr, Value);
  } else {
    Out.Add('=');
    WriteAddr(Out, Value);
    WriteLiteralAddr(Out, Addr);
  }
}

void WriteArmLiteral(CTextWriter& Out, const INST& Inst) {
  const U32 Addr = static_cast<U32>(Inst.Info.Target);
  WritePCRelative(Out, Inst);
  WriteLiteralAddr(Out, Addr);
  U32 Value = 0;
  if (!ReadWord(Inst, Addr, Value)) return;
  Out.Add(" =");
  WriteAddr(Out, Value);
  LABEL Label;
  if (!FindLabel(Inst, Value, Label)) return;
  Out.Format(" <%s>", Label.sName);
  if (Label.Offset != 0) Out.Format("+0x%.02X", Label.Offset);
}

void WriteIndexed(CTextWriter& Out, U32 Rn, U32 Offset, bool bPre, bool bUp, bool bWriteBack) {
  Out.Add('[');
  Out.Add(RegName(Rn));
  if (!bPre) {
    Out.Add("], ");
    WriteSignedHex(Out, Offset, bUp);
    return;
  }
  if (Offset != 0 || !bUp || bWriteBack) {
    Out.Add(", ");
    WriteSignedHex(Out, Offset, bUp);
  }
  Out.Add(bWriteBack ? "]!" : "]");
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

const char* BankedRegOf(const INST& Inst) {
  if (Inst.bArm) return BankedRegName(Inst.Bit(22), Inst.Bits(8, 1) << 4 | Inst.Bits(16, 4));
  const bool bRead = Inst.Bit(21);
  return BankedRegName(Inst.Bit(20), Inst.Bits(4, 1) << 4 | Inst.Bits(bRead ? 16 : 8, 4));
}

const char* FloatSystemRegOf(const INST& Inst) {
  return FloatSystemRegName(Inst.Bits(22, 1) << 3 | Inst.Bits(13, 3));
}

void WriteFloat8(CTextWriter& Out, U32 Imm8) {
  const int Exponent = static_cast<int>((Imm8 >> 4 & 7) ^ 4) - 3;
  const double Value = std::ldexp((16.0 + (Imm8 & 15)) / 16.0, Exponent);
  Out.Format("#%g", (Imm8 & 0x80) != 0 ? -Value : Value);
}
