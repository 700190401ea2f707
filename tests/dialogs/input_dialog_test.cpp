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
    // History, choices, whether a text is mandatory, keys; result, text, index.
    const std::tuple<QStringList, QStringList, bool, QList<Qt::Key>, int, QString, int> aCases[] = {
        // The old text is selected, so that typing replaces it.
        {{}, {}, false, {Key_M, Key_A, Key_Return}, QDialog::Accepted, "ma", -1},
        {{}, {}, false, {Key_M, Key_A, Key_Escape}, QDialog::Rejected, "ma", -1},
        {{}, {}, false, {Key_Delete, Key_Return}, QDialog::Accepted, "", -1},
        {{"b", "a"}, {}, false, {Key_Down, Key_Return}, QDialog::Accepted, "a", 1},
        {{"b", "a"}, {}, false, {Key_Delete, Key_X, Key_Return}, QDialog::Accepted, "x", -1},
        {{}, {"Windows", "Unix", "None"}, false, {Key_Q, Key_Down, Key_Return}, QDialog::Accepted, "None", 2},
        // The first Return finds OK disabled.
        {{}, {}, true, {Key_Space, Key_Return, Key_A, Key_Return}, QDialog::Accepted, " a", -1},
    };
    for (const auto& [History, Choices, bMandatory, Keys, Result, sText, Index] : aCases) {
      CInputDialog Dialog(nullptr, "&Goto...", QString(), "Two\nlines:");
      QCOMPARE(Dialog.windowTitle(), "Goto...");
      if (History.isEmpty()) Dialog.SetText("old");
      if (!History.isEmpty()) Dialog.SetHistory(History);
      if (!Choices.isEmpty()) Dialog.SetChoices(Choices, 1);
      Dialog.SetMandatory(bMandatory);
      WhenModal([&Keys](QWidget* pDialog) {
        QTRY_VERIFY(QApplication::focusWidget());
        for (const Qt::Key Key : Keys) QTest::keyClick(QApplication::focusWidget(), Key);
        QVERIFY(!pDialog->isVisible());
      });
      QCOMPARE(Dialog.exec(), Result);
      QCOMPARE(std::pair(Dialog.Text(), Dialog.Index()), std::pair(sText, Index));
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
    QAction Shown("shown"), Hidden("hidden");
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
    WhenPopup([](QWidget*) {});
    Menu.Run(QPoint(100, 100));
    QString sShape;
    for (const QAction* const pAction : Menu.actions()) sShape += pAction->text().leftJustified(1, u'-', true);
    QCOMPARE(sShape, "s-l");
  }
};

QTEST_MAIN(CInputDialogTest)
#include "input_dialog_test.moc"
