// Works with the program for a long time as users, scripts and windows do at once, in any order and with a probe that
// fails, and checks again and again that nothing hangs, crashes, is lost or grows.
//
//   soak SECONDS [SEED]
//
// What is drawn depends on the seed alone; how the threads meet is up to the machine.

#include <QApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <cstdio>
#include <cstdlib>

#include "device/device_data_provider.h"
#include "shell/batch_session.h"
#include "shell/main_window.h"
#include "shell/settings/settings_cache.h"
#include "shell/windows/console_window.h"
#include "soak_actions.h"
#include "soak_checks.h"
#include "ui/dialog.h"
#include "ui/message_box.h"
#include "ui/warnings_dialog.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int ACTION_LIMIT_S = 120;
constexpr int NUM_ACTIONS_PER_ROUND = 60;
constexpr int MAX_PAUSE_MS = 25;
constexpr int CALL_PERIOD_MS = 9;
constexpr int NUM_CONSOLE_LINES = 40;
constexpr int START_LIMIT_MS = 20'000;

// What the hooks of a project do to the target while everything else goes on.
const QString HOOKS =
    uR"(
void OnProjectLoad (void) {
  Project.SetDevice ("nRF52840_xxAA"); Project.SetHostIF ("USB", ""); Project.SetTargetIF ("SWD");
  File.Open ("%1");
}
void AfterTargetConnect (void) { Target.ReadU32 (0x20008000); Exec.Command ("sim.slow 0"); }
void BeforeTargetReset (void) { Target.WriteU32 (0x20009000, 1); Break.Set (0x330); }
void AfterTargetReset (void) { Target.GetReg ("PC"); Util.Sleep (5); Break.Clear (0x330); }
void BeforeTargetResume (void) { Target.WriteU32 (0x20009004, Target.ReadU32 (0x20009000) + 1); }
void AfterTargetHalt (void) { Target.SetReg ("R5", 7); Target.ReadU8 (0x20009003); Util.Sleep (3); }
void BeforeTargetDownload (void) { Target.WriteU8 (0x20009008, 3); Util.Sleep (2); }
void BeforeTargetDisconnect (void) { Target.ReadU16 (0x20009002); }
)"_s;

// The last lines of the console.
QString ConsoleEnd(CMainWindow& Window) {
  Window.Console().DrainAll();
  const QStringList Lines = Window.Console().DumpText().split(u'\n');
  return Lines.mid(std::max<qsizetype>(0, Lines.size() - NUM_CONSOLE_LINES)).join(u'\n');
}

class CSoak {
public:
  CSoak(CMainWindow& Window, U32 Seed)
      : m_Window(Window),
        m_Watchdog(ACTION_LIMIT_S),
        m_Checks(Window, m_Watchdog),
        m_Typed(Window, Seed),
        m_Called(Window, Seed + 1) {
    m_CallTimer.setInterval(CALL_PERIOD_MS);
    QObject::connect(&m_CallTimer, &QTimer::timeout, [this] { m_Watchdog.Note(u"  window: "_s + m_Called.Call()); });
    CBatchSession::SetActive(true);
    const auto Answer = [this](const QString& sTitle, const QString&, int Default) {
      m_Watchdog.Note(u"  box: "_s + sTitle);
      return Default;
    };
    CMessageBox::SetResponder(Answer);
    CWarningsDialog::SetResponder([](const QString&, const QStringList&) { return true; });
    CDialog::SetResponder([](const QString&) {});
    m_Watchdog.SetDetails([&Window] { return ConsoleEnd(Window); });
  }

  void OpenProject() {
    const QString sPath = m_Dir.filePath(u"soak.vdebug"_s);
    QFile File(sPath);
    if (!File.open(QIODevice::WriteOnly)) m_Watchdog.Fail(u"cannot write the project"_s);
    File.write(HOOKS.arg(QStringLiteral(VEXOR_SOURCE_DIR "/examples/traffic_light/traffic_light.elf")).toUtf8());
    File.close();
    Do(u"File.Open (\"%1\");"_s.arg(sPath));
    m_Checks.Settle();
    Restart();
  }

  // Random actions, then the checks.
  void Round() {
    m_CallTimer.start();
    for (int i = 0; i < NUM_ACTIONS_PER_ROUND; ++i) {
      const U32 Kind = m_Typed.Draw(9);
      m_Watchdog.Begin(Kind == 0 ? u"a fault"_s : u"a line"_s);
      m_Watchdog.Note(Kind == 0 ? u"= "_s + m_Typed.Inject() : u"= "_s + m_Typed.Type());
      Pause(static_cast<int>(m_Typed.Draw(MAX_PAUSE_MS)));
    }
    m_CallTimer.stop();
    Check();
  }

  U64 NumJobs() const { return CDevice::Get().JobCounts().Scheduled; }
  long NumKB() const { return m_NumKB; }

private:
  void Do(const QString& sCommand) {
    m_Watchdog.Begin(u"check: "_s + sCommand);
    m_Window.Console().OnCommandEntered(sCommand);
  }

  void Pause(int Milliseconds) {
    QElapsedTimer Timer;
    Timer.start();
    do {
      QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
      QThread::usleep(200);
    } while (Timer.elapsed() < Milliseconds);
  }

  // With the faults gone a session has to come up whatever has happened before.
  void Restart() {
    Do(u"Debug.Stop ();"_s);
    m_Checks.Settle();
    if (CDevice::Get().IsConnected()) m_Watchdog.Fail(u"Debug.Stop leaves a connection"_s);
    Do(u"Debug.SetConnectMode (CM_DOWNLOAD_RESET);"_s);
    Do(u"Debug.SetResetMode (RM_BREAK_AT_SYMBOL);"_s);
    Do(u"Debug.Start ();"_s);
    QElapsedTimer Timer;
    Timer.start();
    while (!IsStarted()) {
      Pause(5);
      if (Timer.elapsed() > START_LIMIT_MS) FailStart();
    }
    m_Checks.Settle();
    m_Checks.CheckBreakpoints();
  }

  [[noreturn]] void FailStart() {
    const CDevice& Device = CDevice::Get();
    const QString sState =
        u"connected %1, lost %2, ready %3, halted %4, accessible %5, PC 0x%6"_s.arg(Device.IsConnected())
            .arg(Device.IsConnectionLost())
            .arg(Device.IsSessionReady())
            .arg(Device.IsHalted())
            .arg(Device.IsAccessible())
            .arg(Device.GetPC(), 0, 16);
    m_Watchdog.Fail(u"Debug.Start does not bring a session up (%1)"_s.arg(sState));
  }

  bool IsStarted() const {
    const CDevice& Device = CDevice::Get();
    return Device.IsConnected() && Device.IsSessionReady() && Device.IsAccessible() && !Device.IsConnectionLost();
  }

  void Check() {
    m_Watchdog.Begin(u"check: sim.clear-faults"_s);
    // A connection that is lost takes waiting jobs with it: the first one may be among them.
    for (int i = 0; i < 2; ++i) {
      CDevice::Get().ScheduleExecVNodeCmd("sim.clear-faults");
      // A halt that was asked for while the target did not halt is still awaited.
      CDevice::Get().ScheduleHalt();
      m_Checks.Settle();
    }
    m_Watchdog.Begin(u"check: jobs"_s);
    m_Checks.CheckJobs();
    Restart();
    m_Checks.CheckJobs();
    Do(u"Window.Clear (\"Console\");"_s);
    m_NumKB = m_Checks.CheckMemory();
  }

  CMainWindow& m_Window;
  CSoakWatchdog m_Watchdog;
  CSoakChecks m_Checks;
  CSoakActions m_Typed;   // what the user and the project's functions do
  CSoakActions m_Called;  // what windows do, whenever the event loop turns
  QTimer m_CallTimer;
  QTemporaryDir m_Dir;
  long m_NumKB = 0;
};

int Run(CMainWindow& Window, int Seconds, U32 Seed) {
  CSoak Soak(Window, Seed);
  Soak.OpenProject();
  QElapsedTimer Timer;
  Timer.start();
  int NumRounds = 0;
  while (Timer.elapsed() < Seconds * 1000ll) {
    Soak.Round();
    if (++NumRounds % 20 == 0 || Timer.elapsed() >= Seconds * 1000ll) {
      std::printf("soak: seed %u, %lld s, %d rounds of %d lines, %llu jobs, %ld KB\n", Seed, Timer.elapsed() / 1000,
                  NumRounds, NUM_ACTIONS_PER_ROUND, static_cast<unsigned long long>(Soak.NumJobs()), Soak.NumKB());
      std::fflush(stdout);
    }
  }
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2 || std::atoi(argv[1]) <= 0) {
    std::fprintf(stderr, "usage: soak SECONDS [SEED]\n");
    return 2;
  }
  qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication Application(argc, argv);
  SetSettingsInMemory(true);
  CDevice::SetLibraryFolder(QStringLiteral(VEXOR_BIN_DIR));
  CDeviceDataProvider::Get();
  auto pWindow = std::make_unique<CMainWindow>();
  pWindow->show();
  const int Result =
      Run(*pWindow, std::atoi(argv[1]), argc > 2 ? static_cast<U32>(std::strtoul(argv[2], nullptr, 0)) : 1);
  pWindow.reset();
  CDevice::Get().Shutdown();
  return Result;
}
