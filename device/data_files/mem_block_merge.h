#pragma once

#include "base/mem_block.h"

namespace VFile {

// Blocks sorted by address, without overlaps and adjacent pairs; each with a buffer of its own. Where blocks overlap,
// the later one in the sorted order wins.
QMemBlocks MergeMemBlocks(QMemBlocks Blocks);

}  // namespace VFile
