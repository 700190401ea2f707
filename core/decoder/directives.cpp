// The operand directives of text templates, by name.

#include <cmath>
#include <string_view>

#include "core/decoder/names.h"
#include "core/decoder/operand_text.h"
#include "core/decoder/text_template.h"

namespace {

using OUT = CTextWriter;
using ARGS = DIRECTIVE_ARGS;

U32 Field(const INST& Inst, ARGS Args) {
  return Inst.Bits(Args.Low, Args.Width) << Args.Shift;
}
U32 WideAmount(const INST& Inst) {
  return Inst.Bits(12, 3) << 2 | Inst.Bits(6, 2);
}
U32 Imm16Split(const INST& Inst) {
  return Inst.Bits(16, 4) << 12 | Inst.Bits(0, 12);
}

// Suffixes
void Cond(OUT& Out, const INST& Inst, ARGS) {
  Out.Add("%s", CondName(Inst.Cond));
}
void CondAt(OUT& Out, const INST& Inst, ARGS Args) {
  Out.Add("%s", CondName(Inst.Bits(Args.Low, 4)));
}
void SetFlags(OUT& Out, const INST& Inst, ARGS) {
  Out.Add("%s", Inst.Bit(20) ? "S" : "");
}
void SetFlags16(OUT& Out, const INST& Inst, ARGS) {
  Out.Add("%s", Inst.InITBlock() ? "" : "S");
}

void ITMask(OUT& Out, const INST& Inst, ARGS) {
  const bool bFirst = Inst.Bit(4);
  for (U32 Bit = 3; Bit > 0; --Bit) {
    if (Inst.Bits(0, Bit) != 0) Out.Add("%s", Inst.Bit(Bit) == bFirst ? "T" : "E");
  }
}

// Registers
void LowReg(OUT& Out, const INST& Inst, ARGS Args) {
  Out.Add("%s", RegName(Inst.Bits(Args.Low, 3)));
}
void Reg(OUT& Out, const INST& Inst, ARGS Args) {
  Out.Add("%s", RegName(Inst.Bits(Args.Low, 4)));
}
void HighDest(OUT& Out, const INST& Inst, ARGS) {
  Out.Add("%s", RegName(Inst.Bits(7, 1) << 3 | Inst.Bits(0, 3)));
}
void RegList(OUT& Out, const INST& Inst, ARGS Args) {
  WriteRegList(Out, Inst.Bits(Args.Low, Args.Width));
}
void PushList(OUT& Out, const INST& Inst, ARGS) {
  WriteRegList(Out, Inst.Bits(0, 8) | Inst.Bits(8, 1) << REG_LR);
}
void PopList(OUT& Out, const INST& Inst, ARGS) {
  WriteRegList(Out, Inst.Bits(0, 8) | Inst.Bits(8, 1) << REG_PC);
}
void NotInList(OUT& Out, const INST& Inst, ARGS) {
  Out.Add("%s", Inst.Bit(Inst.Bits(8, 3)) ? "" : "!");
}
void WriteBack(OUT& Out, const INST& Inst, ARGS Args) {
  Out.Add("%s", Inst.Bit(Args.Low) ? "!" : "");
}

// Numbers
void Hex(OUT& Out, const INST& Inst, ARGS Args) {
  Out.Add("#0x%.02X", Field(Inst, Args));
}
void Bare(OUT& Out, const INST& Inst, ARGS Args) {
  Out.Add("#%.2X", Field(Inst, Args));
}
void Dec(OUT& Out, const INST& Inst, ARGS Args) {
  Out.Add("#%u", Field(Inst, Args));
}
void Count(OUT& Out, const INST& Inst, ARGS Args) {
  Out.Add("#%u", Field(Inst, Args) + 1);
}
void BitDigit(OUT& Out, const INST& Inst, ARGS Args) {
  Out.Add("%u", Inst.Bits(Args.Low, 1));
}
void Offset(OUT& Out, const INST& Inst, ARGS Args) {
  if (Field(Inst, Args) != 0) Out.Add(", #0x%.2X", Field(Inst, Args));
}
void Amount(OUT& Out, const INST& Inst, ARGS) {
  Out.Add("#0x%.02X", Inst.Bits(6, 5) == 0 ? 32 : Inst.Bits(6, 5));
}
void WideAmountText(OUT& Out, const INST& Inst, ARGS) {
  Out.Add("#0x%.02X", WideAmount(Inst) == 0 ? 32 : WideAmount(Inst));
}
void ModifiedImmediate(OUT& Out, const INST& Inst, ARGS) {
  const U32 Imm12 = Inst.Bits(26, 1) << 11 | Inst.Bits(12, 3) << 8 | Inst.Bits(0, 8);
  Out.Add("#0x%.2X", ExpandModifiedImmediate(Imm12));
}
void WideImmediate(OUT& Out, const INST& Inst, ARGS) {
  Out.Add("#0x%.2X", Inst.Bits(26, 1) << 11 | Inst.Bits(12, 3) << 8 | Inst.Bits(0, 8));
}
void Imm16(OUT& Out, const INST& Inst, ARGS) {
  Out.Add("#0x%.2X", Inst.Bits(16, 4) << 12 | Inst.Bits(26, 1) << 11 | Inst.Bits(12, 3) << 8 | Inst.Bits(0, 8));
}
void HexImm16Split(OUT& Out, const INST& Inst, ARGS) {
  Out.Add("#0x%.4X", Imm16Split(Inst));
}
void BareImm16Split(OUT& Out, const INST& Inst, ARGS) {
  Out.Add("#%.2X", Imm16Split(Inst));
}
void LowBit(OUT& Out, const INST& Inst, ARGS) {
  Out.Add("#%u", WideAmount(Inst));
}
void FieldWidth(OUT& Out, const INST& Inst, ARGS) {
  Out.Add("#%d", static_cast<int>(Inst.Bits(0, 5)) - static_cast<int>(WideAmount(Inst)) + 1);
}

// Shifts
void Shift(OUT& Out, const INST& Inst, ARGS) {
  WriteShift(Out, Inst.Bits(4, 2), WideAmount(Inst));
}
void SaturationShift(OUT& Out, const INST& Inst, ARGS) {
  WriteShift(Out, Inst.Bit(21) ? 2 : 0, WideAmount(Inst));
}
void Rotation(OUT& Out, const INST& Inst, ARGS) {
  if (Inst.Bits(4, 2) != 0) Out.Add(", ROR #%u", Inst.Bits(4, 2) * 8);
}

// Addresses
void Target(OUT& Out, const INST& Inst, ARGS) {
  WriteTarget(Out, Inst);
}
void Literal(OUT& Out, const INST& Inst, ARGS) {
  WriteLiteral(Out, Inst);
}
void Index(OUT& Out, const INST& Inst, ARGS) {
  WriteShift(Out, 0, Inst.Bits(4, 2));
}
void Indexed(OUT& Out, const INST& Inst, ARGS Args) {
  WriteIndexed(Out, Inst.Bits(16, 4), Field(Inst, Args), Inst.Bit(24), Inst.Bit(23), Inst.Bit(21));
}
void IndexedByte(OUT& Out, const INST& Inst, ARGS) {
  WriteIndexed(Out, Inst.Bits(16, 4), Inst.Bits(0, 8), Inst.Bit(10), Inst.Bit(9), Inst.Bit(8));
}

// System
void InterruptFlags(OUT& Out, const INST& Inst, ARGS Args) {
  Out.Add("%s", InterruptFlagsName(Inst.Bits(Args.Low, 3)));
}
void Barrier(OUT& Out, const INST& Inst, ARGS) {
  Out.Add("%s", BarrierName(Inst.Bits(0, 4)));
}
void Coprocessor(OUT& Out, const INST& Inst, ARGS) {
  Out.Add("p%u", Inst.Bits(8, 4));
}
void CoprocessorReg(OUT& Out, const INST& Inst, ARGS Args) {
  Out.Add("c%u", Inst.Bits(Args.Low, 4));
}

void SysReg(OUT& Out, const INST& Inst) {
  const char* sName = SysRegName(Inst.Bits(0, 8), Inst.pContext->ArchVersion);
  if (sName != nullptr) {
    Out.Add("%s", sName);
  } else {
    Out.Add("#%u", Inst.Bits(0, 8));
  }
}

void SysRegRead(OUT& Out, const INST& Inst, ARGS) {
  if (Inst.Bit(20)) {
    Out.Add("%s", StatusRegName(true, 0));
  } else {
    SysReg(Out, Inst);
  }
}

// Only cores with CPSR write single bytes of it, so a mask of its control or extension byte tells them from M-profile.
void SysRegWrite(OUT& Out, const INST& Inst, ARGS) {
  constexpr const char* aAPSRFields[] = {"", "_g", "_nzcvq", "_nzcvqg"};
  const U32 Mask = Inst.Bits(8, 4);
  if (Inst.Bit(20) || (Mask & 3) != 0) {
    Out.Add("%s", StatusRegName(Inst.Bit(20), Mask));
    return;
  }
  SysReg(Out, Inst);
  if (Inst.Bits(0, 8) < 4) Out.Add("%s", aAPSRFields[Mask >> 2]);
}

// Floating point: bit 8 tells double from single
U32 SingleReg(U32 High, U32 Low) {
  return High << 1 | Low;
}
U32 DoubleReg(U32 Low, U32 High) {
  return High << 4 | Low;
}
void FloatSuffix(OUT& Out, const INST& Inst, ARGS) {
  Out.Add("%s", Inst.Bit(8) ? ".F64" : ".F32");
}
void SingleD(OUT& Out, const INST& Inst, ARGS) {
  Out.Add("S%u", SingleReg(Inst.Bits(12, 4), Inst.Bits(22, 1)));
}
void SingleN(OUT& Out, const INST& Inst, ARGS) {
  Out.Add("S%u", SingleReg(Inst.Bits(16, 4), Inst.Bits(7, 1)));
}
void SingleM(OUT& Out, const INST& Inst, ARGS) {
  Out.Add("S%u", SingleReg(Inst.Bits(0, 4), Inst.Bits(5, 1)));
}
void SingleNext(OUT& Out, const INST& Inst, ARGS) {
  Out.Add("S%u", SingleReg(Inst.Bits(0, 4), Inst.Bits(5, 1)) + 1);
}
void DoubleD(OUT& Out, const INST& Inst, ARGS) {
  Out.Add("D%u", DoubleReg(Inst.Bits(12, 4), Inst.Bits(22, 1)));
}
void DoubleN(OUT& Out, const INST& Inst, ARGS) {
  Out.Add("D%u", DoubleReg(Inst.Bits(16, 4), Inst.Bits(7, 1)));
}
void DoubleM(OUT& Out, const INST& Inst, ARGS) {
  Out.Add("D%u", DoubleReg(Inst.Bits(0, 4), Inst.Bits(5, 1)));
}
void FloatD(OUT& Out, const INST& Inst, ARGS Args) {
  (Inst.Bit(8) ? DoubleD : SingleD)(Out, Inst, Args);
}
void FloatN(OUT& Out, const INST& Inst, ARGS Args) {
  (Inst.Bit(8) ? DoubleN : SingleN)(Out, Inst, Args);
}
void FloatM(OUT& Out, const INST& Inst, ARGS Args) {
  (Inst.Bit(8) ? DoubleM : SingleM)(Out, Inst, Args);
}

void FloatList(OUT& Out, const INST& Inst, ARGS) {
  const bool bDouble = Inst.Bit(8);
  const U32 First =
      bDouble ? DoubleReg(Inst.Bits(12, 4), Inst.Bits(22, 1)) : SingleReg(Inst.Bits(12, 4), Inst.Bits(22, 1));
  const U32 Count = bDouble ? Inst.Bits(1, 7) : Inst.Bits(0, 8);
  const char Letter = bDouble ? 'D' : 'S';
  if (Count > 0) Out.Add("%c%u", Letter, First);
  if (Count > 1) Out.Add("-%c%u", Letter, First + Count - 1);
}

void FloatImmediate(OUT& Out, const INST& Inst, ARGS) {
  const U32 Imm8 = Inst.Bits(16, 4) << 4 | Inst.Bits(0, 4);
  const int Exponent = static_cast<int>((Imm8 >> 4 & 7) ^ 4) - 3;
  const double Value = std::ldexp((16.0 + (Imm8 & 15)) / 16.0, Exponent);
  Out.Add("#%g", (Imm8 & 0x80) != 0 ? -Value : Value);
}

void FixedSize(OUT& Out, const INST& Inst, ARGS) {
  Out.Add("%u", Inst.Bit(7) ? 32u : 16u);
}
void FixedBits(OUT& Out, const INST& Inst, ARGS) {
  const int Size = Inst.Bit(7) ? 32 : 16;
  const int Bits = Size - static_cast<int>(Inst.Bits(0, 4) << 1 | Inst.Bits(5, 1));
  Out.Add("#0x%.02X", static_cast<U32>(Bits > 0 ? Bits : 0));
}
void Rounding(OUT& Out, const INST& Inst, ARGS) {
  Out.Add("%c", "ANPM"[Inst.Bits(16, 2)]);
}

constexpr DIRECTIVE aDirective[] = {
    {"c", Cond},
    {"cond", CondAt},
    {"s", SetFlags},
    {"z", SetFlags16},
    {"itmask", ITMask},
    {"r", LowReg},
    {"R", Reg},
    {"hd", HighDest},
    {"list", RegList},
    {"pushlist", PushList},
    {"poplist", PopList},
    {"notinlist", NotInList},
    {"writeback", WriteBack},
    {"hex", Hex},
    {"bare", Bare},
    {"dec", Dec},
    {"count", Count},
    {"bit", BitDigit},
    {"offset", Offset},
    {"amount", Amount},
    {"wideamount", WideAmountText},
    {"modimm", ModifiedImmediate},
    {"wideimm", WideImmediate},
    {"imm", Imm16},
    {"immsplit", HexImm16Split},
    {"baresplit", BareImm16Split},
    {"lsb", LowBit},
    {"fieldwidth", FieldWidth},
    {"shift", Shift},
    {"satshift", SaturationShift},
    {"rotation", Rotation},
    {"target", Target},
    {"literal", Literal},
    {"index", Index},
    {"indexed", Indexed},
    {"indexedbyte", IndexedByte},
    {"aif", InterruptFlags},
    {"barrier", Barrier},
    {"cp", Coprocessor},
    {"cr", CoprocessorReg},
    {"sysregread", SysRegRead},
    {"sysregwrite", SysRegWrite},
    {"f", FloatSuffix},
    {"sd", SingleD},
    {"sn", SingleN},
    {"sm", SingleM},
    {"snext", SingleNext},
    {"dd", DoubleD},
    {"dn", DoubleN},
    {"dm", DoubleM},
    {"vd", FloatD},
    {"vn", FloatN},
    {"vm", FloatM},
    {"vlist", FloatList},
    {"vimm", FloatImmediate},
    {"fixsize", FixedSize},
    {"fixbits", FixedBits},
    {"rounding", Rounding},
};

}  // namespace

DIRECTIVE_FUNC FindDirective(std::string_view sName) {
  for (const DIRECTIVE& Directive : aDirective) {
    if (sName == Directive.sName) return Directive.pfWrite;
  }
  return nullptr;
}
