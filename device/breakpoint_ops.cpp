#include "device/breakpoint_ops.h"

namespace {

constexpr U32 IMP_HARD = 1u << 0;
constexpr U32 IMP_SOFT_RAM = 1u << 1;
constexpr U32 IMP_SOFT_FLASH = 1u << 4;
constexpr int ALL_HANDLES = -1;

const QString SET_FAILED = QStringLiteral("SetBreakpoint: VNODE API call failed");

}  // namespace

U32 BreakpointTypeFlags(BP_TYPES Type, U32 InstSet) {
  const U32 Imp = Type == BP_TYPE_HARD ? VNODE_BP_IMP_HW : Type == BP_TYPE_SOFT ? VNODE_BP_IMP_SW : VNODE_BP_IMP_ANY;
  return Imp | InstSet;
}

const char* BreakpointImpText(U32 ImpFlags) {
  if (ImpFlags & IMP_HARD) return "Hard";
  if (ImpFlags & IMP_SOFT_RAM) return "Soft (RAM)";
  if (ImpFlags & IMP_SOFT_FLASH) return "Soft (Flash)";
  return "Pending";
}

bool CBreakpointOps::FindInLibrary(U32 Addr, VNODEARM_BP_INFO& Info) const {
  Info = {};
  Info.SizeOfStruct = sizeof(Info);
  const int Count = Ctx.Api.VNODEARM_GetBPInfoEx(-1, &Info);
  for (int i = 0; i < Count; ++i) {
    Info = {};
    Info.SizeOfStruct = sizeof(Info);
    Ctx.Api.VNODEARM_GetBPInfoEx(i, &Info);
    if (Info.Addr == Addr && Info.Handle != 0) return true;
  }
  return false;
}

int CBreakpointOps::SetInLibrary(U32 Addr, BP_TYPES Type) {
  return Ctx.Api.VNODEARM_SetBPEx(Addr, BreakpointTypeFlags(Type, Ctx.Program.InstSetAt(Addr))) == 0 ? -1 : 0;
}

int CBreakpointOps::ClearInLibrary(U32 Addr) {
  VNODEARM_BP_INFO Info;
  if (!Ctx.IsConnected() || !FindInLibrary(Addr, Info)) return 0;
  return Ctx.Api.VNODEARM_ClrBPEx(static_cast<int>(Info.Handle)) == 0 ? 0 : -1;
}

bool CBreakpointOps::GetImplementation(U32 Addr, U32& ImpFlags) const {
  if (!Ctx.IsConnected()) return false;
  std::lock_guard Lock(ImpMutex);
  const auto It = ImpFlagsAt.find(Addr);
  if (It == ImpFlagsAt.end()) return false;
  ImpFlags = It->second;
  return true;
}

void CBreakpointOps::NoteImplementations() {
  std::map<U32, U32> Found;
  VNODEARM_BP_INFO Info = {};
  Info.SizeOfStruct = sizeof(Info);
  const int Count = Ctx.IsConnected() ? Ctx.Api.VNODEARM_GetBPInfoEx(-1, &Info) : 0;
  for (int i = 0; i < Count; ++i) {
    Info = {};
    Info.SizeOfStruct = sizeof(Info);
    Ctx.Api.VNODEARM_GetBPInfoEx(i, &Info);
    if (Info.Handle != 0) Found[Info.Addr] = Info.ImpFlags;
  }
  std::lock_guard Lock(ImpMutex);
  ImpFlagsAt = std::move(Found);
}

int CBreakpointOps::SetBreakpoint(U32 Addr, BP_STATES State, BP_TYPES Type) {
  const int Result = SetOne(Addr, State, Type);
  NoteImplementations();
  return Result;
}

int CBreakpointOps::SetOne(U32 Addr, BP_STATES State, BP_TYPES Type) {
  if (State == BP_STATE_CLEARED) return ClearOne(Addr);
  if (State > BP_STATE_DISABLED) return -1;
  BP Entry;
  const bool bListed = Ctx.Breakpoints.GetAt(Addr, Entry);
  if (State != BP_STATE_HIDDEN && !bListed && Ctx.Breakpoints.BpListGetInsertPos() < 0) {
    Ctx.LogErrorMsg(QStringLiteral("breakpoint list full."));
    return -1;
  }
  if (Ctx.IsConnected()) {
    const int Result = SyncLibrary(Addr, State, Type, static_cast<BP_TYPES>(Entry.Type));
    if (Result < 0) return -1;
    if (Result > 0) State = BP_STATE_DISABLED;
  }
  if (State == BP_STATE_HIDDEN) {
    Ctx.State.HiddenBP.Addr = Addr;
    return 0;
  }
  return Ctx.Breakpoints.BpListInsert(Addr, State, Type) < 0 ? -1 : 0;
}

// Brings the library's side of an address to what is wanted. 1 when its former breakpoint is gone and no new one could
// be set.
int CBreakpointOps::SyncLibrary(U32 Addr, BP_STATES State, BP_TYPES Type, BP_TYPES OldType) {
  VNODEARM_BP_INFO Info;
  bool bInLibrary = FindInLibrary(Addr, Info);
  const bool bKeepForRun = State == BP_STATE_DISABLED && Ctx.State.HiddenBP.Addr == Addr;
  bool bCleared = false;
  if (bInLibrary && !bKeepForRun && (State == BP_STATE_DISABLED || Type != OldType)) {
    if (Ctx.Api.VNODEARM_ClrBPEx(static_cast<int>(Info.Handle)) != 0) {
      Ctx.LogErrorMsg(SET_FAILED);
      return -1;
    }
    bInLibrary = false;
    bCleared = true;
  }
  if (bInLibrary || State == BP_STATE_DISABLED || SetInLibrary(Addr, Type) == 0) return 0;
  Ctx.LogErrorMsg(SET_FAILED);
  return bCleared ? 1 : -1;
}

int CBreakpointOps::SetBreakpoints(U32 Cnt, const U32* paAddrs, BP_STATES State, BP_TYPES Type) {
  int NumSet = 0;
  for (U32 i = 0; i < Cnt; ++i) NumSet += SetOne(paAddrs[i], State, Type) == 0;
  NoteImplementations();
  return NumSet;
}

int CBreakpointOps::ClearBreakpoint(U32 Addr) {
  const int Result = ClearOne(Addr);
  NoteImplementations();
  return Result;
}

int CBreakpointOps::ClearOne(U32 Addr) {
  if (ClearInLibrary(Addr) < 0) {
    Ctx.LogErrorMsg(QStringLiteral("ClearBreakpoint: VNODE API call failed"));
    return -1;
  }
  Ctx.Breakpoints.RemoveAt(Addr);
  if (Ctx.State.HiddenBP.Addr == Addr) ForgetHiddenBreakpoint();
  return 0;
}

int CBreakpointOps::ClearBreakpoints(U32 Cnt, const U32* paAddrs) {
  int NumCleared = 0;
  for (U32 i = 0; i < Cnt; ++i) NumCleared += ClearOne(paAddrs[i]) == 0;
  NoteImplementations();
  return NumCleared;
}

int CBreakpointOps::ClearAllBreakpoints() {
  if (Ctx.IsConnected() && Ctx.Api.VNODEARM_ClrBPEx(ALL_HANDLES) != 0) {
    Ctx.LogErrorMsg(QStringLiteral("ClearAllBreakpoints: VNODE API call failed"));
    return -1;
  }
  Ctx.Breakpoints.Clear();
  ForgetHiddenBreakpoint();
  NoteImplementations();
  return 0;
}

int CBreakpointOps::ClearAllBreakpoints(BP_STATES State) {
  if (State == BP_STATE_HIDDEN && Ctx.State.HiddenBP.Addr != NO_REQUEST) {
    RemoveHiddenBreakpoint();
    return 1;
  }
  int NumCleared = 0;
  for (const BP& Entry : Ctx.Breakpoints.GetAll()) {
    if (Entry.State == State) NumCleared += ClearOne(Entry.Addr) == 0;
  }
  if (NumCleared > 0) NoteImplementations();
  return NumCleared;
}

int CBreakpointOps::ResetBreakpoints() {
  Ctx.Breakpoints.ResetHitCounts();
  return 0;
}

void CBreakpointOps::Reapply() {
  for (const BP& Entry : Ctx.Breakpoints.GetAll()) {
    SetOne(Entry.Addr, static_cast<BP_STATES>(Entry.State), static_cast<BP_TYPES>(Entry.Type));
  }
  NoteImplementations();
}

bool CBreakpointOps::GetBreakpoint(U32 Addr, BP& Entry) const {
  const bool bListed = Ctx.Breakpoints.GetAt(Addr, Entry);
  if (bListed && Entry.State != BP_STATE_DISABLED) return true;
  if (Ctx.State.HiddenBP.Addr == Addr) {
    Entry = BP();
    Entry.Addr = Addr;
    Entry.bUsed = true;
    Entry.State = BP_STATE_HIDDEN;
    return true;
  }
  return bListed;
}

BP_STATES CBreakpointOps::StateAt(U32 Addr) const {
  BP Entry;
  return GetBreakpoint(Addr, Entry) ? static_cast<BP_STATES>(Entry.State) : BP_STATE_CLEARED;
}

int CBreakpointOps::SetHiddenBreakpoint(U32 Addr, U32 PendingJob) {
  const int Result = SetHidden(Addr, PendingJob);
  NoteImplementations();
  return Result;
}

int CBreakpointOps::SetHidden(U32 Addr, U32 PendingJob) {
  if (Ctx.IsConnected()) {
    const auto Type = static_cast<BP_TYPES>(Ctx.Settings.BreakpointType.load());
    VNODEARM_BP_INFO Info;
    bool bInLibrary = FindInLibrary(Addr, Info);
    bool bCleared = false;
    if (bInLibrary && Info.Type != BreakpointTypeFlags(Type, Ctx.Program.InstSetAt(Addr))) {
      if (Ctx.Api.VNODEARM_ClrBPEx(static_cast<int>(Info.Handle)) != 0) return FailHidden(Addr);
      bInLibrary = false;
      bCleared = true;
    }
    if (!bInLibrary && SetInLibrary(Addr, Type) < 0) {
      if (!bCleared) return FailHidden(Addr);
      Ctx.LogErrorMsg(SET_FAILED);
      Ctx.Breakpoints.BpListInsert(Addr, BP_STATE_DISABLED, Type);
      return 1;
    }
  }
  Ctx.State.HiddenBP.Addr = Addr;
  Ctx.State.HiddenBP.PendingJob = PendingJob;
  return 0;
}

int CBreakpointOps::FailHidden(U32 Addr) {
  Ctx.LogErrorMsg(SET_FAILED);
  Ctx.LogErrorMsg(QString::asprintf("RunTo: could not set breakpoint on address %x", Addr));
  return -1;
}

void CBreakpointOps::RemoveHiddenBreakpoint() {
  const U64 Hidden = Ctx.State.HiddenBP.Addr;
  if (Hidden == NO_REQUEST) {
    ClearAllBreakpoints(BP_STATE_HIDDEN);
    return;
  }
  const U32 Addr = static_cast<U32>(Hidden);
  ForgetHiddenBreakpoint();
  BP Entry;
  if (Ctx.Breakpoints.GetAt(Addr, Entry) && Entry.State == BP_STATE_ENABLED) return;
  if (ClearInLibrary(Addr) < 0) Ctx.LogErrorMsg(QStringLiteral("ClearBreakpoint: VNODE API call failed"));
  NoteImplementations();
}

void CBreakpointOps::ForgetHiddenBreakpoint() {
  Ctx.State.HiddenBP.Addr = NO_REQUEST;
}
