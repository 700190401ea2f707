// The functions of a project at their moments, in the sessions of hooks/.

#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>

#include "session_runner.h"

namespace {

constexpr const char* MAIN_ELF = "examples/traffic_light/traffic_light.elf";
constexpr qint64 ERASED = 0xFFFFFFFF;

SESSION_RESULT RunFile(const char* sName) {
  return RunProgram(
      QStringLiteral(VEXOR_BIN_DIR "/vexor"),
      {QStringLiteral("-batch"), QStringLiteral("tests/sessions/hooks/%1.txt").arg(QLatin1String(sName))});
}

// What the hooks and the session printed of themselves.
QString Order(const SESSION_RESULT& Run) {
  QStringList Words;
  for (const QString& sLine : Run.Lines) {
    if (sLine.startsWith(QLatin1String("hook "))) Words << sLine.mid(5);
    if (sLine.startsWith(QLatin1String("-- "))) Words << QLatin1Char('/') + sLine.mid(3);
  }
  return Words.join(QLatin1Char(' '));
}

TEST(HookSession, EveryEventHookRunsAtItsMoment) {
  const SESSION_RESULT Run = RunFile("events");
  EXPECT_EQ(0, Run.ExitCode) << Run.sOutput.toStdString();
  EXPECT_EQ(QStringLiteral("OnProjectLoad"
                           " /start BeforeTargetConnect AfterTargetConnect BeforeTargetReset AfterTargetReset"
                           " BeforeTargetDownload AfterTargetDownload AfterTargetHalt"
                           " /continue BeforeTargetResume AfterTargetHalt"
                           " /reset BeforeTargetReset AfterTargetReset AfterTargetHalt"
                           " /stop BeforeTargetDisconnect AfterTargetDisconnect"
                           " /attach BeforeTargetConnect AfterTargetConnect AfterTargetHalt"
                           " BeforeTargetDisconnect AfterTargetDisconnect"),
            Order(Run))
      << Run.sOutput.toStdString();
}

TEST(HookSession, AProjectReplacesConnectResetDownloadAndStart) {
  const SESSION_RESULT Run = RunFile("replaced");
  EXPECT_EQ(0, Run.ExitCode) << Run.sOutput.toStdString();
  EXPECT_EQ(QStringLiteral("OnProjectLoad"
                           " /start DebugStart BeforeTargetConnect TargetConnect AfterTargetConnect"
                           " BeforeTargetReset TargetReset AfterTargetReset"
                           " BeforeTargetDownload TargetDownload AfterTargetDownload AfterTargetHalt"
                           " /reset BeforeTargetReset TargetReset AfterTargetReset AfterTargetHalt"
                           " /stop BeforeTargetDisconnect AfterTargetDisconnect"),
            Order(Run))
      << Run.sOutput.toStdString();
  EXPECT_EQ(0x12345678, Run.Value(0)) << "what the download of the project wrote";
  EXPECT_EQ(ERASED, Run.Value(1)) << "the built-in download ran as well";
  EXPECT_EQ(0x77, Run.Value(2)) << "what the reset of the project wrote";
  EXPECT_EQ(0x77, Run.Value(3));
}

TEST(HookSession, AnErrorLeavesTheRestToTheBuiltInOperations) {
  const SESSION_RESULT Run = RunFile("error");
  EXPECT_EQ(0, Run.ExitCode) << Run.sOutput.toStdString();
  EXPECT_EQ(QStringLiteral("OnProjectLoad BeforeTargetConnect AfterTargetConnect /again OnProjectLoad"), Order(Run));
  EXPECT_FALSE(Run.Has("never")) << Run.sOutput.toStdString();
  EXPECT_EQ(AddressOf(QLatin1String(MAIN_ELF), QStringLiteral("main")), Run.Value(0)) << Run.sOutput.toStdString();
  EXPECT_TRUE(Run.Has("Error in project file: Error in script function void AfterTargetConnect (void);\n"));
  EXPECT_TRUE(
      Run.Has("error.vdebug:23:21\n"
              "  Util.Sleep (100 / Tries);\n"
              "                    ^\n"))
      << Run.sOutput.toStdString();
}

TEST(HookSession, HooksNestUpToTheLimit) {
  const SESSION_RESULT Run = RunFile("nested");
  EXPECT_EQ(0, Run.ExitCode) << Run.sOutput.toStdString();
  // The last run of the hook asks for the twelfth.
  EXPECT_EQ(QStringLiteral("OnProjectLoad AfterTargetConnect") + QStringLiteral(" BeforeTargetReset").repeated(11),
            Order(Run));
  EXPECT_TRUE(Run.Has("Error executing script function \"BeforeTargetReset\": maximum call level reached."));
  EXPECT_LT(Run.sOutput.indexOf(QLatin1String("hook AfterTargetConnect")),
            Run.sOutput.indexOf(QLatin1String("\nstarted")))
      << "Debug.Start returned before its hooks had run";
  EXPECT_TRUE(Run.Has("Exec.Connect(): already connected\n")) << Run.sOutput.toStdString();
  EXPECT_TRUE(Run.Has("\nrefused\n")) << Run.sOutput.toStdString();
  EXPECT_TRUE(Run.Has("end of OnProjectLoad"));
  EXPECT_TRUE(Run.Has("still here"));
}

struct LOST_SCRIPT {
  const char* sText;
  const char* sError;  // null: it runs until it is told to end
};
const LOST_SCRIPT LOST_SCRIPTS[] = {
    {"void OnProjectLoad (void) { while (1) { } }\n", nullptr},
    {"void OnProjectLoad (void) { Util.Sleep (300000); }\n", nullptr},
    {"void OnProjectLoad (void) { OnProjectLoad (); }\n", "Out of memory at line 1"},
    {"void OnProjectLoad (void) { while (1) { Window.Show (\"\"); } }\n", "Out of memory at line 1"},
    {"void OnProjectLoad (void) { Target.ReadU32 (Target.GetReg (\"R99\")); Target.GetReg (5); }\n", ""},
    {"void TargetConnect (void) { }\nvoid OnProjectLoad (void) { Project.SetDevice (\"nRF52840_xxAA\");\n"
     "Project.SetHostIF (\"USB\", \"\"); Project.SetTargetIF (\"SWD\"); Debug.Connect (); }\n",
     "Connection failed"},
};

class LostScript : public testing::TestWithParam<LOST_SCRIPT> {};

TEST_P(LostScript, LeavesTheProgramAlive) {
  constexpr int SESSION_LIMIT_MS = 20'000;
  QTemporaryDir Dir;
  QFile File(Dir.filePath(QStringLiteral("lost.vdebug")));
  ASSERT_TRUE(File.open(QIODevice::WriteOnly));
  File.write(GetParam().sText);
  File.close();
  const SESSION_RESULT Run =
      RunSession(QStringLiteral("File.Open (\"%1\");\n@wait idle %2\nUtil.Log (\"still here\");\n")
                     .arg(File.fileName())
                     .arg(GetParam().sError ? 10'000 : 300),
                 {}, SESSION_LIMIT_MS);
  EXPECT_FALSE(Run.bTimedOut);
  if (GetParam().sError) {
    EXPECT_EQ(0, Run.ExitCode) << Run.sOutput.toStdString();
    EXPECT_TRUE(Run.Has(GetParam().sError)) << Run.sOutput.toStdString();
    EXPECT_TRUE(Run.Has("still here"));
  } else {
    EXPECT_EQ(1, Run.ExitCode) << Run.sOutput.toStdString();
    EXPECT_TRUE(Run.Has("timeout after 300 ms")) << Run.sOutput.toStdString();
  }
}

INSTANTIATE_TEST_SUITE_P(Scripts, LostScript, testing::ValuesIn(LOST_SCRIPTS));

}  // namespace
