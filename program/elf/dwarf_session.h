#pragma once

#include "program/elf/dwarf_constants.h"
// In front of these, which define the same names.
#include <dwarf.h>
#include <libdwarf.h>

#include <memory>
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

// One libdwarf session over the debug sections of a file in memory. The image must outlive it.
class CDwarfSession {
public:
  explicit CDwarfSession(const CElfImage& Image);
  ~CDwarfSession();
  CDwarfSession(const CDwarfSession&) = delete;
  CDwarfSession& operator=(const CDwarfSession&) = delete;

  // False if libdwarf refuses the sections. A file without debug sections opens; it then has no handle.
  bool Open();
  Dwarf_Debug Handle() const { return pDebug; }
  // The bytes of a debug section by its standard name; null and size 0 if there is none.
  const U8* Section(const char* sName, U32& Size) const;
  // The same as a cursor.
  CByteCursor Bytes(DEBUG_SECTION Section) const { return aBytes[static_cast<U32>(Section)]; }
  // Position of its header, -1 if there is none.
  I32 IndexOf(DEBUG_SECTION Section) const { return aIndexes[static_cast<U32>(Section)]; }
  bool IsBigEndian() const { return Image.IsBigEndian(); }

  // Sends libdwarf's complaint about a call as a message and releases the error. sItem names the offending value.
  void Report(Dwarf_Error& Error, const char* sFunction, const char* sItem = nullptr, U64 Value = 0) const;
  void Drop(Dwarf_Error& Error) const;
  // The same for damage that a decoder of the reader's own has found. Nothing is said twice running.
  void Complain(const char* sWhat, const char* sFunction, const char* sItem = nullptr, U64 Value = 0) const;

private:
  struct SECTION {
    const char* sName;
    const U8* pData;
    U32 Size;
    U32 Addr;
  };

  const CElfImage& Image;
  std::vector<SECTION> aSections;
  static constexpr U32 NUM_SECTIONS = static_cast<U32>(DEBUG_SECTION::Count);
  CByteCursor aBytes[NUM_SECTIONS];
  I32 aIndexes[NUM_SECTIONS];
  std::vector<std::unique_ptr<U8[]>> aExpanded;  // bytes of compressed sections
  U64 ExpandedSize = 0;
  Dwarf_Obj_Access_Methods Methods = {};
  Dwarf_Obj_Access_Interface Interface = {};
  Dwarf_Debug pDebug = nullptr;
  mutable std::string sLastMessage;

  void CollectSections();
  void AddSection(U32 Index);
  CByteCursor Contents(U32 Index, bool bZdebug);

  static int GetSectionInfo(void* pThis, Dwarf_Half Index, Dwarf_Obj_Access_Section* pOut, int* pError);
  static int LoadSection(void* pThis, Dwarf_Half Index, Dwarf_Small** ppData, int* pError);
  static Dwarf_Endianness GetByteOrder(void* pThis);
  static Dwarf_Small GetAddressSize(void* pThis);
  static Dwarf_Unsigned GetSectionCount(void* pThis);
};
