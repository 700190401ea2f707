#include "shell/program_reader.h"

#include <QCoreApplication>
#include <atomic>
#include <chrono>
#include <future>
#include <optional>

#include "shell/cancel_gate.h"
#include "ui/status_bar.h"

namespace {

constexpr std::chrono::milliseconds TURN_INTERVAL{50};

// The progress bar and the limited input, for the time of a longer reading.
class CReadingMark {
public:
  explicit CReadingMark(QWidget* pMainWindow) : m_Status(*CStatusBar::_GetSingleton()), m_Gate(pMainWindow) {
    m_Status.SetProgressMessage(QStringLiteral("Opening File..."));
    m_Status.StartProgress(0, BUILD_PROGRESS_END, true);
  }
  ~CReadingMark() { m_Status.EndProgress(); }
  CReadingMark(const CReadingMark&) = delete;
  CReadingMark& operator=(const CReadingMark&) = delete;

  bool TurnEvents(U32 Permille) {
    m_Status.SetProgressValue(static_cast<int>(Permille));
    QCoreApplication::processEvents();
    return !m_Gate.IsCancelled();
  }

private:
  CStatusBar& m_Status;
  CCancelGate m_Gate;
};

}  // namespace

PROGRAM_BUILD_RESULT ReadProgram(CProgramBuild& Build, const QString& sPath, QWidget* pMainWindow) {
  std::atomic<U32> Done{0};
  std::atomic<bool> bStop{false};
  std::future<PROGRAM_BUILD_RESULT> Reading = std::async(std::launch::async, [&] {
    return Build.Read(sPath, [&](U32 Permille) {
      Done = Permille;
      return !bStop;
    });
  });
  std::optional<CReadingMark> Mark;
  while (Reading.wait_for(TURN_INTERVAL) != std::future_status::ready) {
    if (!Mark) Mark.emplace(pMainWindow);
    if (!Mark->TurnEvents(Done)) bStop = true;
  }
  const PROGRAM_BUILD_RESULT Result = Reading.get();
  return bStop ? PROGRAM_BUILD_STOPPED : Result;
}
