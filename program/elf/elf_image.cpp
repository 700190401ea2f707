#include "program/elf/elf_image.h"

#include <algorithm>
#include <cstring>

#include "base/endian.h"
#include "program/elf/byte_cursor.h"
#include "program/elf/elf.h"

namespace {

// The bytes of segments are copied: in a damaged file they may lie over each other.
constexpr U64 MAX_SEGMENT_TIMES = 4;  // the file's size
constexpr U64 MAX_PAIRS = 1 << 26;    // of segments and sections, which are compared with each other

template <typename RECORD>
void CopyRecords(const std::vector<U32>& aWords, std::vector<RECORD>& aRecords) {
  aRecords.resize(aWords.size() * sizeof(U32) / sizeof(RECORD));
  if (!aRecords.empty()) std::memcpy(aRecords.data(), aWords.data(), aRecords.size() * sizeof(RECORD));
}

}  // namespace

template <typename T>
T CElfImage::Load(const U8* pData) const {
  return LoadInt<T>(pData, IsBigEndian());
}
template U16 CElfImage::Load<U16>(const U8*) const;
template U32 CElfImage::Load<U32>(const U8*) const;

void CElfImage::SetData(std::unique_ptr<U8[]> pData, U32 Size) {
  pBytes = std::move(pData);
  FileSize = Size;
}

U32 CElfImage::Encoding() const {
  const U8 Data = Head.Ident[EI_DATA];
  return Data == 1 ? ELF_ENCODING_LITTLE : Data == 2 ? ELF_ENCODING_BIG : ELF_ENCODING_INVALID;
}

const char* CElfImage::ParseHeader() {
  const U8* pData = Bytes(0, ELF_HEADER_SIZE);
  if (!pData || LoadInt<U32>(pData, false) != ELF_MAGIC) return "Not a valid elf object file.";
  std::memcpy(Head.Ident, pData, sizeof(Head.Ident));
  if (Head.Ident[EI_CLASS] == 0) return "Invalid ELF file. Invalid file class";
  if (Encoding() == ELF_ENCODING_INVALID) return "Invalid ELF file. Invalid data encoding";
  if (Head.Ident[EI_VERSION] != 1) return "Invalid ELF file. Invalid ELF header version number.";
  Head.Type = Load<U16>(pData + 16);
  Head.Machine = Load<U16>(pData + 18);
  Head.Version = Load<U32>(pData + 20);
  if (Head.Version == 0) return "Invalid ELF file. Invalid file version number.";
  Head.Entry = Load<U32>(pData + 24);
  Head.SegmentOffset = Load<U32>(pData + 28);
  Head.SectionOffset = Load<U32>(pData + 32);
  Head.Flags = Load<U32>(pData + 36);
  Head.HeaderSize = Load<U16>(pData + 40);
  Head.SegmentEntSize = Load<U16>(pData + 42);
  Head.NumSegments = Load<U16>(pData + 44);
  Head.SectionEntSize = Load<U16>(pData + 46);
  Head.NumSections = Load<U16>(pData + 48);
  Head.NameSection = Load<U16>(pData + 50);
  ReadExtendedNumbers();
  return nullptr;
}

void CElfImage::ReadExtendedNumbers() {
  const U8* pFirst = Head.SectionOffset != 0 ? Bytes(Head.SectionOffset, SECTION_HEADER_SIZE) : nullptr;
  if (!pFirst) return;
  if (Head.NumSections == 0) Head.NumSections = Load<U32>(pFirst + 20);
  if (Head.NameSection == EXTENDED_NUMBER) Head.NameSection = Load<U32>(pFirst + 24);
  if (Head.NumSegments == EXTENDED_NUMBER) Head.NumSegments = Load<U32>(pFirst + 28);
}

bool CElfImage::LoadWords(std::vector<U32>& aWords, U32 Offset, U32 Distance, U32 Count, U32 NumWords) const {
  if (Count > 1 && Distance < NumWords * 4) return false;  // headers over each other
  if (Count > FileSize / (NumWords * 4)) return false;
  aWords.reserve(static_cast<size_t>(Count) * NumWords);
  for (U32 i = 0; i < Count; ++i) {
    const U64 At = Offset + static_cast<U64>(i) * Distance;
    const U8* pData = At <= FileSize ? Bytes(static_cast<U32>(At), NumWords * 4) : nullptr;
    if (!pData) return false;
    for (U32 k = 0; k < NumWords; ++k) aWords.push_back(Load<U32>(pData + 4 * k));
  }
  return true;
}

const char* CElfImage::ParseSegments() {
  std::vector<U32> aWords;
  if (!LoadWords(aWords, Head.SegmentOffset, Head.SegmentEntSize, Head.NumSegments, SEGMENT_HEADER_SIZE / 4)) {
    return "could not parse segment headers.";
  }
  CopyRecords(aWords, aSegments);
  U64 NumBytes = 0;
  for (U32 i = 0; i < aSegments.size(); ++i) {
    if (aSegments[i].Type == PT_LOAD && SegmentData(i)) NumBytes += aSegments[i].FileSize;
  }
  return NumBytes > MAX_SEGMENT_TIMES * FileSize ? "could not parse segment headers." : nullptr;
}

const char* CElfImage::ParseSections() {
  std::vector<U32> aWords;
  if (!LoadWords(aWords, Head.SectionOffset, Head.SectionEntSize, Head.NumSections, SECTION_HEADER_SIZE / 4)) {
    return "could not section headers.";
  }
  CopyRecords(aWords, aSections);
  if (aSegments.size() * aSections.size() > MAX_PAIRS) return "could not section headers.";
  StrTabSection = FindSection(".strtab");
  return nullptr;
}

const U8* CElfImage::Bytes(U32 Offset, U32 NumBytes) const {
  return Offset <= FileSize && NumBytes <= FileSize - Offset ? pBytes.get() + Offset : nullptr;
}

const U8* CElfImage::SectionData(U32 Index) const {
  const ELF_SECTION* pSection = Section(Index);
  if (!pSection || pSection->Type == SHT_NULL || pSection->Type == SHT_NOBITS || pSection->Size == 0) return nullptr;
  return Bytes(pSection->Offset, pSection->Size);
}

const U8* CElfImage::SegmentData(U32 Index) const {
  const ELF_SEGMENT* pSegment = Segment(Index);
  return pSegment && pSegment->FileSize != 0 ? Bytes(pSegment->Offset, pSegment->FileSize) : nullptr;
}

U32 CElfImage::SegmentSectionOffset(U32 Index) const {
  const ELF_SEGMENT* pSegment = Segment(Index);
  if (!pSegment) return 0;
  const U64 End = static_cast<U64>(pSegment->VAddr) + pSegment->MemSize;
  U64 Lowest = End;
  for (const ELF_SECTION& Section : aSections) {
    const bool bInside = Section.Addr >= pSegment->VAddr && static_cast<U64>(Section.Addr) + Section.Size <= End;
    if ((Section.Flags & SHF_ALLOC) && Section.Size != 0 && bInside) Lowest = std::min<U64>(Lowest, Section.Addr);
  }
  return Lowest == End ? 0 : static_cast<U32>(Lowest - pSegment->VAddr);
}

const char* CElfImage::String(U32 StringSection, U32 Offset) const {
  const U8* pData = SectionData(StringSection);
  if (!pData || Offset >= aSections[StringSection].Size) return "";
  const U32 MaxLength = std::min(aSections[StringSection].Size - Offset, MAX_NAME_LENGTH);
  return std::memchr(pData + Offset, 0, MaxLength) ? reinterpret_cast<const char*>(pData + Offset) : "";
}

const char* CElfImage::SectionName(U32 Index) const {
  const ELF_SECTION* pSection = Section(Index);
  return pSection ? String(Head.NameSection, pSection->Name) : "";
}

I32 CElfImage::FindSection(std::string_view sName) const {
  for (U32 i = 0; i < aSections.size(); ++i) {
    if (sName == SectionName(i)) return static_cast<I32>(i);
  }
  return -1;
}

const U8* CElfImage::ReadImage(U32 Start, U32 End) const {
  if (End <= Start) return nullptr;
  for (U32 i = 0; i < aSegments.size(); ++i) {
    const ELF_SEGMENT& Segment = aSegments[i];
    if (Segment.Type != PT_LOAD || Start < Segment.VAddr) continue;
    const U32 Offset = Start - Segment.VAddr;
    if (Offset >= Segment.FileSize || End - Start > Segment.FileSize - Offset) continue;
    if (const U8* pData = SegmentData(i)) return pData + Offset;
  }
  return nullptr;
}
