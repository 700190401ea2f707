#include "shell/command_args.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include "base/text.h"
#include "device/device.h"
#include "program/database/elfapi.h"
#include "program/database/file_finder.h"
#include "project/project.h"
#include "shell/actions/action_dispatch.h"
#include "shell/actions/action_errors.h"
#include "shell/settings/named_constants.h"

namespace {

// A number or named constant that 32 bits hold, with or without sign: what is more would end up at another address.
bool ParseWord(const QString& sText, U32* pValue) {
  bool bOk = false;
  const I64 Value = ParseConstOrNumber(sText, &bOk);
  *pValue = static_cast<U32>(Value);
  return bOk && Value >= INT32_MIN && Value <= UINT32_MAX;
}

}  // namespace

QString QuotedArg(const QString& sText) {
  return QLatin1Char('"') + sText + QLatin1Char('"');
}

void SetPathError(U32 ActionID, const char* sError, const QString& sPath) {
  SetActionError(ActionID, QStringLiteral("%1: %2").arg(QLatin1String(sError), QuotedArg(sPath)));
}

bool GetNumberArg(U32 ActionID, int Index, U32* pValue) {
  const QString sText = GetActionArgs(ActionID).value(Index);
  const bool bOk = ParseWord(sText, pValue);
  if (!bOk) SetActionError(ActionID, QLatin1String(ActionError::INVALID_PARAMETER), QuotedArg(sText));
  return bOk;
}

bool GetAddressArg(U32 ActionID, int Index, U32* pAddr) {
  QString sText = GetActionArgs(ActionID).value(Index);
  sText.remove(GROUP_BLANK);
  if (ParseWord(sText, pAddr)) return true;
  PARSED_LOC_KIND Kind = PARSED_LOC_NONE;
  *pAddr = ELFAPI_ParseLocation(sText, Kind).Start;
  if (Kind != PARSED_LOC_NONE) return true;
  SetActionError(ActionID, QLatin1String(ActionError::INVALID_PARAMETER), QuotedArg(sText));
  return false;
}

bool CheckConnected(U32 ActionID) {
  if (CDevice::Get().IsConnected()) return true;
  SetActionError(ActionID, QLatin1String(ActionError::NOT_CONNECTED));
  return false;
}

bool CheckHalted(U32 ActionID) {
  if (!CheckConnected(ActionID)) return false;
  if (CDevice::Get().IsHalted()) return true;
  SetActionError(ActionID, QLatin1String(ActionError::PROGRAM_IS_RUNNING));
  return false;
}

QString OutputPath(const QString& sPath) {
  const QString sExpanded = CFileFinder::Get()->ExpandMacros(sPath);
  const QString sProject = CProject::Get().GetFileName();
  if (sExpanded.isEmpty() || sProject.isEmpty()) return sExpanded;
  return QFileInfo(sProject).absoluteDir().filePath(sExpanded);
}

bool CanWriteFile(const QString& sPath) {
  const bool bExists = QFileInfo::exists(sPath);
  QFile File(sPath);
  const bool bOpen = File.open(QIODevice::WriteOnly | QIODevice::Append);
  if (bOpen && !bExists) File.remove();
  return bOpen;
}
