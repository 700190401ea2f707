// Real cores behind a real server: every case runs on each machine of the table.

#include <chrono>
#include <thread>

#include "server_fixture.h"
#include "tests/common/loopback_port.h"
#include "tests/common/symbol_address.h"

namespace {

constexpr U32 BANKED_CPSR = 8;
constexpr U32 BANKED_PC = 9;
constexpr U32 BANKED_SVC_SP = 26;

struct MACHINE {
  const char* sName;
  const char* sDevice;
  const char* sProgram;
  const char* sMachine;  // and options
  bool bCortexM;
  U32 DataAddr;
  U32 MainIDRegister;  // of the coprocessor; 0: the core has none

  std::string Program() const { return std::string(VEXOR_SOURCE_DIR "/tests/probe_gdb/firmware/") + sProgram + ".elf"; }
  friend void PrintTo(const MACHINE& Machine, std::ostream* pStream) { *pStream << Machine.sName; }
};

const MACHINE MACHINES[] = {
    {"M3", "Cortex-M3", "cortex-m3", "mps2-an385", true, 0x20000000, 0},
    {"M4", "Cortex-M4", "cortex-m4", "mps2-an386", true, 0x20000000, 0},
    {"M7", "Cortex-M7", "cortex-m7", "mps2-an500", true, 0x20000000, 0},
    {"M33", "Cortex-M33", "cortex-m33", "mps2-an505", true, 0x30000000, 0},
    {"A9", "Cortex-A9", "cortex-a9", "vexpress-a9", false, 0x60020000, 0x410FC090},
    {"R5", "Cortex-R5", "cortex-r5", "none -cpu cortex-r5 -m 16M", false, 0x20000, 0x411FC153},
    {"ARM926", "ARM9", "arm926ej-s", "versatilepb", false, 0x20000, 0x41069265},
    {"ARM1136", "ARM11", "arm1136jf-s", "realview-eb -cpu arm1136", false, 0x20000, 0x4117B363},
};

class EmulatorTest : public CServerTest, public testing::WithParamInterface<MACHINE> {
protected:
  void SetUp() override {
    CServerTest::SetUp();
    const MACHINE& Machine = GetParam();
    m_Port.Listen();
    m_MonitorPort.Listen();
    const std::string sImage =
        std::string(Machine.sMachine).starts_with("none") ? " -device loader,cpu-num=0,file=" : " -kernel ";
    const std::string sCommand = "qemu-system-arm -S -display none -monitor none -serial none -audiodev none,id=none" +
                                 m_Port.EmulatorOptions("gdb", "-gdb chardev:") +
                                 m_MonitorPort.EmulatorOptions("qmp", "-qmp chardev:") + " -M " + Machine.sMachine +
                                 sImage + Machine.Program();
    m_Emulator.setStandardOutputFile(QProcess::nullDevice());
    m_Emulator.setStandardErrorFile(QProcess::nullDevice());
    m_Emulator.startCommand(QString::fromStdString(sCommand));
    if (!m_Emulator.waitForStarted()) GTEST_SKIP() << "qemu-system-arm is not installed";
    m_Port.Close();
    m_MonitorPort.Close();
    const QString sElf = QString::fromStdString(Machine.Program());
    m_Start = AddressOf(sElf, QStringLiteral("Start"));
    m_NextValue = AddressOf(sElf, QStringLiteral("NextValue"));
    m_Counter = AddressOf(sElf, QStringLiteral("g_Counter"));
    m_Rounds = AddressOf(sElf, QStringLiteral("g_Rounds"));
    m_ISA = Machine.bCortexM ? VNODE_BP_THUMB : VNODE_BP_ARM;
    m_PCIndex = Machine.bCortexM ? U32(VNODE_REG_PC) : BANKED_PC;
    ASSERT_TRUE(
        WaitFor([&] { return m_Emulator.waitForFinished(0) || Connect(m_Port.Address(), Machine.sDevice) == 0; }));
    ASSERT_TRUE(API.VNODEARM_IsConnected());
    Messages.Errors.clear();
  }
  void TearDown() override {
    CServerTest::TearDown();
    m_Emulator.kill();
    m_Emulator.waitForFinished();
  }

  U32 PC() { return ReadReg(m_PCIndex); }
  // Until the word is above the value: a busy host may give the emulator the processor late.
  void RunUntilAbove(U32 Addr, U32 Value) {
    EXPECT_TRUE(WaitFor([&] {
      API.VNODEARM_GoEx(0, 1);
      EXPECT_EQ(API.VNODEARM_IsHalted(), 0);
      std::this_thread::sleep_for(std::chrono::milliseconds(20));
      EXPECT_EQ(API.VNODEARM_Halt(), 0);
      EXPECT_EQ(API.VNODEARM_IsHalted(), 1);
      return ReadWord(Addr) > Value;
    }));
  }

  QProcess m_Emulator;
  CLoopbackPort m_Port, m_MonitorPort;
  U32 m_Start = 0, m_NextValue = 0, m_Counter = 0, m_Rounds = 0, m_ISA = 0, m_PCIndex = 0;
};

TEST_P(EmulatorTest, StartsAtTheEntryRunsHaltsAndGoesBackThere) {
  EXPECT_EQ(API.VNODEARM_IsHalted(), 1);
  EXPECT_EQ(PC(), m_Start);
  RunUntilAbove(m_Counter, 0);
  const U32 First = ReadWord(m_Counter);
  EXPECT_EQ(ReadWord(m_Counter), First) << "a halted core does not count";
  RunUntilAbove(m_Counter, First);
  ASSERT_NE(PC(), m_Start);
  EXPECT_EQ(API.VNODEARM_Reset(), 0);
  EXPECT_EQ(API.VNODEARM_IsHalted(), 1);
  EXPECT_EQ(PC(), m_Start);
  RunUntilAbove(m_Counter, 0);
  EXPECT_THAT(Messages.Errors, testing::IsEmpty());
}

TEST_P(EmulatorTest, BreakpointsStopEachTimeAndNoMoreWhenCleared) {
  for (const U32 Implementations : {VNODE_BP_IMP_ANY, VNODE_BP_IMP_HW, VNODE_BP_IMP_SW}) {
    SCOPED_TRACE(Implementations);
    const int Handle = API.VNODEARM_SetBPEx(m_NextValue, Implementations | m_ISA);
    ASSERT_NE(Handle, 0);
    if (Implementations != VNODE_BP_IMP_ANY) {
      EXPECT_EQ(ImpFlagsOf(Handle) == VNODE_BP_IS_HARD, Implementations == VNODE_BP_IMP_HW);
    }
    API.VNODEARM_GoEx(0, 1);
    ASSERT_TRUE(WaitForHalt());
    EXPECT_EQ(PC(), m_NextValue);
    const U32 Count = ReadWord(m_Counter);
    API.VNODEARM_GoEx(0, 1);
    ASSERT_TRUE(WaitForHalt());
    EXPECT_EQ(PC(), m_NextValue);
    EXPECT_EQ(ReadWord(m_Counter), Count + 1) << "one call further";
    EXPECT_EQ(API.VNODEARM_Step(), 0);
    EXPECT_EQ(PC(), m_NextValue + (GetParam().bCortexM ? 2 : 4));
    EXPECT_EQ(API.VNODEARM_ClrBPEx(Handle), 0);
    RunUntilAbove(m_Counter, Count + 2);
  }
  EXPECT_THAT(Messages.Errors, testing::IsEmpty());
}

TEST_P(EmulatorTest, ABreakpointCanBeSetAndClearedWhileTheCoreRuns) {
  API.VNODEARM_GoEx(0, 1);
  std::this_thread::sleep_for(std::chrono::milliseconds(20));
  const int Handle = API.VNODEARM_SetBPEx(m_NextValue, VNODE_BP_IMP_ANY | m_ISA);
  ASSERT_NE(Handle, 0);
  ASSERT_TRUE(WaitForHalt());
  EXPECT_EQ(PC(), m_NextValue);
  EXPECT_EQ(API.VNODEARM_ClrBPEx(-1), 0);
  API.VNODEARM_GoEx(0, 1);
  const int Elsewhere = API.VNODEARM_SetBPEx(m_Start, VNODE_BP_IMP_ANY | m_ISA);
  EXPECT_NE(Elsewhere, 0);
  EXPECT_EQ(API.VNODEARM_IsHalted(), 0) << "it goes on behind the short stop";
  EXPECT_EQ(API.VNODEARM_ClrBPEx(Elsewhere), 0);
  EXPECT_EQ(API.VNODEARM_IsHalted(), 0);
}

TEST_P(EmulatorTest, DataBreakpointsStopAtTheirAccess) {
  U32 Handle = 0;
  RunUntilAbove(m_Counter, 0);
  VNODEARM_DATA_EVENT Event = {sizeof(Event), 1, m_Rounds, 0, 0, 0xFFFFFFFF, 5, 0x10, {}};  // write of a word
  ASSERT_EQ(API.VNODEARM_SetDataEvent(&Event, &Handle), 0);
  API.VNODEARM_GoEx(0, 1);
  ASSERT_TRUE(WaitForHalt());
  // The emulator stops ahead of the access.
  const U32 Before = ReadWord(m_Rounds);
  EXPECT_EQ(ReadWord(m_Counter), (Before + 1) * 1024);
  EXPECT_EQ(API.VNODEARM_Step(), 0);
  EXPECT_EQ(ReadWord(m_Rounds), Before + 1);
  for (U32 i = 2; i < 4; ++i) {
    API.VNODEARM_GoEx(0, 1);
    ASSERT_TRUE(WaitForHalt());
    EXPECT_EQ(ReadWord(m_Counter), (Before + i) * 1024) << "one round further";
  }
  EXPECT_EQ(API.VNODEARM_ClrDataEvent(Handle), 0);
  RunUntilAbove(m_Rounds, Before + 3);

  Event.DataMask = 0;
  EXPECT_EQ(API.VNODEARM_SetDataEvent(&Event, &Handle), VNODE_DATA_EVENT_NO_VALUE_MATCH);
}

TEST_P(EmulatorTest, ARunningCoreRunsOnBetweenTwoConnections) {
  ASSERT_NE(API.VNODEARM_SetBPEx(m_NextValue, VNODE_BP_IMP_ANY | m_ISA), 0);
  API.VNODEARM_GoEx(0, 1);
  ASSERT_TRUE(WaitForHalt());
  const U32 Before = ReadWord(m_Counter);
  EXPECT_EQ(API.VNODEARM_ClrBPEx(-1), 0);
  EXPECT_TRUE(WaitFor([&] {
    API.VNODEARM_GoEx(0, 1);
    API.VNODEARM_Close();
    EXPECT_FALSE(API.VNODEARM_IsConnected());
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    EXPECT_EQ(Connect(m_Port.Address(), GetParam().sDevice), 0);
    return ReadWord(m_Counter) > Before + 100;
  }));

  const U32 Stopped = ReadWord(m_Counter);
  API.VNODEARM_Close();
  std::this_thread::sleep_for(std::chrono::milliseconds(20));
  ASSERT_EQ(Connect(m_Port.Address(), GetParam().sDevice), 0);
  EXPECT_EQ(ReadWord(m_Counter), Stopped) << "a halted core stays halted";
}

TEST_P(EmulatorTest, MemoryOfARunningCoreIsReadThroughTheMonitorAlone) {
  API.VNODEARM_GoEx(0, 1);
  U32 Value = 0;
  EXPECT_NE(API.VNODEARM_ReadMem(m_Counter, 4, &Value), 0);
  EXPECT_THAT(Messages.Errors, testing::ElementsAre(testing::HasSubstr("while the core runs")));
  EXPECT_NE(API.VNODEARM_WriteU32(m_Counter, 0), 0);
  API.VNODEARM_Close();

  ASSERT_EQ(Connect(m_Port.Address() + ",qmp=" + std::to_string(m_MonitorPort.Port()), GetParam().sDevice), 0);
  API.VNODEARM_GoEx(0, 1);
  U32 First = 0;
  ASSERT_EQ(API.VNODEARM_ReadMem(m_Counter, 4, &First), 0);
  EXPECT_TRUE(WaitFor([&] { return API.VNODEARM_ReadMem(m_Counter, 4, &Value) == 0 && Value != First; }));
  EXPECT_EQ(API.VNODEARM_IsHalted(), 0);
  std::vector<U8> Running(5000), Halted(5000, 1);
  EXPECT_EQ(API.VNODEARM_ReadMem(m_Start, 5000, Running.data()), 0);
  EXPECT_EQ(API.VNODEARM_Halt(), 0);
  EXPECT_EQ(API.VNODEARM_ReadMem(m_Start, 5000, Halted.data()), 0);
  EXPECT_EQ(Running, Halted);
  EXPECT_EQ(API.VNODEARM_WriteU32(m_Counter, 7), 0);
  EXPECT_EQ(ReadWord(m_Counter), 7u);
}

TEST_P(EmulatorTest, RegistersHaveTheNumbersOfTheirCore) {
  EXPECT_EQ(API.VNODEARM_WriteReg(5, 0x12345678), 0);
  EXPECT_EQ(ReadReg(5), 0x12345678u);
  U32 Value = 0;
  const bool bCortexM = GetParam().bCortexM;
  EXPECT_EQ(API.VNODEARM_CP15_ReadEx(0, 0, 0, 0, &Value), bCortexM ? -1 : 0);
  EXPECT_EQ(Value, GetParam().MainIDRegister);
  if (bCortexM) {
    EXPECT_NE(ReadReg(VNODE_REG_XPSR) & 1u << 24, 0u);
    EXPECT_EQ(ReadReg(VNODE_REG_EPSR), ReadReg(VNODE_REG_XPSR) & 0x0700FC00);
    EXPECT_EQ(ReadReg(VNODE_REG_SP), GetParam().DataAddr + 0x1000);
    const bool bFloat = GetParam().sName != std::string("M3");
    ASSERT_EQ(HasReg(VNODE_REG_S0 + 3), bFloat);
    if (!bFloat) return;
    for (U32 i = 2; i < 4; ++i) EXPECT_EQ(API.VNODEARM_WriteReg(VNODE_REG_S0 + i, 0x3F800000 + i), 0);
    for (U32 i = 2; i < 4; ++i) EXPECT_EQ(ReadReg(VNODE_REG_S0 + i), 0x3F800000 + i);
    return;
  }
  EXPECT_EQ(ReadReg(BANKED_CPSR) & 0x1F, 19u) << "supervisor mode";
  EXPECT_EQ(API.VNODEARM_Step(), 0);
  EXPECT_EQ(ReadReg(BANKED_SVC_SP), GetParam().DataAddr + 0x1000);
  EXPECT_FALSE(HasReg(15)) << "the stack pointer of user mode is not in the protocol";
}

INSTANTIATE_TEST_SUITE_P(Machines, EmulatorTest, testing::ValuesIn(MACHINES),
                         [](const auto& Info) { return std::string(Info.param.sName); });

}  // namespace
