// The operations against the probe library itself and its simulated board.

#include <QFile>

#include "device/probe_api/register_index.h"
#include "device_fixture.h"

namespace {

constexpr U32 FLASH = 0x08000000;
constexpr U32 RAM = 0x20000000;
constexpr U32 CODE = FLASH + 0x100;

// Vector table and a program: R0 counts up for ever, one call a round.
std::vector<U8> MakeImage() {
  std::vector<U8> Image(0x120, 0);
  const auto Word = [&Image](U32 Offset, U32 Value) { std::memcpy(&Image[Offset], &Value, sizeof(Value)); };
  const auto Half = [&Image](U32 Offset, U16 Value) { std::memcpy(&Image[Offset], &Value, sizeof(Value)); };
  Word(0, RAM + 0x1000);
  Word(4, CODE | 1);
  Half(0x100, 0x2000);  // movs r0, #0
  Half(0x102, 0x3001);  // adds r0, #1
  Half(0x104, 0xF000);  // bl 0x110
  Half(0x106, 0xF804);
  Half(0x108, 0xE7FB);  // b 0x102
  Half(0x110, 0x0001);  // movs r1, r0
  Half(0x112, 0x4770);  // bx lr
  return Image;
}

class CRealLibraryTest : public ::testing::Test {
protected:
  void SetUp() override {
    const QString sFolder = QStringLiteral(VEXOR_BIN_DIR);
    if (!QFile::exists(sFolder + QStringLiteral("/libvnode.so"))) GTEST_SKIP() << "no probe library in " VEXOR_BIN_DIR;
    ASSERT_EQ(Ctx.LoadLibrary(sFolder), 0) << Ctx.Library.ErrorText().toStdString();
    Ops.Info.UpdateAll();
    Ops.Configurator.SetConfigParam(DCP_DEVICE_NAME, "STM32F407VG");
    ASSERT_EQ(Ops.Connection.Connect(CM_DOWNLOAD_RESET), 0) << Logs();
    ASSERT_EQ(Ops.Control.Reset(RM_BEFORE_DOWNLOAD), 0) << Logs();
  }
  void TearDown() override { Ops.Connection.Disconnect(); }

  void Download() {
    const std::vector<U8> Image = MakeImage();
    const U32 aRange[] = {FLASH, FLASH + static_cast<U32>(Image.size())};
    ASSERT_EQ(Ops.Memory.WriteMemMultiple(1, aRange, static_cast<U32>(Image.size()), Image.data(), 0xFFFFFFFF, 0,
                                          MEM_FLAG_DOWNLOAD),
              Image.size())
        << Logs();
    ASSERT_EQ(Ctx.State.LastDownloadResult, 0) << Logs();
    ASSERT_EQ(Ops.Control.Reset(RM_RESET_HALT), 0);
    Ops.Halts.SetSessionReady();
    Sink.Events.clear();
  }
  // Polls as the device thread does until something is posted; empty after two seconds without.
  std::string WaitForEvents() {
    const U64 End = Ctx.Clock.NowMs() + 2000;
    while (Sink.Events.isEmpty() && Ctx.Clock.NowMs() < End) {
      Ops.Halts.CheckHandleHalt();
      Ctx.Clock.SleepMs(5);
    }
    return Sink.TakeEvents();
  }
  std::string RunTo(U32 Addr) {
    if (Ops.Control.RunTo(Addr) != 1) return "refused";
    Sink.Events.clear();
    Ops.Control.Continue();
    return WaitForEvents();
  }
  U32 Reg(U32 Index) {
    U64 Value = 0;
    EXPECT_EQ(Ops.Registers.ReadReg(Index, &Value), 0);
    return static_cast<U32>(Value);
  }
  std::string Logs() const { return Sink.Log_.join(QLatin1Char('\n')).toStdString(); }

  CRecordingSink Sink;
  CFakeProgram Program;
  CDeviceContext Ctx{Sink, Program};
  CDeviceOps Ops{Ctx};
};

TEST_F(CRealLibraryTest, DownloadRunToStepAndBreak) {
  Download();
  EXPECT_EQ(Reg(VNODE_REG_PC), CODE);
  EXPECT_EQ(Reg(VNODE_REG_SP), RAM + 0x1000);
  EXPECT_EQ(RunTo(CODE + 4), "JT_HALT 0 3 8000104");
  EXPECT_EQ(Reg(0), 1u);
  ASSERT_EQ(Ops.Stepper.StepInst(), 0);
  EXPECT_EQ(Ctx.State.Target.PC, CODE + 0x10) << "into the call";
  ASSERT_EQ(Ops.Stepper.StepInst(), 0);
  ASSERT_EQ(Ops.Stepper.StepInst(), 0);
  EXPECT_EQ(Ctx.State.Target.PC, CODE + 8) << "and back";

  ASSERT_EQ(Ops.Breakpoints.SetBreakpoint(CODE + 0x12, BP_STATE_ENABLED, BP_TYPE_ANY), 0) << Logs();
  U32 ImpFlags = 0;
  ASSERT_TRUE(Ops.Breakpoints.GetImplementation(CODE + 0x12, ImpFlags));
  EXPECT_STRNE(BreakpointImpText(ImpFlags), "Pending");
  for (U32 Round = 2; Round < 5; ++Round) {
    Ops.Control.Continue();
    EXPECT_EQ(WaitForEvents(), "JT_HALT 0 2 8000112");
    EXPECT_EQ(Reg(1), Round);
  }
  Ops.Breakpoints.ClearBreakpoint(CODE + 0x12);
  Ops.Control.Continue();
  Ctx.Clock.SleepMs(60);
  Ops.Halts.CheckHandleHalt();
  EXPECT_EQ(Sink.TakeEvents(), "") << "it runs";
  EXPECT_EQ(Ops.Control.Halt(), 0);
  EXPECT_EQ(WaitForEvents().substr(0, 12), "JT_HALT 0 0 ");
  EXPECT_GT(Reg(0), 100u);
}

TEST_F(CRealLibraryTest, MemoryReadsBackWhatWasWritten) {
  std::vector<U8> Data(3001), Back(Data.size()), Status(Data.size());
  for (U32 i = 0; i < Data.size(); ++i) Data[i] = static_cast<U8>(i * 31 + 7);
  const U32 Size = static_cast<U32>(Data.size());
  ASSERT_EQ(Ops.Memory.WriteMem(RAM + 1, Size, 0, 0, 0, Data.data()), Size) << Logs();
  EXPECT_EQ(Ops.Memory.ReadMem(RAM + 1, Size, 0, 0, 0, Back.data(), Status.data()), Size);
  EXPECT_EQ(Back, Data);
  U32 Word = 0;
  EXPECT_EQ(Ops.Memory.ReadWord(0x60000000, &Word), -1) << "nothing there";
  EXPECT_EQ(Word, 0xEEEEEEEEu);
}

TEST_F(CRealLibraryTest, BreakpointsOutliveTheConnection) {
  Download();
  Ops.Breakpoints.SetBreakpoint(CODE + 8, BP_STATE_ENABLED, BP_TYPE_HARD);
  ASSERT_EQ(Ops.Connection.Disconnect(), 0);
  EXPECT_FALSE(Ctx.IsConnected());
  ASSERT_EQ(Ops.Connection.Connect(CM_DOWNLOAD_RESET), 0);
  ASSERT_EQ(Ops.Control.Reset(RM_BEFORE_DOWNLOAD), 0);
  Download();
  Ops.Control.Continue();
  EXPECT_EQ(WaitForEvents(), "JT_HALT 0 2 8000108");
}

TEST_F(CRealLibraryTest, KnowsItsDevices) {
  const PROBE_FACTS Facts = Ctx.Facts.Get();
  EXPECT_GT(Facts.NumDevices, 10u);
  EXPECT_TRUE(Facts.SupportedCores.contains(VNODE_CORE_CORTEX_M4));
  EXPECT_EQ(Facts.RAMAddr, RAM);
  EXPECT_EQ(Facts.sDeviceName, QStringLiteral("STM32F407VG"));
  EXPECT_FALSE(Facts.sLibraryPath.isEmpty());
  EXPECT_NE(Facts.LibraryVersion, 0u);
}

}  // namespace
