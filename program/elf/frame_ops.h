#pragma once
// Instructions of call frame programs.

#include "program/elf/byte_cursor.h"

enum FRAME_OP : U32 {
  // These three have an operand in their lower six bits.
  CFA_ADVANCE_LOC = 0x40,
  CFA_OFFSET = 0x80,
  CFA_RESTORE = 0xc0,

  CFA_NOP = 0x00,
  CFA_SET_LOC = 0x01,
  CFA_ADVANCE_LOC1 = 0x02,
  CFA_ADVANCE_LOC2 = 0x03,
  CFA_ADVANCE_LOC4 = 0x04,
  CFA_OFFSET_EXTENDED = 0x05,
  CFA_RESTORE_EXTENDED = 0x06,
  CFA_UNDEFINED = 0x07,
  CFA_SAME_VALUE = 0x08,
  CFA_REGISTER = 0x09,
  CFA_REMEMBER_STATE = 0x0a,
  CFA_RESTORE_STATE = 0x0b,
  CFA_DEF_CFA = 0x0c,
  CFA_DEF_CFA_REGISTER = 0x0d,
  CFA_DEF_CFA_OFFSET = 0x0e,
  CFA_DEF_CFA_EXPRESSION = 0x0f,
  CFA_EXPRESSION = 0x10,
  CFA_OFFSET_EXTENDED_SF = 0x11,
  CFA_DEF_CFA_SF = 0x12,
  CFA_DEF_CFA_OFFSET_SF = 0x13,
  CFA_VAL_OFFSET = 0x14,
  CFA_VAL_OFFSET_SF = 0x15,
  CFA_VAL_EXPRESSION = 0x16,
  CFA_ADVANCE_LOC8 = 0x1d,
  CFA_GNU_WINDOW_SAVE = 0x2d,
  CFA_GNU_ARGS_SIZE = 0x2e,
  CFA_GNU_NEGATIVE_OFFSET_EXTENDED = 0x2f,
};

// How addresses stand in .eh_frame: a format in the lower four bits, what they are relative to in the next three.
enum POINTER_ENCODING : U8 {
  PE_ABSPTR = 0x00,
  PE_ULEB128 = 0x01,
  PE_UDATA2 = 0x02,
  PE_UDATA4 = 0x03,
  PE_UDATA8 = 0x04,
  PE_SLEB128 = 0x09,
  PE_SDATA2 = 0x0a,
  PE_SDATA4 = 0x0b,
  PE_SDATA8 = 0x0c,
  PE_FORMAT = 0x0f,
  PE_PCREL = 0x10,
  PE_TEXTREL = 0x20,
  PE_DATAREL = 0x30,
  PE_FUNCREL = 0x40,
  PE_ALIGNED = 0x50,
  PE_RELATION = 0x70,
  PE_INDIRECT = 0x80,
  PE_OMIT = 0xff,
};

struct FRAME_INST {
  U32 Op = 0;        // without the operand in its lower bits
  U64 First = 0;     // register or distance
  I64 Second = 0;    // offset
  CByteCursor Expr;  // of the three kinds with an expression
};

// The next instruction; an unknown one, or operands that do not fit, spoil the cursor. The operand of CFA_SET_LOC is
// left to be read by whoever knows its encoding. Offsets are as they stand, not yet multiplied by the data alignment.
FRAME_INST ReadFrameInst(CByteCursor& Program);
