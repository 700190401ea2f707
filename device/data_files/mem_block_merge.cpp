#include "device/data_files/mem_block_merge.h"

namespace VFile {

namespace {

// Consecutive blocks of the sorted list that overlap or touch. End may be 2^32.
struct RUN {
  qsizetype First = 0;
  qsizetype Count = 0;
  U64 End = 0;
};

U64 BlockEnd(const CMemBlock& Block) {
  return static_cast<U64>(Block.Addr) + static_cast<U64>(Block.Data.size());
}

QList<RUN> FindRuns(const QMemBlocks& Blocks) {
  QList<RUN> Runs;
  for (qsizetype i = 0; i < Blocks.size(); ++i) {
    if (Runs.isEmpty() || Blocks[i].Addr > Runs.last().End) Runs.append({i, 0, BlockEnd(Blocks[i])});
    RUN& Run = Runs.last();
    ++Run.Count;
    Run.End = std::max(Run.End, BlockEnd(Blocks[i]));
  }
  return Runs;
}

CMemBlock MergeRun(const QMemBlocks& Blocks, const RUN& Run, U32 VirtOffset) {
  CMemBlock Merged;
  Merged.Addr = Blocks[Run.First].Addr;
  Merged.VirtAddr = Merged.Addr - VirtOffset;
  Merged.Data.resize(static_cast<qsizetype>(Run.End - Merged.Addr));
  Merged.NumBytes = static_cast<U32>(Merged.Data.size());
  for (qsizetype i = Run.First; i < Run.First + Run.Count; ++i) {
    const CMemBlock& Block = Blocks[i];
    std::copy(Block.Data.cbegin(), Block.Data.cend(), Merged.Data.begin() + (Block.Addr - Merged.Addr));
  }
  return Merged;
}

}  // namespace

QMemBlocks MergeMemBlocks(QMemBlocks Blocks) {
  std::stable_sort(Blocks.begin(), Blocks.end(),
                   [](const CMemBlock& A, const CMemBlock& B) { return A.Addr < B.Addr; });
  const QList<RUN> Runs = FindRuns(Blocks);
  if (Runs.isEmpty()) return {};
  const CMemBlock& LastFirst = Blocks[Runs.last().First];
  const U32 VirtOffset = LastFirst.Addr - LastFirst.VirtAddr;
  QMemBlocks Merged;
  for (const RUN& Run : Runs) Merged.append(MergeRun(Blocks, Run, VirtOffset));
  return Merged;
}

}  // namespace VFile
