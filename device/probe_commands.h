#pragma once

#include "device/device_context.h"

// Text commands to the probe; device thread. An error reply gives -1.
class CProbeCommands {
public:
  explicit CProbeCommands(CDeviceContext& Ctx) : Ctx(Ctx) {}

  // Any command of the user's; acOut (Len bytes, required) takes the reply. Outcome is logged.
  int ExecVNodeCmd(const char* sCmd, U32 Len, char* acOut);
  // A command of ours; the outcome is logged, a success as a debug message.
  int Exec(const QByteArray& sCommand);
  int ExecVNodeScript(const char* sFilePath);
  void SetSuppressDeviceSelectionDialog(bool bSuppress);
  // "device=..." before a connect.
  int SelectDevice(const QByteArray& sName, QByteArray& sReply);

private:
  // pCallResult: what the library's function gave.
  int Send(const QByteArray& sCommand, QByteArray* psReply, int* pCallResult = nullptr);

  CDeviceContext& Ctx;
};
