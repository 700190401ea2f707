#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>

#include "session_runner.h"

namespace {

struct EXAMPLE {
  const char* sProject;
  const char* sElf;
  const char* sFunction;  // called from main
};
const EXAMPLE EXAMPLES[] = {
    {"examples/traffic_light/traffic_light.vdebug", "examples/traffic_light/traffic_light.elf", "traffic_init"},
    {"examples/thermostat/thermostat.vdebug", "examples/thermostat/thermostat.elf", "thermostat_step"},
};

class ExampleSession : public testing::TestWithParam<EXAMPLE> {};

TEST_P(ExampleSession, GoesToMainBreaksStepsResetsAndStops) {
  const QString sElf = QLatin1String(GetParam().sElf);
  const quint32 Main = AddressOf(sElf, QStringLiteral("main"));
  const quint32 Function = AddressOf(sElf, QLatin1String(GetParam().sFunction));
  ASSERT_NE(0u, Main);
  ASSERT_NE(0u, Function);
  const SESSION_RESULT Run = RunSession(QStringLiteral("File.Open (\"%1\");\n"
                                                       "@wait idle\n"
                                                       "Debug.Start();\n"
                                                       "@wait halted\n"
                                                       "Target.GetReg PC\n"
                                                       "Break.Set 0x%2\n"
                                                       "Debug.Continue\n"
                                                       "@wait halted\n"
                                                       "Target.GetReg PC\n"
                                                       "Debug.StepInto\n"
                                                       "@wait halted\n"
                                                       "Target.GetReg (\"PC\")\n"
                                                       "Target.ReadU32 0\n"
                                                       "Target.GetReg SP\n"
                                                       "Debug.Reset\n"
                                                       "@wait halted\n"
                                                       "Target.GetReg PC\n"
                                                       "Debug.Stop();\n"
                                                       "@wait disconnected\n")
                                            .arg(QLatin1String(GetParam().sProject))
                                            .arg(Function, 0, 16));
  EXPECT_EQ(0, Run.ExitCode) << Run.sOutput.toStdString();
  EXPECT_EQ(Main, Run.Value(0)) << Run.sOutput.toStdString();
  EXPECT_EQ(Function, Run.Value(1)) << Run.sOutput.toStdString();
  EXPECT_TRUE(Run.Value(2) == Function + 2 || Run.Value(2) == Function + 4) << Run.Value(2);
  const qint64 Top = Run.Value(3);
  EXPECT_EQ(0, Top % 8) << "the first word of the vector table is the initial stack pointer";
  EXPECT_LT(Run.Value(4), Top);
  EXPECT_GT(Run.Value(4), Top - 1024);
  EXPECT_EQ(Main, Run.Value(5)) << "a reset runs to main again";
  for (const char* sEcho : {"Debug.Start();", "Debug.Continue();", "Debug.StepInto();", "Debug.Reset();",
                            "Debug.Stop();", "Target.GetReg (\"PC\");"}) {
    EXPECT_TRUE(Run.Lines.contains(QLatin1String(sEcho))) << sEcho << "\n" << Run.sOutput.toStdString();
  }
}

INSTANTIATE_TEST_SUITE_P(Examples, ExampleSession, testing::ValuesIn(EXAMPLES));

struct FAILURE {
  const char* sSession;
  const char* sText;
};
const FAILURE FAILURES[] = {
    {"Debug.Strat();", "Debug.Strat(): unknown command. Type ? or help for a list of available commands."},
    {"Target.ReadU32 1 2 3", "Target.ReadU32 (1, 2, 3): wrong parameter count"},
    {"Debug.Continue();", "Debug.Continue(): not connected"},
    {"Target.GetReg PC", "Target.GetReg (\"PC\"): not connected"},
    {"File.Open no_such_project.vdebug", "file not found"},
    {"Window.Show Nothing", "unknown window"},
    {"@wait halted 50", "timeout after 50 ms"},
    {"@nonsense", "unknown directive"},
    {"Project.SetTargetIF FOO", "unknown target interface"},
    {"Project.SetTIFSpeed abc", "invalid number"},
    {"Edit.SysVar VAR_NONSENSE 1", "unknown system variable"},
};

class FailingSession : public testing::TestWithParam<FAILURE> {};

TEST_P(FailingSession, SaysWhyAndExitsWithOne) {
  const SESSION_RESULT Run = RunSession(QLatin1String(GetParam().sSession) + QStringLiteral("\nUtil.Log never\n"));
  EXPECT_EQ(1, Run.ExitCode) << Run.sOutput.toStdString();
  EXPECT_TRUE(Run.Has(GetParam().sText)) << Run.sOutput.toStdString();
  EXPECT_FALSE(Run.Has("never")) << "nothing runs behind a failure";
}

INSTANTIATE_TEST_SUITE_P(Commands, FailingSession, testing::ValuesIn(FAILURES));

struct BAD_PROJECT {
  const char* sText;
  const char* sError;
};
const BAD_PROJECT BAD_PROJECTS[] = {
    {"void Other (void) {}\n", "Required user function missing: void OnProjectLoad (void);"},
    {"void OnProjectLoad (void) {\n  Project.SetDevice (\"nRF52840_xxAA\")\n}\n", "Expected a ';' at line 3"},
    {"void OnProjectLoad (void) {\n", "Unexpected end of file looking for '}'"},
    {"", "empty file"},
    {"void OnProjectLoad (void) { int a; a = 0; a = 1 / a; }\n", "Error in script function void OnProjectLoad (void);"},
};

class BadProject : public testing::TestWithParam<BAD_PROJECT> {};

TEST_P(BadProject, IsReportedAndTheProgramGoesOn) {
  QTemporaryDir Dir;
  const QString sPath = Dir.filePath(QStringLiteral("bad.vdebug"));
  QFile File(sPath);
  ASSERT_TRUE(File.open(QIODevice::WriteOnly));
  File.write(GetParam().sText);
  File.close();
  const SESSION_RESULT Run =
      RunSession(QStringLiteral("File.Open (\"%1\");\n@wait idle\nUtil.Log (\"still here\");\n").arg(sPath));
  EXPECT_EQ(0, Run.ExitCode) << Run.sOutput.toStdString();
  // The console's texts have their full stops taken out.
  EXPECT_TRUE(Run.Has(GetParam().sError)) << Run.sOutput.toStdString();
  EXPECT_TRUE(Run.Has("still here")) << Run.sOutput.toStdString();
}

INSTANTIATE_TEST_SUITE_P(Projects, BadProject, testing::ValuesIn(BAD_PROJECTS));

TEST(BadInput, UnknownDeviceFailsTheConnection) {
  const SESSION_RESULT Run =
      RunSession(QStringLiteral("Project.SetDevice NoSuchPart\nProject.SetHostIF USB\nProject.SetTargetIF SWD\n"
                                "Debug.Connect\n@wait idle\nUtil.Log (\"still here\");\n@wait connected 300\n"));
  EXPECT_EQ(1, Run.ExitCode);
  EXPECT_TRUE(Run.Has("Connect: could not configure V-Node")) << Run.sOutput.toStdString();
  EXPECT_TRUE(Run.Has("Connection failed")) << Run.sOutput.toStdString();
  EXPECT_TRUE(Run.Has("still here"));
}

TEST(BadInput, HalfAProgramFileIsRefused) {
  QTemporaryDir Dir;
  QFile Whole(QStringLiteral(VEXOR_SOURCE_DIR "/examples/thermostat/thermostat.elf"));
  ASSERT_TRUE(Whole.open(QIODevice::ReadOnly));
  QFile Half(Dir.filePath(QStringLiteral("half.elf")));
  ASSERT_TRUE(Half.open(QIODevice::WriteOnly));
  Half.write(Whole.read(Whole.size() / 2));
  Half.close();
  const SESSION_RESULT Run =
      RunSession(QStringLiteral("File.Open (\"%1\");\n@wait idle\nUtil.Log (\"still here\");\n").arg(Half.fileName()));
  EXPECT_EQ(0, Run.ExitCode) << Run.sOutput.toStdString();
  EXPECT_TRUE(Run.Has("Could not read the program file")) << Run.sOutput.toStdString();
  EXPECT_TRUE(Run.Has("still here"));
}

TEST(BadInput, AMissingProbeLibraryIsSaidAndTheProgramGoesOn) {
  QTemporaryDir Dir;
  const QString sProgram = Dir.filePath(QStringLiteral("vexor"));
  ASSERT_TRUE(QFile::copy(QStringLiteral(VEXOR_BIN_DIR "/vexor"), sProgram));
  const SESSION_RESULT Run = RunProgram(sProgram, {QStringLiteral("-batch"), QStringLiteral("-")},
                                        "Project.SetDevice nRF52840_xxAA\nProject.SetHostIF USB\nDebug.Connect\n"
                                        "@wait idle\nUtil.Log (\"still here\");\n");
  EXPECT_EQ(0, Run.ExitCode) << Run.sOutput.toStdString();
  EXPECT_TRUE(Run.Has("The V-Node library could not be loaded")) << Run.sOutput.toStdString();
  EXPECT_TRUE(Run.Has("Connection failed"));
  EXPECT_TRUE(Run.Has("still here"));
}

TEST(Session, AFailingLineMayBeAllowed) {
  const SESSION_RESULT Run =
      RunSession(QStringLiteral("-Debug.Halt ()\n-Debug.Continue\nUtil.Log (\"on\");\n@quit 7\n"));
  EXPECT_EQ(7, Run.ExitCode) << Run.sOutput.toStdString();
  EXPECT_TRUE(Run.Has("on"));
}

TEST(Session, AMissingBatchFileIsAnError) {
  const SESSION_RESULT Run = RunProgram(QStringLiteral(VEXOR_BIN_DIR "/vexor"),
                                        {QStringLiteral("-batch"), QStringLiteral("no_such_file.txt")});
  EXPECT_EQ(1, Run.ExitCode);
  EXPECT_TRUE(Run.Has("no_such_file.txt"));
}

}  // namespace
