#include "device/job_dispatch.h"

#include <cstring>

namespace {

// Whether dynamic parameter Index holds Cnt items of ItemSize bytes.
bool Holds(const DEVICE_JOB& Job, U32 Index, U64 Cnt, U64 ItemSize) {
  return Job.pDyn[Index] != nullptr && Cnt <= MAX_DYN_PARAM_BYTES && Cnt * ItemSize < Job.DynSize[Index];
}

U32 P(const DEVICE_JOB& Job, U32 Index) {
  return static_cast<U32>(Job.Param[Index]);
}

// The count of a read or write is its result; what failed has moved nothing.
int CountResult(int Count, U64& Result) {
  Result = Count > 0 ? static_cast<U64>(Count) : 0;
  return Count < 0 ? -1 : 0;
}

// What did less than was wanted has failed.
int AllOrFailed(U64 NumDone, U64 NumWanted) {
  return NumDone == NumWanted ? 0 : -1;
}

}  // namespace

CJobDispatch::CJobDispatch(CDeviceOps& Ops, std::function<bool(DEVICE_JOB&)> RaiseFinished)
    : Ops(Ops), RaiseFinished(std::move(RaiseFinished)) {
  AddProbeHandlers();
  AddRunHandlers();
  AddBreakpointHandlers();
  AddRegisterHandlers();
  AddMemoryHandlers();
  AddLocationHandlers();
  AddTerminalHandlers();
  AddSamplingHandlers();
  AddTraceHandlers();
}

void CJobDispatch::SetHandler(U32 Type, HANDLER Handler) {
  if (Type < aHandler.size()) aHandler[Type] = std::move(Handler);
}

void CJobDispatch::PollTarget() {
  Ops.CheckHandleNotifications();
  Ops.Halts.CheckHandleHalt();
  Ops.Halts.CheckHandleResume();
}

int CJobDispatch::Dispatch(DEVICE_JOB& Job) {
  const HANDLER& Handler = aHandler[Job.Type];
  return Handler ? Handler(Job) : -1;
}

void CJobDispatch::AddProbeHandlers() {
  SetHandler(JT_CONNECT,
             [this](DEVICE_JOB& Job) { return Ops.Connection.Connect(static_cast<CONNECT_MODES>(P(Job, 0))); });
  SetHandler(JT_DISCONNECT, [this](DEVICE_JOB&) { return Ops.Connection.Disconnect(); });
  SetHandler(JT_EXEC_VNODE_CMD, [this](DEVICE_JOB& Job) {
    if (Job.pDyn[1] == nullptr) return -1;
    const int Result = Ops.Commands.ExecVNodeCmd(Job.DynText(0), Job.DynSize[1] - 1, Job.Dyn<char>(1));
    Job.Result = static_cast<U64>(static_cast<I64>(Result));
    return Result;
  });
  SetHandler(JT_CONFIGURE, [this](DEVICE_JOB& Job) { return Ops.Configurator.Configure(Job.DynText(0)); });
  SetHandler(JT_SET_CONFIG_PARAM, [this](DEVICE_JOB& Job) {
    const auto Param = static_cast<DEV_CONFIG_PARAMS>(Job.Param[0]);
    if (Job.pDyn[0] != nullptr) return Ops.Configurator.SetConfigParam(Param, Job.DynText(0));
    return Ops.Configurator.SetConfigParam(Param, static_cast<int>(Job.Param[1]));
  });
  SetHandler(JT_GET_DEVICE_INFO, [this](DEVICE_JOB& Job) {
    U32 Core = 0;
    const int Result = Ops.Info.GetDeviceInfo(Job.DynText(0), &Core);
    Job.Result2 = Core;
    return Result;
  });
  SetHandler(JT_SWO_GET_COMPAT_SPEEDS, [this](DEVICE_JOB& Job) {
    if (!Holds(Job, 0, Job.Param[1], sizeof(U32))) return -1;
    return Ops.Capabilities.ReadSWOSpeeds(P(Job, 0), P(Job, 1), Job.Dyn<U32>(0));
  });
  SetHandler(JT_MEASURE_CORE_SPEED, [this](DEVICE_JOB& Job) {
    const int Speed = Ops.Memory.MeasureCoreSpeed();
    Job.Result = Speed > 0 ? static_cast<U64>(Speed) : 0;
    if (Speed > 0) Ops.Ctx.State.CoreSpeed = static_cast<U32>(Speed);
    return Speed > 0 ? 0 : -1;
  });
}

void CJobDispatch::AddRunHandlers() {
  SetHandler(JT_RESET, [this](DEVICE_JOB& Job) { return Ops.Control.Reset(static_cast<RESET_MODES>(P(Job, 0))); });
  SetHandler(JT_HALT, [this](DEVICE_JOB&) { return Ops.Control.Halt(); });
  SetHandler(JT_CONTINUE, [this](DEVICE_JOB&) { return Ops.Control.Continue(); });
  SetHandler(JT_STEP_INST, [this](DEVICE_JOB&) { return Ops.Stepper.StepInst(); });
  SetHandler(JT_RUN_TO, [this](DEVICE_JOB& Job) { return Ops.Control.RunTo(Job.Param[0]); });
  SetHandler(JT_SET_TARGET_EXEC_STATE, [this](DEVICE_JOB& Job) {
    const int Result = Ops.Target.SetTargetExecState(Job.Param[0], Job.Param[1]);
    // Zeroes ask for the target's own, which is what the event then tells.
    Job.Param[0] = Ops.Ctx.State.Target.PC;
    Job.Param[1] = Ops.Ctx.State.Target.SP;
    return Result;
  });
  SetHandler(JT_RESET_TARGET_EXEC_STATE, [this](DEVICE_JOB&) { return Ops.Target.ResetTargetExecState(); });
  SetHandler(JT_END_DOWNLOAD, [this](DEVICE_JOB& Job) {
    const int Result = Ops.Download.EndDownload(Job.Param[0] != 0);
    Job.Result = static_cast<U64>(static_cast<I64>(Result));
    return Result;
  });
}

void CJobDispatch::AddBreakpointHandlers() {
  SetHandler(JT_EDIT_BP, [](DEVICE_JOB&) { return 0; });
  SetHandler(JT_SET_BP, [this](DEVICE_JOB& Job) {
    return Ops.Breakpoints.SetBreakpoint(P(Job, 0), static_cast<BP_STATES>(P(Job, 1)),
                                         static_cast<BP_TYPES>(P(Job, 2)));
  });
  SetHandler(JT_SET_BPS, [this](DEVICE_JOB& Job) {
    if (!Holds(Job, 0, Job.Param[0], sizeof(U32))) return -1;
    const int Result = Ops.Breakpoints.SetBreakpoints(P(Job, 0), Job.Dyn<U32>(0), static_cast<BP_STATES>(P(Job, 1)),
                                                      static_cast<BP_TYPES>(P(Job, 2)));
    Job.Result = static_cast<U64>(Result);
    return AllOrFailed(Job.Result, Job.Param[0]);
  });
  SetHandler(JT_CLEAR_BP, [this](DEVICE_JOB& Job) { return Ops.Breakpoints.ClearBreakpoint(P(Job, 0)); });
  SetHandler(JT_CLEAR_BPS, [this](DEVICE_JOB& Job) {
    if (!Holds(Job, 0, Job.Param[0], sizeof(U32))) return -1;
    Job.Result = static_cast<U64>(Ops.Breakpoints.ClearBreakpoints(P(Job, 0), Job.Dyn<U32>(0)));
    return AllOrFailed(Job.Result, Job.Param[0]);
  });
  SetHandler(JT_CLEAR_ALL_BPS, [this](DEVICE_JOB&) { return Ops.Breakpoints.ClearAllBreakpoints(); });
  SetHandler(JT_RESET_BPS, [this](DEVICE_JOB&) { return Ops.Breakpoints.ResetBreakpoints(); });
}

void CJobDispatch::AddRegisterHandlers() {
  SetHandler(JT_READ_REG, [this](DEVICE_JOB& Job) { return Ops.Registers.ReadReg(P(Job, 0), &Job.Result); });
  SetHandler(JT_WRITE_REG, [this](DEVICE_JOB& Job) { return Ops.Registers.WriteReg(P(Job, 0), Job.Param[1]); });
  SetHandler(JT_READ_REGS, [this](DEVICE_JOB& Job) {
    const U64 Cnt = Job.Param[0];
    if (!Holds(Job, 0, Cnt, sizeof(U32)) || !Holds(Job, 1, Cnt, sizeof(U64)) || !Holds(Job, 2, Cnt, 1)) return -1;
    return Ops.Registers.ReadRegs(P(Job, 0), Job.Dyn<U32>(0), Job.Dyn<U64>(1), Job.Dyn<U8>(2));
  });
  SetHandler(JT_READ_CP_REG, [this](DEVICE_JOB& Job) { return Ops.Registers.ReadCPReg(Job.DynText(0), &Job.Result); });
  SetHandler(JT_WRITE_CP_REG,
             [this](DEVICE_JOB& Job) { return Ops.Registers.WriteCPReg(Job.DynText(0), Job.Param[0]); });
}

void CJobDispatch::AddMemoryHandlers() {
  SetHandler(JT_READ_MEM, [this](DEVICE_JOB& Job) {
    if (!Holds(Job, 0, Job.Param[1], 1) || !Holds(Job, 1, Job.Param[1], 1)) return -1;
    // A refused access leaves the status alone, and zero means valid.
    std::memset(Job.pDyn[1], MEM_UNAVAILABLE, Job.Param[1]);
    return static_cast<int>(Ops.Memory.ReadMem(P(Job, 0), P(Job, 1), P(Job, 2), static_cast<I8>(Job.Param[3]),
                                               P(Job, 4), Job.Dyn<U8>(0), Job.Dyn<U8>(1)));
  });
  SetHandler(JT_WRITE_MEM, [this](DEVICE_JOB& Job) {
    if (!Holds(Job, 0, Job.Param[1], 1)) return -1;
    const U32 NumWritten =
        Ops.Memory.WriteMem(P(Job, 0), P(Job, 1), P(Job, 2), static_cast<I8>(Job.Param[3]), P(Job, 4), Job.Dyn<U8>(0));
    return AllOrFailed(NumWritten, Job.Param[1]);
  });
  SetHandler(JT_WRITE_MEM_MULTIPLE, [this](DEVICE_JOB& Job) {
    if (!Holds(Job, 0, Job.Param[0], 2 * sizeof(U32)) || !Holds(Job, 1, Job.Param[1], 1)) return -1;
    const U32* paRanges = Job.Dyn<U32>(0);
    U64 NumWanted = 0;
    for (U32 i = 0; i < P(Job, 0); ++i) NumWanted += paRanges[2 * i + 1] - paRanges[2 * i];
    const U32 NumWritten = Ops.Memory.WriteMemMultiple(P(Job, 0), paRanges, P(Job, 1), Job.Dyn<U8>(1), P(Job, 2),
                                                       static_cast<I8>(Job.Param[3]), P(Job, 4));
    return AllOrFailed(NumWritten, NumWanted);
  });
}

void CJobDispatch::AddLocationHandlers() {
  SetHandler(JT_READ_LOCATION, [this](DEVICE_JOB& Job) {
    if (!Holds(Job, 0, 1, sizeof(ELF_SYM_LOC)) || Job.Param[0] > CLocationAccess::MAX_LOC_BYTES) return -1;
    U8 aData[CLocationAccess::MAX_LOC_BYTES] = {};
    const int Result = Ops.Locations.ReadLoc(*Job.Dyn<ELF_SYM_LOC>(0), P(Job, 0), aData);
    std::memcpy(&Job.Result, aData, sizeof(Job.Result));
    return Result;
  });
  SetHandler(JT_READ_LOCS, [this](DEVICE_JOB& Job) {
    const U64 Cnt = Job.Param[0];
    if (!Holds(Job, 0, Cnt, sizeof(ELF_SYM_LOC)) || !Holds(Job, 1, Cnt, sizeof(U64)) || !Holds(Job, 2, Cnt, 1)) {
      return -1;
    }
    return Ops.Locations.ReadLocs(P(Job, 0), Job.Dyn<ELF_SYM_LOC>(0), Job.Dyn<U64>(1), Job.Dyn<U8>(2));
  });
  SetHandler(JT_WRITE_LOCATION, [this](DEVICE_JOB& Job) {
    if (!Holds(Job, 0, 1, sizeof(ELF_SYM_LOC)) || !Holds(Job, 1, Job.Param[0], 1)) return -1;
    return Ops.Locations.WriteLoc(*Job.Dyn<ELF_SYM_LOC>(0), P(Job, 0), Job.Dyn<U8>(1));
  });
}

void CJobDispatch::AddTerminalHandlers() {
  CRttChannel& RTT = Ops.Channels.RTT;
  CSwoChannel& SWO = Ops.Channels.SWO;
  SetHandler(JT_START_SWO_TRACE, [&SWO](DEVICE_JOB& Job) { return SWO.Start(P(Job, 0), P(Job, 1), P(Job, 2)); });
  SetHandler(JT_STOP_SWO_TRACE, [&SWO](DEVICE_JOB& Job) { return SWO.Stop(P(Job, 0)); });
  SetHandler(JT_READ_SWO_TRACE, [&SWO](DEVICE_JOB& Job) {
    if (!Holds(Job, 0, Job.Param[1], 1)) return -1;
    return CountResult(SWO.Read(P(Job, 0), P(Job, 1), Job.Dyn<U8>(0)), Job.Result);
  });
  SetHandler(JT_START_RTT, [&RTT](DEVICE_JOB&) { return RTT.Start(); });
  SetHandler(JT_STOP_RTT, [&RTT](DEVICE_JOB&) { return RTT.Stop(); });
  SetHandler(JT_READ_RTT, [&RTT](DEVICE_JOB& Job) {
    if (!Holds(Job, 0, Job.Param[1], 1)) return -1;
    return CountResult(RTT.Read(P(Job, 0), P(Job, 1), Job.Dyn<U8>(0)), Job.Result);
  });
  SetHandler(JT_WRITE_RTT, [&RTT](DEVICE_JOB& Job) {
    if (!Holds(Job, 0, Job.Param[1], 1)) return -1;
    CountResult(RTT.Write(P(Job, 0), P(Job, 1), Job.Dyn<U8>(0)), Job.Result2);
    const int Result = AllOrFailed(Job.Result2, Job.Param[1]);
    Job.Result = static_cast<U64>(static_cast<I64>(Result));
    return Result;
  });
}

void CJobDispatch::AddSamplingHandlers() {
  CHssChannel& HSS = Ops.Channels.HSS;
  SetHandler(JT_START_HSS, [&HSS](DEVICE_JOB& Job) {
    if (!Holds(Job, 0, Job.Param[0], 2 * sizeof(U32))) return -1;
    return HSS.Start(P(Job, 0), Job.Dyn<U32>(0), static_cast<int>(Job.Param[1]), static_cast<int>(Job.Param[2]));
  });
  SetHandler(JT_STOP_HSS, [&HSS](DEVICE_JOB&) { return HSS.Stop(); });
  SetHandler(JT_READ_HSS, [&HSS](DEVICE_JOB& Job) {
    if (!Holds(Job, 0, Job.Param[0], 1)) return -1;
    return CountResult(HSS.Read(P(Job, 0), Job.Dyn<U8>(0)), Job.Result);
  });
}

void CJobDispatch::AddTraceHandlers() {
  CInstTraceChannel& Trace = Ops.Channels.Trace;
  const auto Told = [](int Result, DEVICE_JOB& Job) {
    Job.Result = static_cast<U64>(static_cast<I64>(Result));
    return Result;
  };
  SetHandler(JT_ENABLE_SIMPLE_TRACE, [&Trace](DEVICE_JOB&) { return Trace.Enable(); });
  SetHandler(JT_DISABLE_SIMPLE_TRACE, [&Trace](DEVICE_JOB&) { return Trace.Disable(); });
  SetHandler(JT_START_SIMPLE_TRACE, [&Trace, Told](DEVICE_JOB& Job) { return Told(Trace.Start(), Job); });
  SetHandler(JT_STOP_SIMPLE_TRACE, [&Trace, Told](DEVICE_JOB& Job) { return Told(Trace.Stop(), Job); });
  SetHandler(JT_FLUSH_STRACE_BUFFER, [&Trace](DEVICE_JOB&) { return Trace.Flush(); });
  SetHandler(JT_READ_SIMPLE_TRACE, [&Trace](DEVICE_JOB& Job) {
    if (!Holds(Job, 0, Job.Param[0], sizeof(U32))) return -1;
    const int Result = CountResult(Trace.Read(P(Job, 0), Job.Dyn<U32>(0)), Job.Result);
    if (Result < 0) return Result;
    Job.Result2 = Job.Result < Job.Param[0];
    Job.Result3 = Trace.TakeNewEpoch();
    return 0;
  });
  SetHandler(JT_READ_INST_STATS, [&Trace](DEVICE_JOB& Job) {
    const U64 NumItems = Job.Param[1];
    if (!Holds(Job, 0, Job.Param[0], 2 * sizeof(U32)) || !Holds(Job, 1, NumItems, sizeof(U64)) ||
        !Holds(Job, 2, NumItems, sizeof(U64))) {
      return -1;
    }
    const int Num = Trace.ReadInstStats(P(Job, 0), Job.Dyn<U32>(0), static_cast<U32>(NumItems), Job.Dyn<U64>(1),
                                        Job.Dyn<U64>(2), &Job.Result2, &Job.Result3);
    return CountResult(Num, Job.Result);
  });
}
