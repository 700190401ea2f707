// Queries about call frames, at addresses of the target.
#include "program/elf/elf_file.h"
#include "program/elf/elf_frames.h"
#include "program/elf/reader_state.h"

namespace {

const CFrameTable* FramesOf(const ELF_FILE* pFile) {
  const ELF_FILE* pLoaded = LoadedFile(pFile);
  return pLoaded && pLoaded->pDwarf ? &pLoaded->pDwarf->Frames : nullptr;
}

const FRAME_FDE* FdeOf(const ELF_FILE* pFile, U32 Index) {
  const CFrameTable* pFrames = FramesOf(pFile);
  return pFrames && Index < pFrames->Entries().size() ? &pFrames->Entries()[Index] : nullptr;
}

}  // namespace

U32 ELF_GetNumFdes(const ELF_FILE* pFile) {
  const CFrameTable* pFrames = FramesOf(pFile);
  return pFrames ? static_cast<U32>(pFrames->Entries().size()) : 0;
}

U32 ELF_GetFdeLow(const ELF_FILE* pFile, U32 Index) {
  const FRAME_FDE* pFde = FdeOf(pFile, Index);
  return pFde ? AddrToTarget(pFde->Low) : INVALID_ADDR;
}

U32 ELF_GetFdeHigh(const ELF_FILE* pFile, U32 Index) {
  const FRAME_FDE* pFde = FdeOf(pFile, Index);
  return pFde ? EndToTarget(pFde->High) : 0;
}

U32 ELF_GetRetAddrReg(const ELF_FILE* pFile) {
  const CFrameTable* pFrames = FramesOf(pFile);
  return pFrames ? pFrames->ReturnRegister() : 0;
}

U32 ELF_GetCfiRegs(const ELF_FILE* pFile, U32 PC, U32 NumRegs, ELF_SYM_LOC* paRegs) {
  const CFrameTable* pFrames = FramesOf(pFile);
  return pFrames ? pFrames->Rules(AddrToFile(PC), NumRegs, paRegs) : 0;
}

ELF_SYM_LOC ELF_GetCfa(const ELF_FILE* pFile, U32 PC) {
  const CFrameTable* pFrames = FramesOf(pFile);
  return pFrames ? pFrames->Cfa(AddrToFile(PC)) : ELF_SYM_LOC();
}

I32 ELF_GetFrameSize(const ELF_FILE* pFile, U32 PC) {
  const CFrameTable* pFrames = FramesOf(pFile);
  return pFrames ? pFrames->FrameSize(AddrToFile(PC)) : -1;
}
