#include <numeric>

#include "probe_fixture.h"

namespace {

constexpr U32 RAM_START = 0x20000000;
constexpr U32 RAM_SIZE = 0x4000;  // nRF51822_xxAA
constexpr U32 FLASH_SIZE = 0x40000;

}  // namespace

class MemoryTest : public CProbeTest {
protected:
  void SetUp() override {
    CProbeTest::SetUp();
    Connect("nRF51822_xxAA");
  }
};

TEST_F(MemoryTest, TransfersAnyWidthAtAnyAddress) {
  std::vector<U8> Pattern(64);
  std::iota(Pattern.begin(), Pattern.end(), U8{1});
  for (U32 Width : {0u, 1u, 2u, 4u}) {
    for (U32 Offset = 0; Offset < 4; ++Offset) {
      for (U32 Size : {1u, 2u, 3u, 4u, 5u, 7u, 8u, 13u}) {
        SCOPED_TRACE(testing::Message() << "width " << Width << " offset " << Offset << " size " << Size);
        const std::vector<U8> Zeros(32);
        ASSERT_EQ(API.VNODEARM_WriteMem(RAM_START, 32, Zeros.data()), 0);
        const U32 Addr = RAM_START + 8 + Offset;
        ASSERT_EQ(API.VNODEARM_WriteMemEx(Addr, Size, Pattern.data(), Width), static_cast<int>(Size));
        std::vector<U8> Read(Size);
        ASSERT_EQ(API.VNODEARM_ReadMemEx(Addr, Size, Read.data(), Width), static_cast<int>(Size));
        EXPECT_TRUE(std::equal(Read.begin(), Read.end(), Pattern.begin()));
        U8 aAll[32];
        ASSERT_EQ(API.VNODEARM_ReadMem(RAM_START, 32, aAll), 0);
        EXPECT_EQ(std::count(aAll, aAll + 32, 0), 32 - static_cast<long>(Size)) << "wrote beside the range";
      }
    }
  }
}

TEST_F(MemoryTest, ItemsHaveTheirOwnStatus) {
  const U32 Last = RAM_START + RAM_SIZE - 8;
  ASSERT_EQ(API.VNODEARM_WriteU64(Last, 0x1122334455667788ull), 0);
  ASSERT_EQ(API.VNODEARM_WriteU16(Last + 2, 0xABCD), 0);
  ASSERT_EQ(API.VNODEARM_WriteU8(Last, 0xEF), 0);
  U64 Value64 = 0;
  U32 aWords[4] = {1, 1, 1, 1};
  U16 aHalves[2];
  U8 aStatus[4];
  EXPECT_EQ(API.VNODEARM_ReadMemU64(Last, 1, &Value64, aStatus), 1);
  EXPECT_EQ(Value64, 0x11223344ABCD77EFull);
  EXPECT_EQ(API.VNODEARM_ReadMemU32(Last, 4, aWords, aStatus), 2);
  EXPECT_THAT(aStatus, testing::ElementsAre(0, 0, 1, 1));
  EXPECT_THAT(aWords, testing::ElementsAre(0xABCD77EF, 0x11223344, 0, 0));
  EXPECT_EQ(API.VNODEARM_ReadMemU16(Last + 6, 2, aHalves, nullptr), 1);
  EXPECT_EQ(aHalves[0], 0x1122);
  // The items before a hole and behind it: the last word ahead of RAM does not answer.
  EXPECT_EQ(API.VNODEARM_ReadMemU32(RAM_START - 4, 2, aWords, aStatus), 1);
  EXPECT_TRUE(aStatus[0] == 1 && aStatus[1] == 0);
  EXPECT_EQ(API.VNODEARM_WriteMemEx(Last + 3, 16, aWords, 4), 5);
  EXPECT_NE(API.VNODEARM_ReadMemHW(0x60000000, 1, aWords), 0);
  EXPECT_LE(API.VNODEARM_ReadMemEx(0xFFFFFFFE, 16, aWords, 0), 2) << "past the end of the address space";
}

TEST_F(MemoryTest, OnlyADownloadChangesFlash) {
  const U32 Before = ReadWord(0x2000);
  EXPECT_NE(API.VNODEARM_WriteU32(0x2000, 0x12345678), 0);
  EXPECT_EQ(ReadWord(0x2000), Before);
  API.VNODEARM_BeginDownload(0);
  EXPECT_EQ(API.VNODEARM_WriteU32(0x2000, 0x12345678), 0);
  EXPECT_EQ(API.VNODEARM_WriteU32(RAM_START, 0x55), 0);
  EXPECT_EQ(ReadWord(0x2000), Before) << "programmed before the end of the download";
  EXPECT_EQ(ReadWord(RAM_START), 0x55u);
  EXPECT_EQ(API.VNODEARM_EndDownload(), 0);
  EXPECT_EQ(ReadWord(0x2000), 0x12345678u);
  EXPECT_NE(API.VNODEARM_WriteU32(0x2000, 0), 0) << "the download is over";
}

TEST_F(MemoryTest, DownloadTakesPiecesInAnyOrder) {
  std::vector<U8> Image(10'000);
  for (size_t i = 0; i < Image.size(); ++i) Image[i] = static_cast<U8>(i * 7 + i / 256);
  const U32 Base = FLASH_SIZE - static_cast<U32>(Image.size());  // up to the very end
  API.VNODEARM_BeginDownload(0);
  const std::vector<U8> Overlapped(3000, 0x5A);
  ASSERT_EQ(API.VNODEARM_WriteMem(Base + 4000, 3000, Overlapped.data()), 0);
  ASSERT_EQ(API.VNODEARM_WriteMem(Base + 5000, 5000, Image.data() + 5000), 0);
  ASSERT_EQ(API.VNODEARM_WriteMem(Base, 5000, Image.data()), 0);
  const U8 aAcross[] = {Image[Image.size() - 2], Image[Image.size() - 1], 0xEE, 0xEE};
  EXPECT_EQ(API.VNODEARM_WriteMemEx(FLASH_SIZE - 2, sizeof(aAcross), aAcross, 0), 2) << "beyond flash";
  ASSERT_EQ(API.VNODEARM_EndDownload(), 0);
  std::vector<U8> Read(Image.size());
  ASSERT_EQ(API.VNODEARM_ReadMem(Base, static_cast<U32>(Read.size()), Read.data()), 0);
  EXPECT_EQ(Read, Image);
}
