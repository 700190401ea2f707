#include "server_fixture.h"

#include <dlfcn.h>

#include <chrono>
#include <thread>

VNODE_API CServerTest::API;
CServerTest::MESSAGES CServerTest::Messages;

void CServerTest::SetUp() {
  if (!API.VNODEARM_Open) {
    void* pLibrary = dlopen(VEXOR_BIN_DIR "/libvnode.so", RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(pLibrary, nullptr) << dlerror();
#define VNODE_LOAD(Ret, Name, Args)                                        \
  API.Name = reinterpret_cast<decltype(API.Name)>(dlsym(pLibrary, #Name)); \
  ASSERT_NE(API.Name, nullptr) << #Name;
    VNODE_API_FUNCS(VNODE_LOAD)
#undef VNODE_LOAD
  }
  Messages.Logs.clear();
  Messages.Warnings.clear();
  Messages.Errors.clear();
  API.VNODEARM_EnableLog(&Receive<&MESSAGES::Logs>);
  API.VNODEARM_SetWarnOutHandler(&Receive<&MESSAGES::Warnings>);
  API.VNODEARM_SetErrorOutHandler(&Receive<&MESSAGES::Errors>);
}

void CServerTest::TearDown() {
  if (API.VNODEARM_Close) API.VNODEARM_Close();
}

int CServerTest::Connect(const std::string& sServer, const char* sDevice, U32 CoreIndex) {
  char acReply[256] = "";
  EXPECT_EQ(API.VNODEARM_SelectIP(sServer.c_str(), 0), 0);
  EXPECT_EQ(API.VNODEARM_Open(), nullptr);
  EXPECT_EQ(API.VNODEARM_ExecCommand((std::string("device=") + sDevice).c_str(), acReply, sizeof(acReply)), 0);
  API.VNODEARM_SetCoreIndex(CoreIndex);
  const int Result = API.VNODEARM_Connect();
  API.VNODEARM_EnableSoftBPs(1);
  return Result;
}

bool CServerTest::WaitFor(const std::function<bool()>& Condition, int TimeoutMs) {
  const auto End = std::chrono::steady_clock::now() + std::chrono::milliseconds(TimeoutMs);
  while (!Condition()) {
    if (std::chrono::steady_clock::now() > End) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
  }
  return true;
}

U32 CServerTest::ReadWord(U32 Addr) {
  U32 Value = 0;
  U8 Status = 1;
  EXPECT_EQ(API.VNODEARM_ReadMemU32(Addr, 1, &Value, &Status), 1) << std::hex << Addr;
  EXPECT_EQ(Status, 0);
  return Value;
}

U32 CServerTest::ReadReg(U32 Index) {
  U32 Value = 0;
  U8 Status = 1;
  EXPECT_EQ(API.VNODEARM_ReadRegs(&Index, &Value, &Status, 1), 0);
  EXPECT_EQ(Status, 0) << "register " << Index;
  return Value;
}

bool CServerTest::HasReg(U32 Index) {
  U32 Value = 0;
  U8 Status = 1;
  return API.VNODEARM_ReadRegs(&Index, &Value, &Status, 1) == 0 && Status == 0;
}

VNODEARM_BP_INFO CServerTest::InfoOf(int Handle) {
  VNODEARM_BP_INFO Info = {};
  Info.SizeOfStruct = sizeof(Info);
  Info.Handle = static_cast<U32>(Handle);
  API.VNODEARM_GetBPInfoEx(-1, &Info);
  return Info;
}
