#include "probe/memory_access.h"

#include <algorithm>

namespace {

// Calls Transfer(Offset, NumBytes, Width) for the odd bytes ahead, the whole items and the odd bytes behind.
template <typename TRANSFER>
U32 ForEachPiece(U32 Addr, U32 NumBytes, U32 AccessWidth, TRANSFER Transfer) {
  const U32 Width = AccessWidth == 1 || AccessWidth == 2 ? AccessWidth : 4;
  const U32 Total = LimitToAddressSpace(Addr, NumBytes);
  const U32 Head = std::min(Total, (0u - Addr) & (Width - 1));
  const U32 Body = (Total - Head) & ~(Width - 1);
  const struct {
    U32 Size;
    U32 Width;
  } aPieces[] = {{Head, 1}, {Body, Width}, {Total - Head - Body, 1}};
  U32 Done = 0;
  for (const auto& Piece : aPieces) {
    if (Piece.Size == 0) continue;
    const U32 Moved = Transfer(Done, Piece.Size, Piece.Width);
    Done += Moved;
    if (Moved < Piece.Size) break;
  }
  return Done;
}

}  // namespace

U32 LimitToAddressSpace(U32 Addr, U32 NumBytes) {
  return static_cast<U32>(std::min<U64>(NumBytes, 0x100000000ull - Addr));
}

U32 ReadMachine(sim::CMachine& Machine, U32 Addr, U32 NumBytes, void* pData, U32 AccessWidth) {
  return ForEachPiece(Addr, NumBytes, AccessWidth, [&](U32 Offset, U32 Size, U32 Width) {
    return Machine.ReadMem(Addr + Offset, Size, static_cast<U8*>(pData) + Offset, Width);
  });
}

U32 WriteMachine(sim::CMachine& Machine, U32 Addr, U32 NumBytes, const void* pData, U32 AccessWidth) {
  return ForEachPiece(Addr, NumBytes, AccessWidth, [&](U32 Offset, U32 Size, U32 Width) {
    return Machine.WriteMem(Addr + Offset, Size, static_cast<const U8*>(pData) + Offset, Width);
  });
}
