// The input dialog and the popup menu.

#include "ui/input_dialog.h"
#include "drive.h"
#include "shell/settings/settings_cache.h"
#include "ui/popup_menu.h"

class CInputDialogTest : public QObject {
  Q_OBJECT

private Q_SLOTS:
  void initTestCase() { SetSettingsInMemory(true); }

  void keysGiveATextOrAChoice() {
    using enum Qt::Key;
    const struct {
      QStringList History;
      QStringList Choices;
      bool Mandatory;
      QList<Qt::Key> Keys;
      int Result;
      QString sText;
      int Index;
    } aCases[] = {
        // The old text is selected, so that typing replaces it.
        {{}, {}, false, {Key_M, Key_A, Key_Return}, QDialog::Accepted, "ma", -1},
        {{}, {}, false, {Key_M, Key_A, Key_Escape}, QDialog::Rejected, "ma", -1},
        {{}, {}, false, {Key_Delete, Key_Return}, QDialog::Accepted, "", -1},
        {{"b", "a"}, {}, false, {Key_Return}, QDialog::Accepted, "b", 0},
        {{"b", "a"}, {}, false, {Key_Down, Key_Return}, QDialog::Accepted, "a", 1},
        {{"b", "a"}, {}, false, {Key_Delete, Key_X, Key_Return}, QDialog::Accepted, "x", -1},
        {{}, {"Windows", "Unix", "None"}, false, {Key_Q, Key_Down, Key_Return}, QDialog::Accepted, "None", 2},
        // The first Return finds OK disabled.
        {{}, {}, true, {Key_Space, Key_Return, Key_A, Key_Return}, QDialog::Accepted, " a", -1},
    };
    for (const auto& Case : aCases) {
      CInputDialog Dialog(nullptr, "&Goto...", QString(), "Two\nlines:");
      QCOMPARE(Dialog.windowTitle(), "Goto...");
      if (Case.History.isEmpty()) Dialog.SetText("old");
      if (!Case.History.isEmpty()) Dialog.SetHistory(Case.History);
      if (!Case.Choices.isEmpty()) Dialog.SetChoices(Case.Choices, 1);
      Dialog.SetMandatory(Case.Mandatory);
      WhenModal([&](QWidget* pDialog) {
        QTRY_VERIFY(QApplication::focusWidget());
        for (const Qt::Key Key : Case.Keys) QTest::keyClick(QApplication::focusWidget(), Key);
        QVERIFY(!pDialog->isVisible());
      });
      QCOMPARE(Dialog.exec(), Case.Result);
      QCOMPARE(Dialog.Text(), Case.sText);
      QCOMPARE(Dialog.Index(), Case.Index);
    }
  }

  void historyKeepsTheLatestTextsOnce() {
    QStringList History;
    for (const char* sText : {"a", "b", "", "c", "d", "c"}) History = CInputDialog::AddToHistory(History, sText, 3);
    QCOMPARE(History, (QStringList{"c", "d", "b"}));
  }

  void countsAsCancelledWithoutAUser() {
    QStringList Titles;
    CDialog::SetResponder([&](const QString& sTitle) { Titles << sTitle; });
    QCOMPARE(CInputDialog(nullptr, "Goto", QString(), "Text:").exec(), int(QDialog::Rejected));
    CDialog::SetResponder(nullptr);
    QCOMPARE(Titles, QStringList{"Goto"});
  }

  void aPopupMenuStaysOnTheScreenAndReturnsTheChoice() {
    const QRect Screen = QGuiApplication::primaryScreen()->availableGeometry();
    for (const QPoint& Pos : {Screen.topLeft(), Screen.bottomRight(), Screen.topRight(), Screen.center()}) {
      CPopupMenu Menu;
      Menu.addAction("&First");
      QAction* const pSecond = Menu.addAction("A second entry of some width");
      WhenPopup([&](QWidget* pPopup) {
        QVERIFY(Screen.contains(pPopup->geometry()));
        for (const Qt::Key Key : {Qt::Key_Down, Qt::Key_Down, Qt::Key_Return}) QTest::keyClick(pPopup, Key);
      });
      QCOMPARE(Menu.Run(Pos), pSecond);
    }
    CPopupMenu Empty;
    Empty.AddSeparator();
    QCOMPARE(Empty.Run(Screen.center()), nullptr);
  }

  void separatorsStandBetweenEntriesOnly() {
    QAction Shown("shown");
    QAction Hidden("hidden");
    Hidden.setVisible(false);
    CPopupMenu Menu;
    Menu.AddSeparator();
    Menu.AddAction(&Shown);
    Menu.AddSeparator();
    Menu.AddAction(&Hidden);
    Menu.AddAction(nullptr);
    Menu.AddSeparator();
    Menu.addAction("last");
    Menu.AddSeparator();
    QString sShape;
    WhenPopup([&](QWidget*) {
      for (const QAction* const pAction : Menu.actions()) {
        sShape += pAction->isSeparator() ? u'-' : pAction->text().front();
      }
    });
    Menu.Run(QPoint(100, 100));
    QCOMPARE(sShape, "s-l");
  }
};

QTEST_MAIN(CInputDialogTest)
#include "input_dialog_test.moc"
