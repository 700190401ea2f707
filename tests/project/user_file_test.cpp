// The user file: reading anything, writing what can be read again, and the layout that follows from the records.

#include <map>
#include <random>

#include <gtest/gtest.h>

#include "base/types.h"
#include "project/user_file.h"
#include "project/window_layout.h"
#include "tests/common/print.h"
#include "user_file_rules.h"

namespace {

TEST(UserFile, IsWrittenAsItIsSpokenOf) {
  USER_FILE File;
  File.Docks = {{"Console", DOCK_AREA_BOTTOM, 0, 1, 640, 200, false, {}},
                {"Disassembly", DOCK_AREA_RIGHT, 0, 0, 300, 400, true, true},
                {"Hidden", DOCK_AREA_NONE, 0, 0, 0, 0, {}, {}},
                {"Memory 1", DOCK_AREA_FLOATING, -20, 30, 5, 6, {}, {}}};
  File.WindowTexts = {ExecCountersText("Source")};
  File.ToolBars = {{"Debug", false, 1, 0}, {"Trace", true, 100, -5}};
  File.TableHeaders = {{"Functions", "# Calls", true, {"Name", "a;b"}, {100, 20}}, {"Empty", QString(), false, {}, {}}};
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
  const DOCK_RECORD Plain{"A", DOCK_AREA_LEFT, 1, 2, 3, 4, {}, {}};
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
      {"OpenWindow=\"A\", DockArea=RightBottom", {"A", DOCK_AREA_BOTTOM, 0, 0, 0, 0, {}, {}}},
      {"OpenWindow=\"A\", DockArea=top", {"A", DOCK_AREA_NONE, 0, 0, 0, 0, {}, {}}},
      {"OpenWindow=\"A\", x=99999999999, y=-40000, w=1e9, h=-5", {"A", DOCK_AREA_NONE, 0, -32767, 0, 0, {}, {}}},
      {"OpenWindow=\"A\", FilterBarShown=1, ExecCountersShown=yes", {"A", DOCK_AREA_NONE, 0, 0, 0, 0, true, {}}},
      {"OpenWindow=\"A // , # b\", DockArea=LEFT", {"A // , # b", DOCK_AREA_LEFT, 0, 0, 0, 0, {}, {}}},
      {"OpenWindow=\"A, DockArea=LEFT", {"A", DOCK_AREA_LEFT, 0, 0, 0, 0, {}, {}}},
      {"OpenWindow=\"A\x01\x02\", DockArea=LEFT", {"A", DOCK_AREA_LEFT, 0, 0, 0, 0, {}, {}}},
  };
  for (const auto& Case : aCases) {
    const QList<DOCK_RECORD> Docks = ParseUserFile(Case.sText).Docks;
    ASSERT_FALSE(Docks.isEmpty()) << Case.sText;
    EXPECT_TRUE(Docks.first() == Case.Expected) << Case.sText << "\n" << MakeUserFileText({Docks}).toStdString();
  }
  for (const char* sNone :
       {"", "// OpenWindow=\"A\"", "x=1, OpenWindow=\"A\"", "OpenWindow", "OpenWindow=", "openwindow=A"}) {
    EXPECT_TRUE(ParseUserFile(sNone).Docks.isEmpty()) << sNone;
  }
}

TEST(UserFile, TakesTheFirstTableHeaderAndLimitsLists) {
  const QString sMany = QString("1;").repeated(100000);
  const USER_FILE File = ParseUserFile(
      "TableHeader=\"T\", SortCol=\"A, B\", SortOrder=\"descending\", "
      "VisibleCols=[\"A, B\"; C ;\"D;E\"], ColWidths=[10;x;-3;70000]\n"
      "TableHeader=\"T\", SortCol=\"Z\"\n"
      "TableHeader=\"U\", ColWidths=[" +
      sMany + "]\n");
  ASSERT_EQ(File.TableHeaders.size(), 2);
  const TABLE_HEADER_RECORD& Header = File.TableHeaders.first();
  EXPECT_EQ(Header.sSortCol, "A, B");
  EXPECT_TRUE(Header.bDescending);
  EXPECT_EQ(Header.VisibleCols, (QStringList{"A, B", "C", "D;E"}));
  EXPECT_EQ(Header.ColWidths, (QList<int>{10, 0, 0, 32767}));
  EXPECT_EQ(File.TableHeaders.last().ColWidths.size(), 256);
}

TEST(UserFile, ExecutionCountersBelongToTheirWindow) {
  const QString sText =
      "OpenWindow=\"Source\", ExecCountersShown=1\n"
      "OpenWindow=\"Source 2\", ExecCountersShown=0\nOpenWindow=\"Plain\"\n";
  EXPECT_EQ(FindExecCounters(sText, "Source"), std::optional(true));
  EXPECT_EQ(FindExecCounters(sText, "Source 2"), std::optional(false));
  EXPECT_EQ(FindExecCounters(sText, "Plain"), std::nullopt);
  EXPECT_EQ(FindExecCounters(sText, "Sour"), std::nullopt);
}

// Any text is read, and what was read is written and read again as the same.
TEST(UserFile, RoundTripsWhateverItUnderstands) {
  const QString sPieces =
      "OpenWindow=\"A\", DockArea=LEFT, x=1, y=2, w=3, h=4, FilterBarShown=1, ExecCountersShown=0\n"
      "OpenToolbar=\"B\", Floating=1, x=-5, y=6\r\nTableHeader=\"C\", SortCol=\"D\", SortOrder=\"ASCENDING\", "
      "VisibleCols=[\"E\";F], ColWidths=[1;2]\r// \"#\" ; , = \x01 [ ] ü 99999999999 -1\n\nOpenWindow=\"G\"\n";
  std::mt19937 Random(7);
  const auto Next = [&Random](qsizetype Limit) { return static_cast<qsizetype>(Random() % static_cast<U32>(Limit)); };
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

// Docks as "name area x y, ...", the area by its first letter.
QList<DOCK_RECORD> Docks(const char* sDocks) {
  const std::map<QString, DOCK_AREA> AREAS = {
      {"N", DOCK_AREA_NONE},   {"L", DOCK_AREA_LEFT},     {"R", DOCK_AREA_RIGHT},
      {"B", DOCK_AREA_BOTTOM}, {"F", DOCK_AREA_FLOATING},
  };
  QList<DOCK_RECORD> Records;
  for (const QString& sDock : QString(sDocks).split(", ")) {
    const QStringList Parts = sDock.split(' ');
    Records << DOCK_RECORD{Parts[0], AREAS.at(Parts[1]), Parts[2].toInt(), Parts[3].toInt(), 100, 50, {}, {}};
  }
  return Records;
}

std::string StepTexts(const DOCK_PLAN& Plan) {
  static const char* const KINDS[] = {" add", " below ", " beside ", " tab "};
  QStringList Texts;
  for (const DOCK_STEP& Step : Plan.Steps) Texts << Step.sDock + KINDS[Step.Kind] + Step.sAnchor;
  return Texts.join(", ").toStdString();
}

TEST(WindowLayout, DocksAreSplitAndTabbedByTheirCells) {
  const struct {
    const char* sName;
    const char* sDocks;
    const char* sSteps;
  } aCases[] = {
      {"one column", "B L 0 1, A L 0 0", "A add, B below A"},
      {"a square", "A L 0 0, B L 1 0, C L 0 1, D L 1 1", "A add, C below A, B beside A, D beside C"},
      {"a tall one at the left of two", "A B 0 0, B B 1 0, C B 1 1", "A add, B beside A, C below B"},
      {"the same, the upper one lower", "A L 0 0, B L 1 3", "A add, B beside A"},
      {"tabs", "A L 0 0, B L 0 0, C L 0 1, D L 0 0", "A add, C below A, B tab A, D tab A"},
      {"numbers with gaps and beyond reason", "A L 32767 -32767, B L 5 -32767", "B add, A beside B"},
      {"areas apart", "A R 0 0, B L 0 0", "B add, A add"},
  };
  for (const auto& Case : aCases) {
    EXPECT_EQ(StepTexts(PlanDocks(Docks(Case.sDocks), {"A", "B", "C", "D"})), Case.sSteps) << Case.sName;
  }
}

TEST(WindowLayout, OnlyKnownDocksCount) {
  const QStringList Names = {"A", "B", "C"};
  EXPECT_TRUE(PlanDocks(Docks("Gone L 0 0"), Names).IsEmpty()) << "the layout stays";
  const DOCK_PLAN Plan = PlanDocks(Docks("Gone L 0 0, A F -9 8, B N 0 0"), Names);
  EXPECT_TRUE(Plan.Steps.isEmpty());
  EXPECT_EQ(Plan.Floating, Docks("A F -9 8"));
  EXPECT_EQ(Plan.Hidden, (QStringList{"B", "C"}));
  const DOCK_PLAN Sizes = PlanDocks(Docks("A B 0 0, B R 0 0"), Names);
  EXPECT_EQ(Sizes.Extents, (QList<DOCK_EXTENT>{{"B", 100, 0}, {"A", 0, 50}}));
}

TEST(WindowLayout, AToolBarFarDownGetsNoBreakAheadOfTheFirstRowAndTheOthersAreHidden) {
  EXPECT_EQ(PlanToolBars({{"A", false, 0, 5000}}, {"A", "N"}),
            (QList<TOOL_BAR_STEP>{{"N", false, false, false, 0, 0}, {"A", false, true, false, 0, 0}}));
  EXPECT_EQ(PlanToolBars({{"A", false, 0, 0}}, {"A", "N"}),
            (QList<TOOL_BAR_STEP>{{"A", false, true, false, 0, 0}, {"N", false, false, false, 0, 0}}));
}

}  // namespace
