#pragma once

#include <memory>

#include <QThread>

#include "base/elf_sym.h"
#include "base/msg_flags.h"
#include "device/device_access.h"
#include "device/device_job.h"
#include "device/device_mutex.h"
#include "device/device_types.h"

class CDeviceContext;
class CDeviceDataProvider;
class CDeviceOps;
class CJobDispatch;
struct DEVICE_PARTS;

// The debug target. A process-wide object that owns the device thread, the job rings and the event ring; created on
// first use, alive until exit. Callers on the main thread schedule jobs and hear the outcome as CDeviceEventListener;
// nothing here waits for the probe except WaitForJob and WaitUntilHalted. The work itself is done by the classes that
// JobDispatch calls.
//
// Every Schedule operation copies its arguments, returns at once and gives 0, or -1 when the job did not go in (ring
// full or bad arguments, logged).
class CDevice : public QThread, public CDeviceAccess {
  Q_OBJECT
public:
  // The one device. The first call creates it, loads the probe library and starts the device thread; it belongs to the
  // main thread.
  static CDevice& Get();
  // Folder of the probe library; before the first Get. Without it the application's own folder.
  static void SetLibraryFolder(const QString& sFolder);
  // Whether Get() was called already.
  static bool Exists();

  // --- Session
  int ScheduleConnect(CONNECT_MODES Mode);
  // Connects without the steps that complete a connection; the caller posts the rest (RequestFinishConnect).
  int ScheduleConnectSimple();
  int ScheduleDisconnect();
  int ScheduleConfigure(const char* sXML);
  int ScheduleSetConfigParam(DEV_CONFIG_PARAMS Param, int Value);
  int ScheduleSetConfigParam(DEV_CONFIG_PARAMS Param, const char* sText);
  int ScheduleGetDeviceInfo(const char* sDevice);
  int ScheduleExecVNodeCmd(const char* sCommand);
  int ScheduleMeasureCoreSpeed();

  // --- Run control. ScheduleContinue and the step operations first tell the listeners (OnDeviceBeforeResume,
  // OnDeviceBeforeStep): at once on the main thread, through the event ring elsewhere.
  int ScheduleReset(RESET_MODES Mode);
  int ScheduleHalt();
  int ScheduleContinue(RESUME_MODES Mode = GO_USER);
  int ScheduleStepInst();
  int ScheduleStepInto();
  int ScheduleStepOver();
  int ScheduleStepOut();
  int ScheduleRunTo(U32 Addr);
  int ScheduleSetTargetExecState(U64 PC, U64 SP);
  int ScheduleResetTargetExecState();

  // --- Breakpoints and data breakpoints
  int ScheduleSetBreakpoint(U32 Addr, BP_STATES State, BP_TYPES Type);
  int ScheduleSetBreakpoints(U32 Cnt, const U32* paAddr, BP_STATES State, BP_TYPES Type);
  int ScheduleClearBreakpoint(U32 Addr);
  int ScheduleClearBreakpoints(U32 Cnt, const U32* paAddr);
  int ScheduleClearAllBreakpoints();
  int ScheduleResetBreakpoints();
  // What the main thread keeps of a breakpoint has changed: listeners hear OnDeviceBPStateChanged in its turn.
  int ScheduleEditBreakpoint();
  int ScheduleSetWatchpoints(U32 Cnt, const WP* paWPs);
  int ScheduleClearWatchpoints(U32 Cnt, const WP* paWPs);
  int ScheduleClearAllWatchpoints();

  // --- Memory, registers, locations. AW: 0 auto, 1, 2, 4 bytes, 255 the value of VAR_ACCESS_WIDTH. ChunkSize in bytes,
  // 0 for one transfer. Flags: MEM_FLAGS. Ranges are pairs of start and exclusive end, paData their bytes in turn.
  int ScheduleReadMem(U32 Addr, U32 NumBytes, U32 ChunkSize, U8 AW, U32 Flags) override;
  int ScheduleWriteMem(U32 Addr, U32 NumBytes, U32 ChunkSize, U8 AW, U32 Flags, const U8* paData);
  int ScheduleWriteMemMultiple(U32 NumRanges, const U32* paRanges, U32 NumBytes, const U8* paData, U32 ChunkSize, U8 AW,
                               U32 Flags);
  int ScheduleReadReg(U32 VNodeRegIdx) override;
  int ScheduleReadRegs(U32 Cnt, const U32* paIndex) override;
  int ScheduleReadCPReg(const char* sReg) override;
  int ScheduleWriteReg(U32 VNodeRegIdx, U64 Value);
  int ScheduleWriteCPReg(const char* sReg, U64 Value);
  // NumBytes: at most 8.
  int ScheduleReadLoc(const ELF_SYM_LOC& Loc, U32 NumBytes) override;
  // Tag comes back with the answer.
  int ScheduleReadLocs(U32 Cnt, const ELF_SYM_LOC* paLocs, U32 Tag);
  int ScheduleWriteLoc(const ELF_SYM_LOC& Loc, U32 NumBytes, const U8* paData);
  int ScheduleEndDownload(bool bHaltFirst, const char* sFileName);

  // --- Terminal and sampling; see CDeviceChannels. Frequencies in Hz, 0 for what was measured and what goes with it.
  int ScheduleStartSWOTrace(U32 CpuHz, U32 SWOHz);
  int ScheduleStopSWOTrace(U32 PortMask);
  int ScheduleReadSWOTrace();
  int ScheduleStartRTT();
  int ScheduleStopRTT();
  int ScheduleReadRTT();
  int ScheduleWriteRTT(U32 NumBytes, const U8* paData);
  // paAddrRanges: Cnt pairs of start and exclusive end.
  int ScheduleStartHSS(U32 Cnt, const U32* paAddrRanges, int IntervalUs, int Flags);
  int ScheduleStopHSS();
  int ScheduleReadHSS();

  // --- Instruction trace; see CInstTraceChannel
  int ScheduleEnableInstTrace();
  int ScheduleDisableInstTrace();
  int ScheduleStartInstTrace();
  int ScheduleStopInstTrace();
  int ScheduleReadInstTrace();
  int ScheduleFlushInstTrace();
  // paRanges: pairs of start and exclusive end.
  int ScheduleReadInstStats(U32 NumRanges, const U32* paRanges);

  // --- Jobs in general; any thread unless said otherwise.
  // Takes ownership of the job's dynamic parameters in every case. 0, or -1 when refused.
  int ScheduleJob(DEVICE_JOB* pJob);
  // Gives a job on the caller's stack a zero-filled dynamic parameter and logs why it did not. 0 or -1.
  int RequestDynParam(DEVICE_JOB& Job, U32 Index, U64 NumBytes);
  // The same with a copy of data.
  int CopyDynParam(DEVICE_JOB& Job, U32 Index, const void* pData, U64 NumBytes);
  // Whether a job of the type (JT_STEP and JT_ANY select several) waits or is being executed.
  bool IsJobPending(U32 Type) const;
  // Whether any job of a ring (JOB_QUEUES, JQ_ALL) waits or is being executed.
  bool IsQueueBusy(U32 Queue) const;
  // For tests and tools: whether jobs get lost.
  JOB_COUNTS JobCounts() const;
  // Waits for the first job of the type. 0 when it is finished (a step job also when the device has stopped stepping),
  // 1 when there was none, -1 after TimeoutMS (-1: the type's own) or when the device thread ends. With bProcessEvents
  // the Qt event loop runs meanwhile. Main thread.
  int WaitForJob(U32 Type, bool bProcessEvents, int TimeoutMS = -1);
  // Takes back all cancellable jobs of the type that have not begun. Queue: JOB_QUEUES.
  void CancelJobs(U32 Type, U32 Queue) override;
  // Drops the finished-event of a job type as long as it is set; see CMainWindow's script-driven connect and reset.
  void SetSuppressEvent(U32 Type, bool bSuppress);
  // Reports something as a finished job that nobody scheduled.
  void PostJobEvent(U32 Type, U32 Status, U64 P0, U64 Result = 0, U64 Result2 = 0);
  // Delivers at most MaxEvents events to the listeners; main thread. Returns the number taken.
  int ProcessEvents(int MaxEvents) override;
  // Whether events wait for delivery.
  bool HasEvents() const;

  // --- Completing work for the device thread after a script function replaced a built-in operation.
  void RequestFinishConnect(CONNECT_MODES Mode);
  void RequestFinishReset(RESET_MODES Mode);
  void RequestInitRegsAfterDownload();
  // Whether one of them is on its way: from the request until its event is among those that HasEvents tells of.
  bool IsRequestPending() const;
  // Whether the target has been asked to halt, or has halted, and has not been reported yet.
  bool IsHaltUnderWay() const;
  // Waits without the event loop; false after TimeoutMS.
  bool WaitUntilHalted(int TimeoutMS);

  // --- State; any thread.
  bool IsConnected() const override;
  bool IsAccessible() const override;
  bool IsSessionReady() const override;
  bool IsStepping() const override;
  bool IsConnectionLost() const;
  bool IsHalted() const;
  U64 GetPC() const override;
  U32 PCIndex() const override;
  U64 GetSP() const;
  // The whole state: flags, execution state, capabilities, configuration. See device_context.h for who may write what.
  CDeviceContext& Context();
  const CDeviceContext& Context() const;

  // Operations that may be called on any thread, and the pieces that plug in: see device_ops.h and device_context.h.
  CDeviceOps& Ops();
  // To add handlers of job types; see CJobDispatch::SetHandler.
  CJobDispatch& Dispatch();
  // Held by the device thread while it works on jobs: lock it to swap what jobs use. A job may take minutes; whoever
  // must not wait that long sets a limit, see CDeviceMutex.
  CDeviceMutex& Mutex();

  // Called by the session controller when a session start has finished: halts are reported from now on, and the
  // present one is when the target is accessible.
  void SetSessionReady();

  // The verdict on the condition of the breakpoint at PC, after OnDeviceEvalBPCondition: a halt that stands is
  // reported, otherwise the target runs on.
  void FinishHaltSeq(U32 PC, bool bHaltStands);

  // Who gets the answers of memory, register and location reads.
  void SetDataProvider(CDeviceDataProvider* pProvider);
  int ReadLocNow(const ELF_SYM_LOC& Loc, U32 NumBytes, U8* paData) override;
  U32 MapRegIndex(U32 LogicReg) override;
  U32 NumRegs() override;
  void LogText(const QString& sText, U32 Flags) override;

  // Ends the device thread, tearing a connection down, while pumping its events; main thread, at exit. Jobs still
  // pending are cancelled.
  void Shutdown();
  // Whether the end of the thread was requested.
  bool IsTerminating() const;

Q_SIGNALS:
  // Events wait; not emitted again before ProcessEvents has found the ring empty. Emitted on whatever thread raised
  // one.
  void EventsAvailable();

protected:
  void run() override;

private:
  CDevice();
  ~CDevice() override;
  int ScheduleSimple(U32 Type, U64 P0 = 0, U64 P1 = 0, U64 P2 = 0);
  int ScheduleStep(U32 Type);
  int ScheduleText(U32 Type, const char* sText, U64 P0 = 0);
  int ScheduleCopied(U32 Type, U64 Cnt, const void* pData, U64 NumBytes, U64 P1 = 0, U64 P2 = 0);
  // Schedules when Result is 0, else frees what the job has. 0 or -1.
  int Finish(DEVICE_JOB& Job, int Result);
  U64 AccessWidth(U8 AW) const;
  // Raises an event without parameters (DEVICE_EVENT_TYPES).
  void Announce(U32 EventType);
  U32 CPUMode();
  U32 ExecMode();

  std::unique_ptr<DEVICE_PARTS> pParts;
};
