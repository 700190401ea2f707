#include <functional>

#include "probe_fixture.h"

using testing::Contains;
using testing::HasSubstr;

class FaultTest : public CProbeTest {
protected:
  static constexpr U32 RAM_START = 0x20000000;

  void SetUp() override {
    CProbeTest::SetUp();
    Connect("Cortex-M4");
    Load(CFirmware::Counter(0));
    Messages.Errors.clear();
  }
};

TEST_F(FaultTest, EveryFunctionFailsOnceAndWorksAgain) {
  U32 Value = 0;
  U8 Status = 0;
  U32 Index = VNODE_REG_PC;
  U32 Handle = 0;
  VNODEARM_DATA_EVENT Event = {sizeof(Event), 1, RAM_START, 0, 0, 0xFFFFFFFF, 0, 0};
  const int Breakpoint = API.VNODEARM_SetBPEx(0x104, VNODE_BP_IMP_ANY | VNODE_BP_THUMB);
  ASSERT_NE(Breakpoint, 0);
  // name, and whether the call has succeeded
  const std::pair<const char*, std::function<bool()>> CASES[] = {
      {"Halt", [&] { return API.VNODEARM_Halt() == 0; }},
      {"IsHalted", [&] { return API.VNODEARM_IsHalted() == 1; }},
      {"Step", [&] { return API.VNODEARM_Step() == 0; }},
      {"Reset", [&] { return API.VNODEARM_Reset() == 0; }},
      {"ReadReg", [&] { return API.VNODEARM_ReadReg(VNODE_REG_PC) != 0; }},
      {"ReadRegs", [&] { return API.VNODEARM_ReadRegs(&Index, &Value, &Status, 1) == 0; }},
      {"WriteReg", [&] { return API.VNODEARM_WriteReg(0, 1) == 0; }},
      {"ReadMem", [&] { return API.VNODEARM_ReadMem(RAM_START, 4, &Value) == 0; }},
      {"ReadMem", [&] { return API.VNODEARM_ReadMemU32(RAM_START, 1, &Value, &Status) == 1 && Status == 0; }},
      {"WriteMem", [&] { return API.VNODEARM_WriteU32(RAM_START, 0) == 0; }},
      {"MeasureCPUSpeedEx", [&] { return API.VNODEARM_MeasureCPUSpeedEx(RAM_START, 1, 1) > 0; }},
      {"SetBPEx", [&] { return API.VNODEARM_SetBPEx(0x106, VNODE_BP_IMP_ANY | VNODE_BP_THUMB) != 0; }},
      {"ClrBPEx", [&] { return API.VNODEARM_ClrBPEx(Breakpoint) == 0; }},
      {"SetDataEvent", [&] { return API.VNODEARM_SetDataEvent(&Event, &Handle) == 0; }},
      {"ClrDataEvent", [&] { return API.VNODEARM_ClrDataEvent(Handle) == 0; }},
      {"EndDownload", [&] { return API.VNODEARM_BeginDownload(0), API.VNODEARM_EndDownload() == 0; }},
  };
  for (const auto& [sName, Succeeds] : CASES) {
    Messages.Errors.clear();
    ASSERT_EQ(Exec(std::string("sim.fail ") + sName + " 1"), "");
    EXPECT_FALSE(Succeeds()) << sName;
    EXPECT_THAT(Messages.Errors, Contains(HasSubstr("injected"))) << sName;
    EXPECT_TRUE(Succeeds()) << sName;
  }
  API.VNODEARM_Close();
  for (const auto& [sName, Succeeds] : CASES) {
    EXPECT_TRUE(!Succeeds()) << sName << " without a connection";
  }
  EXPECT_LT(API.VNODEARM_IsHalted(), 0);
}

TEST_F(FaultTest, HitsTheCallsThatItWasGivenFor) {
  // command, then what the calls do: g good, f fails
  const std::pair<const char*, const char*> CASES[] = {
      {"sim.fail WriteMem 2", "ffgg"},         {"sim.fail WriteMem -1", "ffff"},
      {"sim.fail WriteMem 0", "gggg"},         {"sim.fail WriteMem 1 -7 AFTER 2", "ggfg"},
      {"sim.fail writemem 2 after 1", "gffg"},
  };
  for (const auto& [sCommand, sExpected] : CASES) {
    ASSERT_EQ(Exec(sCommand), "");
    std::string sCalls;
    for (size_t i = 0; i < 4; ++i) sCalls += API.VNODEARM_WriteU32(RAM_START, 0) == 0 ? 'g' : 'f';
    EXPECT_EQ(sCalls, sExpected) << sCommand;
  }
}
