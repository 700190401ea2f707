#include "server_fixture.h"

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

U32 CServerTest::ReadReg(U32 Index) {
  U32 Value = 0;
  EXPECT_TRUE(HasReg(Index, &Value)) << "register " << Index;
  return Value;
}

bool CServerTest::HasReg(U32 Index, U32* pValue) {
  U32 Value = 0;
  U8 Status = 1;
  return API.VNODEARM_ReadRegs(&Index, pValue ? pValue : &Value, &Status, 1) == 0 && Status == 0;
}
