#pragma once

#include <vector>

#include "base/mem_block.h"

namespace VFile {

// One data record: where its bytes belong in the target, and where they stand among all that were read.
struct DATA_PIECE {
  U32 Addr = 0;
  U32 NumBytes = 0;
  qsizetype Offset = 0;
};

// More separate blocks than this are no image of a program.
inline constexpr qsizetype MAX_MERGED_BLOCKS = 1'000'000;

// Blocks sorted by address, without overlaps and adjacent pairs; each with a buffer of its own. Where pieces overlap,
// the later one in the sorted order wins. Empty when there would be more than MAX_MERGED_BLOCKS.
QMemBlocks MergePieces(std::vector<DATA_PIECE> Pieces, const QByteArray& Bytes);

}  // namespace VFile
