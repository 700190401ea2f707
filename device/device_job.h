#pragma once
// The fixed-size record in which work travels to the device thread and its result back, and the table of job types.
// Plain C++ without Qt.

#include <cstdlib>

#include "base/types.h"

enum JOB_TYPES : U32 {
  JT_NONE = 0,  // marks a free slot
  JT_CONNECT = 1,
  JT_DISCONNECT = 2,
  JT_RESET = 3,
  JT_HALT = 4,
  JT_CONTINUE = 5,
  JT_STEP_INST = 6,
  JT_STEP_INTO = 7,
  JT_STEP_OVER = 8,
  JT_STEP_OUT = 9,
  JT_STEP = 10,  // selector only: JT_STEP_INST to JT_STEP_OUT
  JT_RUN_TO = 11,
  JT_EXEC_VNODE_CMD = 12,
  JT_EDIT_BP = 13,
  JT_SET_BP = 14,
  JT_SET_BPS = 15,
  JT_CLEAR_BP = 16,
  JT_CLEAR_BPS = 17,
  JT_CLEAR_ALL_BPS = 18,
  JT_RESET_BPS = 19,
  JT_SET_WPS = 20,
  JT_CLEAR_WPS = 21,
  JT_CLEAR_ALL_WPS = 22,
  JT_READ_REG = 23,
  JT_WRITE_REG = 24,
  JT_READ_CP_REG = 25,
  JT_WRITE_CP_REG = 26,
  JT_READ_REGS = 27,
  JT_END_DOWNLOAD = 28,
  JT_READ_MEM = 29,
  JT_WRITE_MEM = 30,
  JT_WRITE_MEM_MULTIPLE = 31,
  JT_READ_BYTE = 32,
  JT_WRITE_BYTE = 33,
  JT_RESET_TARGET_EXEC_STATE = 34,
  JT_SET_TARGET_EXEC_STATE = 35,
  JT_READ_LOCATION = 36,
  JT_READ_LOCS = 37,
  JT_WRITE_LOCATION = 38,
  JT_SET_SH_INPUT_TEXT = 39,
  JT_ENABLE_SIMPLE_TRACE = 40,
  JT_DISABLE_SIMPLE_TRACE = 41,
  JT_START_SIMPLE_TRACE = 42,
  JT_STOP_SIMPLE_TRACE = 43,
  JT_READ_SIMPLE_TRACE = 44,
  JT_READ_INST_STATS = 45,
  JT_FLUSH_STRACE_BUFFER = 46,
  JT_START_SWO_TRACE = 47,
  JT_STOP_SWO_TRACE = 48,
  JT_READ_SWO_TRACE = 49,
  JT_SWO_GET_COMPAT_SPEEDS = 50,
  JT_START_RTT = 51,
  JT_STOP_RTT = 52,
  JT_FLUSH_RTT = 53,
  JT_READ_RTT = 54,
  JT_WRITE_RTT = 55,
  JT_START_HSS = 56,
  JT_STOP_HSS = 57,
  JT_READ_HSS = 58,
  JT_CONFIGURE = 59,
  JT_SET_CONFIG_PARAM = 60,
  JT_GET_DEVICE_INFO = 61,
  JT_MEASURE_CORE_SPEED = 62,
  JT_ANY = 63,   // selector only: every type
  JT_LAST = 64,  // upper bound
};

// The rings and, for the operations that select jobs, the two collective names.
enum JOB_QUEUES : U32 {
  JQ_CONTROL = 0,
  JQ_READ = 1,
  JQ_BACKGROUND = 2,
  NUM_JOB_QUEUES = 3,
  JQ_OF_TYPE = 3,  // the ring of the given job type
  JQ_ALL = 4,
  JQ_NOTIFICATION = 5,  // Queue value of a job that the device thread originated; no ring
};

enum JOB_STATUS : U32 { JS_DONE = 0, JS_FAILED = 1, JS_DROPPED = 2 };

inline constexpr U32 JF_PENDING = 1;  // scheduled, not yet finished
inline constexpr U32 JF_NOT_CANCELLABLE = 2;

inline constexpr U32 NUM_JOB_PARAMS = 6;
inline constexpr U32 NUM_JOB_DYN_PARAMS = 3;
inline constexpr U32 MAX_DYN_PARAM_BYTES = 1000000000;

// One job. Copied by value into its ring slot, which then owns the dynamic parameters; Type and Flags of a slot are
// accessed atomically (see CJobRings). What the fields hold per type is the table in device_job.cpp.
struct DEVICE_JOB {
  U32 Type = JT_NONE;
  U32 Queue = 0;  // JOB_QUEUES, filled in when scheduled
  U64 ID = 0;     // serial number, filled in when scheduled
  U32 Status = JS_DONE;
  U32 Flags = 0;  // JF_*
  U64 Result = 0;
  U64 Result2 = 0;
  U64 Result3 = 0;
  U64 Param[NUM_JOB_PARAMS] = {};
  void* pDyn[NUM_JOB_DYN_PARAMS] = {};   // heap blocks of malloc, owned by the job
  U32 DynSize[NUM_JOB_DYN_PARAMS] = {};  // size of each block in bytes, with the one spare byte

  template <typename T>
  T* Dyn(U32 Index) const {
    return static_cast<T*>(pDyn[Index]);
  }
  const char* DynText(U32 Index) const { return static_cast<const char*>(pDyn[Index]); }
};

// How many jobs have gone in, and what became of them. With nothing on its way Executed + Cancelled is Scheduled, and
// Released is Scheduled + Posted.
struct JOB_COUNTS {
  U64 Scheduled = 0;
  U64 Executed = 0;
  U64 Cancelled = 0;  // before they began
  U64 Posted = 0;     // notifications
  U64 Released = 0;
};

// What a job type is: its name, the ring it goes to, how long a synchronous wait for it lasts by default, and whether
// it can exist without its first dynamic parameter.
struct JOB_TYPE_INFO {
  const char* sName;
  U32 Queue;      // JOB_QUEUES
  I32 TimeoutMS;  // default time-out of WaitForJob
  bool bNeedsDyn;
};

// Information of a type; the one named "Unknown" for a number without a row.
const JOB_TYPE_INFO& JobTypeInfo(U32 Type);
// The type's name as messages write it.
inline const char* JobTypeName(U32 Type) {
  return JobTypeInfo(Type).sName;
}
// Whether Type is one of the four step jobs.
inline bool IsStepJob(U32 Type) {
  return Type >= JT_STEP_INST && Type <= JT_STEP_OUT;
}
// Whether a job of type Type is meant by Selector: the type itself, JT_STEP or JT_ANY.
bool JobTypeMatches(U32 Type, U32 Selector);

enum DYN_PARAM_RESULT { DYN_OK, DYN_ALREADY_TAKEN, DYN_BAD_SIZE };

// Gives the job a zero-filled block of NumBytes + 1 bytes as dynamic parameter Index. A parameter that is already
// there stays as it is (DYN_ALREADY_TAKEN); a size of 0, above MAX_DYN_PARAM_BYTES or beyond the host's memory leaves
// it null (DYN_BAD_SIZE).
DYN_PARAM_RESULT AllocDynParam(DEVICE_JOB& Job, U32 Index, U64 NumBytes);
// Frees all dynamic parameters of the record and nulls them.
void FreeDynParams(DEVICE_JOB& Job);
