#include "demo_program.h"

namespace {

using LinesTest = DemoProgramTest;

// Another tool's listing of the line table: file, line, address. What the linker dropped stands at 0.
TEST_F(LinesTest, AgreesWithTheListingInBothDirections) {
  constexpr U32 CODE = 0x08000000;
  const QRegularExpression Row(u"^(\\S+)\\s+(\\d+)\\s+(?:0x)?([0-9a-f]+)\\b"_s, QRegularExpression::MultilineOption);
  QMap<U32, QString> FirstAtAddr;
  QMap<QString, QAddrList> AddrsOfLine;
  U32 NumBelow = 0;
  for (const auto& Match : Row.globalMatch(QString::fromUtf8(ReadBytes(DEMO_DIR + u"demo.lines.txt"_s)))) {
    const U32 Addr = Match.captured(3).toUInt(nullptr, 16);
    if (Addr < CODE) ++NumBelow;
    if (Addr >= CODE && !FirstAtAddr.contains(Addr))
      FirstAtAddr.insert(Addr, Match.captured(1) + u':' + Match.captured(2));
  }
  ASSERT_GT(FirstAtAddr.size(), 40);
  for (const auto& [Addr, sLine] : FirstAtAddr.asKeyValueRange()) {
    EXPECT_EQ(LocTextAt(Addr), sLine.toStdString()) << std::hex << Addr;
    AddrsOfLine[sLine].append(Addr);
  }
  for (const auto& [sLine, Addrs] : AddrsOfLine.asKeyValueRange()) {
    EXPECT_EQ(ELFAPI_GetAddrsOfLoc(ELFAPI_ParseSrcLoc(sLine)), Addrs) << sLine.toStdString();
    EXPECT_EQ(ELFAPI_GetAddrOfLoc(ELFAPI_ParseSrcLoc(sLine)), Addrs.first());
  }
  QList<U32> Walked;
  for (U32 Addr = 0; (Addr = ELFAPI_NextProgramAddr(Addr)) != INVALID_ADDR;) Walked.append(Addr);
  EXPECT_EQ(Walked, FirstAtAddr.keys());
  EXPECT_EQ(ELFAPI_GetNumDiscardedLines(), NumBelow);
}

TEST_F(LinesTest, AddressesBetweenEntriesBelongToTheNearestBelow) {
  const U32 Start = AddrOf("LongStatement");  // its next entry is 280 bytes on
  const std::string sLine = LocTextAt(Start);
  const std::pair<U32, std::string> aCases[] = {
      // within LongStatement, in assembler without lines, in the last function's last halfword and behind it
      {Start + 2, sLine},          {Start + 256, sLine}, {Start + 257, ""}, {Start + 278, ""},  {0x08000008, ""},
      {0x0800025E, "shape.cpp:6"}, {0x08000260, ""},     {0, ""},           {INVALID_ADDR, ""}, {0x20000000, ""},
  };
  for (const auto& [Addr, sExpected] : aCases) {
    EXPECT_EQ(ELFAPI_HasSrcLoc(Addr), !sExpected.empty()) << std::hex << Addr;
    EXPECT_EQ(ELFAPI_GetSrcLocsAt(Addr).size(), sExpected.empty() ? 0 : 1) << std::hex << Addr;
    EXPECT_EQ(LocTextAt(Addr), sExpected) << std::hex << Addr;
  }
  EXPECT_TRUE(!ELFAPI_GetSrcLocExact(Start + 2).IsValid() && ELFAPI_GetSrcLocExact(Start).IsValid());
  EXPECT_TRUE(ELFAPI_RangeHasSrcLoc({Start + 270, 12}));
  EXPECT_FALSE(ELFAPI_RangeHasSrcLoc({Start + 270, 10}) || ELFAPI_RangeHasSrcLoc({Start, 0}));
  const QAddrList Block = ELFAPI_GetLocAddrs(Loc(sLine.c_str()));
  EXPECT_EQ(Block.last() - Start, 254u) << "256 bytes and no more";
  EXPECT_EQ(ELFAPI_GetLocBlocks(Loc(sLine.c_str())).mid(0, Block.size()), Block);
}

TEST_F(LinesTest, WalksTheLinesOfAFile) {
  QList<U32> Ahead, Back;
  for (CSrcLoc At = Loc("first.c:1"); (At = ELFAPI_NextSrcLoc(At)).IsValid();) Ahead.append(At.Line);
  for (CSrcLoc At = Loc("first.c:99"); (At = ELFAPI_PrevSrcLoc(At)).IsValid();) Back.prepend(At.Line);
  // Lines 7 to 10 belong to the function that the linker dropped.
  EXPECT_EQ(Ahead, (QList<U32>{12, 13, 14, 15, 16, 17, 20, 22, 23, 24, 25}));
  EXPECT_EQ(Back, Ahead);
  EXPECT_TRUE(ELFAPI_PrevSrcLoc(Loc("first.c:1025")).IsValid());
  EXPECT_EQ(ELFAPI_NextSrcLoc({Loc("first.c:1").File, 0xFFFFFFFF, 0}).Line, 0u);
}

TEST_F(LinesTest, AddressesAroundAnAddress) {
  constexpr U32 CODE = 0x08000000;
  EXPECT_EQ(ELFAPI_GetLocAddrs(Loc("first.c:17")), (QAddrList{CODE + 0x28})) << "its other block is not its first";
  EXPECT_EQ(ELFAPI_GetLocBlocks(Loc("first.c:17")), (QAddrList{CODE + 0x28, CODE + 0x34}));
  EXPECT_EQ(ELFAPI_GetLocAddrs(Loc("first.c:23")), (QAddrList{CODE + 0x56, CODE + 0x58, CODE + 0x5A, CODE + 0x5E}));
  const std::tuple<U32, U32, U32> aCases[] = {
      // address, the line entry in front of it, the next address of another line
      {CODE + 0x14, INVALID_ADDR, CODE + 0x16},   {CODE + 0x5A, CODE + 0x56, CODE + 0x60},
      {CODE + 0x5E, CODE + 0x56, CODE + 0x60},    {CODE + 0x6A, CODE + 0x68, CODE + 0x74},
      {CODE + 0x256, CODE + 0x254, INVALID_ADDR},
  };
  for (const auto& [Addr, Before, Next] : aCases) {
    U32 Found = INVALID_ADDR;
    EXPECT_EQ(ELFAPI_PrevProgramAddr(Addr), Before) << std::hex << Addr;
    EXPECT_EQ(ELFAPI_NextSrcAddr(Addr, Found), Next == INVALID_ADDR ? -1 : 0) << std::hex << Addr;
    EXPECT_EQ(Found, Next) << std::hex << Addr;
  }
  EXPECT_TRUE(ELFAPI_IsInFunction(Global("main"), CODE + 0x72));
  EXPECT_FALSE(ELFAPI_IsInFunction(Global("main"), CODE + 0x74) || ELFAPI_IsInFunction(Global("main"), CODE + 0x52));
  EXPECT_EQ(Names(ELFAPI_GetSymbolsAt(CODE + 0x54, true, false)), "main main $t");
  EXPECT_EQ(Names(ELFAPI_GetSymbolsAt(CODE + 0x54, false, false)), "main $t");
  EXPECT_EQ(ELFAPI_GetNumCfiBlocks(), 9u) << "one for each function that was not dropped";
  EXPECT_EQ(ELFAPI_GetFileRanges(FileId("/demo/first.c")), (QAddrRanges{{CODE + 0x14, 0x60}}));
  EXPECT_FALSE(ELFAPI_IsFileLoc(CODE + 0x54));
  ELFAPI_RedirectFile(u"/demo/first.c"_s, DEMO_DIR + u"first.c"_s);
  EXPECT_TRUE(ELFAPI_IsFileLoc(CODE + 0x54));
}

TEST_F(LinesTest, StatementStartsAndExecutableLines) {
  const QAddrList Main23 = AddrsOf("first.c:23");
  ASSERT_EQ(Main23.size(), 2);
  EXPECT_TRUE(ELFAPI_IsStatementStart(Main23[0]));
  EXPECT_FALSE(ELFAPI_IsStatementStart(Main23[1])) << "follows an entry of the same line";
  EXPECT_FALSE(ELFAPI_IsStatementStart(Main23[0] + 2));
  for (const U32 Addr : AddrsOf("first.c:17")) EXPECT_TRUE(ELFAPI_IsStatementStart(Addr));
  std::string sExecutable;
  for (const char* sLoc : {"first.c:13", "first.c:25", "shared.h:8", "first.c:8", "first.c:18", "first.c:99"})
    sExecutable += ELFAPI_IsLocExecutable(Loc(sLoc)) ? "yes " : "no ";
  EXPECT_EQ(sExecutable, "yes yes yes no no no ");
  EXPECT_FALSE(ELFAPI_IsLocExecutable({}));
}

// Compilers write a last line where a function ends, which is where the next one begins.
TEST_F(LinesTest, AFunctionBeginsWithItsOwnLine) {
  for (const auto& [sProgram, MinFuncs] :
       {std::pair(u"traffic_light/traffic_light"_s, 15), {u"weather_station/weather_station"_s, 15}}) {
    ASSERT_EQ(ELFAPI_Load(QStringLiteral(VEXOR_SOURCE_DIR "/examples/") + sProgram + u".elf"_s), 0);
    int NumFuncs = 0;
    for (const ELF_SYM_HANDLE Func : ELFAPI_GetFunctions()) {
      const U32 Addr = ELFAPI_GetAddr(Func);
      if (Addr == INVALID_ADDR || !ELFAPI_GetDeclLoc(Func).IsValid()) continue;
      ++NumFuncs;
      EXPECT_EQ(LocTextAt(Addr), LocText(ELFAPI_GetDeclLoc(Func))) << std::hex << Addr;
    }
    EXPECT_GE(NumFuncs, MinFuncs);
  }
}

}  // namespace
