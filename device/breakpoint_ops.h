#pragma once

#include <map>
#include <mutex>

#include "device/device_context.h"

// Type flags of VNODEARM_SetBPEx for a permitted implementation and an instruction set (VNODE_BP_ARM, VNODE_BP_THUMB).
U32 BreakpointTypeFlags(BP_TYPES Type, U32 InstSet);
// "Hard", "Soft (RAM)", "Soft (Flash)" or "Pending" from the implementation flags of VNODEARM_BP_INFO.
const char* BreakpointImpText(U32 ImpFlags);

// Sets and clears breakpoints, in the list always and in the probe library when connected. Device thread unless said
// otherwise. Results are 0 or -1 unless said otherwise; failures of the library are logged as errors.
class CBreakpointOps {
public:
  explicit CBreakpointOps(CDeviceContext& Ctx) : Ctx(Ctx) {}

  int SetBreakpoint(U32 Addr, BP_STATES State, BP_TYPES Type);
  // Goes on after a failure; the number that worked.
  int SetBreakpoints(U32 Cnt, const U32* paAddrs, BP_STATES State, BP_TYPES Type);
  int ClearBreakpoint(U32 Addr);
  int ClearBreakpoints(U32 Cnt, const U32* paAddrs);
  int ClearAllBreakpoints();
  // Clears all of one state; the number cleared.
  int ClearAllBreakpoints(BP_STATES State);
  // Zeroes the hit counts.
  int ResetBreakpoints();
  // Sets every entry of the list again, after a connect.
  void Reapply();

  // The breakpoint that counts at an address: an entry that is not disabled, else the hidden breakpoint (state
  // BP_STATE_HIDDEN), else a disabled entry. False when there is none. Any thread.
  bool GetBreakpoint(U32 Addr, BP& Entry) const;
  BP_STATES StateAt(U32 Addr) const;

  // Makes the target stop at Addr for a run-to or a step (PendingJob, JOB_TYPES). 0; 1 when a breakpoint was lost on
  // the way and the address is listed as disabled instead; -1 when none could be set.
  int SetHiddenBreakpoint(U32 Addr, U32 PendingJob);
  // Removes the hidden breakpoint, in the library only unless the user has one enabled there. A disabled entry at the
  // same address stays as it is.
  void RemoveHiddenBreakpoint();
  // Forgets it without touching the library.
  void ForgetHiddenBreakpoint();

  // What implementation the library had chosen for an address after the last change; false when it has no breakpoint
  // there. Any thread: the library isn't asked.
  bool GetImplementation(U32 Addr, U32& ImpFlags) const;

private:
  bool FindInLibrary(U32 Addr, VNODEARM_BP_INFO& Info) const;
  int SetInLibrary(U32 Addr, BP_TYPES Type);
  int ClearInLibrary(U32 Addr);
  int SyncLibrary(U32 Addr, BP_STATES State, BP_TYPES Type, BP_TYPES OldType);
  int SetHidden(U32 Addr, U32 PendingJob);
  int FailHidden(U32 Addr);
  int SetOne(U32 Addr, BP_STATES State, BP_TYPES Type);
  int ClearOne(U32 Addr);
  // A breakpoint that is set or cleared may change what others have.
  void NoteImplementations();

  CDeviceContext& Ctx;
  mutable std::mutex ImpMutex;
  std::map<U32, U32> ImpFlagsAt;
};
