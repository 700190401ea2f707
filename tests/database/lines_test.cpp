#include "demo_program.h"

namespace {

// A row of another tool's listing of the line table.
struct LISTED_LINE {
  QString sFile;
  U32 Line;
  U32 Addr;
};

class LinesTest : public DemoProgramTest {
protected:
  QList<LISTED_LINE> Listing() {
    static const QRegularExpression Row(QStringLiteral("^(\\S+)\\s+(\\d+)\\s+(?:0x)?([0-9a-f]+)\\b"),
                                        QRegularExpression::MultilineOption);
    const QString sText = Lines("demo.lines.txt");
    QList<LISTED_LINE> Result;
    for (auto it = Row.globalMatch(sText); it.hasNext();) {
      const QRegularExpressionMatch Match = it.next();
      Result.append({Match.captured(1), Match.captured(2).toUInt(), Match.captured(3).toUInt(nullptr, 16)});
    }
    return Result;
  }
  // The program's code; what the linker dropped stands at 0.
  static bool IsLinked(const LISTED_LINE& Row) { return Row.Addr >= 0x08000000; }
};

TEST_F(LinesTest, AgreesWithTheListingInBothDirections) {
  QMap<U32, QString> FirstAtAddr;
  QMap<QString, QAddrList> AddrsOfLine;
  U32 NumBelow = 0;
  for (const LISTED_LINE& Row : Listing()) {
    if (!IsLinked(Row)) ++NumBelow;
    if (!IsLinked(Row) || FirstAtAddr.contains(Row.Addr)) continue;
    FirstAtAddr.insert(Row.Addr, QStringLiteral("%1:%2").arg(Row.sFile).arg(Row.Line));
  }
  ASSERT_GT(FirstAtAddr.size(), 40);
  for (auto it = FirstAtAddr.cbegin(); it != FirstAtAddr.cend(); ++it) {
    EXPECT_EQ(LocTextAt(it.key()), it.value()) << std::hex << it.key();
    AddrsOfLine[it.value()].append(it.key());
  }
  for (auto it = AddrsOfLine.cbegin(); it != AddrsOfLine.cend(); ++it) {
    const CSrcLoc Line = ELFAPI_ParseSrcLoc(it.key());
    EXPECT_EQ(ELFAPI_GetAddrsOfLoc(Line), it.value()) << it.key().toStdString();
    EXPECT_EQ(ELFAPI_GetAddrOfLoc(Line), it.value().first());
  }
  QList<U32> Walked;
  for (U32 Addr = 0; (Addr = ELFAPI_NextProgramAddr(Addr)) != INVALID_ADDR;) Walked.append(Addr);
  EXPECT_EQ(Walked, FirstAtAddr.keys());
  EXPECT_EQ(ELFAPI_GetNumDiscardedLines(), NumBelow);
}

TEST_F(LinesTest, AddressesBetweenEntriesBelongToTheNearestBelow) {
  const U32 Start = AddrOf("LongStatement");  // its next entry is 280 bytes on
  const QString sLine = LocTextAt(Start);
  const struct {
    U32 Addr;
    bool bHasLine;
  } aCases[] = {
      {Start + 2, true},   {Start + 256, true},   {Start + 257, false}, {Start + 278, false},
      {0, false},          {INVALID_ADDR, false}, {0x08000008, false},  // assembler without lines
      {0x08000260, false},                                              // behind the last function
      {0x0800025E, true},                                               // the last function's last halfword
      {0x20000000, false},
  };
  for (const auto& Case : aCases) {
    EXPECT_EQ(ELFAPI_HasSrcLoc(Case.Addr), Case.bHasLine) << std::hex << Case.Addr;
    EXPECT_EQ(ELFAPI_GetSrcLocsAt(Case.Addr).size(), Case.bHasLine ? 1 : 0);
    if (Case.bHasLine && Case.Addr > Start && Case.Addr < Start + 280) {
      EXPECT_EQ(LocTextAt(Case.Addr), sLine);
    }
  }
  EXPECT_FALSE(ELFAPI_GetSrcLocExact(Start + 2).IsValid());
  EXPECT_TRUE(ELFAPI_GetSrcLocExact(Start).IsValid());
  EXPECT_TRUE(ELFAPI_RangeHasSrcLoc({Start + 270, 12}));
  EXPECT_FALSE(ELFAPI_RangeHasSrcLoc({Start + 270, 10}));
  EXPECT_FALSE(ELFAPI_RangeHasSrcLoc({Start, 0}));
}

TEST_F(LinesTest, HeaderLineHasTheCodeOfEveryUnit) {
  const QAddrList Addrs = ELFAPI_GetAddrsOfLoc(Loc("shared.h:8"));
  ASSERT_EQ(Addrs.size(), 3);
  EXPECT_EQ(ELFAPI_GetName(ELFAPI_GetFuncAt(Addrs[0], true)), QStringLiteral("FirstStep"));
  EXPECT_EQ(ELFAPI_GetName(ELFAPI_GetFuncAt(Addrs[2], true)), QStringLiteral("SecondStep"));
}

TEST_F(LinesTest, WalksTheLinesOfAFile) {
  QList<U32> Ahead, Back;
  const CSrcLoc Top = Loc("first.c:1");
  for (CSrcLoc At = ELFAPI_NextSrcLoc(Top); At.IsValid(); At = ELFAPI_NextSrcLoc(At)) Ahead.append(At.Line);
  for (CSrcLoc At = ELFAPI_PrevSrcLoc(Loc("first.c:99")); At.IsValid(); At = ELFAPI_PrevSrcLoc(At))
    Back.prepend(At.Line);
  // Lines 7 to 10 belong to the function that the linker dropped.
  EXPECT_EQ(Ahead, (QList<U32>{12, 13, 14, 15, 16, 17, 20, 22, 23, 24, 25}));
  EXPECT_EQ(Back, Ahead);
  EXPECT_FALSE(ELFAPI_NextSrcLoc(Loc("first.c:25")).IsValid());
  EXPECT_TRUE(ELFAPI_PrevSrcLoc(Loc("first.c:1025")).IsValid());
  EXPECT_EQ(ELFAPI_NextSrcLoc({Top.File, 0xFFFFFFFF, 0}).Line, 0u);
}

TEST_F(LinesTest, NextSourceAddressIsThatOfAnotherLine) {
  const U32 Start = AddrOf("main");
  U32 Addr = Start;
  QStringList Seen;
  while (ELFAPI_NextSrcAddr(Addr, Addr) == 0 && Addr < Start + 32) Seen.append(LocTextAt(Addr));
  EXPECT_EQ(Seen,
            (QStringList{QStringLiteral("first.c:23"), QStringLiteral("first.c:24"), QStringLiteral("first.c:25")}));
  EXPECT_EQ(ELFAPI_NextSrcAddr(0x08000258, Addr), -1);
}

TEST_F(LinesTest, StatementStartsAndExecutableLines) {
  const QAddrList Main23 = ELFAPI_GetAddrsOfLoc(Loc("first.c:23"));
  ASSERT_EQ(Main23.size(), 2);
  EXPECT_TRUE(ELFAPI_IsStatementStart(Main23[0]));
  EXPECT_FALSE(ELFAPI_IsStatementStart(Main23[1]));  // follows an entry of the same line
  EXPECT_FALSE(ELFAPI_IsStatementStart(Main23[0] + 2));
  for (const U32 Addr : ELFAPI_GetAddrsOfLoc(Loc("first.c:17"))) EXPECT_TRUE(ELFAPI_IsStatementStart(Addr));

  for (const char* sExecutable : {"first.c:13", "first.c:25", "shared.h:8"}) {
    EXPECT_TRUE(ELFAPI_IsLocExecutable(Loc(sExecutable))) << sExecutable;
  }
  for (const char* sOther : {"first.c:8", "first.c:18", "first.c:99"}) {
    EXPECT_FALSE(ELFAPI_IsLocExecutable(Loc(sOther))) << sOther;
  }
  EXPECT_FALSE(ELFAPI_IsLocExecutable({}));
}

TEST_F(LinesTest, BlocksHoldTheInstructionsOfTheLine) {
  // An if statement inlined in two functions, and one line of main without anything between.
  const U32 Main = AddrOf("main");
  EXPECT_EQ(ELFAPI_GetLocAddrs(Loc("first.c:23")), (QAddrList{Main + 2, Main + 4, Main + 6, Main + 10}));
  EXPECT_EQ(ELFAPI_GetLocBlocks(Loc("shared.h:8")),
            (QAddrList{0x08000040, 0x08000042, 0x08000044, 0x08000076, 0x08000078}));
  EXPECT_TRUE(ELFAPI_GetLocBlocks(Loc("first.c:18")).isEmpty());
  EXPECT_TRUE(ELFAPI_GetLocAddrs({}).isEmpty());
}

}  // namespace
