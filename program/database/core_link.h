#pragma once
// All that the database asks of the core model and tells it.

#include <memory>

#include "base/mem_block.h"
#include "base/types.h"

struct ELF_FILE;
namespace VCore {
struct CORE_STATE;
}

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
// A core model in which a program is read beside the present one; UseCore makes this thread ask it, null the common
// one.
std::shared_ptr<VCore::CORE_STATE> NewCore();
void UseCore(VCore::CORE_STATE* pCore);
// The common core model takes the program from one that no thread uses. False when its code has to be decoded anew.
bool TakeCoreProgram(VCore::CORE_STATE& Core);
// Decodes the program's functions; they are found by VCore::IsInstruction afterwards.
void AnalyzeCoreProgram();
