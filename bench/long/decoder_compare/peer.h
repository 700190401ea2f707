#pragma once

#include <memory>
#include <string>
#include <vector>

#include "base/types.h"

// The address that all compared instructions stand at, as far as a peer can be told one.
inline constexpr U32 COMPARE_ADDR = 0x08001000;

struct ENCODING {
  U32 Word = 0;      // 32-bit Thumb: first halfword in the high half
  U32 NumBytes = 4;  // 2 or 4
  bool bArm = false;

  U32 PC() const { return COMPARE_ADDR + (bArm ? 8 : 4); }
};

inline std::vector<U8> BytesOf(const ENCODING& Encoding) {
  const U32 Word = !Encoding.bArm && Encoding.NumBytes == 4 ? Encoding.Word >> 16 | Encoding.Word << 16 : Encoding.Word;
  std::vector<U8> aByte;
  for (U32 i = 0; i < Encoding.NumBytes; ++i) aByte.push_back(static_cast<U8>(Word >> (8 * i)));
  return aByte;
}

// What a disassembler says of one encoding.
struct READING {
  U32 Length = 0;  // bytes, 0 for no instruction
  std::string sText;
};

// Another disassembler.
class CPeer {
public:
  virtual ~CPeer() = default;
  // One reading of each encoding.
  virtual std::vector<READING> Read(const std::vector<ENCODING>& aEncoding) = 0;
};

// Null when the peer is not installed. ArchVersion 4 to 8; the M profile is for Thumb alone.
std::unique_ptr<CPeer> MakeLLVMPeer(bool bArm, U32 ArchVersion, bool bMProfile);
std::unique_ptr<CPeer> MakeCapstonePeer(bool bArm, U32 ArchVersion, bool bMProfile);
std::unique_ptr<CPeer> MakeObjdumpPeer(bool bArm, U32 ArchVersion, bool bMProfile);
