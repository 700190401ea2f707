#pragma once

#include <string>
#include <vector>

#include "device/probe_api/records.h"

struct PROBE_CONFIG;

// Values of CTarget::GetDebugInfo.
enum VNODE_DEBUG_INFOS : U32 { VNODE_DEBUG_INFO_HAS_SECURITY_EXT = 271 };

// What a connected target can do beyond run control. A missing capability is reported to the caller of the library,
// never faked.
struct TARGET_CAPS {
  bool bBackgroundAccess = false;  // memory can be read and written while the core runs, without stopping it
  bool bBackgroundRead = false;    // it can be read so; written only while the core is halted
  bool bSwo = false;               // CTarget::Swo is there
  bool bInstTrace = false;         // CTarget::InstTrace is there
};

// What a target tells of itself beyond run control, for the control page.
struct TARGET_STATUS {
  struct COUNTER {
    std::string sName;
    U64 Value = 0;
  };
  struct REGISTER {
    std::string sName;
    U32 Value = 0;
  };
  std::string sKind;      // "Simulated board"
  std::string sRunState;  // where the target knows more than halted and running: "asleep", "lockup"
  std::vector<COUNTER> Counters;
  std::vector<REGISTER> Registers;    // of a halted core
  std::vector<std::string> Channels;  // that are open: "SWO, ports 0x00000001"
};

// Stimulus ports as an SWO probe receives them. All operations: negative on failure.
class CSwoPort {
public:
  virtual ~CSwoPort() = default;
  virtual int Enable(U32 CPUHz, U32 SWOHz, U32 PortMask) = 0;
  virtual int Disable(U32 PortMask) = 0;
  virtual int NumBytesPending() = 0;
  // Drops what was received and not read.
  virtual int Discard() = 0;
  // Number of bytes moved into paData.
  virtual int ReadStimulus(int Port, U8* paData, U32 NumBytes) = 0;
};

// The trace memory: what the core has executed. All operations: negative on failure.
class CInstTrace {
public:
  virtual ~CInstTrace() = default;
  virtual int Configure(const std::string& sConfig) = 0;
  virtual int Start() = 0;
  virtual int Stop() = 0;
  // Addresses of executed instructions, newest first; the number of them.
  virtual int Read(U32* paAddr, U32 NumItems) = 0;
  // Per halfword from Addr on: NumItems / 2 - 1 fetch counters and the total of the whole trace, then as many skip
  // counters and their total. The number of items.
  virtual int GetInstStats(U64* paItems, U32 Addr, U32 NumItems) = 0;
};

// Reads blocks of memory at a fixed period while the core runs.
class CHssSampler {
public:
  virtual ~CHssSampler() = default;
  // 0 or VNODE_HSS_ERRORS. A period of 0 is as short as possible. Replaces what was started before.
  virtual int Start(const VNODE_HSS_BLOCK* paBlocks, U32 NumBlocks, U32 PeriodUs) = 0;
  // Negative when nothing was started.
  virtual int Stop() = 0;
  // Whole samples: the time in microseconds since the start as U32, then the blocks' bytes. The number of bytes.
  virtual int Read(void* pData, U32 NumBytes) = 0;
};

// A target behind the library's functions: the simulated board, or what a GDB server serves. Used by one thread at a
// time, under the session's lock. Operations give 0 on success and -1 on failure unless stated otherwise, and have put
// the reason into the session's messages then.
class CTarget {
public:
  virtual ~CTarget() = default;

  virtual TARGET_CAPS Caps() const = 0;
  // False when the other side is gone for good; the session counts the connection as lost then.
  virtual bool IsAlive() = 0;
  // Bit 1 instructions, bit 0 data big endian; negative when unknown.
  virtual int Endianness() = 0;
  virtual TARGET_STATUS Status() { return {}; }
  // The session is closed: the target is left in the state that it is in.
  virtual void Release() = 0;

  virtual int Halt() = 0;
  virtual int IsHalted() = 0;  // 1 halted, 0 running, negative: no connection
  // Runs on; with bSkipFirst a breakpoint at the present PC does not stop.
  virtual int Go(bool bSkipFirst) = 0;
  virtual int Step() = 0;
  // Resets and, with bHalt, leaves the core halted at its first instruction.
  virtual int Reset(bool bHalt, const PROBE_CONFIG& Config) = 0;

  // Indices as the probe numbers them for the core's family. paStatus, where given, gets 0 or 1 (not available) each.
  virtual int ReadRegs(const U32* paIndex, U32* paValue, U8* paStatus, U32 Count) = 0;
  virtual int WriteReg(U32 Index, U32 Value) = 0;
  virtual int ReadCP15(U8 CRn, U8 CRm, U8 Op1, U8 Op2, U32* pValue) = 0;
  virtual int WriteCP15(U8 CRn, U8 CRm, U8 Op1, U8 Op2, U32 Value) = 0;
  virtual int GetDebugInfo(U32 Index, U32* pValue) = 0;

  // Number of bytes before the first one that does not answer; negative when the target cannot be reached or, on a
  // target without background access, runs. AccessWidth 1, 2, 4, or 0 for words.
  virtual int ReadMem(U32 Addr, U32 NumBytes, void* pData, U32 AccessWidth) = 0;
  virtual int WriteMem(U32 Addr, U32 NumBytes, const void* pData, U32 AccessWidth) = 0;
  // Between these two, writes into flash are collected; the second one programs them. VNODE_DOWNLOAD_RESULTS.
  virtual void BeginDownload() = 0;
  virtual int EndDownload() = 0;
  // Closes a download without programming; Result is what EndDownload gives from now on.
  virtual void AbandonDownload(int Result) = 0;
  virtual int MeasureCPUSpeed(U32 RAMAddr) = 0;  // Hz, 0 or negative: failure

  // The implementation that was chosen, VNODE_BP_IS_...; 0 when there is none, with the reason in *psError.
  virtual U32 InstallBreakpoint(U32 Addr, U32 TypeFlags, bool bSoftEnabled, std::string* psError) = 0;
  virtual void RemoveBreakpoint(U32 Addr, U32 TypeFlags, U32 Implementation) = 0;
  // Gives an installed breakpoint another implementation, one that TypeFlags permit; the core does not run past it
  // meanwhile. The implementation that it has then: the old one when there is no other, 0 when it is lost.
  virtual U32 ReplaceBreakpoint(U32 Addr, U32 TypeFlags, U32 Implementation) = 0;
  // What RemoveDataEvent takes, 0 or above, or one of VNODE_DATA_EVENT_ERRORS.
  virtual int InstallDataEvent(const VNODEARM_DATA_EVENT& Event) = 0;
  virtual void RemoveDataEvent(int Unit) = 0;

  // Null when the target has none; owned by the target.
  virtual CSwoPort* Swo() { return nullptr; }
  virtual CInstTrace* InstTrace() { return nullptr; }
  virtual CHssSampler* HssSampler() { return nullptr; }
};
