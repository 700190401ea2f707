#include "soak_checks.h"

#include <dlfcn.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>

#include "device/device_context.h"
#include "shell/main_window.h"

namespace {

constexpr int SETTLE_LIMIT_MS = 60'000;
// A halt is noticed by a poll every 50 ms.
constexpr int QUIET_MS = 120;
constexpr long GROWTH_LIMIT_KB = 24 * 1024;
constexpr int NUM_WARM_UP_CHECKS = 3;

#ifdef __SANITIZE_ADDRESS__
constexpr bool IS_MEMORY_MEASURABLE = false;  // freed memory is kept for a while
#else
constexpr bool IS_MEMORY_MEASURABLE = true;
#endif

QString Text(const std::set<U32>& Addresses) {
  QString sResult;
  for (const U32 Addr : Addresses) sResult += QStringLiteral(" 0x%1").arg(Addr, 0, 16);
  return sResult;
}

}  // namespace

CSoakChecks::CSoakChecks(CMainWindow& Window, CSoakWatchdog& Watchdog) : m_Window(Window), m_Watchdog(Watchdog) {
  void* pLibrary = dlopen(VEXOR_BIN_DIR "/libvnode.so", RTLD_NOW | RTLD_NOLOAD);
  if (pLibrary) m_pfGetBPInfo = reinterpret_cast<decltype(m_pfGetBPInfo)>(dlsym(pLibrary, "VNODEARM_GetBPInfoEx"));
  if (!m_pfGetBPInfo) m_Watchdog.Fail(QStringLiteral("the probe library is not loaded"));
}

QString CSoakChecks::Busy() const {
  const CDevice& Device = CDevice::Get();
  if (Device.IsJobPending(JT_ANY)) return QStringLiteral("a job");
  if (Device.IsRequestPending()) return QStringLiteral("a request");
  if (Device.IsHaltUnderWay()) return QStringLiteral("a halt");
  if (Device.HasEvents()) return QStringLiteral("an event");
  return m_Window.IsIdle() ? QString() : QStringLiteral("the window");
}

void CSoakChecks::Settle() {
  QElapsedTimer Total;
  QElapsedTimer Quiet;
  Total.start();
  Quiet.start();
  while (Quiet.elapsed() < QUIET_MS) {
    QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    QThread::msleep(1);
    const QString sBusy = Busy();
    if (!sBusy.isEmpty()) Quiet.restart();
    if (Total.elapsed() > SETTLE_LIMIT_MS) m_Watchdog.Fail(QStringLiteral("%1 never ends").arg(sBusy));
  }
}

void CSoakChecks::CheckJobs() {
  const JOB_COUNTS Counts = CDevice::Get().JobCounts();
  if (Counts.Executed + Counts.Cancelled == Counts.Scheduled && Counts.Released == Counts.Scheduled + Counts.Posted) {
    return;
  }
  m_Watchdog.Fail(QStringLiteral("%1 jobs scheduled, %2 executed, %3 cancelled; with %4 posted, %5 released")
                      .arg(Counts.Scheduled)
                      .arg(Counts.Executed)
                      .arg(Counts.Cancelled)
                      .arg(Counts.Posted)
                      .arg(Counts.Released));
}

void CSoakChecks::CheckBreakpoints() {
  if (!CDevice::Get().IsConnected() || CDevice::Get().IsConnectionLost()) return;
  std::set<U32> Wanted;
  for (const BP& Entry : CDevice::Get().Context().Breakpoints.GetAll()) {
    if (Entry.State != BP_STATE_DISABLED) Wanted.insert(Entry.Addr);
  }
  std::set<U32> Found;
  VNODEARM_BP_INFO Info = {};
  Info.SizeOfStruct = sizeof(Info);
  const int NumFound = m_pfGetBPInfo(0, &Info);
  for (int i = 0; i < NumFound && m_pfGetBPInfo(i, &Info) > 0; ++i) Found.insert(Info.Addr);
  if (Wanted == Found) return;
  m_Watchdog.Fail(QStringLiteral("the list has the breakpoints%1, the library%2").arg(Text(Wanted), Text(Found)));
}

long CSoakChecks::CheckMemory() {
  QFile File(QStringLiteral("/proc/self/statm"));
  if (!File.open(QIODevice::ReadOnly)) return 0;
  const long NumKB = File.readAll().split(' ').value(1).toLong() * (sysconf(_SC_PAGESIZE) / 1024);
  if (++m_NumMemoryChecks <= NUM_WARM_UP_CHECKS) m_FirstKB = NumKB;
  if (IS_MEMORY_MEASURABLE && NumKB > m_FirstKB + GROWTH_LIMIT_KB) {
    m_Watchdog.Fail(QStringLiteral("memory has grown from %1 to %2 KB").arg(m_FirstKB).arg(NumKB));
  }
  return NumKB;
}
