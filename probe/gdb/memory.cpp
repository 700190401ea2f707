#include "probe/gdb/memory.h"

#include <algorithm>
#include <cstring>

#include "probe/gdb/hex.h"
#include "probe/text.h"

namespace {

constexpr U32 REQUEST_OVERHEAD = 32;  // bytes of a packet that are no data
constexpr U32 WORD_SIZE = 4;
constexpr U32 MAX_SINGLE_ITEMS = 8;  // so many items get a request each, so that they are accessed in their width
constexpr int TRANSFER_LIMIT_MS = 3000;
constexpr U32 MIN_BYTES_PER_MS = 32;  // of a transfer that is not given up

U32 LimitToAddressSpace(U32 Addr, U32 NumBytes) {
  return static_cast<U32>(std::min<U64>(NumBytes, 0x1'0000'0000ull - Addr));
}

// Requests after the first one begin at a word.
U32 SizeOfRequest(U32 Addr, U32 Rest, U32 MaxSize) {
  if (Rest <= MaxSize) return Rest;
  if (MaxSize < WORD_SIZE) return MaxSize;
  return MaxSize - (Addr + MaxSize) % WORD_SIZE;
}

}  // namespace

template <typename MOVE>
int CGdbMemory::ForEachRequest(U32 Addr, U32 NumBytes, U32 AccessWidth, U32 MaxSize, MOVE Move) {
  const U32 Total = LimitToAddressSpace(Addr, NumBytes);
  const U32 Width = AccessWidth == 1 || AccessWidth == 2 ? AccessWidth : WORD_SIZE;
  const bool bSingle = AccessWidth != 0 && Total <= Width * MAX_SINGLE_ITEMS && Addr % Width == 0;
  const DEADLINE Deadline = DeadlineIn(TRANSFER_LIMIT_MS + static_cast<int>(Total / MIN_BYTES_PER_MS));
  U32 Limit = bSingle ? Width : MaxSize;
  U32 Done = 0;
  while (Done < Total && std::chrono::steady_clock::now() < Deadline) {
    const U32 Size = SizeOfRequest(Addr + Done, Total - Done, Limit);
    const U32 Moved = Move(Done, Size);
    if (!m_Server.Connection().IsOpen()) return -1;
    Done += Moved;
    if (Moved != 0) continue;
    // Where a long request fails its beginning may still answer; most often not even that does.
    if (Size <= Width) break;
    const U32 First = Move(Done, Width - (Addr + Done) % Width);
    if (First == 0) break;
    Done += First;
    Limit = std::max(Width, Size / 2 & ~(WORD_SIZE - 1));
  }
  return m_Server.Connection().IsOpen() ? static_cast<int>(Done) : -1;
}

U32 CGdbMemory::ReadOnce(U32 Addr, U32 NumBytes, U8* paData) {
  std::string sReply;
  std::vector<U8> Bytes;
  if (!m_Server.Request(FormatText("m%x,%x", Addr, NumBytes), &sReply)) return 0;
  if (!ParseHexBytes(sReply, &Bytes) || Bytes.size() > NumBytes) return 0;
  std::memcpy(paData, Bytes.data(), Bytes.size());
  return static_cast<U32>(Bytes.size());
}

U32 CGdbMemory::WriteOnce(U32 Addr, U32 NumBytes, const U8* paData) {
  const bool bBinary = m_Server.HasBinaryWrites();
  std::string sRequest = FormatText("%c%x,%x:", bBinary ? 'X' : 'M', Addr, NumBytes);
  if (bBinary) {
    AppendEscaped(&sRequest, paData, NumBytes);
  } else {
    AppendHex(&sRequest, paData, NumBytes);
  }
  return m_Server.Command(sRequest) ? NumBytes : 0;
}

int CGdbMemory::Read(U32 Addr, U32 NumBytes, void* pData, U32 AccessWidth) {
  U8* paData = static_cast<U8*>(pData);
  const U32 MaxSize = (m_Server.PacketSize() - REQUEST_OVERHEAD) / 2;  // two digits a byte
  return ForEachRequest(Addr, NumBytes, AccessWidth, MaxSize,
                        [&](U32 Done, U32 Size) { return ReadOnce(Addr + Done, Size, paData + Done); });
}

int CGdbMemory::Write(U32 Addr, U32 NumBytes, const void* pData, U32 AccessWidth) {
  const U8* paData = static_cast<const U8*>(pData);
  const U32 MaxSize = (m_Server.PacketSize() - REQUEST_OVERHEAD) / 2;  // every byte may be an escaped one
  return ForEachRequest(Addr, NumBytes, AccessWidth, MaxSize,
                        [&](U32 Done, U32 Size) { return WriteOnce(Addr + Done, Size, paData + Done); });
}
