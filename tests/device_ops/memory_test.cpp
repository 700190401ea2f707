#include "device_fixture.h"

namespace {

constexpr U32 MEM = CFakeProbe::MEM_START;

class CMemoryTest : public CDeviceOpsTest {
protected:
  CMemoryTest() {
    for (U32 i = 0; i < Probe.Mem.size(); ++i) Probe.Mem[i] = static_cast<U8>(i * 7 + (i >> 8));
  }
  // Reads into fresh buffers and holds the bytes that count as valid against the target's.
  U32 Read(U32 Addr, U32 NumBytes, U32 ChunkSize = 0, I8 AW = 0, U32 Flags = 0) {
    Data.assign(NumBytes, 0xCC);
    Status.assign(NumBytes, 0xCC);
    const U32 Count = Ops.Memory.ReadMem(Addr, NumBytes, ChunkSize, AW, Flags, Data.data(), Status.data());
    U32 NumValid = 0;
    for (U32 i = 0; i < NumBytes; ++i) {
      NumValid += Status[i] == MEM_VALID;
      EXPECT_LE(Status[i], MEM_UNAVAILABLE) << i;
      EXPECT_TRUE(Status[i] != MEM_VALID || Data[i] == Probe.Mem[Addr - MEM + i]) << i;
    }
    EXPECT_EQ(NumValid, Count);
    return Count;
  }
  std::vector<U8> Data, Status;
};

TEST_F(CMemoryTest, ChoosesTheProbesCall) {
  // offset, bytes, access width, flags, calls of a read and of a write
  const std::tuple<U32, U32, I8, U32, const char*, const char*> aCase[] = {
      {3, 1, 0, 0, "ReadMemU8 20000003", "WriteU8 20000003"},
      {2, 2, 0, 0, "ReadMemU16 20000002", "WriteU16 20000002"},
      {4, 4, 1, 0, "ReadMemU32 20000004", "WriteU32 20000004"},
      {8, 8, 0, MEM_FLAG_HW, "ReadMemU64 20000008", "WriteU64 20000008"},
      {1, 4, 0, 0, "ReadMemEx 20000001 4", "WriteMemEx 20000001 4"},
      {4, 8, 0, 0, "ReadMemEx 20000004 8", "WriteMemEx 20000004 8"},
      {4, 3, 0, MEM_FLAG_HW, "ReadMemHW 20000004 3", "WriteMemEx 20000004 3"},
      {0, 100, 0, 0, "ReadMemEx 20000000 64", "WriteMemEx 20000000 64"},
  };
  Connect();
  const std::vector<U8> Image(100, 0x5A);
  for (const auto& [Offset, NumBytes, AW, Flags, sRead, sWrite] : aCase) {
    Forget();
    EXPECT_EQ(Ops.Memory.WriteMem(MEM + Offset, NumBytes, 0, AW, Flags, Image.data()), NumBytes);
    EXPECT_EQ(Read(MEM + Offset, NumBytes, 0, AW, Flags), NumBytes);
    EXPECT_EQ(Probe.CallText(), std::string(sWrite) + ", " + sRead);
    EXPECT_EQ(Data, std::vector<U8>(NumBytes, 0x5A));
  }
  Forget();
  Probe.Failing["WriteU32"] = 0;
  EXPECT_EQ(Ops.Memory.WriteMem(MEM, 4, 2, 0, 0, Image.data()), 4u) << "in chunks instead";
  EXPECT_EQ(Probe.CallText(), "WriteU32 20000000, WriteU16 20000000, WriteU16 20000002");
}

TEST_F(CMemoryTest, ShortReads) {
  // bytes, at most so many per call, that answer, of a chunk, access width, flags, result, calls
  const std::tuple<U32, U32, U32, U32, I8, U32, U32, const char*> aCase[] = {
      {16, 10, 16, 0, 0, 0, 10, "ReadMemEx 20000000 10"},
      {4, 4, 2, 0, 0, 0, 0, "ReadMemU32 20000000"},
      // the rest in chunks
      {16, 10, 16, 3, 0, 0, 16, "ReadMemEx 20000000 10, ReadMemEx 2000000a 3, ReadMemEx 2000000d 3"},
      // one chunk for the rest is what has just failed
      {16, 10, 16, 16, 0, 0, 10, "ReadMemEx 20000000 10"},
      // item by item up to the end of what is there
      {14, 6, 11, 14, 4, MEM_FLAG_ITEM_WISE, 11, "ReadMemEx 20000000 e, ReadMemEx 20000006 4, ReadMemEx 2000000a 4"},
      {9, 4, 6, 9, 0, MEM_FLAG_ITEM_WISE, 6,
       "ReadMemEx 20000000 9, ReadMemU8 20000004, ReadMemU8 20000005, ReadMemU8 20000006, ReadMemU8 20000007, "
       "ReadMemU8 20000008"},
  };
  Connect();
  for (const auto& [NumBytes, MaxPerCall, NumGood, ChunkSize, AW, Flags, Expected, sCalls] : aCase) {
    Forget();
    Probe.MaxBytesPerCall = MaxPerCall;
    Probe.BadAddr = MEM + NumGood;
    EXPECT_EQ(Read(MEM, NumBytes, ChunkSize, AW, Flags), Expected);
    EXPECT_EQ(Probe.CallText(), sCalls);
  }
}

// Every width, alignment, length, chunk size and place of the first bad byte: what counts as read or written is, and
// byte by byte all is that can be.
TEST_F(CMemoryTest, EveryWidthAlignmentAndChunkSize) {
  Connect();
  Probe.MaxBytesPerCall = 5;
  const std::vector<U8> Before = Probe.Mem;
  const std::vector<U8> Image(16, 0xA5);
  for (U32 i = 0; i < 4 * 8 * 13 * 7 * 3; ++i) {
    const I8 AW = std::array<I8, 4>{0, 1, 2, 4}[i % 4];
    const U32 Offset = i / 4 % 8;
    const U32 NumBytes = 1 + i / 32 % 13;
    const U32 ChunkSize = i / 416 % 7;
    const U32 NumGood = std::array<U32, 3>{64, Offset + 1, Offset + NumBytes / 2}[i / 2912];
    Probe.BadAddr = MEM + NumGood;
    const U32 Wanted = std::min(NumBytes, NumGood - Offset);
    SCOPED_TRACE(QString::asprintf("%u: %u+%u aw%d c%u good %u", i, Offset, NumBytes, AW, ChunkSize, NumGood).data());
    Probe.Mem = Before;
    const U32 NumRead = Read(MEM + Offset, NumBytes, ChunkSize, AW, MEM_FLAG_ITEM_WISE);
    const U32 NumWritten = Ops.Memory.WriteMem(MEM + Offset, NumBytes, ChunkSize, AW, MEM_FLAG_ITEM_WISE, Image.data());
    const U32 NumChanged =
        static_cast<U32>(std::count(Probe.Mem.begin() + Offset, Probe.Mem.begin() + Offset + NumBytes, 0xA5));
    ASSERT_EQ(NumWritten, NumChanged);
    ASSERT_TRUE(std::equal(Before.begin() + Offset + NumBytes, Before.end(), Probe.Mem.begin() + Offset + NumBytes));
    ASSERT_TRUE(std::equal(Before.begin(), Before.begin() + Offset, Probe.Mem.begin()));
    if (ChunkSize == 0 || AW > 1) continue;
    ASSERT_EQ(NumRead, Wanted);
    ASSERT_EQ(NumWritten, Wanted);
  }
}

TEST_F(CMemoryTest, TransfersSurviveALongRangeWithHoles) {
  Connect();
  Probe.MaxBytesPerCall = 100;
  EXPECT_EQ(Read(MEM, 5000, 100), 5000u);
  EXPECT_EQ(Sink.Progress.first(), "Reading Memory... 0..48");
  EXPECT_EQ(Sink.Progress.last(), "end");
  Forget();
  EXPECT_EQ(Read(MEM, 4000, 100), 4000u);
  EXPECT_TRUE(Sink.Progress.isEmpty());
  Probe.BadAddr = MEM;
  EXPECT_EQ(Read(MEM, 0x8000, 1), 0u);
  EXPECT_LE(Sink.Progress.size(), 210) << "not an event for each of many chunks";
  Probe.BadAddr = MEM + Probe.MEM_SIZE;
  Forget();
  const std::vector<U8> Image(5000, 0x5A);
  EXPECT_EQ(Ops.Memory.WriteMem(MEM, 5000, 90, 0, 0, Image.data()), 5000u);
  EXPECT_EQ(Read(MEM, 5000, 90), 5000u);
  EXPECT_EQ(Data, Image);
}

TEST_F(CMemoryTest, ALostConnectionEndsALongTransfer) {
  Connect();
  Probe.MaxBytesPerCall = 10;
  Ctx.OnInvalidHaltStatus();
  Probe.Calls.clear();
  EXPECT_EQ(Read(MEM, 5000, 10), 10u);
  EXPECT_EQ(Probe.Count("ReadMemEx"), 1);
}

TEST_F(CMemoryTest, InvalidAccessesNeverReachTheProbe) {
  U8 aData[16], aStatus[16];
  const std::tuple<U32, U32, U8*, U8*, const char*> aCase[] = {
      {MEM, 4, nullptr, aStatus, "ReadMem: invalid data buffer"},
      {MEM, 4, aData, nullptr, "ReadMem: invalid status buffer"},
      {MEM, 0, aData, aStatus, "ReadMem: byte count is 0"},
      {0xFFFFFFFF, 1, aData, aStatus, "ReadMem: outside address range"},
      {0xFFFFFFF8, 8, aData, aStatus, "ReadMem: outside address range"},
      {0xFFFFFFF0, 0xFFFFFFFF, aData, aStatus, "ReadMem: outside address range"},
  };
  EXPECT_EQ(Ops.Memory.ReadMem(MEM, 4, 0, 0, 0, aData, aStatus), 0u);
  EXPECT_EQ(Ops.Memory.WriteMem(MEM, 4, 0, 0, MEM_FLAG_DOWNLOAD, aData), 0u);
  EXPECT_EQ(Sink.TakeLogs(), "ReadMem: not connected to target; WriteMem: not connected to target");
  Connect();
  for (const auto& [Addr, NumBytes, pData, pStatus, sText] : aCase) {
    EXPECT_EQ(Ops.Memory.ReadMem(Addr, NumBytes, 1, 0, MEM_FLAG_HALT, pData, pStatus), 0u);
    EXPECT_EQ(Sink.TakeLogs(), sText);
  }
  EXPECT_EQ(Ops.Memory.WriteMem(0xFFFFFFFE, 4, 0, 0, 0, aData), 0u);
  EXPECT_EQ(Sink.TakeLogs(), "WriteMem: outside address range");
  EXPECT_EQ(Probe.CallText(), "");
}

TEST_F(CMemoryTest, SingleItemsAndTheirFailures) {
  // Value of ReadInt with every bit that was not read set as the operation leaves it.
  const auto Item = [&](U32 Addr, U8 Size) {
    U32 Value = 0;
    const int Result = Ops.Memory.ReadInt(Addr, Size, &Value);
    return QString::asprintf("%d %x ", Result, Value).toStdString() + Sink.TakeLogs();
  };
  EXPECT_EQ(Item(MEM, 4), "-1 eeeeeeee ReadWord: Not connected");
  Connect();
  Probe.BadAddr = MEM + 0x100;
  const std::tuple<U32, U8, const char*> aCase[] = {
      {MEM + 4, 4, "0 312a231c "},
      {MEM + 6, 2, "0 312a "},
      {MEM + 5, 1, "0 23 "},
      {MEM + 2, 4, "-1 eeeeeeee Attempting to read word unaligned at 20000002"},
      {MEM + 1, 2, "-1 eeee Attempting to read half word unaligned at 20000001"},
      {0xFFFFFFFC, 4, "-1 eeeeeeee ReadWord: Outside address range"},
      {0xFFFFFFFE, 2, "-1 eeee ReadHalfWord: Outside address range"},
      {0xFFFFFFFF, 1, "-1 ee Attempting to read byte at invalid address ffffffff"},
      {MEM + 0x100, 4, "-1 eeeeeeee ReadWord: V-Node API call failed"},
      {MEM + 0x100, 2, "-1 eeee ReadHalfWord: V-Node API call failed"},
      {MEM + 0x100, 1, "-1 ee ReadByte: V-Node API call failed"},
      {MEM, 3, "-1 0 "},
  };
  for (U32 i = 0; i < 16; ++i) Probe.Mem[i] = static_cast<U8>(i * 7);
  for (const auto& [Addr, Size, sResult] : aCase) {
    Probe.Calls.clear();
    EXPECT_EQ(Item(Addr, Size), sResult);
    const bool bOfTarget = std::string(sResult).find("API call") != std::string::npos || sResult[0] == '0';
    EXPECT_EQ(Probe.Calls.size(), bOfTarget ? 1u : 0u) << "nothing else reaches the probe";
  }
}

TEST_F(CMemoryTest, HaltsAroundAnAccess) {
  const std::tuple<int, U32, const char*> aCase[] = {
      {0, MEM_FLAG_HALT, "IsHalted, Halt, ReadMemU32 20000000, GoEx 0 1"},
      {0, 0, "ReadMemU32 20000000"},
      {1, MEM_FLAG_HALT, "IsHalted, ReadMemU32 20000000"},  // halted, though the device has not noticed
  };
  Connect();
  for (const auto& [Halted, Flags, sCalls] : aCase) {
    Probe.Halted = Halted;
    Forget();
    EXPECT_EQ(Read(MEM, 4, 0, 0, Flags), 4u);
    EXPECT_EQ(Probe.CallText(), sCalls);
  }
}

TEST_F(CMemoryTest, DownloadIsOneTransaction) {
  Connect();
  const std::vector<U8> Image(30, 0xA5);
  const U32 aRange[] = {MEM, MEM + 10, MEM + 100, MEM + 104, MEM + 200, MEM + 216};
  EXPECT_EQ(Ops.Memory.WriteMemMultiple(3, aRange, 30, Image.data(), 0, 0, MEM_FLAG_HALT | MEM_FLAG_DOWNLOAD), 30u);
  EXPECT_EQ(Probe.CallText(),
            "IsHalted, Halt, BeginDownload 0, WriteMemEx 20000000 a, WriteU32 20000064, WriteMemEx 200000c8 10, "
            "EndDownload, IsHalted, GoEx 0 1");
  Forget();
  EXPECT_EQ(Ops.Memory.WriteMemMultiple(3, aRange, 20, Image.data(), 0, 0, 0), 14u) << "the last range has no bytes";
  Probe.EndDownloadResult = -3;
  EXPECT_EQ(Ops.Memory.WriteMem(MEM, 4, 0, 0, MEM_FLAG_DOWNLOAD, Image.data()), 0u) << "nothing has been programmed";
  const U32 aBad[] = {MEM + 8, MEM};
  EXPECT_EQ(Ops.Memory.WriteMemMultiple(1, aBad, 20, Image.data(), 0, 0, 0), 0u);
}

}  // namespace
