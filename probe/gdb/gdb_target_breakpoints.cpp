// Breakpoints and data watches through a GDB server.

#include <algorithm>

#include "probe/data_event_access.h"
#include "probe/gdb/gdb_target.h"
#include "probe/gdb/gdb_target_pause.h"
#include "probe/text.h"

namespace {

constexpr char TYPE_SOFT = '0';
constexpr char TYPE_HARD = '1';
constexpr char TYPE_WATCH_WRITE = '2';
constexpr char TYPE_WATCH_READ = '3';
constexpr char TYPE_WATCH_ANY = '4';

constexpr U32 KIND_THUMB = 2;
constexpr U32 KIND_THUMB_WIDE = 3;
constexpr U32 KIND_ARM = 4;
constexpr U16 FIRST_WIDE_OPCODE = 0xE800;

constexpr U32 NO_VALUE = 0xFFFFFFFF;  // DataMask of an event that compares no value

bool IsIn(const sim::MEM_RANGE& Range, U32 Addr) {
  return Addr >= Range.Start && Addr - Range.Start < Range.Size;
}

}  // namespace

bool CGdbTarget::Insert(const STOP_POINT& Point, std::string* psReply) {
  return m_Server.Command(FormatText("Z%c,%x,%x", Point.Type, Point.Addr, Point.Kind), psReply);
}

bool CGdbTarget::Remove(const STOP_POINT& Point) {
  return m_Server.Command(FormatText("z%c,%x,%x", Point.Type, Point.Addr, Point.Kind));
}

bool CGdbTarget::IsFlash(U32 Addr) const {
  if (const GDB_MEMORY_REGION* pRegion = m_Server.MemoryMap().Find(Addr)) {
    return pRegion->Kind != GDB_MEMORY_REGION::KIND::RAM;
  }
  return IsIn(m_Device.Flash, Addr);
}

U32 CGdbTarget::InstructionKind(U32 Addr, U32 TypeFlags) {
  if ((TypeFlags & VNODE_BP_ISA_MASK) == VNODE_BP_ARM) return KIND_ARM;
  U8 aOpcode[2] = {};
  if (m_Memory.Read(Addr, sizeof(aOpcode), aOpcode, sizeof(aOpcode)) != sizeof(aOpcode)) return KIND_THUMB;
  const bool bSwapped = Endianness() & 2;
  const U32 Opcode = aOpcode[bSwapped ? 1 : 0] | aOpcode[bSwapped ? 0 : 1] << 8;
  return Opcode >= FIRST_WIDE_OPCODE ? KIND_THUMB_WIDE : KIND_THUMB;
}

// Comparators are scarce: RAM takes a software breakpoint first, flash only when no comparator is left.
U32 CGdbTarget::InstallBreakpoint(U32 Addr, U32 TypeFlags, bool bSoftEnabled, std::string* psError) {
  if (IsCortexM() && (TypeFlags & VNODE_BP_ISA_MASK) == VNODE_BP_ARM) {
    *psError = FormatText("Cannot set an ARM breakpoint @ 0x%08X: the core executes Thumb only", Addr);
    return 0;
  }
  CPause Pause(*this);
  const bool bFlash = IsFlash(Addr);
  const bool bSoft = bSoftEnabled && (TypeFlags & VNODE_BP_IMP_SW);
  const struct {
    bool bPermitted;
    char Type;
    U32 Implementation;
  } aChoices[] = {
      {bSoft && !bFlash, TYPE_SOFT, VNODE_BP_IS_SOFT_RAM},
      {(TypeFlags & VNODE_BP_IMP_HW) != 0, TYPE_HARD, VNODE_BP_IS_HARD},
      {bSoft && bFlash, TYPE_SOFT, VNODE_BP_IS_SOFT_FLASH},
  };
  STOP_POINT Point;
  Point.Addr = Addr;
  Point.Kind = Pause ? InstructionKind(Addr, TypeFlags) : 0;
  for (const auto& Choice : aChoices) {
    Point.Type = Choice.Type;
    if (!Pause || !Choice.bPermitted || !Insert(Point)) continue;
    m_Breakpoints[Addr] = Point;
    return Choice.Implementation;
  }
  *psError = FormatText("Cannot set a breakpoint @ 0x%08X: the GDB server refuses it", Addr);
  return 0;
}

void CGdbTarget::RemoveBreakpoint(U32 Addr, U32, U32) {
  const auto Found = m_Breakpoints.find(Addr);
  if (Found == m_Breakpoints.end()) return;
  if (IsAlive()) {
    CPause Pause(*this);
    if (!Pause || !Remove(Found->second)) {
      Fail(FormatText("The GDB server does not remove the breakpoint @ 0x%08X", Addr));
    }
  }
  m_Breakpoints.erase(Found);
}

// A server has one breakpoint at an address: the old one goes first, and comes back when there is no other.
U32 CGdbTarget::ReplaceBreakpoint(U32 Addr, U32 TypeFlags, U32 Implementation) {
  const auto Found = m_Breakpoints.find(Addr);
  CPause Pause(*this);
  if (!Pause || Found == m_Breakpoints.end()) return Implementation;
  const STOP_POINT Old = Found->second;
  if (!Remove(Old)) return Implementation;
  std::string sError;
  if (const U32 New = InstallBreakpoint(Addr, TypeFlags, true, &sError)) return New;
  if (Insert(Old)) return Implementation;
  m_Breakpoints.erase(Addr);
  Fail(FormatText("The breakpoint @ 0x%08X could not be set again", Addr));
  return 0;
}

// The protocol watches a range of addresses: it compares neither values nor, beyond the range, the width of an access.
int CGdbTarget::InstallDataEvent(const VNODEARM_DATA_EVENT& Event) {
  if (Event.DataMask != NO_VALUE) return VNODE_DATA_EVENT_NO_VALUE_MATCH;
  const U32 Size = Event.AddrMask + 1;
  if (Size == 0 || (Size & Event.AddrMask) != 0) return VNODE_DATA_EVENT_INVALID;  // not the low bits alone
  const DATA_EVENT_ACCESS Access = AccessOf(Event);
  STOP_POINT Point;
  Point.Type = !Access.bOnRead ? TYPE_WATCH_WRITE : !Access.bOnWrite ? TYPE_WATCH_READ : TYPE_WATCH_ANY;
  Point.Addr = Event.Addr & ~Event.AddrMask;
  Point.Kind = std::max(Size, Access.NumBytes);
  CPause Pause(*this);
  std::string sReply;
  if (!Pause) return VNODE_DATA_EVENT_INVALID;
  if (!Insert(Point, &sReply)) {
    if (!sReply.empty()) return VNODE_DATA_EVENT_NO_FREE_UNIT;
    Fail("The GDB server has no data breakpoints of this kind");
    return VNODE_DATA_EVENT_INVALID;
  }
  const auto Free = std::find_if(m_Watches.begin(), m_Watches.end(), [](const STOP_POINT& P) { return P.Type == 0; });
  const auto Unit = Free - m_Watches.begin();
  if (Free == m_Watches.end()) {
    m_Watches.push_back(Point);
  } else {
    *Free = Point;
  }
  return static_cast<int>(Unit);
}

void CGdbTarget::RemoveDataEvent(int Unit) {
  STOP_POINT& Point = m_Watches[static_cast<size_t>(Unit)];
  if (IsAlive()) {
    CPause Pause(*this);
    if (!Pause || !Remove(Point)) {
      Fail(FormatText("The GDB server does not remove the data breakpoint @ 0x%08X", Point.Addr));
    }
  }
  Point = {};
}
