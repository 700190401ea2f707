#pragma once

#include <memory>
#include <set>
#include <string>
#include <vector>

#include "program/elf/byte_cursor.h"
#include "program/elf/elf_image.h"

// The sections that the reader needs.
enum class DEBUG_SECTION : U32 {
  Info,
  Types,
  Abbrev,
  Str,
  LineStr,
  StrOffsets,
  Addr,
  Line,
  Frame,
  Loc,
  Loclists,
  Ranges,
  Rnglists,
  Count
};

// The debug sections of a file in memory, expanded where they are compressed, and what is said of damage in them.
// Everything in them is decoded by the reader itself, through checked cursors: libdwarf 20210528 walks fewer than a
// million entries a second and frees memory twice at some damaged sections.
class CDebugSections {
public:
  // The image must outlive it.
  explicit CDebugSections(const CElfImage& Image);
  CDebugSections(const CDebugSections&) = delete;
  CDebugSections& operator=(const CDebugSections&) = delete;

  // Without bytes where the file has no such section or a damaged one.
  const CByteCursor& Bytes(DEBUG_SECTION Section) const { return aBytes[static_cast<U32>(Section)]; }
  // Position of its header, -1 if there is none.
  I32 IndexOf(DEBUG_SECTION Section) const { return aIndexes[static_cast<U32>(Section)]; }
  bool IsBigEndian() const { return Image.IsBigEndian(); }

  // Says what is wrong, in which function of the reader, with the name and the value of the offending item. Nothing is
  // said twice running, and of a file full of damage only the beginning.
  void Complain(const char* sWhat, const char* sFunction, const char* sItem, U64 Value) const;
  // Says what the reader does not do, the first time that it is asked to.
  void SayOnce(const char* sText) const;

private:
  static constexpr U32 NUM_SECTIONS = static_cast<U32>(DEBUG_SECTION::Count);

  const CElfImage& Image;
  CByteCursor aBytes[NUM_SECTIONS];
  I32 aIndexes[NUM_SECTIONS];
  std::vector<std::unique_ptr<U8[]>> aExpanded;  // bytes of compressed sections
  U64 ExpandedSize = 0;
  mutable std::string sLastMessage;
  mutable U32 NumComplaints = 0;
  mutable std::set<std::string> SaidOnce;

  void AddSection(U32 Index);
  CByteCursor Contents(U32 Index, bool bZdebug);
};
