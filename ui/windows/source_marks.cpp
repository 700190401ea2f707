#include "ui/windows/source_marks.h"

#include "device/breakpoints/breakpoint_manager.h"
#include "device/device.h"
#include "program/database/elfapi.h"
#include "ui/windows/pc_highlights.h"
#include "ui/windows/source_editor.h"

namespace {

unsigned MarkOfState(U32 State) {
  if (State == BP_STATE_DISABLED) return SIDE_BAR_BREAKPOINT_DISABLED;
  return State == BP_STATE_ENABLED || State == BP_STATE_MIXED ? SIDE_BAR_BREAKPOINT : SIDE_BAR_NONE;
}

unsigned MarksOfAddr(U32 Addr) {
  BP Entry;
  const CBreakpointManager& Breakpoints = CBreakpointManager::Get();
  if (!Breakpoints.GetAt(Addr, Entry)) return SIDE_BAR_NONE;
  const unsigned Mark = MarkOfState(Entry.State);
  return Mark == SIDE_BAR_NONE || Breakpoints.IsDerived(Addr) ? Mark : Mark | SIDE_BAR_SMALL;
}

// A line without breakpoint of its own shows those of its addresses.
unsigned MarksOfLine(const CSrcLoc& Loc) {
  BP_SETTING Setting;
  if (CBreakpointManager::Get().GetOnSrc(Loc, Setting)) return MarkOfState(Setting.State);
  for (const U32 Addr : ELFAPI_GetAddrsOfLoc(Loc)) {
    if (const unsigned Marks = MarksOfAddr(Addr)) return Marks;
  }
  return SIDE_BAR_NONE;
}

}  // namespace

unsigned MarksOfRow(const CSourceEditor& Editor, const CPcHighlights& Pc, int Row) {
  if (Editor.IsMessage() || Editor.GetFileNo() == INVALID_FILE_ID) return SIDE_BAR_NONE;
  const bool bInstruction = Editor.Rows().IsInstruction(Row);
  const CSrcLoc Loc = Editor.Rows().LocOfRow(Row);
  const U32 Addr = Editor.Rows().AddrOfRow(Row);
  unsigned Marks = bInstruction ? MarksOfAddr(Addr) : MarksOfLine(Loc);
  if (bInstruction || Editor.Rows().HasCodeAt(Row)) Marks |= SIDE_BAR_CODE;
  const bool bHalted = CDevice::Get().IsConnected() && CDevice::Get().IsHalted();
  const bool bPc = bInstruction ? Addr == Pc.PcAddr() : Pc.PcLoc().IsValid() && Loc.IsSameLine(Pc.PcLoc());
  if (bHalted && bPc) Marks |= Pc.IsActive() ? SIDE_BAR_PC : SIDE_BAR_PC_INACTIVE;
  return Marks;
}
