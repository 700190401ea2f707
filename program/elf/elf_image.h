#pragma once

#include <memory>
#include <string_view>
#include <vector>

#include "program/elf/elf_layout.h"

// The bytes of one ELF file with its header, segments and sections in host byte order. Nothing in the file is trusted:
// whatever points outside it reads as absent.
class CElfImage {
public:
  // Takes the file's bytes.
  void SetData(std::unique_ptr<U8[]> pData, U32 Size);

  // Each of these returns null, or the reader's message for what is wrong. Called in this order, once.
  const char* ParseHeader();
  const char* ParseSegments();
  const char* ParseSections();

  U32 Size() const { return FileSize; }
  U32 Encoding() const;
  bool IsBigEndian() const { return Head.Ident[EI_DATA] == 2; }
  const ELF_HEADER& Header() const { return Head; }
  const std::vector<ELF_SEGMENT>& Segments() const { return aSegments; }
  const std::vector<ELF_SECTION>& Sections() const { return aSections; }
  const ELF_SEGMENT* Segment(U32 Index) const { return Index < aSegments.size() ? &aSegments[Index] : nullptr; }
  const ELF_SECTION* Section(U32 Index) const { return Index < aSections.size() ? &aSections[Index] : nullptr; }

  // Null unless all NumBytes lie inside the file.
  const U8* Bytes(U32 Offset, U32 NumBytes) const;
  // Null for a section without bytes in the file.
  const U8* SectionData(U32 Index) const;
  const U8* SegmentData(U32 Index) const;
  U32 SegmentSectionOffset(U32 Index) const;

  // The terminated text at Offset of a section of strings; empty if it does not end inside the section or is longer
  // than any name.
  const char* String(U32 StringSection, U32 Offset) const;
  const char* SectionName(U32 Index) const;
  I32 FindSection(std::string_view sName) const;
  I32 StringTable() const { return StrTabSection; }

  // Bytes of a loadable segment for the run-time addresses [Start, End), null if no single one has them all.
  const U8* ReadImage(U32 Start, U32 End) const;

  template <typename T>
  T Load(const U8* pData) const;

private:
  std::unique_ptr<U8[]> pBytes;
  U32 FileSize = 0;
  ELF_HEADER Head;
  std::vector<ELF_SEGMENT> aSegments;
  std::vector<ELF_SECTION> aSections;
  I32 StrTabSection = -1;

  void ReadExtendedNumbers();
  bool LoadWords(std::vector<U32>& aWords, U32 Offset, U32 Distance, U32 Count, U32 NumWords) const;
};
