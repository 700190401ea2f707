#pragma once
// The enumerations and plain records of the device layer, and the state of the target that both threads see. Plain C++
// without Qt.

#include <atomic>

#include "base/types.h"

enum CONNECT_MODES : U32 {
  CM_DOWNLOAD_RESET = 0,
  CM_ATTACH = 1,
  CM_ATTACH_HALT = 2,
  CM_BARE = 3,  // the connection alone, without the steps that complete it
};

enum RESET_MODES : U32 {
  RM_RESET_HALT = 0,
  RM_BREAK_AT_SYMBOL = 1,
  RM_RESET_AND_RUN = 2,
  RM_BEFORE_DOWNLOAD = 3,  // its done event makes the session controller start the download
  RM_HARDWARE_ONLY = 4,    // the reset of the hardware alone
  RM_STATE_CHANGED = 5,    // no reset: only reports a changed execution state
};

enum RESUME_MODES : U32 { GO_USER = 0, GO_RUN_TO = 1 };

enum HALT_REASONS : U32 {
  HR_GENERAL = 0,        // any halt that is not at a user breakpoint
  HR_STATE_CHANGED = 1,  // no real halt: the PC or the registers changed
  HR_BREAKPOINT = 2,     // user breakpoint
  HR_RUN_TO = 3,         // a run-to has arrived
};

enum BP_STATES : U32 { BP_STATE_CLEARED = 0, BP_STATE_ENABLED = 1, BP_STATE_HIDDEN = 2, BP_STATE_DISABLED = 3 };

// Implementation that a breakpoint may get.
enum BP_TYPES : U32 { BP_TYPE_ANY = 0, BP_TYPE_HARD = 1, BP_TYPE_SOFT = 2 };

// Identifiers of configuration values: numbers below 16, texts above.
enum DEV_CONFIG_PARAMS : I32 {
  DCP_DEVICE_INDEX = 0,        // index in the library's device list, -1 none
  DCP_CORE_INDEX = 1,          // core on the scan chain or in the device
  DCP_USB_SERIAL_NO = 2,       // serial number of the wanted probe
  DCP_USE_SERIAL_NO = 3,       // select the probe by serial number
  DCP_CONNECT_MODE = 4,        // HOST_IFS
  DCP_TARGET_IF = 5,           // VNODE_TARGET_IFS
  DCP_SPEED = 6,               // in Hz; 0 maximum, 65535 adaptive
  DCP_USE_MAX_SPEED = 7,       // speed is automatic
  DCP_USE_ADAPTIVE = 8,        // adaptive clocking
  DCP_ENDIAN = 9,              // ENDIAN
  DCP_DR_PRE = 10,             // JTAG data bits ahead of the device
  DCP_IR_PRE = 11,             // JTAG instruction bits ahead of the device
  DCP_MULTIPLE_TARGETS = 12,   // more than one device on the chain
  DCP_STEPPING_MODE = 13,      // kept for the session controller
  DCP_BREAK_SYMBOL_ADDR = 14,  // address of the program's start symbol, -1 none
  DCP_RTT_ADDR = 15,           // RTT control block, -1 search
  NUM_CONFIG_VALUES = 16,
  DCP_HOST_NAME = 17,
  DCP_DEVICE_NAME = 18,  // setting it resolves the device index
  DCP_SCRIPT_FILE = 19,
  DCP_LOG_FILE = 20,
  DCP_LAST = 20,
};

enum HOST_IFS : U32 { HOST_IF_USB = 1, HOST_IF_IP = 2 };
enum ENDIAN : U32 { ENDIAN_LITTLE = 0, ENDIAN_BIG = 1 };

// Failure domains that keep their latest text.
enum DEVICE_ERR_MSGS : U32 { ERR_MSG_SWO = 0, ERR_MSG_TRACE = 1, ERR_MSG_STREAMING_TRACE = 2, NUM_ERR_MSGS = 3 };

// What probe and target can do together; the numbers are those of OnDeviceHWCapabilityChanged.
enum HW_CAPABILITIES : U32 {
  HW_CAP_BMA = 0,  // background memory access
  HW_CAP_SWO = 1,
  HW_CAP_STREAMING_TRACE = 2,
  HW_CAP_TRACE_PINS = 3,
  HW_CAP_TRACE_BUFFER = 4,
  HW_CAP_TRACE_SWO = 5,
  NUM_HW_CAPS = 6,
};

// Flags of a memory access.
enum MEM_FLAGS : U32 {
  MEM_FLAG_HW = 2,         // read through the probe's hardware access
  MEM_FLAG_NO_CACHE = 4,   // data provider only: fetch anew
  MEM_FLAG_ITEM_WISE = 8,  // a chunk that comes back short goes on item by item
  MEM_FLAG_HALT = 16,      // halt a running target for the access, resume it afterwards
  MEM_FLAG_DOWNLOAD = 32,  // the probe decides how the address is written, flash included
};

// Status of one byte or register of the target.
enum MEM_STATUS : U8 { MEM_VALID = 0, MEM_UNAVAILABLE = 1, MEM_PENDING = 2, MEM_STALE = 3 };

enum ACCESS_TYPES : U32 { AT_READ_ONLY = 0, AT_WRITE_ONLY = 1, AT_READ_WRITE = 2, AT_NO_ACCESS = 3 };
enum ACCESS_WIDTHS : U32 { AW_AUTO = 0, AW_BYTE = 1, AW_HALF_WORD = 2, AW_WORD = 4 };

// A data breakpoint; an all-zero record is a free slot.
struct WP {
  U32 Addr = 0;
  U32 AddrMask = 0;  // bits set are ignored in the comparison
  U32 Data = 0;
  U32 DataMask = 0;    // bits set are ignored in the comparison
  I32 Error = 0;       // last error of the probe library, 0 none
  U32 bUsed = 0;       // 1 in an occupied list slot
  U32 State = 0;       // BP_STATES
  U32 AccessType = 0;  // ACCESS_TYPES
  U32 AccessSize = 0;  // ACCESS_WIDTHS

  // State, bUsed and Error do not count.
  bool IsSame(const WP& Other) const {
    return Addr == Other.Addr && AddrMask == Other.AddrMask && Data == Other.Data && DataMask == Other.DataMask &&
           AccessType == Other.AccessType && AccessSize == Other.AccessSize;
  }
};

// One breakpoint at an address; an all-zero record is a free slot.
struct BP {
  U32 Addr = 0;
  U64 HitCount = 0;           // halts here since the counters were last reset
  bool bConditional = false;  // a halt goes through the main thread's evaluation
  bool bUsed = false;
  U32 State = BP_STATE_CLEARED;  // BP_STATES
  U32 Type = BP_TYPE_ANY;        // BP_TYPES
};

inline constexpr U64 NO_REQUEST = ~0ull;         // pending modes and HiddenBPAddr: none
inline constexpr U32 UNKNOWN_LOC = 0xFFFFFFFFu;  // source location and function range: unknown

// Written by the device thread unless said otherwise, read by any thread.
struct DEVICE_CONNECTION {
  std::atomic<bool> bConnected{false};
  std::atomic<bool> bConnectionLost{false};  // left by Disconnect only
};

struct DEVICE_EXEC_FLAGS {
  std::atomic<bool> bHalted{false};          // last known halt state
  std::atomic<bool> bAccessible{false};      // the halt sequence is finished: registers and memory may be cached
  std::atomic<bool> bRunning{false};         // the device watches for a halt
  std::atomic<bool> bHaltPending{false};     // a halt sequence is in progress, maybe on the main thread
  std::atomic<bool> bVerdictPending{false};  // the main thread owes the verdict on a breakpoint condition
  std::atomic<bool> bUserHalt{false};        // a JT_HALT job halted the running target
  std::atomic<bool> bSessionReady{false};    // the session has passed its start: halts are reported
  std::atomic<bool> bStartupDone{false};     // the target has passed a reset as far as the reset mode asks
  std::atomic<bool> bStepping{false};        // a source step is in progress
  std::atomic<bool> bTargetRan{false};       // the target executed since the last trace read, which clears it
  std::atomic<bool> bTraceEnabled{false};    // instruction trace is enabled; survives a disconnect
};

// The device's picture of the halted target.
struct TARGET_EXEC_STATE {
  std::atomic<U64> PC{0};
  std::atomic<U64> SP{0};
  std::atomic<U64> ReturnAddr{0};  // of the innermost frame; also stored by the stack unwinder
  std::atomic<U8> PCStatus{MEM_STALE};
  std::atomic<U8> SPStatus{MEM_STALE};
  std::atomic<U8> ReturnAddrStatus{MEM_STALE};
  std::atomic<U32> SrcFile{UNKNOWN_LOC};
  std::atomic<U32> SrcLine{UNKNOWN_LOC};
  std::atomic<U32> FuncStart{UNKNOWN_LOC};
  std::atomic<U32> FuncEnd{UNKNOWN_LOC};
  std::atomic<U64> Func{0};  // ELF_SYM_HANDLE, 0 none
};

// Requests of the main thread that the device thread completes between jobs.
struct DEVICE_REQUESTS {
  std::atomic<U64> PendingConnectMode{NO_REQUEST};
  std::atomic<U64> PendingResetMode{NO_REQUEST};
  std::atomic<bool> bInitRegsPending{false};
  std::atomic<bool> bHandling{false};  // taken, and not yet reported
};

// The hidden breakpoint of a run-to or source step. Device thread, or whoever holds bHaltPending.
struct HIDDEN_BP {
  std::atomic<U64> Addr{NO_REQUEST};
  std::atomic<U32> PendingJob{0};  // JOB_TYPES for which the target runs
};

struct DEVICE_STATE {
  DEVICE_CONNECTION Connection;
  DEVICE_EXEC_FLAGS Exec;
  TARGET_EXEC_STATE Target;
  DEVICE_REQUESTS Requests;
  HIDDEN_BP HiddenBP;
  std::atomic<U32> ResetMode{RM_RESET_HALT};  // of the last reset
  std::atomic<I32> LastDownloadResult{0};     // of the last VNODEARM_EndDownload
  std::atomic<U64> LastHaltPoll{0};           // ms, time of the last halt query
  std::atomic<bool> aCapability[NUM_HW_CAPS] = {true, true, true, true, true, true};
  std::atomic<U32> TIFSpeed{0};   // in Hz; 0 automatic, 65535 adaptive
  std::atomic<U32> CoreSpeed{0};  // in Hz, as last measured on this connection; 0 not yet
  std::atomic<U32> InstEndian{ENDIAN_LITTLE};
  std::atomic<U32> DataEndian{ENDIAN_LITTLE};
  std::atomic<bool> bTerminate{false};  // the device thread is to end: long operations give up
};

// System variables that the device thread reads; their owner writes them from the main thread.
struct DEVICE_SETTINGS {
  std::atomic<U32> BreakpointType{BP_TYPE_ANY};  // VAR_BREAKPOINT_TYPE
  std::atomic<U32> AccessWidth{AW_AUTO};         // VAR_ACCESS_WIDTH
  std::atomic<bool> bSemihosting{false};         // VAR_SEMIHOSTING_ENABLED; false: requests are discarded
  std::atomic<bool> bRTT{false};                 // VAR_RTT_ENABLED
  std::atomic<U32> TraceSource{0};               // VAR_TRACE_SOURCE
  std::atomic<U32> TracePortWidth{4};            // VAR_TRACE_PORT_WIDTH, in bits
};
