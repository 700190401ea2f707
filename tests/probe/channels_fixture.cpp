#include "channels_fixture.h"

void ChannelsTest::Load(const char* sDevice, const U8* paImage, U32 NumBytes) {
  Connect(sDevice);
  API.VNODEARM_BeginDownload(0);
  ASSERT_EQ(API.VNODEARM_WriteMem(0, NumBytes, paImage), 0);
  ASSERT_EQ(API.VNODEARM_EndDownload(), 0);
  ASSERT_EQ(API.VNODEARM_Reset(), 0);
}

void ChannelsTest::RunTicks(U32 TicksAddr, U32 NumTicks) {
  const U32 From = ReadWord(TicksAddr);
  Run();
  EXPECT_TRUE(WaitFor([&] { return ReadWord(TicksAddr) - From >= NumTicks && ReadWord(TicksAddr) < 0x10000000; }));
  EXPECT_EQ(API.VNODEARM_Halt(), 0);
}
