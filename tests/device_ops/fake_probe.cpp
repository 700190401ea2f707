#include "fake_probe.h"

#include <cstdarg>
#include <cstring>

#include "device/vnode_library.h"

namespace {

CFakeProbe* g_pFake = nullptr;

bool Call(const char* sName) {
  return g_pFake->Call("%s", sName);
}

int HasBMA() {
  return g_pFake->HasBMA;
}
int GetEndianness() {
  return g_pFake->Endianness;
}
int GetWebInfo(VNODE_WEB_INFO* pInfo) {
  pInfo->Port = g_pFake->WebPort;
  return 0;
}

template <typename T>
int ReadItems(const char* sName, U32 Addr, U32 NumItems, T* paData, U8* paStatus) {
  const bool bOk = g_pFake->Call("%s %x", sName, Addr) && g_pFake->Accessible(Addr, sizeof(T)) == sizeof(T);
  *paStatus = bOk ? 0 : 1;
  if (!bOk || NumItems != 1) return -1;
  std::memcpy(paData, &g_pFake->Mem[Addr - CFakeProbe::MEM_START], sizeof(T));
  return 1;
}

template <typename T>
int WriteItem(const char* sName, U32 Addr, T Value) {
  if (!g_pFake->Call("%s %x", sName, Addr) || g_pFake->Accessible(Addr, sizeof(T)) != sizeof(T)) return -1;
  std::memcpy(&g_pFake->Mem[Addr - CFakeProbe::MEM_START], &Value, sizeof(T));
  return 0;
}

int ReadBlock(const char* sName, U32 Addr, U32 NumBytes, void* pData) {
  if (!g_pFake->Call("%s %x %x", sName, Addr, NumBytes)) return -1;
  const U32 Count = std::min(g_pFake->Accessible(Addr, NumBytes), g_pFake->MaxBytesPerCall);
  if (Count != 0) std::memcpy(pData, &g_pFake->Mem[Addr - CFakeProbe::MEM_START], Count);
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
  Api.VNODEARM_SelectIP = [](const char* sHost, int) { return g_pFake->Call("SelectIP %s", sHost) ? 0 : 1; };
  Api.VNODEARM_SelectUSB = [](int) { return Call("SelectUSB") ? 0 : -1; };
  Api.VNODEARM_EMU_SelectByUSBSN = [](U32 No) { return g_pFake->Call("EMU_SelectByUSBSN %x", No) ? 0 : -1; };
  Api.VNODEARM_EMU_HasCapEx = [](U32 Cap) { return Cap == VNODE_CAP_SWO ? static_cast<int>(g_pFake->HasSWO) : 0; };
  Api.VNODEARM_GetSN = [] { return 1234u; };
  Api.VNODEARM_GetFirmwareString = [](char* acText, int Size) {
    std::snprintf(acText, static_cast<size_t>(Size), "V-Node rev 3   compiled Jan 1 2020");
  };
  Api.VNODEARM_EnableLog = [](VNODE_TEXT_CALLBACK) { Call("EnableLog"); };
  Api.VNODEARM_SetErrorOutHandler = [](VNODE_TEXT_CALLBACK pf) { g_pFake->pfError = pf; };
  Api.VNODEARM_SetWarnOutHandler = [](VNODE_TEXT_CALLBACK) {};
  Api.VNODEARM_SetLogFile = [](const char* sPath) { g_pFake->Call("SetLogFile %s", sPath); };
  Api.VNODEARM_ExecCommand = [](const char* sCommand, char* acReply, int Size) {
    g_pFake->Call("ExecCommand %s", sCommand);
    const auto It = g_pFake->ErrorReply.find(sCommand);
    std::snprintf(acReply, static_cast<size_t>(Size), "%s", It == g_pFake->ErrorReply.end() ? "" : It->second.c_str());
    return 0;
  };
  Api.VNODE_GetpFunc = [](int No) -> void* {
    if (g_pFake->OptionalFuncs.count(No) == 0) return nullptr;
    if (No == VNODE_FUNC_HAS_BMA) return reinterpret_cast<void*>(&HasBMA);
    if (No == VNODE_FUNC_GET_ENDIANNESS) return reinterpret_cast<void*>(&GetEndianness);
    return No == VNODE_FUNC_WEB_PORT ? reinterpret_cast<void*>(&GetWebInfo) : nullptr;
  };
}

void AddDevicesAndConfig(VNODE_API& Api) {
  Api.VNODEARM_DEVICE_GetIndex = [](const char* sName) {
    for (size_t i = 0; i < g_pFake->Devices.size(); ++i) {
      if (g_pFake->Devices[i].sName != nullptr && std::strcmp(g_pFake->Devices[i].sName, sName) == 0) {
        return static_cast<int>(i);
      }
    }
    return -1;
  };
  Api.VNODEARM_DEVICE_GetInfo = [](int Index, VNODEARM_DEVICE_INFO* pInfo) {
    if (Index < 0) return static_cast<int>(g_pFake->Devices.size());
    if (static_cast<size_t>(Index) >= g_pFake->Devices.size()) return -1;
    *pInfo = g_pFake->Devices[static_cast<size_t>(Index)];
    return 0;
  };
  Api.VNODEARM_Core2CoreName = [](U32, char* acName, U16 Size) { std::snprintf(acName, Size, "Cortex-M4"); };
  Api.VNODEARM_TIF_Select = [](int IF) { return g_pFake->Call("TIF_Select %x", IF) ? 0 : -1; };
  Api.VNODEARM_ConfigJTAG = [](int IRPre, int DRPre) { g_pFake->Call("ConfigJTAG %x %x", IRPre, DRPre); };
  Api.VNODEARM_SetSpeed = [](U32 KHz) { g_pFake->Call("SetSpeed %x", KHz); };
  Api.VNODEARM_GetSpeed = [] { return g_pFake->SpeedKHz; };
  Api.VNODEARM_SetEndian = [](int Endian) { return g_pFake->Call("SetEndian %x", Endian) ? 0 : -1; };
  Api.VNODEARM_SetCoreIndex = [](U32 Index) { return g_pFake->Call("SetCoreIndex %x", Index) ? 0 : -1; };
  Api.VNODEARM_SetResetType = [](int Type) { g_pFake->Call("SetResetType %x", Type); };
  Api.VNODEARM_SetResetDelay = [](int Ms) { g_pFake->Call("SetResetDelay %x", Ms); };
  Api.VNODEARM_SetInitRegsOnReset = [](int On) { g_pFake->Call("SetInitRegsOnReset %x", On); };
  Api.VNODEARM_EnableSoftBPs = [](int On) { g_pFake->Call("EnableSoftBPs %x", On); };
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
    g_pFake->Call("GoEx %x %x", Max, Flags);
    g_pFake->Halted = 0;
  };
  Api.VNODEARM_Step = [] {
    if (!Call("Step")) return -1;
    g_pFake->Regs[15] += 2;
    return 0;
  };
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
    if (!g_pFake->Call("WriteReg %x %x", Index, Value)) return -1;
    g_pFake->Regs[Index] = Value;
    return 0;
  };
  Api.VNODEARM_CP15_ReadEx = [](U8 CRn, U8 CRm, U8 Op1, U8 Op2, U32* pValue) {
    *pValue = 0x410FC241;
    return g_pFake->Call("CP15_ReadEx %x %x %x %x", CRn, CRm, Op1, Op2) ? 0 : -1;
  };
  Api.VNODEARM_CP15_WriteEx = [](U8 CRn, U8 CRm, U8 Op1, U8 Op2, U32 Value) {
    return g_pFake->Call("CP15_WriteEx %x %x %x %x %x", CRn, CRm, Op1, Op2, Value) ? 0 : -1;
  };
  Api.VNODEARM_MeasureCPUSpeedEx = [](U32 Addr, int, int) {
    g_pFake->Call("MeasureCPUSpeedEx %x", Addr);
    return g_pFake->CPUSpeed;
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
    if (!g_pFake->Call("WriteMemEx %x %x", Addr, NumBytes)) return -1;
    const U32 Count = std::min(g_pFake->Accessible(Addr, NumBytes), g_pFake->MaxBytesPerCall);
    if (Count != 0) std::memcpy(&g_pFake->Mem[Addr - CFakeProbe::MEM_START], pData, Count);
    return static_cast<int>(Count);
  };
  Api.VNODEARM_WriteU8 = [](U32 A, U8 V) { return WriteItem("WriteU8", A, V); };
  Api.VNODEARM_WriteU16 = [](U32 A, U16 V) { return WriteItem("WriteU16", A, V); };
  Api.VNODEARM_WriteU32 = [](U32 A, U32 V) { return WriteItem("WriteU32", A, V); };
  Api.VNODEARM_WriteU64 = [](U32 A, U64 V) { return WriteItem("WriteU64", A, V); };
  Api.VNODEARM_BeginDownload = [](U32 Flags) { g_pFake->Call("BeginDownload %x", Flags); };
  Api.VNODEARM_EndDownload = [] {
    Call("EndDownload");
    return g_pFake->EndDownloadResult;
  };
}

void AddBreakpoints(VNODE_API& Api) {
  Api.VNODEARM_SetBPEx = [](U32 Addr, U32 Type) {
    static U32 s_LastHandle = 0;
    if (!g_pFake->Call("SetBPEx %x %x", Addr, Type)) return 0;
    g_pFake->BPs.push_back({++s_LastHandle, Addr, Type});
    return static_cast<int>(s_LastHandle);
  };
  Api.VNODEARM_ClrBPEx = [](int Handle) {
    const auto Is = [Handle](const FAKE_BP& BP) { return Handle < 0 || BP.Handle == static_cast<U32>(Handle); };
    const auto It = std::find_if(g_pFake->BPs.begin(), g_pFake->BPs.end(), Is);
    const U32 Addr = Handle < 0 || It == g_pFake->BPs.end() ? 0xFFFFFFFFu : It->Addr;
    if (!g_pFake->Call("ClrBPEx %x", Addr)) return -1;
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
  Api.VNODEARM_ClrDataEvent = [](U32 Handle) { return g_pFake->Call("ClrDataEvent %x", Handle) ? 0 : -1; };
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
  AddMemory(Api);
  AddBreakpoints(Api);
  return Api;
}

bool CFakeProbe::Call(const char* sFormat, ...) {
  char acText[512];
  va_list Args;
  va_start(Args, sFormat);
  std::vsnprintf(acText, sizeof(acText), sFormat, Args);
  va_end(Args);
  Calls.push_back(acText);
  const std::string sName = Calls.back().substr(0, Calls.back().find(' '));
  const auto It = Failing.find(sName);
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
  return static_cast<int>(std::count_if(Calls.begin(), Calls.end(), [&sName](const std::string& sCall) {
    return sCall.substr(0, sCall.find(' ')) == sName;
  }));
}
