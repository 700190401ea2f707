// Sessions in which a step fails: what the user is told, and what comes next.

#include "session_runner.h"

namespace {

using FailedSession = SessionTest;

const QString PROGRAM = u"examples/traffic_light/traffic_light.elf"_s;
const QString DOWNLOAD_BOX =
    u"[Unsuccessfull Data Download] The data file was not downloaded correctly.\n"
    "It is recommended to restart the debug session or to download\n"
    "the program file manually using command File.Download\n"_s;

// A session on the example; sCommands come once it is open.
SESSION_RESULT RunExample(const QString& sCommands) {
  return RunSession(u"File.Open (\"examples/traffic_light/traffic_light.vdebug\");\n@wait idle\n"_s + sCommands);
}

TEST_F(FailedSession, ATargetThatDoesNotAnswerIsTriedAgain) {
  RunExample(u"Exec.Command (\"sim.refuse-connect 2\");\nDebug.Start\n@wait idle\nDebug.Start\n@wait halted\n"_s)
      .Expect(0, {"Target: Connect: VNODE API call failed\nConnection failed\nDebug.Start();\n",
                  "V-Node: connected to target device\n"});
}

// The session goes on to main in spite of it: the flash holds the program already.
TEST_F(FailedSession, AFailedDownloadIsToldIfItIsToBeVerified) {
  const std::pair<const char*, const char*> aCases[] = {{"other", "V-Node reports an unspecified error"},
                                                        {"compare", "error during compare phase"},
                                                        {"program", "error during program/erase phase"},
                                                        {"verify", "error during verification phase"}};
  QString sSession = u"Debug.Start\n@wait halted\n"_s, sQuiet;
  for (const auto& [sPhase, sText] : aCases) {
    const QString sFail = u"Exec.Command (\"sim.fail-download %1\");\n@wait idle\n"_s.arg(QLatin1String(sPhase));
    sSession += sFail + u"Debug.Download\n@wait halted\nTarget.GetReg PC\n"_s;
    sQuiet += sFail + u"Debug.Download\n@wait halted\n"_s;
  }
  const SESSION_RESULT Run = RunExample(sSession + u"Edit.SysVar (VAR_VERIFY_DOWNLOAD, 0);\n"_s + sQuiet);
  Run.Expect(0);
  for (int i = 0; i < 4; ++i) {
    const QString sTold = QLatin1String(aCases[i].second) + u'\n' + DOWNLOAD_BOX;
    EXPECT_EQ(1, Run.sOutput.count(sTold)) << sTold.toStdString() << Run.sOutput.toStdString();
    EXPECT_EQ(AddressOf(PROGRAM, u"main"_s), Run.Value(i));
  }
  EXPECT_EQ(8, Run.sOutput.count(u"V-Node: EndDownload failed (injected fault)"));
}

TEST_F(FailedSession, AStartSymbolThatLeadsNowhereHaltsAtTheFirstInstruction) {
  // Reset_Handler is where the target stands already.
  for (const QString& sSymbol : {u"nowhere"_s, u"Reset_Handler"_s}) {
    const SESSION_RESULT Run = RunExample(
        u"-Edit.SysVar (VAR_BREAK_AT_THIS_SYMBOL, \"%1\");\nDebug.Start\n@wait halted\nTarget.GetReg PC\n"
        "Debug.Reset\n@wait halted\nTarget.GetReg PC\n"_s.arg(sSymbol));
    Run.Expect(0);
    const QString sBox = u"[Break at Symbol] Symbol %1 is unknown. Program halts at first instruction."_s.arg(sSymbol);
    EXPECT_EQ(2, Run.sOutput.count(sBox)) << Run.sOutput.toStdString();
    const QString sThere = u"=> 0x%1\n"_s.arg(AddressOf(PROGRAM, u"Reset_Handler"_s), 8, 16, QLatin1Char('0'));
    EXPECT_EQ(2, Run.sOutput.count(sThere)) << Run.sOutput.toStdString();
  }
}

TEST_F(FailedSession, ALostConnectionIsAskedAboutOnce) {
  const QString sLose =
      u"Debug.Start\n@wait halted\nDebug.Continue\n@wait running\n@answer %1\n"
      "Exec.Command (\"sim.lose-connection 0\");\n@wait %2\n"_s;
  const QString sQuestion =
      u"V-Node: connection to target device lost.\n"
      "[Target Connection Lost] Failed to read target status. Abort Debug Session?\n"_s;
  const QString sEnd = u"V-Node: disconnected from target device\n"_s;
  const SESSION_RESULT Run =
      RunExample(sLose.arg(u"yes"_s, u"disconnected"_s) + sLose.arg(u"no"_s, u"idle"_s) +
                 u"Util.Sleep 300\nUtil.Log (\"still connected\");\nDebug.Stop\n@wait disconnected\n"_s);
  Run.Expect(0);
  EXPECT_EQ(2, Run.sOutput.count(sQuestion)) << Run.sOutput.toStdString();
  EXPECT_EQ(1, Run.sOutput.count(sQuestion + sEnd));
  EXPECT_EQ(1, Run.sOutput.count(u"still connected\nDebug.Stop();\n"_s + sEnd));
}

TEST_F(FailedSession, AFunctionThatChangesTheModeIsWarned) {
  const QString sFunction = u"void AfterTargetConnect (void) { Debug.SetConnectMode (CM_ATTACH); }"_s;
  const QString sProject =
      Write("p.vdebug", ProjectText(QStringLiteral(VEXOR_SOURCE_DIR "/") + PROGRAM, {}, sFunction));
  RunSession(u"File.Open (\"%1\");\n@wait idle\nDebug.Start\n@wait idle\nUtil.Log (\"still here\");\n"_s.arg(sProject))
      .Expect(0,
              {"Changing the connection mode while the connection sequence is in progress may lead to undefined "
               "behaviour.\n",
               "still here"},
              {"Programmed"});
}

// In a batch session a dialog counts as cancelled.
TEST_F(FailedSession, AProjectWithErrorsIsNotStartedUnasked) {
  RunSession(u"File.NewProject\nProject.SetDevice NoSuchPart\nDebug.Start\n@wait idle\nUtil.Log (\"still here\");\n"_s)
      .Expect(0,
              {"Debug.Start();\n[Project File Errors] The project file contains errors:\nCPU register set description "
               "file not found (specify with 'Project.AddSvdFile') - debugging w/o core registers.\nSome debugging "
               "features might be disabled.\nConnection aborted\n",
               "still here"});
}

// What a command answers in a state in which it makes no sense.
TEST_F(FailedSession, CommandsAreRefusedInTheirOwnWords) {
  const std::pair<const char*, const char*> aCases[] = {
      {"-Debug.Stop", "Debug.Stop(): not connected"},
      {"-Debug.Download", "Debug.Download(): not connected"},
      {"-Debug.SetNextPC 100", "Debug.SetNextPC (100): not connected"},
      {"-Debug.SetConnectMode 3", "Debug.SetConnectMode (3): invalid parameter"},
      {"-Debug.SetResetMode CM_ATTACH", "invalid parameter"},
      {"-Debug.SetSteppingMode x", "invalid parameter"},
      {"Debug.Start\n@wait halted", "connected to target device"},
      {"-Debug.Connect", "Debug.Connect(): already connected"},
      {"-Debug.SetNextPC xyz", "Debug.SetNextPC (xyz): invalid parameter"},
      {"-Debug.RunTo nowhere", "Debug.RunTo (\"nowhere\"): invalid parameter"},
      {"Debug.Continue\n@wait running\n-Debug.StepInto", "Debug.StepInto(): program is running"},
  };
  QString sCommands;
  for (const auto& [sCommand, sAnswer] : aCases) sCommands += QLatin1String(sCommand) + u'\n';
  const SESSION_RESULT Run = RunExample(sCommands);
  Run.Expect(0, {}, {"\nDebug.StepInto();"});
  qsizetype Pos = 0;
  for (const auto& [sCommand, sAnswer] : aCases) {
    const qsizetype Next = Run.sOutput.indexOf(QLatin1String(sAnswer), Pos);
    EXPECT_GE(Next, 0) << sAnswer << "\n" << Run.sOutput.toStdString();
    Pos = std::max(Next, Pos);
  }
}

}  // namespace
