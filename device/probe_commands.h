#pragma once

#include "device/device_context.h"

// Text commands to the probe; device thread. An error reply gives -1.
class CProbeCommands {
public:
  explicit CProbeCommands(CDeviceContext& Ctx) : Ctx(Ctx) {}

  // Any command of the user's; acOut (Len bytes, required) takes the reply. Outcome is logged.
  int ExecVNodeCmd(const char* sCmd, U32 Len, char* acOut);
  int ExecVNodeScript(const char* sFilePath);
  void SetSuppressDeviceSelectionDialog(bool bSuppress);
  // "device=..." before a connect.
  int SelectDevice(const QByteArray& sName, QByteArray& sReply);

private:
  int Send(const QByteArray& sCommand, QByteArray* psReply);

  CDeviceContext& Ctx;
};
