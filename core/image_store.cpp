#include "core/image_store.h"

#include <cstring>

namespace {

constexpr U64 ADDR_SPACE_SIZE = 1ull << 32;

bool IsValid(const CMemBlock& Block) {
  return static_cast<U64>(Block.Data.size()) == Block.NumBytes &&
         Block.Addr + static_cast<U64>(Block.NumBytes) <= ADDR_SPACE_SIZE &&
         Block.VirtAddr + static_cast<U64>(Block.NumBytes) <= ADDR_SPACE_SIZE;
}

U32 StartOf(const CMemBlock& Block, bool bExecView) {
  return bExecView ? Block.VirtAddr : Block.Addr;
}

}  // namespace

int CImageStore::Set(const QMemBlocks& NewBlocks) {
  Clear();
  for (const CMemBlock& Block : NewBlocks) {
    if (!IsValid(Block)) return -1;
  }
  Blocks = NewBlocks;
  return 0;
}

CAddrRange CImageStore::GetRange(bool bExecView) const {
  U64 Low = ADDR_SPACE_SIZE;
  U64 High = 0;
  for (const CMemBlock& Block : Blocks) {
    if (Block.NumBytes == 0) continue;
    const U64 Start = StartOf(Block, bExecView);
    Low = std::min(Low, Start);
    High = std::max(High, Start + Block.NumBytes);
  }
  if (High <= Low) return {};
  return {static_cast<U32>(Low), static_cast<U32>(std::min<U64>(High - Low, INVALID_ADDR))};
}

bool CImageStore::Read(U32 Addr, U32 NumBytes, void* pData) const {
  for (const bool bExecView : {true, false}) {
    for (const CMemBlock& Block : Blocks) {
      const U64 Offset = static_cast<U64>(Addr) - StartOf(Block, bExecView);
      if (Addr < StartOf(Block, bExecView) || Offset + NumBytes > Block.NumBytes) continue;
      std::memcpy(pData, Block.Data.constData() + Offset, NumBytes);
      return true;
    }
  }
  return false;
}
