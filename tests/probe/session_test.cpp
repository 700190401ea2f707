#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <iterator>

#include "probe_fixture.h"

using testing::Contains;
using testing::HasSubstr;
using testing::IsEmpty;

class SessionTest : public CProbeTest {};

TEST_F(SessionTest, RefusesWhatItCannotConnectTo) {
  const std::tuple<std::string, U32, const char*> CASES[] = {
      {"STM32L552ZE", 0, "Cortex-M33"}, {"Cortex-R5", 0, "Cortex-R5"}, {"STM32F407IE", 1, "no core with index 1"}};
  for (const auto& [sDevice, CoreIndex, sError] : CASES) {
    SCOPED_TRACE(sDevice);
    ASSERT_EQ(API.VNODEARM_Open(), nullptr);
    ASSERT_EQ(Exec("device=" + sDevice), "");
    API.VNODEARM_SetCoreIndex(CoreIndex);
    Messages.Errors.clear();
    EXPECT_NE(API.VNODEARM_Connect(), 0);
    EXPECT_FALSE(API.VNODEARM_IsConnected());
    EXPECT_THAT(Messages.Errors, testing::ElementsAre(HasSubstr(sError)));
    API.VNODEARM_Close();
  }
}

TEST_F(SessionTest, EverySimulatedCoreRunsWithTheUnitsOfItsPart) {
  constexpr U32 MPU_TYPE = 0xE000ED90, MVFR0 = 0xE000EF40;
  const std::tuple<const char*, U32, U32> CASES[] = {
      {"Cortex-M0", 0, 0},
      {"Cortex-M0+", 8 << 8, 0},
      {"Cortex-M1", 0, 0},
      {"Cortex-M3", 8 << 8, 0},
      {"STM32F103C8", 0, 0},
      {"Cortex-M4", 8 << 8, 0x10110021},
      {"STM32F746NG", 8 << 8, 0x10110021},
      {"STM32H743ZI", 16 << 8, 0x10110221},
  };
  for (const auto& [sDevice, MpuType, FpuType] : CASES) {
    SCOPED_TRACE(sDevice);
    Connect(sDevice);
    EXPECT_EQ(ReadWord(MPU_TYPE), MpuType);
    EXPECT_EQ(ReadWord(MVFR0), FpuType);
    const bool bAtZero = sDevice[0] == 'C';
    Load(CFirmware::Counter(bAtZero ? 0 : 0x08000000));
    for (int i = 0; i < 4; ++i) ASSERT_EQ(API.VNODEARM_Step(), 0);
    EXPECT_EQ(ReadWord(CFirmware::COUNTER), 1u);
    API.VNODEARM_Close();
  }
}

TEST_F(SessionTest, BoardStaysPoweredUntilAnotherOneIsSelected) {
  constexpr U32 ADDR = 0x20000100;
  Connect("STM32F103C8");
  const auto Reconnect = [&](U32 SerialNo) {
    API.VNODEARM_Close();
    ASSERT_EQ(API.VNODEARM_EMU_SelectByUSBSN(SerialNo), 0);
    ASSERT_EQ(API.VNODEARM_Open(), nullptr);
    ASSERT_EQ(API.VNODEARM_Connect(), 0);
    EXPECT_EQ(API.VNODEARM_GetSN(), SerialNo);
  };
  ASSERT_EQ(API.VNODEARM_WriteU32(ADDR, 0xCAFE), 0);
  Reconnect(API.VNODEARM_GetSN());
  EXPECT_EQ(ReadWord(ADDR), 0xCAFEu);
  Reconnect(99);
  EXPECT_NE(ReadWord(ADDR), 0xCAFEu);
  ASSERT_EQ(API.VNODEARM_WriteU32(ADDR, 0xCAFE), 0);
  EXPECT_EQ(Exec("sim.power-cycle"), "");
  EXPECT_LT(API.VNODEARM_IsHalted(), 0);
  Reconnect(99);
  EXPECT_NE(ReadWord(ADDR), 0xCAFEu);
}

TEST_F(SessionTest, AnswersCommands) {
  // command, part of the reply; empty: success
  const std::pair<const char*, const char*> CASES[] = {
      {"device = \"STM32F407IE\"", ""},
      {"device=", "Unknown device"},
      {"device=NoSuchPart", "Unknown device \"NoSuchPart\""},
      {"ScriptFile=no/such/file", "Cannot open script file \"no/such/file\""},
      {"HideDeviceSelection=2", "0 or 1"},
      {"SetRTTAddr here", "Address expected"},
      {"SetRTTSearchRanges 0x20000000 0x1000, 0x10000000 0x100", ""},
      {"SetRTTSearchRanges 0x20000000", "expected"},
      {"ReadIntoTraceCache 0xFFFF0", "expected"},
      {"SelectTraceSource=4", " "},
      {"PortWidth=3", " "},
      {"TraceSampleAdjust TD=2000", ""},
      {"TraceSampleAdjust", " "},
      {"DeviceListFile=no/such/file", "cannot open"},
      {"sim.nonsense", "Unknown command \"sim.nonsense\""},
      {"sim.fail Halt 1 AFTER -1", "invalid arguments"},
      {"sim.slow 10001", "invalid arguments"},
      {"sim.bad-memory 0x1000 0", "invalid arguments"},
      {"", "Unknown command"},
  };
  for (const auto& [sCommand, sExpected] : CASES) {
    const std::string sReply = Exec(sCommand);
    EXPECT_THAT(sReply, HasSubstr(sExpected)) << sCommand;
    EXPECT_EQ(sReply.empty(), *sExpected == 0) << sCommand;
  }
  char acReply[8];
  EXPECT_NE(API.VNODEARM_ExecCommand("nonsense", acReply, sizeof(acReply)), 0);
  EXPECT_STREQ(acReply, "Unknown");
  EXPECT_NE(API.VNODEARM_ExecCommand(nullptr, nullptr, 0), 0);
}

TEST_F(SessionTest, ReceiverOfAMessageMayCallTheLibrary) {
  static U8 bWasOpen;
  bWasOpen = 1;
  API.VNODEARM_SetErrorOutHandler([](const char*) { bWasOpen = API.VNODEARM_IsOpen(); });
  EXPECT_NE(API.VNODEARM_Connect(), 0);
  EXPECT_EQ(bWasOpen, 0);
}

TEST_F(SessionTest, WritesItsLogFile) {
  const std::string sPath = testing::TempDir() + "vnode_log_" + std::to_string(getpid()) + ".txt";
  API.VNODEARM_SetLogFile(sPath.c_str());
  Exec("device=NoSuchPart");
  API.VNODEARM_SetLogFile("");
  std::ifstream File(sPath);
  const std::string sText{std::istreambuf_iterator<char>(File), {}};
  EXPECT_THAT(sText, HasSubstr("call: ExecCommand \"device=NoSuchPart\"\n"));
  std::remove(sPath.c_str());
  API.VNODEARM_SetLogFile("/no/such/folder/file");
  EXPECT_THAT(Messages.Warnings, Contains(HasSubstr("/no/such/folder/file")));
}
