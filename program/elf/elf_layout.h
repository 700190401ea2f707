#pragma once
// Layout of the 32-bit ELF structures, in host byte order once they are read.

#include "base/types.h"

inline constexpr U32 ELF_HEADER_SIZE = 52;
inline constexpr U32 SEGMENT_HEADER_SIZE = 32;
inline constexpr U32 SECTION_HEADER_SIZE = 40;
inline constexpr U32 SYMBOL_ENTRY_SIZE = 16;
inline constexpr U32 REL_ENTRY_SIZE = 8;
inline constexpr U32 RELA_ENTRY_SIZE = 12;

inline constexpr U32 ELF_MAGIC = 0x464C457Fu;  // 0x7F "ELF" as a little-endian word
inline constexpr U32 EI_CLASS = 4, EI_DATA = 5, EI_VERSION = 6;

enum SEGMENT_TYPE : U32 { PT_LOAD = 1 };
enum SECTION_TYPE : U32 { SHT_NULL = 0, SHT_SYMTAB = 2, SHT_RELA = 4, SHT_NOBITS = 8, SHT_REL = 9, SHT_DYNSYM = 11 };
enum SECTION_FLAG : U32 { SHF_ALLOC = 2, SHF_EXECINSTR = 4, SHF_COMPRESSED = 0x800 };

// Numbers of the header for those that it has no room for: they stand in the first section header.
inline constexpr U32 EXTENDED_NUMBER = 0xFFFF;

// From here on an address in debug information is none: linkers mark code so that they dropped.
inline constexpr U32 LOWEST_TOMBSTONE = 0xFFFFFFFE;

struct ELF_HEADER {
  U8 Ident[16] = {};
  U16 Type = 0;
  U16 Machine = 0;
  U32 Version = 0;
  U32 Entry = 0;
  U32 SegmentOffset = 0;
  U32 SectionOffset = 0;
  U32 Flags = 0;
  U16 HeaderSize = 0;
  U16 SegmentEntSize = 0;
  U32 NumSegments = 0;
  U16 SectionEntSize = 0;
  U32 NumSections = 0;
  U32 NameSection = 0;
};

struct ELF_SEGMENT {
  U32 Type, Offset, VAddr, PAddr, FileSize, MemSize, Flags, Align;
};
static_assert(sizeof(ELF_SEGMENT) == SEGMENT_HEADER_SIZE);

struct ELF_SECTION {
  U32 Name, Type, Flags, Addr, Offset, Size, Link, Info, Align, EntSize;
};
static_assert(sizeof(ELF_SECTION) == SECTION_HEADER_SIZE);

struct ELF_SYMBOL {
  U32 Name = 0;
  U32 Value = 0;
  U32 Size = 0;
  U8 Info = 0;
  U8 Other = 0;
  U16 Section = 0;
  bool bDerivedSize = false;  // Size was 0 in the file

  U32 Type() const { return Info & 15u; }
  U32 Binding() const { return Info >> 4; }
  bool IsFunction() const { return Type() == 2 || Type() == 13; }
};
