// Opening and closing the probe, its selection, texts and commands.

#include "probe/api_call.h"
#include "probe/commands.h"
#include "probe/text.h"

namespace {

constexpr U32 LIBRARY_VERSION = 62010;  // 6.20j
constexpr U32 DEFAULT_SERIAL_NO = 600000001;
constexpr int SELECT_IP_FAILED = 1;
constexpr const char* FIRMWARE_TEXT = "V-Node simulator V1";
constexpr const char* SERVER_TEXT = "V-Node client of GDB servers V1";

void SetCallback(MSG_KIND Kind, VNODE_TEXT_CALLBACK pfCallback) {
  CSession::Get().Messages.SetCallback(Kind, pfCallback);
}

int HasBackgroundAccess() {
  CApiCall Call;
  return Call->IsConnected() ? Call->Target().Caps().bBackgroundAccess : 1;
}

// Negative without a target.
int GetEndianness() {
  CApiCall Call;
  return Call->IsConnected() ? Call->Target().Endianness() : -1;
}

int GetWebPort(VNODE_WEB_INFO* pInfo) {
  if (!pInfo) return -1;
  CApiCall Call;
  pInfo->Port = Call->WebPort();
  return 0;
}

}  // namespace

U32 VNODEARM_GetDLLVersion() {
  return LIBRARY_VERSION;
}

const char* VNODEARM_Open() {
  CApiCall Call;
  Call->Messages.Trace("Open");
  return Call->Open();
}

void VNODEARM_Close() {
  CApiCall Call;
  Call->Messages.Trace("Close");
  Call->Close();
}

U8 VNODEARM_IsOpen() {
  CApiCall Call;
  return Call->IsOpen();
}

int VNODEARM_Connect() {
  CApiCall Call;
  Call->Messages.Trace("Connect");
  return Call->Connect();
}

U8 VNODEARM_IsConnected() {
  CApiCall Call;
  return Call->IsConnected();
}

int VNODEARM_SelectIP(const char* sHost, int Port) {
  CApiCall Call;
  GDB_SERVER_ADDRESS Address;
  if (Call->Faults.Take(FAULT_POINT::SelectIP)) return SELECT_IP_FAILED;
  if (!Address.Parse(sHost ? sHost : "", Port)) {
    Call->Messages.Add(MSG_KIND::ERROR,
                       FormatText("\"%s\" is no host, host:port or host:port,qmp=port", sHost ? sHost : ""));
    return SELECT_IP_FAILED;
  }
  Call->Config.Server = Address;
  Call->Config.SerialNo = 0;
  return 0;
}

int VNODEARM_SelectUSB(int) {
  CApiCall Call;
  if (Call->Faults.Take(FAULT_POINT::SelectUSB)) return -1;
  Call->Config.Server.reset();
  Call->Config.SerialNo = DEFAULT_SERIAL_NO;
  return 0;
}

int VNODEARM_EMU_SelectByUSBSN(U32 SerialNo) {
  CApiCall Call;
  if (Call->Faults.Take(FAULT_POINT::EMU_SelectByUSBSN)) return -1;
  Call->Config.Server.reset();
  Call->Config.SerialNo = SerialNo;
  return 0;
}

int VNODEARM_EMU_HasCapEx(U32 Capability) {
  CApiCall Call;
  return Capability == VNODE_CAP_SWO && Call->IsConnected() && Call->Target().Swo();
}

U32 VNODEARM_GetSN() {
  CApiCall Call;
  return Call->Config.SerialNo;
}

void VNODEARM_GetFirmwareString(char* acBuffer, int Size) {
  CApiCall Call;
  CopyText(Call->Config.Server ? SERVER_TEXT : FIRMWARE_TEXT, acBuffer, Size > 0 ? static_cast<size_t>(Size) : 0);
}

void VNODEARM_EnableLog(VNODE_TEXT_CALLBACK pfLog) {
  SetCallback(MSG_KIND::LOG, pfLog);
}

void VNODEARM_SetErrorOutHandler(VNODE_TEXT_CALLBACK pfError) {
  SetCallback(MSG_KIND::ERROR, pfError);
}

void VNODEARM_SetWarnOutHandler(VNODE_TEXT_CALLBACK pfWarn) {
  SetCallback(MSG_KIND::WARNING, pfWarn);
}

void VNODEARM_SetLogFile(const char* sPath) {
  CApiCall Call;
  if (!Call->Messages.SetLogFile(sPath ? sPath : "")) {
    Call->Messages.Add(MSG_KIND::WARNING, FormatText("Cannot write the log file \"%s\"", sPath));
  }
}

int VNODEARM_ExecCommand(const char* sCommand, char* acReply, int ReplySize) {
  CApiCall Call;
  const size_t Size = ReplySize > 0 ? static_cast<size_t>(ReplySize) : 0;
  Call->Messages.Trace(FormatText("ExecCommand \"%s\"", sCommand ? sCommand : "").c_str());
  const std::string sReply = ExecuteCommand(*Call.operator->(), sCommand ? sCommand : "");
  CopyText(sReply, acReply, Size);
  return sReply.empty() ? 0 : -1;
}

void* VNODE_GetpFunc(int FuncNo) {
  switch (FuncNo) {
    case VNODE_FUNC_HAS_BMA:
      return reinterpret_cast<void*>(&HasBackgroundAccess);
    case VNODE_FUNC_GET_ENDIANNESS:
      return reinterpret_cast<void*>(&GetEndianness);
    case VNODE_FUNC_WEB_PORT:
      return reinterpret_cast<void*>(&GetWebPort);
    default:
      return nullptr;
  }
}
