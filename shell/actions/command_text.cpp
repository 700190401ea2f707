#include "shell/actions/command_text.h"

#include "shell/actions/action_dispatch.h"
#include "shell/settings/named_constants.h"

namespace {

constexpr QLatin1Char QUOTE('"');

// Parts between separators outside double quotes, each trimmed and without its enclosing quotes. Empty parts count.
QStringList SplitArguments(const QString& sText, QChar Separator) {
  QStringList Args;
  QString sPart;
  bool bInQuotes = false;
  const auto AddPart = [&] {
    sPart = sPart.trimmed();
    if (sPart.startsWith(QUOTE)) sPart.remove(0, 1);
    if (sPart.endsWith(QUOTE)) sPart.chop(1);
    Args.append(sPart);
    sPart.clear();
  };
  for (const QChar c : sText) {
    if (c == QUOTE) bInQuotes = !bInQuotes;
    if (c == Separator && !bInQuotes) {
      AddPart();
    } else {
      sPart += c;
    }
  }
  AddPart();
  return Args;
}

bool IsVoid(const QStringList& Args) {
  return Args.size() == 1 && Args.constFirst().compare(u"void", Qt::CaseInsensitive) == 0;
}

COMMAND_LINE SplitScriptForm(const QString& sLine) {
  COMMAND_LINE Command;
  Command.sName = CommandNameOf(sLine);
  const qsizetype Open = sLine.indexOf(u'(');
  const qsizetype Close = sLine.lastIndexOf(u')');
  const QString sArgs = Close > Open ? sLine.mid(Open + 1, Close - Open - 1).trimmed() : QString();
  if (!sArgs.isEmpty()) Command.Args = SplitArguments(sArgs, u',');
  return Command;
}

COMMAND_LINE SplitConsoleForm(const QString& sLine) {
  COMMAND_LINE Command;
  const qsizetype Blank = sLine.indexOf(u' ');
  Command.sName = sLine.left(Blank);
  const QString sArgs = Blank < 0 ? QString() : sLine.mid(Blank + 1).trimmed();
  if (!sArgs.isEmpty()) Command.Args = SplitArguments(sArgs, u' ');
  return Command;
}

bool IsQuoted(const QString& sArg) {
  return sArg.size() >= 2 && sArg.startsWith(QUOTE) && sArg.endsWith(QUOTE);
}

QString ArgumentText(U32 ID, int Index, const QString& sArg) {
  if (IsQuoted(sArg)) return sArg;
  if (IsStringParam(ID, Index)) return QUOTE + sArg + QUOTE;
  if (const NAMED_CONST* pConst = FindNamedConst(sArg)) return QString::fromLatin1(pConst->sSymbol);
  bool bOk = false;
  sArg.toULongLong(&bOk, 0);
  if (bOk) return sArg;
  const U32 FreqHz = ParseFrequency(sArg, &bOk);
  return bOk ? QString::number(FreqHz) : sArg;
}

}  // namespace

COMMAND_LINE SplitCommandLine(const QString& sLine) {
  const QString sText = sLine.trimmed();
  // One inside a file name makes no script form.
  const qsizetype Open = sText.indexOf(u'(');
  const bool bScriptForm = Open >= 0 && sText.left(Open).count(QUOTE) % 2 == 0;
  COMMAND_LINE Command = bScriptForm ? SplitScriptForm(sText) : SplitConsoleForm(sText);
  if (IsVoid(Command.Args)) Command.Args.clear();
  return Command;
}

ACTION_INFO ParseCommand(const QString& sLine, bool* pOk) {
  const COMMAND_LINE Command = SplitCommandLine(sLine);
  const U32 ID = FindCommand(Command.sName, static_cast<int>(Command.Args.size()));
  *pOk = ID != NUM_ACTIONS;
  if (*pOk) SetActionArgs(ID, Command.Args);
  return GetActionInfo(ID);
}

QString MakeCommandText(U32 ID, const QStringList& Args) {
  const QString sName = GetCommandName(ID);
  if (sName.isEmpty()) return {};
  if (Args.isEmpty()) return sName + QLatin1String("();");
  QStringList Texts;
  for (int i = 0; i < Args.size(); ++i) Texts.append(ArgumentText(ID, i, Args.at(i)));
  return sName + QLatin1String(" (") + Texts.join(QLatin1String(", ")) + QLatin1String(");");
}

QString GetCommandText(U32 ID) {
  const QAction* pAction = GetAction(ID);
  const bool bArgs = pAction && pAction->data().typeId() == QMetaType::QStringList;
  return MakeCommandText(ID, bArgs ? pAction->data().toStringList() : QStringList());
}
