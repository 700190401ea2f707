#include "device/probe_commands.h"

namespace {

constexpr qsizetype MAX_COMMAND_BYTES = 1024;
constexpr int REPLY_BYTES = 1025;

}  // namespace

int CProbeCommands::ExecVNodeCmd(const char* sCmd, U32 Len, char* acOut) {
  if (sCmd == nullptr || acOut == nullptr || Len == 0) return -1;
  const QByteArray sCommand = QByteArray(sCmd).left(MAX_COMMAND_BYTES - 1);
  acOut[0] = '\0';
  Ctx.Api.VNODEARM_ExecCommand(sCommand.constData(), acOut, static_cast<int>(Len));
  acOut[Len - 1] = '\0';
  const QString sShown = QString::fromUtf8(sCommand);
  if (acOut[0] == '\0') {
    Ctx.LogInfoMsg(QStringLiteral("Executed V-Node command \"%1\"").arg(sShown));
    return 0;
  }
  Ctx.LogWarnMsg(QStringLiteral("Error executing V-Node command \"%1\": %2").arg(sShown, QString::fromUtf8(acOut)));
  return -1;
}

int CProbeCommands::Send(const QByteArray& sCommand, QByteArray* psReply, int* pCallResult) {
  char acReply[REPLY_BYTES] = {};
  const int CallResult = Ctx.Api.VNODEARM_ExecCommand(sCommand.constData(), acReply, sizeof(acReply));
  if (pCallResult != nullptr) *pCallResult = CallResult;
  acReply[REPLY_BYTES - 1] = '\0';
  if (psReply != nullptr) *psReply = acReply;
  return acReply[0] == '\0' ? 0 : -1;
}

int CProbeCommands::Exec(const QByteArray& sCommand) {
  QByteArray sReply;
  int CallResult = 0;
  const QString sShown = QString::fromUtf8(sCommand);
  if (Send(sCommand, &sReply, &CallResult) == 0) {
    Ctx.LogDebugMsg(QStringLiteral("Executed V-Node command \"%1\"").arg(sShown));
    return 0;
  }
  const QString sWhy = QString::fromUtf8(sReply);
  Ctx.LogWarnMsg(QStringLiteral("Error executing V-Node command \"%1\": %2").arg(sShown, sWhy));
  if (CallResult != 0) Ctx.LogWarnMsg(QStringLiteral("V-Node API call failed: %1").arg(sWhy));
  return -1;
}

int CProbeCommands::ExecVNodeScript(const char* sFilePath) {
  Ctx.LogDebugMsg(QStringLiteral("Executing V-Node Script"));
  QByteArray sReply;
  const int Result = Send(QByteArray("ScriptFile=") + sFilePath, &sReply);
  if (Result < 0) {
    Ctx.LogWarnMsg(
        QStringLiteral("V-Node script \"%1\" failed: %2").arg(QString::fromUtf8(sFilePath), QString::fromUtf8(sReply)));
  }
  return Result;
}

void CProbeCommands::SetSuppressDeviceSelectionDialog(bool bSuppress) {
  Send(bSuppress ? "HideDeviceSelection=1" : "HideDeviceSelection=0", nullptr);
}

int CProbeCommands::SelectDevice(const QByteArray& sName, QByteArray& sReply) {
  return Send("device=" + sName, &sReply);
}
