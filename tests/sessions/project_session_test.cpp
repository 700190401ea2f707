// Projects in whole sessions: new ones, saved ones, and files beside the program.

#include "session_runner.h"

namespace {

using ProjectSession = SessionTest;

const QString EXAMPLE = u"examples/traffic_light/traffic_light.vdebug"_s;

TEST_F(ProjectSession, ANewProjectHasNothingOfTheOldOneButTheDevice) {
  const SESSION_RESULT Run = RunSession(
      u"File.Open (\"%1\");\n@wait idle\nFile.NewProject ();\n-File.SaveProjectAs (\"%2/none/x.vdebug\");\n"
      "-File.SaveProjectAs (\"%2/x.txt\");\nFile.SaveProjectAs (\"%2/new\");\nFile.Open (\"%2/new.vdebug\");\n@wait idle\n"_s
          .arg(EXAMPLE, m_Dir.path()));
  Run.Expect(0);
  const QByteArray Text = ReadBytes(Path("new.vdebug"));
  EXPECT_TRUE(Text.contains("  Project.SetDevice (\"nRF52840_xxAA\");\r\n")) << Text.toStdString();
  EXPECT_FALSE(Text.contains("crossing")) << "a comment of the example";
  EXPECT_FALSE(Text.contains("File.Open")) << "the program was closed";
  EXPECT_EQ(2, Run.sOutput.count(u": invalid project filename")) << Run.sOutput.toStdString();
  EXPECT_EQ(1, Run.Value(0)) << "the result of a save";
}

TEST_F(ProjectSession, AProgramIsOpenedWhileTheTargetRuns) {
  const QString sOther = u"examples/thermostat/thermostat.elf"_s;
  const SESSION_RESULT Run = RunSession(
      u"File.Open (\"%1\");\n@wait idle\nDebug.Start ();\n@wait halted\nDebug.Continue ();\n@wait running\n"
      "File.Open (\"%2\");\nElf.GetEntryFuncPC ();\nDebug.Halt ();\n@wait halted\nTarget.ReadU32 (0x4)\n"_s.arg(
          EXAMPLE, sOther));
  Run.Expect(0, {"File.Open: completed in "});
  EXPECT_EQ(Run.Value(0), AddressOf(sOther, u"main"_s)) << Run.sOutput.toStdString();
  EXPECT_NE(Run.Value(1), 0) << "the target is there still";
}

TEST_F(ProjectSession, AFileIsLoadedBesideTheProgram) {
  // Four bytes at the start of RAM.
  const QString sFile = Write("data.srec", "S0030000FC\nS3092000000078563412C2\nS70500000000FA\n");
  const SESSION_RESULT Run = RunSession(
      u"File.Open (\"%1\");\n@wait idle\n-File.Load (\"%2\");\nDebug.Start ();\n@wait halted\n"
      "File.Load (\"%2\");\n@wait idle\nTarget.ReadU32 (0x20000000)\n-File.Load (\"none.hex\");\n"_s.arg(EXAMPLE,
                                                                                                         sFile));
  Run.Expect(0, {"data.srec\"): not connected", "File.Load (\"none.hex\"): file not found"});
  EXPECT_EQ(0x12345678, Run.Value(0)) << Run.sOutput.toStdString();
}

TEST_F(ProjectSession, TheProbeGetsTheScriptBesideTheProject) {
  const QString sBase = QStringLiteral(VEXOR_SOURCE_DIR "/examples/traffic_light/traffic_light.");
  QFile::copy(sBase + u"vdebug"_s, Path("t.vdebug"));
  QFile::copy(sBase + u"elf"_s, Path("traffic_light.elf"));
  const QString sScript = Write("t.vnode", {}), sLog = Path("log.txt");
  // A project without one does not inherit it.
  QFile::copy(Path("t.vdebug"), Path("u.vdebug"));
  QString sSession;
  for (const char* const sProject : {"t.vdebug", "u.vdebug"}) {
    sSession +=
        u"File.Open (\"%1\");\n@wait idle\nDebug.Start ();\n@wait halted\nDebug.Stop ();\n@wait disconnected\n"_s.arg(
            Path(sProject));
  }
  RunSession(sSession, {u"-logfile"_s, sLog}).Expect(0);
  const QByteArray Log = ReadBytes(sLog);
  EXPECT_EQ(1, Log.count("V-Node script \"" + sScript.toUtf8() + "\" failed")) << Log.toStdString();
}

// Its own peripherals are of no use to another device, even one with the same core.
TEST_F(ProjectSession, RegisterFilesGoWithTheirDevice) {
  const QString sFile = Write("peripherals.svd", "<device></device>");
  for (const auto& [sDevice, NumKept] : {std::pair{u"nRF52840_xxAA"_s, 1}, {u"STM32F407VG"_s, 0}}) {
    RunSession(
        u"File.NewProject\nProject.SetDevice nRF52840_xxAA\nProject.AddSvdFile (\"%1\")\n"
        "Project.SetDevice %2\n@wait idle\nFile.SaveProjectAs (\"%3/new.vdebug\")\n"_s.arg(sFile, sDevice,
                                                                                           m_Dir.path()))
        .Expect(0);
    const QByteArray Text = ReadBytes(Path("new.vdebug"));
    EXPECT_EQ(NumKept, Text.count(sFile.toUtf8())) << Text.toStdString();
    EXPECT_EQ(1, Text.count("/Cortex-M4.svd")) << Text.toStdString();
  }
}

TEST_F(ProjectSession, ABackslashInAPathIsNoEscape) {
  const QString sElf = u"examples/traffic_light/traffic_light.elf"_s;
  QFile::copy(QStringLiteral(VEXOR_SOURCE_DIR "/") + sElf, Path("new\\target.elf"));
  const SESSION_RESULT Run = RunSession(
      u"File.NewProject\nFile.Open (\"%1/new\\target.elf\");\nFile.SaveProjectAs (\"%1/saved\");\n"
      "File.Open (\"%1/saved.vdebug\");\n@wait idle\nElf.GetEntryFuncPC\n"_s.arg(m_Dir.path()));
  EXPECT_EQ(AddressOf(sElf, u"main"_s), Run.Value(1)) << Run.sOutput.toStdString();
}

TEST_F(ProjectSession, AProgramIsAskedForItsAddresses) {
  const struct {
    const char* sFile;
    qint64 Base, Entry, Endianess;
  } aCases[] = {
      {"", 0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF},
      {"tests/database/data/demo.elf", 0x08000000, 0x08000008, 0},
      {"tests/corpus/data/gcc_v4_O1_be8.elf", 0x8000, 0x8000, 1},
  };
  QString sSession;
  for (const auto& Case : aCases) {
    if (*Case.sFile) sSession += u"File.Open %1\n"_s.arg(QLatin1String(Case.sFile));
    sSession += u"Elf.GetBaseAddr\nElf.GetEntryPointPC\nElf.GetEndianess\n"_s;
  }
  const SESSION_RESULT Run = RunSession(sSession);
  Run.Expect(0);
  int Index = 0;
  for (const auto& Case : aCases) {
    for (const qint64 Wanted : {Case.Base, Case.Entry, Case.Endianess})
      EXPECT_EQ(Run.Value(Index++), Wanted) << Case.sFile << " " << Index;
  }
}

// Expressions with their values, -1 where there is none.
using EXPR_CASES = std::vector<std::pair<const char*, qint64>>;

SESSION_RESULT RunExpressions(const QString& sElf, const EXPR_CASES& aCases) {
  QString sSession = u"File.Open %1\n"_s.arg(sElf);
  for (const auto& [sExpr, Value] : aCases)
    sSession += u"%1Elf.GetExprValue (\"%2\")\n"_s.arg(Value < 0 ? u"-"_s : QString(), QLatin1String(sExpr));
  const SESSION_RESULT Run = RunSession(sSession);
  int Index = 0;
  for (const auto& [sExpr, Value] : aCases) {
    if (Value >= 0) EXPECT_EQ(Run.Value(Index++), Value) << sExpr;
  }
  return Run;
}

// Without a target: what the program itself knows.
TEST_F(ProjectSession, ExpressionsOfOneOperandHaveValues) {
  const QString sElf = u"tests/corpus/data/gcc_v5_O0.elf"_s;
  const EXPR_CASES aCases = {
      {"0x10", 0x10},
      {"-2", 0xFFFFFFFE},
      {"0xFFFFFFFFFFFFFFFF", 0xFFFFFFFF},
      {"2.75", 2},
      {"1.5e300", 0},
      {"COLOUR_NEGATIVE", 0xFFFFFFFD},
      {"Level::medium", 4},
      {"walk", AddressOf(sElf, u"walk"_s)},
      {"&walk", AddressOf(sElf, u"walk"_s)},
      {"model::limit", 40},
      {"sizeof (struct node)", 16},
      {"sizeof nodes", 48},
      {"counter", -1},
      {"nobody", -1},
      {"nowhere::COLOUR_NEGATIVE", -1},  // its enumeration has no name
      {"counter + 1", -1},
      {"counter * 2", -1},
      {"nobody < 2", -1},
      {"sizeof (nobody, 2)", -1},
      {"", -1},
  };
  const SESSION_RESULT Run = RunExpressions(sElf, aCases);
  Run.Expect(0, {"(\"counter\"): Error evaluating expression. data readout error",
                 "(\"nobody\"): Error evaluating expression. unknown symbol",
                 "(\"counter + 1\"): Error parsing expression", "(\"counter * 2\"): Error parsing expression",
                 "(\"nobody < 2\"): Error parsing expression", "(\"sizeof (nobody, 2)\"): Error parsing expression",
                 "value bytes: FD FF FF FF\n", "value as double: 1.84467440737096e+19\n"});
}

TEST_F(ProjectSession, OneNameOfSeveralThings) {
  const QString sElf = u"tests/elf/data/twins.elf"_s;
  const SESSION_RESULT Run = RunExpressions(sElf, {{"&level", 0x20000008},
                                                   {"&same_level", 0x20000008},
                                                   {"init", 0x8038},
                                                   {"kf", 1},
                                                   {"kd", 0xFFFFFFFE},
                                                   {"Tank::limit", 42},
                                                   {"Size::Huge", 0xFFFFFFFF},
                                                   {"sizeof (Tank)", 20},
                                                   {"sizeof (class Tank)", 20},
                                                   {"sizeof (enum second)", 1},
                                                   {"sizeof Levels", 20},
                                                   {"sizeof Size", 8},
                                                   {"sizeof (unsigned char)", 1},
                                                   {"sizeof (long long unsigned int)", 8},
                                                   {"&task_number", -1},
                                                   {"&task_state", -1},
                                                   {"sizeof ()", -1},
                                                   {"Tank::Level", -1}});
  Run.Expect(0, {"value as double: 1.25\n", "value as double: -2.5\n", "value as double: 1.84467440737096e+19\n",
                 "data type: unsigned long long\n"});
}

TEST_F(ProjectSession, ConstantsOfOtherTypes) {
  const SESSION_RESULT Run = RunSession(
      u"File.Open tests/database/data/scopes.elf\nElf.GetExprValue Ratio\n-Elf.GetExprValue Half\n"
      "File.Open tests/elf/data/pump_gcc.elf\n@wait idle\nElf.GetExprValue Limit::High\n"_s);
  Run.Expect(0, {"value as double: 3.25\n", "(\"Half\"): Error evaluating expression. the symbol has no value",
                 "value as dec int: 78187493530\n", "value bytes: 9A 78 56 34 12 00 00 00\n"});
  EXPECT_EQ(Run.Value(0), 3);
}

TEST_F(ProjectSession, VariablesAreReadAsTheirTypesSay) {
  const QString sElf = u"tests/corpus/data/gcc_v5_O0.elf"_s;
  const QString sRatio = u"0x%1"_s.arg(AddressOf(sElf, u"ratio"_s), 0, 16);
  const SESSION_RESULT Run = RunSession(
      u"Project.SetDevice CMSDK_CM4\n@wait idle\nFile.Open %1\n@wait idle\nDebug.SetConnectMode CM_ATTACH_HALT\n"
      "Debug.Connect\n@wait halted\nTarget.WriteU64 (%2, 0xC006000000000000)\nElf.GetExprValue ratio\nTarget.WriteU32 "
      "(counter, -5)\n"
      "Elf.GetExprValue counter\nTarget.WriteU8 (ready, 1)\nElf.GetExprValue ready\n-Elf.GetExprValue nodes\n"_s.arg(
          sElf, sRatio));
  Run.Expect(0, {"value as double: -2.75\n", "value as dec int: -5\n", "(\"nodes\"): Error evaluating expression."});
  EXPECT_EQ(Run.Value(0), 0xFFFFFFFE);
  EXPECT_EQ(Run.Value(1), 0xFFFFFFFB);
  EXPECT_EQ(Run.Value(2), 1);
}

TEST_F(ProjectSession, SymbolsAreRelocatedBeforeTheProgramComesForThisOneOnly) {
  const QString sElf = u"examples/traffic_light/traffic_light.elf"_s;
  const SESSION_RESULT Run = RunSession(
      u"Project.RelocateSymbols (\"*\", 0x100);\nFile.Open %1\nElf.GetEntryFuncPC\nUtil.Log again\nFile.Open %1\n"
      "Elf.GetEntryFuncPC\n"_s.arg(sElf));
  const quint32 Main = AddressOf(sElf, u"main"_s);
  EXPECT_EQ(std::pair(Run.Value(0), Run.Value(1)), std::pair(qint64{Main} + 0x100, qint64{Main}));
  EXPECT_GT(Run.sOutput.indexOf(u"The symbols are not relocated any more: "), Run.sOutput.indexOf(u"\nagain"));
}

}  // namespace
