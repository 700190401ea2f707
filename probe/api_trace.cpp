// Trace and terminal channels.

#include "probe/api_call.h"
#include "probe/swo_speeds.h"

namespace {

// A call that needs one of the target's optional pieces.
template <auto Piece>
class CPieceCall {
public:
  CPieceCall(FAULT_POINT Point, const char* sWhat) : m_Call(Point) {
    if (!m_Call) return;
    m_pPiece = (m_Call.Target().*Piece)();
    if (!m_pPiece) m_Call.Error(std::string("The target has no ") + sWhat);
  }
  explicit operator bool() const { return m_pPiece; }
  auto* operator->() { return m_pPiece; }
  // The target was reached, but does not have the piece.
  bool IsMissing() const { return m_Call && !m_pPiece; }
  int FailureCode(int Default = -1) const { return m_Call.FailureCode(Default); }

private:
  using POINTER = decltype((std::declval<CTarget&>().*Piece)());
  CTargetCall m_Call;
  POINTER m_pPiece = nullptr;
};

struct CSwoCall : CPieceCall<&CTarget::Swo> {
  explicit CSwoCall(FAULT_POINT Point) : CPieceCall(Point, "SWO output") {}
};
struct CTraceCall : CPieceCall<&CTarget::InstTrace> {
  explicit CTraceCall(FAULT_POINT Point) : CPieceCall(Point, "instruction trace") {}
};
struct CHssCall : CPieceCall<&CTarget::HssSampler> {
  explicit CHssCall(FAULT_POINT Point) : CPieceCall(Point, "high-speed sampling") {}
};

// Where the control block may be when no ranges are configured.
std::vector<RTT_SEARCH_RANGE> DeviceRAM(const CSession& Session) {
  std::vector<RTT_SEARCH_RANGE> Ranges;
  DEVICE_ROW Device;
  if (!Session.GetDevice(&Device)) return Ranges;
  for (const sim::MEM_RANGE& RAM : Device.RAM) {
    if (RAM.Size) Ranges.push_back({RAM.Start, RAM.Size});
  }
  return Ranges;
}

}  // namespace

int VNODEARM_SWO_Control(U32 Command, void* pData) {
  CSwoCall Call(FAULT_POINT::SWO_Control);
  if (!Call || Command != VNODE_SWO_PENDING) return Call.FailureCode();
  if (!pData) return Call->Discard();
  const int Num = Call->NumBytesPending();
  *static_cast<U32*>(pData) = static_cast<U32>(std::max(Num, 0));
  return std::min(Num, 0);
}

int VNODEARM_SWO_EnableTarget(U32 CPUHz, U32 SWOHz, int, U32 PortMask) {
  CSwoCall Call(FAULT_POINT::SWO_EnableTarget);
  return Call ? Call->Enable(CPUHz, SWOHz, PortMask) : Call.FailureCode();
}

int VNODEARM_SWO_DisableTarget(U32 PortMask) {
  CSwoCall Call(FAULT_POINT::SWO_DisableTarget);
  return Call ? Call->Disable(PortMask) : Call.FailureCode();
}

int VNODEARM_SWO_GetCompatibleSpeeds(U32 CPUHz, U32, U32* paSpeeds, U32 NumItems) {
  CSwoCall Call(FAULT_POINT::SWO_GetCompatibleSpeeds);
  return Call && paSpeeds ? static_cast<int>(FindSwoSpeeds(CPUHz, paSpeeds, NumItems)) : Call.FailureCode();
}

U32 VNODEARM_SWO_ReadStimulus(int Port, U8* paData, U32 NumBytes) {
  CSwoCall Call(FAULT_POINT::SWO_ReadStimulus);
  return Call ? static_cast<U32>(std::max(0, Call->ReadStimulus(Port, paData, NumBytes))) : 0;
}

int VNODEARM_RAWTRACE_Control(U32 Command, void* pData) {
  CTargetCall Call(FAULT_POINT::RAWTRACE_Control);
  if (!Call || Command != VNODE_RAWTRACE_GET_CAPS || !pData) return Call.FailureCode();
  *static_cast<U32*>(pData) = Call.Target().InstTrace() ? VNODE_RAWTRACE_CAP_STREAMING : 0;
  return 0;
}

int VNODE_RTTERMINAL_Control(U32 Command, void*) {
  CTargetCall Call(FAULT_POINT::RTTERMINAL_Control);
  if (!Call) return Call.FailureCode();
  const PROBE_CONFIG& Config = Call->Config;
  switch (Command) {
    case VNODE_RTT_START:
      Call->Rtt.Start(Config.RTTAddr,
                      Config.RTTSearchRanges.empty() ? DeviceRAM(*Call.operator->()) : Config.RTTSearchRanges);
      return 0;
    case VNODE_RTT_STOP:
      Call->Rtt.Stop();
      return 0;
    default:
      return -1;
  }
}

int VNODE_RTTERMINAL_Read(U32 Buffer, char* pData, U32 NumBytes) {
  CTargetCall Call(FAULT_POINT::RTTERMINAL_Read);
  if (!Call || !Call->Rtt.IsOn()) return Call.FailureCode();
  return Call->Rtt.Read(Call.Target(), Buffer, reinterpret_cast<U8*>(pData), NumBytes);
}

int VNODE_RTTERMINAL_Write(U32 Buffer, const char* pData, U32 NumBytes) {
  CTargetCall Call(FAULT_POINT::RTTERMINAL_Write);
  if (!Call || !Call->Rtt.IsOn()) return Call.FailureCode();
  return Call->Rtt.Write(Call.Target(), Buffer, reinterpret_cast<const U8*>(pData), NumBytes);
}

int VNODE_HSS_Start(const VNODE_HSS_BLOCK* paBlocks, int NumBlocks, int PeriodUs, int) {
  CHssCall Call(FAULT_POINT::HSS_Start);
  if (!Call) return Call.FailureCode(Call.IsMissing() ? VNODE_HSS_NOT_SUPPORTED : VNODE_HSS_UNSPECIFIED);
  if (!paBlocks || NumBlocks <= 0 || PeriodUs < 0) return VNODE_HSS_UNSPECIFIED;
  return Call->Start(paBlocks, static_cast<U32>(NumBlocks), static_cast<U32>(PeriodUs));
}

int VNODE_HSS_Stop() {
  CHssCall Call(FAULT_POINT::HSS_Stop);
  return Call ? Call->Stop() : Call.FailureCode();
}

int VNODE_HSS_Read(void* pData, U32 NumBytes) {
  CHssCall Call(FAULT_POINT::HSS_Read);
  return Call ? Call->Read(pData, NumBytes) : Call.FailureCode();
}

int VNODE_STRACE_Config(const char* sConfig) {
  CTraceCall Call(FAULT_POINT::STRACE_Config);
  return Call ? Call->Configure(sConfig ? sConfig : "") : Call.FailureCode();
}

int VNODE_STRACE_Start() {
  CTraceCall Call(FAULT_POINT::STRACE_Start);
  return Call ? Call->Start() : Call.FailureCode();
}

int VNODE_STRACE_Stop() {
  CTraceCall Call(FAULT_POINT::STRACE_Stop);
  return Call ? Call->Stop() : Call.FailureCode();
}

int VNODE_STRACE_Read(U32* paAddr, U32 NumItems) {
  CTraceCall Call(FAULT_POINT::STRACE_Read);
  return Call ? Call->Read(paAddr, NumItems) : Call.FailureCode();
}

int VNODE_STRACE_GetInstStats(U64* paItems, U32 Addr, U32 NumItems, int ItemSize, int Mode) {
  CTraceCall Call(FAULT_POINT::STRACE_GetInstStats);
  if (!Call) return Call.FailureCode();
  if (ItemSize != VNODE_INST_STATS_ITEM_SIZE || Mode != VNODE_INST_STATS_FETCH_AND_SKIP) return -1;
  return Call->GetInstStats(paItems, Addr, NumItems);
}
