#include "soak_watchdog.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>

namespace {

constexpr size_t NUM_ACTIONS_KEPT = 60;

}  // namespace

CSoakWatchdog::CSoakWatchdog(int LimitS)
    : m_LimitS(LimitS), m_Begin(std::chrono::steady_clock::now()), m_Thread(&CSoakWatchdog::Watch, this) {}

CSoakWatchdog::~CSoakWatchdog() {
  {
    std::lock_guard Lock(m_Mutex);
    m_bEnd = true;
  }
  m_Wake.notify_one();
  m_Thread.join();
}

void CSoakWatchdog::Keep(const QString& sAction) {
  m_Actions.push_back(sAction.toStdString());
  if (m_Actions.size() > NUM_ACTIONS_KEPT) m_Actions.pop_front();
}

void CSoakWatchdog::Begin(const QString& sAction) {
  std::lock_guard Lock(m_Mutex);
  Keep(sAction);
  m_Begin = std::chrono::steady_clock::now();
}

void CSoakWatchdog::Note(const QString& sAction) {
  std::lock_guard Lock(m_Mutex);
  Keep(sAction);
}

void CSoakWatchdog::Fail(const QString& sWhat) {
  const QString sDetails = m_Details ? m_Details() : QString();
  std::lock_guard Lock(m_Mutex);
  Report((sWhat + QStringLiteral(". The console:\n") + sDetails).toStdString());
}

void CSoakWatchdog::Watch() {
  std::unique_lock Lock(m_Mutex);
  while (!m_bEnd) {
    m_Wake.wait_for(Lock, std::chrono::seconds(1));
    const auto Limit = std::chrono::seconds(m_LimitS);
    if (!m_bEnd && std::chrono::steady_clock::now() - m_Begin > Limit) Report("an action hangs");
  }
}

void CSoakWatchdog::Report(const std::string& sWhat) {
  std::printf("soak: %s\nThe latest actions:\n", sWhat.c_str());
  for (const std::string& sAction : m_Actions) std::printf("  %s\n", sAction.c_str());
  std::fflush(stdout);
  const std::string sCommand = "gdb-multiarch -nx -batch -p " + std::to_string(getpid()) +
                               " -ex 'set pagination off' -ex 'thread apply all backtrace 25' 2>&1 | "
                               "grep -E '^(Thread|#)'";
  if (std::system(sCommand.c_str()) != 0) std::printf("soak: no backtraces\n");
  std::fflush(stdout);
  _exit(1);
}
