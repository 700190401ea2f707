// The functions of a project at their moments, in the sessions of hooks/.

#include <QProcess>

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

// Every way to start with every way to reset, one after the other: a session finds the target as the one before left
// it.
TEST_F(HookSession, EveryModeRunsTheHooksAtTheirMoments) {
  constexpr const char* CONNECTED = " BeforeTargetConnect AfterTargetConnect";
  constexpr const char* RESET = " BeforeTargetReset AfterTargetReset";
  constexpr const char* DOWNLOADED = " BeforeTargetDownload AfterTargetDownload";
  constexpr const char* HALTED = " AfterTargetHalt";
  constexpr const char* RESUMED = " BeforeTargetResume";
  // The modes, whether the start ends in a halt, its hooks, and the last one of a reset.
  const std::tuple<const char*, const char*, bool, QByteArrayList, const char*> aCases[] = {
      {"CM_DOWNLOAD_RESET", "RM_RESET_AND_RUN", false, {CONNECTED, RESET, DOWNLOADED, RESUMED}, RESUMED},
      {"CM_DOWNLOAD_RESET", "RM_RESET_HALT", true, {CONNECTED, RESET, DOWNLOADED, HALTED}, HALTED},
      {"CM_DOWNLOAD_RESET", "RM_BREAK_AT_SYMBOL", true, {CONNECTED, RESET, DOWNLOADED, HALTED}, HALTED},
      {"CM_ATTACH", "RM_RESET_AND_RUN", true, {CONNECTED, HALTED}, RESUMED},
      {"CM_ATTACH", "RM_RESET_HALT", false, {CONNECTED}, HALTED},
      {"CM_ATTACH", "RM_BREAK_AT_SYMBOL", true, {CONNECTED, HALTED}, HALTED},
      {"CM_ATTACH_HALT", "RM_RESET_AND_RUN", true, {CONNECTED, HALTED}, RESUMED},
      {"CM_ATTACH_HALT", "RM_RESET_HALT", true, {CONNECTED, HALTED}, HALTED},
      {"CM_ATTACH_HALT", "RM_BREAK_AT_SYMBOL", true, {CONNECTED, HALTED}, HALTED},
  };
  QString sSession = u"File.Open (\"tests/sessions/hooks/events.vdebug\");\n@wait idle\n"_s;
  QByteArray Expected = "OnProjectLoad";
  QList<quint32> Places;
  for (const auto& [sConnectMode, sResetMode, bHaltsAtStart, StartHooks, sEndOfReset] : aCases) {
    const bool bRuns = sEndOfReset == RESUMED;
    sSession +=
        u"Debug.SetConnectMode %1\nDebug.SetResetMode %2\nUtil.Log (\"-- %1, %2\");\nDebug.Start\n@wait %3\n"
        "Util.Log (\"-- reset\");\nDebug.Reset\n@wait %4\n"_s.arg(
            QLatin1String(sConnectMode), QLatin1String(sResetMode), bHaltsAtStart ? u"halted"_s : u"running"_s,
            bRuns ? u"running"_s : u"halted"_s);
    if (!bRuns) sSession += u"Target.GetReg PC\n"_s;
    sSession += u"Util.Log (\"-- stop\");\nDebug.Stop\n@wait disconnected\n"_s;
    Expected += QByteArray(" /") + sConnectMode + ", " + sResetMode + StartHooks.join() + " /reset" + RESET +
                sEndOfReset + " /stop BeforeTargetDisconnect AfterTargetDisconnect";
    const QString sFunction = sResetMode == "RM_RESET_HALT"_L1 ? u"Reset_Handler"_s : u"main"_s;
    if (!bRuns) Places << AddressOf(u"examples/traffic_light/traffic_light.elf"_s, sFunction);
  }
  const SESSION_RESULT Run = RunSession(sSession);
  Run.Expect(0);
  EXPECT_EQ(Expected.toStdString(), Order(Run));
  for (qsizetype i = 0; i < Places.size(); ++i) EXPECT_EQ(Places[i], Run.Value(static_cast<int>(i))) << i;
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

// What a function of a project asks for is done when the next statement comes.
TEST_F(HookSession, AFunctionMeetsTheDeviceInTheStateThatItExpects) {
  const QString sElf = QStringLiteral(VEXOR_SOURCE_DIR "/examples/traffic_light/traffic_light.elf");
  const QString sAgain = u"Debug.Continue\n@wait running\nDebug.Reset\n@wait halted\n"_s;
  // Statements of OnProjectLoad, other functions, the session, and what is printed and not printed.
  const std::tuple<const char*, QString, QString, const char*, const char*> aCases[] = {
      {"", u"void TargetReset (void) { Target.SetReg (\"SP\", 0x20000100); }"_s,
       u"Debug.SetResetMode RM_RESET_HALT\nDebug.Start\n@wait halted\n"_s + sAgain.repeated(5),
       "Target.SetReg (\"SP\", 0x20000100);", "program is running"},
      {"Debug.Start (); Util.Log (\"behind the start\");",
       u"void TargetConnect (void) { Exec.Connect (); }"_s,
       {},
       "bytes of flash\nbehind the start",
       ""},
      {"", u"void AfterTargetReset (void) { Debug.Reset (); }"_s, u"Debug.Start\n@wait idle\n"_s,
       "\"AfterTargetReset\": maximum call level reached", ""},
      {"", u"void BeforeTargetDownload (void) { Exec.Download (\"%1\"); }"_s.arg(sElf),
       u"Debug.Start\n@wait halted\n"_s, "Exec.Download", "timeout"},
      {"Debug.SetResetMode (RM_RESET_AND_RUN); Debug.Start (); Util.Sleep (500); Debug.Halt (); Debug.Continue ();",
       {},
       {},
       "Debug.Continue();",
       "Debug.Continue():"},
      {"Project.SetRTT (1); Project.SetSemihosting (1); Project.AddRTTSearchRange (0x20000000, 0x1000);"
       "Project.SetSWO (1, \"2 MHz\", \"64 MHz\");",
       {},
       u"Project.SetSWO (off, \"2 MHz\", \"64 MHz\");\n"_s,
       "Project.SetTraceSource (\"None\");",
       ""},
      {"Project.SetBPType (BP_TYPE_HARD);", {}, {}, "Project.SetBPType (BP_TYPE_HARD);", ""},
      {"if (Project.SetTraceSource (\"x\") == 0xFFFFFFFF) Util.Log (\"no source\");", {}, {}, "\nno source\n", ""},
  };
  for (const auto& [sLoad, sFunctions, sCommands, sPrinted, sNotPrinted] : aCases) {
    const QString sProject = Write("state.vdebug", ProjectText(sElf, QLatin1String(sLoad), sFunctions));
    const SESSION_RESULT Run = RunSession(u"File.Open (\"%1\");\n@wait idle\n%2"_s.arg(sProject, sCommands));
    Run.Expect(0, {sPrinted});
    EXPECT_FALSE(*sNotPrinted && Run.sOutput.contains(QLatin1String(sNotPrinted))) << qPrintable(Run.sOutput);
  }
}

TEST_F(HookSession, APluginIsHintedAtLoadedAndToldOfTheSession) {
  const QString sElf = Path("rtos.elf");
  ASSERT_EQ(QProcess::execute(u"arm-none-eabi-objcopy"_s,
                              {u"--add-symbol"_s, u"pxCurrentTCB=0x20000000,global"_s,
                               QStringLiteral(VEXOR_SOURCE_DIR "/examples/traffic_light/traffic_light.elf"), sElf}),
            0);
  const QString sHint = u"add command 'Project.SetOSPlugin(\"FreeRTOSPlugin\")' to the project file."_s;
  const QString sPlugin = u"Project.SetOSPlugin (\"" VEXOR_BIN_DIR "/../test_bin/sample_plugin_good\");"_s;
  for (const bool bPlugin : {false, true}) {
    const QString sProject = Write("rtos.vdebug", ProjectText(sElf, bPlugin ? sPlugin : QString(), {}));
    const SESSION_RESULT Run = RunSession(
        u"File.Open (\"%1\");\n@wait idle\nDebug.Start\n@wait halted\nDebug.Stop\n@wait disconnected\nFile.NewProject\n"_s
            .arg(sProject));
    EXPECT_EQ(Run.ExitCode, 0) << qPrintable(Run.sOutput);
    EXPECT_NE(Run.sOutput.contains(sHint), bPlugin) << qPrintable(Run.sOutput);
    if (bPlugin)
      Run.Expect(0, {"Plugin Loaded: ", "OnInit returns -1", "OnDebugStart returns 11", "OnDebugEnd returns 12",
                     "Plugin unloaded."});
  }
}

TEST_F(HookSession, ALostScriptLeavesTheProgramAlive) {
  const std::pair<const char*, const char*> aCases[] = {
      {"void OnProjectLoad (void) { OnProjectLoad (); }\n", "Out of memory at line 1"},
      {"void OnProjectLoad (void) { while (1) { Window.Show (\"\"); } }\n", "Out of memory at line 1"},
      {"void OnProjectLoad (void) { Target.ReadU32 (Target.GetReg (\"R99\")); Target.GetReg (5); }\n", ""},
      {"void TargetReset (int Mode) { }\nvoid OnProjectLoad (void) { }\n",
       "\"TargetReset\" of the project takes parameters"},
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
