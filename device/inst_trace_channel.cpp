#include "device/inst_trace_channel.h"

#include <vector>

namespace {

struct SOURCE_INFO {
  HW_CAPABILITIES Capability;
  const char* sUnsupported;
};

const SOURCE_INFO* InfoOf(U32 Source) {
  static constexpr SOURCE_INFO PINS = {HW_CAP_TRACE_PINS, "hardware does not support tracing via trace pins"};
  static constexpr SOURCE_INFO BUFFER = {HW_CAP_TRACE_BUFFER, "hardware does not support tracing via trace buffer"};
  static constexpr SOURCE_INFO SWO = {HW_CAP_TRACE_SWO, "hardware does not support tracing via SWO"};
  switch (Source) {
    case TRACE_SOURCE_ETM:
      return &PINS;
    case TRACE_SOURCE_ETB:
      return &BUFFER;
    case TRACE_SOURCE_SWO:
      return &SWO;
    default:
      return nullptr;
  }
}

bool IsStreamOfInsts(U32 Source) {
  return Source == TRACE_SOURCE_ETM || Source == TRACE_SOURCE_ETB;
}

}  // namespace

int CInstTraceChannel::Refuse(const char* sText, DEVICE_ERR_MSGS Domain) {
  Ctx.SetErrorMsg(Domain, QString::fromLatin1(sText));
  return -1;
}

const char* CInstTraceChannel::Obstacle() const {
  const SOURCE_INFO* const pInfo = InfoOf(Source());
  return pInfo && !Ctx.State.aCapability[pInfo->Capability] ? pInfo->sUnsupported : nullptr;
}

int CInstTraceChannel::Enable() {
  Ctx.State.Exec.bTraceEnabled = true;
  return 0;
}

int CInstTraceChannel::Disable() {
  if (Ctx.IsConnected() && bStarted) Stop();
  Ctx.State.Exec.bTraceEnabled = false;
  return 0;
}

int CInstTraceChannel::StartProbe() {
  Commands.Exec(QByteArray("SelectTraceSource=") + QByteArray::number(Source()));
  if (Source() == TRACE_SOURCE_ETM) {
    Commands.Exec(QByteArray("PortWidth=") + QByteArray::number(Ctx.Settings.TracePortWidth.load()));
  }
  return Ctx.Api.VNODE_STRACE_Start();
}

int CInstTraceChannel::Start() {
  if (!Ctx.IsConnected()) return Refuse("not connected");
  if (const char* const sObstacle = Obstacle()) return Refuse(sObstacle);
  if (!Ctx.State.Exec.bTraceEnabled || !IsStreamOfInsts(Source())) return Refuse("instruction tracing disabled");
  if (bStarted) {
    Ctx.LogDebugMsg(QStringLiteral("StartSimpleInstTrace: trace already started"));
    return 0;
  }
  if (StartProbe() >= 0) {
    bStarted = true;
    return 0;
  }
  Ctx.Api.VNODE_STRACE_Stop();
  const SOURCE_INFO& Info = *InfoOf(Source());
  Capabilities.SetCapability(Info.Capability, false);
  Refuse(Info.sUnsupported);
  Ctx.TestConnectionLost();
  return -1;
}

int CInstTraceChannel::Stop() {
  if (!Ctx.IsConnected()) return Refuse("not connected");
  if (!bStarted) return 0;
  bStarted = false;
  if (Ctx.Api.VNODE_STRACE_Stop() >= 0) return 0;
  Refuse("VNODE API call failed");
  Ctx.TestConnectionLost();
  return -1;
}

int CInstTraceChannel::Read(U32 NumInsts, U32* paInsts) {
  if (NumInsts == 0 || NumInsts > MAX_READ_INSTS || paInsts == nullptr) return Refuse("Invalid read size");
  if (!Ctx.IsConnected()) return Refuse("not connected");
  if (!bStarted) return Refuse("ReadSimpleInstTrace: instruction trace not started");
  if (const char* const sObstacle = Obstacle()) return Refuse(sObstacle);
  if (!Ctx.State.Exec.bTraceEnabled) return Refuse("ReadSimpleInstTrace: instruction trace diasabled");
  if (!Ctx.State.Exec.bHalted) return Refuse("ReadSimpleInstTrace :target not halted");
  const int NumRead = Ctx.Api.VNODE_STRACE_Read(paInsts, NumInsts);
  if (NumRead > 0) return std::min(NumRead, static_cast<int>(NumInsts));
  if (NumRead == 0) {
    Ctx.LogDebugMsg(QStringLiteral("ReadSimpleInstTrace: 0 instructions read"));
    return 0;
  }
  Refuse("VNODE API call failed");
  Ctx.TestConnectionLost();
  return -1;
}

int CInstTraceChannel::Flush() {
  if (!Ctx.IsConnected()) return Refuse("not connected");
  if (Source() == TRACE_SOURCE_SWO) return Refuse("Instruction trace cannot be used while SWO trace is active");
  if (const char* const sObstacle = Obstacle()) return Refuse(sObstacle);
  const bool bWasStarted = bStarted;
  Ctx.Api.VNODE_STRACE_Stop();
  const int Result = Ctx.Api.VNODE_STRACE_Start();
  if (!bWasStarted) Ctx.Api.VNODE_STRACE_Stop();
  if (Result >= 0) return 0;
  bStarted = false;
  Refuse("VNODE API call failed");
  Ctx.TestConnectionLost();
  return -1;
}

int CInstTraceChannel::ReadInstStats(U32 NumRanges, const U32* paRanges, U32 NumItems, U64* paFetch, U64* paSkip,
                                     U64* pTotalFetch, U64* pTotalSkip) {
  constexpr U32 HALFWORD = 2;
  const auto Fail = [this](const char* sText) { return Refuse(sText, ERR_MSG_STREAMING_TRACE); };
  *pTotalFetch = *pTotalSkip = 0;
  if (!Ctx.IsConnected()) return Fail("not connected");
  if (!Ctx.State.aCapability[HW_CAP_STREAMING_TRACE]) return Fail("hardware does not support streaming trace");
  U32 NumDone = 0;
  std::vector<U64> Answer;
  for (U32 i = 0; i < NumRanges; ++i) {
    const U32 Start = paRanges[2 * i];
    const U32 End = paRanges[2 * i + 1];
    const U32 NumSlots = Start == INVALID_ADDR || End <= Start ? 0 : (End - Start) / HALFWORD;
    if (NumSlots == 0) continue;
    const U64 NumAsked = U64{NumSlots} * 2 + 2;
    if (NumAsked > MAX_STAT_ITEMS) return Fail("request exceeds block size");
    Answer.assign(NumAsked, 0);
    const int NumGot = Ctx.Api.VNODE_STRACE_GetInstStats(Answer.data(), Start, static_cast<U32>(NumAsked),
                                                         VNODE_INST_STATS_ITEM_SIZE, VNODE_INST_STATS_FETCH_AND_SKIP);
    if (NumGot < 2) {
      Fail("VNODE API call failed");
      Ctx.TestConnectionLost();
      return -1;
    }
    const U32 Num = std::min(static_cast<U32>(NumGot) / 2 - 1, NumSlots);
    if (Num > NumItems - NumDone) return Fail("request exceeds output buffer size");
    std::copy_n(Answer.begin(), Num, paFetch + NumDone);
    std::copy_n(Answer.begin() + Num + 1, Num, paSkip + NumDone);
    *pTotalFetch = Answer[Num];
    *pTotalSkip = Answer[2 * Num + 1];
    NumDone += Num;
  }
  return static_cast<int>(NumDone);
}
