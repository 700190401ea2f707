#include "docs/reference/reference_pages.h"

#include <QMap>
#include <QRegularExpression>

#include "shell/actions/action_info.h"
#include "shell/settings/color_table.h"
#include "shell/settings/colors.h"
#include "shell/settings/fonts.h"
#include "shell/settings/named_constants.h"
#include "shell/settings/sys_vars.h"

namespace {

QString Escaped(QString sText) {
  return sText.replace(QLatin1Char('|'), QLatin1String("\\|")).replace(QLatin1Char('*'), QLatin1String("\\*"));
}

QString Code(const QString& sText) {
  return sText.isEmpty() ? QString() : QLatin1Char('`') + sText + QLatin1Char('`');
}

// ---- Commands

// The words of the argument column where there is one for each parameter, otherwise the names of the declaration.
QStringList ArgumentNames(U32 ID) {
  const QStringList Words = GetActionInfo(ID).sArgText.split(QLatin1String(", "), Qt::SkipEmptyParts);
  if (Words.size() == GetParamCount(ID)) return Words;
  QStringList Names;
  for (int i = 0; i < GetParamCount(ID); ++i)
    Names << GetParamText(ID, i).section(QLatin1Char(' '), -1).remove(QLatin1Char('*'));
  return Names;
}

// "File.Open ("File")"
QString Synopsis(U32 ID) {
  QStringList Names = ArgumentNames(ID);
  for (int i = 0; i < Names.size(); ++i) {
    static const QRegularExpression TextPrefix(QStringLiteral("^s(?=[A-Z])"));
    if (IsStringParam(ID, i)) Names[i] = QLatin1Char('"') + Names[i].remove(TextPrefix) + QLatin1Char('"');
  }
  return GetCommandName(ID) +
         (Names.isEmpty() ? QStringLiteral("()") : QStringLiteral(" (%1)").arg(Names.join(QLatin1String(", "))));
}

QString CommandEntry(U32 ID) {
  const ACTION_INFO Info = GetActionInfo(ID);
  QString sText =
      QStringLiteral("### %1\n\n    %2;\n\n%3.").arg(GetCommandName(ID), Synopsis(ID), Escaped(Info.sDescription));
  if (!Info.sHotkey.isEmpty()) sText += QStringLiteral(" Key: %1.").arg(Code(Info.sHotkey));
  const QString sAlias = GetCommandAlias(ID);
  if (!sAlias.isEmpty()) sText += QStringLiteral(" Also written %1.").arg(Code(sAlias));
  return sText + QStringLiteral("\n\n");
}

QString ConstantsTable() {
  QString sText = QStringLiteral(
      "## Named constants\n\nNumeric arguments may be given by these names, in any case, as by their values.\n\n"
      "| name | value | shown as |\n|---|---|---|\n");
  for (const NAMED_CONST& Const : NamedConsts) {
    sText += QStringLiteral("| %1 | %2 | %3 |\n")
                 .arg(Code(QLatin1String(Const.sSymbol)))
                 .arg(Const.Value)
                 .arg(Escaped(QLatin1String(Const.sDisplayText)));
  }
  return sText + QStringLiteral("\n%1 stands for %2.\n")
                     .arg(Code(QLatin1String(NAMED_CONST_ALIAS)), Code(QLatin1String(NAMED_CONST_ALIAS_OF)));
}

// ---- Keys

// "actionMemoryViewAddress" as "View address", given the group "Memory".
QString LocalActionText(const ACTION_INFO& Info, const QString& sGroup) {
  if (!Info.sDisplayText.isEmpty()) return Info.sDisplayText;
  QString sText;
  for (const QChar c : Info.sObjectName.mid(static_cast<qsizetype>(sizeof("action") - 1) + sGroup.size())) {
    if (c.isUpper() && !sText.isEmpty()) sText += QLatin1Char(' ');
    sText += sText.isEmpty() ? c : c.toLower();
  }
  return sText;
}

struct KEY_GROUP {
  const char* sPrefix;  // of the object name behind "action"
  const char* sWindow;
};
constexpr KEY_GROUP KEY_GROUPS[] = {
    {"Memory", "Memory"},
    {"Src", "Source viewer"},
    {"Asm", "Disassembly"},
    {"CallGraph", "Call Graph"},
    {"ITrace", "Instruction Trace"},
    {"DataGraph", "Data Graph"},
    {"CP", "Code Profile"},
    {"Bp", "Breakpoints and code windows"},
    {"Wp", "Data Breakpoints"},
    {"FindResults", "Find Results"},
    {"Sym", "Symbol windows"},
    {"SrcFiles", "Source Files"},
    {"Func", "Functions"},
    {"Timeline", "Timeline"},
};

// The longest prefix decides, so that "SrcFiles" isn't taken for "Src"; null for a row that belongs to all windows.
const KEY_GROUP* GroupOf(const ACTION_INFO& Info) {
  const KEY_GROUP* pBest = nullptr;
  for (const KEY_GROUP& Group : KEY_GROUPS) {
    const QString sStart = QLatin1String("action") + QLatin1String(Group.sPrefix);
    const bool bLonger = pBest == nullptr || qstrlen(Group.sPrefix) > qstrlen(pBest->sPrefix);
    if (Info.sObjectName.startsWith(sStart) && bLonger) pBest = &Group;
  }
  return pBest;
}

QString KeyTable(const QString& sTitle, const QStringList& Rows) {
  if (Rows.isEmpty()) return {};
  return QStringLiteral("## %1\n\n| key | action |\n|---|---|\n").arg(sTitle) + Rows.join(QString()) +
         QLatin1Char('\n');
}

// ---- Settings

QString VariableRow(U32 ID) {
  const SYS_VAR* const pVar = GetVarInfo(ID);
  QString sValues;
  QString sDefault;
  if (pVar->Type == VAR_TYPE_STRING) {
    sValues = QStringLiteral("a text of at most %1 characters").arg(VAR_MAX_TEXT);
    sDefault = QLatin1Char('"') + QLatin1String(pVar->sDefault) + QLatin1Char('"');
  } else {
    sValues =
        pVar->Type == VAR_TYPE_SELECTION ? GetVarValueNames(pVar).join(QLatin1String(", ")) : GetVarRangeText(pVar);
    sDefault = GetVarText(pVar, static_cast<U32>(pVar->Default));
  }
  return QStringLiteral("| %1 | %2 | %3 | %4 |\n")
      .arg(Code(QLatin1String(pVar->sName)), Escaped(QLatin1String(pVar->sDisplayName)), Escaped(sValues),
           Escaped(sDefault));
}

QString VariableTable(const QString& sTitle, const QString& sIntro, U32 First, U32 End) {
  QString sText =
      QStringLiteral("## %1\n\n%2\n\n| name | meaning | values | default |\n|---|---|---|---|\n").arg(sTitle, sIntro);
  for (U32 ID = First; ID < End; ++ID) sText += VariableRow(ID);
  return sText + QLatin1Char('\n');
}

QString ColorDefault(U32 Argb) {
  if (Argb == COLOR_PALETTE_BASE) return QStringLiteral("the desktop's text ground");
  if (Argb == COLOR_PALETTE_WINDOW) return QStringLiteral("the desktop's window ground");
  return Code(ColorText(Argb));
}

QString FontDefault(const FONT_INFO& Info) {
  const QString sParent = Info.Origin == FONT_ORIGIN_MONO_OF || Info.Origin == FONT_ORIGIN_SAME_AS
                              ? Code(QLatin1String(GetFontInfo(Info.Parent)->sName))
                              : QString();
  switch (Info.Origin) {
    case FONT_ORIGIN_APPLICATION:
      return QStringLiteral("the desktop's font, %1 points").arg(FONT_DEFAULT_POINT_SIZE);
    case FONT_ORIGIN_MONO_OF:
      return QStringLiteral("fixed-pitch form of %1").arg(sParent);
    case FONT_ORIGIN_SAME_AS:
      return QStringLiteral("as %1").arg(sParent);
    case FONT_ORIGIN_PLAIN:
      break;
  }
  return QStringLiteral("the toolkit's font");
}

}  // namespace

QString CommandsPage() {
  QMap<QString, QMap<QString, U32>> Groups;
  for (const U32 ID : GetCommandIDs()) {
    const QString sName = GetCommandName(ID);
    Groups[sName.section(QLatin1Char('.'), 0, 0)][sName] = ID;
  }
  QString sText = QStringLiteral(
      "# Commands\n\nEvery command can be typed into the console and called by a script. Names are read in any case; "
      "in the "
      "console parentheses, quotes and the semicolon may be left out: `file.open demo.elf` is "
      "`File.Open (\"demo.elf\");`.\n\n");
  for (auto Group = Groups.cbegin(); Group != Groups.cend(); ++Group) {
    sText += QStringLiteral("## %1\n\n").arg(Group.key());
    for (const U32 ID : Group.value()) sText += CommandEntry(ID);
  }
  return sText + ConstantsTable();
}

QString KeysPage() {
  QStringList Global;
  QMap<QString, QStringList> Windows;
  for (U32 ID = 0; ID < NUM_ACTIONS; ++ID) {
    const ACTION_INFO Info = GetActionInfo(ID);
    if (Info.sHotkey.isEmpty()) continue;
    const KEY_GROUP* const pGroup = Info.sPrototype.isEmpty() ? GroupOf(Info) : nullptr;
    const QString sAction = Info.sPrototype.isEmpty()
                                ? LocalActionText(Info, pGroup ? QLatin1String(pGroup->sPrefix) : QLatin1String())
                                : QStringLiteral("%1 (%2)").arg(Info.sDescription, Code(GetCommandName(ID)));
    const QString sRow = QStringLiteral("| %1 | %2 |\n").arg(Code(Info.sHotkey), Escaped(sAction));
    (pGroup ? Windows[QLatin1String(pGroup->sWindow)] : Global) << sRow;
  }
  QString sText = QStringLiteral(
                      "# Keys\n\nA key of a window acts while that window has the focus; one key may mean "
                      "something else in each.\n\n") +
                  KeyTable(QStringLiteral("Everywhere"), Global);
  for (auto Window = Windows.cbegin(); Window != Windows.cend(); ++Window)
    sText += KeyTable(Window.key(), Window.value());
  return sText;
}

QString SettingsPage() {
  QString sText = QStringLiteral("# Variables, preferences, colours and fonts\n\n");
  sText +=
      VariableTable(QStringLiteral("System variables"),
                    QStringLiteral("They belong to the session and are set with `Edit.SysVar`."), 0, FIRST_PREFERENCE);
  sText += VariableTable(QStringLiteral("Preferences"),
                         QStringLiteral("They belong to you, are kept, and are set with `Edit.Preference`."),
                         FIRST_PREFERENCE, NUM_VARS);
  sText += QStringLiteral(
      "## Colours\n\nSet with `Edit.Color` as `#rrggbb` or by a colour's name.\n\n"
      "| name | meaning | default |\n|---|---|---|\n");
  for (U32 ID = 0; const COLOR_INFO* const pInfo = GetColorInfo(ID); ++ID) {
    sText += QStringLiteral("| %1 | %2 | %3 |\n")
                 .arg(Code(QLatin1String(pInfo->sName)), Escaped(QLatin1String(pInfo->sDescription)),
                      ColorDefault(pInfo->Color));
  }
  sText += QStringLiteral(
      "\n## Fonts\n\nSet with `Edit.Font` as `\"Family, 10pt, Bold\"`.\n\n"
      "| name | meaning | default |\n|---|---|---|\n");
  for (U32 ID = 0; const FONT_INFO* const pInfo = GetFontInfo(ID); ++ID) {
    sText +=
        QStringLiteral("| %1 | %2 | %3 |\n")
            .arg(Code(QLatin1String(pInfo->sName)), Escaped(QLatin1String(pInfo->sDescription)), FontDefault(*pInfo));
  }
  return sText;
}
