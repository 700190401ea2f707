// What the device has made of the breakpoints, and halts at them.

#include <algorithm>
#include <utility>

#include <QTimer>

#include "base/text.h"
#include "device/breakpoints/breakpoint_manager.h"
#include "device/device.h"
#include "device/device_context.h"
#include "device/device_event_worker.h"
#include "device/device_ops.h"
#include "shell/log/console_print.h"
#include "shell/log/log.h"

namespace {

constexpr int MAX_REASONS = 64;    // texts of failures that are kept until the breakpoints are known
constexpr int MAX_PROBLEMS = 256;  // breakpoints that could not be set and are shown nevertheless

CDevice& Device() {
  return CDevice::Get();
}

// The latest reason that names the address, without its name, otherwise the latest that speaks of breakpoints.
QString ReasonFor(U32 Addr, const QStringList& Reasons) {
  const QString sAddr = AddrText(Addr) + QLatin1String(": ");
  for (qsizetype i = Reasons.size(); i-- > 0;) {
    const qsizetype Start = Reasons[i].indexOf(sAddr, 0, Qt::CaseInsensitive);
    if (Start >= 0) return Reasons[i].mid(Start + sAddr.size());
  }
  const QStringList General = Reasons.filter(QStringLiteral("breakpoint"), Qt::CaseInsensitive);
  return General.isEmpty() ? QStringLiteral("the probe has refused it") : General.last();
}

}  // namespace

void CBreakpointManager::OnDeviceLogMsg(const char* sText, MSG_INFO_FLAGS Flags) {
  if (!(Flags & MSG_ERROR)) return;
  const QString sError = QString::fromUtf8(sText);
  // Says that the call failed; the probe has said why.
  if (sError.endsWith(QLatin1String("VNODE API call failed"))) return;
  m_Reasons << sError;
  if (m_Reasons.size() > MAX_REASONS) m_Reasons.removeFirst();
}

void CBreakpointManager::ReportFailure(U32 Addr, BP_TYPES Type, bool bListed) {
  const QString sReason = ReasonFor(Addr, m_Reasons);
  if (m_Problems.size() < MAX_PROBLEMS) m_Problems.insert(Addr, {sReason, Type, bListed});
  PrintConsoleError(QStringLiteral("Breakpoint %1 could not be set: %2").arg(PlaceText(Addr), sReason));
}

void CBreakpointManager::CheckOutcome() {
  if (Device().HasEvents()) return CheckOutcomeLater();
  for (const CBreakpointEntries::FAILURE& Failure : m_Entries.Settle())
    ReportFailure(Failure.Addr, Failure.Type, Failure.bListed);
  if (m_Entries.IsSettled()) m_Reasons.clear();
}

// The reason of a failure is among the events that are on their way; there may be many.
void CBreakpointManager::CheckOutcomeLater() {
  if (std::exchange(m_bCheckWaits, true)) return;
  QTimer::singleShot(CDeviceEventWorker::TICK_MS, this, [this] {
    m_bCheckWaits = false;
    if (Device().HasEvents()) return CheckOutcomeLater();
    OnDeviceBPStateChanged();
  });
}

// Without a connection nothing stands in the way; the next connect tells whether anything does then.
void CBreakpointManager::SetFailedAgain() {
  const QHash<U32, PROBLEM> Problems = std::exchange(m_Problems, {});
  for (auto It = Problems.cbegin(); It != Problems.cend(); ++It) {
    if (!It->bListed) m_Entries.Set({It.key()}, BP_STATE_ENABLED, It->Type);
  }
}

// After a connect, which sets all breakpoints of the list again.
void CBreakpointManager::CheckImplementations() {
  m_Problems.removeIf([](const auto& It) { return It->bListed; });
  U32 ImpFlags = 0;
  for (const BP& Entry : Device().Context().Breakpoints.GetAll()) {
    // What is being set just now is judged when that is done.
    if (Entry.State != BP_STATE_ENABLED || m_Entries.IsWanted(Entry.Addr)) continue;
    if (Device().Ops().Breakpoints.GetImplementation(Entry.Addr, ImpFlags)) continue;
    ReportFailure(Entry.Addr, static_cast<BP_TYPES>(Entry.Type), true);
  }
}

void CBreakpointManager::OnDeviceBPStateChanged() {
  CheckOutcome();
  NoteEmpty();
  Q_EMIT Changed();
}

void CBreakpointManager::OnDeviceConnectDone(CONNECT_MODES) {
  CheckImplementations();
  OnDeviceBPStateChanged();
}

void CBreakpointManager::OnDeviceDisconnectDone() {
  SetFailedAgain();
  OnDeviceBPStateChanged();
}

void CBreakpointManager::OnDeviceConnectionLost() {
  OnDeviceBPStateChanged();
}

void CBreakpointManager::OnDeviceResetDone(U32, RESET_MODES Mode) {
  if (Mode != RM_STATE_CHANGED) Device().ScheduleResetBreakpoints();
}

void CBreakpointManager::OnDeviceHaltDone(U32 PC, HALT_REASONS Reason) {
  BP Entry;
  if (Reason == HR_STATE_CHANGED || !m_Entries.Get(PC, Entry) || Entry.State != BP_STATE_ENABLED) return;
  const CBreakpointProps Props = m_Props.value(PC);
  if (!Props.ExtraActionConsoleText.isEmpty() || !Props.ExtraActionMsgBoxText.isEmpty())
    Q_EMIT Triggered(Props.ExtraActionConsoleText, Props.ExtraActionMsgBoxText);
}

void CBreakpointManager::OnDeviceEvalBPCondition(U32 Addr) {
  BP Entry;
  const auto Props = m_Props.find(Addr);
  bool bHaltStands = true;
  // The hits are counted in the device's own list, whatever has been asked for meanwhile.
  if (Props != m_Props.end() && Device().Context().Breakpoints.GetAt(Addr, Entry) && Entry.State == BP_STATE_ENABLED) {
    bHaltStands = EvalHalt(*Props, Entry.HitCount, m_Evaluator, [](const QString& sText, bool bWarning) {
      LogMsg(sText, bWarning ? U32{MSG_WARNING | MSG_TO_ALL} : U32{MSG_INFO | MSG_TO_STDOUT | MSG_TO_FILE});
    });
  }
  Device().FinishHaltSeq(Addr, bHaltStands);
}
