#pragma once

#include <functional>
#include <optional>
#include <unordered_map>
#include <vector>

#include "program/elf/frame_ops.h"

// One section of call frame information.
struct FRAME_SECTION {
  const U8* pData = nullptr;
  U32 Size = 0;
  U32 Addr = 0;  // at run time
  bool bEh = false;
  bool bBigEndian = false;
  std::function<std::optional<U32>(U32 Addr)> ReadWord;  // of the program, for addresses that stand elsewhere

  CByteCursor Bytes() const { return CByteCursor(pData, Size, bBigEndian); }
};

// Part of a section.
struct FRAME_BYTES {
  U32 Offset = 0;
  U32 Size = 0;
};

// A common information entry.
struct FRAME_CIE {
  U64 CodeAlign = 1;
  I64 DataAlign = 1;
  U32 ReturnReg = 0;
  U8 AddrSize = 4;
  U8 SegmentSize = 0;
  U8 Encoding = PE_ABSPTR;  // of the addresses in its frame description entries
  bool bSizedData = false;  // a length and data of the augmentation follow in each of those
  bool bSignal = false;     // frame of a signal handler: pc stands on the interrupted instruction
  bool bEh = false;
  FRAME_BYTES Program;
};

// A frame description entry: how frames look in the code from Low up to High.
struct FRAME_FDE {
  U32 Low = 0;
  U32 High = 0;
  U32 Cie = 0;  // position in the list of those
  FRAME_BYTES Program;
};

// Lists the entries of sections. What is damaged is left out; the first of each section is told to Complain.
class CFrameSectionReader {
public:
  using COMPLAIN = std::function<void(const char* sWhat, const char* sItem, U64 Value)>;

  CFrameSectionReader(std::vector<FRAME_CIE>& aCies, std::vector<FRAME_FDE>& aFdes, COMPLAIN Complain)
      : aCies(aCies), aFdes(aFdes), Complain(std::move(Complain)) {}

  void Read(const FRAME_SECTION& Section);

private:
  std::vector<FRAME_CIE>& aCies;
  std::vector<FRAME_FDE>& aFdes;
  COMPLAIN Complain;
  bool bComplained = false;
  std::unordered_map<U64, I64> CieAt;  // by offset in the section; -1 for a damaged one

  void Damage(const char* sWhat, U64 Offset);
  static bool ReadHead(const FRAME_SECTION& Section, CByteCursor& Bytes, CByteCursor& Entry,
                       std::optional<U64>& CieOffset);
  bool ReadEntry(const FRAME_SECTION& Section, CByteCursor& Bytes);
  I64 FindCie(const FRAME_SECTION& Section, U64 Offset);
  void ReadFde(const FRAME_SECTION& Section, CByteCursor Entry, U64 Offset, U64 CieOffset);
};

// An address in an encoding, at a place in the section. None where it is damaged or cannot be known from the file.
std::optional<U64> ReadEncodedAddress(CByteCursor& Bytes, U8 Encoding, U8 AddrSize, const FRAME_SECTION& Section);
