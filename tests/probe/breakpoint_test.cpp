#include <tuple>

#include "probe_fixture.h"

namespace {

constexpr U32 ENTRY = CFirmware::ENTRY;
constexpr U32 LOOP = ENTRY + 4;
constexpr U32 ANY = VNODE_BP_IMP_ANY | VNODE_BP_THUMB;
constexpr U32 HARD = VNODE_BP_IMP_HW | VNODE_BP_THUMB;
constexpr U32 SOFT = VNODE_BP_IMP_SW | VNODE_BP_THUMB;

VNODEARM_DATA_EVENT DataEvent(U32 Addr, U8 Access, U8 AccessMask, U32 Data = 0, U32 DataMask = 0xFFFFFFFF) {
  VNODEARM_DATA_EVENT Event = {sizeof(Event), 1};
  std::tie(Event.Addr, Event.Data, Event.DataMask) = std::tie(Addr, Data, DataMask);
  std::tie(Event.Access, Event.AccessMask) = std::tie(Access, AccessMask);
  return Event;
}

}  // namespace

class BreakpointTest : public CProbeTest {};

TEST_F(BreakpointTest, ChoosesTheImplementation) {
  // device, address, type, software breakpoints enabled, implementation; 0: refused
  const std::tuple<const char*, U32, U32, bool, U32> CASES[] = {
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
  for (const auto& [sDevice, Addr, TypeFlags, bSoftEnabled, ImpFlags] : CASES) {
    SCOPED_TRACE(testing::Message() << sDevice << std::hex << " 0x" << Addr << " 0x" << TypeFlags);
    Connect(sDevice);
    API.VNODEARM_EnableSoftBPs(bSoftEnabled);
    const int Handle = API.VNODEARM_SetBPEx(Addr, TypeFlags);
    EXPECT_EQ(Handle != 0, ImpFlags != 0);
    EXPECT_EQ(ImpFlagsOf(Handle), ImpFlags);
    EXPECT_EQ(std::exchange(Messages.Errors, {}).empty(), ImpFlags != 0);
    API.VNODEARM_Close();
  }
}

TEST_F(BreakpointTest, UnitsGoToThoseThatCannotDoWithout) {
  Connect("nRF52840_xxAA");
  Load(CFirmware::Counter(0));
  const int First = API.VNODEARM_SetBPEx(LOOP, ANY);
  ASSERT_NE(API.VNODEARM_SetBPEx(0x1004, ANY), 0);
  for (U32 i = 1; i < 6; ++i) ASSERT_NE(API.VNODEARM_SetBPEx(0x1000 + 4 * i, HARD), 0);
  EXPECT_EQ(API.VNODEARM_SetBPEx(0x20000100, HARD), 0) << "units do not reach so far";
  ASSERT_EQ(ImpFlagsOf(First), VNODE_BP_IS_HARD);
  const int Hard = API.VNODEARM_SetBPEx(0x2000, HARD);
  EXPECT_EQ(ImpFlagsOf(Hard), VNODE_BP_IS_HARD);
  EXPECT_EQ(ImpFlagsOf(First), VNODE_BP_IS_SOFT_FLASH);
  EXPECT_EQ(API.VNODEARM_SetBPEx(0x2004, HARD), 0) << "no other can do without";
  API.VNODEARM_GoEx(0, 0);
  EXPECT_TRUE(WaitForHalt());
  EXPECT_EQ(PC(), LOOP);
  EXPECT_EQ(API.VNODEARM_ClrBPEx(First), 0);
  API.VNODEARM_GoEx(0, 0);
  EXPECT_FALSE(WaitForHalt(50)) << "it is gone, in memory and in the unit";
}

TEST_F(BreakpointTest, MayBeSetWhileTheCoreRuns) {
  Connect("Cortex-M4");
  Load(CFirmware::Counter(0));
  for (U32 Type : {HARD, SOFT}) {
    const U32 Original = ReadWord(LOOP);
    ASSERT_EQ(API.VNODEARM_WriteU32(0xE000EDF0, 0xA05F0000), 0);  // halting debug is off, until the next halt
    API.VNODEARM_GoEx(0, 1);
    EXPECT_FALSE(WaitForHalt(20));
    ASSERT_EQ(API.VNODEARM_Halt(), 0);
    API.VNODEARM_GoEx(0, 1);
    const int Handle = API.VNODEARM_SetBPEx(LOOP, Type);
    ASSERT_TRUE(WaitForHalt()) << Type;
    EXPECT_EQ(PC(), LOOP);
    EXPECT_EQ(ReadWord(LOOP), Original);
    ASSERT_EQ(API.VNODEARM_Step(), 0);
    EXPECT_EQ(PC(), LOOP + 2) << "a step leaves the breakpoint behind";
    ASSERT_EQ(API.VNODEARM_ClrBPEx(Handle), 0);
  }
}

TEST_F(BreakpointTest, CountsUsesOfAnAddress) {
  Connect("Cortex-M4");
  const int First = API.VNODEARM_SetBPEx(0x1000, ANY);
  const int Other = API.VNODEARM_SetBPEx(0x1004, SOFT);
  EXPECT_EQ(API.VNODEARM_SetBPEx(0x1000, HARD), First);
  EXPECT_EQ(API.VNODEARM_SetBPEx(0x1000, SOFT), 0) << "it is a hardware breakpoint";
  VNODEARM_BP_INFO Info = {};
  Info.SizeOfStruct = sizeof(Info);
  for (const auto& [Index, Handle, UseCnt] : {std::tuple(1, Other, 1u), {0, First, 2u}, {2, 0, 0u}}) {
    EXPECT_EQ(API.VNODEARM_GetBPInfoEx(Index, &Info), 2);
    EXPECT_EQ(Info.Handle, static_cast<U32>(Handle));
    EXPECT_TRUE(Handle == 0 || Info.UseCnt == UseCnt);
  }
  for (const int NumLeft : {2, 1}) {
    EXPECT_EQ(API.VNODEARM_ClrBPEx(First), 0);
    EXPECT_EQ(API.VNODEARM_GetBPInfoEx(-1, nullptr), NumLeft);
  }
  EXPECT_NE(API.VNODEARM_ClrBPEx(First), 0) << "cleared already";
  EXPECT_EQ(API.VNODEARM_ClrBPEx(-1), 0);
  EXPECT_EQ(API.VNODEARM_GetBPInfoEx(-1, nullptr), 0);
}

TEST_F(BreakpointTest, DataEventsStopOnTheirAccess) {
  constexpr U8 WRITE_WORD = 0x05, READ_WORD = 0x04, EXACT = 0x10, ANY_ACCESS = 0x17;
  // event, and what the firmware has written when it stops; 0: does not stop
  const std::tuple<const char*, VNODEARM_DATA_EVENT, U32> CASES[] = {
      {"any access", DataEvent(CFirmware::COUNTER, 0, ANY_ACCESS), 1},
      {"write of a word", DataEvent(CFirmware::COUNTER, WRITE_WORD, EXACT), 1},
      {"read of a word", DataEvent(CFirmware::COUNTER, READ_WORD, EXACT), 0},
      {"write of a byte", DataEvent(CFirmware::COUNTER, 0x01, EXACT), 0},
      {"value", DataEvent(CFirmware::COUNTER, WRITE_WORD, EXACT, 1000, 0), 1000},
      {"other address", DataEvent(CFirmware::COUNTER + 4, 0, ANY_ACCESS), 0},
  };
  Connect("Cortex-M4");
  for (const auto& [sWhat, Event, Counter] : CASES) {
    SCOPED_TRACE(sWhat);
    Load(CFirmware::Counter(0));
    U32 Handle = 0;
    ASSERT_EQ(API.VNODEARM_SetDataEvent(&Event, &Handle), 0);
    API.VNODEARM_GoEx(0, 1);
    EXPECT_EQ(WaitForHalt(Counter ? 20'000 : 20), Counter != 0);
    EXPECT_TRUE(!Counter || ReadWord(CFirmware::COUNTER) == Counter);
    VNODEARM_WP_INFO Info = {sizeof(Info)};
    EXPECT_EQ(API.VNODEARM_GetWPInfoEx(0, &Info), 1);
    EXPECT_TRUE(Info.Handle == Handle && Info.Addr == Event.Addr && Info.Ctrl == Event.Access);
    EXPECT_EQ(API.VNODEARM_ClrDataEvent(Handle), 0);
    EXPECT_NE(API.VNODEARM_ClrDataEvent(Handle), 0);
    API.VNODEARM_GoEx(0, 1);
    EXPECT_FALSE(WaitForHalt(20)) << "cleared";
    API.VNODEARM_Halt();
  }
}
