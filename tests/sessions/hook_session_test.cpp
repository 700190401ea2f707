// The functions of a project at their moments, in the sessions of hooks/.

#include "session_runner.h"

namespace {

using HookSession = SessionTest;

SESSION_RESULT RunFile(const char* sName) {
  return RunProgram(QStringLiteral(VEXOR_BIN_DIR "/vexor"),
                    {u"-batch"_s, u"tests/sessions/hooks/%1.txt"_s.arg(QLatin1String(sName))});
}

// What the hooks and the session printed of themselves.
std::string Order(const SESSION_RESULT& Run) {
  QStringList Words;
  for (const QString& sLine : Run.Lines) {
    if (sLine.startsWith(u"hook ")) Words << sLine.mid(5);
    if (sLine.startsWith(u"-- ")) Words << u'/' + sLine.mid(3);
  }
  return Words.join(u' ').toStdString();
}

TEST_F(HookSession, EveryEventHookRunsAtItsMoment) {
  const SESSION_RESULT Run = RunFile("events");
  Run.Expect(0);
  EXPECT_EQ(
      "OnProjectLoad"
      " /start BeforeTargetConnect AfterTargetConnect BeforeTargetReset AfterTargetReset"
      " BeforeTargetDownload AfterTargetDownload AfterTargetHalt"
      " /continue BeforeTargetResume AfterTargetHalt"
      " /reset BeforeTargetReset AfterTargetReset AfterTargetHalt"
      " /stop BeforeTargetDisconnect AfterTargetDisconnect"
      " /attach BeforeTargetConnect AfterTargetConnect AfterTargetHalt"
      " BeforeTargetDisconnect AfterTargetDisconnect",
      Order(Run));
}

TEST_F(HookSession, AProjectReplacesConnectResetDownloadAndStart) {
  const SESSION_RESULT Run = RunFile("replaced");
  Run.Expect(0);
  EXPECT_EQ(
      "OnProjectLoad"
      " /start DebugStart BeforeTargetConnect TargetConnect AfterTargetConnect"
      " BeforeTargetReset TargetReset AfterTargetReset"
      " BeforeTargetDownload TargetDownload AfterTargetDownload AfterTargetHalt"
      " /reset BeforeTargetReset TargetReset AfterTargetReset AfterTargetHalt"
      " /stop BeforeTargetDisconnect AfterTargetDisconnect",
      Order(Run));
  EXPECT_EQ(0x12345678, Run.Value(0)) << "what the download of the project wrote";
  EXPECT_EQ(0xFFFFFFFF, Run.Value(1)) << "erased, unless the built-in download ran as well";
  EXPECT_EQ(0x77, Run.Value(2)) << "what the reset of the project wrote";
  EXPECT_EQ(0x77, Run.Value(3));
}

TEST_F(HookSession, AnErrorLeavesTheRestToTheBuiltInOperations) {
  const SESSION_RESULT Run = RunFile("error");
  Run.Expect(0,
             {"Error in project file: Error in script function void AfterTargetConnect (void);\n",
              "error.vdebug:23:21\n  Util.Sleep (100 / Tries);\n                    ^\n"},
             {"never"});
  EXPECT_EQ("OnProjectLoad BeforeTargetConnect AfterTargetConnect /again OnProjectLoad", Order(Run));
  EXPECT_EQ(AddressOf(u"examples/traffic_light/traffic_light.elf"_s, u"main"_s), Run.Value(0));
}

TEST_F(HookSession, HooksNestUpToTheLimit) {
  const SESSION_RESULT Run = RunFile("nested");
  Run.Expect(0, {"Error executing script function \"BeforeTargetReset\": maximum call level reached.",
                 "Exec.Connect(): already connected\n", "\nrefused\n", "end of OnProjectLoad", "still here"});
  // The last run of the hook asks for the twelfth.
  EXPECT_EQ("OnProjectLoad AfterTargetConnect" + QByteArray(" BeforeTargetReset").repeated(11).toStdString(),
            Order(Run));
  EXPECT_LT(Run.sOutput.indexOf(u"hook AfterTargetConnect"), Run.sOutput.indexOf(u"\nstarted"))
      << "Debug.Start returned before its hooks had run";
}

TEST_F(HookSession, ALostScriptLeavesTheProgramAlive) {
  const std::pair<const char*, const char*> aCases[] = {
      {"void OnProjectLoad (void) { OnProjectLoad (); }\n", "Out of memory at line 1"},
      {"void OnProjectLoad (void) { while (1) { Window.Show (\"\"); } }\n", "Out of memory at line 1"},
      {"void OnProjectLoad (void) { Target.ReadU32 (Target.GetReg (\"R99\")); Target.GetReg (5); }\n", ""},
      {"void TargetConnect (void) { }\nvoid OnProjectLoad (void) { Project.SetDevice (\"nRF52840_xxAA\");\n"
       "Project.SetHostIF (\"USB\", \"\"); Project.SetTargetIF (\"SWD\"); Debug.Connect (); }\n",
       "Connection failed"},
  };
  for (const auto& [sText, sError] : aCases) RunWithFile(Write("lost.vdebug", sText)).Expect(0, {sError, "still here"});
  // These run until they are told to end.
  for (const char* sStatement : {"while (1) { }", "Util.Sleep (300000);"}) {
    const QByteArray Text = QByteArray("void OnProjectLoad (void) { ") + sStatement + " }\n";
    RunWithFile(Write("lost.vdebug", Text), 300).Expect(1, {"timeout after 300 ms"});
  }
}

}  // namespace
