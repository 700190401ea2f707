// Sessions by clicks on the tool bar: what buttons, status bar, title and console show at each step.

#include <QDesktopServices>
#include <QLabel>
#include <QPushButton>
#include <QTemporaryDir>
#include <QToolButton>

#include "../dialogs/drive.h"
#include "frame.h"
#include "program/database/elfapi.h"
#include "shell/actions/action_dispatch.h"
#include "shell/actions/action_ids.h"
#include "shell/actions/action_info.h"
#include "shell/actions/command_console.h"
#include "tests/common/write_file.h"
#include "ui/status_bar.h"

using namespace Qt::StringLiterals;

namespace {

const QString EXAMPLE = QStringLiteral(VEXOR_SOURCE_DIR "/examples/traffic_light/traffic_light.elf");

// Each step of a start lets the event loop turn, so that its text is seen.
constexpr const char* PROJECT = R"(
void OnProjectLoad (void) {
  Project.SetDevice ("nRF52840_xxAA"); Project.SetHostIF ("USB", ""); Project.SetTargetIF ("SWD");
  Project.SetTIFSpeed ("4 MHz"); File.Open ("program.elf");
}
void BeforeTargetConnect (void) { Util.Sleep (20); }
void AfterTargetConnect (void) { Util.Sleep (20); }
void BeforeTargetReset (void) { Util.Sleep (20); }
void BeforeTargetDownload (void) { Util.Sleep (20); }
void AfterTargetDownload (void) {
  Util.Sleep (20);
  Target.SetReg ("SP", Target.ReadU32 (0));
  Target.SetReg ("PC", Target.ReadU32 (4));
}
)";

// Start, stop, continue, halt, reset, step: a hidden button is '-', a disabled one 'o', an enabled one its letter.
constexpr const char* DISCONNECTED = "S--ooo";
constexpr const char* RUNNING = "-T-HRo";
constexpr const char* STANDING = "-TC-RI";

constexpr int PROGRESS_END_MS = 700;  // until the bar of an operation has gone for sure

// The status from one turn of the event loop to the next.
class CStatusHistory : public QObject {
public:
  CStatusHistory() {
    connect(&m_Timer, &QTimer::timeout, this, &CStatusHistory::Look);
    m_Timer.start(0);
    Look();
  }
  // A run to the start symbol may be too short to be seen.
  QStringList Texts() const {
    QStringList Texts;
    for (qsizetype i = 0; i < m_Texts.size(); ++i) {
      if (i + 1 == m_Texts.size() || m_Texts[i] != u"CPU running..."_s) Texts << m_Texts[i];
    }
    return Texts;
  }
  QString Last() const { return m_Texts.last(); }

private:
  void Look() {
    const QString sText = CStatusBar::_GetSingleton()->GetStatusMessage();
    if (m_Texts.isEmpty() || m_Texts.last() != sText) m_Texts << sText;
  }
  QStringList m_Texts;
  QTimer m_Timer;
};

}  // namespace

class CDebugSessionTest : public QObject {
  Q_OBJECT

private Q_SLOTS:
  void initTestCase() {
    QVERIFY(m_pWindow = StartFrame());
    QVERIFY(QFile::copy(EXAMPLE, m_Dir.filePath(u"program.elf"_s)));
    m_sProject = WriteFile(m_Dir.filePath(u"p.vdebug"_s), PROJECT);
    PerformAction(ACTION_FILE_OPEN, m_sProject);
    QTRY_VERIFY_WITH_TIMEOUT(m_pWindow->IsIdle() && ELFAPI_IsLoaded(), FRAME_WAIT_MS);
    QTRY_COMPARE(Text("StatusMessage"), u"Ready"_s);
    m_pWindow->Console().Clear();
  }

  void init() { QApplication::setActiveWindow(m_pWindow); }

  void aDownloadingStartShowsItsSteps() {
    QTRY_COMPARE(Buttons(), DISCONNECTED);
    QCOMPARE(m_pWindow->windowTitle(), u"Vexor - "_s + m_sProject);
    // The second time the target has a program already, at whose first instruction the reset halts it: that is not
    // shown.
    for (const bool bAgain : {false, true}) {
      if (bAgain) Stop();
      m_pWindow->Console().Clear();
      const CStatusHistory Status;
      ClickEntry(ACTION_DEBUG_START, ACTION_DEBUG_DOWNLOAD_RESET);
      QVERIFY(Halts());
      QTRY_COMPARE(Status.Last(), u"CPU halted"_s);
      QCOMPARE(Status.Texts(), (QStringList{u"Ready"_s, u"Connecting..."_s, u"Connected"_s, u"Resetting Device..."_s,
                                            u"Writing Memory..."_s, u"Download Complete."_s, u"CPU halted"_s}));
      QCOMPARE(Echo(), (QStringList{u"Debug.SetConnectMode (CM_DOWNLOAD_RESET);"_s, u"Debug.Start();"_s}));
    }
    const CStatusHistory Status;
    QTRY_COMPARE(Text("ConnectionInfo"), u"Connected @ 4 MHz"_s);
    QCOMPARE(m_pWindow->windowTitle(), u"Vexor - "_s + m_Dir.filePath(u"program.elf"_s));
    QTRY_COMPARE(Buttons(), STANDING);
    Click(ACTION_DEBUG_CONTINUE);
    QTRY_COMPARE(Buttons(), RUNNING);
    QTRY_COMPARE(Status.Last(), u"CPU running..."_s);
    // That is for those who want one.
    QTRY_VERIFY(!IsPulsing());
    // The button is gone; so is the command.
    QTRY_COMPARE(ExecuteCommand(u"Debug.Continue"_s), COMMAND_DISABLED);
    Click(ACTION_DEBUG_HALT);
    QVERIFY(Halts());
    QTRY_COMPARE(Buttons(), STANDING);
    QTRY_COMPARE(Status.Last(), u"CPU halted"_s);
  }

  void aResetGoesByTheModeOfItsEntry() {
    PerformAction(ACTION_EDIT_PREFERENCE, u"PREF_SHOW_PROGBAR_WHILE_RUNNING"_s, 1);
    const std::tuple<U32, const char*, const char*, QString> aCases[] = {
        {ACTION_DEBUG_RESET_HALT, "RM_RESET_HALT", STANDING, u"CPU halted"_s},
        {ACTION_DEBUG_RESET_BREAK_AT_SYMBOL, "RM_BREAK_AT_SYMBOL", STANDING, u"CPU halted"_s},
        {ACTION_DEBUG_RESET_RUN, "RM_RESET_AND_RUN", RUNNING, u"CPU running..."_s},
    };
    for (const auto& [Entry, sMode, sButtons, sStatus] : aCases) {
      m_pWindow->Console().Clear();
      const CStatusHistory Status;
      ClickEntry(ACTION_DEBUG_RESET, Entry);
      QTRY_COMPARE(Status.Last(), sStatus);
      QCOMPARE(Status.Texts(), (QStringList{u"CPU halted"_s, u"Resetting Device..."_s, sStatus}));
      QTRY_COMPARE(Buttons(), sButtons);
      QTRY_COMPARE(IsPulsing(), sButtons == RUNNING);
      QCOMPARE(Echo(), (QStringList{u"Debug.SetResetMode (%1);"_s.arg(QLatin1String(sMode)), u"Debug.Reset();"_s}));
      // The button itself does the same from now on.
      QCOMPARE(GetAction(ACTION_DEBUG_RESET)->icon().cacheKey(), GetAction(Entry)->icon().cacheKey());
      QCOMPARE(GetAction(ACTION_DEBUG_RESET)->statusTip(), GetAction(Entry)->statusTip());
    }
  }

  // The target runs when this one comes.
  void anAttachLeavesTheTargetAlone() {
    Stop();
    const CStatusHistory Status;
    ClickEntry(ACTION_DEBUG_START, ACTION_DEBUG_ATTACH);
    QTRY_COMPARE(Text("StatusMessage"), u"CPU running..."_s);
    QCOMPARE(Status.Texts(), (QStringList{u"Ready"_s, u"Connecting..."_s, u"Connected"_s}));
    QTRY_VERIFY(IsPulsing());
    QTRY_COMPARE(Buttons(), RUNNING);
    // A transfer takes the bar for itself while it lasts.
    WriteFile(m_Dir.filePath(u"data.bin"_s), QByteArray(8000, 'x'));
    PerformAction(ACTION_FILE_LOAD, m_Dir.filePath(u"data.bin"_s), u"0x20020000"_s);
    QTRY_COMPARE(Status.Last(), u"Download Complete."_s);
    QTest::qWait(PROGRESS_END_MS);
    QTRY_VERIFY(IsPulsing());
    QTRY_COMPARE(Text("StatusMessage"), u"CPU running..."_s);
    Stop();
    ClickEntry(ACTION_DEBUG_START, ACTION_DEBUG_ATTACH_HALT);
    QVERIFY(Halts());
    QTRY_COMPARE(Status.Last(), u"CPU halted"_s);
    QTRY_COMPARE(Buttons(), STANDING);
    Stop();
    // The button repeats what was chosen last, here from a target that stands.
    m_pWindow->Console().Clear();
    Click(ACTION_DEBUG_START);
    QVERIFY(Halts());
    QCOMPARE(Echo(), QStringList{u"Debug.Start();"_s});
  }

  // What was chosen and could not be opened says nothing of what is opened next.
  void aProgramThatNobodyChoseIsNotOffered() {
    const QString sGone = WriteFile(m_Dir.filePath(u"gone.elf"_s));
    m_pWindow->Projects().RecentPrograms().Update(QString(), sGone);
    QVERIFY(QFile::remove(sGone));
    QList<QAction*> Entries = m_pWindow->findChildren<QAction*>();
    erase_if(Entries, [&sGone](const QAction* pEntry) { return pEntry->data() != sGone; });
    QCOMPARE(Entries.size(), 1);
    Entries.first()->trigger();
    const auto Open = [this] { PerformAction(ACTION_FILE_OPEN, m_Dir.filePath(u"program.elf"_s)); };
    QCOMPARE(BoxesOf(Open, {}), QStringList());
    QTRY_COMPARE(Text("StatusMessage"), u"CPU halted"_s);
  }

  void aFailedResetLeavesTheState() {
    const CStatusHistory Status;
    Probe(u"sim.fail Reset 1"_s);
    ClickEntry(ACTION_DEBUG_RESET, ACTION_DEBUG_RESET_HALT);
    QTRY_COMPARE(Status.Texts(), (QStringList{u"CPU halted"_s, u"Resetting Device..."_s, u"CPU halted"_s}));
    QTRY_COMPARE(Buttons(), STANDING);
    // No breakpoint for the way to the start symbol: the target stays where the reset left it.
    Probe(u"sim.fail SetBPEx 1"_s);
    ClickEntry(ACTION_DEBUG_RESET, ACTION_DEBUG_RESET_BREAK_AT_SYMBOL);
    QTRY_COMPARE(Status.Last(), u"Resetting Device..."_s);
    QTRY_COMPARE(Status.Last(), u"CPU halted"_s);
    QCOMPARE(static_cast<U32>(CDevice::Get().GetPC()), ELFAPI_GetEntryPC() & ~1u);
    Probe(u"sim.no-halt 1"_s);
    ClickEntry(ACTION_DEBUG_RESET, ACTION_DEBUG_RESET_HALT);
    QTRY_COMPARE(Status.Last(), u"CPU running..."_s);
    QTRY_COMPARE(Buttons(), RUNNING);
    Probe(u"sim.clear-faults"_s);
    Click(ACTION_DEBUG_HALT);
    QVERIFY(Halts());
  }

  void errorsOfTheProjectAreShownBeforeTheStart() {
    PerformAction(ACTION_DEBUG_SET_CONNECT_MODE, u"CM_DOWNLOAD_RESET"_s);
    Stop();
    QVERIFY(QFile::remove(m_Dir.filePath(u"program.elf"_s)));
    const auto Start = [this](const char* sButton) {
      WhenModal([sButton](QWidget* pDialog) {
        QCOMPARE(pDialog->windowTitle(), u"Project File Errors"_s);
        QMap<QString, QPushButton*> Buttons;
        for (auto* const pButton : pDialog->findChildren<QPushButton*>())
          Buttons[pButton->text().remove(u'&')] = pButton;
        QVERIFY(Buttons.value(u"Ignore"_s)->isDefault());
        QTest::mouseClick(Buttons.value(QLatin1String(sButton)), Qt::LeftButton);
        QCOMPARE(pDialog->isVisible(), qstrcmp(sButton, "Edit") == 0);
      });
      Click(ACTION_DEBUG_START);
    };
    QDesktopServices::setUrlHandler(u"file"_s, this, "OnUrl");
    Start("Edit");
    QDesktopServices::unsetUrlHandler(u"file"_s);
    QCOMPARE(m_Opened, QUrl::fromLocalFile(m_sProject));
    m_pWindow->Console().Clear();
    Start("Cancel");
    QVERIFY(ConsoleText(*m_pWindow).endsWith(u"Debug.Start();\nConnection aborted"_s));
    QTRY_COMPARE(Text("StatusMessage"), u"Ready"_s);
    QTRY_COMPARE(Buttons(), DISCONNECTED);
    Start("Ignore");
    QVERIFY(Halts());
  }

  void cleanupTestCase() { m_pWindow->close(); }

public Q_SLOTS:
  void OnUrl(const QUrl& Url) { m_Opened = Url; }

private:
  QToolButton* Button(U32 ID) const {
    return qobject_cast<QToolButton*>(m_pWindow->FindToolBar(u"Debug"_s)->widgetForAction(GetAction(ID)));
  }
  QString Buttons() const {
    constexpr std::pair<U32, char> BUTTONS[] = {{ACTION_DEBUG_START, 'S'},    {ACTION_DEBUG_STOP, 'T'},
                                                {ACTION_DEBUG_CONTINUE, 'C'}, {ACTION_DEBUG_HALT, 'H'},
                                                {ACTION_DEBUG_RESET, 'R'},    {ACTION_DEBUG_STEP_INTO, 'I'}};
    QString sShown;
    for (const auto& [ID, Letter] : BUTTONS) {
      const QToolButton* const pButton = Button(ID);
      sShown += QLatin1Char(!pButton->isVisible() ? '-' : pButton->isEnabled() ? Letter : 'o');
    }
    return sShown;
  }
  bool IsPulsing() const {
    const auto* const pBar = m_pWindow->findChild<QProgressBar*>();
    return pBar->isVisible() && pBar->maximum() == 0;
  }
  QString Text(const char* sField) const { return m_pWindow->findChild<QLabel*>(QLatin1String(sField))->text(); }

  void Click(U32 ID) {
    QTRY_VERIFY(Button(ID)->isVisible() && Button(ID)->isEnabled());
    QTest::mouseClick(Button(ID), Qt::LeftButton, {}, QPoint(4, Button(ID)->height() / 2));
  }
  // Opens a button's menu by its arrow and clicks an entry.
  void ClickEntry(U32 ID, U32 Entry) {
    QTRY_VERIFY(Button(ID)->isVisible() && Button(ID)->isEnabled());
    bool bClicked = false;
    WhenPopup([&bClicked, Entry](QWidget* pPopup) {
      auto* const pMenu = qobject_cast<QMenu*>(pPopup);
      bClicked = true;
      QTest::mouseClick(pMenu, Qt::LeftButton, {}, pMenu->actionGeometry(GetAction(Entry)).center());
    });
    QTest::mouseClick(Button(ID), Qt::LeftButton, {}, QPoint(Button(ID)->width() - 4, Button(ID)->height() / 2));
    QVERIFY(bClicked);
  }

  void Probe(const QString& sCommand) {
    QCOMPARE(ExecuteCommand(u"Exec.Command (\"%1\")"_s.arg(sCommand)), COMMAND_RAN);
    CDevice::Get().WaitForJob(JT_EXEC_VNODE_CMD, true);
  }

  void Stop() {
    Click(ACTION_DEBUG_STOP);
    CheckDisconnected();
  }
  void CheckDisconnected() {
    QTRY_COMPARE(Buttons(), DISCONNECTED);
    QTRY_COMPARE(Text("StatusMessage"), u"Ready"_s);
    QTRY_COMPARE(Text("ConnectionInfo"), u"Disconnected"_s);
    QTRY_VERIFY(!m_pWindow->findChild<QProgressBar*>()->isVisible());
    QCOMPARE(m_pWindow->windowTitle(), u"Vexor - "_s + m_sProject);
  }

  // The commands of the session that the console shows.
  QStringList Echo() const { return ConsoleText(*m_pWindow).split(u'\n').filter(u"Debug."_s); }

  QTemporaryDir m_Dir;
  QString m_sProject;
  QUrl m_Opened;
  CMainWindow* m_pWindow = nullptr;
};

QTEST_MAIN(CDebugSessionTest)
#include "debug_session_test.moc"
