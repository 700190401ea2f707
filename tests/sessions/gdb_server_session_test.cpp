// A session with a core behind a GDB server.

#include "session_runner.h"
#include "tests/common/loopback_port.h"

#include <QProcess>

namespace {

class GdbServerSession : public SessionTest {
protected:
  // Its memory is empty: the session loads the program.
  void StartEmulator(const QString& sMachine) {
    m_Emulator.setStandardOutputFile(QProcess::nullDevice());
    m_Emulator.setStandardErrorFile(Path("emulator.log"));
    m_Port.Listen();
    m_Emulator.startCommand(u"qemu-system-arm -S -display none -monitor none -serial none -M "_s + sMachine +
                            QString::fromStdString(m_Port.EmulatorOptions("gdb", "-gdb chardev:")));
    if (!m_Emulator.waitForStarted()) GTEST_SKIP() << "qemu-system-arm is not installed";
    m_Port.Close();
  }
  void TearDown() override {
    m_Emulator.kill();
    m_Emulator.waitForFinished();
  }
  // A project for a program on that core.
  QString Project(const QString& sDevice, const QString& sElf) const {
    return Write("server.vdebug",
                 u"void OnProjectLoad (void) {\n  Project.SetDevice (\"%1\");\n  Project.SetHostIF (\"IP\", \"%2\");\n"
                 "  Project.SetTargetIF (\"JTAG\");\n  File.Open (\"%3/%4\");\n}\n"_s
                     .arg(sDevice, QString::fromStdString(m_Port.Address()), QStringLiteral(VEXOR_SOURCE_DIR), sElf)
                     .toUtf8());
  }

  CLoopbackPort m_Port;
  QProcess m_Emulator;
};

TEST_F(GdbServerSession, LoadsGoesToMainBreaksStepsAndResets) {
  StartEmulator(u"mps2-an386"_s);
  const QString sElf = u"examples/traffic_light/traffic_light.elf"_s;
  const quint32 Main = AddressOf(sElf, u"main"_s);
  const quint32 Function = AddressOf(sElf, u"traffic_init"_s);
  const SESSION_RESULT Run = RunSession(
      u"File.Open (\"%1\");\n@wait idle\nDebug.Start();\n@wait halted\nTarget.GetReg PC\n"
      "Break.Set 0x%2\nDebug.Continue\n@wait halted\nTarget.GetReg PC\n"
      "Debug.StepInto\n@wait halted\nTarget.GetReg (\"PC\")\nTarget.ReadU32 0\n"
      "Break.Clear 0x%2\nDebug.Reset\n@wait halted\nTarget.GetReg PC\nDebug.Stop();\n@wait disconnected\n"_s
          .arg(Project(u"CMSDK_CM4"_s, sElf))
          .arg(Function, 0, 16));
  Run.Expect(0, {"Connected to the GDB server 127.0.0.1:"});
  EXPECT_EQ(Main, Run.Value(0));
  EXPECT_EQ(Function, Run.Value(1));
  EXPECT_TRUE(Run.Value(2) == Function + 2 || Run.Value(2) == Function + 4) << Run.Value(2);
  EXPECT_EQ(0, Run.Value(3) % 8) << "the program was loaded: its first word is the initial stack pointer";
  EXPECT_NE(0, Run.Value(3));
  EXPECT_EQ(Main, Run.Value(4)) << "a reset runs to main again";
}

TEST_F(GdbServerSession, DebugsACoreThatTheSimulatorDoesNotHave) {
  StartEmulator(u"none -cpu cortex-r5 -m 16M"_s);
  const QString sElf = u"tests/probe_gdb/firmware/cortex-r5.elf"_s;
  const quint32 Function = AddressOf(sElf, u"NextValue"_s);
  const quint32 Counter = AddressOf(sElf, u"g_Counter"_s);
  const SESSION_RESULT Run = RunSession(
      u"File.Open (\"%1\");\n@wait idle\nDebug.SetResetMode RM_RESET_HALT\nDebug.Start();\n@wait halted\n"
      "Target.GetReg PC\nBreak.Set 0x%2\nDebug.Continue\n@wait halted\nTarget.GetReg PC\nTarget.ReadU32 0x%3\n"
      "Debug.Continue\n@wait halted\nTarget.ReadU32 0x%3\nDebug.StepInto\n@wait halted\nTarget.GetReg PC\n"
      "Target.GetReg SP\nTarget.GetReg R13_svc\nDebug.Stop();\n@wait disconnected\n"_s
          .arg(Project(u"Cortex-R5"_s, sElf))
          .arg(Function, 0, 16)
          .arg(Counter, 0, 16));
  Run.Expect(0, {"with core Cortex-R5"});
  EXPECT_EQ(0, Run.Value(0));
  EXPECT_EQ(Function, Run.Value(1));
  EXPECT_EQ(0, Run.Value(2));
  EXPECT_EQ(1, Run.Value(3)) << "one call further";
  EXPECT_EQ(Function + 4, Run.Value(4));
  EXPECT_NE(0, Run.Value(5)) << "the stack pointer of the mode that the core is in";
  EXPECT_EQ(Run.Value(5), Run.Value(6));
}

TEST_F(GdbServerSession, WithoutAServerTheConnectionFailsAndTheProgramGoesOn) {
  RunSession(u"File.Open (\"%1\");\n@wait idle\nDebug.Connect\n@wait idle\nUtil.Log (\"still here\");\n"_s.arg(
                 Project(u"Cortex-M4"_s, u"examples/traffic_light/traffic_light.elf"_s)))
      .Expect(0, {"Cannot connect to 127.0.0.1:", "Connection failed", "still here"});
}

}  // namespace
