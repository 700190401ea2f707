#pragma once
// Operations of DWARF location expressions with the operands that follow each.

#include "program/elf/byte_cursor.h"

enum LOCATION_OP : U32 {
  OP_ADDR = 0x03,
  OP_DEREF = 0x06,
  OP_CONST1U = 0x08,
  OP_CONST1S = 0x09,
  OP_CONST2U = 0x0a,
  OP_CONST2S = 0x0b,
  OP_CONST4U = 0x0c,
  OP_CONST4S = 0x0d,
  OP_CONST8U = 0x0e,
  OP_CONST8S = 0x0f,
  OP_CONSTU = 0x10,
  OP_CONSTS = 0x11,
  OP_DUP = 0x12,
  OP_PICK = 0x15,
  OP_PLUS_UCONST = 0x23,
  OP_BRA = 0x28,
  OP_NE = 0x2e,
  OP_SKIP = 0x2f,
  OP_LIT0 = 0x30,
  OP_LIT31 = 0x4f,
  OP_REG0 = 0x50,
  OP_REG31 = 0x6f,
  OP_BREG0 = 0x70,
  OP_BREG31 = 0x8f,
  OP_REGX = 0x90,
  OP_FBREG = 0x91,
  OP_BREGX = 0x92,
  OP_PIECE = 0x93,
  OP_DEREF_SIZE = 0x94,
  OP_XDEREF_SIZE = 0x95,
  OP_NOP = 0x96,
  OP_PUSH_OBJECT_ADDRESS = 0x97,
  OP_CALL2 = 0x98,
  OP_CALL4 = 0x99,
  OP_CALL_REF = 0x9a,
  OP_FORM_TLS_ADDRESS = 0x9b,
  OP_CALL_FRAME_CFA = 0x9c,
  OP_BIT_PIECE = 0x9d,
  OP_IMPLICIT_VALUE = 0x9e,
  OP_STACK_VALUE = 0x9f,
  OP_IMPLICIT_POINTER = 0xa0,
  OP_ADDRX = 0xa1,
  OP_CONSTX = 0xa2,
  OP_ENTRY_VALUE = 0xa3,
  OP_CONST_TYPE = 0xa4,
  OP_REGVAL_TYPE = 0xa5,
  OP_DEREF_TYPE = 0xa6,
  OP_XDEREF_TYPE = 0xa7,
  OP_CONVERT = 0xa8,
  OP_REINTERPRET = 0xa9,
  OP_GNU_PUSH_TLS_ADDRESS = 0xe0,
  OP_GNU_UNINIT = 0xf0,
  OP_GNU_IMPLICIT_POINTER = 0xf2,
  OP_GNU_ENTRY_VALUE = 0xf3,
  OP_GNU_CONST_TYPE = 0xf4,
  OP_GNU_REGVAL_TYPE = 0xf5,
  OP_GNU_DEREF_TYPE = 0xf6,
  OP_GNU_CONVERT = 0xf7,
  OP_GNU_REINTERPRET = 0xf9,
  OP_GNU_PARAMETER_REF = 0xfa,
  OP_GNU_ADDR_INDEX = 0xfb,
  OP_GNU_CONST_INDEX = 0xfc,
  OP_GNU_VARIABLE_VALUE = 0xfd,
};

// Sizes that the operands depend on.
struct OPERAND_SIZES {
  U8 AddrSize = 4;
  U8 OffsetSize = 4;  // of the unit's DWARF format: 4 or 8
};

struct LOCATION_OPERATION {
  U32 Op = 0;
  U64 First = 0;  // signed operands are extended to 64 bits
  U64 Second = 0;
  CByteCursor Block;  // of implicit values and entry values
};

// The next operation. An unknown one, or operands that do not fit, spoil the cursor.
LOCATION_OPERATION ReadOperation(CByteCursor& Bytes, const OPERAND_SIZES& Sizes);
