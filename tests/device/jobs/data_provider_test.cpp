#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <QStringList>
#include <functional>
#include <utility>

#include "device/device_data_provider.h"
#include "device/probe_api/register_index.h"

namespace {

QString Hex(U64 Value) {
  return QString::number(Value, 16);
}

// Writes down the jobs and answers them when it is told to.
struct FAKE_ACCESS : CDeviceAccess {
  QStringList sJobs;
  std::vector<std::function<void()>> aAnswer;
  std::function<U8(U32 Addr)> Memory = [](U32 Addr) { return static_cast<U8>(Addr * 7); };
  std::function<bool(U32 Addr)> IsReadable = [](U32) { return true; };
  CDeviceDataProvider* pProvider = nullptr;
  bool bConnected = true;
  bool bAccessible = true;
  bool bAnswerInEvents = false;
  bool bRefuse = false;

  bool IsConnected() const override { return bConnected; }
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
    return File(QString("mem %1+%2 aw%3 f%4").arg(Hex(Addr)).arg(NumBytes).arg(AW).arg(Flags), [=, this] {
      std::vector<U8> aData(NumBytes), aStatus(NumBytes);
      for (U32 i = 0; i < NumBytes; ++i) {
        aData[i] = Memory(Addr + i);
        aStatus[i] = IsReadable(Addr + i) ? 0 : 1;
      }
      pProvider->OnDeviceReadMemDone(Addr, NumBytes, aData.data(), aStatus.data());
    });
  }
  int ScheduleReadReg(U32 Index) override {
    return File("reg " + Hex(Index), [=, this] { pProvider->OnDeviceReadRegDone(Index, Index + 1000); });
  }
  int ScheduleReadRegs(U32 Cnt, const U32* paIndex) override {
    std::vector<U32> aIndex(paIndex, paIndex + Cnt);
    QStringList sIndex;
    for (const U32 Index : aIndex) sIndex << Hex(Index);
    return File("regs " + sIndex.join(','), [=, this]() mutable {
      std::vector<U64> aValue(Cnt);
      std::vector<U8> aStatus(Cnt);
      for (U32 i = 0; i < Cnt; ++i) {
        aValue[i] = aIndex[i] + 1000;
        aStatus[i] = aIndex[i] == 9 ? 0xFF : 0;
      }
      pProvider->OnDeviceReadRegsDone(Cnt, aIndex.data(), aValue.data(), aStatus.data());
    });
  }
  int ScheduleReadCPReg(const char* sReg) override {
    const std::string sName = sReg;
    return File(QString("cp %1").arg(sReg), [=, this] { pProvider->OnDeviceReadCPRegDone(sName.c_str(), 5); });
  }
  int ScheduleReadLoc(const ELF_SYM_LOC& Loc, U32 NumBytes) override {
    return File(QString("loc %1+%2").arg(Hex(Loc.Type == ELF_LOC_REG ? Loc.Reg : Loc.Addr)).arg(NumBytes), [=, this] {
      U8 aData[8] = {0x11, 0x22, 0x33, 0x44, 0x55, 0x66, 0x77, 0x88};
      pProvider->OnDeviceReadLocDone(Loc, NumBytes, aData);
    });
  }
  void CancelJobs(U32 Type, U32) override {
    sJobs << QString("cancel %1").arg(JobTypeName(Type));
    aAnswer.clear();
  }
  int ProcessEvents(int) override {
    if (bAnswerInEvents) Answer();
    return 0;
  }
  int ReadLocNow(const ELF_SYM_LOC& Loc, U32 NumBytes, U8* paData) override {
    sJobs << QString("now %1+%2").arg(Hex(Loc.Addr)).arg(NumBytes);
    for (U32 i = 0; i < NumBytes; ++i) paData[i] = static_cast<U8>(i + 1);
    return IsReadable(Loc.Addr) ? 0 : -1;
  }
  U32 MapRegIndex(U32 LogicReg) override { return LogicReg; }
  U32 NumRegs() override { return VNODE_NUM_REGS; }
  void LogText(const QString& sText, U32) override { sLog << sText; }
  QStringList sLog;

  void Answer() {
    for (const auto& Call : std::exchange(aAnswer, {})) Call();
  }
  QStringList TakeJobs() { return std::exchange(sJobs, {}); }
};

struct CAsker : CDeviceEventListener {
  QStringList sHeard;
  std::function<void()> OnMem;
  void OnDeviceReadMemDone(U32 Addr, U32 NumBytes, U8* paData, U8* paStatus) override {
    QString sStatus;
    for (U32 i = 0; i < std::min(NumBytes, 16u); ++i) sStatus += QString::number(paStatus[i]);
    sHeard << QString("%1+%2 %3 %4").arg(Hex(Addr)).arg(NumBytes).arg(paData[0]).arg(sStatus);
    if (OnMem) std::exchange(OnMem, {})();
  }
  void OnDeviceReadRegDone(U32 Index, U64 Value) override { sHeard << QString("r%1=%2").arg(Index).arg(Value); }
  void OnDeviceReadRegFailed(U32 Index) override { sHeard << QString("r%1 failed").arg(Index); }
  void OnDeviceReadRegsDone(U32 Cnt, U32* paIndex, U64* paValue, U8* paStatus) override {
    for (U32 i = 0; i < Cnt; ++i) sHeard << QString("r%1=%2/%3").arg(paIndex[i]).arg(paValue[i]).arg(paStatus[i]);
  }
  void OnDeviceReadCPRegDone(const char* sReg, U64 Value) override { sHeard << QString("%1=%2").arg(sReg).arg(Value); }
  void OnDeviceReadLocDone(const ELF_SYM_LOC&, U32 NumBytes, U8* paData) override {
    sHeard << QString("loc %1 %2").arg(NumBytes).arg(Hex(paData[0]));
  }
  void OnDeviceReadLocFailed(const ELF_SYM_LOC&, U32) override { sHeard << "loc failed"; }
  QStringList Take() { return std::exchange(sHeard, {}); }
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
    Provider.OnDeviceReadMemDone(Addr, NumBytes, aData.data(), aStatus.data());
  }
};

ELF_SYM_LOC MemLoc(U32 Addr) {
  ELF_SYM_LOC Loc;
  Loc.Type = ELF_LOC_MEM;
  Loc.Addr = Addr;
  return Loc;
}

ELF_SYM_LOC RegLoc(U32 Reg) {
  ELF_SYM_LOC Loc;
  Loc.Type = ELF_LOC_REG;
  Loc.Reg = Reg;
  return Loc;
}

}  // namespace

TEST_F(DataProvider, FirstFetchesThenAnswersFromTheCache) {
  EXPECT_EQ(Request(A, 0x1001, 3), DATA_PENDING);
  EXPECT_EQ(Access.TakeJobs(), QStringList{"mem 1001+3 aw0 f0"});
  EXPECT_TRUE(A.sHeard.isEmpty());
  Access.Answer();
  EXPECT_EQ(A.Take(), QStringList{"1001+3 7 000"});
  EXPECT_EQ(Request(B, 0x1002, 1), DATA_DELIVERED);
  EXPECT_EQ(B.Take(), QStringList{"1002+1 14 0"});
  EXPECT_TRUE(Access.TakeJobs().isEmpty());
}

TEST_F(DataProvider, SameRequestOnceEveryListenerOnce) {
  Request(A, 0x1000, 16);
  Request(A, 0x1000, 16);
  Request(B, 0x1000, 16);
  EXPECT_EQ(Access.TakeJobs().size(), 1);
  Access.Answer();
  EXPECT_EQ(A.Take().size(), 1);
  EXPECT_EQ(B.Take().size(), 1);
}

TEST_F(DataProvider, BadRequests) {
  EXPECT_EQ(Provider.RequestMem(nullptr, 0x1000, 4, 0, 0, 0), DATA_UNAVAILABLE);
  EXPECT_EQ(Request(A, 0x1000, 0), DATA_UNAVAILABLE);
  EXPECT_EQ(Request(A, 0xFFFFFFF0, 17), DATA_UNAVAILABLE);
  EXPECT_EQ(Request(A, 0, 0xFFFFFFFF), DATA_UNAVAILABLE) << "more than a job holds";
  EXPECT_TRUE(Access.TakeJobs().isEmpty());
  Access.bRefuse = true;
  EXPECT_EQ(Request(A, 0x1000, 4), DATA_UNAVAILABLE);
  Access.bRefuse = false;
  EXPECT_EQ(Request(A, 0x1000, 4), DATA_PENDING) << "a refused job leaves nothing pending behind";
}

TEST_F(DataProvider, FetchesOnlyWhatIsMissing) {
  const struct {
    std::vector<std::pair<U32, U32>> Valid;
    U32 Addr;
    U32 NumBytes;
    QStringList sJobs;
  } aCase[] = {
      {{{0x1000, 0x10}}, 0x1000, 0x40, {"mem 1010+48 aw0 f0"}},
      {{{0x1010, 0x10}}, 0x1000, 0x40, {"mem 1000+16 aw0 f0", "mem 1020+32 aw0 f0"}},
      // Runs of an item's size are widened to whole items.
      {{}, 0x1002, 4, {"mem 1000+6 aw0 f0"}},
      {{}, 0x1001, 2, {"mem 1000+4 aw0 f0"}},
      {{}, 0x1001, 3, {"mem 1001+3 aw0 f0"}},
      {{}, 0x1004, 8, {"mem 1000+12 aw0 f0"}},
      // Over the end of a page.
      {{{0xFFF8, 4}}, 0xFFF0, 0x20, {"mem fff0+8 aw0 f0", "mem fffc+20 aw0 f0"}},
      // Five holes are read one by one, more of them in one go.
      {{{0x1010, 1}, {0x1020, 1}, {0x1030, 1}, {0x1040, 0x10}},
       0x1000,
       0x50,
       {"mem 1000+16 aw0 f0", "mem 1011+15 aw0 f0", "mem 1021+15 aw0 f0", "mem 1031+15 aw0 f0"}},
      {{{0x1010, 1}, {0x1020, 1}, {0x1030, 1}, {0x1040, 1}, {0x1050, 1}},
       0x1000,
       0x60,
       {"mem 1000+16 aw0 f0", "mem 1011+15 aw0 f0", "mem 1021+15 aw0 f0", "mem 1031+15 aw0 f0", "mem 1041+15 aw0 f0",
        "mem 1000+96 aw0 f0"}},
  };
  for (const auto& Case : aCase) {
    Provider.ClearCaches(true);
    for (const auto& [Addr, NumBytes] : Case.Valid) MakeValid(Addr, NumBytes);
    EXPECT_EQ(Request(A, Case.Addr, Case.NumBytes), DATA_PENDING);
    EXPECT_EQ(Access.TakeJobs(), Case.sJobs);
    Access.Answer();
    EXPECT_EQ(A.Take().size(), 1) << Case.sJobs.join('|').toStdString();
  }
}

TEST_F(DataProvider, FailedBytesReachTheListener) {
  Access.IsReadable = [](U32 Addr) { return Addr < 0x100A; };
  Request(A, 0x1000, 16);
  Access.Answer();
  EXPECT_EQ(A.Take(), QStringList{"1000+16 0 0000000000111111"});
  Request(A, 0x1008, 4);
  EXPECT_EQ(A.Take(), QStringList{"1008+4 56 1111"}) << "one value is valid as a whole or not at all";
  U8 aData[4];
  EXPECT_EQ(Provider.GetMem(&Provider, 0x1000, 4, 0, aData), 0);
  EXPECT_EQ(Provider.GetMem(&Provider, 0x100A, 4, 0, aData), 1);
}

TEST_F(DataProvider, RunningTargetIsAlwaysAsked) {
  MakeValid(0x1000, 16);
  Access.bAccessible = false;
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(Request(A, 0x1000, 16), DATA_PENDING);
    EXPECT_EQ(Access.TakeJobs(), QStringList{"mem 1000+16 aw0 f0"});
    Access.Answer();
    EXPECT_EQ(A.Take().size(), 1);
  }
  Access.bAccessible = true;
  EXPECT_EQ(Request(A, 0x1000, 16, MEM_FLAG_NO_CACHE), DATA_PENDING) << "nor is the cache asked with the flag";
}

TEST_F(DataProvider, FlushRules) {
  const auto IsCached = [this] {
    const bool bCached = Request(A, 0x1000, 16) == DATA_DELIVERED;
    Access.aAnswer.clear();
    return bCached;
  };
  const std::pair<const char*, std::function<void()>> aFlush[] = {
      {"connect", [this] { Provider.OnDeviceConnectDone(CM_ATTACH); }},
      {"disconnect", [this] { Provider.OnDeviceDisconnectDone(); }},
      {"halt", [this] { Provider.OnDeviceHaltDone(0, HR_GENERAL); }},
      {"step", [this] { Provider.OnDeviceStepped(0); }},
      {"resume", [this] { Provider.OnDeviceResumeDone(GO_USER); }},
  };
  for (const auto& [sName, Flush] : aFlush) {
    MakeValid(0x1000, 16);
    ASSERT_TRUE(IsCached());
    Flush();
    EXPECT_FALSE(IsCached()) << sName;
  }
}

TEST_F(DataProvider, HaltDropsRequestsResumeKeepsThem) {
  Request(A, 0x1000, 16);
  Provider.OnDeviceResumeDone(GO_USER);
  MakeValid(0x1000, 16);
  EXPECT_EQ(A.Take().size(), 1);
  Request(A, 0x2000, 16);
  Provider.OnDeviceHaltDone(0, HR_GENERAL);
  MakeValid(0x2000, 16);
  EXPECT_TRUE(A.Take().isEmpty());
}

TEST_F(DataProvider, WrittenBytesAreReadAnew) {
  MakeValid(0x1000, 32);
  U8 aData[4] = {};
  Provider.OnDeviceWriteMemDone(0x1004, 4, aData);
  Request(A, 0x1000, 32);
  EXPECT_EQ(Access.TakeJobs(), QStringList{"mem 1004+4 aw0 f0"});
}

TEST_F(DataProvider, CancelTakesBackTheMemoryRequests) {
  Request(A, 0x1000, 16);
  Provider.RequestRegs(&A, 1, std::vector<U32>{3}.data());
  Access.TakeJobs();
  Provider.CancelMemRequests();
  EXPECT_EQ(Access.TakeJobs(), QStringList{"cancel JT_READ_MEM"});
  MakeValid(0x1000, 16);
  EXPECT_TRUE(A.Take().isEmpty());
  Provider.OnDeviceReadRegDone(3, 33);
  EXPECT_EQ(A.Take(), QStringList{"r3=33"}) << "registers are still awaited";
}

TEST_F(DataProvider, NothingWaitsForACancelledRead) {
  Request(A, 0x1001, 2);  // read as 0x1000 to 0x1004
  auto pGone = std::make_unique<CAsker>();
  Request(*pGone, 0x2000, 16);
  pGone.reset();
  Provider.CancelMemRequests();
  Access.TakeJobs();
  EXPECT_EQ(Request(B, 0x1000, 1), DATA_PENDING);
  EXPECT_EQ(Request(B, 0x2004, 4), DATA_PENDING);
  EXPECT_EQ(Access.TakeJobs(), (QStringList{"mem 1000+1 aw0 f0", "mem 2004+4 aw0 f0"}));
}

TEST_F(DataProvider, ListenersMayAskOrGoWhileTheyAreServed) {
  auto* pGone = new CAsker;
  A.OnMem = [&] {
    Request(A, 0x2000, 8);
    delete pGone;
  };
  Request(A, 0x1000, 8);
  Request(*pGone, 0x1000, 8);
  Request(B, 0x1000, 8);
  Access.Answer();
  EXPECT_EQ(B.Take().size(), 1);
  Access.Answer();
  EXPECT_EQ(A.Take(), (QStringList{"1000+8 0 00000000", "2000+8 0 00000000"}));
}

TEST_F(DataProvider, Registers) {
  const std::vector<U32> aIndex = {1, 9, 3};
  EXPECT_EQ(Provider.RequestRegs(&A, 3, aIndex.data()), DATA_PENDING);
  EXPECT_EQ(Access.TakeJobs(), QStringList{"regs 1,9,3"});
  Access.Answer();
  EXPECT_EQ(A.Take(), (QStringList{"r1=1001/0", "r9=1009/1", "r3=1003/0"}));
  Provider.RegIndexArray() = {3, 4};
  EXPECT_EQ(Provider.RequestRegs(&A, 2), DATA_PENDING);
  EXPECT_EQ(Access.TakeJobs(), QStringList{"regs 4"}) << "only what is not known";
  EXPECT_EQ(Provider.RequestRegs(&B, 1, &aIndex[1]), DATA_DELIVERED);
  EXPECT_EQ(B.Take(), QStringList{"r9 failed"});
  const std::vector<U32> aMany(VNODE_NUM_REGS + 1);
  EXPECT_EQ(Provider.RequestRegs(&A, VNODE_NUM_REGS + 1, aMany.data()), -1);
  Access.bAccessible = false;
  EXPECT_EQ(Provider.RequestRegs(&A, 3, aIndex.data()), DATA_UNAVAILABLE);
}

TEST_F(DataProvider, CoprocessorCacheKeepsHundred) {
  for (int i = 0; i <= 100; ++i) {
    Provider.OnDeviceReadCPRegDone(QByteArray::number(i).constData(), i);
  }
  U64 Value = 0;
  EXPECT_EQ(Provider.GetCPReg("1", &Value), 0);
  EXPECT_EQ(Value, 1u);
  EXPECT_TRUE(Access.TakeJobs().isEmpty());
  Provider.RequestCPReg(&A, "0");
  EXPECT_EQ(Access.TakeJobs(), QStringList{"cp 0"}) << "the oldest made room";
  Access.Answer();
  EXPECT_EQ(A.Take(), QStringList{"0=5"});
}

TEST_F(DataProvider, Locations) {
  ELF_SYM_LOC Const;
  Const.Type = ELF_LOC_CONST;
  Const.Value = 0x42;
  EXPECT_EQ(Provider.RequestLoc(&A, Const, 4), DATA_DELIVERED);
  EXPECT_EQ(A.Take(), QStringList{"loc 4 42"});
  EXPECT_EQ(Provider.RequestLoc(&A, RegLoc(ELF_REG_UNSPECIFIED), 4), DATA_DELIVERED);
  EXPECT_EQ(A.Take(), QStringList{"loc failed"});

  EXPECT_EQ(Provider.RequestLoc(&A, MemLoc(0x3000), 2), DATA_PENDING);
  EXPECT_EQ(Provider.RequestMem(&B, 0x3000, 2, 0, 0, 0), DATA_PENDING);
  EXPECT_EQ(Access.TakeJobs(), QStringList{"loc 3000+2"});
  Access.Answer();
  EXPECT_EQ(A.Take(), QStringList{"loc 2 11"});
  EXPECT_EQ(B.Take(), QStringList{"3000+2 17 00"}) << "memory that came for a location serves both";

  EXPECT_EQ(Provider.RequestLoc(&A, RegLoc(4), 1), DATA_PENDING);
  EXPECT_EQ(Access.TakeJobs(), QStringList{"loc 4+4"}) << "a register is fetched whole";
  Access.Answer();
  EXPECT_EQ(A.Take(), QStringList{"loc 1 11"});
  U64 Value = 0;
  EXPECT_EQ(Provider.GetReg(&Provider, 4, &Value), 0);
  EXPECT_EQ(Value, 0x44332211u);
  EXPECT_EQ(Provider.RequestLoc(&A, MemLoc(0x3000), 9), DATA_UNAVAILABLE);
}

TEST_F(DataProvider, CancelledMemoryReadDoesNotStrandALocation) {
  Request(A, 0x1000, 16);
  EXPECT_EQ(Provider.RequestLoc(&B, MemLoc(0x1004), 4), DATA_PENDING);
  Access.TakeJobs();
  Provider.CancelMemRequests();
  EXPECT_EQ(Access.TakeJobs(), (QStringList{"cancel JT_READ_MEM", "loc 1004+4"}));
  Access.Answer();
  EXPECT_EQ(B.Take(), QStringList{"loc 4 11"});
}

TEST_F(DataProvider, SynchronousReadsPumpEvents) {
  Access.bAnswerInEvents = true;
  U8 aData[4] = {};
  EXPECT_EQ(Provider.GetMem(&Provider, 0x1001, 1, 0, aData), 0);
  EXPECT_EQ(aData[0], static_cast<U8>(0x1001 * 7));
  U64 Value = 0;
  EXPECT_EQ(Provider.GetReg(&Provider, 5, &Value), 0);
  EXPECT_EQ(Value, 1005u);
  EXPECT_EQ(Provider.GetCPReg("15,0,0,0,0", &Value), 0);
  EXPECT_EQ(Value, 5u);
}

TEST_F(DataProvider, SynchronousReadGivesUpAndLateDataIsKept) {
  U8 aData[4] = {};
  QElapsedTimer Clock;
  Clock.start();
  EXPECT_EQ(Provider.GetMem(&Provider, 0x1000, 4, 0, aData), 1);
  EXPECT_GE(Clock.elapsed(), 150);
  EXPECT_LT(Clock.elapsed(), 1000);
  EXPECT_EQ(Access.sLog, QStringList{"Timeout while waiting for memory data arrival of 4 bytes @ 00001000"});
  Access.Answer();
  EXPECT_EQ(Provider.GetMem(&Provider, 0x1000, 4, 0, aData), 0);
}

TEST_F(DataProvider, LocationMissIsReadAtOnceAndCached) {
  U8 aData[8] = {};
  EXPECT_EQ(Provider.GetLoc(&Provider, MemLoc(0x3000), 4, aData), 0);
  EXPECT_EQ(aData[3], 4);
  EXPECT_EQ(Provider.GetLoc(&Provider, MemLoc(0x3002), 2, aData), 0);
  EXPECT_EQ(aData[0], 3);
  EXPECT_EQ(Access.TakeJobs(), QStringList{"now 3000+4"});
  EXPECT_EQ(Provider.GetLoc(&Provider, MemLoc(0x3000), 9, aData), -1);
  Access.IsReadable = [](U32) { return false; };
  EXPECT_EQ(Provider.GetLoc(&Provider, MemLoc(0x4000), 4, aData), 1);
}
