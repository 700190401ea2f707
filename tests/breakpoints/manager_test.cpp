// The breakpoint manager over the device and real programs, without a target.

#include <gmock/gmock.h>

#include <QTemporaryDir>

#include "breakpoints.h"
#include "tests/common/files.h"

namespace {

TEST_F(Breakpoints, StandForAllAddressesOfTheirLine) {
  Load(DATA + u"lines_O0.elf"_s);
  const CSrcLoc Loc = ELFAPI_ParseSrcLoc(u"lines.cpp:29"_s);
  BP_SETTING Setting;
  ASSERT_TRUE(Manager().SetOnSrc(Loc, BP_STATE_ENABLED, BP_TYPE_ANY));
  EXPECT_TRUE(Manager().GetOnSrc(Loc, Setting)) << "what was asked for is seen at once";
  Finish();
  // state of one, then of the line
  Manager().Set(0x7E, BP_STATE_DISABLED, BP_TYPE_ANY);
  Manager().GetOnSrc(Loc, Setting);
  EXPECT_EQ(Setting.State, BP_STATE_MIXED);
  // a type for all leaves the states
  Manager().SetOnSrc(Loc, BP_STATE_MIXED, BP_TYPE_SOFT);
  Finish();
  BP Entry;
  EXPECT_TRUE(List().GetAt(0x7E, Entry) && Entry.State == BP_STATE_DISABLED && Entry.Type == BP_TYPE_SOFT);
  EXPECT_TRUE(List().GetAt(0x90, Entry) && Entry.State == BP_STATE_ENABLED && Entry.Type == BP_TYPE_SOFT);
  // properties of the line, then of one address
  CBreakpointProps Props;
  Props.SkipCount = 4;
  EXPECT_TRUE(Manager().Edit({Loc, INVALID_ADDR}, Props));
  EXPECT_TRUE(List().GetAt(0x4C, Entry) && Entry.bConditional);
  EXPECT_TRUE(Manager().Edit({{}, 0x4C}, {}));
  EXPECT_TRUE(List().GetAt(0x4C, Entry) && !Entry.bConditional);
  EXPECT_TRUE(List().GetAt(0x90, Entry) && Entry.bConditional);
  EXPECT_FALSE(Manager().Edit({{}, 0x4E}, Props)) << "no breakpoint there";
  EXPECT_TRUE(Manager().Rows().value(0).bPropsDiffer);
  Manager().ClearOnSrc(Loc);
  Manager().SetOnSrc(Loc, BP_STATE_ENABLED, BP_TYPE_ANY);
  Finish();
  EXPECT_TRUE(List().GetAt(0x90, Entry) && !Entry.bConditional) << "a new breakpoint has nothing of the old one";
}

TEST_F(Breakpoints, ComeBackAfterTheProgramHasChanged) {
  QTemporaryDir Dir;
  const auto Install = [&](const char* sVersion) {
    for (const QString& sFile : {u"moved.c"_s, u"moved.elf"_s}) {
      QFile::remove(Dir.filePath(sFile));
      QFile::copy(DATA + QLatin1String(sVersion) + u'/' + sFile, Dir.filePath(sFile));
    }
    Load(Dir.filePath(u"moved.elf"_s));
  };
  Install("before");
  const auto Loc = [](U32 Line) { return ELFAPI_ParseSrcLoc(u"moved.c:%1"_s.arg(Line)); };
  for (const U32 Line : {5, 9, 14, 27}) ASSERT_TRUE(Manager().SetOnSrc(Loc(Line), BP_STATE_ENABLED, BP_TYPE_ANY));
  Manager().Set(0x20000100, BP_STATE_DISABLED, BP_TYPE_SOFT);
  CBreakpointProps Props;
  Props.Condition = u"sink > 3"_s;
  Manager().Edit({Loc(9), INVALID_ADDR}, Props);
  Finish();
  ASSERT_EQ(List().Count(), 5);

  const auto Reload = [&](const char* sVersion) {
    Manager().BackupState();
    Install(sVersion);
    Manager().RestoreState();
    Finish();
  };
  using testing::ElementsAre;
  const auto Short = [] {
    std::vector<std::string> Texts;
    for (const CBreakpointRec& Row : Manager().Rows())
      Texts.push_back(u"%1 %2 %3"_s.arg(Row.sLocation).arg(Row.State).arg(Row.Context).toStdString());
    return Texts;
  };
  Reload("before");
  EXPECT_THAT(Short(), ElementsAre("moved.c:5 1 stays", "moved.c:9 1 loses_code", "moved.c:14 1 changes",
                                   "moved.c:27 1 gone", "0x20000100 3 "));
  Reload("after");
  EXPECT_THAT(Short(), ElementsAre("moved.c:5 1 stays", "moved.c:10 3 loses_code", "moved.c:14 3 changes",
                                   "moved.c:27 1 No code at this line", "0x20000100 3 "));
  EXPECT_EQ(Manager().Rows()[1].Props.Condition, Props.Condition) << "what it had goes with it";
  Reload("before");
  EXPECT_THAT(Short(), ElementsAre("moved.c:5 1 stays", "moved.c:10 3 loses_code", "moved.c:14 3 changes",
                                   "moved.c:27 1 gone", "0x20000100 3 "))
      << "a line that has code again has its breakpoint";

  // A program that can't be read, and none at all.
  Manager().BackupState();
  ELFAPI_Unload();
  Manager().RestoreState();
  Finish();
  EXPECT_EQ(List().Count(), 1);
  EXPECT_EQ(Manager().Rows().size(), 5);
  Manager().SetUserConfigStr(u"Breakpoint=\"/none/a/../x.c\", Line=3\nBreakpoint=\"/none/X.c\", Line=3\n"_s);
  EXPECT_EQ(Manager().Rows().size(), 6) << "spellings of one path";
  Reload("before");
  EXPECT_EQ(List().Count(), 5);

  // One that is set in a text that is saved later has its line from there.
  Manager().ClearAll();
  Manager().SetEditedText([](const QString&) { return QString::fromUtf8(ReadBytes(DATA + u"after/moved.c"_s)); });
  Manager().SetOnSrc(Loc(14), BP_STATE_ENABLED, BP_TYPE_ANY);
  Manager().SetEditedText({});
  Reload("after");
  EXPECT_THAT(Short(), ElementsAre("moved.c:14 1 changes"));
}

TEST_F(Breakpoints, MoveWithTheLinesOfAnEditedFile) {
  Load(DATA + u"before/moved.elf"_s);
  const auto Loc = [](U32 Line) { return ELFAPI_ParseSrcLoc(u"moved.c:%1"_s.arg(Line)); };
  const auto Lines = [] {
    std::vector<U32> Lines;
    for (const CBreakpointRec& Row : Manager().Rows()) Lines.push_back(Row.Loc.Line);
    std::sort(Lines.begin(), Lines.end());
    return Lines;
  };
  // first line that moves, by how many, and where the breakpoints of lines 5, 9 and 14 are then
  const std::tuple<U32, int, std::vector<U32>> aCases[] = {
      {15, 2, {5, 9, 14}}, {14, 2, {5, 9, 16}}, {9, 1, {5, 10, 15}}, {1, 3, {8, 12, 17}},
      {9, -2, {5, 7, 12}}, {10, -1, {5, 13}},   {15, -15, {}},
  };
  for (const auto& [FirstLine, NumLines, Wanted] : aCases) {
    Manager().ClearAll();
    for (const U32 Line : {5, 9, 14}) Manager().SetOnSrc(Loc(Line), BP_STATE_DISABLED, BP_TYPE_ANY);
    Manager().ShiftLines(Loc(1).File, FirstLine, NumLines);
    Finish();
    EXPECT_EQ(Lines(), Wanted) << FirstLine << " " << NumLines;
    for (const CBreakpointRec& Row : Manager().Rows()) EXPECT_EQ(Row.State, BP_STATE_DISABLED);
  }
}

}  // namespace
