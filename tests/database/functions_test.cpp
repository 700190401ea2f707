#include "demo_program.h"

#include "program/database/file_finder.h"

#include <QTemporaryDir>

namespace {

class FunctionsTest : public DemoProgramTest {};

TEST_F(FunctionsTest, AgreesWithTheSymbolTable) {
  QMap<U32, U32> SizeOfAddr;
  for (const QString& sLine : Lines("demo.symbols.txt").split(u'\n')) {
    const QStringList Fields = sLine.split(u' ');
    if (Fields.size() < 4 || (Fields[2] != u'T' && Fields[2] != u'W')) continue;
    if (Fields[3] == QStringLiteral("Table")) continue;  // data among the code
    SizeOfAddr.insert(Fields[0].toUInt(nullptr, 16), Fields[1].toUInt(nullptr, 16));
  }
  ASSERT_EQ(SizeOfAddr.size(), 10);
  QList<U32> Addrs;
  for (const ELF_SYM_HANDLE Func : ELFAPI_GetFunctions()) {
    const U32 Addr = ELFAPI_GetAddr(Func);
    if (Addr == INVALID_ADDR) continue;
    Addrs.append(Addr);
    const U32 Size = SizeOfAddr.value(Addr);
    EXPECT_EQ(ELFAPI_GetSize(Func), Size);
    EXPECT_EQ(ELFAPI_GetFuncAt(Addr, true), Func);
    EXPECT_EQ(ELFAPI_GetFuncAt(Addr + Size - 2, true), Func);
    EXPECT_NE(ELFAPI_GetFuncAt(Addr + Size, true), Func);
    EXPECT_TRUE(ELFAPI_IsInFunction(Func, Addr + Size - 1));
    EXPECT_FALSE(ELFAPI_IsInFunction(Func, Addr + Size));
  }
  EXPECT_EQ(Addrs, SizeOfAddr.keys());
}

TEST_F(FunctionsTest, InlinedInstanceIsTheInnermostFunction) {
  const U32 Addr = ELFAPI_GetAddrOfLoc(Loc("shared.h:11"));
  const ELF_SYM_HANDLE Inner = ELFAPI_GetFuncAt(Addr);
  EXPECT_TRUE(ELFAPI_IsInlined(Inner));
  EXPECT_EQ(Names(ELFAPI_GetFuncsAt(Addr)), (QStringList{QStringLiteral("FirstStep"), QStringLiteral("Clamp")}));
  EXPECT_EQ(ELFAPI_GetName(ELFAPI_GetFuncAt(Addr, true)), QStringLiteral("FirstStep"));
  EXPECT_EQ(LocText(ELFAPI_GetCallLoc(Inner)), QStringLiteral("first.c:13"));
  EXPECT_EQ(LocText(ELFAPI_GetLoc(Inner)), QStringLiteral("first.c:13"));
  EXPECT_EQ(LocText(ELFAPI_GetDeclLoc(Inner)), QStringLiteral("shared.h:6"));
  EXPECT_EQ(ELFAPI_GetName(ELFAPI_GetFunctionOf(Inner)), QStringLiteral("FirstStep"));
  EXPECT_GT(ELFAPI_GetAddrRanges(Inner).size(), 1);
  EXPECT_EQ(ELFAPI_GetName(ELFAPI_GetFuncOfLoc(Loc("first.c:18"))), QStringLiteral("FirstStep"));
  // Each unit has an abstract function of its own with one instance.
  int NumInstances = 0;
  for (const ELF_SYM_HANDLE Func : ELFAPI_GetFunctions()) {
    if (ELFAPI_GetName(Func) == QStringLiteral("Clamp")) NumInstances += ELFAPI_GetInlinedFuncs(Func).size();
  }
  EXPECT_EQ(NumInstances, 2);
}

TEST_F(FunctionsTest, BelongToTheirFiles) {
  const QStringList Second = Names(ELFAPI_GetFileFunctions(ELFAPI_FileId(QStringLiteral("/demo/second.c"))));
  EXPECT_EQ(Second,
            (QStringList{QStringLiteral("SecondStep"), QStringLiteral("LongStatement"), QStringLiteral("Clamp")}));
  EXPECT_EQ(Names(ELFAPI_GetNoFileFunctions()), QStringList{QStringLiteral("ResetHandler")});
  const U32 Shared = ELFAPI_FileId(QStringLiteral("/demo/shared.h"));
  const CAddrRange Range = ELFAPI_GetFileRange(Shared);
  EXPECT_TRUE(Range.Contains(AddrOf("FirstStep")) && Range.Contains(AddrOf("SecondStep")));
  EXPECT_EQ(ELFAPI_GetFileAt(AddrOf("main")), ELFAPI_FileId(QStringLiteral("/demo/first.c")));
  EXPECT_EQ(ELFAPI_GetFileAt(0x08000000), INVALID_FILE_ID);
}

TEST_F(FunctionsTest, FoundByNameAndScope) {
  const struct {
    const char* sName;
    QString sFound;  // sorted
  } aCases[] = {
      {"main", QStringLiteral("main")},
      {"Main", {}},
      {"Area", QStringLiteral("Geometry::Area Geometry::Flat::Square::Area")},
      {"Square::Area", QStringLiteral("Geometry::Flat::Square::Area")},
      {"Geometry::Area", QStringLiteral("Geometry::Area")},
      {"Geometry::Flat::Square::Side", QStringLiteral("Geometry::Flat::Square::Side")},
      {"Flat::Area", {}},
      {"Geometry::Flat", QStringLiteral("Geometry::Flat")},
      {"NumSquares", QStringLiteral("Geometry::Flat::NumSquares")},
      {"Counter", QStringLiteral("Counter Counter")},
      {"", {}},
      {"::", {}},
  };
  for (const auto& Case : aCases) {
    const ELF_SYM_LIST Found = ELFAPI_FindSymbols(QString::fromLatin1(Case.sName), true, false, false, false);
    QStringList Distinct = Names(Found);
    if (QByteArray(Case.sName) != "Counter") Distinct.removeDuplicates();
    Distinct.sort();
    EXPECT_EQ(Distinct.join(u' '), Case.sFound) << Case.sName;
  }
  const ELF_SYM_LIST Both = ELFAPI_FindSymbols(QStringLiteral("main"), true, false, false, true);
  ASSERT_EQ(Both.size(), 2);
  EXPECT_FALSE(ELFAPI_IsElfSymbol(Both[0]));
  EXPECT_TRUE(ELFAPI_IsElfSymbol(Both[1]));
  EXPECT_EQ(ELFAPI_GetAddr(Both[0]), ELFAPI_GetAddr(Both[1]));
  EXPECT_EQ(ELFAPI_GetScopeName(ELFAPI_FindSymbol(QStringLiteral("Square::Side"), true, false, false, false)),
            QStringLiteral("Geometry::Flat::Square"));
}

TEST_F(FunctionsTest, SymbolsAtAnAddress) {
  EXPECT_EQ(ELFAPI_GetName(ELFAPI_GetSymbolAt(AddrOf("SecondStep"))), QStringLiteral("SecondStep"));
  EXPECT_EQ(ELFAPI_GetSymbolAt(AddrOf("SecondStep") + 2), 0u);
  EXPECT_EQ(ELFAPI_GetName(ELFAPI_FindSymbolAt(AddrOf("Table"))), QStringLiteral("Table"));
  const struct {
    U32 Addr;
    const char* sMapping;
    int Class;
  } aCases[] = {
      {0x08000000, "$Data", 1},      {AddrOf("ResetHandler"), "$Thumb", -1}, {0x0800000E, "$Data", 1},
      {AddrOf("main"), "$Thumb", 0}, {AddrOf("main") + 6, "$Thumb", -1},     {AddrOf("Table"), "$Data", 1},
  };
  for (const auto& Case : aCases) {
    EXPECT_EQ(ELFAPI_GetMappingName(Case.Addr, false), QString::fromLatin1(Case.sMapping)) << std::hex << Case.Addr;
    EXPECT_EQ(ELFAPI_ClassifyAddr(Case.Addr), Case.Class) << std::hex << Case.Addr;
  }
  EXPECT_EQ(ELFAPI_GetMappingName(AddrOf("ResetHandler"), true), QStringLiteral("$Thumb"));
  EXPECT_EQ(ELFAPI_GetMappingName(AddrOf("ResetHandler") + 2, true), QString());
}

TEST_F(FunctionsTest, LocalsFollowTheCurrentPC) {
  ELFAPI_SetCurrentPC(ELFAPI_GetAddrOfLoc(Loc("first.c:16")));
  EXPECT_EQ(Names(ELFAPI_GetLocalVars()), (QStringList{QStringLiteral("Value"), QStringLiteral("Sum"),
                                                       QStringLiteral("Index"), QStringLiteral("Part")}));
  EXPECT_EQ(Names(ELFAPI_FindSymbols(QStringLiteral("Part"), true, true, true, true)),
            QStringList{QStringLiteral("Part")});
  ELFAPI_SetCurrentPC(AddrOf("Geometry::Flat::Square::Side"));
  EXPECT_EQ(Names(ELFAPI_FindSymbols(QStringLiteral("this"), true, true, true, true)),
            QStringList{QStringLiteral("this")});
  EXPECT_TRUE(ELFAPI_FindSymbols(QStringLiteral("Part"), true, true, true, true).isEmpty());
  ELFAPI_SetCurrentPC(AddrOf("ResetHandler"));
  EXPECT_TRUE(ELFAPI_GetLocalVars().isEmpty());
}

TEST_F(FunctionsTest, TextsOfUsers) {
  const struct {
    const char* sText;
    U32 Addr;
    PARSED_LOC_KIND Kind;
  } aCases[] = {
      {"8000054", 0x08000054, PARSED_LOC_NUMBER},
      {"0x8000054", 0x08000054, PARSED_LOC_NUMBER},
      {" main ", 0x08000054, PARSED_LOC_SYMBOL},
      {"Level", 0x20000008, PARSED_LOC_SYMBOL},
      {"first.c:23", 0x08000056, PARSED_LOC_SRC},
      {"FIRST.C: 23", 0x08000056, PARSED_LOC_SRC},
      {"/demo/first.c:23:3", 0x08000056, PARSED_LOC_SRC},
      {"first.c:8", 0, PARSED_LOC_NONE},
      {"absent.c:23", 0, PARSED_LOC_NONE},
      {"no such symbol", 0, PARSED_LOC_NONE},
      {"", 0, PARSED_LOC_NONE},
  };
  for (const auto& Case : aCases) {
    PARSED_LOC_KIND Kind;
    EXPECT_EQ(ELFAPI_ParseLocation(QString::fromLatin1(Case.sText), Kind).Start, Case.Addr) << Case.sText;
    EXPECT_EQ(Kind, Case.Kind) << Case.sText;
  }
  EXPECT_EQ(LocText(Loc("8000058")), QStringLiteral("first.c:23"));
  EXPECT_EQ(LocText(Loc("main")), QStringLiteral("first.c:22"));
  EXPECT_FALSE(Loc("8000008").IsValid());
  EXPECT_EQ(ELFAPI_GetSrcLocText(ELFAPI_ParseSrcLoc(QStringLiteral("first.c:7:3"))), QStringLiteral("first.c:7:3"));
}

TEST_F(FunctionsTest, CallFrameBlocksCoverTheFunctions) {
  const ELF_SYM_HANDLE Func = ELFAPI_FindSymbol(QStringLiteral("FirstStep"), true, false, false, false);
  EXPECT_EQ(ELFAPI_GetCfiBlock(ELFAPI_GetAddr(Func) + 8), ELFAPI_GetAddrRange(Func));
  EXPECT_TRUE(ELFAPI_GetCfiBlock(AddrOf("ResetHandler")).IsNone());
  EXPECT_TRUE(ELFAPI_GetCfiBlock(0x08000260).IsNone());
}

TEST_F(FunctionsTest, RedirectedFileAnswersUnderBothNames) {
  const U32 OldId = ELFAPI_FileId(QStringLiteral("/demo/first.c"));
  const QAddrList Addrs = ELFAPI_GetAddrsOfLoc({OldId, 23, 0});
  const QStringList Functions = Names(ELFAPI_GetFileFunctions(OldId));
  ASSERT_FALSE(Addrs.isEmpty());
  EXPECT_FALSE(ELFAPI_FileExists(OldId));
  EXPECT_TRUE(ELFAPI_GetSourceFiles().isEmpty());

  const QString sNew = DEMO_DIR + QStringLiteral("first.c");
  ELFAPI_RedirectFile(QStringLiteral("/demo/first.c"), sNew);
  const U32 NewId = ELFAPI_FileId(QStringLiteral("/demo/first.c"));
  EXPECT_NE(NewId, OldId);
  EXPECT_EQ(ELFAPI_FileId(sNew), NewId);
  for (const U32 Id : {OldId, NewId}) {
    EXPECT_EQ(ELFAPI_GetAddrsOfLoc({Id, 23, 0}), Addrs);
    EXPECT_EQ(ELFAPI_GetFilePathOf(Id), sNew);
    EXPECT_EQ(ELFAPI_NextSrcLoc({Id, 20, 0}).Line, 22u);
    EXPECT_EQ(Names(ELFAPI_GetFileFunctions(Id)), Functions);
    EXPECT_FALSE(ELFAPI_GetFileRange(Id).IsNone());
  }
  EXPECT_EQ(ELFAPI_GetFirstSrcLoc(Addrs[0]).File, NewId);
  EXPECT_EQ(ELFAPI_GetFileAt(Addrs[0]), NewId);
  EXPECT_TRUE(ELFAPI_IsFileLoc(Addrs[0]));
  EXPECT_EQ(ELFAPI_GetSourceFiles(), QStringList{sNew});
  // Two names of the program for one file here.
  ELFAPI_RedirectFile(QStringLiteral("/demo/second.c"), sNew);
  EXPECT_EQ(ELFAPI_FileId(QStringLiteral("/demo/second.c")), NewId);
  EXPECT_EQ(Names(ELFAPI_GetFileFunctions(NewId)).size(), Functions.size() + 3);
  ELFAPI_RedirectFile(QStringLiteral("/demo/absent.c"), sNew);
}

TEST_F(FunctionsTest, FileIsKnownByThePathWhereTheFinderFindsIt) {
  const QString sHere = DEMO_DIR + QStringLiteral("second.c");
  EXPECT_EQ(ELFAPI_FileId(sHere), INVALID_FILE_ID);
  CFileFinder::Get()->AddPathSubstitute(QStringLiteral("/demo/"), DEMO_DIR);
  EXPECT_EQ(ELFAPI_FileId(sHere), ELFAPI_FileId(QStringLiteral("/Demo/Second.c")));
  EXPECT_NE(ELFAPI_FileId(sHere), INVALID_FILE_ID);
  CFileFinder::Get()->Clear();
  EXPECT_EQ(ELFAPI_FileId(sHere), INVALID_FILE_ID);
}

}  // namespace
