// The breakpoint manager over the device and real programs, without a target.

#include <gmock/gmock.h>

#include <QTemporaryDir>

#include "breakpoints.h"

namespace {

TEST_F(Breakpoints, StandForAllAddressesOfTheirLine) {
  Load(DATA + u"lines_O0.elf"_s);
  const CSrcLoc Loc = LineOf(u"inline"_s);
  BP_SETTING Setting;
  ASSERT_TRUE(Manager().SetOnSrc(Loc, BP_STATE_ENABLED, BP_TYPE_ANY));
  EXPECT_TRUE(Manager().GetOnSrc(Loc, Setting)) << "what was asked for is seen at once";
  Finish();
  EXPECT_EQ(Rows(), (QStringList{u"lines.cpp:29 1 mix in first, mix in second"_s, u"> 0x0000004C 1 mix in first"_s,
                                 u"> 0x0000007E 1 mix in second"_s, u"> 0x00000090 1 mix in second"_s}));
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

// What scripts and fast fingers do: nothing waits for the device in between.
TEST_F(Breakpoints, SeeWhatIsOnItsWay) {
  BP Entry;
  Manager().Set(0x100, BP_STATE_ENABLED, BP_TYPE_ANY);
  Manager().Set(0x102, BP_STATE_ENABLED, BP_TYPE_HARD);
  Manager().Clear(0x100);
  EXPECT_FALSE(Manager().GetAt(0x100, Entry));
  EXPECT_TRUE(Manager().GetAt(0x102, Entry) && Entry.Type == BP_TYPE_HARD);
  Manager().ClearAll();
  EXPECT_FALSE(Manager().GetAt(0x102, Entry));
  Manager().Set(0x104, BP_STATE_DISABLED, BP_TYPE_ANY);
  EXPECT_EQ(Rows(), QStringList{u"0x00000104 3"_s});
  Finish();
  EXPECT_EQ(Rows(), QStringList{u"0x00000104 3"_s});
}

TEST_F(Breakpoints, AreNoMoreThan256) {
  for (U32 i = 0; i < 256; ++i) Manager().Set(0x1000 + 2 * i, BP_STATE_ENABLED, BP_TYPE_ANY);
  Finish();
  Manager().Set(0x3000, BP_STATE_ENABLED, BP_TYPE_ANY);
  Finish();
  BP Entry;
  EXPECT_EQ(List().Count(), 256);
  EXPECT_FALSE(List().GetAt(0x3000, Entry));
  EXPECT_EQ(Rows().value(256), u"0x00003000 0 Not set: breakpoint list full."_s) << "says so instead of vanishing";
  Manager().Clear(0x1000);
  Manager().Set(0x3000, BP_STATE_ENABLED, BP_TYPE_HARD);
  Finish();
  EXPECT_EQ(Rows().size(), 256);
  EXPECT_TRUE(List().GetAt(0x3000, Entry) && Entry.Type == BP_TYPE_HARD);
  Manager().Set(0x4000, BP_STATE_ENABLED, BP_TYPE_ANY);
  Finish();
  Manager().Clear(0x4000);
  Finish();
  EXPECT_EQ(Rows().size(), 256);
  EXPECT_FALSE(Manager().GetAt(0x4000, Entry));
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
  Reload("before");
  EXPECT_EQ(List().Count(), 5);
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

TEST_F(Breakpoints, AreKeptInTheUserFile) {
  Load(DATA + u"lines_O0.elf"_s);
  Manager().SetOnSrc(LineOf(u"loop"_s), BP_STATE_ENABLED, BP_TYPE_HARD);
  Manager().SetOnSrc(LineOf(u"inline"_s), BP_STATE_ENABLED, BP_TYPE_ANY);
  Manager().Set(0x7E, BP_STATE_DISABLED, BP_TYPE_ANY);
  Manager().Set(0x20000000, BP_STATE_ENABLED, BP_TYPE_ANY);
  CBreakpointProps Props;
  Props.ExtraActionConsoleText = u"here"_s;
  Manager().Edit({{}, 0x90}, Props);
  Finish();
  const QStringList Before = Rows();
  const QString sText = Manager().GetUserConfigStr();
  // the program is unloaded ahead of the writing of the user file
  Manager().BackupState();
  Manager().ForgetState(true);
  CDevice::Get().ScheduleClearAllBreakpoints();
  Finish();
  EXPECT_EQ(Manager().GetUserConfigStr(), sText);
  Manager().ClearStateBackup();
  EXPECT_EQ(Manager().GetUserConfigStr(), QString());
  Manager().SetUserConfigStr(sText);
  Finish();
  EXPECT_EQ(Rows(), Before);
  CBreakpointProps After;
  EXPECT_TRUE(Manager().GetProps({{}, 0x90}, After) && After.IsSame(Props));
  EXPECT_TRUE(Manager().GetProps({{}, 0x4C}, After) && After.IsSame({}));
  BP Entry;
  EXPECT_TRUE(List().GetAt(0xC0, Entry) && Entry.Type == BP_TYPE_HARD);
}

TEST_F(Breakpoints, ReadTheTextsOfUsers) {
  Load(DATA + u"lines_O0.elf"_s);
  // text, line (0: none), address
  const std::tuple<const char*, U32, U32> aCases[] = {
      {"lines.cpp:29", 29, INVALID_ADDR},
      {"first", 33, INVALID_ADDR},
      {"main", 47, INVALID_ADDR},
      {"add", 12, INVALID_ADDR},  // a function, though its name is a number
      {"0xadd", 0, 0xADC},
      {"0x4C", 0, 0x4C},
      {"4d", 0, 0x4C},
      {"nobody", 0, INVALID_ADDR},
      {"lines.cpp", 0, INVALID_ADDR},
      {"other.cpp:3", 0, INVALID_ADDR},
      {"", 0, INVALID_ADDR},
  };
  for (const auto& [sText, Line, Addr] : aCases) {
    const BREAKPOINT_LOCATION Location = ParseBreakpointLocation(QLatin1String(sText));
    EXPECT_EQ(Location.Loc.Line, Line) << sText;
    EXPECT_EQ(Location.Addr, Addr) << sText;
  }
}

}  // namespace
