// The preference dialog as a user meets it: opened by its key, driven by keys and clicks.

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QFontDialog>
#include <QGroupBox>
#include <QLineEdit>
#include <QPushButton>
#include <QStackedWidget>
#include <QTreeWidget>

#include "drive.h"
#include "session.h"
#include "shell/actions/command_console.h"
#include "shell/look/look.h"
#include "shell/settings/colors.h"
#include "shell/settings/fonts.h"
#include "shell/settings/preferences.h"
#include "shell/settings/sys_vars.h"

using namespace Qt::StringLiterals;

namespace {

// A preference on its page, and what a user makes of it: for a check box the state that one press of Space leaves, for
// all others, which have a default, a value that is chosen or typed. Of the check boxes those whose label stands on
// another page too are enough.
struct PREFERENCE_CASE {
  const char* sPage;
  const char* sLabel;
  const char* sName;
  const char* sValue;
  const char* sDefault;
};
const PREFERENCE_CASE PREFERENCES[] = {
    {"Source Viewer", "Show Sidebar", "SHOW_SIDEBAR_SRC", "no"},
    {"Source Viewer", "Document Editing Restriction", "RESTRICT_SRC_EDIT", "never allow editing", "no restriction"},
    {"Source Viewer", "Line number frequency", "LINE_NUMBER_FREQ", "Every 10 Lines", "All Lines"},
    {"Source Viewer", "Tab Spacing", "TAB_SPACING", "8", "2"},
    {"Disassembly Window", "Show Sidebar", "SHOW_SIDEBAR_ASM", "no"},
    {"Disassembly Window", "Show Instruction Encodings", "SHOW_ENCODINGS_ASM", "no"},
    {"Instruction Trace Window", "Show Instruction Encodings", "SHOW_ENCODINGS_ITRACE", "yes"},
    {"Terminal Window", "Newline Input Termination Format", "TERMINAL_EOL_FORMAT", "None", "Unix format (LF)"},
    {"Table Windows", "Symbol Member Count Display Limit", "MAX_SYMBOL_MEMBERS", "100000", "512"},
};
constexpr qsizetype NUM_CHECK_BOXES = 31;

// The pages, and how many colours they list.
const std::pair<const char*, int> COLORS[] = {
    {"Application", 9}, {"Source Viewer", 9}, {"Disassembly Window", 5}, {"Table Windows", 15}};

// Of a page and an item.
const std::tuple<const char*, const char*, U32> FONTS[] = {{"Application", "Value", FONT_APP_MONO},
                                                           {"Source Viewer", "Text", FONT_SRC_CODE},
                                                           {"Table Windows", "Value", FONT_ITEM_VALUE}};

// A colour or a font, and what is typed into the dialog that chooses it.
struct CHOICE {
  const char* sKind;
  QString sItem;
  const char* sName;
  std::function<QString()> Value;
  const char* sTyped;
  const char* sResult;  // a part of the value then
};

QVariant StoredSetting(const QString& sGroup, const QString& sName) {
  return GetSetting({"AppData", "Preferences", sGroup}, sName);
}

template <typename WIDGET>
WIDGET* Find(QWidget* pPage, const char* sName) {
  return pPage->findChild<WIDGET*>(QLatin1String(sName));
}

QString PagePath(QWidget* pDialog) {
  const QTreeWidgetItem* const pItem = pDialog->findChild<QTreeWidget*>()->currentItem();
  return pItem->parent() ? pItem->parent()->text(0) + " / " + pItem->text(0) : QString();
}

// Goes to a page by the keys of the tree.
QWidget* OpenPage(QWidget* pDialog, const QString& sPage) {
  auto* const pTree = pDialog->findChild<QTreeWidget*>();
  QTest::keyClick(pTree, Qt::Key_Home);
  for (int i = 0; i < 20 && PagePath(pDialog) != sPage; ++i) QTest::keyClick(pTree, Qt::Key_Down);
  return PagePath(pDialog) == sPage ? pDialog->findChild<QStackedWidget*>()->currentWidget() : nullptr;
}

// The widget of a page with this title or text.
template <typename WIDGET>
WIDGET* FindByText(QWidget* pPage, const char* sProperty, const char* sText) {
  for (WIDGET* const pWidget : pPage->findChildren<WIDGET*>()) {
    if (pWidget->property(sProperty) == QLatin1String(sText)) return pWidget;
  }
  return nullptr;
}

QWidget* OpenGroup(QWidget* pDialog, const char* sPage, const char* sTitle) {
  return FindByText<QGroupBox>(OpenPage(pDialog, u"Appearance / "_s + sPage), "title", sTitle);
}

bool IsBold(const QComboBox* pItems) {
  return pItems->currentData(Qt::FontRole).value<QFont>().bold() && pItems->font().bold();
}

// Chooses another value for an item in the modal dialog that its field opens.
void ChooseInField(QWidget* pGroup, const CHOICE& Choice) {
  QVERIFY(SelectByKeys(Find<QComboBox>(pGroup, "Items"), Choice.sItem));
  WhenModal([&](QWidget* pChooser) {
    const bool bFont = qobject_cast<QFontDialog*>(pChooser) != nullptr;
    TypeOver(bFont ? pChooser->findChildren<QLineEdit*>().at(2) : pChooser->findChild<QLineEdit*>(), Choice.sTyped);
    if (pChooser->isVisible()) QTest::keyClick(pChooser, Qt::Key_Return);
  });
  QTest::keyClick(Find<QPushButton>(pGroup, "Field"), Qt::Key_Space);
}

CHOICE FontChoice(const char* sItem, U32 ID) {
  return {"Font", sItem, GetFontInfo(ID)->sName, [ID] { return FontToText(ID); }, "14", ",  14pt,  "};
}

}  // namespace

class CPreferencesDialogTest : public QObject {
  Q_OBJECT

private Q_SLOTS:
  void initTestCase() { m_Session.Start(); }
  void init() {
    ResetVars();
    m_Session.ClearConsole();
  }

  void everyPreferenceChangesThroughItsBox() {
    InDialog([this](QWidget* pDialog) {
      QSet<QString> CheckBoxes;
      for (const QCheckBox* const pBox : pDialog->findChildren<QCheckBox*>()) CheckBoxes << pBox->objectName();
      QCOMPARE(CheckBoxes.size(), NUM_CHECK_BOXES);
      for (const PREFERENCE_CASE& Case : PREFERENCES) {
        CheckPreference(OpenPage(pDialog, u"General / "_s + Case.sPage), Case);
        if (QTest::currentTestFailed()) return qWarning("%s", Case.sName);
      }
    });
  }

  void aRefusedNumberStaysAndTheResetButtonBringsTheDefault() {
    SetVarValue(GetVarInfo(PREF_MAX_SYMBOL_MEMBERS), 9, 1);
    InDialog([this](QWidget* pDialog) {
      QWidget* const pPage = OpenPage(pDialog, "General / Table Windows");
      auto* const pValue = Find<QComboBox>(pPage, "Value");
      const auto sEcho = u"Edit.Preference (PREF_MAX_SYMBOL_MEMBERS, %1)"_s;
      for (const QString sText : {"100001", "many", "-1"}) {
        TypeOver(pValue->lineEdit(), sText);
        QCOMPARE(m_Session.LastLine(), sEcho.arg(sText) + u": invalid parameter: \"%1\""_s.arg(sText));
        QCOMPARE(pValue->currentText(), "9");
      }
      QTest::mouseClick(Find<QPushButton>(pPage, "Reset"), Qt::LeftButton);
      QCOMPARE(m_Session.LastLine(), sEcho.arg(512) + u';');
    });
    QCOMPARE(GetVarSavedValue(PREF_MAX_SYMBOL_MEMBERS), 512u);
  }

  void everyColorAndFontIsChosenKeptAndReset() {
    InDialog([this](QWidget* pDialog) {
      for (const auto& [sPage, NumColors] : COLORS) {
        QWidget* const pGroup = OpenGroup(pDialog, sPage, "Colors");
        QStringList Names;
        auto* const pItems = Find<QComboBox>(pGroup, "Items");
        for (int i = 0; i < pItems->count(); ++i) Names << pItems->itemText(i);
        QCOMPARE(Names.size(), NumColors);
        QVERIFY2(std::ranges::is_sorted(Names), qPrintable(Names.join(u' ')));
        for (const QString& sItem : Names) {
          const U32 ID = static_cast<U32>(FindColor(sItem));
          const auto Value = [ID] { return GetColor(ID).name(); };
          CheckChoice(pGroup, {"Color", sItem, GetColorInfo(ID)->sName, Value, "#12ab56", "#12ab56"});
          if (QTest::currentTestFailed()) return qWarning("%s", qPrintable(sItem));
        }
      }
      for (const auto& [sPage, sItem, ID] : FONTS) {
        CheckChoice(OpenGroup(pDialog, sPage, "Fonts"), FontChoice(sItem, ID));
        if (QTest::currentTestFailed()) return qWarning("%s of %s", sItem, sPage);
      }
    });
    SetPaletteColors(0xFF010203u, 0xFF040506u);
    QCOMPARE(GetColorRgb(COLOR_PROGRESS_BAR_REMAINING), 0xFF010203u);
    UpdatePaletteColors();
  }

  void theDialogOpensAnewForAnotherApplicationFont() {
    const QFont Before = GetFont(FONT_APP);
    bool bReopened = false;
    InDialog([&](QWidget* pDialog) {
      ChooseInField(OpenGroup(pDialog, "Application", "Fonts"), FontChoice("Text", FONT_APP));
      QTRY_VERIFY(!pDialog->isVisible());
      WhenModal([&](QWidget* pAnew) {
        bReopened = true;
        QCOMPARE(pAnew->font().pointSize(), 14);
        QCOMPARE(PagePath(pAnew), "Appearance / Application");
      });
    });
    QVERIFY(bReopened);
    QCOMPARE(QApplication::font().pointSize(), 14);
    QCOMPARE(GetFont(FONT_CONSOLE).pointSize(), 14);
    SetFont(FONT_APP, Before, true);
  }

  void forgettingAnswersHappensOnceAndAfterwards() {
    const SETTING_GROUP Group = {"AppData", "MessageTimeouts"};
    SetSetting(Group, "1", quint64{0xFFFFFFFE});
    SetSetting({"AppData", "SourceEditor"}, "DoNotShowInfoMsgAgain", true);
    InDialog([&](QWidget* pDialog) {
      QWidget* const pPage = OpenPage(pDialog, "General / Application");
      QTest::keyClick(FindByText<QCheckBox>(pPage, "text", "Reset all dialog options \"Do not show again\""),
                      Qt::Key_Space);
      QVERIFY2(HasSetting(Group, "1"), "forgotten before the dialog is closed");
      QTest::keyClick(pDialog, Qt::Key_Escape);
    });
    QVERIFY(!HasSetting(Group, "1") && !HasSetting({"AppData", "SourceEditor"}, "DoNotShowInfoMsgAgain"));
    QCOMPARE(GetVarValue(PREF_RESET_DIALOG_DNSA) + GetVarSavedValue(PREF_RESET_DIALOG_DNSA), 0u);
  }

  void whatCommandsChangeIsNotKept() {
    ExecuteCommand("Edit.Preference (PREF_TAB_SPACING, 8)");
    ExecuteCommand("Edit.Font (FONT_CONSOLE, \"Monospace, 20pt, Normal\")");
    ExecuteCommand("Edit.Color (COLOR_PC_ACTIVE, red)");
    QCOMPARE(std::pair(GetVarValue(PREF_TAB_SPACING), GetFont(FONT_CONSOLE).pointSize()), std::pair(8u, 20));
    SavePreferences();
    SaveColorsAndFonts();
    QCOMPARE(StoredSetting("Preferences", "PREF_TAB_SPACING").toUInt(), 2u);
    QVERIFY(!StoredSetting("Fonts", "FONT_CONSOLE").isValid());
    QVERIFY(!StoredSetting("Colors", "COLOR_PC_ACTIVE").isValid());
    SetFont(FONT_CONSOLE, GetInheritedFont(FONT_CONSOLE), true);
    ResetColors();
  }

  void tabGoesFromTheTreeThroughThePageToTheButtons() {
    InDialog([](QWidget* pDialog) {
      QWidget* const pFonts = OpenGroup(pDialog, "Table Windows", "Fonts");
      QWidget* const pColors = OpenGroup(pDialog, "Table Windows", "Colors");
      QTRY_COMPARE(QApplication::focusWidget(), pDialog->findChild<QTreeWidget*>());
      const auto* const pButtons = pDialog->findChild<QDialogButtonBox*>();
      for (QWidget* const pNext :
           QWidgetList{Find<QWidget>(pFonts, "Items"), Find<QWidget>(pFonts, "Field"), Find<QWidget>(pColors, "Items"),
                       Find<QWidget>(pColors, "Field"), pButtons->button(QDialogButtonBox::Ok),
                       pButtons->button(QDialogButtonBox::Close)}) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), pNext);
      }
    });
  }

  void theLastPageAndTheSizeAreRemembered() {
    const QSize Size(790, 540);
    InDialog([&](QWidget* pDialog) {
      QVERIFY(OpenPage(pDialog, "General / Console Window"));
      pDialog->resize(Size);
      QTest::keyClick(pDialog, Qt::Key_Return);
      QVERIFY(!pDialog->isVisible());
    });
    InDialog([&](QWidget* pDialog) {
      QCOMPARE(PagePath(pDialog), "General / Console Window");
      QCOMPARE(pDialog->size(), Size);
    });
  }

private:
  // Opens the dialog by its key and closes it again.
  void InDialog(const std::function<void(QWidget*)>& Drive) { m_Session.RunDialog(Qt::Key_P, Drive); }

  void CheckPreference(QWidget* pPage, const PREFERENCE_CASE& Case) {
    QVERIFY2(pPage, Case.sPage);
    const QString sName = u"PREF_"_s + Case.sName;
    const QString sValue = Case.sValue;
    QString sEchoed = sValue;
    if (Case.sDefault == nullptr) {
      QCOMPARE(GetVarText(FindVar(sName)), sValue == "yes" ? "no" : "yes");
      auto* const pBox = FindByText<QCheckBox>(pPage, "text", Case.sLabel);
      QVERIFY2(pBox, Case.sLabel);
      QTest::keyClick(pBox, Qt::Key_Space);
      sEchoed = QString::number(sValue == "yes");
    } else {
      QVERIFY2(SelectByKeys(Find<QComboBox>(pPage, "Items"), Case.sLabel), Case.sLabel);
      auto* const pValue = Find<QComboBox>(pPage, "Value");
      QCOMPARE(pValue->currentText(), Case.sDefault);
      if (pValue->isEditable()) TypeOver(pValue->lineEdit(), sValue);
      QVERIFY2(pValue->isEditable() || SelectByKeys(pValue, sValue), Case.sValue);
      if (!sValue[0].isDigit()) sEchoed = u'"' + sValue + u'"';
    }
    QCOMPARE(m_Session.LastLine(), u"Edit.Preference (%1, %2);"_s.arg(sName, sEchoed));
    QCOMPARE(GetVarText(FindVar(sName)), sValue);
    SavePreferences();
    QCOMPARE(GetVarText(FindVar(sName), StoredSetting("Preferences", sName).toUInt()), sValue);
  }

  void CheckChoice(QWidget* pGroup, const CHOICE& Choice) {
    const QString sBefore = Choice.Value();
    ChooseInField(pGroup, Choice);
    const QString sEcho = u"Edit.%1 (%2, \"%3\");"_s.arg(Choice.sKind, Choice.sName);
    QVERIFY2(Choice.Value().contains(Choice.sResult), qPrintable(Choice.Value()));
    QCOMPARE(m_Session.LastLine(), sEcho.arg(Choice.Value()));
    SaveColorsAndFonts();
    const QString sStore = Choice.sKind + u"s"_s;
    QCOMPARE(StoredSetting(sStore, Choice.sName).toString(), Choice.Value());
    QVERIFY(IsBold(Find<QComboBox>(pGroup, "Items")));
    QTest::mouseClick(Find<QPushButton>(pGroup, "Reset"), Qt::LeftButton);
    SaveColorsAndFonts();
    QVERIFY(!StoredSetting(sStore, Choice.sName).isValid());
    QVERIFY(!IsBold(Find<QComboBox>(pGroup, "Items")));
    QCOMPARE(Choice.Value(), sBefore);
    QCOMPARE(m_Session.LastLine(), sEcho.arg(sBefore));
  }

  CSession m_Session;
};

QTEST_MAIN(CPreferencesDialogTest)
#include "preferences_dialog_test.moc"
