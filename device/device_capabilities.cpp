#include "device/device_capabilities.h"

namespace {

constexpr U32 RAW_TRACE_VERSION = 61000;  // first library version with raw trace capabilities
constexpr U32 RAW_TRACE_READ_CAPS = 4;
constexpr U32 RAW_TRACE_CAP_STREAMING = 1u << 5;
constexpr U32 SPEED_MASK = 0xFFFF;
constexpr U32 HZ_PER_KHZ = 1000;
constexpr int ENDIAN_BIT_DATA = 1 << 0;
constexpr int ENDIAN_BIT_INST = 1 << 1;

bool IsCortexMFamily(U32 Family) {
  return Family == 1 || Family == 3 || Family == 6 || Family == 14;
}

}  // namespace

void CDeviceCapabilities::SetCapability(HW_CAPABILITIES Capability, bool bPresent) {
  if (Ctx.State.aCapability[Capability].exchange(bPresent) == bPresent) return;
  Ctx.Sink.RaiseHWCapabilityChanged(Capability, bPresent);
}

void CDeviceCapabilities::ResetHWCapabilityFlags() {
  for (U32 i = 0; i < NUM_HW_CAPS; ++i) SetCapability(static_cast<HW_CAPABILITIES>(i), true);
}

void CDeviceCapabilities::UpdateHWCapabilityFlags() {
  if (!Ctx.IsConnected()) return;
  SetCapability(HW_CAP_BMA, ReadBMACapability());
  SetCapability(HW_CAP_SWO, ReadSWOTraceCapability());
  SetCapability(HW_CAP_STREAMING_TRACE, ReadStreamingTraceCapability());
  SetCapability(HW_CAP_TRACE_PINS, true);
  SetCapability(HW_CAP_TRACE_BUFFER, true);
  SetCapability(HW_CAP_TRACE_SWO, true);
}

bool CDeviceCapabilities::ReadBMACapability() {
  return Info.HasBMAFunc() == nullptr || Info.HasBMAFunc()() != 0;
}

bool CDeviceCapabilities::ReadSWOTraceCapability() {
  const char* sError = nullptr;
  if (!IsCortexMFamily(Ctx.Facts.Get().CoreFamily))
    sError = "SWO trace: not a Cortex-M target device";
  else if (Ctx.Config.Value(DCP_TARGET_IF) != VNODE_TIF_SWD)
    sError = "SWO trace: target interface not set to SWD";
  else if (Ctx.Api.VNODEARM_EMU_HasCapEx(VNODE_CAP_SWO) == 0)
    sError = "V-Node emulator does not support SWO.";
  if (sError != nullptr) Ctx.SetErrorMsg(ERR_MSG_SWO, QString::fromLatin1(sError));
  return sError == nullptr;
}

int CDeviceCapabilities::ReadSWOSpeeds(U32 CPUSpeedHz, U32 NumItems, U32* paSpeedsHz) {
  std::fill_n(paSpeedsHz, NumItems, 0);
  if (!Ctx.IsConnected()) {
    Ctx.LogDebugMsg(QStringLiteral("GetSWOSpeeds: not connected"));
    return -1;
  }
  const int Count = Ctx.Api.VNODEARM_SWO_GetCompatibleSpeeds(CPUSpeedHz, 0, paSpeedsHz, NumItems);
  if (Count < 0) {
    Ctx.LogWarnMsg(QStringLiteral("GetSWOSpeeds: VNODE API call failed"));
    Ctx.TestConnectionLost();
    return -1;
  }
  // The library may know of more than it was asked for.
  const U32 NumSpeeds = std::min(static_cast<U32>(Count), NumItems);
  std::fill(paSpeedsHz + NumSpeeds, paSpeedsHz + NumItems, 0);
  return static_cast<int>(NumSpeeds);
}

bool CDeviceCapabilities::ReadStreamingTraceCapability() {
  if (Ctx.Facts.Get().LibraryVersion < RAW_TRACE_VERSION) return false;
  U32 Value = 0;
  if (Ctx.Api.VNODEARM_RAWTRACE_Control(RAW_TRACE_READ_CAPS, &Value) < 0) return false;
  return (Value & RAW_TRACE_CAP_STREAMING) != 0;
}

void CDeviceCapabilities::UpdateEndianess() {
  const U32 Configured = static_cast<U32>(Ctx.Config.Value(DCP_ENDIAN));
  U32 Data = Configured;
  U32 Inst = Configured;
  const int Result = Ctx.IsConnected() && Info.EndianFunc() != nullptr ? Info.EndianFunc()() : -1;
  if (Result >= 0) {
    Data = (Result & ENDIAN_BIT_DATA) != 0;
    Inst = (Result & ENDIAN_BIT_INST) != 0;
  }
  if (Data == Ctx.State.DataEndian && Inst == Ctx.State.InstEndian) return;
  Ctx.Sink.RaiseEndianessChanged(static_cast<int>(Ctx.State.InstEndian), static_cast<int>(Ctx.State.DataEndian));
  Ctx.State.DataEndian = Data;
  Ctx.State.InstEndian = Inst;
  Ctx.Program.SetCpuInfo(Ctx.Facts.Get().Core, Data, Inst);
}

int CDeviceCapabilities::ApplyDataEndianess(ENDIAN Endian) {
  const int Result = Ctx.IsConnected() ? Ctx.Api.VNODEARM_SetEndian(static_cast<int>(Endian)) : 0;
  UpdateEndianess();
  return Result < 0 ? -1 : 0;
}

void CDeviceCapabilities::UpdateTIFSpeed() {
  const U32 KHz = Ctx.Api.VNODEARM_GetSpeed() & SPEED_MASK;
  const bool bSpecial = KHz == VNODE_SPEED_AUTO || KHz == VNODE_SPEED_ADAPTIVE;
  Ctx.State.TIFSpeed = bSpecial ? KHz : KHz * HZ_PER_KHZ;
}
