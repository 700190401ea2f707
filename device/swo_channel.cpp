#include "device/swo_channel.h"

namespace {

constexpr U32 NUM_SPEEDS = 10;  // asked for when the first one is wanted
constexpr int ASYNC_MODE = 0;

constexpr char NOT_CONNECTED[] = "not connected";
constexpr char NOT_SUPPORTED[] = "SWO trace not supported";
constexpr char TRACE_IS_ON[] = "SWO trace cannot be used in conjunction with instruction trace";

}  // namespace

int CSwoChannel::Refuse(const char* sText) {
  Ctx.SetErrorMsg(ERR_MSG_SWO, QString::fromLatin1(sText));
  return -1;
}

int CSwoChannel::FailCall(const char* sText) {
  Refuse(sText);
  Ctx.TestConnectionLost();
  return -1;
}

const char* CSwoChannel::Obstacle() const {
  if (!Ctx.State.aCapability[HW_CAP_SWO]) return NOT_SUPPORTED;
  return Ctx.State.Exec.bTraceEnabled ? TRACE_IS_ON : nullptr;
}

U32 CSwoChannel::FirstSpeed(U32 CpuHz) {
  U32 aSpeedsHz[NUM_SPEEDS] = {};
  return Capabilities.ReadSWOSpeeds(CpuHz, NUM_SPEEDS, aSpeedsHz) > 0 ? aSpeedsHz[0] : 0;
}

int CSwoChannel::Start(U32 CpuHz, U32 SWOHz, U32 PortMask) {
  if (!Ctx.IsConnected()) return Refuse(NOT_CONNECTED);
  if (Ctx.Config.Value(DCP_TARGET_IF) != VNODE_TIF_SWD) return Refuse("target interface not set to SWD");
  if (const char* const sObstacle = Obstacle()) return Refuse(sObstacle);
  bStarted = false;
  if (Ctx.Api.VNODEARM_SWO_DisableTarget(ALL_PORTS) < 0) {
    return FailCall("VNODEARM_SWO_DisableTarget: V-Node API call failed");
  }
  if (Ctx.Api.VNODEARM_SWO_Control(VNODE_SWO_PENDING, nullptr) < 0) return FailCall("V-Node API call failed");
  if (CpuHz == 0) CpuHz = Ctx.State.CoreSpeed;
  if (CpuHz == 0) return Refuse("SWO trace cannot be started: invalid core frequency");
  if (SWOHz == 0) SWOHz = FirstSpeed(CpuHz);
  if (SWOHz == 0) return Refuse("Could not find compatible SWO frequencies for CPU clock given.");
  if (Ctx.Api.VNODEARM_SWO_EnableTarget(CpuHz, SWOHz, ASYNC_MODE, PortMask) < 0) {
    return FailCall("V-Node API call failed");
  }
  bStarted = true;
  return 0;
}

int CSwoChannel::Stop(U32 PortMask) {
  if (!Ctx.IsConnected()) return Refuse(NOT_CONNECTED);
  if (Ctx.IsConnectionLost()) {
    bStarted = false;
    return Refuse("connection lost");
  }
  if (Ctx.State.Exec.bTraceEnabled) return Refuse(TRACE_IS_ON);
  if (!Ctx.State.aCapability[HW_CAP_SWO]) return Refuse(NOT_SUPPORTED);
  if (Ctx.Api.VNODEARM_SWO_DisableTarget(PortMask) < 0) {
    return FailCall("VNODEARM_SWO_DisableTarget: V-Node API call failed");
  }
  bStarted = false;
  return 0;
}

int CSwoChannel::Read(U32 Port, U32 NumBytes, U8* paData) {
  if (paData == nullptr) return Refuse("ReadSWOTrace: invaid data buffer");
  if (NumBytes == 0 || NumBytes > MAX_READ_BYTES) return Refuse("ReadSWOTrace: invalid read request size");
  if (!Ctx.IsConnected()) return Refuse("ReadSWOTrace: not connected.");
  if (!Ctx.State.aCapability[HW_CAP_SWO]) return Refuse(NOT_SUPPORTED);
  if (!bStarted) return Refuse("ReadSWOTrace: SWO trace not started");
  if (Ctx.State.Exec.bTraceEnabled) return Refuse(TRACE_IS_ON);
  const U32 NumRead = std::min(Ctx.Api.VNODEARM_SWO_ReadStimulus(static_cast<int>(Port), paData, NumBytes), NumBytes);
  if (NumRead == 0) {
    Ctx.LogDebugMsg(QStringLiteral("ReadSWOTrace: 0 bytes read"));
    return 0;
  }
  U32 NumPending = NumRead;
  Ctx.Api.VNODEARM_SWO_Control(VNODE_SWO_PENDING, &NumPending);
  return static_cast<int>(NumRead);
}
