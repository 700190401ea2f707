#include "device/device_job.h"

#include <iterator>

namespace {

constexpr JOB_TYPE_INFO UNKNOWN_JOB = {"Unknown", JQ_READ, 5000, false};

// Arguments and results by type: P0... are Param[], D0... pDyn[], R Result, R2 Result2, R3 Result3.
constexpr JOB_TYPE_INFO JOB_TYPE_TABLE[] = {
    {"Unknown", JQ_BACKGROUND, 5000, false},
    {"JT_CONNECT", JQ_CONTROL, 120000, false},                // P0 CONNECT_MODES, or 3 for a bare connect
    {"JT_DISCONNECT", JQ_CONTROL, 5000, false},               //
    {"JT_RESET", JQ_CONTROL, 60000, false},                   // P0 RESET_MODES; R PC
    {"JT_HALT", JQ_CONTROL, 5000, false},                     // as notification: P0 HALT_REASONS, R PC
    {"JT_CONTINUE", JQ_CONTROL, 5000, false},                 // P0 RESUME_MODES
    {"JT_STEP_INST", JQ_CONTROL, 5000, false},                // R PC
    {"JT_STEP_INTO", JQ_CONTROL, 5000, false},                // R PC
    {"JT_STEP_OVER", JQ_CONTROL, 5000, false},                // R PC
    {"JT_STEP_OUT", JQ_CONTROL, 5000, false},                 // R PC
    {"JT_STEP", JQ_READ, 5000, false},                        // selector
    {"JT_RUN_TO", JQ_CONTROL, 5000, false},                   // P0 address
    {"JT_EXEC_VNODE_CMD", JQ_CONTROL, 60000, true},           // D0 command, D1 reply of 512 bytes; R return value
    {"JT_EDIT_BP", JQ_CONTROL, 5000, false},                  // tells the listeners, see ScheduleEditBreakpoint
    {"JT_SET_BP", JQ_CONTROL, 5000, false},                   // P0 address, P1 BP_STATES, P2 BP_TYPES
    {"JT_SET_BPS", JQ_CONTROL, 5000, true},                   // P0 count, P1 state, P2 type, D0 addresses; R number set
    {"JT_CLEAR_BP", JQ_CONTROL, 5000, false},                 // P0 address
    {"JT_CLEAR_BPS", JQ_CONTROL, 5000, true},                 // P0 count, D0 addresses; R number cleared
    {"JT_CLEAR_ALL_BPS", JQ_CONTROL, 5000, false},            //
    {"JT_RESET_BPS", JQ_CONTROL, 5000, false},                //
    {"JT_SET_WPS", JQ_CONTROL, 5000, true},                   // P0 count, D0 WP records; R number set
    {"JT_CLEAR_WPS", JQ_CONTROL, 5000, true},                 // P0 count, D0 WP records; R number cleared
    {"JT_CLEAR_ALL_WPS", JQ_CONTROL, 5000, false},            //
    {"JT_READ_REG", JQ_READ, 5000, false},                    // P0 register; R value
    {"JT_WRITE_REG", JQ_CONTROL, 5000, false},                // P0 register, P1 value
    {"JT_READ_CP_REG", JQ_READ, 5000, true},                  // D0 identifier; R value
    {"JT_WRITE_CP_REG", JQ_CONTROL, 5000, true},              // P0 value, D0 identifier
    {"JT_READ_REGS", JQ_READ, 5000, true},                    // P0 count, D0 registers, D1 U64 values, D2 U8 status
    {"JT_END_DOWNLOAD", JQ_CONTROL, 120000, false},           // P0 halt first, D0 file name; R return value
    {"JT_READ_MEM", JQ_READ, 10000, false},                   // P0 address, P1 bytes, P2 chunk size, P3 access width,
                                                              // P4 flags, D0 data, D1 status
    {"JT_WRITE_MEM", JQ_CONTROL, 120000, true},               // P0 to P4 as above, D0 data
    {"JT_WRITE_MEM_MULTIPLE", JQ_CONTROL, 5000, true},        // P0 range count, P1 to P4 as above, D0 ranges, D1 data
    {"JT_READ_BYTE", JQ_CONTROL, 5000, false},                // no handler
    {"JT_WRITE_BYTE", JQ_CONTROL, 5000, false},               // no handler
    {"JT_RESET_TARGET_EXEC_STATE", JQ_CONTROL, 5000, false},  //
    {"JT_SET_TARGET_EXEC_STATE", JQ_CONTROL, 5000, false},    // P0 PC, P1 SP
    {"JT_READ_LOCATION", JQ_READ, 5000, true},                // P0 bytes, D0 ELF_SYM_LOC; R value
    {"JT_READ_LOCS", JQ_READ, 5000, true},                  // P0 count, P1 tag, D0 ELF_SYM_LOC records, D1 U64 values,
                                                            // D2 U8 status
    {"JT_WRITE_LOCATION", JQ_CONTROL, 5000, true},          // P0 bytes, D0 ELF_SYM_LOC, D1 data
    {"JT_SET_SH_INPUT_TEXT", JQ_READ, 5000, true},          // P0 length, D0 text
    {"JT_ENABLE_SIMPLE_TRACE", JQ_CONTROL, 5000, false},    //
    {"JT_DISABLE_SIMPLE_TRACE", JQ_CONTROL, 5000, false},   //
    {"JT_START_SIMPLE_TRACE", JQ_CONTROL, 5000, false},     // R return value
    {"JT_STOP_SIMPLE_TRACE", JQ_CONTROL, 5000, false},      // R return value
    {"JT_READ_SIMPLE_TRACE", JQ_READ, 5000, true},          // P0 maximum, D0 buffer; R count, R2 fewer than requested,
                                                            // R3 target ran since the last read
    {"JT_READ_INST_STATS", JQ_READ, 5000, true},            // P0 range count, P1 items, D0 ranges, D1 fetch counts,
                                                            // D2 skip counts; R count, R2 and R3 total fetch and skip
    {"JT_FLUSH_STRACE_BUFFER", JQ_CONTROL, 5000, false},    //
    {"JT_START_SWO_TRACE", JQ_CONTROL, 10000, false},       // P0 CPU Hz, P1 SWO Hz, P2 port mask
    {"JT_STOP_SWO_TRACE", JQ_CONTROL, 10000, false},        // P0 port mask
    {"JT_READ_SWO_TRACE", JQ_READ, 5000, true},             // P0 port, P1 bytes, D0 buffer; R count
    {"JT_SWO_GET_COMPAT_SPEEDS", JQ_CONTROL, 5000, true},   // P0 CPU Hz, P1 items, D0 buffer
    {"JT_START_RTT", JQ_CONTROL, 10000, false},             //
    {"JT_STOP_RTT", JQ_CONTROL, 10000, false},              //
    {"JT_FLUSH_RTT", JQ_READ, 10000, false},                // no handler
    {"JT_READ_RTT", JQ_READ, 5000, true},                   // P0 buffer, P1 bytes, D0 buffer; R count
    {"JT_WRITE_RTT", JQ_READ, 5000, false},                 // P0 buffer, P1 bytes, D0 data; R 0 or -1, R2 count
    {"JT_START_HSS", JQ_CONTROL, 10000, false},             // P0 range count, P1 interval in us, P2 flags, D0 ranges
    {"JT_STOP_HSS", JQ_CONTROL, 10000, false},              //
    {"JT_READ_HSS", JQ_READ, 5000, true},                   // P0 bytes, D0 buffer; R count
    {"JT_CONFIGURE", JQ_CONTROL, 60000, true},              // D0 XML text
    {"JT_SET_CONFIG_PARAM", JQ_CONTROL, 5000, false},       // P0 DEV_CONFIG_PARAMS, P1 value, or D0 text
    {"JT_GET_DEVICE_INFO", JQ_READ, 5000, true},            // D0 device name; R2 core identifier
    {"JT_MEASURE_CORE_SPEED", JQ_BACKGROUND, 5000, false},  // R Hz
    {"JT_ANY", JQ_READ, 5000, false},                       // selector
    {"Last", JQ_BACKGROUND, 5000, false},                   // upper bound
};
static_assert(std::size(JOB_TYPE_TABLE) == JT_LAST + 1);

}  // namespace

const JOB_TYPE_INFO& JobTypeInfo(U32 Type) {
  return Type <= JT_LAST ? JOB_TYPE_TABLE[Type] : UNKNOWN_JOB;
}

bool JobTypeMatches(U32 Type, U32 Selector) {
  if (Type == JT_NONE) return false;
  return Selector == JT_ANY || Type == Selector || (Selector == JT_STEP && IsStepJob(Type));
}

DYN_PARAM_RESULT AllocDynParam(DEVICE_JOB& Job, U32 Index, U64 NumBytes) {
  if (Index >= NUM_JOB_DYN_PARAMS || Job.pDyn[Index] != nullptr) return DYN_ALREADY_TAKEN;
  if (NumBytes == 0 || NumBytes > MAX_DYN_PARAM_BYTES) return DYN_BAD_SIZE;
  Job.pDyn[Index] = std::calloc(1, NumBytes + 1);
  if (Job.pDyn[Index] == nullptr) return DYN_BAD_SIZE;
  Job.DynSize[Index] = static_cast<U32>(NumBytes + 1);
  return DYN_OK;
}

void FreeDynParams(DEVICE_JOB& Job) {
  for (U32 i = 0; i < NUM_JOB_DYN_PARAMS; ++i) {
    std::free(Job.pDyn[i]);
    Job.pDyn[i] = nullptr;
    Job.DynSize[i] = 0;
  }
}
