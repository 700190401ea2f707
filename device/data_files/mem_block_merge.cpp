#include "device/data_files/mem_block_merge.h"

#include <algorithm>

namespace VFile {

namespace {

// Consecutive pieces of the sorted list that overlap or touch. End may be 2^32 and above.
struct RUN {
  size_t First = 0;
  size_t Count = 0;
  U64 End = 0;
};

U64 EndOf(const DATA_PIECE& Piece) {
  return static_cast<U64>(Piece.Addr) + Piece.NumBytes;
}

bool IsLower(const DATA_PIECE& A, const DATA_PIECE& B) {
  return A.Addr < B.Addr;
}

// The run that begins at piece First.
RUN RunFrom(const std::vector<DATA_PIECE>& Pieces, size_t First) {
  RUN Run = {First, 0, EndOf(Pieces[First])};
  for (size_t i = First; i < Pieces.size() && Pieces[i].Addr <= Run.End; ++i) {
    Run.End = std::max(Run.End, EndOf(Pieces[i]));
    ++Run.Count;
  }
  return Run;
}

CMemBlock MergeRun(const std::vector<DATA_PIECE>& Pieces, const RUN& Run, const QByteArray& Bytes) {
  CMemBlock Merged;
  Merged.Addr = Merged.VirtAddr = Pieces[Run.First].Addr;
  Merged.Data.resize(static_cast<qsizetype>(Run.End - Merged.Addr));
  Merged.NumBytes = static_cast<U32>(Merged.Data.size());
  char* const pBegin = Merged.Data.data();
  for (size_t i = Run.First; i < Run.First + Run.Count; ++i) {
    const DATA_PIECE& Piece = Pieces[i];
    std::copy_n(Bytes.constData() + Piece.Offset, Piece.NumBytes, pBegin + (Piece.Addr - Merged.Addr));
  }
  return Merged;
}

}  // namespace

QMemBlocks MergePieces(std::vector<DATA_PIECE> Pieces, const QByteArray& Bytes) {
  // Most files are in order already, and a stable sort takes as much memory again.
  if (!std::is_sorted(Pieces.begin(), Pieces.end(), IsLower)) std::stable_sort(Pieces.begin(), Pieces.end(), IsLower);
  QMemBlocks Blocks;
  for (size_t First = 0; First < Pieces.size();) {
    const RUN Run = RunFrom(Pieces, First);
    if (Blocks.size() == MAX_MERGED_BLOCKS) return {};
    Blocks.append(MergeRun(Pieces, Run, Bytes));
    First += Run.Count;
  }
  return Blocks;
}

}  // namespace VFile
