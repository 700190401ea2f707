#pragma once

#include "base/mem_block.h"
#include "base/sinks.h"

struct ELF_FILE;

namespace VFile {

// One block per loadable segment with bytes in the file, without the file's own headers in front; empty for null.
QMemBlocks ReadSegments(const ELF_FILE* pFile, const MessageSink& Sink);

}  // namespace VFile
