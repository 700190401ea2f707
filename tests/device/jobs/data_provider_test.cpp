#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <QStringList>
#include <functional>
#include <random>
#include <utility>

#include "device/device_data_provider.h"
#include "device/probe_api/register_index.h"
#include "tests/common/symbol_place.h"

namespace {

constexpr auto Text = &QString::asprintf;

// Writes down the jobs and answers them when it is told to.
struct FAKE_ACCESS : CDeviceAccess {
  QStringList sJobs, sLog;
  std::vector<std::function<void()>> aAnswer;
  std::function<bool(U32 Addr)> IsReadable = [](U32) { return true; };
  CDeviceDataProvider* pProvider = nullptr;
  bool bAccessible = true, bRefuse = false, bBusy = false;

  bool IsConnected() const override { return true; }
  bool IsAccessible() const override { return bAccessible; }
  bool IsSessionReady() const override { return true; }
  bool IsStepping() const override { return false; }
  U64 GetPC() const override { return 0; }

  int File(const QString& sJob, std::function<void()> Answer) {
    if (bRefuse) return -1;
    sJobs << sJob;
    aAnswer.push_back(std::move(Answer));
    return 0;
  }
  int ScheduleReadMem(U32 Addr, U32 NumBytes, U32, U8 AW, U32 Flags) override {
    const QString sOptions = AW || Flags ? Text(" aw%u f%u", AW, Flags) : QString();
    return File(Text("%x+%u", Addr, NumBytes) + sOptions, [=, this] {
      std::vector<U8> aData(NumBytes), aStatus(NumBytes);
      for (U32 i = 0; i < NumBytes; ++i) {
        aData[i] = static_cast<U8>((Addr + i) * 7);
        aStatus[i] = IsReadable(Addr + i) ? 0 : 1;
      }
      pProvider->OnDeviceReadMemDone(Addr, NumBytes, aData.data(), aStatus.data());
    });
  }
  int ScheduleReadReg(U32 Index) override {
    return File(Text("reg %u", Index), [=, this] { pProvider->OnDeviceReadRegDone(Index, Index + 1000ull); });
  }
  int ScheduleReadRegs(U32 Cnt, const U32* paIndex) override {
    std::vector<U32> aIndex(paIndex, paIndex + Cnt);
    QString sJob = "regs";
    for (const U32 Index : aIndex) sJob += Text(" %u", Index);
    return File(sJob, [=, this]() mutable {
      std::vector<U64> aValue(aIndex.begin(), aIndex.end());
      std::vector<U8> aStatus(Cnt);
      for (U32 i = 0; i < Cnt; ++i) {
        aValue[i] += 1000;
        aStatus[i] = aIndex[i] == 9 ? 0xFF : 0;
      }
      pProvider->OnDeviceReadRegsDone(Cnt, aIndex.data(), aValue.data(), aStatus.data());
    });
  }
  int ScheduleReadCPReg(const char* sReg) override {
    const QByteArray sName = sReg;
    return File(Text("cp %s", sReg), [=, this] { pProvider->OnDeviceReadCPRegDone(sName, sName.size()); });
  }
  int ScheduleReadLoc(const ELF_SYM_LOC& Loc, U32 NumBytes) override {
    return File(Text("loc %x+%u", Loc.Type == ELF_LOC_REG ? Loc.Reg : Loc.Addr, NumBytes), [=, this] {
      U8 aData[8] = {0x11, 0x22, 0x33, 0x44, 0x55, 0x66, 0x77, 0x88};
      pProvider->OnDeviceReadLocDone(Loc, NumBytes, aData);
    });
  }
  void CancelJobs(U32 Type, U32) override {
    sJobs << QString("cancel ") + JobTypeName(Type);
    aAnswer.clear();
  }
  int ProcessEvents(int) override { return 0; }
  int ReadLocNow(const ELF_SYM_LOC& Loc, U32 NumBytes, U8* paData) override {
    sJobs << Text("now %x+%u", Loc.Addr, NumBytes);
    std::fill_n(paData, NumBytes, 0x5A);
    return bBusy ? BUSY : bRefuse ? -1 : 0;
  }
  U32 MapRegIndex(U32 LogicReg) override { return LogicReg; }
  U32 NumRegs() override { return VNODE_NUM_REGS; }
  void LogText(const QString& sText, U32) override { sLog << sText; }

  void Answer() {
    for (const auto& Call : std::exchange(aAnswer, {})) Call();
  }
};

struct CAsker : CDeviceEventListener {
  QStringList sHeard;
  std::function<void()> OnMem;
  std::function<void(U32 Addr, const U8* paData, const U8* paStatus)> Check;
  void OnDeviceReadMemDone(U32 Addr, U32 NumBytes, U8* paData, U8* paStatus) override {
    QString sStatus;
    if (Check) Check(Addr, paData, paStatus);
    for (U32 i = 0; i < std::min(NumBytes, 16u); ++i) sStatus += QString::number(paStatus[i]);
    sHeard << Text("%x+%u %u ", Addr, NumBytes, paData[0]) + sStatus;
    if (OnMem) std::exchange(OnMem, {})();
  }
  void OnDeviceReadRegDone(U32 Index, U64 Value) override { sHeard << Text("r%u=%llu", Index, Value); }
  void OnDeviceReadRegFailed(U32 Index) override { sHeard << Text("r%u failed", Index); }
  void OnDeviceReadRegsDone(U32 Cnt, U32* paIndex, U64* paValue, U8* paStatus) override {
    for (U32 i = 0; i < Cnt; ++i) sHeard << Text("r%u=%llu/%u", paIndex[i], paValue[i], paStatus[i]);
  }
  void OnDeviceReadLocDone(const ELF_SYM_LOC&, U32 NumBytes, U8* paData) override {
    sHeard << Text("loc %u %x", NumBytes, paData[0]);
  }
  void OnDeviceReadLocFailed(const ELF_SYM_LOC&, U32) override { sHeard << "loc failed"; }
};

struct DataProvider : testing::Test {
  FAKE_ACCESS Access;
  CDeviceDataProvider Provider{Access};
  CAsker A, B;

  DataProvider() { Access.pProvider = &Provider; }
  int Request(CAsker& Asker, U32 Addr, U32 NumBytes, U32 Flags = 0) {
    return Provider.RequestMem(&Asker, Addr, NumBytes, 0, 0, Flags);
  }
  void MakeValid(U32 Addr, U32 NumBytes) {
    std::vector<U8> aData(NumBytes), aStatus(NumBytes);
    for (U32 i = 0; i < NumBytes; ++i) aData[i] = static_cast<U8>((Addr + i) * 7);
    Provider.OnDeviceReadMemDone(Addr, NumBytes, aData.data(), aStatus.data());
  }
  std::string Jobs() { return std::exchange(Access.sJobs, {}).join("; ").toStdString(); }
};

std::string Heard(CAsker& Asker) {
  return std::exchange(Asker.sHeard, {}).join("; ").toStdString();
}

}  // namespace

TEST_F(DataProvider, BadRequests) {
  EXPECT_EQ(Provider.RequestMem(nullptr, 0x1000, 4, 0, 0, 0), DATA_UNAVAILABLE);
  EXPECT_EQ(Request(A, 0x1000, 0), DATA_UNAVAILABLE);
  EXPECT_EQ(Request(A, 0xFFFFFFF0, 17), DATA_UNAVAILABLE);
  EXPECT_EQ(Request(A, 0, 0xFFFFFFFF), DATA_UNAVAILABLE) << "more than a job holds";
  EXPECT_EQ(Jobs(), "");
  Access.bRefuse = true;
  EXPECT_EQ(Request(A, 0x1000, 4), DATA_UNAVAILABLE);
  Access.bRefuse = false;
  EXPECT_EQ(Request(A, 0x1000, 4), DATA_PENDING) << "a refused job leaves nothing pending behind";
}

TEST_F(DataProvider, FetchesOnlyWhatIsMissing) {
  // Ranges that are known, the one that is asked for, and the jobs.
  const std::tuple<std::vector<std::pair<U32, U32>>, U32, U32, const char*> aCase[] = {
      {{{0x1000, 0x10}}, 0x1000, 0x40, "1010+48"},
      {{{0x1010, 0x10}}, 0x1000, 0x40, "1000+16; 1020+32"},
      // Runs of an item's size are widened to whole items.
      {{}, 0x1002, 4, "1000+6"},
      {{}, 0x1001, 2, "1000+4"},
      {{}, 0x1001, 3, "1001+3"},
      {{}, 0x1004, 8, "1000+12"},
      // Over the end of a page.
      {{{0xFFF8, 4}}, 0xFFF0, 0x20, "fff0+8; fffc+20"},
      // Five holes are read one by one, more of them in one go.
      {{{0x1010, 1}, {0x1020, 1}, {0x1030, 1}, {0x1040, 0x10}}, 0x1000, 0x50, "1000+16; 1011+15; 1021+15; 1031+15"},
      {{{0x1010, 1}, {0x1020, 1}, {0x1030, 1}, {0x1040, 1}, {0x1050, 1}},
       0x1000,
       0x60,
       "1000+16; 1011+15; 1021+15; 1031+15; 1041+15; 1000+96"},
  };
  for (const auto& [Valid, Addr, NumBytes, sJobs] : aCase) {
    Provider.ClearCaches(true);
    for (const auto& [ValidAddr, NumValid] : Valid) MakeValid(ValidAddr, NumValid);
    EXPECT_EQ(Request(A, Addr, NumBytes), DATA_PENDING);
    EXPECT_EQ(Jobs(), sJobs);
    Access.Answer();
    EXPECT_EQ(std::exchange(A.sHeard, {}).size(), 1) << sJobs;
  }
}

// A window that asks for 64 KiB at random places, between what is known, being read, and not readable.
TEST_F(DataProvider, AnyRangeCostsAtMostSixJobs) {
  constexpr U32 SIZE = 0x10000;
  std::mt19937 Random(64);
  const auto Below = [&](U32 Limit) { return static_cast<U32>(Random() % Limit); };
  Access.IsReadable = [](U32 Addr) { return Addr % 977 > 5; };
  int MostJobs = 0;
  for (int Round = 0; Round < 150; ++Round) {
    Provider.ClearCaches(true);
    Access.aAnswer.clear();
    const U32 Start = 0x20000000 + Below(4 * SIZE);
    for (U32 i = Below(12); i > 0; --i) MakeValid(Start - 8 + Below(SIZE), 1 + Below(300));
    for (U32 i = Below(3); i > 0; --i) Request(B, Start + Below(SIZE), 1 + Below(2000));
    Jobs();
    ASSERT_EQ(Request(A, Start, SIZE), DATA_PENDING);
    MostJobs = std::max(MostJobs, static_cast<int>(Access.sJobs.size()));
    ASSERT_LE(Access.sJobs.size(), 6) << Jobs();
    Jobs();
    Request(A, Start, SIZE);
    ASSERT_EQ(Jobs(), "") << "the same once more";
    int NumAnswers = 0;
    A.Check = [&](U32 Addr, const U8* paData, const U8* paStatus) {
      ++NumAnswers;
      for (U32 i = 0; i < SIZE; ++i) {
        if (paStatus[i] == MEM_VALID) {
          ASSERT_EQ(paData[i], static_cast<U8>((Addr + i) * 7)) << i;
        }
        ASSERT_TRUE(paStatus[i] == MEM_VALID || !Access.IsReadable(Addr + i)) << i;
      }
    };
    Access.Answer();
    ASSERT_EQ(NumAnswers, 1);
    A.Check = {};
    ASSERT_EQ(Request(A, Start + Below(SIZE / 2), SIZE / 2), DATA_DELIVERED);
    ASSERT_EQ(Jobs(), "") << "all of it is known now";
  }
  EXPECT_EQ(MostJobs, 6);
}

TEST_F(DataProvider, FailedBytesReachTheListener) {
  Access.IsReadable = [](U32 Addr) { return Addr < 0x100A; };
  Request(A, 0x1000, 16);
  Access.Answer();
  EXPECT_EQ(Heard(A), "1000+16 0 0000000000111111");
  Request(A, 0x1008, 4);
  EXPECT_EQ(Heard(A), "1008+4 56 1111") << "one value is valid as a whole or not at all";
  U8 aData[4];
  EXPECT_EQ(Provider.GetMem(&Provider, 0x1000, 4, 0, aData), 0);
  EXPECT_EQ(Provider.GetMem(&Provider, 0x100A, 4, 0, aData), 1);
}

TEST_F(DataProvider, RunningTargetIsAlwaysAsked) {
  MakeValid(0x1000, 16);
  Access.bAccessible = false;
  EXPECT_EQ(Request(A, 0x1000, 16), DATA_PENDING);
  Access.Answer();
  EXPECT_EQ(A.sHeard.size(), 1);
  EXPECT_EQ(Request(A, 0x1000, 16), DATA_PENDING);
  EXPECT_EQ(Jobs(), "1000+16; 1000+16");
  Access.bAccessible = true;
  EXPECT_EQ(Request(A, 0x1000, 16, MEM_FLAG_NO_CACHE), DATA_PENDING) << "nor is the cache asked with the flag";
}

TEST_F(DataProvider, HaltDropsRequestsResumeKeepsThem) {
  Request(A, 0x1000, 16);
  Provider.OnDeviceResumeDone(GO_USER);
  MakeValid(0x1000, 16);
  EXPECT_EQ(std::exchange(A.sHeard, {}).size(), 1);
  Request(A, 0x2000, 16);
  Provider.OnDeviceHaltDone(0, HR_GENERAL);
  MakeValid(0x2000, 16);
  EXPECT_EQ(Heard(A), "");
}

TEST_F(DataProvider, WrittenBytesAreReadAnew) {
  MakeValid(0x1000, 32);
  U8 aData[4] = {};
  Provider.OnDeviceWriteMemDone(0x1004, 4, aData);
  Request(A, 0x1000, 32);
  EXPECT_EQ(Jobs(), "1004+4");
}

TEST_F(DataProvider, NothingWaitsForACancelledRead) {
  Request(A, 0x1001, 2);  // read as 0x1000 to 0x1004
  auto pGone = std::make_unique<CAsker>();
  Request(*pGone, 0x2000, 16);
  pGone.reset();
  const U32 Reg = 3;
  Provider.RequestRegs(&A, 1, &Reg);
  Request(A, 0x3000, 16);
  EXPECT_EQ(Provider.RequestLoc(&B, Loc(ELF_LOC_MEM, 0x3004), 4), DATA_PENDING);
  Jobs();
  Provider.CancelMemRequests();
  EXPECT_EQ(Jobs(), "cancel JT_READ_MEM; loc 3004+4") << "a location is asked for again";
  Access.Answer();
  EXPECT_EQ(Heard(B), "loc 4 11");
  EXPECT_EQ(Heard(A), "");
  Provider.OnDeviceReadRegDone(3, 33);
  EXPECT_EQ(Heard(A), "r3=33") << "registers are still awaited";
  EXPECT_EQ(Request(B, 0x1000, 1), DATA_PENDING);
  EXPECT_EQ(Request(B, 0x2004, 4), DATA_PENDING);
  EXPECT_EQ(Jobs(), "1000+1; 2004+4");
}

TEST_F(DataProvider, ListenersMayAskOrGoWhileTheyAreServed) {
  auto* pGone = new CAsker;
  A.OnMem = [&] {
    Request(A, 0x2000, 8);
    delete pGone;
  };
  for (CAsker* pAsker : {&A, pGone, &B}) Request(*pAsker, 0x1000, 8);
  Access.Answer();
  EXPECT_EQ(B.sHeard.size(), 1);
  Access.Answer();
  EXPECT_EQ(Heard(A), "1000+8 0 00000000; 2000+8 0 00000000");
}

TEST_F(DataProvider, Registers) {
  const std::vector<U32> aIndex = {1, 9, 3};
  EXPECT_EQ(Provider.RequestRegs(&A, 3, aIndex.data()), DATA_PENDING);
  EXPECT_EQ(Jobs(), "regs 1 9 3");
  Access.Answer();
  EXPECT_EQ(Heard(A), "r1=1001/0; r9=1009/1; r3=1003/0");
  Provider.RegIndexArray() = {3, 4};
  EXPECT_EQ(Provider.RequestRegs(&A, 2), DATA_PENDING);
  EXPECT_EQ(Jobs(), "regs 4") << "only what is not known";
  EXPECT_EQ(Provider.RequestRegs(&B, 1, &aIndex[1]), DATA_DELIVERED);
  EXPECT_EQ(Heard(B), "r9 failed");
  const std::vector<U32> aMany(VNODE_NUM_REGS + 1);
  EXPECT_EQ(Provider.RequestRegs(&A, VNODE_NUM_REGS + 1, aMany.data()), -1);
  Access.bAccessible = false;
  EXPECT_EQ(Provider.RequestRegs(&A, 3, aIndex.data()), DATA_UNAVAILABLE);
}

TEST_F(DataProvider, Locations) {
  EXPECT_EQ(Provider.RequestLoc(&A, Loc(ELF_LOC_CONST, 0x42), 4), DATA_DELIVERED);
  EXPECT_EQ(Provider.RequestLoc(&A, Loc(ELF_LOC_REG, ELF_REG_UNSPECIFIED), 4), DATA_DELIVERED);
  EXPECT_EQ(Heard(A), "loc 4 42; loc failed");
  EXPECT_EQ(Provider.RequestLoc(&A, Loc(ELF_LOC_MEM, 0x3000), 2), DATA_PENDING);
  EXPECT_EQ(Provider.RequestMem(&B, 0x3000, 2, 0, 0, 0), DATA_PENDING);
  EXPECT_EQ(Provider.RequestLoc(&A, Loc(ELF_LOC_REG, 4), 1), DATA_PENDING);
  EXPECT_EQ(Jobs(), "loc 3000+2; loc 4+4") << "a register is fetched whole";
  Access.Answer();
  EXPECT_EQ(Heard(A), "loc 2 11; loc 1 11");
  EXPECT_EQ(Heard(B), "3000+2 17 00") << "memory that came for a location serves both";
  U64 Value = 0;
  EXPECT_EQ(Provider.GetReg(&Provider, 4, &Value), 0);
  EXPECT_EQ(Value, 0x44332211u);
  EXPECT_EQ(Provider.RequestLoc(&A, Loc(ELF_LOC_MEM, 0x3000), 9), DATA_UNAVAILABLE);
}

TEST_F(DataProvider, SynchronousReadGivesUpAndLateDataIsKept) {
  U8 aData[4] = {};
  QElapsedTimer Clock;
  Clock.start();
  EXPECT_EQ(Provider.GetMem(&Provider, 0x1000, 4, 0, aData), 1);
  EXPECT_GE(Clock.elapsed(), 150);
  EXPECT_LT(Clock.elapsed(), 5000) << "a busy machine may take its time";
  EXPECT_EQ(Access.sLog, QStringList{"Timeout while waiting for memory data arrival of 4 bytes @ 00001000"});
  Access.Answer();
  EXPECT_EQ(Provider.GetMem(&Provider, 0x1000, 4, 0, aData), 0);
}

TEST_F(DataProvider, SynchronousReadOfALocation) {
  U8 aData[9] = {};
  EXPECT_EQ(Provider.GetLoc(&A, Loc(ELF_LOC_MEM, 0x3000), 9, aData), -1);
  EXPECT_EQ(Provider.GetLoc(&A, Loc(ELF_LOC_CONST, 0x42), 4, aData), 0);
  EXPECT_EQ(aData[0], 0x42);
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(Provider.GetLoc(&A, Loc(ELF_LOC_MEM, 0x3000), 4, aData), 0);
    EXPECT_EQ(aData[3], 0x5A);
  }
  EXPECT_EQ(Jobs(), "now 3000+4") << "once, then from the cache";
  EXPECT_EQ(Request(A, 0x3000, 4), DATA_DELIVERED);
  Access.bAccessible = false;
  EXPECT_EQ(Provider.GetLoc(&A, Loc(ELF_LOC_MEM, 0x3000), 4, aData), 0);
  EXPECT_EQ(Jobs(), "now 3000+4") << "a running target is asked each time";
  Heard(A);
  EXPECT_EQ(Provider.RequestLoc(&A, Loc(ELF_LOC_REG, 3), 4), DATA_DELIVERED);
  EXPECT_EQ(Provider.RequestLoc(&A, Loc(ELF_LOC_REG, ELF_REG_UNSPECIFIED), 4), DATA_DELIVERED);
  EXPECT_EQ(Heard(A), "") << "registers of a running target are nowhere";
}

TEST_F(DataProvider, FailuresAreLogged) {
  Request(A, 0x1000, 16);
  Provider.OnDeviceReadMemFailed(0x1000, 16);
  EXPECT_EQ(Heard(A), "1000+16 0 1111111111111111");
  Provider.RequestLoc(&A, Loc(ELF_LOC_MEM, 0x3000), 4);
  Provider.OnDeviceReadLocFailed(Loc(ELF_LOC_MEM, 0x3000), 4);
  EXPECT_EQ(Heard(A), "loc failed");
  U8 aData[4];
  EXPECT_EQ(Provider.GetMem(&A, 0x1000, 4, 0, aData), 1);
  Access.bBusy = true;
  EXPECT_EQ(Provider.GetLoc(&A, Loc(ELF_LOC_MEM, 0x5000), 4, aData), 1);
  Access.bBusy = false;
  EXPECT_EQ(Provider.GetLoc(&A, Loc(ELF_LOC_MEM, 0x5000), 4, aData), 0) << "the next one may have better luck";
  Access.bRefuse = true;
  EXPECT_EQ(Provider.GetLoc(&A, Loc(ELF_LOC_MEM, 0x4000), 4, aData), 1);
  Access.bRefuse = false;
  U64 Value = 0;
  EXPECT_EQ(Provider.GetReg(&A, 4, &Value), 1);
  EXPECT_EQ(Provider.GetCPReg("15,1,2,3,4", &Value), 1);
  EXPECT_EQ(Access.sLog.join("\n").toStdString(),
            "Target memory readout of 16 bytes @ 00001000 failed.\n"
            "Target data readout of 4 bytes @ from location 00003000 failed.\n"
            "Memory @ 00001000 returned from cache\n"
            "Timeout while waiting for data of location 00005000\n"
            "Target data readout of 4 bytes @ from location 00004000 failed.\n"
            "Timeout while waiting for register data arrival. VNodeRegIdx = 4\n"
            "Timeout while waiting for coprocessor register data arrival 15,1,2,3,4");
}
