// Breakpoints in whole sessions on the simulator.

#include <QRegularExpression>

#include "session_runner.h"

namespace {

using BreakpointSession = SessionTest;

// The line of the program of these tests that ends with a comment "LINE sName".
QString LineOf(const char* sName) {
  const QStringList Lines =
      QString::fromUtf8(ReadBytes(QStringLiteral(VEXOR_SOURCE_DIR "/tests/breakpoints/data/lines.cpp"))).split(u'\n');
  for (qsizetype i = 0; i < Lines.size(); ++i) {
    if (Lines[i].endsWith(u"// LINE "_s + QLatin1String(sName))) return u"lines.cpp:%1"_s.arg(i + 1);
  }
  ADD_FAILURE() << sName;
  return {};
}

// A session with that program; "{name}" stands for the line of that name, "{&symbol}" for an address.
SESSION_RESULT RunLines(QString sText) {
  const QString sElf = u"tests/breakpoints/data/lines_O0.elf"_s;
  static const QRegularExpression Name(u"\\{(&?)([^}]*)\\}"_s);
  for (QRegularExpressionMatch Match = Name.match(sText); Match.hasMatch(); Match = Name.match(sText)) {
    const QString sName = Match.captured(2);
    sText.replace(Match.capturedStart(), Match.capturedLength(),
                  Match.captured(1).isEmpty() ? LineOf(sName.toLatin1().constData())
                                              : u"0x%1"_s.arg(AddressOf(sElf, sName), 0, 16));
  }
  return RunSession(u"Project.SetDevice CMSDK_CM4\n@wait idle\nFile.Open %1\n@wait idle\n"_s.arg(sElf) + sText);
}

constexpr const char* START = "Debug.Start\n@wait halted\n";
constexpr const char* GO = "Debug.Continue\n@wait halted\n";

TEST_F(BreakpointSession, CommandsRefuseInTheirWords) {
  // What comes ahead of a command, the command, and its error; null: none.
  const std::tuple<const char*, const char*, const char*> aCases[] = {
      {"", "Break.Set 0x100", nullptr},
      {"Break.Set 0x101", "Break.Set 0x100", "Breakpoint already set"},
      {"Break.Set 0x100", "Break.SetEx 0x100 BP_TYPE_HARD", nullptr},
      {"Break.Set 0x100", "Break.SetEx 0x100 3", "invalid parameter"},
      {"", "Break.Set nobody", "invalid parameter"},
      {"Break.SetOnSrc {loop}", "Break.SetOnSrc {loop}", "Breakpoint already set"},
      {"Break.SetOnSrc {loop}", "Break.SetOnSrcEx {loop} BP_TYPE_SOFT", nullptr},
      {"", "Break.SetOnSrc nobody.c:12", "invalid parameter: \"nobody.c:12\""},
      {"Break.SetOnSrc {end of pass}", "Break.Clear 0x158", "Derived breakpoints cannot be cleared individually"},
      {"Break.SetOnSrc {end of pass}", "Break.Disable 0x158", nullptr},
      {"", "Break.Clear 0x100", "Breakpoint not set"},
      {"", "Break.Disable 0x100", "Breakpoint not set"},
      {"", "Break.Enable 0x100", "Breakpoint not disabled"},
      {"Break.Set 0x100", "Break.Enable 0x100", "Breakpoint not disabled"},
      {"Break.Set 0x100\nBreak.Disable 0x100", "Break.Enable 0x100", nullptr},
      {"", "Break.ClearOnSrc {loop}", "Breakpoint not set"},
      {"", "Break.DisableOnSrc {loop}", "Breakpoint not set"},
      {"Break.SetOnSrc {loop}", "Break.EnableOnSrc {loop}", "Breakpoint not disabled"},
      {"Break.SetOnSrc {loop}\nBreak.DisableOnSrc {loop}", "Break.EnableOnSrc {loop}", nullptr},
      {"", "Break.Edit ({loop}, \"\", 0, 1, \"\", \"\", \"\")", "No breakpoint matches the given parameters."},
      {"Break.SetOnSrc {loop}", "Break.Edit ({loop}, \"\", 0, x, \"\", \"\", \"\")", "invalid parameter"},
      {"Break.SetOnSrc {loop}", "Break.Edit ({loop}, \"\", 0)", "wrong parameter count"},
      {"Break.SetOnSrc {loop}", "Edit.Break ({loop}, \"\", NO, 1, \"\", \"\", \"\")", nullptr},
      {"", "Break.SetType {loop} BP_TYPE_SOFT", "No breakpoint matches the given parameters."},
      {"Break.Set 0x100", "Break.SetType 0x100 BP_TYPE_SOFT", nullptr},
      {"", "Break.ClearAll", "Command disabled"},
  };
  // All in one session: a refused command ends it unless it may fail, and then says so.
  QString sSession;
  for (const auto& [sBefore, sCommand, sError] : aCases) {
    sSession += u"Break.Set 0x2\nBreak.ClearAll\n@wait idle\n"_s + QLatin1String(sBefore) +
                u"\nUtil.Log \"case\"\n-"_s + QLatin1String(sCommand) + u"\nUtil.Log \"end\"\n"_s;
  }
  const SESSION_RESULT Result = RunLines(sSession);
  Result.Expect(0);
  const QStringList Parts = Result.sOutput.split(u"Util.Log (\"case\");\n"_s);
  ASSERT_EQ(Parts.size(), static_cast<qsizetype>(std::size(aCases)) + 1) << Result.sOutput.toStdString();
  for (size_t i = 0; i < std::size(aCases); ++i) {
    const auto& [sBefore, sCommand, sError] = aCases[i];
    const QString sPrinted = Parts[static_cast<qsizetype>(i) + 1].section(u"Util.Log"_s, 0, 0);
    const bool bRefused = sPrinted.contains(u"): "_s) || sPrinted.contains(u"disabled"_s);
    EXPECT_EQ(sError != nullptr, bRefused) << sCommand << "\n" << sPrinted.toStdString();
    EXPECT_TRUE(sPrinted.contains(QLatin1String(sError))) << sPrinted.toStdString();
  }
}

TEST_F(BreakpointSession, HaltsCountByTheirProperties) {
  const QString sCount = u"Target.ReadU32 {&pass_count}\n"_s;
  // properties, and the passes that were complete at the first two halts
  const std::tuple<const char*, int, int, const char*> aCases[] = {
      {"\"\", 0, 0, \"\", \"\", \"\"", 0, 1, ""},
      {"\"\", 0, 2, \"\", \"a pass\", \"\"", 2, 5, "\na pass\n"},
      {"\"\", 0, 1, \"\", \"\", \"a box\"", 1, 3, "[Breakpoint Triggered] a box\n"},
      {"\"pass_count == 9\", 1, 0, \"7\", \"\", \"\"", 0, 1, ""},  // nobody can evaluate it
  };
  for (const auto& [sProps, First, Second, sPrinted] : aCases) {
    const SESSION_RESULT Result =
        RunLines(u"Break.SetOnSrc {end of pass}\nBreak.Edit ({end of pass}, %1)\n%2%3%4%3%4"_s.arg(
            QLatin1String(sProps), QLatin1String(START), QLatin1String(GO), sCount));
    Result.Expect(0, {sPrinted});
    EXPECT_EQ(First, Result.Value(0)) << sProps;
    EXPECT_EQ(Second, Result.Value(1)) << sProps;
  }
}

TEST_F(BreakpointSession, ChangesActHaltedAndRunning) {
  const SESSION_RESULT Result = RunLines(
      QLatin1String(START) + u"Break.SetOnSrc {loop}\n"_s + QLatin1String(GO) +
      u"Target.GetReg PC\n"
      "Break.SetType {loop} BP_TYPE_SOFT\nBreak.DisableOnSrc {loop}\nBreak.SetOnSrcEx {end of pass} BP_TYPE_HARD\n"_s +
      QLatin1String(GO) +
      u"Target.GetReg PC\nBreak.ClearAll\nDebug.Continue\n@wait running\n"
      "Break.Set {&_Z4loopm}\nBreak.SetType {&_Z4loopm} BP_TYPE_SOFT\n@wait halted\nTarget.GetReg PC\n"
      "Break.Clear {&_Z4loopm}\nDebug.Continue\n@wait running\nBreak.SetOnSrc {inline}\n@wait halted\nTarget.GetReg PC\n"_s);
  Result.Expect(0);
  EXPECT_EQ(0xC0, Result.Value(0));
  EXPECT_EQ(0x158, Result.Value(1));
  EXPECT_EQ(Result.Value(2), AddressOf(u"tests/breakpoints/data/lines_O0.elf"_s, u"_Z4loopm"_s));
  EXPECT_TRUE(Result.Value(3) == 0x4C || Result.Value(3) == 0x7E || Result.Value(3) == 0x90) << Result.Value(3);
}

// A hook sets them while the target is connected; rows of the window by what became of them.
TEST_F(BreakpointSession, AreNoMoreThan256) {
  const QString sElf = QStringLiteral(VEXOR_SOURCE_DIR "/tests/breakpoints/data/lines_O0.elf");
  const QString sProject = Write("many.vdebug",
                                 u"void OnProjectLoad (void) {\n  Project.SetDevice (\"CMSDK_CM4\");\n"
                                 "  File.Open (\"%1\");\n}\n"
                                 "void AfterTargetConnect (void) {\n  int i;\n  i = 0;\n"
                                 "  while (i < 257) {\n"
                                 "    Break.SetEx (0x20001000 + i * 2, BP_TYPE_SOFT);\n    i = i + 1;\n"
                                 "  }\n}\n"_s.arg(sElf)
                                     .toUtf8());
  const SESSION_RESULT Result =
      RunSession(u"File.Open (\"%1\")\n@wait idle\n"_s.arg(sProject) + QLatin1String(START) +
                 u"@dump Breakpoints\nBreak.ClearAll\n@wait idle\nBreak.SetOnSrc lines.cpp:56\n"_s + QLatin1String(GO) +
                 u"Target.GetReg PC\n"_s);
  Result.Expect(0, {"Breakpoint @ 0x20001200 could not be set: breakpoint list full.\n"});
  const auto NumRows = [&](const QString& sStart, const QString& sText) {
    return std::count_if(Result.Lines.begin(), Result.Lines.end(),
                         [&](const QString& sLine) { return sLine.startsWith(sStart) && sLine.contains(sText); });
  };
  EXPECT_EQ(NumRows(u"On\t0x20001"_s, u"\tSoft\tSoft (RAM)\t"_s), 256);
  EXPECT_EQ(NumRows(u"Off\t0x20001200\t"_s, u"Not set: breakpoint list full."_s), 1);
  EXPECT_EQ(Result.Value(0), 0x158) << "with the list empty again";
}

// The core has 6 comparators: the loop has 6 addresses. What could not be set is said, shown, and set when there is
// room.
TEST_F(BreakpointSession, SayWhichCouldNotBeSetAndWhy) {
  const QString sDump = u"@wait idle\n@dump Breakpoints\n"_s;
  const SESSION_RESULT Result = RunLines(
      QLatin1String(START) + u"Break.SetOnSrcEx {loop} BP_TYPE_HARD\nBreak.SetOnSrcEx {end of pass} BP_TYPE_HARD\n"_s +
      sDump + u"Break.ClearOnSrc {loop}\n@wait idle\nBreak.SetType {end of pass} BP_TYPE_ANY\n"_s + sDump +
      u"Break.SetEx 0x50000000 BP_TYPE_SOFT\n@wait idle\nDebug.Stop\n@wait disconnected\n"_s + sDump +
      QLatin1String(START) + u"Break.Clear 0x50000000\n-Break.Clear 0x50000000\n"_s + sDump);
  const QString sNone = u": no breakpoint unit and no memory to hold it"_s;
  Result.Expect(0, {"Break.Clear (0x50000000): Breakpoint not set"});
  for (const QString& sPlace : {u"lines.cpp:56 @ 0x00000158"_s, u"@ 0x50000000"_s})
    EXPECT_TRUE(Result.Lines.contains(u"Breakpoint %1 could not be set"_s.arg(sPlace) + sNone));
  // state, place, and what the row says of it
  QStringList Rows;
  for (const QString& sLine : Result.Lines.filter(u"\t"_s)) {
    const QStringList Cells = sLine.split(u'\t');
    if (Cells[1].startsWith(u"lines.cpp:56"_s) || Cells[1].startsWith(u"0x5"_s))
      Rows << QStringList{Cells[0], Cells[1].right(2), Cells[2], Cells[3], Cells[4]}.join(u' ');
  }
  const QStringList Wanted = {u"Off 56 Hard  Not set"_s + sNone, u"On 56 Any Hard main"_s, u"On 56 Any  main"_s,
                              u"On 00 Soft  "_s, u"On 56 Any Hard main"_s};
  EXPECT_TRUE(Rows == Wanted) << Rows.join(u'\n').toStdString();
}

TEST_F(BreakpointSession, SurviveReconnectAndReload) {
  const SESSION_RESULT Result =
      RunLines(u"Break.SetOnSrc {end of pass}\nBreak.Edit ({end of pass}, \"\", 0, 3, \"\", \"\", \"\")\n"_s +
               QLatin1String(START) + u"Debug.Stop\n@wait disconnected\n"_s + QLatin1String(START) + QLatin1String(GO) +
               u"Target.ReadU32 {&pass_count}\nFile.Open tests/breakpoints/data/lines_O0.elf\n@wait idle\nDebug.Reset\n"
               "@wait halted\n"_s +
               QLatin1String(GO) +
               u"Target.ReadU32 {&pass_count}\n"
               "File.Open examples/traffic_light/traffic_light.elf\n@wait idle\n-Break.ClearAll\n"_s);
  Result.Expect(0, {"Break.ClearAll: Command disabled"});
  EXPECT_EQ(3, Result.Value(0));
  EXPECT_EQ(3, Result.Value(1)) << "the counters begin anew with a reset";
}

TEST_F(BreakpointSession, LinesGoWithRelocatedSymbolsAndAddressesStay) {
  RunLines(
      u"Break.SetOnSrc {end of pass}\nBreak.Set 0x200\nProject.RelocateSymbols * 0x1000\n"
      "-Break.Clear 0x158\n-Break.Clear 0x1158\nBreak.Clear 0x200\nBreak.ClearOnSrc {end of pass}\n"_s)
      .Expect(0, {"Break.Clear (0x158): Breakpoint not set",
                  "Break.Clear (0x1158): Derived breakpoints cannot be cleared individually"});
}

// Names of local variables are those of the function in which the target stands.
TEST_F(BreakpointSession, LocalsAreKnownWhereTheTargetHasHalted) {
  const SESSION_RESULT Result =
      RunLines(QLatin1String(START) + u"-Break.Set total\nBreak.SetOnSrc {loop}\n"_s + QLatin1String(GO) +
               u"Break.Set total\nElf.GetExprValue pass_count\nTarget.WriteU32 ({&pass_count}, 77)\n"
               "Elf.GetExprValue pass_count\nElf.GetExprValue loop\nDebug.Stop\n@wait disconnected\n"
               "Break.ClearAll\n-Break.Set total\n"_s);
  Result.Expect(0, {"data type: ulong\n"});
  EXPECT_EQ(Result.sOutput.count(u"Break.Set (total): invalid parameter"_s), 2) << Result.sOutput.toStdString();
  EXPECT_EQ(Result.Value(0), 0);
  EXPECT_EQ(Result.Value(1), 77);
  EXPECT_EQ(Result.Value(2), AddressOf(u"tests/breakpoints/data/lines_O0.elf"_s, u"_Z4loopm"_s));
}

// A project's own function sets them, and they go with it.
TEST_F(BreakpointSession, LiveWithTheirProject) {
  const QString sElf = QStringLiteral(VEXOR_SOURCE_DIR "/tests/breakpoints/data/lines_O0.elf");
  const auto Open = [&](const char* sName, const char* sCommands) {
    const QString sFile = Write(
        sName, u"void OnProjectLoad (void) {\n  Project.SetDevice (\"CMSDK_CM4\");\n  File.Open (\"%1\");\n%2}\n"_s
                   .arg(sElf, QLatin1String(sCommands))
                   .toUtf8());
    return u"File.Open (\"%1\")\n@wait idle\n"_s.arg(sFile);
  };
  const QString sSet = Open("set.vdebug",
                            "  Break.SetOnSrc (\"lines.cpp:43\");\n  Break.Disable (0xC4);\n"
                            "  Break.Set (0x1234);\n  Break.Clear (0x1234);\n");
  const QString sPlain = Open("plain.vdebug", "");
  RunSession(sSet + u"-Break.SetOnSrc lines.cpp:56\n"_s + sPlain + u"-Break.ClearAll\n"_s + sSet +
             u"Break.SetOnSrc lines.cpp:56\n-Break.Enable 0x1234\nBreak.Enable 0xC4\n"_s)
      .Expect(0, {"Break.ClearAll: Command disabled", "Break.Enable (0x1234): Breakpoint not disabled"});
}

}  // namespace
