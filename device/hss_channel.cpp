#include "device/hss_channel.h"

#include <vector>

namespace {

QString StartErrorText(int Result) {
  switch (Result) {
    case VNODE_HSS_NO_MEMORY:
      return QStringLiteral("Failed to allocate memory for one or more buffers on the debug probe side");
    case VNODE_HSS_TOO_MANY_BLOCKS:
      return QStringLiteral("Too many memory blocks specified");
    case VNODE_HSS_NOT_SUPPORTED:
      return QStringLiteral("Target hardware does not support high speed sampling");
    default:
      return QStringLiteral("Unspecified error");
  }
}

}  // namespace

int CHssChannel::Fail(const QString& sText) {
  Ctx.LogWarnMsg(sText);
  return -1;
}

int CHssChannel::Start(U32 Cnt, const U32* paAddrRanges, int IntervalUs, int Flags) {
  if (Cnt == 0 || Cnt > VNODE_HSS_MAX_BLOCKS || paAddrRanges == nullptr) {
    return Fail(QStringLiteral("StartHSS: invalid address range input"));
  }
  if (!Ctx.IsConnected()) return Fail(QStringLiteral("StartHSS: not connected"));
  std::vector<VNODE_HSS_BLOCK> Blocks(Cnt);
  for (U32 i = 0; i < Cnt; ++i) {
    Blocks[i].Addr = paAddrRanges[2 * i];
    Blocks[i].NumBytes = paAddrRanges[2 * i + 1] - paAddrRanges[2 * i];
  }
  Ctx.LogDebugMsg(QStringLiteral("Starting HSS"));
  const int Result = Ctx.Api.VNODE_HSS_Start(Blocks.data(), static_cast<int>(Cnt), std::max(IntervalUs, 0), Flags);
  bStarted = Result == 0;
  if (bStarted) return 0;
  Fail(QStringLiteral("StartHSS: ") + StartErrorText(Result));
  Ctx.TestConnectionLost();
  return -1;
}

int CHssChannel::Stop() {
  if (!Ctx.IsConnected()) return Fail(QStringLiteral("StopHSS: Not connected"));
  if (!bStarted) return Fail(QStringLiteral("StopHSS: hss data capture not active"));
  Ctx.LogDebugMsg(QStringLiteral("Stopping HSS"));
  bStarted = false;
  if (Ctx.Api.VNODE_HSS_Stop() >= 0) return 0;
  Fail(QStringLiteral("StopHSS: VNODE API call failed"));
  Ctx.TestConnectionLost();
  return -1;
}

int CHssChannel::Read(U32 NumBytes, U8* paData) {
  if (paData == nullptr) return Fail(QStringLiteral("ReadHSS: invalid data buffer"));
  if (NumBytes == 0 || NumBytes > MAX_READ_BYTES) {
    return Fail(QString::asprintf("ReadHSS: invalid transfer size: %d", static_cast<int>(NumBytes)));
  }
  if (!bStarted) return Fail(QStringLiteral("ReadHSS: not started"));
  if (!Ctx.IsConnected()) return Fail(QStringLiteral("ReadHSS: not connected"));
  const int NumRead = Ctx.Api.VNODE_HSS_Read(paData, NumBytes);
  if (NumRead >= 0) return std::min(NumRead, static_cast<int>(NumBytes));
  Fail(QStringLiteral("ReadHSS: VNODE API call failed"));
  Ctx.TestConnectionLost();
  return -1;
}
