#include "program/elf/frame_table.h"

void CFrameTable::Load(const CDwarfSession& Session) {
  if (!Session.Handle()) return;
  Dwarf_Error Error = nullptr;
  Dwarf_Cie* paCies = nullptr;
  Dwarf_Fde* paFdes = nullptr;
  Dwarf_Signed NumCies = 0, NumFdes = 0;
  const int Result = dwarf_get_fde_list(Session.Handle(), &paCies, &NumCies, &paFdes, &NumFdes, &Error);
  if (Result == DW_DLV_ERROR) Session.Report(Error, "dwarf_get_fde_list");
  if (Result != DW_DLV_OK) return;
  CieCount = static_cast<U32>(NumCies);
  for (Dwarf_Signed i = 0; i < NumFdes; ++i) {
    Dwarf_Addr Low = 0;
    Dwarf_Unsigned Length = 0;
    if (dwarf_get_fde_range(paFdes[i], &Low, &Length, nullptr, nullptr, nullptr, nullptr, nullptr, &Error) ==
        DW_DLV_OK) {
      aEntries.push_back({static_cast<U32>(Low), static_cast<U32>(std::min<U64>(Low + Length, 0xFFFFFFFFu))});
    } else {
      Session.Report(Error, "dwarf_get_fde_range");
    }
  }
  if (NumCies > 0) {
    Dwarf_Unsigned Size = 0, CodeAlign = 0, InstLength = 0;
    Dwarf_Small Version = 0;
    char* sAugmentation = nullptr;
    Dwarf_Signed DataAlign = 0;
    Dwarf_Half Register = 0, OffsetSize = 0;
    Dwarf_Ptr pInstructions = nullptr;
    if (dwarf_get_cie_info_b(paCies[0], &Size, &Version, &sAugmentation, &CodeAlign, &DataAlign, &Register,
                             &pInstructions, &InstLength, &OffsetSize, &Error) == DW_DLV_OK) {
      ReturnReg = Register;
    } else {
      Session.Report(Error, "dwarf_get_cie_info_b");
    }
  }
  dwarf_fde_cie_list_dealloc(Session.Handle(), paCies, NumCies, paFdes, NumFdes);
}
