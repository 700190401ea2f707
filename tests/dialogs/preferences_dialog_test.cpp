// The preference dialog as a user meets it: opened by its key, driven by keys and clicks.

#include <QCheckBox>
#include <QColorDialog>
#include <QDialogButtonBox>
#include <QFontDialog>
#include <QGroupBox>
#include <QLineEdit>
#include <QPushButton>
#include <QStackedWidget>
#include <QTreeWidget>

#include "drive.h"
#include "session.h"
#include "shell/actions/action_dispatch.h"
#include "shell/actions/action_ids.h"
#include "shell/actions/command_console.h"
#include "shell/look/look.h"
#include "shell/settings/colors.h"
#include "shell/settings/fonts.h"
#include "shell/settings/preferences.h"
#include "shell/settings/sys_vars.h"
#include "ui/message_box.h"

namespace {

// A preference on its page, and what a user makes of it: for a check box the state that one press of Space leaves, for
// all others a value that is chosen or typed.
struct PREFERENCE_CASE {
  const char* sPage;
  const char* sLabel;
  const char* sName;
  const char* sValue;
  const char* sDefault;
  bool IsCheckBox = true;
};
const PREFERENCE_CASE PREFERENCES[] = {
    {"General / Application", "Open the most recent project on startup", "PREF_START_WITH_MOST_RECENT_PROJ", "yes",
     "no"},
    {"General / Application", "Show progress bar while running", "PREF_SHOW_PROGBAR_WHILE_RUNNING", "yes", "no"},
    {"General / Application", "Show dialog option \"Do not show again\"", "PREF_DIALOG_SHOW_DNSA", "no", "yes"},
    {"General / Application", "Divide big hexadecimal numbers into blocks", "PREF_SHOW_HEX_BLOCKS", "no", "yes"},
    {"General / Application", "Show symbol tooltips", "PREF_SHOW_TOOLTIPS", "no", "yes"},
    {"General / Application", "Show symbol icons", "PREF_SHOW_SYMBOL_ICONS", "yes", "no"},
    {"General / Source Viewer", "Show Sidebar", "PREF_SHOW_SIDEBAR_SRC", "no", "yes"},
    {"General / Source Viewer", "Show Line Expansion Bar", "PREF_SHOW_EXPANSION_BAR", "no", "yes"},
    {"General / Source Viewer", "Show Code Profile", "PREF_SHOW_SRC_CODE_PROFILE", "yes", "no"},
    {"General / Source Viewer", "Lock Header Bar", "PREF_LOCK_HEADER_BAR", "no", "yes"},
    {"General / Source Viewer", "Indent inline assembly code", "PREF_INDENT_INLINE_ASSEMBLY", "no", "yes"},
    {"General / Source Viewer", "Document Editing Restriction", "PREF_RESTRICT_SRC_EDIT", "never allow editing",
     "no restriction", false},
    {"General / Source Viewer", "Line number frequency", "PREF_LINE_NUMBER_FREQ", "Every 10 Lines", "All Lines", false},
    {"General / Source Viewer", "Tab Spacing", "PREF_TAB_SPACING", "8", "2", false},
    {"General / Disassembly Window", "Show Source", "PREF_SHOW_ASM_SOURCE", "no", "yes"},
    {"General / Disassembly Window", "Show Labels", "PREF_SHOW_ASM_LABELS", "no", "yes"},
    {"General / Disassembly Window", "Show Sidebar", "PREF_SHOW_SIDEBAR_ASM", "no", "yes"},
    {"General / Disassembly Window", "Show Code Profile", "PREF_SHOW_ASM_CODE_PROFILE", "yes", "no"},
    {"General / Disassembly Window", "Show Instruction Encodings", "PREF_SHOW_ENCODINGS_ASM", "no", "yes"},
    {"General / Instruction Trace Window", "Show Instruction Encodings", "PREF_SHOW_ENCODINGS_ITRACE", "yes", "no"},
    {"General / Functions Window", "Prepend class names to function names", "PREF_PREPEND_FUNC_CLASS_NAMES", "no",
     "yes"},
    {"General / Terminal Window", "Suppress Control Characters", "PREF_TERMINAL_NO_CONTROL_CHARS", "no", "yes"},
    {"General / Terminal Window", "Clear On Reset", "PREF_TERMINAL_CLEAR_ON_RESET", "yes", "no"},
    {"General / Terminal Window", "Zero-Terminate Input", "PREF_TERMINAL_ZERO_TERM_INPUT", "yes", "no"},
    {"General / Terminal Window", "Echo Input", "PREF_TERMINAL_ECHO_INPUT", "yes", "no"},
    {"General / Terminal Window", "Newline Input Termination Format", "PREF_TERMINAL_EOL_FORMAT", "None",
     "Unix format (LF)", false},
    {"General / Console Window", "Show Timestamps", "PREF_SHOW_TIMESTAMPS_CONSOLE", "no", "yes"},
    {"General / Table Windows", "(unsigned) char", "PREF_SHOW_CHAR_TEXT", "no", "yes"},
    {"General / Table Windows", "(unsigned) short", "PREF_SHOW_SHORT_TEXT", "yes", "no"},
    {"General / Table Windows", "(unsigned) int", "PREF_SHOW_INT_TEXT", "yes", "no"},
    {"General / Table Windows", "(unsigned) char*", "PREF_SHOW_CHAR_PTR_TEXT", "no", "yes"},
    {"General / Table Windows", "(unsigned) short*", "PREF_SHOW_SHORT_PTR_TEXT", "yes", "no"},
    {"General / Table Windows", "(unsigned) int*", "PREF_SHOW_INT_PTR_TEXT", "yes", "no"},
    {"General / Table Windows", "Globally Hide Filter Bars", "PREF_FILTER_BARS_DISABLED", "yes", "no"},
    {"General / Table Windows", "Symbol Member Count Display Limit", "PREF_MAX_SYMBOL_MEMBERS", "100000", "512", false},
};

struct COLOR_CASE {
  const char* sPage;
  QList<QString> Names;  // as the list shows them, sorted
};
const COLOR_CASE COLORS[] = {
    {"Appearance / Application",
     {"Console Text (Error)", "Console Text (Script)", "Console Text (User)", "Console Text (V-Node)",
      "Execution Profile - bad instruction", "Execution Profile - good instruction", "PC Backtrace Highlight",
      "Selection Highlight Dark", "Selection Highlight Light"}},
    {"Appearance / Source Viewer",
     {"Callsite Row Active", "Callsite Row Inactive", "PC Row Active", "PC Row Inactive", "Syntax Comment",
      "Syntax Directive", "Syntax Keyword", "Syntax String", "Syntax Text"}},
    {"Appearance / Disassembly Window",
     {"Label Background", "Syntax Immediate", "Syntax Label", "Syntax Mnemonic", "Syntax Register"}},
    {"Appearance / Table Windows",
     {"Change Level 1 Fill Color", "Change Level 1 Text Color", "Change Level 2 Fill Color",
      "Change Level 2 Text Color", "Change Level 3 Fill Color", "Inactive table Item", "Progress Bar Progress",
      "Progress Bar Remaining", "Symbol Icon Constant", "Symbol Icon Function", "Symbol Icon Global Variable",
      "Symbol Icon Local Variable", "Symbol Icon Member", "Table Grid Lines", "Text Filter Match"}},
};

struct FONT_CASE {
  const char* sPage;
  const char* sItem;
  const char* sName;
  U32 ID;
};
const FONT_CASE FONTS[] = {
    {"Appearance / Application", "Value", "FONT_APP_MONO", FONT_APP_MONO},
    {"Appearance / Source Viewer", "Text", "FONT_SRC_CODE", FONT_SRC_CODE},
    {"Appearance / Source Viewer", "Line Numbers", "FONT_LINE_NUMBERS", FONT_LINE_NUMBERS},
    {"Appearance / Disassembly Window", "Text", "FONT_ASM_CODE", FONT_ASM_CODE},
    {"Appearance / Disassembly Window", "Execution Counters", "FONT_EXEC_COUNTERS", FONT_EXEC_COUNTERS},
    {"Appearance / Table Windows", "Text", "FONT_ITEM_NAME", FONT_ITEM_NAME},
    {"Appearance / Table Windows", "Value", "FONT_ITEM_VALUE", FONT_ITEM_VALUE},
};

QVariant StoredSetting(const char* sGroup, const QString& sName) {
  return GetSetting({QStringLiteral("AppData"), QStringLiteral("Preferences"), QLatin1String(sGroup)}, sName);
}

// Goes to a page by the keys of the tree.
QWidget* OpenPage(QWidget* pDialog, const QString& sPage) {
  auto* const pTree = pDialog->findChild<QTreeWidget*>();
  QTest::keyClick(pTree, Qt::Key_Home);
  const auto Path = [&] {
    const QTreeWidgetItem* const pItem = pTree->currentItem();
    return pItem->parent() ? pItem->parent()->text(0) + QLatin1String(" / ") + pItem->text(0) : QString();
  };
  QString sLast;
  while (Path() != sPage) {
    const QTreeWidgetItem* const pBefore = pTree->currentItem();
    QTest::keyClick(pTree, Qt::Key_Down);
    if (pTree->currentItem() == pBefore) return nullptr;
  }
  return pDialog->findChild<QStackedWidget*>()->currentWidget();
}

QCheckBox* FindCheckBox(QWidget* pPage, const QString& sLabel) {
  for (QCheckBox* const pBox : pPage->findChildren<QCheckBox*>()) {
    if (pBox->text() == sLabel) return pBox;
  }
  return nullptr;
}

QGroupBox* FindGroup(QWidget* pPage, const char* sTitle) {
  for (QGroupBox* const pBox : pPage->findChildren<QGroupBox*>()) {
    if (pBox->title() == QLatin1String(sTitle)) return pBox;
  }
  return nullptr;
}

bool IsBold(const QComboBox* pItems) {
  return pItems->currentData(Qt::FontRole).value<QFont>().bold() && pItems->font().bold();
}

}  // namespace

class CPreferencesDialogTest : public QObject {
  Q_OBJECT

private Q_SLOTS:
  void initTestCase() { m_Session.Start(); }
  void init();
  void everyPreferenceChangesThroughItsBox();
  void theResetButtonBringsTheDefaultBack();
  void aNumberThatIsNotAllowedIsRefused();
  void everyColorIsChosenKeptAndReset();
  void aResetColorFollowsThePalette();
  void everyFontIsChosenKeptAndReset();
  void theDialogOpensAnewForAnotherApplicationFont();
  void forgettingAnswersHappensOnceAndAfterwards();
  void aSessionsColorsAndFontsAreNotKept();
  void wrongCommandsSayWhyAndChangeNothing();
  void tabGoesFromTheTreeThroughThePageToTheButtons();
  void theLastPageAndTheSizeAreRemembered();
  void cleanupTestCase() { m_Session.End(); }

private:
  // Opens the dialog by its key and closes it again.
  void InDialog(const std::function<void(QWidget*)>& Drive) { m_Session.RunDialog(Qt::Key_P, Drive); }
  void CheckPreference(QWidget* pDialog, const PREFERENCE_CASE& Case);
  void CheckColor(QWidget* pGroup, const QString& sItem);
  void CheckFont(QWidget* pPage, const FONT_CASE& Case);

  CSession m_Session;
};

void CPreferencesDialogTest::init() {
  ResetVars();
  m_Session.ClearConsole();
}

void CPreferencesDialogTest::CheckPreference(QWidget* pDialog, const PREFERENCE_CASE& Case) {
  const QString sName = QLatin1String(Case.sName);
  const QString sValue = QLatin1String(Case.sValue);
  QWidget* const pPage = OpenPage(pDialog, QLatin1String(Case.sPage));
  QVERIFY2(pPage, Case.sPage);
  QCOMPARE(GetVarText(FindVar(sName)), QLatin1String(Case.sDefault));
  if (Case.IsCheckBox) {
    QCheckBox* const pBox = FindCheckBox(pPage, QLatin1String(Case.sLabel));
    QVERIFY2(pBox, Case.sLabel);
    QTest::keyClick(pBox, Qt::Key_Space);
  } else {
    QVERIFY2(SelectByKeys(pPage->findChild<QComboBox*>(QStringLiteral("Items")), QLatin1String(Case.sLabel)),
             Case.sLabel);
    auto* const pValue = pPage->findChild<QComboBox*>(QStringLiteral("Value"));
    QCOMPARE(pValue->currentText(), QLatin1String(Case.sDefault));
    if (pValue->isEditable()) {
      TypeOver(pValue->lineEdit(), sValue);
    } else {
      QVERIFY2(SelectByKeys(pValue, sValue), Case.sValue);
    }
  }
  // The console writes boolean words as numbers, and names in quotes.
  bool bNumber = false;
  sValue.toInt(&bNumber);
  QString sEchoed = bNumber ? sValue : QLatin1Char('"') + sValue + QLatin1Char('"');
  if (Case.IsCheckBox) sEchoed = QString::number(sValue == QLatin1String("yes"));
  const QString sEcho = QStringLiteral("Edit.Preference (%1, %2);").arg(sName, sEchoed);
  QCOMPARE(m_Session.LastLine(), sEcho);
  QCOMPARE(GetVarText(FindVar(sName)), sValue);
  SavePreferences();
  const U32 Stored = StoredSetting("Preferences", sName).toUInt();
  QCOMPARE(GetVarText(FindVar(sName), Stored), sValue);
  // The echo does the same again.
  SetVarValue(FindVar(sName), GetVarDefault(GetVarIndex(FindVar(sName))), 1);
  ExecuteCommand(sEcho);
  QCOMPARE(GetVarText(FindVar(sName)), sValue);
  SavePreferences();
  QVERIFY2(StoredSetting("Preferences", sName).toUInt() != Stored, "a command doesn't store");
}

void CPreferencesDialogTest::everyPreferenceChangesThroughItsBox() {
  QCOMPARE(std::size(PREFERENCES) + 1, size_t{NUM_VARS - FIRST_PREFERENCE});  // one has a test of its own
  InDialog([this](QWidget* pDialog) {
    for (const PREFERENCE_CASE& Case : PREFERENCES) {
      CheckPreference(pDialog, Case);
      if (QTest::currentTestFailed()) return qWarning("%s", Case.sName);
    }
  });
}

void CPreferencesDialogTest::theResetButtonBringsTheDefaultBack() {
  SetVarValue(GetVarInfo(PREF_TAB_SPACING), 7, 1);
  SetVarValue(GetVarInfo(PREF_MAX_SYMBOL_MEMBERS), 9, 1);
  InDialog([this](QWidget* pDialog) {
    const std::pair<const char*, const char*> aItems[] = {
        {"General / Source Viewer", "Tab Spacing"}, {"General / Table Windows", "Symbol Member Count Display Limit"}};
    for (const auto& [sPage, sItem] : aItems) {
      QWidget* const pPage = OpenPage(pDialog, QLatin1String(sPage));
      QVERIFY(SelectByKeys(pPage->findChild<QComboBox*>(QStringLiteral("Items")), QLatin1String(sItem)));
      QTest::mouseClick(pPage->findChild<QPushButton*>(QStringLiteral("Reset")), Qt::LeftButton);
    }
    QVERIFY(m_Session.Console().contains(QStringLiteral("Edit.Preference (PREF_TAB_SPACING, 2);")));
    QCOMPARE(m_Session.LastLine(), QStringLiteral("Edit.Preference (PREF_MAX_SYMBOL_MEMBERS, 512);"));
  });
  QCOMPARE(GetVarSavedValue(PREF_TAB_SPACING), 2u);
  QCOMPARE(GetVarValue(PREF_MAX_SYMBOL_MEMBERS), 512u);
}

void CPreferencesDialogTest::aNumberThatIsNotAllowedIsRefused() {
  InDialog([this](QWidget* pDialog) {
    QWidget* const pPage = OpenPage(pDialog, QStringLiteral("General / Table Windows"));
    auto* const pValue = pPage->findChild<QComboBox*>(QStringLiteral("Value"));
    for (const char* sText : {"100001", "many", "-1"}) {
      TypeOver(pValue->lineEdit(), QLatin1String(sText));
      QCOMPARE(m_Session.LastLine(),
               QStringLiteral("Edit.Preference (PREF_MAX_SYMBOL_MEMBERS, %1): invalid parameter: \"%1\"")
                   .arg(QLatin1String(sText)));
      QCOMPARE(pValue->currentText(), QStringLiteral("512"));
    }
  });
  QCOMPARE(GetVarSavedValue(PREF_MAX_SYMBOL_MEMBERS), 512u);
}

void CPreferencesDialogTest::CheckColor(QWidget* pGroup, const QString& sItem) {
  auto* const pItems = pGroup->findChild<QComboBox*>(QStringLiteral("Items"));
  QVERIFY(SelectByKeys(pItems, sItem));
  QVERIFY(!IsBold(pItems));
  const U32 ID = static_cast<U32>(FindColor(sItem));
  const QString sName = QLatin1String(GetColorInfo(ID)->sName);
  WhenModal([](QWidget* pColors) {
    QVERIFY(qobject_cast<QColorDialog*>(pColors));
    TypeOver(pColors->findChild<QLineEdit*>(), QStringLiteral("#12ab56"));
  });
  QTest::keyClick(pGroup->findChild<QPushButton*>(QStringLiteral("Field")), Qt::Key_Space);
  QCOMPARE(m_Session.LastLine(), QStringLiteral("Edit.Color (%1, \"#12ab56\");").arg(sName));
  QCOMPARE(GetColor(ID).name(), QStringLiteral("#12ab56"));
  SaveColorsAndFonts();
  QCOMPARE(StoredSetting("Colors", sName).toString(), QStringLiteral("#12ab56"));
  QVERIFY(IsBold(pItems));
  QTest::mouseClick(pGroup->findChild<QPushButton*>(QStringLiteral("Reset")), Qt::LeftButton);
  SaveColorsAndFonts();
  QVERIFY(!StoredSetting("Colors", sName).isValid());
  QVERIFY(!IsColorModified(ID));
  QVERIFY(!IsBold(pItems));
  QCOMPARE(m_Session.LastLine(), QStringLiteral("Edit.Color (%1, \"%2\");").arg(sName, GetColor(ID).name()));
}

void CPreferencesDialogTest::everyColorIsChosenKeptAndReset() {
  InDialog([this](QWidget* pDialog) {
    for (const COLOR_CASE& Case : COLORS) {
      QWidget* const pPage = OpenPage(pDialog, QLatin1String(Case.sPage));
      QWidget* const pGroup = FindGroup(pPage, "Colors");
      const auto* const pItems = pGroup->findChild<QComboBox*>(QStringLiteral("Items"));
      QCOMPARE(pItems->count(), Case.Names.size());
      for (qsizetype i = 0; i < Case.Names.size(); ++i) QCOMPARE(pItems->itemText(static_cast<int>(i)), Case.Names[i]);
      for (const QString& sItem : Case.Names) {
        CheckColor(pGroup, sItem);
        if (QTest::currentTestFailed()) return qWarning("%s", qPrintable(sItem));
      }
    }
  });
}

void CPreferencesDialogTest::aResetColorFollowsThePalette() {
  SetColorRgb(COLOR_PROGRESS_BAR_REMAINING, 0xFF112233u, true);
  InDialog([](QWidget* pDialog) {
    QWidget* const pGroup = FindGroup(OpenPage(pDialog, QStringLiteral("Appearance / Table Windows")), "Colors");
    QVERIFY(
        SelectByKeys(pGroup->findChild<QComboBox*>(QStringLiteral("Items")), QStringLiteral("Progress Bar Remaining")));
    QTest::mouseClick(pGroup->findChild<QPushButton*>(QStringLiteral("Reset")), Qt::LeftButton);
  });
  SetPaletteColors(0xFF010203u, 0xFF040506u);
  QCOMPARE(GetColorRgb(COLOR_PROGRESS_BAR_REMAINING), 0xFF010203u);
  UpdatePaletteColors();
}

void CPreferencesDialogTest::CheckFont(QWidget* pPage, const FONT_CASE& Case) {
  QWidget* const pGroup = FindGroup(pPage, "Fonts");
  auto* const pItems = pGroup->findChild<QComboBox*>(QStringLiteral("Items"));
  QVERIFY(SelectByKeys(pItems, QLatin1String(Case.sItem)));
  QVERIFY(!IsBold(pItems));
  const int Inherited = GetFont(Case.ID).pointSize();
  WhenModal([](QWidget* pFonts) {
    QVERIFY(qobject_cast<QFontDialog*>(pFonts));
    TypeOver(pFonts->findChildren<QLineEdit*>().at(2), QStringLiteral("14"));
    if (pFonts->isVisible()) QTest::keyClick(pFonts, Qt::Key_Return);
  });
  QTest::keyClick(pGroup->findChild<QPushButton*>(QStringLiteral("Field")), Qt::Key_Space);
  const QString sText = FontToText(Case.ID);
  QVERIFY2(sText.contains(QStringLiteral(",  14pt,  ")), qPrintable(sText));
  QCOMPARE(m_Session.LastLine(), QStringLiteral("Edit.Font (%1, \"%2\");").arg(QLatin1String(Case.sName), sText));
  QCOMPARE(GetFont(Case.ID).pointSize(), 14);
  SaveColorsAndFonts();
  QCOMPARE(StoredSetting("Fonts", QLatin1String(Case.sName)).toString(), sText);
  QVERIFY(IsBold(pItems));
  QTest::mouseClick(pGroup->findChild<QPushButton*>(QStringLiteral("Reset")), Qt::LeftButton);
  SaveColorsAndFonts();
  QVERIFY(!StoredSetting("Fonts", QLatin1String(Case.sName)).isValid());
  QCOMPARE(GetFont(Case.ID).pointSize(), Inherited);
  QVERIFY(!IsBold(pItems));
}

void CPreferencesDialogTest::everyFontIsChosenKeptAndReset() {
  InDialog([this](QWidget* pDialog) {
    for (const FONT_CASE& Case : FONTS) {
      CheckFont(OpenPage(pDialog, QLatin1String(Case.sPage)), Case);
      if (QTest::currentTestFailed()) return qWarning("%s", Case.sName);
    }
  });
}

void CPreferencesDialogTest::theDialogOpensAnewForAnotherApplicationFont() {
  const QFont Before = GetFont(FONT_APP);
  bool bReopened = false;
  InDialog([&](QWidget* pDialog) {
    QWidget* const pGroup = FindGroup(OpenPage(pDialog, QStringLiteral("Appearance / Application")), "Fonts");
    QVERIFY(SelectByKeys(pGroup->findChild<QComboBox*>(QStringLiteral("Items")), QStringLiteral("Text")));
    WhenModal([&](QWidget* pFonts) {
      TypeOver(pFonts->findChildren<QLineEdit*>().at(2), QStringLiteral("12"));
      if (pFonts->isVisible()) QTest::keyClick(pFonts, Qt::Key_Return);
    });
    QTest::keyClick(pGroup->findChild<QPushButton*>(QStringLiteral("Field")), Qt::Key_Space);
    QTRY_VERIFY(!pDialog->isVisible());
    WhenModal([&](QWidget* pAnew) {
      bReopened = true;
      QCOMPARE(pAnew->objectName(), QStringLiteral("PreferencesDialog"));
      QCOMPARE(pAnew->font().pointSize(), 12);
      QCOMPARE(pAnew->findChild<QTreeWidget*>()->currentItem()->text(0), QStringLiteral("Application"));
      QCOMPARE(pAnew->findChild<QTreeWidget*>()->currentItem()->parent()->text(0), QStringLiteral("Appearance"));
    });
  });
  QVERIFY(bReopened);
  QCOMPARE(QApplication::font().pointSize(), 12);
  QCOMPARE(GetFont(FONT_CONSOLE).pointSize(), 12);
  SetFont(FONT_APP, Before, true);
  SaveColorsAndFonts();
  QVERIFY(!StoredSetting("Fonts", QStringLiteral("FONT_APP")).isValid());
}

void CPreferencesDialogTest::forgettingAnswersHappensOnceAndAfterwards() {
  const SETTING_GROUP Group = {QStringLiteral("AppData"), QStringLiteral("MessageTimeouts")};
  SetSetting(Group, QStringLiteral("1"), quint64{0xFFFFFFFE});
  InDialog([&](QWidget* pDialog) {
    QWidget* const pPage = OpenPage(pDialog, QStringLiteral("General / Application"));
    QTest::keyClick(FindCheckBox(pPage, QStringLiteral("Reset all dialog options \"Do not show again\"")),
                    Qt::Key_Space);
    QVERIFY2(HasSetting(Group, QStringLiteral("1")), "forgotten before the dialog is closed");
    QTest::keyClick(pDialog, Qt::Key_Escape);
  });
  QVERIFY(!HasSetting(Group, QStringLiteral("1")));
  QCOMPARE(GetVarValue(PREF_RESET_DIALOG_DNSA), 0u);
  QCOMPARE(GetVarSavedValue(PREF_RESET_DIALOG_DNSA), 0u);
}

void CPreferencesDialogTest::aSessionsColorsAndFontsAreNotKept() {
  SetFont(FONT_CONSOLE, TextToFont(QStringLiteral("Monospace, 11pt, Bold"), std::make_unique<bool>().get()), true);
  ExecuteCommand(QStringLiteral("Edit.Font (8, \"Monospace, 20pt, Normal\")"));
  QCOMPARE(m_Session.LastLine().left(35), QStringLiteral("Edit.Font (FONT_CONSOLE, \"Monospace"));
  ExecuteCommand(QStringLiteral("Edit.Color (pc_row, red)"));
  ExecuteCommand(QStringLiteral("Edit.Color (\"PC Row Active\", red)"));
  QCOMPARE(m_Session.LastLine(), QStringLiteral("Edit.Color (COLOR_PC_ACTIVE, \"#ff0000\");"));
  SaveColorsAndFonts();
  QVERIFY(StoredSetting("Fonts", QStringLiteral("FONT_CONSOLE"))
              .toString()
              .startsWith(QStringLiteral("Monospace,  11pt,  Bold")));
  QVERIFY(!StoredSetting("Colors", QStringLiteral("COLOR_PC_ACTIVE")).isValid());
  QCOMPARE(GetFont(FONT_CONSOLE).pointSize(), 20);
  SetFont(FONT_CONSOLE, GetInheritedFont(FONT_CONSOLE), true);
  ResetColors();
}

void CPreferencesDialogTest::wrongCommandsSayWhyAndChangeNothing() {
  const std::pair<const char*, const char*> aCases[] = {
      {"Edit.Preference (PREF_TAB_SPACING, 9)", "invalid parameter: \"9\""},
      {"Edit.Preference (PREF_NONE, 1)", "unknown preference: \"PREF_NONE\""},
      {"Edit.Preference (58, 1)", "unknown preference: \"58\""},
      {"Edit.Preference (12, start_up)", "invalid parameter: \"start_up\""},
      {"Edit.Preference (PREF_TAB_SPACING)", "wrong parameter count"},
      {"Edit.Font (11, \"Monospace, 10pt, Normal\")", "unknown font: \"11\""},
      {"Edit.Font (8, \"Monospace, 60pt, Normal\")", "invalid parameter: \"Monospace, 60pt, Normal\""},
      {"Edit.Font (8, \"Monospace, 10pt\")", "invalid parameter: \"Monospace, 10pt\""},
      {"Edit.Font (8)", "wrong parameter count"},
  };
  const QString sFont = FontToText(FONT_CONSOLE);
  for (const auto& [sCommand, sError] : aCases) {
    ExecuteCommand(QLatin1String(sCommand));
    QCOMPARE(GetLastCommand().sError, QLatin1String(sError));
  }
  QCOMPARE(GetVarValue(PREF_TAB_SPACING), 2u);
  QCOMPARE(GetVarString(VAR_BREAK_AT_THIS_SYMBOL), QStringLiteral("main"));
  QCOMPARE(FontToText(FONT_CONSOLE), sFont);
}

void CPreferencesDialogTest::tabGoesFromTheTreeThroughThePageToTheButtons() {
  InDialog([](QWidget* pDialog) {
    QWidget* const pPage = OpenPage(pDialog, QStringLiteral("Appearance / Table Windows"));
    QTRY_COMPARE(QApplication::focusWidget(), pDialog->findChild<QTreeWidget*>());
    const auto* const pButtons = pDialog->findChild<QDialogButtonBox*>();
    const QList<QWidget*> Order = {FindGroup(pPage, "Fonts")->findChild<QComboBox*>(QStringLiteral("Items")),
                                   FindGroup(pPage, "Fonts")->findChild<QPushButton*>(QStringLiteral("Field")),
                                   FindGroup(pPage, "Colors")->findChild<QComboBox*>(QStringLiteral("Items")),
                                   FindGroup(pPage, "Colors")->findChild<QPushButton*>(QStringLiteral("Field")),
                                   pButtons->button(QDialogButtonBox::Ok),
                                   pButtons->button(QDialogButtonBox::Close)};
    for (QWidget* const pNext : Order) {
      QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
      QCOMPARE(QApplication::focusWidget(), pNext);
    }
  });
}

void CPreferencesDialogTest::theLastPageAndTheSizeAreRemembered() {
  const QSize Size(790, 540);
  InDialog([&](QWidget* pDialog) {
    QVERIFY(OpenPage(pDialog, QStringLiteral("General / Console Window")));
    pDialog->resize(Size);
    QTest::keyClick(pDialog, Qt::Key_Return);
    QVERIFY(!pDialog->isVisible());
  });
  InDialog([&](QWidget* pDialog) {
    QCOMPARE(pDialog->findChild<QTreeWidget*>()->currentItem()->text(0), QStringLiteral("Console Window"));
    QCOMPARE(pDialog->size(), Size);
  });
}

QTEST_MAIN(CPreferencesDialogTest)
#include "preferences_dialog_test.moc"
