#include "program/elf/dwarf_session.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "program/elf/compressed_section.h"
#include "program/elf/reader_state.h"

namespace {

constexpr size_t MAX_MESSAGE_LENGTH = 2000;
constexpr U8 ADDRESS_SIZE = 4;            // bytes
constexpr U64 MAX_EXPANDED = 0x7FFFFFFF;  // bytes of all compressed sections, like those of a file
const char COMPRESSED_PREFIX[] = ".zdebug_";

// In the order of DEBUG_SECTION.
const char* const apSectionNames[] = {".debug_info",     ".debug_types",       ".debug_abbrev",   ".debug_str",
                                      ".debug_line_str", ".debug_str_offsets", ".debug_addr",     ".debug_line",
                                      ".debug_frame",    ".debug_loc",         ".debug_loclists", ".debug_ranges",
                                      ".debug_rnglists"};
static_assert(std::size(apSectionNames) == static_cast<U32>(DEBUG_SECTION::Count));

bool IsZdebug(const char* sName) {
  return std::strncmp(sName, COMPRESSED_PREFIX, sizeof(COMPRESSED_PREFIX) - 1) == 0;
}

// Number of the section by its name, with the prefix of a compressed one too; DEBUG_SECTION::Count for all others.
U32 NumberOf(const char* sName) {
  const std::string sStandard = IsZdebug(sName) ? std::string(".") + (sName + 2) : sName;
  return static_cast<U32>(std::find(std::begin(apSectionNames), std::end(apSectionNames), sStandard) -
                          std::begin(apSectionNames));
}

// libdwarf 20210528 frees memory twice over a damaged section of lists; it decodes only lines, which need none.
bool IsForLibdwarf(DEBUG_SECTION Section) {
  return Section <= DEBUG_SECTION::Line;
}

}  // namespace

CDwarfSession::CDwarfSession(const CElfImage& Image) : Image(Image) {}

CDwarfSession::~CDwarfSession() {
  Dwarf_Error Error = nullptr;
  if (pDebug) dwarf_object_finish(pDebug, &Error);
}

void CDwarfSession::CollectSections() {
  std::fill(std::begin(aIndexes), std::end(aIndexes), -1);
  aSections.push_back({"", nullptr, 0, 0});  // libdwarf takes index 0 for no section
  for (U32 i = 0; i < Image.Sections().size(); ++i) AddSection(i);
}

// The first section of a name counts.
void CDwarfSession::AddSection(U32 Index) {
  const char* sName = Image.SectionName(Index);
  const U32 Number = NumberOf(sName);
  if (Number == NUM_SECTIONS || aIndexes[Number] >= 0 || !Image.SectionData(Index)) return;
  const CByteCursor Bytes = Contents(Index, IsZdebug(sName));
  if (!Bytes.Ok()) {
    SendMessageF("section %s is damaged and was left out.", sName);
    return;
  }
  aIndexes[Number] = static_cast<I32>(Index);
  aBytes[Number] = Bytes;
  if (!IsForLibdwarf(static_cast<DEBUG_SECTION>(Number))) return;
  const U32 Size = static_cast<U32>(Bytes.Left());
  aSections.push_back({apSectionNames[Number], Bytes.Bytes(), Size, Image.Sections()[Index].Addr});
}

// The section's own bytes, expanded if they are compressed; spoilt where that fails.
CByteCursor CDwarfSession::Contents(U32 Index, bool bZdebug) {
  const ELF_SECTION& Section = Image.Sections()[Index];
  const U8* pData = Image.SectionData(Index);
  const bool bCompressed = (Section.Flags & SHF_COMPRESSED) != 0;
  if (!bCompressed && !bZdebug) return CByteCursor(pData, Section.Size, IsBigEndian());
  COMPRESSED_SECTION Compressed;
  const bool bParsed = bCompressed ? ParseCompressedSection(pData, Section.Size, IsBigEndian(), Compressed)
                                   : ParseZdebugSection(pData, Section.Size, Compressed);
  CByteCursor Bytes(nullptr, 0, IsBigEndian());
  if (std::unique_ptr<U8[]> pExpanded = bParsed ? Expand(Compressed, MAX_EXPANDED - ExpandedSize) : nullptr) {
    Bytes = CByteCursor(pExpanded.get(), Compressed.Size, IsBigEndian());
    ExpandedSize += Compressed.Size;
    aExpanded.push_back(std::move(pExpanded));
  } else {
    Bytes.Spoil();
  }
  return Bytes;
}

bool CDwarfSession::Open() {
  CollectSections();
  if (aSections.size() == 1) return true;
  Methods.get_section_info = GetSectionInfo;
  Methods.get_byte_order = GetByteOrder;
  Methods.get_length_size = GetAddressSize;
  Methods.get_pointer_size = GetAddressSize;
  Methods.get_section_count = GetSectionCount;
  Methods.load_section = LoadSection;
  Interface.object = this;
  Interface.methods = &Methods;
  Dwarf_Error Error = nullptr;
  const int Result = dwarf_object_init_b(&Interface, nullptr, nullptr, DW_GROUPNUMBER_ANY, &pDebug, &Error);
  if (Result == DW_DLV_ERROR) Report(Error, "dwarf_object_init_b");
  if (Result != DW_DLV_OK) pDebug = nullptr;
  return Result != DW_DLV_ERROR;
}

const U8* CDwarfSession::Section(const char* sName, U32& Size) const {
  const U32 Number = NumberOf(sName);
  Size = Number < NUM_SECTIONS ? static_cast<U32>(aBytes[Number].Left()) : 0;
  return Size ? aBytes[Number].Bytes() : nullptr;
}

void CDwarfSession::Report(Dwarf_Error& Error, const char* sFunction, const char* sItem, U64 Value) const {
  Complain(Error ? dwarf_errmsg(Error) : "unknown error", sFunction, sItem, Value);
  Drop(Error);
}

void CDwarfSession::Complain(const char* sWhat, const char* sFunction, const char* sItem, U64 Value) const {
  char acText[MAX_MESSAGE_LENGTH + 1];
  if (sItem) {
    std::snprintf(acText, sizeof(acText), "libdwarf: %s in func %s (%s, 0x%llX)", sWhat, sFunction, sItem, Value);
  } else {
    std::snprintf(acText, sizeof(acText), "libdwarf: %s in func %s", sWhat, sFunction);
  }
  if (sLastMessage == acText) return;
  sLastMessage = acText;
  SendMessage(acText, ELF_DWARF_MSG_FLAGS);
}

void CDwarfSession::Drop(Dwarf_Error& Error) const {
  if (Error) dwarf_dealloc_error(pDebug, Error);
  Error = nullptr;
}

int CDwarfSession::GetSectionInfo(void* pThis, Dwarf_Half Index, Dwarf_Obj_Access_Section* pOut, int*) {
  const auto& aSections = static_cast<CDwarfSession*>(pThis)->aSections;
  if (Index >= aSections.size()) return DW_DLV_NO_ENTRY;
  *pOut = {};
  pOut->addr = aSections[Index].Addr;
  pOut->type = 1;
  pOut->size = aSections[Index].Size;
  pOut->name = aSections[Index].sName;
  return DW_DLV_OK;
}

int CDwarfSession::LoadSection(void* pThis, Dwarf_Half Index, Dwarf_Small** ppData, int*) {
  const auto& aSections = static_cast<CDwarfSession*>(pThis)->aSections;
  if (Index >= aSections.size() || !aSections[Index].pData) return DW_DLV_NO_ENTRY;
  *ppData = const_cast<Dwarf_Small*>(aSections[Index].pData);
  return DW_DLV_OK;
}

Dwarf_Endianness CDwarfSession::GetByteOrder(void* pThis) {
  return static_cast<CDwarfSession*>(pThis)->IsBigEndian() ? DW_OBJECT_MSB : DW_OBJECT_LSB;
}

Dwarf_Small CDwarfSession::GetAddressSize(void*) {
  return ADDRESS_SIZE;
}

Dwarf_Unsigned CDwarfSession::GetSectionCount(void* pThis) {
  return static_cast<CDwarfSession*>(pThis)->aSections.size();
}
