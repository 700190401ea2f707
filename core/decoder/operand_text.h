#pragma once

#include "core/decoder/inst.h"
#include "core/decoder/text_writer.h"

// Operands that several directives share.

// "#0x.." with at least MinDigits digits.
void WriteHex(CTextWriter& Out, U32 Value, U32 MinDigits = 2);
// "#n"
void WriteDec(CTextWriter& Out, U32 Value);
// ", LSL #n" and its like, with the readings of amount 0; nothing for LSL #0.
void WriteShift(CTextWriter& Out, U32 Type, U32 Amount);
// Registers of a mask in ascending order, runs of R0 to R12 as "R4-R7".
void WriteRegList(CTextWriter& Out, U32 Mask);
// A code address with its label.
void WriteTarget(CTextWriter& Out, const INST& Inst);
// A literal load's operand in Thumb: the value with its label, or the address.
void WriteLiteral(CTextWriter& Out, const INST& Inst);
// A literal load's operand in ARM: the address relative to the PC, then the value with its label as a comment.
void WriteArmLiteral(CTextWriter& Out, const INST& Inst);
// "[Rn, #0x..]", with "!" or as post-index.
void WriteIndexed(CTextWriter& Out, U32 Rn, U32 Offset, bool bPre, bool bUp, bool bWriteBack);
// The 32-bit value of a Thumb modified immediate constant (12 bits i:imm3:imm8).
U32 ExpandModifiedImmediate(U32 Imm12);
// The register of another processor mode that MRS or MSR names; null when there is none.
const char* BankedRegOf(const INST& Inst);
// The register of the floating point unit that a load or store names by bit 22 and bits 15:13; null for none.
const char* FloatSystemRegOf(const INST& Inst);
// "#1.5", the number that 8 bits stand for: sign, three bits of the exponent, four of the fraction.
void WriteFloat8(CTextWriter& Out, U32 Imm8);
