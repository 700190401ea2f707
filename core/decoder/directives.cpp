// Operand directives of both instruction sets and of Thumb alone.

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

// Suffixes
void Cond(OUT& Out, const INST& Inst, ARGS) {
  Out.Add(CondName(Inst.Cond));
}
void CondAt(OUT& Out, const INST& Inst, ARGS Args) {
  Out.Add(CondName(Inst.Bits(Args.Low, 4)));
}
void SetFlags(OUT& Out, const INST& Inst, ARGS) {
  if (Inst.Bit(20)) Out.Add('S');
}
void SetFlags16(OUT& Out, const INST& Inst, ARGS) {
  if (!Inst.InITBlock()) Out.Add('S');
}

void ITMask(OUT& Out, const INST& Inst, ARGS) {
  const bool bFirst = Inst.Bit(4);
  for (U32 Bit = 3; Bit > 0; --Bit) {
    if (Inst.Bits(0, Bit) != 0) Out.Add(Inst.Bit(Bit) == bFirst ? 'T' : 'E');
  }
}

// Registers
void LowReg(OUT& Out, const INST& Inst, ARGS Args) {
  Out.Add(RegName(Inst.Bits(Args.Low, 3)));
}
void Reg(OUT& Out, const INST& Inst, ARGS Args) {
  Out.Add(RegName(Inst.Bits(Args.Low, 4)));
}
void NextReg(OUT& Out, const INST& Inst, ARGS Args) {
  Out.Add(RegName(Inst.Bits(Args.Low, 4) + 1));
}
// The destination of a move from a coprocessor: in the place of the PC it is the flags.
void RegOrFlags(OUT& Out, const INST& Inst, ARGS Args) {
  const U32 Index = Inst.Bits(Args.Low, 4);
  Out.Add(Index == REG_PC ? std::string_view("APSR_nzcv") : RegName(Index));
}
void HighDest(OUT& Out, const INST& Inst, ARGS) {
  Out.Add(RegName(Inst.Bits(7, 1) << 3 | Inst.Bits(0, 3)));
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
  if (!Inst.Bit(Inst.Bits(8, 3))) Out.Add('!');
}
void WriteBack(OUT& Out, const INST& Inst, ARGS Args) {
  if (Inst.Bit(Args.Low)) Out.Add('!');
}

// The flags stand in the place of the PC.
void ClearList(OUT& Out, const INST& Inst, ARGS) {
  const U32 Regs = Inst.Bits(0, REG_PC);
  WriteRegList(Out, Regs);
  if (Inst.Bit(REG_PC)) Out.Add(Regs != 0 ? ", APSR" : "APSR");
}

// Numbers
void Hex(OUT& Out, const INST& Inst, ARGS Args) {
  WriteHex(Out, Field(Inst, Args));
}
void Bare(OUT& Out, const INST& Inst, ARGS Args) {
  Out.Add('#');
  Out.AddHex(Field(Inst, Args), 2);
}
void Dec(OUT& Out, const INST& Inst, ARGS Args) {
  WriteDec(Out, Field(Inst, Args));
}
void Count(OUT& Out, const INST& Inst, ARGS Args) {
  WriteDec(Out, Field(Inst, Args) + 1);
}
void Digits(OUT& Out, const INST& Inst, ARGS Args) {
  Out.AddDec(Field(Inst, Args));
}
void Offset(OUT& Out, const INST& Inst, ARGS Args) {
  if (Field(Inst, Args) == 0) return;
  Out.Add(", ");
  WriteHex(Out, Field(Inst, Args));
}
void Amount(OUT& Out, const INST& Inst, ARGS Args) {
  const U32 Value = Inst.Bits(Args.Low, Args.Width);
  WriteHex(Out, Value == 0 ? 32 : Value);
}
void WideAmountText(OUT& Out, const INST& Inst, ARGS) {
  WriteHex(Out, WideAmount(Inst) == 0 ? 32 : WideAmount(Inst));
}
void ModifiedImmediate(OUT& Out, const INST& Inst, ARGS) {
  const U32 Imm12 = Inst.Bits(26, 1) << 11 | Inst.Bits(12, 3) << 8 | Inst.Bits(0, 8);
  WriteHex(Out, ExpandModifiedImmediate(Imm12));
}
void WideImmediate(OUT& Out, const INST& Inst, ARGS) {
  WriteHex(Out, Inst.Bits(26, 1) << 11 | Inst.Bits(12, 3) << 8 | Inst.Bits(0, 8));
}
void Imm16(OUT& Out, const INST& Inst, ARGS) {
  WriteHex(Out, Inst.Bits(16, 4) << 12 | Inst.Bits(26, 1) << 11 | Inst.Bits(12, 3) << 8 | Inst.Bits(0, 8));
}
// 16 bits at 19:16 and 11:0, with the number of digits as argument.
void HexImm16Split(OUT& Out, const INST& Inst, ARGS Args) {
  WriteHex(Out, Inst.Bits(16, 4) << 12 | Inst.Bits(0, 12), Args.Low);
}
void BareImm16Split(OUT& Out, const INST& Inst, ARGS) {
  Out.Add('#');
  Out.AddHex(Inst.Bits(16, 4) << 12 | Inst.Bits(0, 12), 2);
}
void LowBit(OUT& Out, const INST& Inst, ARGS) {
  WriteDec(Out, WideAmount(Inst));
}
void FieldWidth(OUT& Out, const INST& Inst, ARGS) {
  WriteDec(Out, Inst.Bits(0, 5) - WideAmount(Inst) + 1);
}

// Shifts
void Shift(OUT& Out, const INST& Inst, ARGS) {
  WriteShift(Out, Inst.Bits(4, 2), WideAmount(Inst));
}
void SaturationShift(OUT& Out, const INST& Inst, ARGS) {
  WriteShift(Out, Inst.Bit(21) ? 2 : 0, WideAmount(Inst));
}
void Rotation(OUT& Out, const INST& Inst, ARGS Args) {
  constexpr U32 ROR = 3;
  if (Inst.Bits(Args.Low, 2) != 0) WriteShift(Out, ROR, Inst.Bits(Args.Low, 2) * 8);
}

// Addresses
void Target(OUT& Out, const INST& Inst, ARGS) {
  WriteTarget(Out, Inst);
}
void Literal(OUT& Out, const INST& Inst, ARGS) {
  if (Inst.bArm) {
    WriteArmLiteral(Out, Inst);
  } else {
    WriteLiteral(Out, Inst);
  }
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

// Selection by a condition, with the shorter names for equal operands, whose condition is the opposite one
void WriteSelectReg(OUT& Out, U32 Reg) {
  Out.Add(", ");
  Out.Add(Reg == REG_PC ? std::string_view("ZR") : RegName(Reg));
}
void Select(OUT& Out, const INST& Inst, ARGS) {
  enum { SEL, INC, INV, NEG };
  static constexpr std::string_view aName[] = {"CSEL", "CSINC", "CSINV", "CSNEG"};
  static constexpr std::string_view aSameName[] = {"", "CINC", "CINV", "CNEG"};
  const U32 Operation = Inst.Bits(12, 2);
  const U32 Rn = Inst.Bits(16, 4), Rm = Inst.Bits(0, 4), Cond = Inst.Bits(4, 4);
  const bool bSame = Rn == Rm && Operation != SEL && (Rn != REG_PC || Operation != NEG);
  const bool bNone = bSame && Rn == REG_PC;
  Out.Add(bNone ? (Operation == INC ? "CSET" : "CSETM") : bSame ? aSameName[Operation] : aName[Operation]);
  Out.Add('\t');
  Out.Add(RegName(Inst.Bits(8, 4)));
  if (!bNone) WriteSelectReg(Out, Rn);
  if (!bSame) WriteSelectReg(Out, Rm);
  Out.Add(", ");
  Out.Add(CondName(bSame ? Cond ^ 1 : Cond));
}

// System
void InterruptFlags(OUT& Out, const INST& Inst, ARGS Args) {
  Out.Add(InterruptFlagsName(Inst.Bits(Args.Low, 3)));
}
void Barrier(OUT& Out, const INST& Inst, ARGS) {
  Out.Add(BarrierName(Inst.Bits(0, 4)));
}
void Coprocessor(OUT& Out, const INST& Inst, ARGS) {
  Out.Add('p');
  Out.AddDec(Inst.Bits(8, 4));
}
void CoprocessorReg(OUT& Out, const INST& Inst, ARGS Args) {
  Out.Add('c');
  Out.AddDec(Inst.Bits(Args.Low, 4));
}

// Without index and write-back the byte is an option for the coprocessor.
void CoprocessorIndexed(OUT& Out, const INST& Inst, ARGS) {
  if (!Inst.Bit(24) && !Inst.Bit(21)) {
    Out.Add('[');
    Out.Add(RegName(Inst.Bits(16, 4)));
    Out.Add("], {");
    Out.AddDec(Inst.Bits(0, 8));
    Out.Add('}');
    return;
  }
  WriteIndexed(Out, Inst.Bits(16, 4), Inst.Bits(0, 8) << 2, Inst.Bit(24), Inst.Bit(23), Inst.Bit(21));
}

void SysReg(OUT& Out, const INST& Inst) {
  const char* sName = SysRegName(Inst.Bits(0, 8), Inst.pContext->ArchVersion);
  if (sName != nullptr) {
    Out.Add(sName);
  } else {
    WriteDec(Out, Inst.Bits(0, 8));
  }
}

void SysRegRead(OUT& Out, const INST& Inst, ARGS) {
  if (Inst.Bit(20)) {
    Out.Add(StatusRegName(true, 0));
  } else {
    SysReg(Out, Inst);
  }
}

// Only cores with CPSR write single bytes of it, so a mask of its control or extension byte tells them from M-profile.
void SysRegWrite(OUT& Out, const INST& Inst, ARGS) {
  constexpr const char* aAPSRFields[] = {"", "_g", "_nzcvq", "_nzcvqg"};
  const U32 Mask = Inst.Bits(8, 4);
  if (Inst.Bit(20) || (Mask & 3) != 0) {
    Out.Add(StatusRegName(Inst.Bit(20), Mask));
    return;
  }
  SysReg(Out, Inst);
  if (Inst.Bits(0, 8) < 4) Out.Add(aAPSRFields[Mask >> 2]);
}

constexpr DIRECTIVE aDirective[] = {
    {"c", Cond},
    {"cond", CondAt},
    {"s", SetFlags},
    {"z", SetFlags16},
    {"itmask", ITMask},
    {"r", LowReg},
    {"R", Reg},
    {"Rnext", NextReg},
    {"Rflags", RegOrFlags},
    {"hd", HighDest},
    {"list", RegList},
    {"pushlist", PushList},
    {"poplist", PopList},
    {"clearlist", ClearList},
    {"notinlist", NotInList},
    {"writeback", WriteBack},
    {"hex", Hex},
    {"bare", Bare},
    {"dec", Dec},
    {"count", Count},
    {"digits", Digits},
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
    {"select", Select},
    {"aif", InterruptFlags},
    {"barrier", Barrier},
    {"cp", Coprocessor},
    {"cr", CoprocessorReg},
    {"cpindexed", CoprocessorIndexed},
    {"sysregread", SysRegRead},
    {"sysregwrite", SysRegWrite},
};

}  // namespace

std::span<const DIRECTIVE> GeneralDirectives() {
  return aDirective;
}
