#pragma once
// All that the database asks of the core model and tells it.

#include "base/mem_block.h"
#include "base/types.h"

struct ELF_FILE;

// Smallest distance of instructions in bytes, and the length of the longest one.
U32 InstAlignment();
U32 MaxInstLength();
inline U32 AlignedToInst(U32 Addr) {
  return Addr & ~(InstAlignment() - 1);
}
// The core model forgets the previous program and takes this one, or none.
void AttachToCore(ELF_FILE* pElf);
// Gives the image to the core model and returns the blocks as it keeps them.
QMemBlocks StoreCoreImage(const QMemBlocks& Blocks);
// Decodes the program's functions; they are found by VCore::IsInstruction afterwards.
void AnalyzeCoreProgram();
