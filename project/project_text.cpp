#include "project/project_text.h"

#include "base/msg_flags.h"
#include "script/text_file.h"
#include "shell/log/log.h"

namespace {

const QLatin1String HOOK("OnProjectLoad");
const QLatin1String MARKER("  //\n  // Dialog-generated settings\n  //\n");

struct BODY {
  qsizetype Start = -1;  // behind the opening brace
  qsizetype End = -1;    // at the closing one
};

void Report(const QString& sText) {
  LogMsg(sText, MSG_WARNING | MSG_TO_ALL);
}

qsizetype FindBodyEnd(const QString& sText, qsizetype Start) {
  int Depth = 1;
  for (qsizetype i = Start; i < sText.size(); ++i) {
    if (sText[i] == QLatin1Char('{')) ++Depth;
    if (sText[i] == QLatin1Char('}') && --Depth == 0) return i;
  }
  return -1;
}

// The hook's comment names it too, but has no brace.
BODY FindBody(const QString& sText) {
  BODY Body;
  const qsizetype Name = sText.indexOf(HOOK);
  const qsizetype Brace = Name < 0 ? -1 : sText.indexOf(QLatin1Char('{'), Name);
  if (Brace < 0) {
    Report(QStringLiteral("Could not determine text position of function body start"));
    return Body;
  }
  Body.End = FindBodyEnd(sText, Brace + 1);
  if (Body.End < 0) {
    Report(QStringLiteral("Could not determine text position of function body end"));
    return Body;
  }
  Body.Start = Brace + 1;
  return Body;
}

bool IsNamePart(QChar Char) {
  return Char.isLetterOrNumber() || Char == QLatin1Char('_') || Char == QLatin1Char('.');
}

// Only whole names: File.Open is no part of File.OpenRecent.
qsizetype FindCommand(const QString& sText, const BODY& Body, const QString& sName) {
  for (qsizetype Pos = sText.indexOf(sName, Body.Start); Pos >= 0 && Pos < Body.End;
       Pos = sText.indexOf(sName, Pos + 1)) {
    const qsizetype Behind = Pos + sName.size();
    if (!IsNamePart(sText[Pos - 1]) && (Behind >= sText.size() || !IsNamePart(sText[Behind]))) return Pos;
  }
  return -1;
}

// A body that stands on one line loses the statement only.
void RemoveCommand(QString* pText, BODY* pBody, qsizetype Pos) {
  qsizetype From = pText->lastIndexOf(QLatin1Char('\n'), Pos);
  qsizetype To = pText->indexOf(QLatin1Char('\n'), Pos);
  if (From < pBody->Start || To < 0 || To > pBody->End) {
    From = Pos;
    To = pText->indexOf(QLatin1Char(';'), Pos) + 1;
    if (To == 0 || To > pBody->End) To = pBody->End;
  }
  pText->remove(From, To - From);
  pBody->End -= To - From;
}

qsizetype InsertPosition(QString* pText, const BODY& Body) {
  const qsizetype Marker = pText->indexOf(MARKER, Body.Start);
  if (Marker >= 0 && Marker < Body.End) return Marker + MARKER.size();
  if (pText->at(Body.Start) != QLatin1Char('\n')) pText->insert(Body.Start, QLatin1Char('\n'));
  return Body.Start + 1;
}

}  // namespace

bool AddProjectCommands(const QString& sPath, const QStringList& Commands) {
  bool bOk = false;
  QString sText = ReadTextFile(sPath, &bOk);
  if (!bOk || sText.isEmpty()) {
    Report(QStringLiteral("Could not read \"%1\"").arg(sPath));
    return false;
  }
  sText.replace(QLatin1String("\r\n"), QLatin1String("\n"));
  BODY Body = FindBody(sText);
  if (Body.Start < 0) return false;
  QString sLines;
  for (const QString& sCommand : Commands) {
    const QString sName = sCommand.section(QLatin1Char('('), 0, 0).trimmed();
    for (qsizetype Pos = FindCommand(sText, Body, sName); Pos >= 0; Pos = FindCommand(sText, Body, sName)) {
      RemoveCommand(&sText, &Body, Pos);
    }
    sLines += QStringLiteral("  ") + sCommand + QLatin1Char('\n');
  }
  sText.insert(InsertPosition(&sText, Body), sLines);
  return WriteTextFile(sPath, sText);
}
