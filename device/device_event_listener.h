#pragma once
// What the rest of the program hears of the target: one virtual operation per outcome, called on the main thread.

#include <cstddef>

#include "base/elf_sym.h"
#include "base/msg_flags.h"
#include "device/device_job.h"
#include "device/device_types.h"

class CDeviceView;

// Base of everything that listens to the device. Construction registers the object in the process-wide list,
// destruction removes it; both may happen during a delivery. Listeners are called in the order of their construction,
// always on the main thread. Pointers in the arguments are valid during the call only. Every operation is empty by
// default, except OnJobDone. "Done" means that the job succeeded, "Failed" that it did not; the arguments are the
// job's own.
class CDeviceEventListener {
public:
  CDeviceEventListener();
  virtual ~CDeviceEventListener();
  CDeviceEventListener(const CDeviceEventListener&) = delete;
  CDeviceEventListener& operator=(const CDeviceEventListener&) = delete;

  // Takes a finished job. The default calls the operation below that belongs to the job's type and status, preceded by
  // OnDeviceWriteAccess for a write to the target in a session that is ready, and followed by the operations that
  // summarise: halt after reset, stepped after a step, state changed after a breakpoint job.
  virtual void OnJobDone(const DEVICE_JOB& Job);

  virtual void OnDeviceConnectDone(CONNECT_MODES) {}
  virtual void OnDeviceConnectFailed(CONNECT_MODES) {}
  virtual void OnDeviceDisconnectDone() {}
  virtual void OnDeviceDisconnectFailed() {}
  virtual void OnDeviceResumeDone(RESUME_MODES) {}
  virtual void OnDeviceResumeFailed(RESUME_MODES) {}
  virtual void OnDeviceHaltDone(U32 /*PC*/, HALT_REASONS) {}
  virtual void OnDeviceHaltFailed() {}
  virtual void OnDeviceResetDone(U32 /*PC*/, RESET_MODES) {}
  virtual void OnDeviceResetFailed(U32 /*PC*/, RESET_MODES) {}
  virtual void OnDeviceRunToSymbolDone(U32 /*Addr*/) {}
  virtual void OnDeviceRunToSymbolFailed(U32 /*Addr*/) {}

  virtual void OnDeviceStepInstDone(U32 /*PC*/) {}
  virtual void OnDeviceStepInstFailed(U32 /*PC*/) {}
  virtual void OnDeviceStepIntoDone(U32 /*PC*/) {}
  virtual void OnDeviceStepIntoFailed(U32 /*PC*/) {}
  virtual void OnDeviceStepOverDone(U32 /*PC*/) {}
  virtual void OnDeviceStepOverFailed(U32 /*PC*/) {}
  virtual void OnDeviceStepOutDone(U32 /*PC*/) {}
  virtual void OnDeviceStepOutFailed(U32 /*PC*/) {}
  // After every step job, whatever its kind or outcome.
  virtual void OnDeviceStepped(U32 /*PC*/) {}

  virtual void OnDeviceEndDownloadDone(const char* /*sFileName*/) {}
  virtual void OnDeviceEndDownloadFailed(const char* /*sFileName*/, int /*Error*/) {}

  // Results of reads of memory, registers and locations reach the data provider only; ask it for data.
  virtual void OnDeviceReadMemDone(U32 /*Addr*/, U32 /*NumBytes*/, U8* /*paData*/, U8* /*paStatus*/) {}
  virtual void OnDeviceReadMemFailed(U32 /*Addr*/, U32 /*NumBytes*/) {}
  virtual void OnDeviceWriteMemDone(U32 /*Addr*/, U32 /*NumBytes*/, U8* /*paData*/) {}
  virtual void OnDeviceWriteMemFailed(U32 /*Addr*/, U32 /*NumBytes*/, U8* /*paData*/) {}
  // Ranges are pairs of start and exclusive end.
  virtual void OnDeviceWriteMemMultipleDone(U32 /*NumRanges*/, U32* /*paRanges*/, U8* /*paData*/) {}
  virtual void OnDeviceWriteMemMultipleFailed(U32 /*NumRanges*/, U32* /*paRanges*/, U8* /*paData*/) {}
  virtual void OnDeviceReadRegDone(U32 /*VNodeRegIdx*/, U64 /*Value*/) {}
  virtual void OnDeviceReadRegFailed(U32 /*VNodeRegIdx*/) {}
  virtual void OnDeviceReadCPRegDone(const char* /*sReg*/, U64 /*Value*/) {}
  virtual void OnDeviceReadCPRegFailed(const char* /*sReg*/) {}
  virtual void OnDeviceWriteRegDone(U32 /*VNodeRegIdx*/, U64 /*Value*/) {}
  virtual void OnDeviceWriteRegFailed(U32 /*VNodeRegIdx*/) {}
  virtual void OnDeviceWriteCPRegDone(const char* /*sReg*/, U64 /*Value*/) {}
  virtual void OnDeviceWriteCPRegFailed(const char* /*sReg*/) {}
  virtual void OnDeviceReadRegsDone(U32 /*Cnt*/, U32* /*paIndex*/, U64* /*paValue*/, U8* /*paStatus*/) {}
  virtual void OnDeviceReadRegsFailed(U32 /*Cnt*/, U32* /*paIndex*/) {}
  virtual void OnDeviceReadLocDone(const ELF_SYM_LOC&, U32 /*NumBytes*/, U8* /*paData*/) {}
  virtual void OnDeviceReadLocFailed(const ELF_SYM_LOC&, U32 /*NumBytes*/) {}
  // Tag is handed back as it was given to ScheduleReadLocs.
  virtual void OnDeviceReadLocsDone(U32 /*Cnt*/, ELF_SYM_LOC* /*paLocs*/, U64* /*paValues*/, U8* /*paStatus*/,
                                    U32 /*Tag*/) {}
  virtual void OnDeviceReadLocsFailed(U32 /*Cnt*/, ELF_SYM_LOC* /*paLocs*/, U32 /*Tag*/) {}
  virtual void OnDeviceWriteLocDone(const ELF_SYM_LOC&, U32 /*NumBytes*/) {}
  virtual void OnDeviceWriteLocFailed(const ELF_SYM_LOC&, U32 /*NumBytes*/) {}

  virtual void OnDeviceEnableInstTraceDone() {}
  virtual void OnDeviceEnableInstTraceFailed() {}
  virtual void OnDeviceDisableInstTraceDone() {}
  virtual void OnDeviceDisableInstTraceFailed() {}
  virtual void OnDeviceStartInstTraceDone() {}
  virtual void OnDeviceStartInstTraceFailed() {}
  virtual void OnDeviceStopInstTraceDone() {}
  virtual void OnDeviceStopInstTraceFailed() {}
  virtual void OnDeviceFlushInstTraceDone() {}
  virtual void OnDeviceFlushInstTraceFailed() {}
  virtual void OnDeviceReadInstStatsDone(U32 /*NumRanges*/, U32* /*paRanges*/, U32 /*NumItems*/, U64 /*TotalFetch*/,
                                         U64 /*TotalSkip*/, U8* /*paFetch*/, U8* /*paSkip*/) {}
  virtual void OnDeviceReadInstStatsFailed(U32 /*NumRanges*/, U32* /*paRanges*/) {}
  virtual void OnDeviceReadInstTraceDone(U32 /*NumRequested*/, U32 /*Cnt*/, U32 /*bFewer*/, U32 /*bTargetRan*/,
                                         U8* /*paData*/) {}
  virtual void OnDeviceReadInstTraceFailed(U32 /*NumRequested*/) {}

  virtual void OnDeviceStartSWODone(U32 /*CPUSpeedHz*/, U32 /*SWOSpeedHz*/, U32 /*PortMask*/) {}
  virtual void OnDeviceStartSWOFailed(U32 /*CPUSpeedHz*/, U32 /*SWOSpeedHz*/, U32 /*PortMask*/) {}
  virtual void OnDeviceStopSWODone(U32 /*PortMask*/) {}
  virtual void OnDeviceStopSWOFailed(U32 /*PortMask*/) {}
  virtual void OnDeviceReadSWODone(U32 /*Port*/, U32 /*NumRequested*/, U32 /*Cnt*/, U8* /*paData*/) {}
  virtual void OnDeviceReadSWOFailed(U32 /*Port*/, U32 /*NumRequested*/) {}
  virtual void OnDeviceGetSWOSpeedsDone(U32 /*CPUSpeedHz*/, U32 /*NumItems*/, U32* /*paSpeedsHz*/) {}
  virtual void OnDeviceGetSWOSpeedsFailed(U32 /*CPUSpeedHz*/, U32 /*NumItems*/, U32* /*paSpeedsHz*/) {}
  virtual void OnDeviceStartHSSDone(U32 /*NumRanges*/, U32* /*paRanges*/, int /*IntervalUS*/) {}
  virtual void OnDeviceStartHSSFailed(U32 /*NumRanges*/, U32* /*paRanges*/, int /*IntervalUS*/) {}
  virtual void OnDeviceStopHSSDone() {}
  virtual void OnDeviceStopHSSFailed() {}
  virtual void OnDeviceReadHSSDone(U32 /*NumRequested*/, U32 /*Cnt*/, U8* /*paData*/) {}
  virtual void OnDeviceReadHSSFailed(U32 /*NumRequested*/) {}
  virtual void OnDeviceStartRTTDone() {}
  virtual void OnDeviceStartRTTFailed() {}
  virtual void OnDeviceStopRTTDone() {}
  virtual void OnDeviceStopRTTFailed() {}
  virtual void OnDeviceWriteRTTDone(U32 /*Buffer*/, U32 /*NumBytes*/, U8* /*paData*/) {}
  virtual void OnDeviceWriteRTTFailed(U32 /*Buffer*/, U32 /*NumBytes*/, U32 /*NumWritten*/, U8* /*paData*/) {}
  virtual void OnDeviceReadRTTDone(U32 /*Buffer*/, U32 /*NumRequested*/, U32 /*Cnt*/, U8* /*paData*/) {}
  virtual void OnDeviceReadRTTFailed(U32 /*Buffer*/, U32 /*NumRequested*/) {}
  virtual void OnDeviceSetSHInputDone(U32 /*Length*/, const char* /*sText*/) {}
  virtual void OnDeviceSetSHInputFailed(U32 /*Length*/, const char* /*sText*/) {}

  virtual void OnDeviceSetBPDone(U32 /*Addr*/) {}
  virtual void OnDeviceSetBPFailed(U32 /*Addr*/) {}
  virtual void OnDeviceSetBPsDone(U32 /*Cnt*/, U32* /*paAddr*/) {}
  virtual void OnDeviceSetBPsFailed(U32 /*Cnt*/, U32* /*paAddr*/) {}
  virtual void OnDeviceClearBPDone(U32 /*Addr*/) {}
  virtual void OnDeviceClearBPFailed(U32 /*Addr*/) {}
  virtual void OnDeviceClearBPsDone(U32 /*Cnt*/, U32* /*paAddr*/) {}
  virtual void OnDeviceClearBPsFailed(U32 /*Cnt*/, U32* /*paAddr*/) {}
  virtual void OnDeviceClearAllBPsDone() {}
  virtual void OnDeviceClearAllBPsFailed() {}
  virtual void OnDeviceResetBPsDone() {}
  virtual void OnDeviceResetBPsFailed() {}
  virtual void OnDeviceSetWPsDone(U32 /*Cnt*/, WP* /*paWPs*/) {}
  virtual void OnDeviceSetWPsFailed(U32 /*Cnt*/, WP* /*paWPs*/) {}
  virtual void OnDeviceClearWPsDone(U32 /*Cnt*/, WP* /*paWPs*/) {}
  virtual void OnDeviceClearWPsFailed(U32 /*Cnt*/, WP* /*paWPs*/) {}
  virtual void OnDeviceClearAllWPsDone() {}
  virtual void OnDeviceClearAllWPsFailed() {}

  virtual void OnDeviceConfigureDone(const char* /*sXML*/) {}
  virtual void OnDeviceConfigureFailed(const char* /*sXML*/) {}
  virtual void OnDeviceSetConfigTextDone(DEV_CONFIG_PARAMS, const char* /*sText*/) {}
  virtual void OnDeviceSetConfigValueDone(DEV_CONFIG_PARAMS, int /*Value*/) {}
  virtual void OnDeviceSetConfigTextFailed(DEV_CONFIG_PARAMS, const char* /*sText*/) {}
  virtual void OnDeviceSetConfigValueFailed(DEV_CONFIG_PARAMS, int /*Value*/) {}
  virtual void OnDeviceExecCmdDone(const char* /*sCommand*/) {}
  virtual void OnDeviceExecCmdFailed(const char* /*sCommand*/, const char* /*sReply*/) {}
  virtual void OnDeviceSetTargetExecStateDone(U64 /*PC*/, U64 /*SP*/) {}
  virtual void OnDeviceSetTargetExecStateFailed(U64 /*PC*/, U64 /*SP*/) {}
  virtual void OnDeviceResetTargetExecStateDone() {}
  virtual void OnDeviceResetTargetExecStateFailed() {}
  virtual void OnDeviceGetDeviceInfoDone(const char* /*sDevice*/, U32 /*Core*/) {}
  virtual void OnDeviceGetDeviceInfoFailed(const char* /*sDevice*/) {}
  virtual void OnDeviceMeasureCoreSpeedDone(U32 /*SpeedHz*/) {}
  virtual void OnDeviceMeasureCoreSpeedFailed() {}

  // A conditional breakpoint at Addr was hit; the listener that knows the condition continues the halt sequence.
  virtual void OnDeviceEvalBPCondition(U32 /*Addr*/) {}
  virtual void OnDeviceConfigParamChanged(int /*Param*/, int /*Value*/) {}
  virtual void OnDeviceHWCapabilityChanged(int /*Capability*/, int /*Value*/) {}
  virtual void OnDeviceConnectionLost() {}
  virtual void OnDeviceAboutToDisconnect() {}
  virtual void OnDeviceBeforeStep() {}
  virtual void OnDeviceBeforeResume() {}
  virtual void OnDeviceCPUModeChanged(U32 /*Mode*/) {}
  virtual void OnDeviceExecModeChanged(U32 /*Mode*/) {}
  virtual void OnDeviceEndianessChanged(int /*InstEndian*/, int /*DataEndian*/) {}
  virtual void OnDeviceLogMsg(const char* /*sText*/, MSG_INFO_FLAGS) {}
  virtual void OnDeviceSetStatusMsg(const char* /*sText*/) {}
  virtual void OnDeviceSetProgressMsg(const char* /*sText*/) {}
  virtual void OnDeviceStartProgress(int /*Min*/, int /*Max*/) {}
  virtual void OnDeviceEndProgress() {}
  virtual void OnDeviceSetProgressValue(int /*Value*/) {}
  virtual void OnDeviceWPStateChanged() {}
  virtual void OnDeviceBPStateChanged() {}
  virtual void OnDeviceWriteAccess() {}

  // Calls Call(Listener) for every registered listener in order. A listener that is destroyed meanwhile is left out,
  // one that is created meanwhile is called too. Main thread.
  template <typename F>
  static void ForEach(F&& Call) {
    BeginDelivery();
    for (size_t i = 0; i < NumListeners(); ++i) {
      if (CDeviceEventListener* pListener = ListenerAt(i)) Call(*pListener);
    }
    EndDelivery();
  }

  // The state that OnJobDone consults (session ready, current PC). CDevice plugs itself in; null means a session that
  // is not ready.
  static void SetView(const CDeviceView* pView);

  // Called with each listener that is destroyed, so that nobody keeps a pointer to it. Empty: nobody cares.
  static void SetDestroyHook(void (*pfHook)(CDeviceEventListener*));

private:
  static void BeginDelivery();
  static void EndDelivery();
  static size_t NumListeners();
  static CDeviceEventListener* ListenerAt(size_t Index);  // null where a listener was destroyed during a delivery
};
