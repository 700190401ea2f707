#include "fake_probe.h"

#include <QString>

#include <cstring>

#include "device/vnode_library.h"

namespace {

CFakeProbe* g_pFake = nullptr;

template <typename... ARGS>
bool Call(const char* sFormat, ARGS... Args) {
  return g_pFake->Note(QString::asprintf(sFormat, Args...).toStdString());
}

int HasBMA() {
  return g_pFake->HasBMA;
}
int GetEndianness() {
  return g_pFake->Endianness;
}

template <typename T>
int ReadItems(const char* sName, U32 Addr, U32 NumItems, T* paData, U8* paStatus) {
  const bool bOk = Call("%s %x", sName, Addr) && g_pFake->Accessible(Addr, sizeof(T)) == sizeof(T);
  *paStatus = bOk ? 0 : 1;
  if (!bOk || NumItems != 1) return -1;
  std::memcpy(paData, &g_pFake->Mem[Addr - CFakeProbe::MEM_START], sizeof(T));
  return 1;
}

template <typename T>
int WriteItem(const char* sName, U32 Addr, T Value) {
  if (!Call("%s %x", sName, Addr) || g_pFake->Accessible(Addr, sizeof(T)) != sizeof(T)) return -1;
  std::memcpy(&g_pFake->Mem[Addr - CFakeProbe::MEM_START], &Value, sizeof(T));
  return 0;
}

int ReadBlock(const char* sName, U32 Addr, U32 NumBytes, void* pData) {
  if (!Call("%s %x %x", sName, Addr, NumBytes)) return -1;
  const U32 Count = std::min(g_pFake->Accessible(Addr, NumBytes), g_pFake->MaxBytesPerCall);
  if (Count != 0) std::memcpy(pData, &g_pFake->Mem[Addr - CFakeProbe::MEM_START], Count);
  return static_cast<int>(Count);
}

int Transfer(const char* sName, U32 Channel, U32 NumBytes, void* pData) {
  if (!Call("%s %x %x", sName, Channel, NumBytes)) return -1;
  const U32 Count = std::min(NumBytes, CFakeProbe::CHANNEL_BYTES);
  if (pData != nullptr) std::memset(pData, 'x', Count);
  return static_cast<int>(Count);
}

void AddSession(VNODE_API& Api) {
  Api.VNODEARM_GetDLLVersion = [] { return g_pFake->Version; };
  Api.VNODEARM_Open = []() -> const char* {
    g_pFake->bOpen = Call("Open");
    return g_pFake->bOpen ? nullptr : "cable unplugged";
  };
  Api.VNODEARM_Close = [] {
    Call("Close");
    g_pFake->bOpen = g_pFake->bConnected = false;
  };
  Api.VNODEARM_IsOpen = [] { return static_cast<U8>(g_pFake->bOpen); };
  Api.VNODEARM_Connect = [] {
    g_pFake->bConnected = Call("Connect");
    return g_pFake->bConnected ? 0 : -1;
  };
  Api.VNODEARM_IsConnected = [] { return static_cast<U8>(g_pFake->bConnected); };
  Api.VNODEARM_SelectUSB = [](int) { return Call("SelectUSB") ? 0 : -1; };
  Api.VNODEARM_GetSN = [] { return 1234u; };
  Api.VNODEARM_GetFirmwareString = [](char* acText, int Size) {
    std::snprintf(acText, static_cast<size_t>(Size), "V-Node rev 3   compiled Jan 1 2020");
  };
  Api.VNODEARM_EnableLog = [](VNODE_TEXT_CALLBACK) { Call("EnableLog"); };
  Api.VNODEARM_SetErrorOutHandler = [](VNODE_TEXT_CALLBACK pf) { g_pFake->pfError = pf; };
  Api.VNODEARM_SetWarnOutHandler = [](VNODE_TEXT_CALLBACK) {};
  Api.VNODEARM_ExecCommand = [](const char* sCommand, char* acReply, int Size) {
    Call("ExecCommand %s", sCommand);
    const auto It = g_pFake->ErrorReply.find(sCommand);
    std::snprintf(acReply, static_cast<size_t>(Size), "%s", It == g_pFake->ErrorReply.end() ? "" : It->second.c_str());
    return 0;
  };
  Api.VNODE_GetpFunc = [](int No) -> void* {
    if (g_pFake->OptionalFuncs.count(No) == 0) return nullptr;
    if (No == VNODE_FUNC_HAS_BMA) return reinterpret_cast<void*>(&HasBMA);
    return No == VNODE_FUNC_GET_ENDIANNESS ? reinterpret_cast<void*>(&GetEndianness) : nullptr;
  };
}

void AddDevicesAndConfig(VNODE_API& Api) {
  Api.VNODEARM_DEVICE_GetIndex = [](const char* sName) {
    const auto Is = [sName](const VNODEARM_DEVICE_INFO& Device) { return std::strcmp(Device.sName, sName) == 0; };
    const auto It = std::find_if(g_pFake->Devices.begin(), g_pFake->Devices.end(), Is);
    return It == g_pFake->Devices.end() ? -1 : static_cast<int>(It - g_pFake->Devices.begin());
  };
  Api.VNODEARM_DEVICE_GetInfo = [](int Index, VNODEARM_DEVICE_INFO* pInfo) {
    if (Index < 0) return static_cast<int>(g_pFake->Devices.size());
    if (static_cast<size_t>(Index) >= g_pFake->Devices.size()) return -1;
    *pInfo = g_pFake->Devices[static_cast<size_t>(Index)];
    return 0;
  };
  Api.VNODEARM_Core2CoreName = [](U32, char* acName, U16 Size) { std::snprintf(acName, Size, "Cortex-M4"); };
  Api.VNODEARM_TIF_Select = [](int IF) { return Call("TIF_Select %x", IF) ? 0 : -1; };
  Api.VNODEARM_ConfigJTAG = [](int IRPre, int DRPre) { Call("ConfigJTAG %x %x", IRPre, DRPre); };
  Api.VNODEARM_SetSpeed = [](U32 KHz) { Call("SetSpeed %x", KHz); };
  Api.VNODEARM_GetSpeed = [] { return g_pFake->SpeedKHz; };
  Api.VNODEARM_SetEndian = [](int Endian) { return Call("SetEndian %x", Endian) ? 0 : -1; };
  Api.VNODEARM_SetCoreIndex = [](U32 Index) { return Call("SetCoreIndex %x", Index) ? 0 : -1; };
  Api.VNODEARM_SetResetType = [](int Type) { Call("SetResetType %x", Type); };
  Api.VNODEARM_SetResetDelay = [](int Ms) { Call("SetResetDelay %x", Ms); };
  Api.VNODEARM_SetInitRegsOnReset = [](int On) { Call("SetInitRegsOnReset %x", On); };
  Api.VNODEARM_EnableSoftBPs = [](int On) { Call("EnableSoftBPs %x", On); };
  Api.VNODEARM_EMU_HasCapEx = [](U32 Capability) { return static_cast<int>(g_pFake->Capabilities.count(Capability)); };
  Api.VNODEARM_SWO_GetCompatibleSpeeds = [](U32 CPUHz, U32, U32* paSpeed, U32 NumItems) {
    if (!Call("SWO_GetCompatibleSpeeds %x", CPUHz)) return -1;
    const size_t Count = std::min<size_t>(NumItems, g_pFake->SWOSpeeds.size());
    std::copy_n(g_pFake->SWOSpeeds.begin(), Count, paSpeed);
    return static_cast<int>(g_pFake->SWOSpeeds.size());
  };
  Api.VNODEARM_RAWTRACE_Control = [](U32, void* pData) {
    *static_cast<U32*>(pData) = g_pFake->RawTraceCaps;
    return 0;
  };
}

void AddRunControl(VNODE_API& Api) {
  Api.VNODEARM_Halt = [] {
    if (!Call("Halt")) return -1;
    if (!g_pFake->bStaysRunning) g_pFake->Halted = 1;
    return 0;
  };
  Api.VNODEARM_IsHalted = [] { return Call("IsHalted") ? g_pFake->Halted : -1; };
  Api.VNODEARM_GoEx = [](int Max, int Flags) {
    Call("GoEx %x %x", Max, Flags);
    g_pFake->Halted = 0;
  };
  Api.VNODEARM_Step = [] { return Call("Step") ? 0 : -1; };
  Api.VNODEARM_Reset = [] { return Call("Reset") ? 0 : -1; };
  Api.VNODEARM_ReadReg = [](U32 Index) { return g_pFake->Regs[Index]; };
  Api.VNODEARM_ReadRegs = [](const U32* paIndex, U32* paValue, U8* paStatus, U32 Count) {
    if (!Call("ReadRegs")) return -1;
    for (U32 i = 0; i < Count; ++i) {
      paStatus[i] = g_pFake->Regs.count(paIndex[i]) ? 0 : 7;
      paValue[i] = g_pFake->Regs[paIndex[i]];
    }
    return 0;
  };
  Api.VNODEARM_WriteReg = [](U32 Index, U32 Value) {
    if (!Call("WriteReg %x %x", Index, Value)) return -1;
    g_pFake->Regs[Index] = Value;
    return 0;
  };
}

void AddCoprocessor(VNODE_API& Api) {
  Api.VNODEARM_CP15_ReadEx = [](U8 CRn, U8 CRm, U8 Op1, U8 Op2, U32* pValue) {
    *pValue = 0x41;
    return Call("CP15_ReadEx %x %x %x %x", CRn, CRm, Op1, Op2) ? 0 : -1;
  };
  Api.VNODEARM_CP15_WriteEx = [](U8 CRn, U8 CRm, U8 Op1, U8 Op2, U32 Value) {
    return Call("CP15_WriteEx %x %x %x %x %x", CRn, CRm, Op1, Op2, Value) ? 0 : -1;
  };
}

void AddMemory(VNODE_API& Api) {
  Api.VNODEARM_ReadMemEx = [](U32 A, U32 N, void* p, U32) { return ReadBlock("ReadMemEx", A, N, p); };
  Api.VNODEARM_ReadMemHW = [](U32 A, U32 N, void* p) {
    return ReadBlock("ReadMemHW", A, N, p) == static_cast<int>(N) ? 0 : -1;
  };
  Api.VNODEARM_ReadMemU8 = [](U32 A, U32 N, U8* p, U8* s) { return ReadItems("ReadMemU8", A, N, p, s); };
  Api.VNODEARM_ReadMemU16 = [](U32 A, U32 N, U16* p, U8* s) { return ReadItems("ReadMemU16", A, N, p, s); };
  Api.VNODEARM_ReadMemU32 = [](U32 A, U32 N, U32* p, U8* s) { return ReadItems("ReadMemU32", A, N, p, s); };
  Api.VNODEARM_ReadMemU64 = [](U32 A, U32 N, U64* p, U8* s) { return ReadItems("ReadMemU64", A, N, p, s); };
  Api.VNODEARM_WriteMemEx = [](U32 Addr, U32 NumBytes, const void* pData, U32) {
    if (!Call("WriteMemEx %x %x", Addr, NumBytes)) return -1;
    const U32 Count = std::min(g_pFake->Accessible(Addr, NumBytes), g_pFake->MaxBytesPerCall);
    if (Count != 0) std::memcpy(&g_pFake->Mem[Addr - CFakeProbe::MEM_START], pData, Count);
    return static_cast<int>(Count);
  };
  Api.VNODEARM_WriteU8 = [](U32 A, U8 V) { return WriteItem("WriteU8", A, V); };
  Api.VNODEARM_WriteU16 = [](U32 A, U16 V) { return WriteItem("WriteU16", A, V); };
  Api.VNODEARM_WriteU32 = [](U32 A, U32 V) { return WriteItem("WriteU32", A, V); };
  Api.VNODEARM_WriteU64 = [](U32 A, U64 V) { return WriteItem("WriteU64", A, V); };
  Api.VNODEARM_BeginDownload = [](U32 Flags) { Call("BeginDownload %x", Flags); };
  Api.VNODEARM_EndDownload = [] {
    Call("EndDownload");
    return g_pFake->EndDownloadResult;
  };
}

void AddBreakpoints(VNODE_API& Api) {
  Api.VNODEARM_SetBPEx = [](U32 Addr, U32 Type) {
    static U32 s_LastHandle = 0;
    if (!Call("SetBPEx %x %x", Addr, Type)) return 0;
    g_pFake->BPs.push_back({++s_LastHandle, Addr, Type});
    return static_cast<int>(s_LastHandle);
  };
  Api.VNODEARM_ClrBPEx = [](int Handle) {
    const auto Is = [Handle](const FAKE_BP& BP) { return Handle < 0 || BP.Handle == static_cast<U32>(Handle); };
    const auto It = std::find_if(g_pFake->BPs.begin(), g_pFake->BPs.end(), Is);
    const U32 Addr = Handle < 0 || It == g_pFake->BPs.end() ? 0xFFFFFFFFu : It->Addr;
    if (!Call("ClrBPEx %x", Addr)) return -1;
    std::erase_if(g_pFake->BPs, Is);
    return 0;
  };
  Api.VNODEARM_GetBPInfoEx = [](int Index, VNODEARM_BP_INFO* pInfo) {
    const int Count = static_cast<int>(g_pFake->BPs.size());
    if (Index >= 0 && Index < Count && pInfo->SizeOfStruct == sizeof(*pInfo)) {
      const FAKE_BP& BP = g_pFake->BPs[static_cast<size_t>(Index)];
      pInfo->Handle = BP.Handle;
      pInfo->Addr = BP.Addr;
      pInfo->Type = BP.Type;
      pInfo->ImpFlags = 1;
    }
    return Count;
  };
  Api.VNODEARM_ClrDataEvent = [](U32 Handle) { return Call("ClrDataEvent %x", Handle) ? 0 : -1; };
}

void AddChannels(VNODE_API& Api) {
  Api.VNODE_RTTERMINAL_Control = [](U32 Command, void*) { return Call("RTT_Control %x", Command) ? 0 : -1; };
  Api.VNODE_RTTERMINAL_Read = [](U32 Buffer, char* pData, U32 NumBytes) {
    return Transfer("RTT_Read", Buffer, NumBytes, pData);
  };
  Api.VNODE_RTTERMINAL_Write = [](U32 Buffer, const char*, U32 NumBytes) {
    return Transfer("RTT_Write", Buffer, NumBytes, nullptr);
  };
  Api.VNODEARM_SWO_Control = [](U32 Command, void* pData) {
    return Call(pData ? "SWO_Control %x *" : "SWO_Control %x", Command) ? 0 : -1;
  };
  Api.VNODEARM_SWO_EnableTarget = [](U32 CpuHz, U32 SWOHz, int Mode, U32 PortMask) {
    return Call("SWO_EnableTarget %u %u %x %x", CpuHz, SWOHz, Mode, PortMask) ? 0 : -1;
  };
  Api.VNODEARM_SWO_DisableTarget = [](U32 PortMask) { return Call("SWO_DisableTarget %x", PortMask) ? 0 : -1; };
  Api.VNODEARM_SWO_ReadStimulus = [](int Port, U8* paData, U32 NumBytes) {
    return static_cast<U32>(Transfer("SWO_ReadStimulus", static_cast<U32>(Port), NumBytes, paData));
  };
  Api.VNODE_STRACE_Start = [] { return Call("STRACE_Start") ? 0 : -1; };
  Api.VNODE_STRACE_Stop = [] { return Call("STRACE_Stop") ? 0 : -1; };
  Api.VNODE_STRACE_Read = [](U32* paAddr, U32 NumItems) { return Transfer("STRACE_Read", 0, NumItems, paAddr); };
  Api.VNODE_STRACE_GetInstStats = [](U64* paItems, U32 Addr, U32 NumItems, int, int) {
    // Counters are their halfwords' numbers, those of skips with the highest bit; the totals 1000 and 2000.
    const U32 Num = NumItems / 2 - 1;
    for (U32 i = 0; i < Num; ++i) {
      paItems[i] = Addr / 2 + i;
      paItems[Num + 1 + i] = paItems[i] | 1ull << 63;
    }
    paItems[Num] = 1000;
    paItems[2 * Num + 1] = 2000;
    return Call("STRACE_GetInstStats %x %u", Addr, NumItems) ? static_cast<int>(NumItems) : -1;
  };
  Api.VNODE_HSS_Start = [](const VNODE_HSS_BLOCK* paBlocks, int NumBlocks, int PeriodUs, int Flags) {
    const VNODE_HSS_BLOCK& Last = paBlocks[NumBlocks - 1];
    const bool bOk = Call("HSS_Start %x last %x+%x every %d %x", NumBlocks, Last.Addr, Last.NumBytes, PeriodUs, Flags);
    return bOk ? 0 : VNODE_HSS_NOT_SUPPORTED;
  };
  Api.VNODE_HSS_Stop = [] { return Call("HSS_Stop") ? 0 : -1; };
  Api.VNODE_HSS_Read = [](void* pData, U32 NumBytes) { return Transfer("HSS_Read", 0, NumBytes, pData); };
}

}  // namespace

CFakeProbe::CFakeProbe() : Mem(MEM_SIZE) {
  g_pFake = this;
  Devices.resize(2);
  Devices[0].sName = "Unspecified";
  Devices[1].sName = "Test MCU";
  Devices[1].Core = VNODE_CORE_CORTEX_M4;
  Devices[1].RAMAddr = MEM_START;
  Devices[1].RAMSize = MEM_SIZE;
}

CFakeProbe::~CFakeProbe() {
  g_pFake = nullptr;
}

VNODE_API CFakeProbe::Api() {
  VNODE_API Api = CVNodeLibrary::MissingApi();
  AddSession(Api);
  AddDevicesAndConfig(Api);
  AddRunControl(Api);
  AddCoprocessor(Api);
  AddMemory(Api);
  AddBreakpoints(Api);
  AddChannels(Api);
  return Api;
}

bool CFakeProbe::Note(const std::string& sCall) {
  Calls.push_back(sCall);
  const auto It = Failing.find(sCall.substr(0, sCall.find(' ')));
  return It == Failing.end() || It->second-- > 0;
}

U32 CFakeProbe::Accessible(U32 Addr, U32 NumBytes) const {
  if (Addr < MEM_START || Addr >= MEM_START + MEM_SIZE || Addr >= BadAddr) return 0;
  return std::min(NumBytes, std::min(MEM_START + MEM_SIZE, BadAddr) - Addr);
}

std::string CFakeProbe::CallText(const std::set<std::string>& Names) const {
  std::string sText;
  for (const std::string& sCall : Calls) {
    if (!Names.empty() && Names.count(sCall.substr(0, sCall.find(' '))) == 0) continue;
    sText += (sText.empty() ? "" : ", ") + sCall;
  }
  return sText;
}

int CFakeProbe::Count(const std::string& sName) const {
  const auto Is = [&sName](const std::string& sCall) { return sCall.substr(0, sCall.find(' ')) == sName; };
  return static_cast<int>(std::count_if(Calls.begin(), Calls.end(), Is));
}
