#include <QMenu>
#include <QPushButton>
#include <QTest>
#include <QToolButton>

#include "../dialogs/drive.h"
#include "shell/dialogs/welcome_screen.h"

using namespace Qt::StringLiterals;

namespace {

const QStringList PROJECTS = {u"/one & only/a.vdebug"_s, u"/two/b.vdebug"_s};

QPushButton* ButtonOf(const CWelcomeScreen& Screen, int Choice) {
  return Screen.findChildren<QPushButton*>().value(Choice);
}

}  // namespace

class CWelcomeTest : public QObject {
  Q_OBJECT

private Q_SLOTS:
  void aChoiceIsTakenWithTheKeyboard() {
    const std::tuple<QStringList, int, int, QString> Rows[] = {
        {PROJECTS, 0, CWelcomeScreen::EMPTY_PROJECT, QString()},
        {PROJECTS, 1, CWelcomeScreen::NEW_PROJECT, QString()},
        {PROJECTS, 2, CWelcomeScreen::OPEN_PROJECT, QString()},
        {PROJECTS, 3, CWelcomeScreen::RECENT_PROJECT, PROJECTS[0]},
        {{}, 3, CWelcomeScreen::EMPTY_PROJECT, QString()}};
    for (const auto& [Recent, Pressed, Taken, sPath] : Rows) {
      CWelcomeScreen Screen(nullptr, Recent);
      Screen.show();
      QVERIFY(QTest::qWaitForWindowActive(&Screen));
      ButtonOf(Screen, Pressed)->setFocus();
      QTest::keyClick(&Screen, Qt::Key_Return);
      QVERIFY(Screen.isVisible() && ButtonOf(Screen, Pressed)->isDown());
      QTRY_COMPARE(Screen.result(), int(QDialog::Accepted));
      QCOMPARE(int(Screen.Choice()), Taken);
      QCOMPARE(Screen.Path(), sPath);
    }
  }

  void otherKeysKeepTheQuestion() {
    CWelcomeScreen Screen(nullptr, {});
    Screen.show();
    QVERIFY(QTest::qWaitForWindowActive(&Screen));
    for (const Qt::Key Key : {Qt::Key_Escape, Qt::Key_F1, Qt::Key_Q}) QTest::keyClick(&Screen, Key);
    QTest::qWait(0);
    QVERIFY(Screen.isVisible());
    QVERIFY(!Screen.findChild<QToolButton*>()->isEnabled());
  }

  void theArrowOffersEveryProject() {
    CWelcomeScreen Screen(nullptr, PROJECTS);
    Screen.show();
    QVERIFY(QTest::qWaitForWindowActive(&Screen));
    QStringList Texts;
    WhenPopup([&Texts](QWidget* pMenu) {
      for (const QAction* const pAction : pMenu->actions()) Texts << pAction->text();
      static_cast<QMenu*>(pMenu)->setActiveAction(pMenu->actions().last());
      QTest::keyClick(pMenu, Qt::Key_Return);
    });
    QTest::mouseClick(Screen.findChild<QToolButton*>(), Qt::LeftButton);
    QCOMPARE(Texts, (QStringList{u"/one && only/a.vdebug"_s, PROJECTS[1]}));
    QCOMPARE(int(Screen.Choice()), int(CWelcomeScreen::RECENT_PROJECT));
    QCOMPARE(Screen.Path(), PROJECTS[1]);
  }
};

QTEST_MAIN(CWelcomeTest)
#include "welcome_test.moc"
