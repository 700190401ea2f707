#include "device/device.h"

#include <QCoreApplication>
#include <QElapsedTimer>

#include "core/vcore.h"
#include "device/device_data_provider.h"
#include "device/device_log.h"
#include "device/event_raiser.h"
#include "device/job_dispatch.h"
#include "device/job_wait.h"
#include "device/probe_api/register_index.h"
#include "shell/log/log.h"

namespace {

constexpr std::chrono::milliseconds READ_LOC_LIMIT(150);
constexpr int END_WAIT_MS = 10;
constexpr int END_EVENTS_PER_WAIT = 100;

CDevice* pTheDevice = nullptr;
QString sLibraryFolder;

bool IsCortexM(U32 CoreFamily) {
  return CoreFamily == 1 || CoreFamily == 3 || CoreFamily == 6 || CoreFamily == 14;
}

}  // namespace

// What the device is made of, in the order in which it is built up.
struct DEVICE_PARTS {
  DEVICE_PARTS(CDevice& Device, CEventRaiser::PLUGS Plugs)
      : Delivery(Rings, Events, Texts, Device),
        Raiser(Rings, Events, Texts, Delivery, std::move(Plugs)),
        Ctx(Raiser, Program),
        Ops(Ctx),
        Dispatch(Ops, [this](DEVICE_JOB& Job) { return Raiser.RaiseJobFinished(Job); }),
        Loop(Rings, Dispatch) {}

  CJobRings Rings;
  CEventRing Events;
  CTextRing Texts;
  CEventDelivery Delivery;
  CEventRaiser Raiser;
  CProgramAccess Program;
  CDeviceContext Ctx;
  CDeviceOps Ops;
  CJobDispatch Dispatch;
  CJobLoop Loop;
};

CDevice& CDevice::Get() {
  if (pTheDevice == nullptr) {
    pTheDevice = new CDevice;
    pTheDevice->start();
  }
  return *pTheDevice;
}

bool CDevice::Exists() {
  return pTheDevice != nullptr;
}

void CDevice::SetLibraryFolder(const QString& sFolder) {
  sLibraryFolder = sFolder;
}

CDevice::CDevice() {
  CEventRaiser::PLUGS Plugs;
  Plugs.Wake = [this] { Q_EMIT EventsAvailable(); };
  Plugs.IsSuppressed = [this](U32 Type) { return pParts->Loop.IsSuppressed(Type); };
  Plugs.ScheduleContinue = [this](RESUME_MODES Mode) { ScheduleContinue(Mode); };
  pParts = std::make_unique<DEVICE_PARTS>(*this, std::move(Plugs));
  CDeviceEventListener::SetView(this);
  pParts->Delivery.SetModeSources([this] { return CPUMode(); }, [this] { return ExecMode(); });
  pParts->Ctx.LoadLibrary(sLibraryFolder);
}

CDevice::~CDevice() {
  Shutdown();
}

void CDevice::run() {
  setPriority(QThread::LowestPriority);
  pParts->Ops.Info.UpdateAll();
  pParts->Loop.Run();
  std::lock_guard Lock(Mutex());
  pParts->Ops.Connection.Disconnect();
}

void CDevice::Shutdown() {
  pParts->Ctx.State.bTerminate = true;
  pParts->Rings.Cancel(JT_ANY, JQ_ALL);
  pParts->Loop.RequestEnd();
  while (!wait(END_WAIT_MS)) ProcessEvents(END_EVENTS_PER_WAIT);
}

bool CDevice::IsTerminating() const {
  return pParts->Loop.IsEnding();
}

int CDevice::ScheduleJob(DEVICE_JOB* pJob) {
  if (pJob == nullptr) return -1;
  const QString sName = QLatin1String(JobTypeName(pJob->Type));
  switch (pParts->Rings.Schedule(*pJob)) {
    case CJobRings::SCHEDULED:
      if (IsLogSinkActive(DEVICE_LOG_DEBUG)) LogText(QStringLiteral("Job scheduled: %1").arg(sName), DEVICE_LOG_DEBUG);
      return 0;
    case CJobRings::QUEUE_FULL:
      LogText(QStringLiteral("Job %1 not scheduled. Queue is full.").arg(sName), DEVICE_LOG_WARN);
      return -1;
    default:
      return -1;
  }
}

int CDevice::RequestDynParam(DEVICE_JOB& Job, U32 Index, U64 NumBytes) {
  const QString sName = QLatin1String(JobTypeName(Job.Type));
  switch (AllocDynParam(Job, Index, NumBytes)) {
    case DYN_OK:
      return 0;
    case DYN_ALREADY_TAKEN:
      LogText(QStringLiteral("Job %1 has unallocated parameter.").arg(sName), DEVICE_LOG_WARN);
      return -1;
    default:
      LogText(QStringLiteral("Size limit exceeded for dynamic parameter of job %1.").arg(sName), DEVICE_LOG_WARN);
      return -1;
  }
}

bool CDevice::IsJobPending(U32 Type) const {
  return pParts->Rings.FindPending(Type).pJob != nullptr;
}

bool CDevice::IsQueueBusy(U32 Queue) const {
  return pParts->Rings.FindPending(JT_ANY, Queue).pJob != nullptr;
}

JOB_COUNTS CDevice::JobCounts() const {
  const CJobRings::COUNTERS& Counters = pParts->Rings.Counters;
  return {Counters.NumScheduled, Counters.NumExecuted, Counters.NumCancelled, Counters.NumPosted, Counters.NumReleased};
}

int CDevice::WaitForJob(U32 Type, bool bProcessEvents, int TimeoutMS) {
  JOB_WAIT_HOOKS Hooks;
  Hooks.IsThreadAlive = [this] { return isRunning() && !IsTerminating(); };
  Hooks.IsStepping = [this] { return IsStepping(); };
  if (bProcessEvents) Hooks.ProcessEvents = [] { QCoreApplication::processEvents(); };
  const JOB_WAIT_RESULT Result = WaitForPendingJob(pParts->Rings, Type, TimeoutMS, Hooks);
  if (Result == JOB_WAIT_TIMEOUT) {
    LogText(QStringLiteral("Timeout while waiting for Job %1").arg(QLatin1String(JobTypeName(Type))), DEVICE_LOG_WARN);
  }
  return Result;
}

void CDevice::CancelJobs(U32 Type, U32 Queue) {
  pParts->Rings.Cancel(Type, Queue);
}

void CDevice::SetSuppressEvent(U32 Type, bool bSuppress) {
  pParts->Loop.SetSuppressed(Type, bSuppress);
}

void CDevice::PostJobEvent(U32 Type, U32 Status, U64 P0, U64 Result, U64 Result2) {
  pParts->Raiser.PostJobEvent(Type, Status, P0, Result, Result2);
}

int CDevice::ProcessEvents(int MaxEvents) {
  const int NumEvents = pParts->Delivery.ProcessEvents(MaxEvents);
  if (pParts->Events.IsEmpty()) pParts->Raiser.WakeHandled();
  return NumEvents;
}

bool CDevice::HasEvents() const {
  return !pParts->Events.IsEmpty();
}

void CDevice::RequestFinishConnect(CONNECT_MODES Mode) {
  pParts->Ctx.State.Requests.PendingConnectMode = Mode;
  pParts->Rings.Wake();
}

void CDevice::RequestFinishReset(RESET_MODES Mode) {
  pParts->Ctx.State.Requests.PendingResetMode = Mode;
  pParts->Rings.Wake();
}

void CDevice::RequestInitRegsAfterDownload() {
  pParts->Ctx.State.Requests.bInitRegsPending = true;
  pParts->Rings.Wake();
}

bool CDevice::IsRequestPending() const {
  // In this order: a request that was taken is being handled until its event is there.
  const DEVICE_REQUESTS& Requests = pParts->Ctx.State.Requests;
  return Requests.PendingConnectMode != NO_REQUEST || Requests.PendingResetMode != NO_REQUEST ||
         Requests.bInitRegsPending || Requests.bHandling;
}

bool CDevice::IsHaltUnderWay() const {
  const DEVICE_EXEC_FLAGS& Exec = pParts->Ctx.State.Exec;
  return IsConnected() && !IsConnectionLost() && (Exec.bUserHalt || Exec.bHaltPending);
}

bool CDevice::WaitUntilHalted(int TimeoutMS) {
  QElapsedTimer Timer;
  Timer.start();
  // A halt whose sequence goes on is not reported yet.
  while ((!IsHalted() || IsHaltUnderWay()) && Timer.elapsed() < TimeoutMS) QThread::msleep(1);
  return IsHalted();
}

bool CDevice::IsConnected() const {
  return pParts->Ctx.IsConnected();
}
bool CDevice::IsConnectionLost() const {
  return pParts->Ctx.IsConnectionLost();
}
bool CDevice::IsAccessible() const {
  return pParts->Ctx.State.Exec.bAccessible;
}
bool CDevice::IsSessionReady() const {
  return pParts->Ctx.State.Exec.bSessionReady;
}
bool CDevice::IsStepping() const {
  return pParts->Ctx.State.Exec.bStepping;
}
bool CDevice::IsHalted() const {
  return pParts->Ctx.State.Exec.bHalted;
}
U64 CDevice::GetPC() const {
  return pParts->Ctx.State.Target.PC;
}
U32 CDevice::PCIndex() const {
  return pParts->Program.MapRegIndex(VNODE_REG_PC);
}
U64 CDevice::GetSP() const {
  return pParts->Ctx.State.Target.SP;
}
CDeviceContext& CDevice::Context() {
  return pParts->Ctx;
}
const CDeviceContext& CDevice::Context() const {
  return pParts->Ctx;
}
CDeviceOps& CDevice::Ops() {
  return pParts->Ops;
}
CJobDispatch& CDevice::Dispatch() {
  return pParts->Dispatch;
}
CDeviceMutex& CDevice::Mutex() {
  return pParts->Loop.DeviceMutex();
}

void CDevice::SetSessionReady() {
  pParts->Ops.Halts.SetSessionReady();
}

void CDevice::FinishHaltSeq(U32 PC, bool bHaltStands) {
  pParts->Ops.Halts.FinishHaltSeq(PC, bHaltStands);
}

void CDevice::SetDataProvider(CDeviceDataProvider* pProvider) {
  pParts->Delivery.SetDataReceiver(pProvider);
}

int CDevice::ReadLocNow(const ELF_SYM_LOC& Loc, U32 NumBytes, U8* paData) {
  std::unique_lock Lock(Mutex(), READ_LOC_LIMIT);
  if (!Lock) return BUSY;
  return pParts->Ops.Locations.ReadLoc(Loc, NumBytes, paData);
}

U32 CDevice::MapRegIndex(U32 LogicReg) {
  return pParts->Program.MapRegIndex(LogicReg);
}

U32 CDevice::NumRegs() {
  return VCore::IsInitialised() ? std::max<U32>(VCore::GetInfo().NumRegs, VNODE_NUM_REGS) : 0;
}

void CDevice::Announce(U32 EventType) {
  pParts->Raiser.Raise({EventType, 0, 0});
}

void CDevice::LogText(const QString& sText, U32 Flags) {
  pParts->Raiser.Log(sText, Flags);
}

// The cores of the Cortex-M group have no such modes.
U32 CDevice::CPUMode() {
  U64 Value = 0;
  const bool bHasModes = !IsCortexM(pParts->Ctx.Facts.Get().CoreFamily);
  if (!bHasModes || !CDeviceDataProvider::Get().CachedReg(MapRegIndex(VCORE_REG_PSR), Value)) {
    return CEventDelivery::NO_MODE;
  }
  return static_cast<U32>(Value) & 0x1F;
}

U32 CDevice::ExecMode() {
  if (IsCortexM(pParts->Ctx.Facts.Get().CoreFamily)) return VCORE_MODE_THUMB;
  return VCore::IsInitialised() ? VCore::GetExecMode(static_cast<U32>(GetPC())) : CEventDelivery::NO_MODE;
}
