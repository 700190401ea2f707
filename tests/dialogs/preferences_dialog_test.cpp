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
// all others, which have a default, a value that is chosen or typed.
struct PREFERENCE_CASE {
  const char* sPage;
  const char* sLabel;
  const char* sName;
  const char* sValue;
  const char* sDefault;
};
const PREFERENCE_CASE PREFERENCES[] = {
    {"Application", "Open the most recent project on startup", "START_WITH_MOST_RECENT_PROJ", "yes"},
    {"Application", "Show progress bar while running", "SHOW_PROGBAR_WHILE_RUNNING", "yes"},
    {"Application", "Show dialog option \"Do not show again\"", "DIALOG_SHOW_DNSA", "no"},
    {"Application", "Divide big hexadecimal numbers into blocks", "SHOW_HEX_BLOCKS", "no"},
    {"Application", "Show symbol tooltips", "SHOW_TOOLTIPS", "no"},
    {"Application", "Show symbol icons", "SHOW_SYMBOL_ICONS", "yes"},
    {"Source Viewer", "Show Sidebar", "SHOW_SIDEBAR_SRC", "no"},
    {"Source Viewer", "Show Line Expansion Bar", "SHOW_EXPANSION_BAR", "no"},
    {"Source Viewer", "Show Code Profile", "SHOW_SRC_CODE_PROFILE", "yes"},
    {"Source Viewer", "Lock Header Bar", "LOCK_HEADER_BAR", "no"},
    {"Source Viewer", "Indent inline assembly code", "INDENT_INLINE_ASSEMBLY", "no"},
    {"Source Viewer", "Document Editing Restriction", "RESTRICT_SRC_EDIT", "never allow editing", "no restriction"},
    {"Source Viewer", "Line number frequency", "LINE_NUMBER_FREQ", "Every 10 Lines", "All Lines"},
    {"Source Viewer", "Tab Spacing", "TAB_SPACING", "8", "2"},
    {"Disassembly Window", "Show Source", "SHOW_ASM_SOURCE", "no"},
    {"Disassembly Window", "Show Labels", "SHOW_ASM_LABELS", "no"},
    {"Disassembly Window", "Show Sidebar", "SHOW_SIDEBAR_ASM", "no"},
    {"Disassembly Window", "Show Code Profile", "SHOW_ASM_CODE_PROFILE", "yes"},
    {"Disassembly Window", "Show Instruction Encodings", "SHOW_ENCODINGS_ASM", "no"},
    {"Instruction Trace Window", "Show Instruction Encodings", "SHOW_ENCODINGS_ITRACE", "yes"},
    {"Functions Window", "Prepend class names to function names", "PREPEND_FUNC_CLASS_NAMES", "no"},
    {"Terminal Window", "Suppress Control Characters", "TERMINAL_NO_CONTROL_CHARS", "no"},
    {"Terminal Window", "Clear On Reset", "TERMINAL_CLEAR_ON_RESET", "yes"},
    {"Terminal Window", "Zero-Terminate Input", "TERMINAL_ZERO_TERM_INPUT", "yes"},
    {"Terminal Window", "Echo Input", "TERMINAL_ECHO_INPUT", "yes"},
    {"Terminal Window", "Newline Input Termination Format", "TERMINAL_EOL_FORMAT", "None", "Unix format (LF)"},
    {"Console Window", "Show Timestamps", "SHOW_TIMESTAMPS_CONSOLE", "no"},
    {"Table Windows", "(unsigned) char", "SHOW_CHAR_TEXT", "no"},
    {"Table Windows", "(unsigned) short", "SHOW_SHORT_TEXT", "yes"},
    {"Table Windows", "(unsigned) int", "SHOW_INT_TEXT", "yes"},
    {"Table Windows", "(unsigned) char*", "SHOW_CHAR_PTR_TEXT", "no"},
    {"Table Windows", "(unsigned) short*", "SHOW_SHORT_PTR_TEXT", "yes"},
    {"Table Windows", "(unsigned) int*", "SHOW_INT_PTR_TEXT", "yes"},
    {"Table Windows", "Globally Hide Filter Bars", "FILTER_BARS_DISABLED", "yes"},
    {"Table Windows", "Symbol Member Count Display Limit", "MAX_SYMBOL_MEMBERS", "100000", "512"},
};

// The pages, and the colours as they list them, sorted.
const std::pair<const char*, QStringList> COLORS[] = {
    {"Application",
     {"Console Text (Error)", "Console Text (Script)", "Console Text (User)", "Console Text (V-Node)",
      "Execution Profile - bad instruction", "Execution Profile - good instruction", "PC Backtrace Highlight",
      "Selection Highlight Dark", "Selection Highlight Light"}},
    {"Source Viewer",
     {"Callsite Row Active", "Callsite Row Inactive", "PC Row Active", "PC Row Inactive", "Syntax Comment",
      "Syntax Directive", "Syntax Keyword", "Syntax String", "Syntax Text"}},
    {"Disassembly Window",
     {"Label Background", "Syntax Immediate", "Syntax Label", "Syntax Mnemonic", "Syntax Register"}},
    {"Table Windows",
     {"Change Level 1 Fill Color", "Change Level 1 Text Color", "Change Level 2 Fill Color",
      "Change Level 2 Text Color", "Change Level 3 Fill Color", "Inactive table Item", "Progress Bar Progress",
      "Progress Bar Remaining", "Symbol Icon Constant", "Symbol Icon Function", "Symbol Icon Global Variable",
      "Symbol Icon Local Variable", "Symbol Icon Member", "Table Grid Lines", "Text Filter Match"}},
};

// Of a page and an item.
const std::tuple<const char*, const char*, U32> FONTS[] = {
    {"Application", "Value", FONT_APP_MONO},
    {"Source Viewer", "Text", FONT_SRC_CODE},
    {"Source Viewer", "Line Numbers", FONT_LINE_NUMBERS},
    {"Disassembly Window", "Text", FONT_ASM_CODE},
    {"Disassembly Window", "Execution Counters", FONT_EXEC_COUNTERS},
    {"Table Windows", "Text", FONT_ITEM_NAME},
    {"Table Windows", "Value", FONT_ITEM_VALUE},
};

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

// Goes to a page by the keys of the tree.
QWidget* OpenPage(QWidget* pDialog, const QString& sPage) {
  auto* const pTree = pDialog->findChild<QTreeWidget*>();
  QTest::keyClick(pTree, Qt::Key_Home);
  const auto Path = [&] {
    const QTreeWidgetItem* const pItem = pTree->currentItem();
    return pItem->parent() ? pItem->parent()->text(0) + " / " + pItem->text(0) : QString();
  };
  while (Path() != sPage) {
    const QTreeWidgetItem* const pBefore = pTree->currentItem();
    QTest::keyClick(pTree, Qt::Key_Down);
    if (pTree->currentItem() == pBefore) return nullptr;
  }
  return pDialog->findChild<QStackedWidget*>()->currentWidget();
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
    QCOMPARE(std::size(PREFERENCES) + 1, size_t{NUM_VARS - FIRST_PREFERENCE});  // one has a test of its own
    InDialog([this](QWidget* pDialog) {
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

  void everyColorIsChosenKeptAndReset() {
    InDialog([this](QWidget* pDialog) {
      for (const auto& [sPage, Expected] : COLORS) {
        QWidget* const pGroup = OpenGroup(pDialog, sPage, "Colors");
        QStringList Names;
        auto* const pItems = Find<QComboBox>(pGroup, "Items");
        for (int i = 0; i < pItems->count(); ++i) Names << pItems->itemText(i);
        QCOMPARE(Names, Expected);
        for (const QString& sItem : Names) {
          const U32 ID = static_cast<U32>(FindColor(sItem));
          const auto Value = [ID] { return GetColor(ID).name(); };
          CheckChoice(pGroup, {"Color", sItem, GetColorInfo(ID)->sName, Value, "#12ab56", "#12ab56"});
          if (QTest::currentTestFailed()) return qWarning("%s", qPrintable(sItem));
        }
      }
    });
    SetPaletteColors(0xFF010203u, 0xFF040506u);
    QCOMPARE(GetColorRgb(COLOR_PROGRESS_BAR_REMAINING), 0xFF010203u);
    UpdatePaletteColors();
  }

  void everyFontIsChosenKeptAndReset() {
    InDialog([this](QWidget* pDialog) {
      for (const auto& [sPage, sItem, ID] : FONTS) {
        CheckChoice(OpenGroup(pDialog, sPage, "Fonts"), FontChoice(sItem, ID));
        if (QTest::currentTestFailed()) return qWarning("%s of %s", sItem, sPage);
      }
    });
  }

  void theDialogOpensAnewForAnotherApplicationFont() {
    const QFont Before = GetFont(FONT_APP);
    bool bReopened = false;
    InDialog([&](QWidget* pDialog) {
      ChooseInField(OpenGroup(pDialog, "Application", "Fonts"), FontChoice("Text", FONT_APP));
      QTRY_VERIFY(!pDialog->isVisible());
      WhenModal([&](QWidget* pAnew) {
        bReopened = true;
        QCOMPARE(pAnew->objectName(), "PreferencesDialog");
        QCOMPARE(pAnew->font().pointSize(), 14);
        const QTreeWidgetItem* const pPage = pAnew->findChild<QTreeWidget*>()->currentItem();
        QCOMPARE(pPage->parent()->text(0) + u'/' + pPage->text(0), "Appearance/Application");
      });
    });
    QVERIFY(bReopened);
    QCOMPARE(QApplication::font().pointSize(), 14);
    QCOMPARE(GetFont(FONT_CONSOLE).pointSize(), 14);
    SetFont(FONT_APP, Before, true);
    SaveColorsAndFonts();
    QVERIFY(!StoredSetting("Fonts", "FONT_APP").isValid());
  }

  void forgettingAnswersHappensOnceAndAfterwards() {
    const SETTING_GROUP Group = {"AppData", "MessageTimeouts"};
    SetSetting(Group, "1", quint64{0xFFFFFFFE});
    InDialog([&](QWidget* pDialog) {
      QWidget* const pPage = OpenPage(pDialog, "General / Application");
      QTest::keyClick(FindByText<QCheckBox>(pPage, "text", "Reset all dialog options \"Do not show again\""),
                      Qt::Key_Space);
      QVERIFY2(HasSetting(Group, "1"), "forgotten before the dialog is closed");
      QTest::keyClick(pDialog, Qt::Key_Escape);
    });
    QVERIFY(!HasSetting(Group, "1"));
    QCOMPARE(GetVarValue(PREF_RESET_DIALOG_DNSA), 0u);
    QCOMPARE(GetVarSavedValue(PREF_RESET_DIALOG_DNSA), 0u);
  }

  void whatCommandsChangeIsNotKept() {
    ExecuteCommand("Edit.Preference (PREF_TAB_SPACING, 8)");
    QCOMPARE(GetVarValue(PREF_TAB_SPACING), 8u);
    SavePreferences();
    QCOMPARE(StoredSetting("Preferences", "PREF_TAB_SPACING").toUInt(), 2u);
    ExecuteCommand("Edit.Font (FONT_CONSOLE, \"Monospace, 20pt, Normal\")");
    ExecuteCommand("Edit.Color (COLOR_PC_ACTIVE, red)");
    QCOMPARE(GetFont(FONT_CONSOLE).pointSize(), 20);
    SaveColorsAndFonts();
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
           {Find<QWidget>(pFonts, "Items"), Find<QWidget>(pFonts, "Field"), Find<QWidget>(pColors, "Items"),
            Find<QWidget>(pColors, "Field"), static_cast<QWidget*>(pButtons->button(QDialogButtonBox::Ok)),
            static_cast<QWidget*>(pButtons->button(QDialogButtonBox::Close))}) {
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
      QCOMPARE(pDialog->findChild<QTreeWidget*>()->currentItem()->text(0), "Console Window");
      QCOMPARE(pDialog->size(), Size);
    });
  }

  void cleanupTestCase() { m_Session.End(); }

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
      if (pValue->isEditable()) {
        TypeOver(pValue->lineEdit(), sValue);
      } else {
        QVERIFY2(SelectByKeys(pValue, sValue), Case.sValue);
      }
      if (!sValue[0].isDigit()) sEchoed = u'"' + sValue + u'"';
    }
    const QString sEcho = u"Edit.Preference (%1, %2);"_s.arg(sName, sEchoed);
    QCOMPARE(m_Session.LastLine(), sEcho);
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
