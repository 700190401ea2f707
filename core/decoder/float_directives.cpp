// Operand directives of floating point. Bit 8 of the word tells double from single precision.

#include "core/decoder/operand_text.h"
#include "core/decoder/text_template.h"

namespace {

using OUT = CTextWriter;
using ARGS = DIRECTIVE_ARGS;

U32 SingleReg(U32 High, U32 Low) {
  return High << 1 | Low;
}
U32 DoubleReg(U32 Low, U32 High) {
  return High << 4 | Low;
}
void WriteReg(OUT& Out, char Letter, U32 Index) {
  Out.Add(Letter);
  Out.AddDec(Index);
}

void Suffix(OUT& Out, const INST& Inst, ARGS) {
  Out.Add(Inst.Bit(8) ? ".F64" : ".F32");
}
void SingleD(OUT& Out, const INST& Inst, ARGS) {
  WriteReg(Out, 'S', SingleReg(Inst.Bits(12, 4), Inst.Bits(22, 1)));
}
void SingleN(OUT& Out, const INST& Inst, ARGS) {
  WriteReg(Out, 'S', SingleReg(Inst.Bits(16, 4), Inst.Bits(7, 1)));
}
void SingleM(OUT& Out, const INST& Inst, ARGS) {
  WriteReg(Out, 'S', SingleReg(Inst.Bits(0, 4), Inst.Bits(5, 1)));
}
void SingleNext(OUT& Out, const INST& Inst, ARGS) {
  WriteReg(Out, 'S', SingleReg(Inst.Bits(0, 4), Inst.Bits(5, 1)) + 1);
}
void DoubleD(OUT& Out, const INST& Inst, ARGS) {
  WriteReg(Out, 'D', DoubleReg(Inst.Bits(12, 4), Inst.Bits(22, 1)));
}
void DoubleN(OUT& Out, const INST& Inst, ARGS) {
  WriteReg(Out, 'D', DoubleReg(Inst.Bits(16, 4), Inst.Bits(7, 1)));
}
void DoubleM(OUT& Out, const INST& Inst, ARGS) {
  WriteReg(Out, 'D', DoubleReg(Inst.Bits(0, 4), Inst.Bits(5, 1)));
}
void QuadN(OUT& Out, const INST& Inst, ARGS) {
  WriteReg(Out, 'Q', DoubleReg(Inst.Bits(16, 4), Inst.Bits(7, 1)) / 2);
}
void ByteLane(OUT& Out, const INST& Inst, ARGS) {
  Out.AddDec(Inst.Bits(21, 1) << 2 | Inst.Bits(5, 2));
}
void HalfwordLane(OUT& Out, const INST& Inst, ARGS) {
  Out.AddDec(Inst.Bits(21, 1) << 1 | Inst.Bits(6, 1));
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

void List(OUT& Out, const INST& Inst, ARGS) {
  const bool bDouble = Inst.Bit(8);
  const U32 High = Inst.Bits(12, 4);
  const U32 Low = Inst.Bits(22, 1);
  const U32 First = bDouble ? DoubleReg(High, Low) : SingleReg(High, Low);
  const U32 Count = bDouble ? Inst.Bits(1, 7) : Inst.Bits(0, 8);
  const char Letter = bDouble ? 'D' : 'S';
  WriteReg(Out, Letter, First);
  if (Count <= 1) return;
  Out.Add('-');
  WriteReg(Out, Letter, First + Count - 1);
}

void Immediate(OUT& Out, const INST& Inst, ARGS) {
  WriteFloat8(Out, Inst.Bits(16, 4) << 4 | Inst.Bits(0, 4));
}

void SystemReg(OUT& Out, const INST& Inst, ARGS) {
  Out.Add(FloatSystemRegOf(Inst));
}
void FixedSize(OUT& Out, const INST& Inst, ARGS) {
  Out.Add(Inst.Bit(7) ? "32" : "16");
}
void FixedBits(OUT& Out, const INST& Inst, ARGS) {
  const U32 Size = Inst.Bit(7) ? 32 : 16;
  WriteHex(Out, Size - (Inst.Bits(0, 4) << 1 | Inst.Bits(5, 1)));
}
void Rounding(OUT& Out, const INST& Inst, ARGS) {
  Out.Add("ANPM"[Inst.Bits(16, 2)]);
}

constexpr DIRECTIVE aDirective[] = {
    {"qn", QuadN},          {"bytelane", ByteLane},  {"halflane", HalfwordLane},
    {"f", Suffix},          {"sd", SingleD},         {"sn", SingleN},
    {"sm", SingleM},        {"snext", SingleNext},   {"dd", DoubleD},
    {"dn", DoubleN},        {"dm", DoubleM},         {"vd", FloatD},
    {"vn", FloatN},         {"vm", FloatM},          {"vlist", List},
    {"vimm", Immediate},    {"fixsize", FixedSize},  {"fixbits", FixedBits},
    {"rounding", Rounding}, {"fpsystem", SystemReg},
};

}  // namespace

std::span<const DIRECTIVE> FloatDirectives() {
  return aDirective;
}
