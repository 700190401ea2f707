// What a user can do while a script runs.

#include <QMessageBox>
#include <QTemporaryDir>

#include "frame.h"
#include "script/vscript.h"
#include "shell/actions/action_ids.h"
#include "shell/actions/action_link.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int LATER_MS = 150;  // the script has begun to poll
constexpr int LIMIT_MS = 20'000;

}  // namespace

class CScriptInputTest : public QObject {
  Q_OBJECT

private Q_SLOTS:
  void initTestCase() {
    QVERIFY(m_pWindow = StartFrame());
    RegisterActionHandler(ACTION_FILE_NEW_PROJECT, [this] { ++m_NumHits; });
    PressOther();
    QCOMPARE(m_NumHits, 1);
  }

  void theStopKeyEndsAScript() {
    m_NumHits = 0;
    for (const char* const s : {"while (1) { }", "while (1) { Elf.GetBaseAddr(); }", "Util.Sleep (300000);"}) {
      QElapsedTimer Timer;
      Timer.start();
      QCOMPARE(Run(QLatin1String(s), [this] { PressOther(); }), -1);
      QVERIFY2(Timer.elapsed() < LIMIT_MS, s);
      QCOMPARE(VScript::GetErrorText(), u"Script stopped by the user at line 2"_s);
      QCOMPARE(m_NumHits, 0);
    }
  }

  void aDialogThatOpensMeanwhileGetsItsInput() {
    int Answer = 0;
    Run(u"while (1) { }"_s, [&] {
      QMessageBox Box(QMessageBox::Question, {}, u"Go on?"_s, QMessageBox::Yes | QMessageBox::No);
      QTimer::singleShot(LATER_MS, &Box, [&] { QTest::keyClick(&Box, Qt::Key_Escape); });
      QTimer::singleShot(LIMIT_MS, &Box, [&] { Box.done(-1); });
      Answer = Box.exec();
    });
    QCOMPARE(Answer, static_cast<int>(QMessageBox::No));
  }

  void keysWorkAgainBehindTheScript() {
    m_NumHits = 0;
    Run(u"while (1) { }"_s, [] {});
    m_pWindow->activateWindow();  // the dialog had it
    QVERIFY(QTest::qWaitForWindowActive(m_pWindow));
    PressOther();
    QCOMPARE(m_NumHits, 1);
  }

  void cleanupTestCase() { m_pWindow->close(); }

private:
  // Runs a text as the project's load routine; Input is called while it runs, and the stop key pressed last.
  int Run(const QString& sStatements, const std::function<void()>& Input) {
    if (VScript::LoadText(u"void OnProjectLoad (void) {\n"_s + sStatements + u"\n}\n"_s) != 0) return 1;
    QTimer::singleShot(LATER_MS, m_pWindow, [this, Input] {
      Input();
      QTest::keyClick(m_pWindow, Qt::Key_F5, Qt::ShiftModifier);
    });
    return VScript::ExecFunction(HOOK_ON_PROJECT_LOAD);
  }

  // A key that is always good for something: File.NewProject.
  void PressOther() { QTest::keyClick(m_pWindow, Qt::Key_N, Qt::ControlModifier); }

  CMainWindow* m_pWindow = nullptr;
  int m_NumHits = 0;
};

QTEST_MAIN(CScriptInputTest)
#include "script_input_test.moc"
