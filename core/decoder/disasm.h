#pragma once
// The decoder of ARM and Thumb instructions: one instruction's bytes to its text and its classification in one pass.

#include <functional>

#include "base/types.h"
#include "core/decoder/inst_flags.h"

// The decoder's way out. Every member may be empty.
struct DISASM_API {
  // Name for an address and the distance from the name's start; 1 with a name, 0 without.
  std::function<int(U32 Addr, char* sText, U32 TextSize, U32& Offset)> pfGetLabel;
  // Bytes of the program image, in target byte order, for literals; the number of bytes, 0 or -1.
  std::function<int(U32 Addr, U32 NumBytes, void* pData)> pfReadData;
  std::function<void(const char* sText)> pfLogOut;
  std::function<void(const char* sText)> pfLogWarning;    // "Unknown ..." texts
  std::function<void(const char* sText)> pfLogErrorText;  // "Data buffer too small ..." texts
};

// The decoder's own coding of the execution mode.
enum DISASM_MODE : U32 { DISASM_THUMB = 1, DISASM_ARM = 2 };

struct DISASM_INFO {
  U32 Length = 0;  // bytes; 0 for no valid instruction in Thumb
  U64 Target = 0;  // valid with IF_TARGET
  U32 Flags = 0;   // INST_FLAGS
};

// Everything the decoder remembers from one instruction to the next. Contexts are independent: each thread decodes with
// a context of its own.
struct DISASM_CONTEXT {
  // Length in bytes, or -1 for no valid instruction. sText may be null with TextSize 0, pInfo may be null. Reads no
  // more than NumBytes bytes, writes no more than TextSize characters including the end.
  using DECODE_FUNC = int (*)(DISASM_CONTEXT& Context, U32 Addr, const U8* pBytes, U32 NumBytes, char* sText,
                              U32 TextSize, DISASM_INFO* pInfo);

  DECODE_FUNC pfDecode = nullptr;
  const DISASM_API* pAPI = nullptr;  // not owned; may be null
  U32 ArchVersion = 7;               // ARM architecture version of the core
  U32 Mode = DISASM_THUMB;
  U32 BigEndian = 0;       // byte order of instructions
  U32 BigEndianData = 0;   // of literals; they are big-endian where instructions are, whatever stands here
  bool bMProfile = false;  // the core has none of what only the A and R profiles have; false decodes all
  U8 ITState = 0;          // Thumb: first condition in bits 7:4, mask in bits 3:0; 0 outside an IT block
};

// Sets the mode, the entry point that goes with it, and leaves the IT block.
void DISASM_SetMode(DISASM_CONTEXT& Context, U32 Mode);

// The two entry points, as pfDecode has them.
int DISASM_DecodeThumb(DISASM_CONTEXT& Context, U32 Addr, const U8* pBytes, U32 NumBytes, char* sText, U32 TextSize,
                       DISASM_INFO* pInfo);
int DISASM_DecodeARM(DISASM_CONTEXT& Context, U32 Addr, const U8* pBytes, U32 NumBytes, char* sText, U32 TextSize,
                     DISASM_INFO* pInfo);
