// OnJobDone: from a finished job to the listener operation that belongs to it.

#include "device/device_event_listener.h"
#include "device/device_view.h"
#include "device/probe_api/register_index.h"

namespace {

const CDeviceView* pDeviceView = nullptr;

using L = CDeviceEventListener;

bool IsTargetWrite(U32 Type) {
  switch (Type) {
    case JT_WRITE_REG:
    case JT_WRITE_CP_REG:
    case JT_WRITE_MEM:
    case JT_WRITE_MEM_MULTIPLE:
    case JT_WRITE_BYTE:
    case JT_WRITE_LOCATION:
      return true;
    default:
      return false;
  }
}

U32 P(const DEVICE_JOB& Job, U32 Index) {
  return static_cast<U32>(Job.Param[Index]);
}

// Job types whose Done and Failed operations take the same arguments.
template <typename... Args>
void DoneOrFailed(L& Listener, const DEVICE_JOB& Job, void (L::*pfDone)(Args...), void (L::*pfFailed)(Args...),
                  std::type_identity_t<Args>... Values) {
  (Listener.*(Job.Status == JS_DONE ? pfDone : pfFailed))(Values...);
}

bool DispatchRunControl(L& Listener, const DEVICE_JOB& Job) {
  const U32 PC = static_cast<U32>(Job.Result);
  const auto Call = [&](auto pfDone, auto pfFailed, auto... Values) {
    DoneOrFailed(Listener, Job, pfDone, pfFailed, Values...);
  };
  switch (Job.Type) {
    case JT_CONNECT:
      Call(&L::OnDeviceConnectDone, &L::OnDeviceConnectFailed, static_cast<CONNECT_MODES>(P(Job, 0)));
      return true;
    case JT_DISCONNECT:
      Call(&L::OnDeviceDisconnectDone, &L::OnDeviceDisconnectFailed);
      return true;
    case JT_RESET:
      Call(&L::OnDeviceResetDone, &L::OnDeviceResetFailed, PC, static_cast<RESET_MODES>(P(Job, 0)));
      return true;
    case JT_HALT:
      if (Job.Status == JS_DONE) {
        Listener.OnDeviceHaltDone(PC, static_cast<HALT_REASONS>(P(Job, 0)));
      } else {
        Listener.OnDeviceHaltFailed();
      }
      return true;
    case JT_CONTINUE:
      Call(&L::OnDeviceResumeDone, &L::OnDeviceResumeFailed, static_cast<RESUME_MODES>(P(Job, 0)));
      return true;
    case JT_STEP_INST:
      Call(&L::OnDeviceStepInstDone, &L::OnDeviceStepInstFailed, PC);
      return true;
    case JT_STEP_INTO:
      Call(&L::OnDeviceStepIntoDone, &L::OnDeviceStepIntoFailed, PC);
      return true;
    case JT_STEP_OVER:
      Call(&L::OnDeviceStepOverDone, &L::OnDeviceStepOverFailed, PC);
      return true;
    case JT_STEP_OUT:
      Call(&L::OnDeviceStepOutDone, &L::OnDeviceStepOutFailed, PC);
      return true;
    case JT_RUN_TO:
      Call(&L::OnDeviceRunToSymbolDone, &L::OnDeviceRunToSymbolFailed, P(Job, 0));
      return true;
    case JT_SET_TARGET_EXEC_STATE:
      Call(&L::OnDeviceSetTargetExecStateDone, &L::OnDeviceSetTargetExecStateFailed, Job.Param[0], Job.Param[1]);
      return true;
    case JT_RESET_TARGET_EXEC_STATE:
      Call(&L::OnDeviceResetTargetExecStateDone, &L::OnDeviceResetTargetExecStateFailed);
      return true;
    default:
      return false;
  }
}

bool DispatchBreakpoints(L& Listener, const DEVICE_JOB& Job) {
  const auto Call = [&](auto pfDone, auto pfFailed, auto... Values) {
    DoneOrFailed(Listener, Job, pfDone, pfFailed, Values...);
  };
  switch (Job.Type) {
    case JT_SET_BP:
      Call(&L::OnDeviceSetBPDone, &L::OnDeviceSetBPFailed, P(Job, 0));
      return true;
    case JT_SET_BPS:
      Call(&L::OnDeviceSetBPsDone, &L::OnDeviceSetBPsFailed, P(Job, 0), Job.Dyn<U32>(0));
      return true;
    case JT_CLEAR_BP:
      Call(&L::OnDeviceClearBPDone, &L::OnDeviceClearBPFailed, P(Job, 0));
      return true;
    case JT_CLEAR_BPS:
      Call(&L::OnDeviceClearBPsDone, &L::OnDeviceClearBPsFailed, P(Job, 0), Job.Dyn<U32>(0));
      return true;
    case JT_CLEAR_ALL_BPS:
      Call(&L::OnDeviceClearAllBPsDone, &L::OnDeviceClearAllBPsFailed);
      return true;
    case JT_RESET_BPS:
      Call(&L::OnDeviceResetBPsDone, &L::OnDeviceResetBPsFailed);
      return true;
    case JT_SET_WPS:
      Call(&L::OnDeviceSetWPsDone, &L::OnDeviceSetWPsFailed, P(Job, 0), Job.Dyn<WP>(0));
      return true;
    case JT_CLEAR_WPS:
      Call(&L::OnDeviceClearWPsDone, &L::OnDeviceClearWPsFailed, P(Job, 0), Job.Dyn<WP>(0));
      return true;
    case JT_CLEAR_ALL_WPS:
      Call(&L::OnDeviceClearAllWPsDone, &L::OnDeviceClearAllWPsFailed);
      return true;
    default:
      return false;
  }
}

bool DispatchReads(L& Listener, const DEVICE_JOB& Job) {
  const bool bDone = Job.Status == JS_DONE;
  switch (Job.Type) {
    case JT_READ_REG:
      bDone ? Listener.OnDeviceReadRegDone(P(Job, 0), Job.Result) : Listener.OnDeviceReadRegFailed(P(Job, 0));
      return true;
    case JT_READ_CP_REG:
      bDone ? Listener.OnDeviceReadCPRegDone(Job.DynText(0), Job.Result)
            : Listener.OnDeviceReadCPRegFailed(Job.DynText(0));
      return true;
    case JT_READ_REGS:
      bDone ? Listener.OnDeviceReadRegsDone(P(Job, 0), Job.Dyn<U32>(0), Job.Dyn<U64>(1), Job.Dyn<U8>(2))
            : Listener.OnDeviceReadRegsFailed(P(Job, 0), Job.Dyn<U32>(0));
      return true;
    case JT_READ_MEM:
      bDone ? Listener.OnDeviceReadMemDone(P(Job, 0), P(Job, 1), Job.Dyn<U8>(0), Job.Dyn<U8>(1))
            : Listener.OnDeviceReadMemFailed(P(Job, 0), P(Job, 1));
      return true;
    case JT_READ_LOCATION: {
      U64 Value = Job.Result;
      U8 aData[sizeof(Value)];
      std::memcpy(aData, &Value, sizeof(Value));
      bDone ? Listener.OnDeviceReadLocDone(*Job.Dyn<ELF_SYM_LOC>(0), P(Job, 0), aData)
            : Listener.OnDeviceReadLocFailed(*Job.Dyn<ELF_SYM_LOC>(0), P(Job, 0));
      return true;
    }
    case JT_READ_LOCS:
      bDone ? Listener.OnDeviceReadLocsDone(P(Job, 0), Job.Dyn<ELF_SYM_LOC>(0), Job.Dyn<U64>(1), Job.Dyn<U8>(2),
                                            P(Job, 1))
            : Listener.OnDeviceReadLocsFailed(P(Job, 0), Job.Dyn<ELF_SYM_LOC>(0), P(Job, 1));
      return true;
    default:
      return false;
  }
}

bool DispatchWrites(L& Listener, const DEVICE_JOB& Job) {
  const auto Call = [&](auto pfDone, auto pfFailed, auto... Values) {
    DoneOrFailed(Listener, Job, pfDone, pfFailed, Values...);
  };
  const bool bDone = Job.Status == JS_DONE;
  switch (Job.Type) {
    case JT_WRITE_REG:
      bDone ? Listener.OnDeviceWriteRegDone(P(Job, 0), Job.Param[1]) : Listener.OnDeviceWriteRegFailed(P(Job, 0));
      return true;
    case JT_WRITE_CP_REG:
      bDone ? Listener.OnDeviceWriteCPRegDone(Job.DynText(0), Job.Param[0])
            : Listener.OnDeviceWriteCPRegFailed(Job.DynText(0));
      return true;
    case JT_WRITE_MEM:
      Call(&L::OnDeviceWriteMemDone, &L::OnDeviceWriteMemFailed, P(Job, 0), P(Job, 1), Job.Dyn<U8>(0));
      return true;
    case JT_WRITE_MEM_MULTIPLE:
      Call(&L::OnDeviceWriteMemMultipleDone, &L::OnDeviceWriteMemMultipleFailed, P(Job, 0), Job.Dyn<U32>(0),
           Job.Dyn<U8>(1));
      return true;
    case JT_WRITE_LOCATION:
      bDone ? Listener.OnDeviceWriteLocDone(*Job.Dyn<ELF_SYM_LOC>(0), P(Job, 0))
            : Listener.OnDeviceWriteLocFailed(*Job.Dyn<ELF_SYM_LOC>(0), P(Job, 0));
      return true;
    case JT_END_DOWNLOAD:
      bDone ? Listener.OnDeviceEndDownloadDone(Job.DynText(0))
            : Listener.OnDeviceEndDownloadFailed(Job.DynText(0), static_cast<int>(Job.Result));
      return true;
    default:
      return false;
  }
}

bool DispatchInstTrace(L& Listener, const DEVICE_JOB& Job) {
  const auto Call = [&](auto pfDone, auto pfFailed) { DoneOrFailed(Listener, Job, pfDone, pfFailed); };
  const bool bDone = Job.Status == JS_DONE;
  switch (Job.Type) {
    case JT_ENABLE_SIMPLE_TRACE:
      Call(&L::OnDeviceEnableInstTraceDone, &L::OnDeviceEnableInstTraceFailed);
      return true;
    case JT_DISABLE_SIMPLE_TRACE:
      Call(&L::OnDeviceDisableInstTraceDone, &L::OnDeviceDisableInstTraceFailed);
      return true;
    case JT_START_SIMPLE_TRACE:
      Call(&L::OnDeviceStartInstTraceDone, &L::OnDeviceStartInstTraceFailed);
      return true;
    case JT_STOP_SIMPLE_TRACE:
      Call(&L::OnDeviceStopInstTraceDone, &L::OnDeviceStopInstTraceFailed);
      return true;
    case JT_FLUSH_STRACE_BUFFER:
      Call(&L::OnDeviceFlushInstTraceDone, &L::OnDeviceFlushInstTraceFailed);
      return true;
    case JT_READ_SIMPLE_TRACE:
      bDone ? Listener.OnDeviceReadInstTraceDone(P(Job, 0), static_cast<U32>(Job.Result), static_cast<U32>(Job.Result2),
                                                 static_cast<U32>(Job.Result3), Job.Dyn<U8>(0))
            : Listener.OnDeviceReadInstTraceFailed(P(Job, 0));
      return true;
    case JT_READ_INST_STATS:
      bDone ? Listener.OnDeviceReadInstStatsDone(P(Job, 0), Job.Dyn<U32>(0), static_cast<U32>(Job.Result), Job.Result2,
                                                 Job.Result3, Job.Dyn<U8>(1), Job.Dyn<U8>(2))
            : Listener.OnDeviceReadInstStatsFailed(P(Job, 0), Job.Dyn<U32>(0));
      return true;
    default:
      return false;
  }
}

bool DispatchSWO(L& Listener, const DEVICE_JOB& Job) {
  const auto Call = [&](auto pfDone, auto pfFailed, auto... Values) {
    DoneOrFailed(Listener, Job, pfDone, pfFailed, Values...);
  };
  switch (Job.Type) {
    case JT_START_SWO_TRACE:
      Call(&L::OnDeviceStartSWODone, &L::OnDeviceStartSWOFailed, P(Job, 0), P(Job, 1), P(Job, 2));
      return true;
    case JT_STOP_SWO_TRACE:
      Call(&L::OnDeviceStopSWODone, &L::OnDeviceStopSWOFailed, P(Job, 0));
      return true;
    case JT_READ_SWO_TRACE:
      Job.Status == JS_DONE
          ? Listener.OnDeviceReadSWODone(P(Job, 0), P(Job, 1), static_cast<U32>(Job.Result), Job.Dyn<U8>(0))
          : Listener.OnDeviceReadSWOFailed(P(Job, 0), P(Job, 1));
      return true;
    case JT_SWO_GET_COMPAT_SPEEDS:
      Call(&L::OnDeviceGetSWOSpeedsDone, &L::OnDeviceGetSWOSpeedsFailed, P(Job, 0), P(Job, 1), Job.Dyn<U32>(0));
      return true;
    default:
      return false;
  }
}

bool DispatchRTTAndHSS(L& Listener, const DEVICE_JOB& Job) {
  const auto Call = [&](auto pfDone, auto pfFailed, auto... Values) {
    DoneOrFailed(Listener, Job, pfDone, pfFailed, Values...);
  };
  const bool bDone = Job.Status == JS_DONE;
  switch (Job.Type) {
    case JT_START_RTT:
      Call(&L::OnDeviceStartRTTDone, &L::OnDeviceStartRTTFailed);
      return true;
    case JT_STOP_RTT:
      Call(&L::OnDeviceStopRTTDone, &L::OnDeviceStopRTTFailed);
      return true;
    case JT_READ_RTT:
      bDone ? Listener.OnDeviceReadRTTDone(P(Job, 0), P(Job, 1), static_cast<U32>(Job.Result), Job.Dyn<U8>(0))
            : Listener.OnDeviceReadRTTFailed(P(Job, 0), P(Job, 1));
      return true;
    case JT_WRITE_RTT:
      bDone ? Listener.OnDeviceWriteRTTDone(P(Job, 0), P(Job, 1), Job.Dyn<U8>(0))
            : Listener.OnDeviceWriteRTTFailed(P(Job, 0), P(Job, 1), static_cast<U32>(Job.Result2), Job.Dyn<U8>(0));
      return true;
    case JT_START_HSS:
      Call(&L::OnDeviceStartHSSDone, &L::OnDeviceStartHSSFailed, P(Job, 0), Job.Dyn<U32>(0),
           static_cast<int>(Job.Param[1]));
      return true;
    case JT_STOP_HSS:
      Call(&L::OnDeviceStopHSSDone, &L::OnDeviceStopHSSFailed);
      return true;
    case JT_READ_HSS:
      bDone ? Listener.OnDeviceReadHSSDone(P(Job, 0), static_cast<U32>(Job.Result), Job.Dyn<U8>(0))
            : Listener.OnDeviceReadHSSFailed(P(Job, 0));
      return true;
    case JT_SET_SH_INPUT_TEXT:
      Call(&L::OnDeviceSetSHInputDone, &L::OnDeviceSetSHInputFailed, P(Job, 0), Job.DynText(0));
      return true;
    default:
      return false;
  }
}

void DispatchConfigParam(L& Listener, const DEVICE_JOB& Job) {
  const auto Param = static_cast<DEV_CONFIG_PARAMS>(Job.Param[0]);
  if (Job.pDyn[0] != nullptr) {
    DoneOrFailed(Listener, Job, &L::OnDeviceSetConfigTextDone, &L::OnDeviceSetConfigTextFailed, Param, Job.DynText(0));
  } else {
    DoneOrFailed(Listener, Job, &L::OnDeviceSetConfigValueDone, &L::OnDeviceSetConfigValueFailed, Param,
                 static_cast<int>(Job.Param[1]));
  }
}

bool DispatchProbe(L& Listener, const DEVICE_JOB& Job) {
  const bool bDone = Job.Status == JS_DONE;
  switch (Job.Type) {
    case JT_CONFIGURE:
      DoneOrFailed(Listener, Job, &L::OnDeviceConfigureDone, &L::OnDeviceConfigureFailed, Job.DynText(0));
      return true;
    case JT_SET_CONFIG_PARAM:
      DispatchConfigParam(Listener, Job);
      return true;
    case JT_EXEC_VNODE_CMD:
      bDone ? Listener.OnDeviceExecCmdDone(Job.DynText(0))
            : Listener.OnDeviceExecCmdFailed(Job.DynText(0), Job.DynText(1));
      return true;
    case JT_GET_DEVICE_INFO:
      bDone ? Listener.OnDeviceGetDeviceInfoDone(Job.DynText(0), static_cast<U32>(Job.Result2))
            : Listener.OnDeviceGetDeviceInfoFailed(Job.DynText(0));
      return true;
    case JT_MEASURE_CORE_SPEED:
      bDone ? Listener.OnDeviceMeasureCoreSpeedDone(static_cast<U32>(Job.Result))
            : Listener.OnDeviceMeasureCoreSpeedFailed();
      return true;
    default:
      return false;
  }
}

bool IsPC(U32 VNodeRegIdx) {
  return VNodeRegIdx == (pDeviceView ? pDeviceView->PCIndex() : static_cast<U32>(VNODE_REG_PC));
}

// Operations that sum up. Those that claim a halt or a changed PC belong to a success only.
void CallFollowUps(L& Listener, const DEVICE_JOB& Job) {
  const bool bDone = Job.Status == JS_DONE;
  const U32 PC = static_cast<U32>(Job.Result);
  if (Job.Type == JT_RESET && bDone) Listener.OnDeviceHaltDone(PC, HR_GENERAL);
  if (IsStepJob(Job.Type)) Listener.OnDeviceStepped(PC);
  if (Job.Type >= JT_EDIT_BP && Job.Type <= JT_CLEAR_ALL_BPS) Listener.OnDeviceBPStateChanged();
  if (Job.Type >= JT_SET_WPS && Job.Type <= JT_CLEAR_ALL_WPS) Listener.OnDeviceWPStateChanged();
  if (Job.Type == JT_WRITE_REG && bDone && IsPC(P(Job, 0))) {
    Listener.OnDeviceHaltDone(P(Job, 1), HR_STATE_CHANGED);
  }
  if (Job.Type == JT_SET_TARGET_EXEC_STATE && bDone) {
    Listener.OnDeviceResetDone(pDeviceView ? static_cast<U32>(pDeviceView->GetPC()) : 0, RM_STATE_CHANGED);
  }
}

}  // namespace

void CDeviceEventListener::SetView(const CDeviceView* pView) {
  pDeviceView = pView;
}

void CDeviceEventListener::OnJobDone(const DEVICE_JOB& Job) {
  if (IsTargetWrite(Job.Type) && pDeviceView && pDeviceView->IsSessionReady()) OnDeviceWriteAccess();
  const auto Operations = {DispatchRunControl, DispatchBreakpoints, DispatchReads,     DispatchWrites,
                           DispatchInstTrace,  DispatchSWO,         DispatchRTTAndHSS, DispatchProbe};
  for (const auto pfDispatch : Operations) {
    if (pfDispatch(*this, Job)) break;
  }
  CallFollowUps(*this, Job);
}
