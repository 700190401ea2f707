#include "probe/rtt.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr char ID[16] = "MORVEK RTT";
constexpr U32 MAX_QUEUES = 256;     // of each direction; a block with more is none
constexpr U32 SEARCH_PIECE = 1024;  // words
constexpr std::chrono::milliseconds SEARCH_PAUSE{100};
constexpr U64 ADDRESS_SPACE = 1ull << 32;

struct HEADER {
  char acId[16];
  U32 NumUp;
  U32 NumDown;
};

struct QUEUE_RECORD {
  U32 sName;
  U32 pBuffer;
  U32 Size;
  U32 WrOff;
  U32 RdOff;
  U32 Flags;
};

bool ReadExactly(CTarget& Target, U64 Addr, void* pData, U32 NumBytes) {
  if (Addr + NumBytes > ADDRESS_SPACE) return false;
  return NumBytes == 0 || Target.ReadMem(static_cast<U32>(Addr), NumBytes, pData, 0) == static_cast<int>(NumBytes);
}

bool WriteExactly(CTarget& Target, U64 Addr, const void* pData, U32 NumBytes) {
  return NumBytes == 0 || Target.WriteMem(static_cast<U32>(Addr), NumBytes, pData, 0) == static_cast<int>(NumBytes);
}

bool IsHeader(const HEADER& Header) {
  return std::memcmp(Header.acId, ID, sizeof(ID)) == 0 && Header.NumUp <= MAX_QUEUES && Header.NumDown <= MAX_QUEUES;
}

}  // namespace

void CRtt::Start(U32 Addr, std::vector<RTT_SEARCH_RANGE> Ranges) {
  m_bOn = true;
  m_ConfiguredAddr = Addr;
  m_Ranges = std::move(Ranges);
  m_FoundAddr = INVALID_ADDR;
  m_NextSearch = {};
}

bool CRtt::FindBlock(CTarget& Target, BLOCK* pBlock) {
  for (const U32 Addr : {m_ConfiguredAddr, m_FoundAddr}) {
    HEADER Header;
    if (Addr == INVALID_ADDR || !ReadExactly(Target, Addr, &Header, sizeof(Header)) || !IsHeader(Header)) continue;
    *pBlock = {Addr, Header.NumUp, Header.NumDown};
    return true;
  }
  const auto Now = std::chrono::steady_clock::now();
  if (Now < m_NextSearch) return false;
  const bool bFound = Search(Target, pBlock);
  m_FoundAddr = bFound ? pBlock->Addr : INVALID_ADDR;
  m_NextSearch = std::chrono::steady_clock::now() + SEARCH_PAUSE;
  return bFound;
}

// Pieces overlap by what a header may reach over their end.
bool CRtt::Search(CTarget& Target, BLOCK* pBlock) {
  constexpr U32 OVERLAP = sizeof(HEADER) / sizeof(U32);
  U32 aWords[SEARCH_PIECE + OVERLAP];
  for (const RTT_SEARCH_RANGE& Range : m_Ranges) {
    const U64 End = std::min(static_cast<U64>(Range.Addr) + Range.Size, ADDRESS_SPACE);
    for (U64 Addr = (Range.Addr + 3ull) & ~3ull; Addr + sizeof(HEADER) <= End; Addr += SEARCH_PIECE * sizeof(U32)) {
      const U32 NumBytes = static_cast<U32>(std::min<U64>(sizeof(aWords), End - Addr));
      const int NumRead = Target.ReadMem(static_cast<U32>(Addr), NumBytes, aWords, 0);
      for (U32 Offset = 0; static_cast<int>(Offset + sizeof(HEADER)) <= NumRead; Offset += sizeof(U32)) {
        HEADER Header;
        std::memcpy(&Header, reinterpret_cast<const U8*>(aWords) + Offset, sizeof(Header));
        if (!IsHeader(Header)) continue;
        *pBlock = {static_cast<U32>(Addr) + Offset, Header.NumUp, Header.NumDown};
        return true;
      }
    }
  }
  return false;
}

int CRtt::FindQueue(CTarget& Target, U32 Index, bool bUp, QUEUE* pQueue) {
  BLOCK Block;
  if (!FindBlock(Target, &Block)) return 0;
  if (Index >= (bUp ? Block.NumUp : Block.NumDown)) return -1;
  const U64 Addr =
      Block.Addr + sizeof(HEADER) + static_cast<U64>(bUp ? Index : Block.NumUp + Index) * sizeof(QUEUE_RECORD);
  QUEUE_RECORD Record;
  if (!ReadExactly(Target, Addr, &Record, sizeof(Record))) return 0;
  const bool bSane = Record.WrOff < Record.Size && Record.RdOff < Record.Size &&
                     static_cast<U64>(Record.pBuffer) + Record.Size <= ADDRESS_SPACE;
  *pQueue = {static_cast<U32>(Addr), Record.pBuffer, Record.Size, Record.WrOff, Record.RdOff};
  return bSane;
}

int CRtt::Read(CTarget& Target, U32 Queue, U8* paData, U32 NumBytes) {
  QUEUE Q;
  if (const int Result = FindQueue(Target, Queue, true, &Q); Result <= 0) return Result;
  const U32 NumHeld = Q.WrOff >= Q.RdOff ? Q.WrOff - Q.RdOff : Q.Size - Q.RdOff + Q.WrOff;
  const U32 Num = std::min(NumBytes, NumHeld);
  if (!Num) return 0;
  const U32 ToEnd = std::min(Num, Q.Size - Q.RdOff);
  if (!ReadExactly(Target, Q.pBuffer + Q.RdOff, paData, ToEnd)) return 0;
  if (!ReadExactly(Target, Q.pBuffer, paData + ToEnd, Num - ToEnd)) return 0;
  const U32 RdOff = ToEnd < Q.Size - Q.RdOff ? Q.RdOff + ToEnd : Num - ToEnd;
  return WriteExactly(Target, Q.Addr + offsetof(QUEUE_RECORD, RdOff), &RdOff, sizeof(RdOff)) ? static_cast<int>(Num)
                                                                                             : 0;
}

int CRtt::Write(CTarget& Target, U32 Queue, const U8* paData, U32 NumBytes) {
  QUEUE Q;
  if (const int Result = FindQueue(Target, Queue, false, &Q); Result <= 0) return Result;
  const U32 NumFree = Q.RdOff > Q.WrOff ? Q.RdOff - Q.WrOff - 1 : Q.Size - Q.WrOff + Q.RdOff - 1;
  const U32 Num = std::min(NumBytes, NumFree);
  if (!Num) return 0;
  const U32 ToEnd = std::min(Num, Q.Size - Q.WrOff);
  if (!WriteExactly(Target, Q.pBuffer + Q.WrOff, paData, ToEnd)) return 0;
  if (!WriteExactly(Target, Q.pBuffer, paData + ToEnd, Num - ToEnd)) return 0;
  const U32 WrOff = ToEnd < Q.Size - Q.WrOff ? Q.WrOff + ToEnd : Num - ToEnd;
  return WriteExactly(Target, Q.Addr + offsetof(QUEUE_RECORD, WrOff), &WrOff, sizeof(WrOff)) ? static_cast<int>(Num)
                                                                                             : 0;
}
