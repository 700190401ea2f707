#include "shell/target_failures.h"

#include "base/text.h"
#include "shell/log/console_print.h"

void CTargetFailures::OnDeviceWriteMemFailed(U32 Addr, U32 NumBytes, U8*) {
  PrintConsoleError(QStringLiteral("Target memory write of %1 bytes @ %2 failed.").arg(NumBytes).arg(AddrText(Addr)));
}

void CTargetFailures::OnDeviceWriteMemMultipleFailed(U32 NumRanges, U32* paRanges, U8* paData) {
  if (NumRanges == 1) return OnDeviceWriteMemFailed(paRanges[0], paRanges[1] - paRanges[0], paData);
  U64 NumBytes = 0;
  for (U32 i = 0; i < NumRanges; ++i) NumBytes += paRanges[2 * i + 1] - paRanges[2 * i];
  PrintConsoleError(QStringLiteral("Target memory write of %1 bytes in %2 blocks @ %3 to %4 failed.")
                        .arg(NumBytes)
                        .arg(NumRanges)
                        .arg(AddrText(paRanges[0]), AddrText(paRanges[2 * NumRanges - 1])));
}

void CTargetFailures::OnDeviceWriteRegFailed(U32 VNodeRegIdx) {
  PrintConsoleError(QStringLiteral("Write of target register %1 failed.").arg(VNodeRegIdx));
}

void CTargetFailures::OnDeviceExecCmdFailed(const char* sCommand, const char* sReply) {
  PrintConsoleError(QStringLiteral("Error executing V-Node command \"%1\": %2")
                        .arg(QString::fromUtf8(sCommand), QString::fromUtf8(sReply)));
}
