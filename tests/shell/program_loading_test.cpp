// What a user sees and can do while a program is read.

#include <QProgressBar>
#include <QPushButton>
#include <QStatusTipEvent>
#include <thread>

#include "core/core_table.h"
#include "core/vcore.h"
#include "frame.h"
#include "program/database/elfapi.h"
#include "project/project.h"
#include "shell/actions/action_dispatch.h"
#include "shell/actions/action_ids.h"
#include "shell/actions/action_link.h"
#include "shell/log/log.h"
#include "ui/status_bar.h"

using namespace Qt::StringLiterals;

namespace {

const QString EXAMPLES = QStringLiteral(VEXOR_SOURCE_DIR "/examples/");
const QString FIRST = EXAMPLES + u"traffic_light/traffic_light.elf"_s;
const QString PROJECT = EXAMPLES + u"traffic_light/traffic_light.vdebug"_s;
const QString OTHER_PROJECT = EXAMPLES + u"thermostat/thermostat.vdebug"_s;
const QString SECOND = EXAMPLES + u"thermostat/thermostat.elf"_s;

constexpr int POLL_MS = 10;
constexpr auto LOG_DELAY = std::chrono::milliseconds(40);  // a reading logs some thirty lines

}  // namespace

class CProgramLoadingTest : public QObject {
  Q_OBJECT

private Q_SLOTS:
  void initTestCase() {
    QVERIFY(m_pWindow = StartFrame());
    RegisterActionHandler(ACTION_FILE_NEW_PROJECT, [this] { ++m_NumHits; });
    // A slow log makes a slow reading.
    ELFAPI_SetMessageSink([](const QString& sText, U32 Flags) {
      if (QThread::currentThread() != qApp->thread()) std::this_thread::sleep_for(LOG_DELAY);
      LogMsg(sText, Flags);
    });
    m_pCancel = m_pWindow->findChild<QPushButton*>(u"CancelProgress"_s);
    m_pProgress = CStatusBar::_GetSingleton()->findChild<QProgressBar*>();
    QVERIFY(m_pCancel && m_pProgress);
    PerformAction(ACTION_FILE_OPEN, PROJECT);
    QTRY_VERIFY_WITH_TIMEOUT(IsSettled() && ELFAPI_IsLoaded(), FRAME_WAIT_MS);
    QCOMPARE(ELFAPI_GetFilePath(), FIRST);
    QVERIFY(VCore::IsInstruction(AddrOfMain()));
    QTRY_VERIFY(!m_pProgress->isVisible());
  }

  void theOldProgramAnswersUntilTheNewOneIsRead() {
    const U32 OldMain = AddrOfMain();
    QList<int> Values;
    bool bOldAnswers = true;
    // What is being read is more urgent than a tool tip, which is more urgent than the state.
    const auto ShowTip = [this](const QString& sTip) {
      QStatusTipEvent Event(sTip);
      QCoreApplication::sendEvent(m_pWindow, &Event);
    };
    ShowTip(u"Steps"_s);
    QTRY_COMPARE(Status(), u"Steps"_s);
    QSet<QString> Texts;
    OpenAndDo(SECOND, [&] {
      bOldAnswers = bOldAnswers && ELFAPI_GetFilePath() == FIRST && VCore::IsInstruction(OldMain) &&
                    ELFAPI_GetName(ELFAPI_GetFuncAt(OldMain)) == u"main" && !m_pWindow->IsIdle();
      if (m_pProgress->isVisible() && m_pCancel->isVisible()) {
        Values.append(m_pProgress->value());
        Texts << Status();
      }
      QTest::keyClick(m_pWindow, Qt::Key_N, Qt::ControlModifier);
      PerformAction(ACTION_FILE_OPEN, FIRST);
      PerformAction(ACTION_FILE_OPEN, OTHER_PROJECT);
    });
    QVERIFY(bOldAnswers);
    QCOMPARE(CProject::Get().GetFileName(), PROJECT);
    QVERIFY(ConsoleText(*m_pWindow).contains(u"thermostat.vdebug\"): another program is being opened"_s));
    // A reading takes more than a second, in which events have their turn every 50 ms.
    QVERIFY2(Values.size() >= 8 && std::is_sorted(Values.begin(), Values.end()) && Values.last() > Values.first(),
             "progress is shown");
    QCOMPARE(Texts, QSet<QString>{u"Opening File..."_s});
    QTRY_COMPARE(Status(), u"Steps"_s);
    ShowTip(QString());
    QCOMPARE(m_NumHits, 0);
    QVERIFY(ConsoleText(*m_pWindow).contains(u"was not opened: another program is being opened"_s));
    QCOMPARE(ELFAPI_GetFilePath(), SECOND);
    QCOMPARE(CProject::Get().GetProgramFile(), SECOND);
    QTRY_VERIFY_WITH_TIMEOUT(IsSettled(), FRAME_WAIT_MS);
    QVERIFY2(VCore::IsInstruction(AddrOfMain()), "the settings that follow leave the decoded code");
    PerformAction(ACTION_SET_DEVICE, u"STM32F100RB"_s);
    QTRY_VERIFY_WITH_TIMEOUT(VCore::GetCpuInfo().CoreId >> 24 == CORE_FAMILY_M3 && IsSettled(), FRAME_WAIT_MS);
    QVERIFY2(VCore::IsInstruction(AddrOfMain()), "a device that is chosen later has the program");
    QTRY_VERIFY(!m_pProgress->isVisible() && !m_pCancel->isVisible());
    QTest::keyClick(m_pWindow, Qt::Key_N, Qt::ControlModifier);
    QCOMPARE(m_NumHits, 1);
  }

  void aCancelLeavesTheOldProgram() {
    const auto Click = [this] { QTest::mouseClick(m_pCancel, Qt::LeftButton); };
    const auto PressEscape = [this] { QTest::keyClick(m_pWindow, Qt::Key_Escape); };
    const U32 Entry = ELFAPI_GetEntryPC();
    const qsizetype NumBytes = ELFAPI_GetDataSegments().value(0).Data.size();
    for (const std::function<void()>& Cancel : {std::function<void()>(Click), std::function<void()>(PressEscape)}) {
      m_pWindow->Console().Clear();
      bool bPressed = false;
      OpenAndDo(FIRST, [&] {
        if (m_pCancel->isVisible() && !std::exchange(bPressed, true)) Cancel();
      });
      QVERIFY(bPressed);
      QVERIFY(ConsoleText(*m_pWindow).contains(u"cancelled by the user"_s));
      QCOMPARE(ELFAPI_GetFilePath(), SECOND);
      QCOMPARE(ELFAPI_GetEntryPC(), Entry);
      QCOMPARE(ELFAPI_GetDataSegments().value(0).Data.size(), NumBytes);
      QVERIFY(VCore::IsInstruction(AddrOfMain()));
      QCOMPARE(CProject::Get().GetProgramFile(), SECOND);
      QVERIFY(m_pWindow->IsIdle());
      QTRY_COMPARE(Status(), u"Ready"_s);
    }
  }

  void aWindowThatIsClosedMeanwhileClosesAfterwards() {
    bool bRefused = false;
    OpenAndDo(FIRST, [&] { bRefused = !m_pWindow->close() || bRefused; });
    QVERIFY(bRefused);
    QTRY_VERIFY(m_pWindow->isHidden());
    QVERIFY(!ELFAPI_IsLoaded());
  }

private:
  // Opens a program and does something now and then while it is read.
  void OpenAndDo(const QString& sPath, const std::function<void()>& Do) {
    QTimer Timer;
    QObject::connect(&Timer, &QTimer::timeout, Do);
    Timer.start(POLL_MS);
    PerformAction(ACTION_FILE_OPEN, sPath);
  }

  QString Status() const { return m_pWindow->findChild<QLabel*>(u"StatusMessage"_s)->text(); }
  static U32 AddrOfMain() { return ELFAPI_GetAddr(ELFAPI_GetEntryFunc()); }
  bool IsSettled() const {
    return m_pWindow->IsIdle() && !CDevice::Get().IsJobPending(JT_ANY) && !CDevice::Get().HasEvents();
  }

  CMainWindow* m_pWindow = nullptr;
  QPushButton* m_pCancel = nullptr;
  QProgressBar* m_pProgress = nullptr;
  int m_NumHits = 0;
};

QTEST_MAIN(CProgramLoadingTest)
#include "program_loading_test.moc"
