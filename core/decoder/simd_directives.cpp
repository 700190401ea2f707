// Operand directives of Advanced SIMD. Words are in the form of the ARM instruction set.

#include "core/decoder/names.h"
#include "core/decoder/operand_text.h"
#include "core/decoder/simd_list.h"
#include "core/decoder/text_template.h"

namespace {

using OUT = CTextWriter;
using ARGS = DIRECTIVE_ARGS;

U32 RegD(const INST& Inst) {
  return Inst.Bits(22, 1) << 4 | Inst.Bits(12, 4);
}
U32 RegN(const INST& Inst) {
  return Inst.Bits(7, 1) << 4 | Inst.Bits(16, 4);
}
U32 RegM(const INST& Inst) {
  return Inst.Bits(5, 1) << 4 | Inst.Bits(0, 4);
}

void WriteReg(OUT& Out, U32 Double, bool bQuad) {
  Out.Add(bQuad ? 'Q' : 'D');
  Out.AddDec(bQuad ? Double / 2 : Double);
}

// Registers whose width bit 6 gives, or bit 24 beside a scalar
void VectorD(OUT& Out, const INST& Inst, ARGS) {
  WriteReg(Out, RegD(Inst), Inst.Bit(6));
}
void VectorN(OUT& Out, const INST& Inst, ARGS) {
  WriteReg(Out, RegN(Inst), Inst.Bit(6));
}
void VectorM(OUT& Out, const INST& Inst, ARGS) {
  WriteReg(Out, RegM(Inst), Inst.Bit(6));
}
void ByScalarD(OUT& Out, const INST& Inst, ARGS) {
  WriteReg(Out, RegD(Inst), Inst.Bit(24));
}
void ByScalarN(OUT& Out, const INST& Inst, ARGS) {
  WriteReg(Out, RegN(Inst), Inst.Bit(24));
}
void QuadD(OUT& Out, const INST& Inst, ARGS) {
  WriteReg(Out, RegD(Inst), true);
}
void QuadM(OUT& Out, const INST& Inst, ARGS) {
  WriteReg(Out, RegM(Inst), true);
}
void Scalar(OUT& Out, const INST& Inst, ARGS) {
  const bool bHalfword = Inst.Bits(20, 2) == 1;
  WriteReg(Out, bHalfword ? Inst.Bits(0, 3) : Inst.Bits(0, 4), false);
  Out.Add('[');
  Out.AddDec(bHalfword ? Inst.Bits(5, 1) << 1 | Inst.Bits(3, 1) : Inst.Bits(5, 1));
  Out.Add(']');
}

// Element types
void Signedness(OUT& Out, const INST& Inst, ARGS) {
  Out.Add(Inst.Bit(24) ? 'U' : 'S');
}
void Size(OUT& Out, const INST& Inst, ARGS Args) {
  Out.AddDec(8u << Inst.Bits(Args.Low, 2));
}
void WideSize(OUT& Out, const INST& Inst, ARGS Args) {
  Out.AddDec(16u << Inst.Bits(Args.Low, 2));
}

// Shifts: the highest bit of L:imm6 gives the size of the element
U32 ShiftField(const INST& Inst) {
  return Inst.Bits(7, 1) << 6 | Inst.Bits(16, 6);
}
U32 ShiftBits(const INST& Inst) {
  U32 Bits = 64;
  while (Bits > 8 && ShiftField(Inst) < Bits) Bits /= 2;
  return Bits;
}
void ShiftSize(OUT& Out, const INST& Inst, ARGS) {
  Out.AddDec(ShiftBits(Inst));
}
void ShiftWideSize(OUT& Out, const INST& Inst, ARGS) {
  Out.AddDec(2 * ShiftBits(Inst));
}
void RightShift(OUT& Out, const INST& Inst, ARGS) {
  WriteDec(Out, 2 * ShiftBits(Inst) - ShiftField(Inst));
}
void LeftShift(OUT& Out, const INST& Inst, ARGS) {
  WriteDec(Out, ShiftField(Inst) - ShiftBits(Inst));
}

// Immediates
U32 ImmediateByte(const INST& Inst) {
  return Inst.Bits(24, 1) << 7 | Inst.Bits(16, 3) << 4 | Inst.Bits(0, 4);
}
void WriteByteMask(OUT& Out, U32 Byte) {
  Out.Add("#0x");
  for (U32 Bit = 8; Bit-- > 0;) Out.Add((Byte >> Bit & 1) != 0 ? "FF" : "00");
}
void VectorImmediate(OUT& Out, const INST& Inst, ARGS) {
  const U32 Byte = ImmediateByte(Inst);
  const U32 Mode = Inst.Bits(8, 4);
  if (Mode == 14 && Inst.Bit(5)) {
    WriteByteMask(Out, Byte);
  } else if (Mode == 14) {
    WriteHex(Out, Byte);
  } else if (Mode >= 12) {  // ones shifted in from below
    const U32 NumBits = Mode == 12 ? 8 : 16;
    WriteHex(Out, Byte << NumBits | ((1u << NumBits) - 1));
  } else {
    WriteHex(Out, Byte << (Mode / 2 % 4 * 8));
  }
}
void VectorFloat(OUT& Out, const INST& Inst, ARGS) {
  WriteFloat8(Out, ImmediateByte(Inst));
}

// Lists
void TableList(OUT& Out, const INST& Inst, ARGS) {
  for (U32 i = 0; i <= Inst.Bits(8, 2); ++i) {
    if (i > 0) Out.Add(", ");
    WriteReg(Out, RegN(Inst) + i, false);
  }
}

enum LANES { NO_LANES, ONE_LANE, ALL_LANES };

void WriteList(OUT& Out, const SIMD_LIST& List, LANES Lanes) {
  for (U32 i = 0; i < List.Count; ++i) {
    if (i > 0) Out.Add(", ");
    WriteReg(Out, List.First + i * List.Step, false);
    if (Lanes == NO_LANES) continue;
    Out.Add('[');
    if (Lanes == ONE_LANE) Out.AddDec(List.Lane);
    Out.Add(']');
  }
}

void WriteAddr(OUT& Out, const INST& Inst, const SIMD_LIST& List) {
  Out.Add('[');
  Out.Add(RegName(Inst.Bits(16, 4)));
  if (List.Alignment != 0) {
    Out.Add(':');
    Out.AddDec(List.Alignment);
  }
  Out.Add(']');
  const U32 Rm = Inst.Bits(0, 4);
  if (Rm == REG_SP) {
    Out.Add('!');
  } else if (Rm != REG_PC) {
    Out.Add(", ");
    Out.Add(RegName(Rm));
  }
}

void WholeList(OUT& Out, const INST& Inst, ARGS) {
  WriteList(Out, SimdWholeList(Inst), NO_LANES);
}
void WholeAddr(OUT& Out, const INST& Inst, ARGS) {
  WriteAddr(Out, Inst, SimdWholeList(Inst));
}
void LaneList(OUT& Out, const INST& Inst, ARGS) {
  WriteList(Out, SimdLaneList(Inst), ONE_LANE);
}
void LaneAddr(OUT& Out, const INST& Inst, ARGS) {
  WriteAddr(Out, Inst, SimdLaneList(Inst));
}
void AllList(OUT& Out, const INST& Inst, ARGS) {
  WriteList(Out, SimdAllLanesList(Inst), ALL_LANES);
}
void AllAddr(OUT& Out, const INST& Inst, ARGS) {
  WriteAddr(Out, Inst, SimdAllLanesList(Inst));
}
void AllSize(OUT& Out, const INST& Inst, ARGS) {
  Out.AddDec(SimdAllLanesList(Inst).ElementBits);
}

constexpr DIRECTIVE aDirective[] = {
    {"xd", VectorD},
    {"xn", VectorN},
    {"xm", VectorM},
    {"yd", ByScalarD},
    {"yn", ByScalarN},
    {"qd", QuadD},
    {"qm", QuadM},
    {"scalar", Scalar},
    {"su", Signedness},
    {"size", Size},
    {"wide", WideSize},
    {"shiftsize", ShiftSize},
    {"shiftwide", ShiftWideSize},
    {"rshift", RightShift},
    {"lshift", LeftShift},
    {"vecimm", VectorImmediate},
    {"vecfloat", VectorFloat},
    {"tablelist", TableList},
    {"structlist", WholeList},
    {"structaddr", WholeAddr},
    {"lanelist", LaneList},
    {"laneaddr", LaneAddr},
    {"alllist", AllList},
    {"alladdr", AllAddr},
    {"allsize", AllSize},
};

}  // namespace

std::span<const DIRECTIVE> SimdDirectives() {
  return aDirective;
}
