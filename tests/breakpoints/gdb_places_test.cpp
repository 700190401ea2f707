// The places of breakpoints on every line of real programs, beside those that gdb gives them.

#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>

#include "breakpoints.h"

namespace {

const QString EXAMPLE = QStringLiteral(VEXOR_SOURCE_DIR "/examples/weather_station/");
constexpr int MAX_LINE = 120;
constexpr int GDB_LIMIT_MS = 60'000;

// Where gdb puts a breakpoint that was asked for on a line; behind the prologue of a function that begins there.
struct GDB_PLACES {
  QAddrList OnLine;
  QAddrList Moved;
};

// By "file:line", for lines that have code.
QMap<QString, GDB_PLACES> PlacesOfGdb(const QString& sElf, const QStringList& Files) {
  QStringList Arguments = {u"-batch"_s, u"-nx"_s};
  for (const QString& sFile : Files) {
    for (int Line = 1; Line <= MAX_LINE; ++Line)
      for (const char* const sForm : {"echo \\n@%1:%2|", "break %1:%2"})
        Arguments << u"-ex"_s << QLatin1String(sForm).arg(sFile).arg(Line);
  }
  QProcess Gdb;
  Gdb.start(u"gdb-multiarch"_s, Arguments << u"-ex"_s << u"info breakpoints"_s << sElf);
  EXPECT_TRUE(Gdb.waitForFinished(GDB_LIMIT_MS));
  const QString sText = QString::fromUtf8(Gdb.readAllStandardOutput());
  QHash<QString, QString> Asked;  // by number of the breakpoint
  static const QRegularExpression Set(u"^@([^|]+)\\|.*Breakpoint (\\d+) at "_s, QRegularExpression::MultilineOption);
  for (auto It = Set.globalMatch(sText); It.hasNext();) {
    const QRegularExpressionMatch Match = It.next();
    Asked.insert(Match.captured(2), Match.captured(1));
  }
  QMap<QString, GDB_PLACES> Places;
  static const QRegularExpression Row(u"^(\\d+)(?:\\.\\d+)? .*0x([0-9a-f]{8}) in .* at (?:\\S*/)?(\\S+:\\d+)$"_s,
                                      QRegularExpression::MultilineOption);
  for (auto It = Row.globalMatch(sText); It.hasNext();) {
    const QRegularExpressionMatch Match = It.next();
    const QString sAsked = Asked.value(Match.captured(1));
    GDB_PLACES& OfLine = Places[sAsked];
    (Match.captured(3) == sAsked ? OfLine.OnLine : OfLine.Moved) << Match.captured(2).toUInt(nullptr, 16);
  }
  Places.removeIf([](const auto& It) { return It.value().OnLine.isEmpty(); });
  return Places;
}

bool IsInFunctionOf(U32 Addr, const QAddrList& Others) {
  return std::any_of(Others.cbegin(), Others.cend(),
                     [Addr](U32 Other) { return ELFAPI_GetFuncAt(Other, true) == ELFAPI_GetFuncAt(Addr, true); });
}

// gdb names one place for each function or inlined instance; ours are all places where the line begins. Of several
// lines that begin at one address ours is the first.
TEST_F(Breakpoints, HaveThePlacesOfGdb) {
  if (QStandardPaths::findExecutable(u"gdb-multiarch"_s).isEmpty()) GTEST_SKIP() << "gdb-multiarch is not installed";
  const QStringList Example = {u"main.cpp"_s,    u"station.cpp"_s, u"station.h"_s,
                               u"sensors.cpp"_s, u"sensors.h"_s,   u"ring_buffer.h"_s};
  // program, files, how many of gdb's places are compared at least, and how many may begin another line at most
  const std::tuple<QString, QStringList, int, int> aPrograms[] = {
      {DATA + u"lines_O0.elf"_s, {u"lines.cpp"_s}, 30, 0},   {DATA + u"lines_O2.elf"_s, {u"lines.cpp"_s}, 27, 10},
      {DATA + u"weather_station_O0.elf"_s, Example, 80, 0},  {EXAMPLE + u"weather_station.elf"_s, Example, 80, 26},
      {DATA + u"weather_station_O2.elf"_s, Example, 70, 47},
  };
  for (const auto& [sElf, Files, MinPlaces, MaxShared] : aPrograms) {
    SCOPED_TRACE(sElf.toStdString());
    Load(sElf);
    const QMap<QString, GDB_PLACES> Lines = PlacesOfGdb(sElf, Files);
    int NumPlaces = 0, NumShared = 0;
    for (auto It = Lines.cbegin(); It != Lines.cend(); ++It) {
      SCOPED_TRACE(It.key().toStdString());
      const CSrcLoc Loc = ELFAPI_ParseSrcLoc(It.key());
      ASSERT_TRUE(Manager().SetOnSrc(Loc, BP_STATE_ENABLED, BP_TYPE_ANY));
      Finish();
      QAddrList Ours;
      for (const CBreakpointRec& Child : Manager().Rows().value(0).Children) Ours << Child.Addr;
      EXPECT_EQ(Ours.size(), List().Count());
      for (const U32 Addr : It->OnLine) {
        if (Addr == 0) continue;  // of a function that the linker dropped
        const CSrcLoc First = ELFAPI_GetSrcLocExact(Addr);
        EXPECT_TRUE(Ours.contains(Addr) || (First.IsValid() && !(First == Loc))) << std::hex << Addr;
        NumShared += !Ours.contains(Addr);
      }
      for (const U32 Addr : Ours) EXPECT_TRUE(IsInFunctionOf(Addr, It->OnLine + It->Moved)) << std::hex << Addr;
      NumPlaces += static_cast<int>(It->OnLine.size());
      Manager().ClearOnSrc(Loc);
      Finish();
      EXPECT_EQ(List().Count(), 0);
    }
    EXPECT_GE(NumPlaces, MinPlaces);
    EXPECT_LE(NumShared, MaxShared);
  }
}

}  // namespace
