#include "program/elf/debug_sections.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "program/elf/compressed_section.h"
#include "program/elf/reader_state.h"

namespace {

constexpr size_t MAX_MESSAGE_LENGTH = 2000;
// Bytes of all compressed sections: few bytes of a damaged file could stand for many.
constexpr U64 MAX_EXPANDED = 512 << 20;
constexpr U32 MAX_COMPLAINTS = 200;  // about one file
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

}  // namespace

CDebugSections::CDebugSections(const CElfImage& Image) : Image(Image) {
  std::fill(std::begin(aIndexes), std::end(aIndexes), -1);
  for (U32 i = 0; i < Image.Sections().size(); ++i) AddSection(i);
}

// The first section of a name counts, damaged or not.
void CDebugSections::AddSection(U32 Index) {
  const char* sName = Image.SectionName(Index);
  const U32 Number = NumberOf(sName);
  if (Number == NUM_SECTIONS || aIndexes[Number] >= 0 || !aBytes[Number].Ok() || !Image.SectionData(Index)) return;
  const CByteCursor Bytes = Contents(Index, IsZdebug(sName));
  aBytes[Number] = Bytes;
  if (!Bytes.Ok()) {
    SendMessageF("section %s is damaged and was left out.", sName);
    return;
  }
  aIndexes[Number] = static_cast<I32>(Index);
}

// The section's own bytes, expanded if they are compressed; spoilt where that fails.
CByteCursor CDebugSections::Contents(U32 Index, bool bZdebug) {
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

void CDebugSections::Complain(const char* sWhat, const char* sFunction, const char* sItem, U64 Value) const {
  if (NumComplaints > MAX_COMPLAINTS) return;
  char acText[MAX_MESSAGE_LENGTH + 1];
  std::snprintf(acText, sizeof(acText), "libdwarf: %s in func %s (%s, 0x%llX)", sWhat, sFunction, sItem, Value);
  if (sLastMessage == acText) return;
  sLastMessage = acText;
  const bool bLast = ++NumComplaints > MAX_COMPLAINTS;
  SendMessage(bLast ? "debug info has more errors, which are not listed." : acText, ELF_DWARF_MSG_FLAGS);
}

void CDebugSections::SayOnce(const char* sText) const {
  if (SaidOnce.insert(sText).second) SendMessage(sText, ELF_DWARF_MSG_FLAGS);
}
