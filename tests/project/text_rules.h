#pragma once
// What holds for the edits of any text, a project or not.

#include <string>

#include "base/text.h"
#include "project/project_text.h"

// Code without blanks and comments, to compare what is left.
inline QString CodeOf(const QString& sText) {
  QString sCode = BlankedScript(sText);
  return sCode.remove(u' ').remove(u'\n').remove(u'\t');
}

// The rule that the text breaks, in words; empty if it keeps all.
inline std::string BrokenTextRule(const QString& sAnyText) {
  const QString sText = WithUnixLineEnds(sAnyText);
  const QString sName = QStringLiteral("Project.SetDevice");
  const QStringList Commands = {sName + QStringLiteral(" (\"new\");")};
  if (BlankedScript(sText).size() != sText.size()) return "blanking changes the length";
  const TEXT_EDIT Edit = ReplaceCommands(sText, Commands);
  const qsizetype Start = FindBodyStart(sText);
  const bool bHasBody = Start >= 0 && FindBodyEnd(sText, Start) >= 0;
  if (Edit.sError.isEmpty() != bHasBody) return "an edit is refused without reason, or made without body";
  if (!bHasBody) return Edit.sText == sText ? "" : "a refused edit changes the text";
  if (!HasCommand(Edit.sText, sName)) return "an inserted command is not found";
  // Behind half a statement, as in a damaged script, the inserted command is taken for the rest of that.
  const bool bStatement = !HasCommand(RemoveCommand(Edit.sText, sName).sText, sName);
  if (bStatement && ReplaceCommands(Edit.sText, Commands).sText != Edit.sText)
    return "the same edit twice is not the same as once";
  const TEXT_EDIT Removed = RemoveCommand(sText, sName);
  const qsizetype NewStart = FindBodyStart(Removed.sText);
  if (NewStart < 0 || FindBodyEnd(Removed.sText, NewStart) < 0) return "removing breaks the body";
  if (CodeOf(Removed.sText).count(u'{') - CodeOf(Removed.sText).count(u'}') !=
      CodeOf(sText).count(u'{') - CodeOf(sText).count(u'}'))
    return "removing unbalances the braces";
  if (sText.left(Start) != Removed.sText.left(Start)) return "removing changes what stands before the body";
  const TEXT_EDIT Trace = ReplaceTraceCommands(sText, {QStringLiteral("Project.ConfigSWO (1, 2);")});
  if (!HasCommand(Trace.sText, QStringLiteral("Project.ConfigSWO"))) return "an inserted trace command is not found";
  if (ReplaceVNodeCommands(sText, {}).sError != QString()) return "a body is found once and not again";
  return "";
}
