#include "session_runner.h"

namespace {

using ExampleSession = SessionTest;
using BadInput = SessionTest;

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
      {"Debug.Continue();", "Debug.Continue(): not connected"},
      {"Target.GetReg PC", "Target.GetReg (\"PC\"): not connected"},
      {"File.Open no_such_project.vdebug", "file not found"},
      {"@wait halted 50", "timeout after 50 ms"},
      {"@nonsense", "unknown directive"},
      {"Project.SetTargetIF FOO", "unknown target interface"},
      {"Project.SetTIFSpeed abc", "invalid number"},
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
  };
  for (const auto& [sLine, sError] : aCases)
    RunSession(QLatin1String(sLine) + u"\nUtil.Log never\n"_s).Expect(1, {sError}, {"never"});
}

// The console's texts have their full stops taken out.
TEST_F(BadInput, ABadProjectIsReportedAndTheProgramGoesOn) {
  const std::pair<const char*, const char*> aCases[] = {
      {"void Other (void) {}\n", "Required user function missing: void OnProjectLoad (void);"},
      {"void OnProjectLoad (void) {\n", "Unexpected end of file looking for '}'"},
      {"", "empty file"},
  };
  for (const auto& [sText, sError] : aCases) RunWithFile(Write("bad.vdebug", sText)).Expect(0, {sError, "still here"});
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
