#include "program/elf/dwarf_session.h"

#include <cstdio>
#include <cstring>

#include "program/elf/list_header_check.h"
#include "program/elf/reader_state.h"

namespace {

constexpr size_t MAX_MESSAGE_LENGTH = 2000;
constexpr U8 ADDRESS_SIZE = 4;  // bytes
const char DEBUG_PREFIX[] = ".debug_";

const char* const apSectionNames[] = {".debug_info",     ".debug_types",       ".debug_abbrev", ".debug_str",
                                      ".debug_line_str", ".debug_str_offsets", ".debug_addr"};
static_assert(std::size(apSectionNames) == static_cast<U32>(DEBUG_SECTION::Count));

bool IsListSection(const char* sName) {
  return std::strcmp(sName, ".debug_rnglists") == 0 || std::strcmp(sName, ".debug_loclists") == 0;
}

}  // namespace

CDwarfSession::CDwarfSession(const CElfImage& Image) : Image(Image) {}

CDwarfSession::~CDwarfSession() {
  Dwarf_Error Error = nullptr;
  if (pDebug) dwarf_object_finish(pDebug, &Error);
}

void CDwarfSession::CollectSections() {
  aSections.push_back({"", nullptr, 0, 0});  // libdwarf takes index 0 for no section
  for (U32 i = 0; i < Image.Sections().size(); ++i) {
    const char* sName = Image.SectionName(i);
    const ELF_SECTION& Section = Image.Sections()[i];
    if (std::strncmp(sName, DEBUG_PREFIX, sizeof(DEBUG_PREFIX) - 1) != 0) continue;
    if (Section.Flags & SHF_COMPRESSED) {
      SendMessageF("section %s is compressed and was left out.", sName);
      continue;
    }
    U32 Size;
    const U8* pData = Image.SectionData(i);
    if (!pData || this->Section(sName, Size)) continue;
    if (IsListSection(sName) && !AreListHeadersSound(pData, Section.Size, IsBigEndian())) {
      SendMessageF("section %s is damaged and was left out.", sName);
      continue;
    }
    aSections.push_back({sName, pData, Section.Size, Section.Addr});
  }
}

bool CDwarfSession::Open() {
  CollectSections();
  for (U32 i = 0; i < std::size(apSectionNames); ++i) {
    U32 Size = 0;
    const U8* pData = Section(apSectionNames[i], Size);
    aBytes[i] = CByteCursor(pData, Size, IsBigEndian());
  }
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
  for (const SECTION& Section : aSections) {
    if (Section.pData && std::strcmp(Section.sName, sName) == 0) {
      Size = Section.Size;
      return Section.pData;
    }
  }
  Size = 0;
  return nullptr;
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
