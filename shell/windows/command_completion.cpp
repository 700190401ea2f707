#include "shell/windows/command_completion.h"

#include <QDir>

#include "shell/actions/action_ids.h"
#include "shell/actions/action_info.h"
#include "shell/look/look.h"
#include "shell/settings/colors.h"
#include "shell/settings/fonts.h"
#include "shell/settings/named_constants.h"
#include "shell/settings/sys_vars.h"
#include "shell/windows/completion_rules.h"

namespace {

constexpr QLatin1Char QUOTE('"');

struct CANDIDATE {
  QString sText;
  QString sNote;
  bool bContinues = false;
};
using CANDIDATES = QList<CANDIDATE>;

CANDIDATES CommandNames() {
  CANDIDATES Names;
  for (const U32 ID : GetCommandIDs()) {
    const ACTION_INFO Info = GetActionInfo(ID);
    if (!Info.pAction) continue;
    Names.append({GetCommandName(ID), Info.sDescription});
    const QString sAlias = GetCommandAlias(ID);
    if (!sAlias.isEmpty()) Names.append({sAlias, Info.sDescription});
  }
  std::ranges::sort(Names, {}, &CANDIDATE::sText);
  return Names;
}

CANDIDATES Texts(const QStringList& List) {
  CANDIDATES Result;
  for (const QString& sText : List) Result.append({sText, QString()});
  return Result;
}

CANDIDATES Constants(const QString& sPrefixes) {
  CANDIDATES Result;
  const QStringList Prefixes = sPrefixes.split(QLatin1Char('|'));
  for (const NAMED_CONST& Const : NamedConsts) {
    const QString sSymbol = QString::fromLatin1(Const.sSymbol);
    if (sSymbol.isEmpty() || sSymbol.at(0).isDigit()) continue;
    const auto Fits = [&sSymbol](const QString& sPrefix) { return sSymbol.startsWith(sPrefix); };
    if (std::ranges::any_of(Prefixes, Fits)) Result.append({sSymbol, QString::fromLatin1(Const.sDisplayText)});
  }
  return Result;
}

CANDIDATES Variables(U32 First, U32 End) {
  CANDIDATES Result;
  for (U32 ID = First; ID < End; ++ID) {
    const SYS_VAR* const pVar = GetVarInfo(ID);
    Result.append({QString::fromLatin1(pVar->sName), QString::fromLatin1(pVar->sDisplayName)});
  }
  return Result;
}

CANDIDATES VarValues(const QString& sVar) {
  const SYS_VAR* const pVar = FindVar(sVar);
  if (!pVar) return {};
  const QStringList Names = GetVarValueNames(pVar);
  return Names.isEmpty() ? CANDIDATES{{GetVarText(pVar), QStringLiteral("Present value")}} : Texts(Names);
}

CANDIDATES Colors() {
  CANDIDATES Result;
  for (U32 ID = 0; ID < NUM_COLORS; ++ID) {
    const COLOR_INFO& Info = *GetColorInfo(ID);
    Result.append({QString::fromLatin1(Info.sName), QString::fromLatin1(Info.sDescription)});
  }
  return Result;
}

CANDIDATES ColorValue(const QString& sColor) {
  const int ID = FindColor(sColor);
  if (ID < 0) return {};
  return {{ColorText(GetColorRgb(static_cast<U32>(ID))), QStringLiteral("Present value")}};
}

CANDIDATES Fonts() {
  CANDIDATES Result;
  for (U32 ID = 0; ID < NUM_FONTS; ++ID) {
    const FONT_INFO& Info = *GetFontInfo(ID);
    Result.append({QString::fromLatin1(Info.sName), QString::fromLatin1(Info.sDescription)});
  }
  return Result;
}

CANDIDATES FontValue(const QString& sFont) {
  const int ID = FindFont(sFont);
  if (ID < 0) return {};
  return {{FontToText(static_cast<U32>(ID)), QStringLiteral("Present value")}};
}

// Directories first; hidden ones when their dot has been typed.
CANDIDATES Files(const QString& sTyped, bool bDirectories, const COMPLETION_SOURCES& Sources) {
  const QString sDir = sTyped.left(sTyped.lastIndexOf(QLatin1Char('/')) + 1);
  const QString sExpanded = Sources.ExpandMacros ? Sources.ExpandMacros(sDir) : sDir;
  const QString sBase = Sources.BaseDir ? Sources.BaseDir() : QString();
  QDir::Filters Filters = QDir::Dirs | QDir::NoDotAndDotDot;
  if (!bDirectories) Filters |= QDir::Files;
  if (sTyped.mid(sDir.size()).startsWith(QLatin1Char('.'))) Filters |= QDir::Hidden;
  const QDir Dir(sBase.isEmpty() ? sExpanded : QDir(sBase).filePath(sExpanded));
  CANDIDATES Result;
  for (const QFileInfo& File : Dir.entryInfoList(Filters, QDir::Name | QDir::DirsFirst | QDir::IgnoreCase)) {
    const bool bDir = File.isDir();
    Result.append({sDir + File.fileName() + (bDir ? QStringLiteral("/") : QString()), QString(), bDir});
  }
  return Result;
}

CANDIDATES ArgumentCandidates(const COMMAND_PART& Part, const COMPLETION_SOURCES& Sources) {
  const COMPLETION_RULE Rule = FindCompletionRule(Part.ActionID, Part.Argument);
  const QString sFirst = Part.Arguments.value(0);
  switch (Rule.Kind) {
    case COMPLETION_NONE:
      return {};
    case COMPLETION_FILE:
    case COMPLETION_DIRECTORY:
      return Files(Part.sTyped, Rule.Kind == COMPLETION_DIRECTORY, Sources);
    case COMPLETION_WINDOW:
      return Sources.WindowNames ? Texts(Sources.WindowNames()) : CANDIDATES();
    case COMPLETION_TOOLBAR:
      return Sources.ToolBarNames ? Texts(Sources.ToolBarNames()) : CANDIDATES();
    case COMPLETION_PREFERENCE:
      return Variables(FIRST_PREFERENCE, NUM_VARS);
    case COMPLETION_SYS_VAR:
      return Variables(0, FIRST_PREFERENCE);
    case COMPLETION_VAR_VALUE:
      return VarValues(sFirst);
    case COMPLETION_COLOR:
      return Colors();
    case COMPLETION_COLOR_VALUE:
      return ColorValue(sFirst);
    case COMPLETION_FONT:
      return Fonts();
    case COMPLETION_FONT_VALUE:
      return FontValue(sFirst);
    case COMPLETION_ON_OFF:
      return Texts({QStringLiteral("ON"), QStringLiteral("OFF")});
    case COMPLETION_CONSTANT:
      return Constants(QString::fromLatin1(Rule.sPrefix));
  }
  return {};
}

QString InsertText(const COMMAND_PART& Part, const CANDIDATE& Candidate) {
  if (Part.Argument < 0) {
    const bool bArguments = GetParamCount(FindCommand(Candidate.sText)) > 0;
    return bArguments && !Part.bScriptForm ? Candidate.sText + QLatin1Char(' ') : Candidate.sText;
  }
  const bool bQuotes = Part.bQuoted || Candidate.sText.contains(QLatin1Char(' ')) ||
                       (Part.bScriptForm && IsStringParam(Part.ActionID, Part.Argument));
  if (!bQuotes) return Candidate.sText;
  return QUOTE + Candidate.sText + (Candidate.bContinues ? QString() : QString(QUOTE));
}

// Walks over the arguments in front of the cursor.
void FindArgument(COMMAND_PART& Part, const QString& sText, int First) {
  const QChar Separator = Part.bScriptForm ? u',' : u' ';
  while (First < sText.size() && sText.at(First) == u' ') ++First;
  bool bInQuotes = false;
  Part.Start = First;
  Part.Argument = 0;
  for (int i = First; i < sText.size(); ++i) {
    if (sText.at(i) == QUOTE) bInQuotes = !bInQuotes;
    if (sText.at(i) != Separator || bInQuotes) continue;
    Part.Arguments.append(sText.mid(Part.Start, i - Part.Start).remove(QUOTE).trimmed());
    Part.Start = i + 1;
    ++Part.Argument;
  }
  while (Part.Start < sText.size() && sText.at(Part.Start) == u' ') ++Part.Start;
  Part.sTyped = sText.mid(Part.Start);
  Part.bQuoted = Part.sTyped.startsWith(QUOTE);
  Part.bFinished = Part.bQuoted && !bInQuotes;
  if (Part.bScriptForm && !bInQuotes && Part.sTyped.contains(u')')) Part.bFinished = true;
  Part.sTyped.remove(QUOTE);
}

}  // namespace

COMMAND_PART FindCommandPart(const QString& sLine, int Cursor) {
  const QString sText = sLine.left(Cursor);
  COMMAND_PART Part;
  Part.ActionID = NUM_ACTIONS;
  while (Part.Start < sText.size() && sText.at(Part.Start) == u' ') ++Part.Start;
  static const QRegularExpression NameEnd(QStringLiteral("[ (]"));
  const int End = static_cast<int>(sText.indexOf(NameEnd, Part.Start));
  const qsizetype Open = sText.indexOf(u'(');
  Part.bScriptForm = sLine.contains(u'(');
  if (End < 0) {
    Part.sTyped = sText.mid(Part.Start);
    return Part;
  }
  const QString sName = sText.mid(Part.Start, End - Part.Start);
  Part.ActionID = FindCommand(sName);
  FindArgument(Part, sText, static_cast<int>(Open < 0 ? End : Open + 1));
  return Part;
}

QList<COMPLETION_ITEM> FindCompletions(const COMMAND_PART& Part, const COMPLETION_SOURCES& Sources) {
  if (Part.bFinished) return {};
  const bool bName = Part.Argument < 0;
  if (!bName && Part.ActionID == NUM_ACTIONS) return {};
  const CANDIDATES All = bName ? CommandNames() : ArgumentCandidates(Part, Sources);
  QList<COMPLETION_ITEM> Items;
  const auto Take = [&](const auto& Fits) {
    for (const CANDIDATE& Candidate : All) {
      if (Items.size() >= MAX_COMPLETIONS) return;
      if (!Fits(Candidate.sText)) continue;
      Items.append({Candidate.sText, Candidate.sNote, InsertText(Part, Candidate), Candidate.bContinues});
    }
  };
  Take([&](const QString& sText) { return sText.startsWith(Part.sTyped, Qt::CaseInsensitive); });
  if (Items.isEmpty()) Take([&](const QString& sText) { return sText.contains(Part.sTyped, Qt::CaseInsensitive); });
  return Items;
}

QString CommonPrefix(const QList<COMPLETION_ITEM>& Items) {
  QString sPrefix = Items.isEmpty() ? QString() : Items.first().sText;
  for (const COMPLETION_ITEM& Item : Items) {
    while (!Item.sText.startsWith(sPrefix, Qt::CaseInsensitive)) sPrefix.chop(1);
  }
  return sPrefix;
}

QString CommandSynopsis(const COMMAND_PART& Part) {
  if (Part.Argument < 0 || Part.ActionID == NUM_ACTIONS) return {};
  QStringList Params;
  for (int i = 0; i < GetParamCount(Part.ActionID); ++i) {
    const QString sParam = GetParamText(Part.ActionID, i);
    Params << (i == Part.Argument ? QLatin1Char('<') + sParam + QLatin1Char('>') : sParam);
  }
  return QStringLiteral("%1 (%2): %3")
      .arg(GetCommandName(Part.ActionID), Params.join(QStringLiteral(", ")), GetActionInfo(Part.ActionID).sDescription);
}
