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
constexpr int SHOWN_AGAIN = -2;

// The box's result, NOT_SHOWN plus a note of the answer without one through *pSilent.
int Ask(int Timeout, QDialogButtonBox::StandardButton Button, bool bTick, int* pSilent = nullptr) {
  bool bShown = false;
  QTimer::singleShot(0, qApp, [=, &bShown] {
    auto* const pBox = qobject_cast<CMessageBox*>(QApplication::activeModalWidget());
    bShown = pBox != nullptr;
    if (!bShown) return;
    pBox->findChild<QCheckBox*>()->setChecked(bTick);
    pBox->Button(Button)->click();
  });
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

  void aTickedBoxStaysSilentAsLongAsItSays() {
    using BOX = QDialogButtonBox;
    // The last is the answer that is given without a box.
    const std::tuple<const char*, int, BOX::StandardButton, bool, int> Rows[] = {
        {"not ticked", -2, BOX::Yes, false, SHOWN_AGAIN},
        {"for good", -2, BOX::Yes, true, CMessageBox::ACCEPTED},
        {"for good after a no", -2, BOX::No, true, CMessageBox::ACCEPTED},
        {"for this run", -1, BOX::Yes, true, CMessageBox::ACCEPTED},
        {"today", 24, BOX::Yes, true, CMessageBox::DECLINED},
        {"some hours", 3, BOX::No, true, CMessageBox::DECLINED},
        {"no check box", 0, BOX::Yes, true, SHOWN_AGAIN},
        {"called off", -2, BOX::Cancel, true, SHOWN_AGAIN},
    };
    for (const auto& [sWhat, Timeout, Button, bTick, Silent] : Rows) {
      CMessageBox::ResetTimeouts();
      QVERIFY2(Ask(Timeout, Button, bTick) != NOT_SHOWN, sWhat);
      int Answer = SHOWN_AGAIN;
      Ask(Timeout, BOX::Cancel, false, &Answer);
      QVERIFY2(Answer == Silent, sWhat);
    }
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

  void theKeyboardAnswers() {
    const std::pair<Qt::Key, int> Rows[] = {
        {Qt::Key_Y, CMessageBox::ACCEPTED}, {Qt::Key_N, CMessageBox::DECLINED}, {Qt::Key_Escape, CMessageBox::OTHER}};
    for (const auto& [Key, Result] : Rows) {
      QTimer::singleShot(0, qApp, [Key] {
        QWidget* const pBox = QApplication::activeModalWidget();
        QVERIFY(QTest::qWaitForWindowActive(pBox));
        QTest::keyClick(pBox, Key);
      });
      QCOMPARE(CMessageBox::Show(u"T"_s, u"?"_s, 0, QString(), ASKED), Result);
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
