#include <QCheckBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include "shell/settings/settings_cache.h"
#include "shell/settings/sys_vars.h"
#include "shell/settings/var_ids.h"
#include "ui/message_box.h"

using namespace Qt::StringLiterals;

namespace {

const SETTING_GROUP TIMEOUTS = {u"AppData"_s, u"MessageTimeouts"_s};
constexpr QDialogButtonBox::StandardButtons ASKED =
    QDialogButtonBox::Yes | QDialogButtonBox::No | QDialogButtonBox::Cancel;
constexpr int NOT_SHOWN = -1;
constexpr int WAIT_MS = 5000;

// Presses a button of the next box and tells through *pShown that there was one.
void AnswerNext(QDialogButtonBox::StandardButton Button, bool bTick, bool* pShown) {
  *pShown = false;
  QTimer::singleShot(0, qApp, [Button, bTick, pShown] {
    auto* const pBox = qobject_cast<CMessageBox*>(QApplication::activeModalWidget());
    if (pBox == nullptr) return;
    *pShown = true;
    pBox->findChild<QCheckBox*>()->setChecked(bTick);
    pBox->Button(Button)->click();
  });
}

// The box's result, NOT_SHOWN plus a note of the answer without one through *pSilent.
int Ask(int Timeout, QDialogButtonBox::StandardButton Button, bool bTick, int* pSilent = nullptr) {
  bool bShown = false;
  AnswerNext(Button, bTick, &bShown);
  const int Result = CMessageBox::Show(u"Title"_s, u"Go on?"_s, Timeout, QString(), ASKED);
  QCoreApplication::processEvents();  // the timer of a box that did not come
  if (bShown) return Result;
  if (pSilent) *pSilent = Result;
  return NOT_SHOWN;
}

}  // namespace

class CMessageBoxTest : public QObject {
  Q_OBJECT

private Q_SLOTS:
  void init() {
    SetSettingsInMemory(true);
    CMessageBox::ResetTimeouts();
    SetVarValue(GetVarInfo(PREF_DIALOG_SHOW_DNSA), 1, 0);
  }

  void theButtonDecidesTheResult_data() {
    QTest::addColumn<int>("Button");
    QTest::addColumn<int>("Result");
    QTest::newRow("yes") << int(QDialogButtonBox::Yes) << int(CMessageBox::ACCEPTED);
    QTest::newRow("ok") << int(QDialogButtonBox::Ok) << int(CMessageBox::ACCEPTED);
    QTest::newRow("apply") << int(QDialogButtonBox::Apply) << int(CMessageBox::ACCEPTED);
    QTest::newRow("no") << int(QDialogButtonBox::No) << int(CMessageBox::DECLINED);
    QTest::newRow("cancel") << int(QDialogButtonBox::Cancel) << int(CMessageBox::OTHER);
    QTest::newRow("discard") << int(QDialogButtonBox::Discard) << int(CMessageBox::OTHER);
  }

  void theButtonDecidesTheResult() {
    QFETCH(int, Button);
    QFETCH(int, Result);
    const auto Which = static_cast<QDialogButtonBox::StandardButton>(Button);
    const std::unique_ptr<CMessageBox> pBox(
        CMessageBox::Make(u"&A title"_s, u"?"_s, CMessageBox::FOR_GOOD, QString(), Which | QDialogButtonBox::Close));
    QCOMPARE(pBox->windowTitle(), u"   A title"_s);
    pBox->Button(Which)->click();
    QCOMPARE(pBox->Result(), Result);
    QCOMPARE(pBox->PressedButton(), Which);
  }

  void aTickedBoxStaysSilentAsLongAsItSays_data() {
    QTest::addColumn<int>("Timeout");
    QTest::addColumn<int>("Button");
    QTest::addColumn<bool>("Tick");
    QTest::addColumn<bool>("ShownAgain");
    QTest::addColumn<int>("Silent");
    const int Yes = QDialogButtonBox::Yes, No = QDialogButtonBox::No, Cancel = QDialogButtonBox::Cancel;
    QTest::newRow("not ticked") << -2 << Yes << false << true << 0;
    QTest::newRow("for good") << -2 << Yes << true << false << int(CMessageBox::ACCEPTED);
    QTest::newRow("for good after a no") << -2 << No << true << false << int(CMessageBox::ACCEPTED);
    QTest::newRow("for this run") << -1 << Yes << true << false << int(CMessageBox::ACCEPTED);
    QTest::newRow("today") << 24 << Yes << true << false << int(CMessageBox::DECLINED);
    QTest::newRow("some hours") << 3 << No << true << false << int(CMessageBox::DECLINED);
    QTest::newRow("no check box") << 0 << Yes << true << true << 0;
    QTest::newRow("called off") << -2 << Cancel << true << true << 0;
  }

  void aTickedBoxStaysSilentAsLongAsItSays() {
    QFETCH(int, Timeout);
    QFETCH(int, Button);
    QFETCH(bool, Tick);
    QFETCH(bool, ShownAgain);
    QFETCH(int, Silent);
    QVERIFY(Ask(Timeout, static_cast<QDialogButtonBox::StandardButton>(Button), Tick) != NOT_SHOWN);
    int Answer = NOT_SHOWN;
    const int Second = Ask(Timeout, QDialogButtonBox::Cancel, false, &Answer);
    QCOMPARE(Second != NOT_SHOWN, ShownAgain);
    if (!ShownAgain) QCOMPARE(Answer, Silent);
  }

  void aTimeThatHasPassedCountsNoMore() {
    QCOMPARE(Ask(1, QDialogButtonBox::Yes, true), int(CMessageBox::ACCEPTED));
    const QStringList Keys = GetSettingKeys(TIMEOUTS);
    QCOMPARE(Keys.size(), 1);
    const qint64 Hour = 3'600'000;
    const qint64 Until = GetSetting(TIMEOUTS, Keys.first(), quint64{0}).toLongLong();
    QVERIFY(std::abs(Until - QDateTime::currentMSecsSinceEpoch() - Hour) < 60'000);
    SetSetting(TIMEOUTS, Keys.first(), static_cast<quint64>(Until - Hour - 60'000));
    QCOMPARE(Ask(1, QDialogButtonBox::No, false), int(CMessageBox::DECLINED));
  }

  void onlyWhatIsForThisRunGoesAtItsEnd() {
    for (const int Timeout : {-1, -2, 24}) {
      CMessageBox::ResetTimeouts();
      Ask(Timeout, QDialogButtonBox::Yes, true);
      QCOMPARE(GetSettingKeys(TIMEOUTS).size(), 1);
      CMessageBox::PurgeSessionTimeouts();
      QCOMPARE(GetSettingKeys(TIMEOUTS).size(), Timeout == -1 ? 0 : 1);
    }
    CMessageBox::ResetTimeouts();
    QVERIFY(GetSettingKeys(TIMEOUTS).isEmpty());
  }

  void theCheckBoxSaysForHowLong_data() {
    QTest::addColumn<int>("Timeout");
    QTest::addColumn<bool>("Preference");
    QTest::addColumn<QString>("Text");
    QTest::newRow("run") << -1 << true << u"Do not show again"_s;
    QTest::newRow("good") << -2 << true << u"Do not show again"_s;
    QTest::newRow("today") << 24 << true << u"Do not show again today"_s;
    QTest::newRow("hours") << 5 << true << u"Do not show again for 5 hours"_s;
    QTest::newRow("none") << 0 << true << QString();
    QTest::newRow("switched off") << -2 << false << QString();
  }

  void theCheckBoxSaysForHowLong() {
    QFETCH(int, Timeout);
    QFETCH(bool, Preference);
    QFETCH(QString, Text);
    SetVarValue(GetVarInfo(PREF_DIALOG_SHOW_DNSA), Preference, 0);
    const std::unique_ptr<CMessageBox> pBox(CMessageBox::Make(u"T"_s, u"?"_s, Timeout, QString(), ASKED));
    const QCheckBox* const pCheck = pBox->findChild<QCheckBox*>();
    QCOMPARE(pCheck->isVisibleTo(pBox.get()), !Text.isEmpty());
    if (!Text.isEmpty()) QCOMPARE(pCheck->text(), Text);
  }

  void theKeyboardAnswers() {
    const struct {
      Qt::Key Key;
      int Result;
    } Rows[] = {
        {Qt::Key_Y, CMessageBox::ACCEPTED}, {Qt::Key_N, CMessageBox::DECLINED}, {Qt::Key_Escape, CMessageBox::OTHER}};
    for (const auto& Row : Rows) {
      bool bHung = false;
      QTimer::singleShot(0, qApp, [&Row, &bHung] {
        QWidget* const pBox = QApplication::activeModalWidget();
        QVERIFY(QTest::qWaitForWindowActive(pBox));
        QTest::keyClick(pBox, Row.Key);
        // A key that does nothing must not hang the test.
        QTimer::singleShot(WAIT_MS, pBox, [pBox, &bHung] {
          bHung = true;
          static_cast<QDialog*>(pBox)->reject();
        });
      });
      QCOMPARE(CMessageBox::Show(u"T"_s, u"?"_s, 0, QString(), ASKED), Row.Result);
      QVERIFY(!bHung);
    }
  }

  void withoutCheckBoxesOldAnswersStillCount() {
    Ask(CMessageBox::FOR_GOOD, QDialogButtonBox::Yes, true);
    SetVarValue(GetVarInfo(PREF_DIALOG_SHOW_DNSA), 0, 0);
    QCOMPARE(Ask(CMessageBox::FOR_GOOD, QDialogButtonBox::No, false), NOT_SHOWN);
  }
};

QTEST_MAIN(CMessageBoxTest)
#include "message_box_test.moc"
