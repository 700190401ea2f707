#include "session_runner.h"

namespace {

using ExampleSession = SessionTest;
using BadInput = SessionTest;

TEST_F(ExampleSession, GoesToMainBreaksStepsResetsAndStops) {
  // program, and a function that is called from main
  for (const auto& [sName, sFunction] : {std::pair{u"traffic_light"_s, u"traffic_init"_s},
                                         {u"thermostat"_s, u"thermostat_step"_s},
                                         {u"weather_station"_s, u"_ZN7station7Station4pollEm"_s}}) {
    SCOPED_TRACE(sName.toStdString());
    const QString sBase = u"examples/%1/%1."_s.arg(sName);
    const quint32 Main = AddressOf(sBase + u"elf"_s, u"main"_s);
    const quint32 Function = AddressOf(sBase + u"elf"_s, sFunction);
    ASSERT_TRUE(Main && Function);
    const SESSION_RESULT Run = RunSession(
        u"File.Open (\"%1vdebug\");\n@wait idle\nDebug.Start();\n@wait halted\nTarget.GetReg PC\n"
        "Break.Set 0x%2\nDebug.Continue\n@wait halted\nTarget.GetReg PC\n"
        "Debug.StepInto\n@wait halted\nTarget.GetReg (\"PC\")\nTarget.ReadU32 0\nTarget.GetReg SP\n"
        "Debug.Reset\n@wait halted\nTarget.GetReg PC\nDebug.Stop();\n@wait disconnected\n"_s.arg(sBase)
            .arg(Function, 0, 16));
    Run.Expect(0, {"\nDebug.Start();\n", "\nDebug.Continue();\n", "\nDebug.StepInto();\n", "\nDebug.Reset();\n",
                   "\nDebug.Stop();\n", "\nTarget.GetReg (\"PC\");\n"});
    EXPECT_EQ(Main, Run.Value(0));
    EXPECT_EQ(Function, Run.Value(1));
    EXPECT_TRUE(Run.Value(2) == Function + 2 || Run.Value(2) == Function + 4) << Run.Value(2);
    const qint64 Top = Run.Value(3);
    EXPECT_EQ(0, Top % 8) << "the first word of the vector table is the initial stack pointer";
    EXPECT_TRUE(Run.Value(4) < Top && Run.Value(4) > Top - 1024) << Run.Value(4);
    EXPECT_EQ(Main, Run.Value(5)) << "a reset runs to main again";
  }
}

// The reset ahead of a download halts the target in the startup code of the program that it has already.
TEST_F(ExampleSession, ASecondStartShowsNothingButMain) {
  const QString sStart = u"Debug.Start\n@wait halted\n"_s;
  RunSession(u"File.Open (\"examples/traffic_light/traffic_light.vdebug\");\n@wait idle\n"_s + sStart +
             u"Debug.Stop\n@wait disconnected\n"_s + sStart + u"Util.Sleep 1000\n"_s)
      .Expect(0, {"\n1 source file paths resolved\n"}, {"\n2 source file paths resolved\n"});
}

TEST_F(BadInput, AFailingLineSaysWhyAndEndsTheSession) {
  const std::pair<const char*, const char*> aCases[] = {
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
      {"Project.SetTIFSpeed JTAG", "invalid number"},
      {"Project.SetHostIF (\"SWD\", \"\")", "unknown host interface"},
      {"Project.SetVNodeScript none.vnode", "file not found: \"none.vnode\""},
      {"Project.SetVNodeLogFile /none/x.log", "invalid filename: \"/none/x.log\""},
      {"Project.SetTraceTiming (0, 50, 100, x)", "invalid parameter"},
      {"Project.SetTraceSource Nowhere", "invalid parameter"},
      {"Project.SetSWO (maybe, \"2 MHz\", \"64 MHz\")", "invalid parameter"},
      {"Project.SetRTT 2", "invalid parameter"},
      {"Debug.ReadIntoTraceCache (0, everything)", "invalid parameter"},
      {"Debug.ReadIntoTraceCache (0, 0x100)", "not connected"},
      {"Project.SetOSPlugin nothing", "Plugin libary was not found or could not be loaded"},
      {"Project.AddRTTSearchRange (0x20000000, some)", "invalid parameter"},
      {"Project.RelocateSymbols (\"*\", far)", "invalid parameter: \"far\""},
      {"File.NewProject\nFile.SaveProjectAs x.txt", "invalid project filename: \"x.txt\""},
      {"Edit.SysVar VAR_NONSENSE 1", "unknown system variable"},
  };
  for (const auto& [sLine, sError] : aCases)
    RunSession(QLatin1String(sLine) + u"\nUtil.Log never\n"_s).Expect(1, {sError}, {"never"});
}

// The console's texts have their full stops taken out.
TEST_F(BadInput, ABadProjectIsReportedAndTheProgramGoesOn) {
  const std::pair<const char*, const char*> aCases[] = {
      {"void Other (void) {}\n", "Required user function missing: void OnProjectLoad (void);"},
      {"void OnProjectLoad (void) {\n  Project.SetDevice (\"nRF52840_xxAA\")\n}\n", "Expected a ';' at line 3"},
      {"void OnProjectLoad (void) {\n", "Unexpected end of file looking for '}'"},
      {"", "empty file"},
      {"void OnProjectLoad (void) { int a; a = 0; a = 1 / a; }\n",
       "Error in script function void OnProjectLoad (void);"},
  };
  for (const auto& [sText, sError] : aCases) RunWithFile(Write("bad.vdebug", sText)).Expect(0, {sError, "still here"});
}

TEST_F(BadInput, UnknownDeviceFailsTheConnection) {
  RunSession(
      u"Project.SetDevice NoSuchPart\nProject.SetHostIF USB\nProject.SetTargetIF SWD\n"
      "Debug.Connect\n@wait idle\nUtil.Log (\"still here\");\n@wait connected 300\n"_s)
      .Expect(1, {"Connect: could not configure V-Node", "Connection failed", "still here"});
}

TEST_F(BadInput, HalfAProgramFileIsRefused) {
  const QByteArray Whole = ReadBytes(QStringLiteral(VEXOR_SOURCE_DIR "/examples/thermostat/thermostat.elf"));
  RunWithFile(Write("half.elf", Whole.first(Whole.size() / 2)))
      .Expect(0, {"Could not read the program file", "still here"});
}

TEST_F(BadInput, AMissingProbeLibraryIsSaidAndTheProgramGoesOn) {
  ASSERT_TRUE(QFile::copy(QStringLiteral(VEXOR_BIN_DIR "/vexor"), Path("vexor")));
  RunProgram(Path("vexor"), {u"-batch"_s, u"-"_s},
             "Project.SetDevice nRF52840_xxAA\nProject.SetHostIF USB\nDebug.Connect\n@wait idle\n"
             "Util.Log (\"still here\");\n")
      .Expect(0, {"The V-Node library could not be loaded", "Connection failed", "still here"});
}

TEST_F(BadInput, AFailingLineMayBeAllowed) {
  RunSession(u"-Debug.Halt ()\n-Debug.Continue\nUtil.Log (\"on\");\n@quit 7\n"_s).Expect(7, {"\non\n"});
}

TEST_F(BadInput, AMissingBatchFileIsAnError) {
  RunProgram(QStringLiteral(VEXOR_BIN_DIR "/vexor"), {u"-batch"_s, u"no_such_file.txt"_s})
      .Expect(1, {"no_such_file.txt"});
}

}  // namespace
