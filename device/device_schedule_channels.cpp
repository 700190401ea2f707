// The device's Schedule operations for terminal, sampling and trace.

#include "device/device.h"
#include "device/inst_trace_channel.h"
#include "device/make_job.h"

namespace {

// The terminal's port and buffer, and how much one job reads.
constexpr U32 TERMINAL_PORT = 0;
constexpr U32 TERMINAL_PORT_MASK = 1u << TERMINAL_PORT;
constexpr U32 TERMINAL_BUFFER = 0;
constexpr U32 TERMINAL_READ_BYTES = 4000;
constexpr U32 HSS_READ_BYTES = 250'000;

// Counters that one job reads for its ranges: a halfword each, and a total for each range.
U64 NumStatItems(U32 NumRanges, const U32* paRanges) {
  U64 Num = 0;
  for (U32 i = 0; i < NumRanges; ++i) {
    if (paRanges[2 * i + 1] > paRanges[2 * i]) Num += (U64{paRanges[2 * i + 1]} - paRanges[2 * i]) / 2 + 1;
  }
  return Num;
}

}  // namespace

int CDevice::ScheduleStartSWOTrace(U32 CpuHz, U32 SWOHz) {
  return ScheduleSimple(JT_START_SWO_TRACE, CpuHz, SWOHz, TERMINAL_PORT_MASK);
}

int CDevice::ScheduleStopSWOTrace(U32 PortMask) {
  return ScheduleSimple(JT_STOP_SWO_TRACE, PortMask);
}

int CDevice::ScheduleReadSWOTrace() {
  DEVICE_JOB Job = MakeJob(JT_READ_SWO_TRACE, TERMINAL_PORT, TERMINAL_READ_BYTES);
  return Finish(Job, RequestDynParam(Job, 0, TERMINAL_READ_BYTES));
}

int CDevice::ScheduleStartRTT() {
  return ScheduleSimple(JT_START_RTT);
}

int CDevice::ScheduleStopRTT() {
  return ScheduleSimple(JT_STOP_RTT);
}

int CDevice::ScheduleReadRTT() {
  DEVICE_JOB Job = MakeJob(JT_READ_RTT, TERMINAL_BUFFER, TERMINAL_READ_BYTES);
  return Finish(Job, RequestDynParam(Job, 0, TERMINAL_READ_BYTES));
}

int CDevice::ScheduleWriteRTT(U32 NumBytes, const U8* paData) {
  return ScheduleCopied(JT_WRITE_RTT, TERMINAL_BUFFER, paData, NumBytes, NumBytes);
}

int CDevice::ScheduleStartHSS(U32 Cnt, const U32* paAddrRanges, int IntervalUs, int Flags) {
  return ScheduleCopied(JT_START_HSS, Cnt, paAddrRanges, U64{Cnt} * 2 * sizeof(U32),
                        static_cast<U64>(std::max(IntervalUs, 0)), static_cast<U64>(Flags));
}

int CDevice::ScheduleStopHSS() {
  return ScheduleSimple(JT_STOP_HSS);
}

int CDevice::ScheduleReadHSS() {
  DEVICE_JOB Job = MakeJob(JT_READ_HSS, HSS_READ_BYTES);
  return Finish(Job, RequestDynParam(Job, 0, HSS_READ_BYTES));
}

int CDevice::ScheduleEnableInstTrace() {
  return ScheduleSimple(JT_ENABLE_SIMPLE_TRACE);
}

int CDevice::ScheduleDisableInstTrace() {
  return ScheduleSimple(JT_DISABLE_SIMPLE_TRACE);
}

int CDevice::ScheduleStartInstTrace() {
  return ScheduleSimple(JT_START_SIMPLE_TRACE);
}

int CDevice::ScheduleStopInstTrace() {
  return ScheduleSimple(JT_STOP_SIMPLE_TRACE);
}

int CDevice::ScheduleFlushInstTrace() {
  return ScheduleSimple(JT_FLUSH_STRACE_BUFFER);
}

int CDevice::ScheduleReadInstTrace() {
  constexpr U32 NUM_INSTS = CInstTraceChannel::MAX_READ_INSTS;
  DEVICE_JOB Job = MakeJob(JT_READ_SIMPLE_TRACE, NUM_INSTS);
  return Finish(Job, RequestDynParam(Job, 0, NUM_INSTS * sizeof(U32)));
}

int CDevice::ScheduleReadInstStats(U32 NumRanges, const U32* paRanges) {
  const U64 NumItems = NumStatItems(NumRanges, paRanges);
  DEVICE_JOB Job = MakeJob(JT_READ_INST_STATS, NumRanges, NumItems);
  int Result = CopyDynParam(Job, 0, paRanges, U64{NumRanges} * 2 * sizeof(U32));
  for (const U32 Index : {1u, 2u}) {
    if (Result == 0) Result = RequestDynParam(Job, Index, NumItems * sizeof(U64));
  }
  return Finish(Job, Result);
}
