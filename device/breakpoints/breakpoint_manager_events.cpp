// What the device has made of the breakpoints, and halts at them.

#include <algorithm>

#include "base/text.h"
#include "device/breakpoints/breakpoint_manager.h"
#include "device/device.h"
#include "device/device_context.h"
#include "device/device_ops.h"
#include "shell/log/console_print.h"
#include "shell/log/log.h"

namespace {

constexpr int MAX_REASONS = 64;  // texts of failures that are kept until the breakpoints are known

CDevice& Device() {
  return CDevice::Get();
}

// The latest reason that names the address, otherwise the latest.
QString ReasonFor(U32 Addr, const QStringList& Reasons) {
  const QString sAddr = AddrText(Addr);
  for (qsizetype i = Reasons.size(); i-- > 0;) {
    if (Reasons[i].contains(sAddr, Qt::CaseInsensitive)) return Reasons[i];
  }
  return Reasons.isEmpty() ? QStringLiteral("the probe has refused it") : Reasons.last();
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

void CBreakpointManager::ReportFailure(U32 Addr) {
  const QString sReason = ReasonFor(Addr, m_Reasons);
  m_Problems.insert(Addr, sReason);
  PrintConsoleError(QStringLiteral("Breakpoint %1 could not be set: %2").arg(PlaceText(Addr), sReason));
}

// The address has no breakpoint, and nothing is kept of it; nor of its line when that has no other.
void CBreakpointManager::DropFailed(U32 Addr) {
  DropProps({Addr});
  const SOURCE_BREAKPOINT* const pSource = m_Sources.FindAt(Addr);
  if (pSource == nullptr) return;
  BP Entry;
  const bool bSet = std::any_of(pSource->Addrs.cbegin(), pSource->Addrs.cend(),
                                [&](U32 Other) { return m_Entries.Get(Other, Entry); });
  if (!bSet) m_Sources.Remove(pSource->Loc);
}

void CBreakpointManager::CheckOutcome() {
  const QList<CBreakpointEntries::FAILURE> Failures = m_Entries.Settle();
  for (const CBreakpointEntries::FAILURE& Failure : Failures) ReportFailure(Failure.Addr);
  for (const CBreakpointEntries::FAILURE& Failure : Failures) {
    if (Failure.bListed) continue;
    if (Failure.bKeep && Failure.Wanted != BP_STATE_DISABLED) {
      m_Entries.Set({Failure.Addr}, BP_STATE_DISABLED, Failure.Type);
    } else {
      DropFailed(Failure.Addr);
    }
  }
  if (m_Entries.IsSettled()) m_Reasons.clear();
}

// After a connect, which sets all breakpoints of the list again.
void CBreakpointManager::CheckImplementations() {
  m_Problems.clear();
  U32 ImpFlags = 0;
  for (const BP& Entry : Device().Context().Breakpoints.GetAll()) {
    if (Entry.State != BP_STATE_ENABLED || Device().Ops().Breakpoints.GetImplementation(Entry.Addr, ImpFlags)) continue;
    ReportFailure(Entry.Addr);
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
  m_Problems.clear();
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
  if (Props != m_Props.end() && m_Entries.Get(Addr, Entry) && Entry.State == BP_STATE_ENABLED) {
    bHaltStands = EvalHalt(*Props, Entry.HitCount, m_Evaluator, [](const QString& sText, bool bWarning) {
      LogMsg(sText, bWarning ? U32{MSG_WARNING | MSG_TO_ALL} : U32{MSG_INFO | MSG_TO_STDOUT | MSG_TO_FILE});
    });
  }
  Device().FinishHaltSeq(Addr, bHaltStands);
}
