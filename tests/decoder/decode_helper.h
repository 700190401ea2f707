#pragma once

#include <string>
#include <vector>

#include "core/decoder/disasm.h"

// A decoder of its own with the bytes of one instruction given as halfwords.
struct DECODED {
  int Length = 0;
  std::string sText;
  DISASM_INFO Info;
};

inline std::vector<U8> BytesOf(const std::vector<U16>& aHalfword) {
  std::vector<U8> aByte;
  for (const U16 Halfword : aHalfword) {
    aByte.push_back(static_cast<U8>(Halfword));
    aByte.push_back(static_cast<U8>(Halfword >> 8));
  }
  return aByte;
}

inline DECODED DecodeWith(DISASM_CONTEXT& Context, U32 Addr, const std::vector<U16>& aHalfword) {
  const std::vector<U8> aByte = BytesOf(aHalfword);
  DECODED Result;
  char sText[128];
  Result.Length = DISASM_DecodeThumb(Context, Addr, aByte.data(), static_cast<U32>(aByte.size()), sText, sizeof(sText),
                                     &Result.Info);
  Result.sText = sText;
  return Result;
}

inline DECODED DecodeArm(U32 Addr, U32 Word, U32 ArchVersion = 7) {
  DISASM_CONTEXT Context;
  Context.ArchVersion = ArchVersion;
  DISASM_SetMode(Context, DISASM_ARM);
  const std::vector<U8> aByte = BytesOf({static_cast<U16>(Word), static_cast<U16>(Word >> 16)});
  DECODED Result;
  char sText[128];
  Result.Length = DISASM_DecodeARM(Context, Addr, aByte.data(), 4, sText, sizeof(sText), &Result.Info);
  Result.sText = sText;
  return Result;
}

inline DECODED DecodeOne(U32 Addr, const std::vector<U16>& aHalfword, U32 ArchVersion = 7) {
  DISASM_CONTEXT Context;
  Context.ArchVersion = ArchVersion;
  DISASM_SetMode(Context, DISASM_THUMB);
  return DecodeWith(Context, Addr, aHalfword);
}
