#include "project/project_edits.h"

#include "base/msg_flags.h"
#include "base/text.h"
#include "script/text_file.h"
#include "shell/log/log.h"

namespace {

bool Refuse(const QString& sText) {
  LogMsg(sText, MSG_WARNING | MSG_TO_ALL);
  return false;
}

QString ReadProjectText(const QString& sPath) {
  bool bOk = false;
  const QString sText = ReadTextFile(sPath, &bOk);
  return bOk ? WithUnixLineEnds(sText) : QString();
}

}  // namespace

bool EditProjectFile(const QString& sPath, const PROJECT_EDIT& Edit) {
  const QString sText = ReadProjectText(sPath);
  if (sText.isEmpty()) return Refuse(QStringLiteral("Could not read \"%1\"").arg(sPath));
  const TEXT_EDIT Result = Edit(sText);
  if (!Result.sError.isEmpty()) return Refuse(Result.sError);
  return WriteTextFile(sPath, Result.sText);
}

bool HasProjectCommand(const QString& sPath, const QString& sName) {
  return HasCommand(ReadProjectText(sPath), sName);
}
