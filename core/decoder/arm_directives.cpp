// Operand directives of the ARM instruction set.

#include <bit>

#include "core/decoder/names.h"
#include "core/decoder/operand_text.h"
#include "core/decoder/text_template.h"

namespace {

using OUT = CTextWriter;
using ARGS = DIRECTIVE_ARGS;

// 8 bits rotated right by twice the 4 bits before them.
void RotatedImmediate(OUT& Out, const INST& Inst, ARGS) {
  WriteHex(Out, std::rotr(Inst.Bits(0, 8), static_cast<int>(2 * Inst.Bits(8, 4))));
}
void ImmediateShift(OUT& Out, const INST& Inst, ARGS) {
  WriteShift(Out, Inst.Bits(5, 2), Inst.Bits(7, 5));
}
void RegisterShift(OUT& Out, const INST& Inst, ARGS) {
  Out.Add(", ");
  Out.Add(ShiftName(Inst.Bits(5, 2)));
  Out.Add(' ');
  Out.Add(RegName(Inst.Bits(8, 4)));
}
void FieldWidth(OUT& Out, const INST& Inst, ARGS) {
  WriteDec(Out, Inst.Bits(16, 5) - Inst.Bits(7, 5) + 1);
}
// 16 bits at 19:8 and 3:0, with the number of digits as argument.
void HexImm16(OUT& Out, const INST& Inst, ARGS Args) {
  WriteHex(Out, Inst.Bits(8, 12) << 4 | Inst.Bits(0, 4), Args.Low);
}
void BareImm16(OUT& Out, const INST& Inst, ARGS) {
  Out.Add('#');
  Out.AddHex(Inst.Bits(8, 12) << 4 | Inst.Bits(0, 4), 2);
}

// Addresses: bits 24, 23 and 21 are pre-index, up and write-back
void IndexedSplit(OUT& Out, const INST& Inst, ARGS) {
  WriteIndexed(Out, Inst.Bits(16, 4), Inst.Bits(8, 4) << 4 | Inst.Bits(0, 4), Inst.Bit(24), Inst.Bit(23), Inst.Bit(21));
}

void WriteRegIndexed(OUT& Out, const INST& Inst, bool bShifted, bool bPre, bool bWriteBack) {
  Out.Add('[');
  Out.Add(RegName(Inst.Bits(16, 4)));
  Out.Add(bPre ? ", " : "], ");
  if (!Inst.Bit(23)) Out.Add('-');
  Out.Add(RegName(Inst.Bits(0, 4)));
  if (bShifted) WriteShift(Out, Inst.Bits(5, 2), Inst.Bits(7, 5));
  if (bPre) Out.Add(bWriteBack ? "]!" : "]");
}

void IndexedReg(OUT& Out, const INST& Inst, ARGS) {
  WriteRegIndexed(Out, Inst, false, Inst.Bit(24), Inst.Bit(21));
}
void IndexedShifted(OUT& Out, const INST& Inst, ARGS) {
  WriteRegIndexed(Out, Inst, true, Inst.Bit(24), Inst.Bit(21));
}

void Preload(OUT& Out, const INST& Inst, ARGS) {
  WriteIndexed(Out, Inst.Bits(16, 4), Inst.Bits(0, 12), true, Inst.Bit(23), false);
}
void PreloadShifted(OUT& Out, const INST& Inst, ARGS) {
  WriteRegIndexed(Out, Inst, true, true, false);
}

// System
void StatusReg(OUT& Out, const INST& Inst, ARGS) {
  Out.Add(StatusRegName(Inst.Bit(22), 0));
}
void StatusRegFields(OUT& Out, const INST& Inst, ARGS) {
  Out.Add(StatusRegName(Inst.Bit(22), Inst.Bits(16, 4)));
}
void BankedReg(OUT& Out, const INST& Inst, ARGS) {
  Out.Add(BankedRegOf(Inst));
}

constexpr DIRECTIVE aDirective[] = {
    {"rotimm", RotatedImmediate},
    {"armshift", ImmediateShift},
    {"regshift", RegisterShift},
    {"armwidth", FieldWidth},
    {"immgap", HexImm16},
    {"bareimmgap", BareImm16},
    {"indexedsplit", IndexedSplit},
    {"indexedreg", IndexedReg},
    {"indexedshifted", IndexedShifted},
    {"preload", Preload},
    {"preloadshifted", PreloadShifted},
    {"psr", StatusReg},
    {"psrfields", StatusRegFields},
    {"bankedreg", BankedReg},
};

}  // namespace

std::span<const DIRECTIVE> ArmDirectives() {
  return aDirective;
}
