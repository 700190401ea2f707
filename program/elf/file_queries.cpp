// Queries about the file itself, its segments and its sections.
#include "program/elf/elf_file.h"
#include "program/elf/reader_state.h"

namespace {

template <typename VALUE>
VALUE SegmentField(const ELF_FILE* pFile, U32 Index, VALUE ELF_SEGMENT::*pField) {
  const ELF_FILE* pLoaded = LoadedFile(pFile);
  const ELF_SEGMENT* pSegment = pLoaded ? pLoaded->Image.Segment(Index) : nullptr;
  return pSegment ? pSegment->*pField : VALUE();
}

template <typename VALUE>
VALUE SectionField(const ELF_FILE* pFile, U32 Index, VALUE ELF_SECTION::*pField) {
  const ELF_FILE* pLoaded = LoadedFile(pFile);
  const ELF_SECTION* pSection = pLoaded ? pLoaded->Image.Section(Index) : nullptr;
  return pSection ? pSection->*pField : VALUE();
}

}  // namespace

U32 ELF_GetEncoding(const ELF_FILE* pFile) {
  const ELF_FILE* pLoaded = LoadedFile(pFile);
  return pLoaded ? pLoaded->Image.Encoding() : static_cast<U32>(ELF_ENCODING_INVALID);
}

U32 ELF_GetCodeEncoding(const ELF_FILE* pFile) {
  constexpr U32 FLAG_BE8 = 0x00800000;
  const ELF_FILE* pLoaded = LoadedFile(pFile);
  if (!pLoaded || (pLoaded->Image.Header().Flags & FLAG_BE8) == 0) return ELF_GetEncoding(pFile);
  return ELF_ENCODING_LITTLE;
}

U32 ELF_GetFileClass(const ELF_FILE* pFile) {
  const ELF_FILE* pLoaded = LoadedFile(pFile);
  return pLoaded ? pLoaded->Image.Header().Ident[EI_CLASS] : ELF_CLASS_NO_FILE;
}

U32 ELF_GetEntryPoint(const ELF_FILE* pFile) {
  const ELF_FILE* pLoaded = LoadedFile(pFile);
  if (!pLoaded || pLoaded->Image.Header().Entry == INVALID_ADDR) return INVALID_ADDR;
  return AddrToTarget(pLoaded->Image.Header().Entry & ~1u);
}

U32 ELF_GetVersion(const ELF_FILE* pFile) {
  const ELF_FILE* pLoaded = LoadedFile(pFile);
  return pLoaded && pLoaded->pDwarf ? pLoaded->pDwarf->MaxVersion : 0;
}

ELF_SRC_LANG ELF_GetSrcLang(const ELF_FILE* pFile) {
  const ELF_FILE* pLoaded = LoadedFile(pFile);
  if (!pLoaded) return ELF_SRC_LANG_UNKNOWN;
  return pLoaded->pDwarf ? pLoaded->pDwarf->Language : ELF_SRC_LANG_C;
}

U32 ELF_GetFileSize(const ELF_FILE* pFile) {
  const ELF_FILE* pLoaded = LoadedFile(pFile);
  return pLoaded ? pLoaded->Image.Size() : 0;
}

U32 ELF_GetNumSegments(const ELF_FILE* pFile) {
  const ELF_FILE* pLoaded = LoadedFile(pFile);
  return pLoaded ? static_cast<U32>(pLoaded->Image.Segments().size()) : 0;
}

U32 ELF_GetSegmentType(const ELF_FILE* pFile, U32 Index) {
  return SegmentField(pFile, Index, &ELF_SEGMENT::Type);
}
U32 ELF_GetSegmentFlags(const ELF_FILE* pFile, U32 Index) {
  return SegmentField(pFile, Index, &ELF_SEGMENT::Flags);
}
U32 ELF_GetSegmentOffset(const ELF_FILE* pFile, U32 Index) {
  return SegmentField(pFile, Index, &ELF_SEGMENT::Offset);
}
U32 ELF_GetSegmentVAddr(const ELF_FILE* pFile, U32 Index) {
  return SegmentField(pFile, Index, &ELF_SEGMENT::VAddr);
}
U32 ELF_GetSegmentPAddr(const ELF_FILE* pFile, U32 Index) {
  return SegmentField(pFile, Index, &ELF_SEGMENT::PAddr);
}
U32 ELF_GetSegmentFileSize(const ELF_FILE* pFile, U32 Index) {
  return SegmentField(pFile, Index, &ELF_SEGMENT::FileSize);
}
U32 ELF_GetSegmentMemSize(const ELF_FILE* pFile, U32 Index) {
  return SegmentField(pFile, Index, &ELF_SEGMENT::MemSize);
}

const U8* ELF_GetSegmentData(const ELF_FILE* pFile, U32 Index) {
  const ELF_FILE* pLoaded = LoadedFile(pFile);
  return pLoaded ? pLoaded->Image.SegmentData(Index) : nullptr;
}

U32 ELF_GetSegmentSectionOffset(const ELF_FILE* pFile, U32 Index) {
  const ELF_FILE* pLoaded = LoadedFile(pFile);
  return pLoaded ? pLoaded->Image.SegmentSectionOffset(Index) : 0;
}

U32 ELF_GetNumSections(const ELF_FILE* pFile) {
  const ELF_FILE* pLoaded = LoadedFile(pFile);
  return pLoaded ? static_cast<U32>(pLoaded->Image.Sections().size()) : 0;
}

U32 ELF_GetSectionType(const ELF_FILE* pFile, U32 Index) {
  return SectionField(pFile, Index, &ELF_SECTION::Type);
}
U32 ELF_GetSectionFlags(const ELF_FILE* pFile, U32 Index) {
  return SectionField(pFile, Index, &ELF_SECTION::Flags);
}
U32 ELF_GetSectionAddr(const ELF_FILE* pFile, U32 Index) {
  return SectionField(pFile, Index, &ELF_SECTION::Addr);
}
U32 ELF_GetSectionFileOffset(const ELF_FILE* pFile, U32 Index) {
  return SectionField(pFile, Index, &ELF_SECTION::Offset);
}
U32 ELF_GetSectionSize(const ELF_FILE* pFile, U32 Index) {
  return SectionField(pFile, Index, &ELF_SECTION::Size);
}
U32 ELF_GetSectionEntSize(const ELF_FILE* pFile, U32 Index) {
  return SectionField(pFile, Index, &ELF_SECTION::EntSize);
}

U32 ELF_GetSectionNumEntries(const ELF_FILE* pFile, U32 Index) {
  const U32 EntSize = ELF_GetSectionEntSize(pFile, Index);
  return EntSize ? ELF_GetSectionSize(pFile, Index) / EntSize : 0;
}

const U8* ELF_GetSectionData(const ELF_FILE* pFile, U32 Index) {
  const ELF_FILE* pLoaded = LoadedFile(pFile);
  return pLoaded ? pLoaded->Image.SectionData(Index) : nullptr;
}

const char* ELF_GetSectionName(const ELF_FILE* pFile, U32 Index) {
  const ELF_FILE* pLoaded = LoadedFile(pFile);
  return Index < ELF_GetNumSections(pFile) ? pLoaded->Image.SectionName(Index) : nullptr;
}

I32 ELF_FindSection(const ELF_FILE* pFile, const char* sName) {
  const ELF_FILE* pLoaded = LoadedFile(pFile);
  return pLoaded && sName ? pLoaded->Image.FindSection(sName) : -1;
}

int ELF_GetRelocation(const ELF_FILE* pFile, U32 Section, U32 Index, ELF_RELOCATION* pOut) {
  const U32 Type = ELF_GetSectionType(pFile, Section);
  const U32 EntSize = ELF_GetSectionEntSize(pFile, Section);
  const bool bAddend = Type == SHT_RELA;
  if ((Type != SHT_REL && !bAddend) || EntSize < (bAddend ? RELA_ENTRY_SIZE : REL_ENTRY_SIZE)) return -1;
  const U8* pData = ELF_GetSectionData(pFile, Section);
  if (!pData || Index >= ELF_GetSectionNumEntries(pFile, Section)) return -1;
  const U8* pEntry = pData + static_cast<size_t>(Index) * EntSize;
  const U32 Info = pFile->Image.Load<U32>(pEntry + 4);
  pOut->Offset = pFile->Image.Load<U32>(pEntry);
  pOut->Type = Info & 0xFF;
  pOut->Symbol = Info >> 8;
  pOut->Addend = bAddend ? static_cast<I32>(pFile->Image.Load<U32>(pEntry + 8)) : 0;
  return 0;
}

const U8* ELF_ReadImage(const ELF_FILE* pFile, U32 Start, U32 End) {
  const ELF_FILE* pLoaded = LoadedFile(pFile);
  if (!pLoaded || Start >= End) return nullptr;
  // What moved apart, or away, is no longer there.
  const U32 First = AddrToFile(Start), Last = AddrToFile(End - 1);
  if (Last - First != End - 1 - Start || AddrToTarget(First) != Start) return nullptr;
  for (U32 Edge = ELF_NextRelocEdge(First); Edge <= Last && Edge != INVALID_ADDR; Edge = ELF_NextRelocEdge(Edge)) {
    if (AddrToTarget(Edge) - Edge != Start - First) return nullptr;
  }
  return pLoaded->Image.ReadImage(First, Last + 1);
}
