#include "device/rtt_channel.h"

namespace {

constexpr I32 SEARCH_CTRL_BLOCK = -1;

}  // namespace

bool CRttChannel::AddSearchRange(U32 Addr, U32 NumBytes) {
  const std::scoped_lock Lock(RangesMutex);
  if (Ranges.size() >= MAX_SEARCH_RANGES) return false;
  Ranges.emplace_back(Addr, NumBytes);
  return true;
}

void CRttChannel::ClearSearchRanges() {
  const std::scoped_lock Lock(RangesMutex);
  Ranges.clear();
}

int CRttChannel::Fail(const char* sText) {
  Ctx.LogWarnMsg(QString::fromLatin1(sText));
  return -1;
}

void CRttChannel::InitRTTSearchRanges() {
  QString sCommand;
  {
    const std::scoped_lock Lock(RangesMutex);
    for (const auto& [Addr, NumBytes] : Ranges) {
      sCommand = sCommand.isEmpty() ? QString::asprintf("SetRTTSearchRanges 0x%X 0x%X", Addr, NumBytes)
                                    : sCommand + QString::asprintf(", 0x%X 0x%X", Addr, NumBytes);
    }
  }
  if (!sCommand.isEmpty()) Commands.Exec(sCommand.toLatin1());
}

void CRttChannel::InitRTTCtrlBlockAddr() {
  const I32 Addr = Ctx.Config.Value(DCP_RTT_ADDR);
  if (Addr != SEARCH_CTRL_BLOCK)
    Commands.Exec(QByteArray("SetRTTAddr 0x") + QByteArray::number(static_cast<U32>(Addr), 16));
}

int CRttChannel::Start() {
  if (!Ctx.IsConnected()) return Fail("StartRTT: Not connected");
  InitRTTSearchRanges();
  InitRTTCtrlBlockAddr();
  Ctx.LogDebugMsg(QStringLiteral("Starting RTT"));
  const int Result = Ctx.Api.VNODE_RTTERMINAL_Control(VNODE_RTT_START, nullptr);
  bStarted = Result == 0;
  if (bStarted) return 0;
  Ctx.LogWarnMsg(QStringLiteral("StartRTT: VNODE API call failed: %1").arg(Result));
  Ctx.TestConnectionLost();
  return -1;
}

int CRttChannel::Stop() {
  if (!Ctx.IsConnected()) return Fail("StopRTT: Not connected");
  Ctx.LogDebugMsg(QStringLiteral("Stopping RTT"));
  bStarted = false;
  if (Ctx.Api.VNODE_RTTERMINAL_Control(VNODE_RTT_STOP, nullptr) >= 0) return 0;
  Fail("StopRTT: VNODE API call failed");
  Ctx.TestConnectionLost();
  return -1;
}

int CRttChannel::Read(U32 Buffer, U32 NumBytes, U8* paData) {
  if (paData == nullptr) return Fail("ReadRTT: invalid data buffer");
  if (NumBytes == 0 || NumBytes > MAX_TRANSFER_BYTES) {
    Ctx.LogWarnMsg(QString::asprintf("ReadRTT: invalid transfer size: %d", static_cast<int>(NumBytes)));
    return -1;
  }
  if (!Ctx.Settings.bRTT) return Fail("ReadRTT: not enabled");
  if (!bStarted) return Fail("ReadRTT: not started");
  if (!Ctx.IsConnected()) return Fail("ReadRTT: not connected");
  const int NumRead = Ctx.Api.VNODE_RTTERMINAL_Read(Buffer, reinterpret_cast<char*>(paData), NumBytes);
  if (NumRead >= 0) return std::min(NumRead, static_cast<int>(NumBytes));
  Fail("ReadRTT: VNODE API call failed");
  Ctx.TestConnectionLost();
  return -1;
}

int CRttChannel::Write(U32 Buffer, U32 NumBytes, const U8* paData) {
  if (paData == nullptr) return Fail("WriteRTT: invalid data buffer");
  if (NumBytes == 0 || NumBytes > MAX_TRANSFER_BYTES) return Fail("WriteRTT: invalid transfer size");
  if (!Ctx.IsConnected()) return Fail("WriteRTT: Not connected");
  if (!Ctx.Settings.bRTT) return Fail("WriteRTT: not enabled");
  if (!bStarted) return Fail("WriteReadRTT: not started");
  const int NumWritten = Ctx.Api.VNODE_RTTERMINAL_Write(Buffer, reinterpret_cast<const char*>(paData), NumBytes);
  if (NumWritten >= 0) return std::min(NumWritten, static_cast<int>(NumBytes));
  Fail("WriteRTT: VNODE API call failed");
  Ctx.TestConnectionLost();
  return -1;
}
