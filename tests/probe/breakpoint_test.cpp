#include <chrono>
#include <cstring>
#include <thread>

#include "probe_fixture.h"

namespace {

constexpr U32 ENTRY = CFirmware::ENTRY;
constexpr U32 LOOP = ENTRY + 4;
constexpr U32 ANY = VNODE_BP_IMP_ANY | VNODE_BP_THUMB;
constexpr U32 HARD = VNODE_BP_IMP_HW | VNODE_BP_THUMB;
constexpr U32 SOFT = VNODE_BP_IMP_SW | VNODE_BP_THUMB;

VNODEARM_DATA_EVENT DataEvent(U32 Addr, U8 Access, U8 AccessMask, U32 Data = 0, U32 DataMask = 0xFFFFFFFF) {
  VNODEARM_DATA_EVENT Event = {};
  Event.SizeOfStruct = sizeof(Event);
  Event.Type = 1;
  Event.Addr = Addr;
  Event.Data = Data;
  Event.DataMask = DataMask;
  Event.Access = Access;
  Event.AccessMask = AccessMask;
  return Event;
}

}  // namespace

class BreakpointTest : public CProbeTest {};

TEST_F(BreakpointTest, ChoosesTheImplementation) {
  const struct {
    const char* sDevice;
    U32 Addr;
    U32 TypeFlags;
    bool bSoftEnabled;
    U32 ImpFlags;  // 0: refused
  } CASES[] = {
      {"STM32F407IE", 0x08000100, ANY, true, VNODE_BP_IS_HARD},
      {"STM32F407IE", 0x08000100, HARD, false, VNODE_BP_IS_HARD},
      {"STM32F407IE", 0x08000100, SOFT, true, VNODE_BP_IS_SOFT_FLASH},
      {"STM32F407IE", 0x08000100, SOFT, false, 0},
      {"STM32F407IE", 0x20000100, ANY, true, VNODE_BP_IS_SOFT_RAM},
      {"STM32F407IE", 0x20000100, ANY, false, 0},
      {"STM32F407IE", 0x20000100, HARD, true, 0},
      {"STM32F407IE", 0x10000100, HARD, true, VNODE_BP_IS_HARD},
      {"STM32F746NG", 0x20000100, HARD, true, VNODE_BP_IS_HARD},
      {"STM32F407IE", 0x40000000, SOFT, true, 0},
      {"STM32F407IE", 0x08000100, VNODE_BP_IMP_ANY | VNODE_BP_ARM, true, 0},
  };
  for (const auto& Case : CASES) {
    SCOPED_TRACE(testing::Message() << Case.sDevice << std::hex << " 0x" << Case.Addr << " 0x" << Case.TypeFlags);
    Connect(Case.sDevice);
    API.VNODEARM_EnableSoftBPs(Case.bSoftEnabled);
    const int Handle = API.VNODEARM_SetBPEx(Case.Addr, Case.TypeFlags);
    EXPECT_EQ(Handle != 0, Case.ImpFlags != 0);
    EXPECT_EQ(ImpFlagsOf(Handle), Case.ImpFlags);
    EXPECT_EQ(Messages.Errors.empty(), Case.ImpFlags != 0);
    Messages.Errors.clear();
    API.VNODEARM_Close();
  }
}

TEST_F(BreakpointTest, UnitsAreLimited) {
  for (const auto& [sDevice, NumUnits] : {std::pair("nRF51822_xxAA", 4u), {"nRF52840_xxAA", 6u}, {"Cortex-M7", 8u}}) {
    SCOPED_TRACE(sDevice);
    Connect(sDevice);
    std::vector<int> Handles;
    for (U32 i = 0; i < NumUnits; ++i) Handles.push_back(API.VNODEARM_SetBPEx(0x1000 + 4 * i, HARD));
    EXPECT_THAT(Handles, testing::Each(testing::Gt(0)));
    EXPECT_EQ(API.VNODEARM_SetBPEx(0x2000, HARD), 0);
    EXPECT_EQ(ImpFlagsOf(API.VNODEARM_SetBPEx(0x2000, ANY)), VNODE_BP_IS_SOFT_FLASH);
    ASSERT_EQ(API.VNODEARM_ClrBPEx(Handles[1]), 0);
    EXPECT_NE(API.VNODEARM_ClrBPEx(Handles[1]), 0) << "cleared already";
    EXPECT_NE(API.VNODEARM_SetBPEx(0x3000, HARD), 0);
    ASSERT_EQ(API.VNODEARM_ClrBPEx(-1), 0);
    EXPECT_EQ(API.VNODEARM_GetBPInfoEx(-1, nullptr), 0);
    EXPECT_NE(API.VNODEARM_SetBPEx(0x3000, HARD), 0);
    API.VNODEARM_Close();
  }
}

TEST_F(BreakpointTest, StopsAheadOfTheInstructionAndGoesOn) {
  for (U32 Type : {HARD, SOFT}) {
    SCOPED_TRACE(Type);
    Connect("Cortex-M4");
    Load(CFirmware::Counter(0));
    const U32 Original = ReadWord(LOOP);
    const int Handle = API.VNODEARM_SetBPEx(LOOP, Type);
    ASSERT_NE(Handle, 0);
    EXPECT_EQ(ReadWord(LOOP), Original);
    for (U32 Round = 0; Round < 5; ++Round) {
      API.VNODEARM_GoEx(0, 1);
      ASSERT_TRUE(WaitForHalt());
      EXPECT_EQ(PC(), LOOP);
      EXPECT_EQ(API.VNODEARM_ReadReg(1), Round);
    }
    ASSERT_EQ(API.VNODEARM_Step(), 0);
    EXPECT_EQ(PC(), LOOP + 2) << "a step leaves the breakpoint behind";
    ASSERT_EQ(API.VNODEARM_ClrBPEx(Handle), 0);
    API.VNODEARM_GoEx(0, 1);
    EXPECT_FALSE(WaitForHalt(20));
    EXPECT_NE(API.VNODEARM_SetBPEx(LOOP, Type), 0) << "set while running";
    EXPECT_TRUE(WaitForHalt());
    API.VNODEARM_Close();
  }
}

TEST_F(BreakpointTest, WorksInRAM) {
  Connect("Cortex-M4");
  Load(CFirmware::Counter(0));
  const U16 aCode[] = {0x3001, 0xE7FD};  // ADDS R0, #1; B
  ASSERT_EQ(API.VNODEARM_WriteMem(0x20000200, sizeof(aCode), aCode), 0);
  ASSERT_EQ(API.VNODEARM_WriteReg(VNODE_REG_PC, 0x20000200), 0);
  ASSERT_EQ(API.VNODEARM_WriteReg(0, 7), 0);
  ASSERT_NE(API.VNODEARM_SetBPEx(0x20000202, ANY), 0);
  API.VNODEARM_GoEx(0, 1);
  ASSERT_TRUE(WaitForHalt());
  EXPECT_EQ(PC(), 0x20000202u);
  EXPECT_EQ(API.VNODEARM_ReadReg(0), 8u);
}

TEST_F(BreakpointTest, CountsUsesOfAnAddress) {
  Connect("Cortex-M4");
  const int First = API.VNODEARM_SetBPEx(0x1000, ANY);
  const int Other = API.VNODEARM_SetBPEx(0x1004, SOFT);
  EXPECT_EQ(API.VNODEARM_SetBPEx(0x1000, HARD), First);
  EXPECT_EQ(API.VNODEARM_SetBPEx(0x1000, SOFT), 0) << "it is a hardware breakpoint";
  VNODEARM_BP_INFO Info = {};
  Info.SizeOfStruct = sizeof(Info);
  EXPECT_EQ(API.VNODEARM_GetBPInfoEx(0, &Info), 2);
  EXPECT_EQ(Info.Handle, static_cast<U32>(First));
  EXPECT_EQ(Info.Addr, 0x1000u);
  EXPECT_EQ(Info.Type, ANY);
  EXPECT_EQ(Info.UseCnt, 2u);
  EXPECT_EQ(API.VNODEARM_GetBPInfoEx(1, &Info), 2);
  EXPECT_EQ(Info.Handle, static_cast<U32>(Other));
  EXPECT_EQ(API.VNODEARM_GetBPInfoEx(2, &Info), 2);
  EXPECT_EQ(Info.Handle, 0u) << "beyond the last";
  EXPECT_EQ(API.VNODEARM_ClrBPEx(First), 0);
  EXPECT_EQ(API.VNODEARM_GetBPInfoEx(-1, nullptr), 2);
  EXPECT_EQ(API.VNODEARM_ClrBPEx(First), 0);
  EXPECT_EQ(API.VNODEARM_GetBPInfoEx(-1, nullptr), 1);

  std::memset(&Info, 0xA5, sizeof(Info));
  Info.SizeOfStruct = offsetof(VNODEARM_BP_INFO, UseCnt);
  API.VNODEARM_GetBPInfoEx(0, &Info);
  EXPECT_EQ(Info.Addr, 0x1004u);
  EXPECT_EQ(Info.UseCnt, 0xA5A5A5A5u) << "wrote beyond the caller's record";
}

TEST_F(BreakpointTest, CloseTakesThemBack) {
  Connect("Cortex-M4");
  Load(CFirmware::Counter(0));
  ASSERT_NE(API.VNODEARM_SetBPEx(LOOP, HARD), 0);
  ASSERT_NE(API.VNODEARM_SetBPEx(LOOP + 2, SOFT), 0);
  API.VNODEARM_Close();
  ASSERT_EQ(API.VNODEARM_Open(), nullptr);
  ASSERT_EQ(API.VNODEARM_Connect(), 0);
  EXPECT_EQ(API.VNODEARM_GetBPInfoEx(-1, nullptr), 0);
  API.VNODEARM_GoEx(0, 1);
  EXPECT_FALSE(WaitForHalt(20));
}

TEST_F(BreakpointTest, DataEventsStopOnTheirAccess) {
  constexpr U8 WRITE_WORD = 0x05;
  constexpr U8 READ_WORD = 0x04;
  constexpr U8 EXACT = 0x10;
  constexpr U8 ANY_ACCESS = 0x17;
  const struct {
    const char* sWhat;
    VNODEARM_DATA_EVENT Event;
    bool bStops;
    U32 Counter;  // what the firmware has written then
  } CASES[] = {
      {"any access", DataEvent(CFirmware::COUNTER, 0, ANY_ACCESS), true, 1},
      {"write of a word", DataEvent(CFirmware::COUNTER, WRITE_WORD, EXACT), true, 1},
      {"read of a word", DataEvent(CFirmware::COUNTER, READ_WORD, EXACT), false, 0},
      {"write of a byte", DataEvent(CFirmware::COUNTER, 0x01, EXACT), false, 0},
      {"value", DataEvent(CFirmware::COUNTER, WRITE_WORD, EXACT, 1000, 0), true, 1000},
      {"other address", DataEvent(CFirmware::COUNTER + 4, 0, ANY_ACCESS), false, 0},
  };
  for (const auto& Case : CASES) {
    SCOPED_TRACE(Case.sWhat);
    Connect("Cortex-M4");
    Load(CFirmware::Counter(0));
    U32 Handle = 0;
    ASSERT_EQ(API.VNODEARM_SetDataEvent(&Case.Event, &Handle), 0);
    API.VNODEARM_GoEx(0, 1);
    EXPECT_EQ(WaitForHalt(Case.bStops ? 2000 : 20), Case.bStops);
    if (Case.bStops) {
      EXPECT_EQ(ReadWord(CFirmware::COUNTER), Case.Counter);
    }
    EXPECT_EQ(API.VNODEARM_ClrDataEvent(Handle), 0);
    API.VNODEARM_GoEx(0, 1);
    EXPECT_FALSE(WaitForHalt(20)) << "cleared";
    API.VNODEARM_Close();
  }
}

TEST_F(BreakpointTest, DataEventsHoldTheUnits) {
  Connect("Cortex-M0");
  U32 aHandle[3] = {};
  for (U32 i = 0; i < 2; ++i) {
    const VNODEARM_DATA_EVENT Event = DataEvent(0x20000000 + 8 * i, 0x05, 0x10);
    ASSERT_EQ(API.VNODEARM_SetDataEvent(&Event, &aHandle[i]), 0);
  }
  const VNODEARM_DATA_EVENT OneTooMany = DataEvent(0x20000100, 0, 0x17);
  EXPECT_LT(API.VNODEARM_SetDataEvent(&OneTooMany, &aHandle[2]), 0);
  VNODEARM_WP_INFO Info = {};
  Info.SizeOfStruct = sizeof(Info);
  EXPECT_EQ(API.VNODEARM_GetWPInfoEx(-1, &Info), 2);
  EXPECT_EQ(API.VNODEARM_GetWPInfoEx(1, &Info), 2);
  EXPECT_EQ(Info.Handle, aHandle[1]);
  EXPECT_EQ(Info.Addr, 0x20000008u);
  EXPECT_EQ(Info.DataMask, 0xFFFFFFFFu);
  EXPECT_EQ(Info.Ctrl, 0x05u);
  EXPECT_EQ(Info.CtrlMask, 0x10u);
  EXPECT_EQ(API.VNODEARM_ClrDataEvent(aHandle[0]), 0);
  EXPECT_NE(API.VNODEARM_ClrDataEvent(aHandle[0]), 0);
  EXPECT_EQ(API.VNODEARM_SetDataEvent(&OneTooMany, &aHandle[2]), 0);
  EXPECT_EQ(API.VNODEARM_ClrDataEvent(0xFFFFFFFF), 0);
  EXPECT_EQ(API.VNODEARM_GetWPInfoEx(-1, nullptr), 0);
  const VNODEARM_DATA_EVENT WithValue = DataEvent(0x20000100, 0, 0x17, 5, 0);
  EXPECT_LT(API.VNODEARM_SetDataEvent(&WithValue, &aHandle[2]), 0) << "this core compares no values";
}
