// The user file: reading anything, writing what can be read again, and the layout that follows from the records.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/types.h"
#include "project/user_file.h"
#include "project/window_layout.h"
#include "user_file_rules.h"

namespace {

using testing::ElementsAre;

QString Text(const char* s) {
  return QString::fromUtf8(s);
}

TEST(UserFile, IsWrittenAsItIsSpokenOf) {
  USER_FILE File;
  File.Docks = {{Text("Console"), DOCK_AREA_BOTTOM, 0, 1, 640, 200, false, {}},
                {Text("Disassembly"), DOCK_AREA_RIGHT, 0, 0, 300, 400, true, true},
                {Text("Hidden"), DOCK_AREA_NONE, 0, 0, 0, 0, {}, {}},
                {Text("Memory 1"), DOCK_AREA_FLOATING, -20, 30, 5, 6, {}, {}}};
  File.WindowTexts = {ExecCountersText(Text("Source"))};
  File.ToolBars = {{Text("Debug"), false, 1, 0}, {Text("Trace"), true, 100, -5}};
  File.TableHeaders = {{Text("Functions"), Text("# Calls"), true, {Text("Name"), Text("a;b")}, {100, 20}},
                       {Text("Empty"), QString(), false, {}, {}}};
  EXPECT_EQ(
      MakeUserFileText(File).toStdString(),
      "OpenWindow=\"Console\", DockArea=BOTTOM, x=0, y=1, w=640, h=200, FilterBarShown=0, \n"
      "OpenWindow=\"Disassembly\", DockArea=RIGHT, x=0, y=0, w=300, h=400, FilterBarShown=1, ExecCountersShown=1\n"
      "OpenWindow=\"Memory 1\", DockArea=FLOATING, x=-20, y=30, w=5, h=6, FilterBarShown=0, \n"
      "OpenWindow=\"Source\", ExecCountersShown=1\n"
      "OpenToolbar=\"Debug\", Floating=0, x=1, y=0\n"
      "OpenToolbar=\"Trace\", Floating=1, x=100, y=-5\n"
      "TableHeader=\"Functions\", SortCol=\"# Calls\", SortOrder=\"DESCENDING\", VisibleCols=[\"Name\";\"a;b\"], "
      "ColWidths=[100;20]\n"
      "TableHeader=\"Empty\", SortCol=\"None\", SortOrder=\"ASCENDING\", VisibleCols=[], ColWidths=[]\n");
  EXPECT_EQ(MakeUserFileText({}), QString());
}

TEST(UserFile, ReadsDocksOfAnyForm) {
  const DOCK_RECORD Plain{Text("A"), DOCK_AREA_LEFT, 1, 2, 3, 4, {}, {}};
  const struct {
    const char* sText;
    DOCK_RECORD Expected;
  } aCases[] = {
      {"OpenWindow=\"A\", DockArea=LEFT, x=1, y=2, w=3, h=4", Plain},
      {"  OpenWindow = A ,DockArea=left,h=4,w=3,y=2,x=1,,Unknown=7, =8, 9", Plain},
      {"OpenWindow=\"A\", DockArea=\"LeftDockArea\", x=1, y=2, w=3, h=4 // x=9", Plain},
      {"OpenWindow=\"A\", DockArea=LEFT, x=1, y=2, w=3, h=4 # , h=9", Plain},
      {"OpenWindow=\"A\", DockArea=LEFT, x=1, y=2, w=3, h=4\r\nOpenWindow=\"B\"\r", Plain},
      {"OpenWindow=\"A\", DockArea=RIGHT, x=7\nOpenWindow=\"A\", DockArea=LEFT, x=1, y=2, w=3, h=4", Plain},
      {"OpenWindow=\"A\", DockArea=RightBottom", {Text("A"), DOCK_AREA_BOTTOM, 0, 0, 0, 0, {}, {}}},
      {"OpenWindow=\"A\", DockArea=top", {Text("A"), DOCK_AREA_NONE, 0, 0, 0, 0, {}, {}}},
      {"OpenWindow=\"A\", x=99999999999, y=-40000, w=1e9, h=-5", {Text("A"), DOCK_AREA_NONE, 0, -32767, 0, 0, {}, {}}},
      {"OpenWindow=\"A\", FilterBarShown=1, ExecCountersShown=yes", {Text("A"), DOCK_AREA_NONE, 0, 0, 0, 0, true, {}}},
      {"OpenWindow=\"A // , # b\", DockArea=LEFT", {Text("A // , # b"), DOCK_AREA_LEFT, 0, 0, 0, 0, {}, {}}},
      {"OpenWindow=\"A, DockArea=LEFT", {Text("A"), DOCK_AREA_LEFT, 0, 0, 0, 0, {}, {}}},
      {"OpenWindow=\"A\x01\x02\", DockArea=LEFT", {Text("A"), DOCK_AREA_LEFT, 0, 0, 0, 0, {}, {}}},
  };
  for (const auto& Case : aCases) {
    const QList<DOCK_RECORD> Docks = ParseUserFile(Text(Case.sText)).Docks;
    ASSERT_FALSE(Docks.isEmpty()) << Case.sText;
    EXPECT_TRUE(Docks.first() == Case.Expected) << Case.sText << "\n" << MakeUserFileText({Docks}).toStdString();
  }
  for (const char* sNone :
       {"", "// OpenWindow=\"A\"", "x=1, OpenWindow=\"A\"", "OpenWindow", "OpenWindow=", "openwindow=A"}) {
    EXPECT_TRUE(ParseUserFile(Text(sNone)).Docks.isEmpty()) << sNone;
  }
}

TEST(UserFile, TakesTheFirstTableHeaderAndLimitsLists) {
  const QString sMany = QStringLiteral("1;").repeated(100000);
  const USER_FILE File = ParseUserFile(QStringLiteral("TableHeader=\"T\", SortCol=\"A, B\", SortOrder=\"descending\", "
                                                      "VisibleCols=[\"A, B\"; C ;\"D;E\"], ColWidths=[10;x;-3;70000]\n"
                                                      "TableHeader=\"T\", SortCol=\"Z\"\n"
                                                      "TableHeader=\"U\", ColWidths=[") +
                                       sMany + QStringLiteral("]\n"));
  ASSERT_EQ(File.TableHeaders.size(), 2);
  const TABLE_HEADER_RECORD& Header = File.TableHeaders.first();
  EXPECT_EQ(Header.sSortCol, Text("A, B"));
  EXPECT_TRUE(Header.bDescending);
  EXPECT_EQ(Header.VisibleCols, (QStringList{Text("A, B"), Text("C"), Text("D;E")}));
  EXPECT_EQ(Header.ColWidths, (QList<int>{10, 0, 0, 32767}));
  EXPECT_EQ(File.TableHeaders.last().ColWidths.size(), 256);
}

TEST(UserFile, ExecutionCountersBelongToTheirWindow) {
  const QString sText = Text(
      "OpenWindow=\"Source\", ExecCountersShown=1\n"
      "OpenWindow=\"Source 2\", ExecCountersShown=0\nOpenWindow=\"Plain\"\n");
  EXPECT_EQ(FindExecCounters(sText, Text("Source")), std::optional(true));
  EXPECT_EQ(FindExecCounters(sText, Text("Source 2")), std::optional(false));
  EXPECT_EQ(FindExecCounters(sText, Text("Plain")), std::nullopt);
  EXPECT_EQ(FindExecCounters(sText, Text("Sour")), std::nullopt);
}

// Any text is read, and what was read is written and read again as the same.
TEST(UserFile, RoundTripsWhateverItUnderstands) {
  const QString sPieces = Text(
      "OpenWindow=\"A\", DockArea=LEFT, x=1, y=2, w=3, h=4, FilterBarShown=1, ExecCountersShown=0\n"
      "OpenToolbar=\"B\", Floating=1, x=-5, y=6\r\nTableHeader=\"C\", SortCol=\"D\", SortOrder=\"ASCENDING\", "
      "VisibleCols=[\"E\";F], ColWidths=[1;2]\r// \"#\" ; , = \x01 [ ] ü 99999999999 -1\n\nOpenWindow=\"G\"\n");
  U32 Seed = 7;
  const auto Next = [&Seed](qsizetype Limit) {
    Seed = Seed * 1664525u + 1013904223u;
    return static_cast<qsizetype>((Seed >> 8) % static_cast<U32>(Limit));
  };
  for (int i = 0; i < 5000; ++i) {
    QString sText = i % 2 ? sPieces : QString();
    for (int n = 0; n < 1 + i % 9; ++n) {
      const qsizetype From = Next(sPieces.size());
      sText.replace(Next(sText.size() + 1), Next(10), sPieces.mid(From, Next(60)));
    }
    ASSERT_EQ(BrokenUserFileRule(sText), std::string()) << sText.toStdString();
  }
}

// --- Layout

DOCK_RECORD Dock(const char* sName, DOCK_AREA Area, int x, int y, int w = 100, int h = 50) {
  return {Text(sName), Area, x, y, w, h, {}, {}};
}

std::vector<std::string> StepTexts(const DOCK_PLAN& Plan) {
  static const char* const KINDS[] = {"add", "below", "beside", "tab"};
  std::vector<std::string> Texts;
  for (const DOCK_STEP& Step : Plan.Steps) {
    Texts.push_back(Step.sDock.toStdString() + ' ' + KINDS[Step.Kind] + ' ' + Step.sAnchor.toStdString());
  }
  return Texts;
}

TEST(WindowLayout, DocksAreSplitAndTabbedByTheirCells) {
  const struct {
    const char* sName;
    QList<DOCK_RECORD> Records;
    std::vector<std::string> Steps;
  } aCases[] = {
      {"one column", {Dock("B", DOCK_AREA_LEFT, 0, 1), Dock("A", DOCK_AREA_LEFT, 0, 0)}, {"A add ", "B below A"}},
      {"a square",
       {Dock("A", DOCK_AREA_LEFT, 0, 0), Dock("B", DOCK_AREA_LEFT, 1, 0), Dock("C", DOCK_AREA_LEFT, 0, 1),
        Dock("D", DOCK_AREA_LEFT, 1, 1)},
       {"A add ", "C below A", "B beside A", "D beside C"}},
      {"a tall one at the left of two",
       {Dock("A", DOCK_AREA_BOTTOM, 0, 0), Dock("B", DOCK_AREA_BOTTOM, 1, 0), Dock("C", DOCK_AREA_BOTTOM, 1, 1)},
       {"A add ", "B beside A", "C below B"}},
      {"a tall one at the left of two, the upper one lower",
       {Dock("A", DOCK_AREA_LEFT, 0, 0), Dock("B", DOCK_AREA_LEFT, 1, 3)},
       {"A add ", "B beside A"}},
      {"tabs",
       {Dock("A", DOCK_AREA_LEFT, 0, 0), Dock("B", DOCK_AREA_LEFT, 0, 0), Dock("C", DOCK_AREA_LEFT, 0, 1),
        Dock("D", DOCK_AREA_LEFT, 0, 0)},
       {"A add ", "C below A", "B tab A", "D tab A"}},
      {"numbers with gaps and beyond reason",
       {Dock("A", DOCK_AREA_LEFT, 32767, -32767), Dock("B", DOCK_AREA_LEFT, 5, -32767)},
       {"B add ", "A beside B"}},
      {"areas apart", {Dock("A", DOCK_AREA_RIGHT, 0, 0), Dock("B", DOCK_AREA_LEFT, 0, 0)}, {"B add ", "A add "}},
  };
  for (const auto& Case : aCases) {
    EXPECT_EQ(StepTexts(PlanDocks(Case.Records, {Text("A"), Text("B"), Text("C"), Text("D")})), Case.Steps)
        << Case.sName;
  }
}

TEST(WindowLayout, OnlyKnownDocksCount) {
  const QStringList Names = {Text("A"), Text("B"), Text("C")};
  EXPECT_TRUE(PlanDocks({Dock("Gone", DOCK_AREA_LEFT, 0, 0)}, Names).IsEmpty()) << "the layout stays";
  const DOCK_PLAN Plan = PlanDocks(
      {Dock("Gone", DOCK_AREA_LEFT, 0, 0), Dock("A", DOCK_AREA_FLOATING, -9, 8), Dock("B", DOCK_AREA_NONE, 0, 0)},
      Names);
  EXPECT_TRUE(Plan.Steps.isEmpty());
  ASSERT_EQ(Plan.Floating.size(), 1);
  EXPECT_EQ(Plan.Floating.first().x, -9);
  EXPECT_EQ(Plan.Hidden, (QStringList{Text("B"), Text("C")}));
  const DOCK_PLAN Sizes = PlanDocks({Dock("A", DOCK_AREA_BOTTOM, 0, 0), Dock("B", DOCK_AREA_RIGHT, 0, 0)}, Names);
  EXPECT_EQ(Sizes.Extents, (QList<DOCK_EXTENT>{{Text("B"), 100, 0}, {Text("A"), 0, 50}}));
}

// A dock behind a tab counts as where the tab is, a floating one by its place on the screen.
TEST(WindowLayout, RecordsNumberTheEdgesOfTheirArea) {
  const QList<PLACED_ITEM> Docks = {{Text("A"), DOCK_AREA_LEFT, QRect(0, 20, 100, 300), {}},
                                    {Text("Tab"), DOCK_AREA_LEFT, QRect(7, 7, 1, 1), Text("A")},
                                    {Text("B"), DOCK_AREA_LEFT, QRect(106, 20, 50, 140), {}},
                                    {Text("C"), DOCK_AREA_LEFT, QRect(106, 170, 50, 150), {}},
                                    {Text("D"), DOCK_AREA_RIGHT, QRect(700, 170, 50, 150), {}},
                                    {Text("H"), DOCK_AREA_NONE, QRect(0, 0, 9, 9), {}},
                                    {Text("F"), DOCK_AREA_FLOATING, QRect(-40, 33, 9, 8), {}}};
  const QList<DOCK_RECORD> Records = RecordsOfDocks(Docks);
  EXPECT_EQ(Records, (QList<DOCK_RECORD>{
                         Dock("A", DOCK_AREA_LEFT, 0, 0, 100, 300), Dock("Tab", DOCK_AREA_LEFT, 0, 0, 100, 300),
                         Dock("B", DOCK_AREA_LEFT, 1, 0, 50, 140), Dock("C", DOCK_AREA_LEFT, 1, 1, 50, 150),
                         Dock("D", DOCK_AREA_RIGHT, 0, 0, 50, 150), Dock("F", DOCK_AREA_FLOATING, -40, 33, 9, 8)}));
  EXPECT_THAT(StepTexts(PlanDocks(Records, {Text("A"), Text("Tab"), Text("B"), Text("C"), Text("D"), Text("F")})),
              ElementsAre("A add ", "B beside A", "C below B", "Tab tab A", "D add "));
}

TEST(WindowLayout, ToolBarsKeepRowsAndOrder) {
  const QList<TOOL_BAR_RECORD> Records = RecordsOfToolBars({{Text("B"), DOCK_AREA_LEFT, QRect(90, 0, 10, 10), {}},
                                                            {Text("A"), DOCK_AREA_LEFT, QRect(0, 0, 10, 10), {}},
                                                            {Text("C"), DOCK_AREA_LEFT, QRect(40, 30, 10, 10), {}},
                                                            {Text("F"), DOCK_AREA_FLOATING, QRect(5, 6, 1, 1), {}},
                                                            {Text("N"), DOCK_AREA_NONE, QRect(5, 6, 1, 1), {}}});
  EXPECT_EQ(
      Records,
      (QList<TOOL_BAR_RECORD>{
          {Text("B"), false, 1, 0}, {Text("A"), false, 0, 0}, {Text("C"), false, 0, 1}, {Text("F"), true, 5, 6}}));
  const QStringList Names = {Text("N"), Text("B"), Text("A"), Text("C"), Text("F")};
  EXPECT_EQ(PlanToolBars(Records, Names), (QList<TOOL_BAR_STEP>{{Text("A"), false, true, false, 0, 0},
                                                                {Text("B"), false, true, false, 0, 0},
                                                                {Text("N"), false, false, false, 0, 0},
                                                                {Text("C"), true, true, false, 0, 0},
                                                                {Text("F"), false, true, true, 5, 6}}));
  EXPECT_TRUE(PlanToolBars({{Text("Gone"), false, 0, 0}}, Names).isEmpty());
  EXPECT_EQ(PlanToolBars({{Text("A"), false, 0, 5000}}, {Text("A")}),
            (QList<TOOL_BAR_STEP>{{Text("A"), false, true, false, 0, 0}}))
      << "no break ahead of the first row, and no row is lost";
}

}  // namespace
