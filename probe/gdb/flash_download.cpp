#include "probe/gdb/flash_download.h"

#include <algorithm>
#include <cstring>

#include "probe/text.h"

namespace {

constexpr int ERASE_LIMIT_MS = 10'000;  // for one block
constexpr int PROGRAM_LIMIT_MS = 10'000;
constexpr U32 REQUEST_OVERHEAD = 32;  // bytes of a packet that are no data

}  // namespace

// The erase block at an address, filled with its present contents. Null when these cannot be read.
CFlashDownload::BLOCK* CFlashDownload::GetBlock(const GDB_MEMORY_REGION& Region, U32 Addr, U32* pStart) {
  const U32 Offset = (Addr - Region.Start) / Region.BlockSize * Region.BlockSize;
  *pStart = Region.Start + Offset;
  const auto Found = m_Blocks.find(*pStart);
  if (Found != m_Blocks.end()) return &Found->second;
  BLOCK Block(std::min<U64>(Region.BlockSize, Region.Size - Offset));
  const U32 Size = static_cast<U32>(Block.size());
  if (m_Memory.Read(*pStart, Size, Block.data(), 0) != static_cast<int>(Size)) return nullptr;
  return &m_Blocks.emplace(*pStart, std::move(Block)).first->second;
}

int CFlashDownload::CollectFlash(const GDB_MEMORY_REGION& Region, U32 Addr, U32 NumBytes, const U8* paData) {
  U32 Done = 0;
  while (Done < NumBytes && Region.Contains(Addr + Done)) {
    U32 Start = 0;
    BLOCK* pBlock = GetBlock(Region, Addr + Done, &Start);
    if (!pBlock) return m_Server.Connection().IsOpen() ? static_cast<int>(Done) : -1;
    const U32 Offset = Addr + Done - Start;
    const U32 Size = std::min(NumBytes - Done, static_cast<U32>(pBlock->size()) - Offset);
    std::memcpy(pBlock->data() + Offset, paData + Done, Size);
    Done += Size;
  }
  return static_cast<int>(Done);
}

int CFlashDownload::Write(U32 Addr, U32 NumBytes, const void* pData, U32 AccessWidth) {
  const U8* paData = static_cast<const U8*>(pData);
  const U32 Total = static_cast<U32>(std::min<U64>(NumBytes, 0x1'0000'0000ull - Addr));
  U32 Done = 0;
  while (Done < Total) {
    const U32 From = Addr + Done;
    const GDB_MEMORY_REGION* pFlash = m_Server.MemoryMap().FindFlash(From);
    const U32 ToFlash = static_cast<U32>(std::min<U64>(Total - Done, m_Server.MemoryMap().NextFlash(From) - From));
    const int Moved = pFlash ? CollectFlash(*pFlash, From, Total - Done, paData + Done)
                             : m_Memory.Write(From, ToFlash, paData + Done, AccessWidth);
    if (Moved < 0) return -1;
    Done += static_cast<U32>(Moved);
    if (Moved == 0 || (!pFlash && static_cast<U32>(Moved) < ToFlash)) break;
  }
  return static_cast<int>(Done);
}

bool CFlashDownload::WriteBlock(U32 Start, const BLOCK& Wanted) {
  const U32 Size = static_cast<U32>(Wanted.size());
  const U32 MaxChunk = (m_Server.PacketSize() - REQUEST_OVERHEAD) / 2;  // every byte may be an escaped one
  if (!m_Server.Command(FormatText("vFlashErase:%x,%x", Start, Size), nullptr, ERASE_LIMIT_MS)) return false;
  for (U32 Done = 0; Done < Size; Done += MaxChunk) {
    std::string sRequest = FormatText("vFlashWrite:%x:", Start + Done);
    AppendEscaped(&sRequest, Wanted.data() + Done, std::min(Size - Done, MaxChunk));
    if (!m_Server.Command(sRequest, nullptr, PROGRAM_LIMIT_MS)) return false;
  }
  return m_Server.Command("vFlashDone", nullptr, PROGRAM_LIMIT_MS);
}

int CFlashDownload::ProgramBlock(U32 Start, const BLOCK& Wanted) {
  BLOCK Present(Wanted.size());
  const U32 Size = static_cast<U32>(Wanted.size());
  if (m_Memory.Read(Start, Size, Present.data(), 0) != static_cast<int>(Size)) return VNODE_DOWNLOAD_COMPARE_FAILED;
  if (Present == Wanted) return VNODE_DOWNLOAD_OK;
  if (!WriteBlock(Start, Wanted)) return VNODE_DOWNLOAD_PROGRAM_FAILED;
  m_NumProgrammed += Size;
  if (m_Memory.Read(Start, Size, Present.data(), 0) != static_cast<int>(Size)) return VNODE_DOWNLOAD_VERIFY_FAILED;
  return Present == Wanted ? VNODE_DOWNLOAD_OK : VNODE_DOWNLOAD_VERIFY_FAILED;
}

int CFlashDownload::ProgramAll() {
  for (const auto& [Start, Block] : m_Blocks) {
    if (const int Result = ProgramBlock(Start, Block); Result != VNODE_DOWNLOAD_OK) return Result;
  }
  return VNODE_DOWNLOAD_OK;
}

int CFlashDownload::End() {
  if (!m_bOpen) return m_LastResult;
  m_NumProgrammed = 0;
  Abandon(ProgramAll());
  return m_LastResult;
}

void CFlashDownload::Abandon(int Result) {
  m_bOpen = false;
  m_LastResult = Result;
  m_Blocks.clear();
}
