// The input dialog and the popup menu.

#include <QLineEdit>
#include <QPushButton>

#include "drive.h"
#include "shell/settings/settings_cache.h"
#include "ui/input_dialog.h"
#include "ui/popup_menu.h"

namespace {

int Run(CInputDialog& Dialog, const std::function<void(QWidget*)>& Drive) {
  WhenModal(Drive);
  return Dialog.exec();
}

void PressKeys(const QList<Qt::Key>& Keys) {
  for (const Qt::Key Key : Keys) QTest::keyClick(QApplication::focusWidget(), Key);
}

QWidget* WaitForFocus() {
  if (!QTest::qWaitFor([] { return QApplication::focusWidget() != nullptr; })) qWarning("no focus");
  return QApplication::focusWidget();
}

}  // namespace

class CInputDialogTest : public QObject {
  Q_OBJECT

private Q_SLOTS:
  void initTestCase() { SetSettingsInMemory(true); }
  void enterTakesTheTextAndEscapeDoesNot();
  void offersEarlierTextsButTakesOthers();
  void takesNothingButAChoice();
  void aMandatoryTextKeepsOkDisabled();
  void historyKeepsTheLatestTextsOnce();
  void countsAsCancelledWithoutAUser();
  void aPopupMenuStaysOnTheScreenAndReturnsTheChoice();
  void separatorsStandBetweenEntriesOnly();
};

void CInputDialogTest::enterTakesTheTextAndEscapeDoesNot() {
  for (const bool bEnter : {true, false}) {
    CInputDialog Dialog(nullptr, QStringLiteral("&Goto..."), QString(), QStringLiteral("Address or Symbol:"));
    Dialog.SetText(QStringLiteral("old"));
    const int Result = Run(Dialog, [&](QWidget* pDialog) {
      QCOMPARE(pDialog->windowTitle(), QStringLiteral("Goto..."));
      // The old text is selected, so that typing replaces it.
      QTest::keyClicks(WaitForFocus(), QStringLiteral("main"));
      PressKeys({bEnter ? Qt::Key_Return : Qt::Key_Escape});
      QVERIFY(!pDialog->isVisible());
    });
    QCOMPARE(Result, int(bEnter ? QDialog::Accepted : QDialog::Rejected));
    QCOMPARE(Dialog.Text(), QStringLiteral("main"));
  }
}

void CInputDialogTest::offersEarlierTextsButTakesOthers() {
  struct HISTORY_CASE {
    QList<Qt::Key> Keys;
    const char* sText;
    int Index;
  };
  const HISTORY_CASE aCases[] = {
      {{Qt::Key_Return}, "b", 0},
      {{Qt::Key_Down, Qt::Key_Return}, "a", 1},
      {{Qt::Key_Delete, Qt::Key_X, Qt::Key_Return}, "x", -1},
  };
  for (const HISTORY_CASE& Case : aCases) {
    CInputDialog Dialog(nullptr, QStringLiteral("Goto"), QString(), QStringLiteral("Text:"));
    Dialog.SetHistory({QStringLiteral("b"), QStringLiteral("a")});
    const int Result = Run(Dialog, [&](QWidget*) {
      WaitForFocus();
      PressKeys(Case.Keys);
    });
    QCOMPARE(Result, int(QDialog::Accepted));
    QCOMPARE(Dialog.Text(), QLatin1String(Case.sText));
    QCOMPARE(Dialog.Index(), Case.Index);
  }
}

void CInputDialogTest::takesNothingButAChoice() {
  CInputDialog Dialog(nullptr, QStringLiteral("Save"), QString(), QStringLiteral("Two\nlines"));
  Dialog.SetChoices({QStringLiteral("Windows"), QStringLiteral("Unix"), QStringLiteral("None")}, 1);
  const int Result = Run(Dialog, [](QWidget*) {
    WaitForFocus();
    PressKeys({Qt::Key_Q, Qt::Key_Down, Qt::Key_Return});
  });
  QCOMPARE(Result, int(QDialog::Accepted));
  QCOMPARE(Dialog.Text(), QStringLiteral("None"));
  QCOMPARE(Dialog.Index(), 2);
}

void CInputDialogTest::aMandatoryTextKeepsOkDisabled() {
  CInputDialog Dialog(nullptr, QStringLiteral("Name"), QString(), QStringLiteral("Name:"));
  Dialog.SetMandatory(true);
  const int Result = Run(Dialog, [](QWidget* pDialog) {
    QTest::keyClicks(WaitForFocus(), QStringLiteral(" "));
    PressKeys({Qt::Key_Return});
    QVERIFY(pDialog->isVisible());
    PressKeys({Qt::Key_A, Qt::Key_Return});
    QVERIFY(!pDialog->isVisible());
  });
  QCOMPARE(Result, int(QDialog::Accepted));
}

void CInputDialogTest::historyKeepsTheLatestTextsOnce() {
  QStringList History;
  for (const char* sText : {"a", "b", "", "c", "a", "d"}) {
    History = CInputDialog::AddToHistory(History, QLatin1String(sText), 3);
  }
  QCOMPARE(History, (QStringList{QStringLiteral("d"), QStringLiteral("a"), QStringLiteral("c")}));
}

void CInputDialogTest::countsAsCancelledWithoutAUser() {
  QStringList Titles;
  CDialog::SetResponder([&](const QString& sTitle) { Titles << sTitle; });
  CInputDialog Dialog(nullptr, QStringLiteral("Goto"), QString(), QStringLiteral("Text:"));
  Dialog.SetText(QStringLiteral("main"));
  QCOMPARE(Dialog.exec(), int(QDialog::Rejected));
  CDialog::SetResponder(nullptr);
  QCOMPARE(Titles, QStringList{QStringLiteral("Goto")});
}

void CInputDialogTest::aPopupMenuStaysOnTheScreenAndReturnsTheChoice() {
  const QRect Screen = QGuiApplication::primaryScreen()->availableGeometry();
  for (const QPoint& Pos : {Screen.topLeft(), Screen.bottomRight(), Screen.topRight(), Screen.center()}) {
    CPopupMenu Menu;
    Menu.addAction(QStringLiteral("&First"));
    QAction* const pSecond = Menu.addAction(QStringLiteral("A second entry of some width"));
    WhenPopup([&](QWidget* pPopup) {
      QVERIFY(Screen.contains(pPopup->geometry()));
      QTest::keyClick(pPopup, Qt::Key_Down);
      QTest::keyClick(pPopup, Qt::Key_Down);
      QTest::keyClick(pPopup, Qt::Key_Return);
    });
    QCOMPARE(Menu.Run(Pos), pSecond);
  }
  CPopupMenu Empty;
  Empty.AddSeparator();
  QCOMPARE(Empty.Run(Screen.center()), nullptr);
}

void CInputDialogTest::separatorsStandBetweenEntriesOnly() {
  QAction Shown(QStringLiteral("shown"));
  QAction Hidden(QStringLiteral("hidden"));
  Hidden.setVisible(false);
  CPopupMenu Menu;
  Menu.AddSeparator();
  Menu.AddAction(&Shown);
  Menu.AddSeparator();
  Menu.AddAction(&Hidden);
  Menu.AddAction(nullptr);
  Menu.AddSeparator();
  Menu.addAction(QStringLiteral("last"));
  Menu.AddSeparator();
  QString sShape;
  WhenPopup([&](QWidget*) {
    for (const QAction* const pAction : Menu.actions()) {
      sShape += pAction->isSeparator() ? QLatin1Char('-') : pAction->text().front();
    }
  });
  Menu.Run(QPoint(100, 100));
  QCOMPARE(sShape, QStringLiteral("s-l"));
}

QTEST_MAIN(CInputDialogTest)
#include "input_dialog_test.moc"
