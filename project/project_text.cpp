#include "project/project_text.h"

#include <algorithm>

#include "script/hook_table.h"

namespace {

const QString LOAD_FUNCTION = QStringLiteral("OnProjectLoad");
const QString SETTINGS_MARKER = QStringLiteral("  //\n  // Dialog-generated settings\n  //\n");
const QString NO_BODY_START = QStringLiteral("Could not determine text position of function body start");
const QString NO_BODY_END = QStringLiteral("Could not determine text position of function body end");
const QString EMPTY_STATEMENT = QStringLiteral("{ }");  // a lone ";" is none to the script engine
const QString ELSE = QStringLiteral("else");

const QStringList VNODE_COMMANDS = {QStringLiteral("Project.SetDevice"),     QStringLiteral("Project.SetHostIF"),
                                    QStringLiteral("Project.SetTargetIF"),   QStringLiteral("Project.SetTIFSpeed"),
                                    QStringLiteral("Project.SetJTAGConfig"), QStringLiteral("Target.SetEndianess")};
const QStringList TRACE_COMMANDS = {QStringLiteral("Project.SetTraceSource"), QStringLiteral("Project.SetTraceTiming"),
                                    QStringLiteral("Project.SetTracePortWidth"), QStringLiteral("Project.ConfigSWO")};
const QString TIF_SPEED_COMMAND = QStringLiteral("Project.SetTIFSpeed");

constexpr qsizetype MAX_CALL_LENGTH = 16384;  // characters; keeps damaged texts from being searched for ever

bool IsNameChar(QChar c) {
  return c.isLetterOrNumber() || c == u'_';
}

// A project's text beside its blanked form, with the body of OnProjectLoad.
struct BODY {
  QString sBlanked;
  TEXT_RANGE Range;  // behind the "{" up to the "}"
  QString sError;
};

qsizetype SkipBlanks(const QString& sBlanked, qsizetype Pos) {
  while (Pos < sBlanked.size() && sBlanked[Pos].isSpace()) ++Pos;
  return Pos;
}

// Position behind the bracket that matches the one at Pos; -1 if there is none.
qsizetype BehindMatching(const QString& sBlanked, qsizetype Pos, QChar Open, QChar Close) {
  int Depth = 0;
  for (; Pos < sBlanked.size(); ++Pos) {
    if (sBlanked[Pos] == Open) ++Depth;
    if (sBlanked[Pos] == Close && --Depth == 0) return Pos + 1;
  }
  return -1;
}

// Position behind the ")" of the arguments that begin at Pos; -1 if they do not end within the statement.
qsizetype BehindArguments(const QString& sBlanked, qsizetype Pos) {
  const qsizetype End = std::min(sBlanked.size(), Pos + MAX_CALL_LENGTH);
  int Depth = 0;
  for (; Pos < End; ++Pos) {
    const QChar c = sBlanked[Pos];
    if (c == u';' || c == u'{' || c == u'}') return -1;
    if (c == u'(') ++Depth;
    if (c == u')' && --Depth == 0) return Pos + 1;
  }
  return -1;
}

// First occurrence of a whole name in [Pos, End).
qsizetype FindName(const QString& sBlanked, const QString& sName, qsizetype Pos, qsizetype End) {
  if (sName.isEmpty()) return -1;
  for (Pos = sBlanked.indexOf(sName, Pos); Pos >= 0 && Pos + sName.size() <= End; Pos = sBlanked.indexOf(sName, Pos)) {
    const qsizetype Behind = Pos + sName.size();
    const bool bBegins = Pos == 0 || !(IsNameChar(sBlanked[Pos - 1]) || sBlanked[Pos - 1] == u'.');
    const bool bEnds = Behind == sBlanked.size() || !(IsNameChar(sBlanked[Behind]) || sBlanked[Behind] == u'.');
    if (bBegins && bEnds) return Pos;
    ++Pos;
  }
  return -1;
}

qsizetype BodyStartOf(const QString& sBlanked) {
  qsizetype First = -1;
  for (qsizetype Pos = FindName(sBlanked, LOAD_FUNCTION, 0, sBlanked.size()); Pos >= 0;
       Pos = FindName(sBlanked, LOAD_FUNCTION, Pos + 1, sBlanked.size())) {
    if (First < 0) First = Pos;
    qsizetype Behind = SkipBlanks(sBlanked, Pos + LOAD_FUNCTION.size());
    if (Behind < sBlanked.size() && sBlanked[Behind] == u'(') Behind = BehindMatching(sBlanked, Behind, u'(', u')');
    if (Behind < 0) return -1;
    Behind = SkipBlanks(sBlanked, Behind);
    if (Behind < sBlanked.size() && sBlanked[Behind] == u'{') return Behind + 1;
  }
  if (First < 0) return -1;
  const qsizetype Brace = sBlanked.indexOf(u'{', First);
  return Brace < 0 ? -1 : Brace + 1;
}

qsizetype BodyEndOf(const QString& sBlanked, qsizetype BodyStart) {
  if (BodyStart < 1 || BodyStart > sBlanked.size()) return -1;
  const qsizetype Behind = BehindMatching(sBlanked, BodyStart - 1, u'{', u'}');
  return Behind < 0 ? -1 : Behind - 1;
}

BODY BodyOf(const QString& sText) {
  BODY Body;
  Body.sBlanked = BlankedScript(sText);
  const qsizetype Start = BodyStartOf(Body.sBlanked);
  const qsizetype End = BodyEndOf(Body.sBlanked, Start);
  if (Start < 0) {
    Body.sError = NO_BODY_START;
  } else if (End < 0) {
    Body.sError = NO_BODY_END;
  } else {
    Body.Range = {Start, End};
  }
  return Body;
}

// First call at or behind Pos whose brackets are closed in the body.
TEXT_RANGE FindCall(const BODY& Body, const QString& sName, qsizetype Pos) {
  for (Pos = FindName(Body.sBlanked, sName, Pos, Body.Range.End); Pos >= 0;
       Pos = FindName(Body.sBlanked, sName, Pos + 1, Body.Range.End)) {
    const qsizetype Open = SkipBlanks(Body.sBlanked, Pos + sName.size());
    if (Open >= Body.Range.End || Body.sBlanked[Open] != u'(') continue;
    const qsizetype Close = BehindArguments(Body.sBlanked, Open);
    if (Close < 0 || Close > Body.Range.End) continue;
    const qsizetype Semicolon = SkipBlanks(Body.sBlanked, Close);
    const bool bStatement = Semicolon < Body.Range.End && Body.sBlanked[Semicolon] == u';';
    return {Pos, bStatement ? Semicolon + 1 : Close};
  }
  return {};
}

enum class CALL_PLACE { STATEMENT, ONLY_STATEMENT_OF_HEAD, PART_OF_EXPRESSION };

// What removing the call would leave: nothing, a head such as "if (x)" without statement, or half an expression.
CALL_PLACE PlaceOf(const BODY& Body, const TEXT_RANGE& Call) {
  if (Body.sBlanked[Call.End - 1] != u';') return CALL_PLACE::PART_OF_EXPRESSION;
  qsizetype Pos = Call.Begin - 1;
  while (Body.sBlanked[Pos].isSpace()) --Pos;
  const QChar Before = Body.sBlanked[Pos];
  if (Before == u';' || Before == u'{' || Before == u'}') return CALL_PLACE::STATEMENT;
  const bool bElse = Pos >= ELSE.size() && QStringView(Body.sBlanked).mid(Pos + 1 - ELSE.size(), ELSE.size()) == ELSE &&
                     !IsNameChar(Body.sBlanked[Pos - ELSE.size()]);
  return bElse || Before == u')' ? CALL_PLACE::ONLY_STATEMENT_OF_HEAD : CALL_PLACE::PART_OF_EXPRESSION;
}

bool IsBlank(QStringView sText) {
  return sText.trimmed().isEmpty();
}

// The call's lines from the "\n" ahead of them on, if they hold no other code; else the call itself.
TEXT_RANGE LinesOf(const QString& sText, const BODY& Body, const TEXT_RANGE& Call) {
  const qsizetype LineStart = sText.lastIndexOf(u'\n', Call.Begin);
  qsizetype LineEnd = sText.indexOf(u'\n', Call.End);
  if (LineEnd < 0) LineEnd = sText.size();
  if (LineStart < Body.Range.Begin || LineEnd > Body.Range.End) return Call;
  const QStringView sBlanked(Body.sBlanked);
  const bool bAlone =
      IsBlank(sBlanked.mid(LineStart, Call.Begin - LineStart)) && IsBlank(sBlanked.mid(Call.End, LineEnd - Call.End));
  // A comment that begins ahead of the call or goes on behind its line stays whole.
  const bool bWhole = IsBlank(QStringView(sText).mid(LineStart, Call.Begin - LineStart)) &&
                      BlankedScript(sText.mid(Call.End, LineEnd - Call.End)).trimmed().isEmpty() &&
                      !QStringView(sText).mid(Call.End, LineEnd - Call.End).contains(u"/*");
  return bAlone && bWhole ? TEXT_RANGE{LineStart, LineEnd} : Call;
}

TEXT_EDIT InsertAt(const QString& sText, qsizetype Pos, const QStringList& Commands) {
  QString sLines;
  for (const QString& sCommand : Commands) {
    if (!sCommand.trimmed().isEmpty()) sLines += QStringLiteral("  ") + StatementText(sCommand) + u'\n';
  }
  if (!sLines.isEmpty() && Pos > 0 && sText[Pos - 1] != u'\n') sLines.prepend(u'\n');
  return {QString(sText).insert(Pos, sLines), {}};
}

qsizetype StartOfFirstLine(const QString& sText, const BODY& Body) {
  const bool bLineEnds = Body.Range.Begin < Body.Range.End && sText[Body.Range.Begin] == u'\n';
  return bLineEnds ? Body.Range.Begin + 1 : Body.Range.Begin;
}

// Behind the line on which a statement ends, without leaving the body or splitting a comment.
qsizetype BehindLine(const QString& sText, const BODY& Body, qsizetype StatementEnd) {
  const qsizetype LineEnd = sText.indexOf(u'\n', StatementEnd);
  if (LineEnd < 0 || LineEnd >= Body.Range.End) return StatementEnd;
  const bool bOnlyBlanks = IsBlank(QStringView(Body.sBlanked).mid(StatementEnd, LineEnd - StatementEnd));
  const bool bOpensComment = QStringView(sText).mid(StatementEnd, LineEnd - StatementEnd).contains(u"/*");
  return bOnlyBlanks && !bOpensComment ? LineEnd + 1 : StatementEnd;
}

TEXT_EDIT RemoveAll(const QString& sText, const QStringList& Names) {
  TEXT_EDIT Edit{sText, {}};
  for (const QString& sName : Names) {
    Edit = RemoveCommand(Edit.sText, sName);
    if (!Edit.sError.isEmpty()) return {sText, Edit.sError};
  }
  return Edit;
}

TEXT_EDIT ReplaceAll(const QString& sText, const QStringList& Names, const QStringList& Commands) {
  const TEXT_EDIT Removed = RemoveAll(sText, Names);
  return Removed.sError.isEmpty() ? InsertBehindMarker(Removed.sText, SETTINGS_MARKER, Commands) : Removed;
}

}  // namespace

QString BlankedScript(const QString& sText) {
  enum { CODE, LINE_COMMENT, BLOCK_COMMENT, LITERAL } State = CODE;
  QString sResult = sText;
  QChar* const paResult = sResult.data();
  QChar Quote;
  for (qsizetype i = 0; i < sText.size(); ++i) {
    const QChar c = sText[i];
    const QChar Next = i + 1 < sText.size() ? sText[i + 1] : QChar();
    if (c == u'\n') {
      if (State != BLOCK_COMMENT) State = CODE;
      continue;
    }
    if (State == CODE) {
      if (c == u'/' && (Next == u'/' || Next == u'*')) {
        State = Next == u'/' ? LINE_COMMENT : BLOCK_COMMENT;
        paResult[i] = paResult[i + 1] = u' ';
        ++i;
      } else if (c == u'"' || c == u'\'') {
        State = LITERAL;
        Quote = c;
      }
      continue;
    }
    if (State == LITERAL && c == Quote) {
      State = CODE;
      continue;
    }
    paResult[i] = u' ';
    const bool bPair = (State == LITERAL && c == u'\\' && Next != u'\n' && i + 1 < sText.size()) ||
                       (State == BLOCK_COMMENT && c == u'*' && Next == u'/');
    if (!bPair) continue;
    if (State == BLOCK_COMMENT) State = CODE;
    paResult[++i] = u' ';
  }
  return sResult;
}

qsizetype FindBodyStart(const QString& sText) {
  return BodyStartOf(BlankedScript(sText));
}

qsizetype FindBodyEnd(const QString& sText, qsizetype BodyStart) {
  return BodyEndOf(BlankedScript(sText), BodyStart);
}

TEXT_RANGE FindCommand(const QString& sText, const QString& sName) {
  const BODY Body = BodyOf(sText);
  return Body.sError.isEmpty() ? FindCall(Body, sName, Body.Range.Begin) : TEXT_RANGE();
}

bool HasCommand(const QString& sText, const QString& sName) {
  return !FindCommand(sText, sName).IsNone();
}

QString NameOfCommand(const QString& sCommand) {
  return sCommand.section(u'(', 0, 0).trimmed().section(u' ', -1);
}

TEXT_EDIT RemoveCommand(const QString& sText, const QString& sName) {
  const BODY Body = BodyOf(sText);
  if (!Body.sError.isEmpty()) return {sText, Body.sError};
  QString sResult;
  qsizetype Kept = 0;
  for (TEXT_RANGE Call = FindCall(Body, sName, Body.Range.Begin); !Call.IsNone();
       Call = FindCall(Body, sName, Call.End)) {
    const CALL_PLACE Place = PlaceOf(Body, Call);
    if (Place == CALL_PLACE::PART_OF_EXPRESSION) continue;
    const bool bHead = Place == CALL_PLACE::ONLY_STATEMENT_OF_HEAD;
    const TEXT_RANGE Cut = bHead ? Call : LinesOf(sText, Body, Call);
    sResult += QStringView(sText).mid(Kept, Cut.Begin - Kept);
    if (bHead) sResult += EMPTY_STATEMENT;
    Kept = Cut.End;
  }
  sResult += QStringView(sText).mid(Kept);
  return {sResult, {}};
}

TEXT_EDIT InsertBehindMarker(const QString& sText, const QString& sMarker, const QStringList& Commands) {
  const BODY Body = BodyOf(sText);
  if (!Body.sError.isEmpty()) return {sText, Body.sError};
  qsizetype Pos = sText.indexOf(sMarker, Body.Range.Begin);
  if (Pos >= 0) Pos += sMarker.size();
  if (Pos > 0 && !sMarker.endsWith(u'\n')) Pos = sText.indexOf(u'\n', Pos) + 1;
  if (Pos <= 0 || Pos > Body.Range.End) Pos = StartOfFirstLine(sText, Body);
  return InsertAt(sText, Pos, Commands);
}

TEXT_EDIT InsertBehindCommand(const QString& sText, const QString& sName, const QStringList& Commands) {
  const BODY Body = BodyOf(sText);
  if (!Body.sError.isEmpty()) return {sText, Body.sError};
  const TEXT_RANGE Call = FindCall(Body, sName, Body.Range.Begin);
  const bool bUsable = !Call.IsNone() && PlaceOf(Body, Call) == CALL_PLACE::STATEMENT;
  return InsertAt(sText, bUsable ? BehindLine(sText, Body, Call.End) : StartOfFirstLine(sText, Body), Commands);
}

TEXT_EDIT ReplaceCommands(const QString& sText, const QStringList& Commands) {
  QStringList Names;
  for (const QString& sCommand : Commands) Names << NameOfCommand(sCommand);
  Names.removeDuplicates();
  return ReplaceAll(sText, Names, Commands);
}

TEXT_EDIT AppendCommands(const QString& sText, const QStringList& Commands) {
  return InsertBehindMarker(sText, SETTINGS_MARKER, Commands);
}

TEXT_EDIT ReplaceVNodeCommands(const QString& sText, const QStringList& Commands) {
  return ReplaceAll(sText, VNODE_COMMANDS, Commands);
}

TEXT_EDIT ReplaceTraceCommands(const QString& sText, const QStringList& Commands) {
  const TEXT_EDIT Removed = RemoveAll(sText, TRACE_COMMANDS);
  return Removed.sError.isEmpty() ? InsertBehindCommand(Removed.sText, TIF_SPEED_COMMAND, Commands) : Removed;
}
