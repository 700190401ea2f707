#include "demo_program.h"

#include <QSet>

#include "program/database/database.h"
#include "program/database/elfapi_types.h"
#include "program/database/file_finder.h"
#include "program/elf/elf.h"

namespace {

using FunctionsTest = DemoProgramTest;

TEST_F(FunctionsTest, InlinedInstanceIsTheInnermostFunction) {
  const U32 Addr = ELFAPI_GetAddrOfLoc(Loc("shared.h:11"));
  const ELF_SYM_HANDLE Inner = ELFAPI_GetFuncAt(Addr);
  EXPECT_TRUE(ELFAPI_IsInlined(Inner));
  EXPECT_EQ(Names(ELFAPI_GetFuncsAt(Addr)), "FirstStep Clamp");
  EXPECT_EQ(Name(ELFAPI_GetFuncAt(Addr, true)), "FirstStep");
  EXPECT_EQ(LocText(ELFAPI_GetCallLoc(Inner)), "first.c:13");
  EXPECT_EQ(LocText(ELFAPI_GetLoc(Inner)), "first.c:13");
  EXPECT_EQ(LocText(ELFAPI_GetDeclLoc(Inner)), "shared.h:6");
  EXPECT_EQ(Name(ELFAPI_GetFunctionOf(Inner)), "FirstStep");
  EXPECT_GT(ELFAPI_GetAddrRanges(Inner).size(), 1);
  EXPECT_EQ(Name(ELFAPI_GetFuncOfLoc(Loc("first.c:18"))), "FirstStep");
  // Each unit has an abstract function of its own with one instance.
  qsizetype NumInstances = 0;
  for (const ELF_SYM_HANDLE Func : ELFAPI_GetFunctions())
    NumInstances += Name(Func) == "Clamp" ? ELFAPI_GetInlinedFuncs(Func).size() : 0;
  EXPECT_EQ(NumInstances, 2);
}

TEST_F(FunctionsTest, BelongToTheirFiles) {
  EXPECT_EQ(Names(ELFAPI_GetFileFunctions(FileId("/demo/second.c"))), "SecondStep LongStatement Clamp");
  EXPECT_EQ(Names(ELFAPI_GetNoFileFunctions()), "ResetHandler");
  const CAddrRange Range = ELFAPI_GetFileRange(FileId("/demo/shared.h"));
  EXPECT_TRUE(Range.Contains(AddrOf("FirstStep")) && Range.Contains(AddrOf("SecondStep")));
  EXPECT_EQ(ELFAPI_GetFileAt(AddrOf("main")), FileId("/demo/first.c"));
  EXPECT_EQ(ELFAPI_GetFileAt(0x08000000), INVALID_FILE_ID);
}

TEST_F(FunctionsTest, FoundByNameAndScope) {
  const std::pair<const char*, const char*> aCases[] = {
      // name, found symbols in the order of their names
      {"main", "main"},
      {"Main", ""},
      {"Area", "Geometry::Area Geometry::Flat::Square::Area"},
      {"Square::Area", "Geometry::Flat::Square::Area"},
      {"Geometry::Area", "Geometry::Area"},
      {"Geometry::Flat::Square::Side", "Geometry::Flat::Square::Side"},
      {"Flat::Area", ""},
      {"Geometry::Flat", "Geometry::Flat"},
      {"NumSquares", "Geometry::Flat::NumSquares"},
      {"Counter", "Counter Counter"},
      {"", ""},
      {"::", ""},
  };
  for (const auto& [sName, sFound] : aCases) {
    const ELF_SYM_LIST Found = ELFAPI_FindSymbols(QLatin1String(sName), true, false, false, false);
    QStringList Distinct = QString::fromStdString(Names(Found)).split(u' ');
    if (QByteArray(sName) != "Counter") Distinct.removeDuplicates();
    Distinct.sort();
    EXPECT_EQ(Distinct.join(u' ').toStdString(), sFound) << sName;
  }
  const ELF_SYM_LIST Both = ELFAPI_FindSymbols(u"main"_s, true, false, false, true);
  ASSERT_EQ(Both.size(), 2);
  EXPECT_TRUE(!ELFAPI_IsElfSymbol(Both[0]) && ELFAPI_IsElfSymbol(Both[1]));
  EXPECT_EQ(ELFAPI_GetAddr(Both[0]), ELFAPI_GetAddr(Both[1]));
  EXPECT_EQ(ELFAPI_GetScopeName(Global("Square::Side")), u"Geometry::Flat::Square");
}

TEST_F(FunctionsTest, OwnersAndTemplatesInNames) {
  ASSERT_EQ(ELFAPI_Load(CORPUS_DIR + u"gcc_v5_O0.elf"_s), 0);
  const std::pair<const char*, const char*> aCases[] = {
      // name, qualified names of the functions found
      {"push", "model::Ring<long int, 2>::push|model::Ring<short int, 4>::push"},
      {"Ring<long int,2>::push", "model::Ring<long int, 2>::push"},
      {"model::Ring< short int, 4 >::push", "model::Ring<short int, 4>::push"},
      {"model::Ring<shortint,4>::push", ""},
      {"Ring<short int, 2>::push", ""},
      {"model::push", ""},
      {"each<use_model(int)::<lambda(int32_t)>>", "each<use_model(int)::<lambda(int32_t)> >"},
      {"::use_model", "use_model"},
      {"::push", ""},
      {"::twice", ""},
      {"::model::twice", "model::twice"},
      {"::Derived::value", ""},
      {"each", "each<use_model(int)::<lambda(int32_t)> >"},
      {"Ring::push", "model::Ring<long int, 2>::push|model::Ring<short int, 4>::push"},
      {"::model::Ring::last", "model::Ring<long int, 2>::last|model::Ring<short int, 4>::last"},
      {"model::twice", "model::twice"},
      {"Derived::value", "model::Derived::value"},
      {"lue", ""},
  };
  for (const auto& [sName, sFound] : aCases) {
    QStringList Found;
    const QString sText = QLatin1String(sName);
    for (const ELF_SYM_HANDLE Sym : ELFAPI_FindSymbols(sText, true, false, false, false)) {
      if (ELFAPI_IsFunction(Sym)) Found.append(ELFAPI_GetQualifiedName(Sym));
    }
    EXPECT_EQ(Found.join(u'|').toStdString(), sFound) << sName;
    const ELF_SYM_HANDLE First = ELFAPI_FindSymbol(sText, true, false, false, true);
    EXPECT_EQ(ELFAPI_GetQualifiedName(First), Found.value(0)) << sName;
  }
  for (const char* const sName : {"Ring<long,2>", "Ring<long int, 2>", "model::Derived", "Ring<long int, 2>::Slot"}) {
    const bool bIsWritten = QByteArray(sName) != "Ring<long,2>";
    EXPECT_EQ(ELFAPI_FindSymbols(QLatin1String(sName), false, false, true, false).size(), bIsWritten ? 1 : 0) << sName;
  }
}

TEST_F(FunctionsTest, OwnersOfInlinedFunctions) {
  // program, name, an address in the first function found that has one of its own, and its qualified name
  const std::tuple<QString, const char*, const char*> aCases[] = {
      {u"../../elf/data/pump_gcc"_s, "Counted", "Plant::Counted"},
      {u"../../elf/data/pump_gcc"_s, "Plant::Counted", "Plant::Counted"},
      {u"../../elf/data/pump_clang"_s, "Outside", "Outside"},
      {u"../../elf/data/pump_clang"_s, "Plant::Outside", ""},
      {u"clang_v5_O1_types"_s, "Ring<int, 2>::push", "model::Ring<int, 2>::push"},
  };
  for (const auto& [sProgram, sName, sQualified] : aCases) {
    SCOPED_TRACE(sName);
    ASSERT_EQ(ELFAPI_Load(CORPUS_DIR + sProgram + u".elf"_s), 0);
    std::string sFound;
    for (const ELF_SYM_HANDLE Sym : ELFAPI_FindSymbols(QLatin1String(sName), true, false, false, false)) {
      if (ELFAPI_GetAddr(Sym) != INVALID_ADDR) sFound = ELFAPI_GetQualifiedName(Sym).toStdString();
      EXPECT_EQ(ELFAPI_GetQualifiedName(Sym).toStdString(), sQualified);
    }
    EXPECT_EQ(sFound, sQualified);
  }
}

TEST_F(FunctionsTest, WhatTheDebugInformationNamesStandsOnceInTheList) {
  ASSERT_EQ(ELFAPI_Load(QStringLiteral(VEXOR_SOURCE_DIR "/examples/thermostat/thermostat.elf")), 0);
  // The symbol of the same start without size reaches over the padding.
  EXPECT_EQ(Name(ELFAPI_GetFuncAt(0x1FA)), "__udivsi3");
  EXPECT_EQ(Name(ELFAPI_GetFuncAt(0x304)), "__aeabi_uidivmod") << "no debug information";
  for (const char* const sFile : {"gcc_v5_O3", "gcc_v5_O2_lto", "gcc_v3_O2", "clang_v5_O2"}) {
    ASSERT_EQ(ELFAPI_Load(CORPUS_DIR + QLatin1String(sFile) + u".elf"_s), 0);
    const ELF_SYM_LIST Functions = ELFAPI_GetFunctions();
    QSet<ELF_SYM_HANDLE> Instances;
    for (const ELF_SYM_HANDLE Func : Functions) {
      for (const ELF_SYM_HANDLE Instance : ELFAPI_GetInlinedFuncs(Func)) Instances.insert(Instance);
      const ELF_SYM_HANDLE Origin = ELF_GetAbstractOrigin(Func);
      EXPECT_FALSE(Origin != 0 && Functions.contains(Origin)) << sFile << ' ' << Name(Func);
    }
    const CDatabaseLock Db;
    for (const ELF_SYM_HANDLE Instance : Db->Functions.Inlined()) {
      const bool bListed = Instances.contains(Instance) || Name(Instance) == "operator()";  // that of a lambda
      EXPECT_TRUE(bListed) << sFile << ' ' << Name(Instance);
    }
  }
}

TEST_F(FunctionsTest, FunctionWhoseTextTheLineIs) {
  ASSERT_EQ(ELFAPI_Load(QStringLiteral(VEXOR_SOURCE_DIR "/tests/breakpoints/data/lines_O2.elf")), 0);
  const std::pair<const char*, const char*> aCases[] = {
      {"lines.cpp:33", "first"},  // mix begins at its first address
      {"lines.cpp:29", "mix"},    {"lines.cpp:30", "mix"},  {"lines.cpp:37", "second"},
      {"lines.cpp:38", "second"}, {"lines.cpp:42", "loop"}, {"lines.cpp:25", "Derived"},
  };
  for (const auto& [sLine, sFunc] : aCases) EXPECT_EQ(Name(ELFAPI_GetFuncOfLoc(Loc(sLine))), sFunc) << sLine;
}

TEST_F(FunctionsTest, NamesThatStandForSeveralThings) {
  ASSERT_EQ(ELFAPI_Load(DEMO_DIR + u"names.elf"_s), 0);
  const std::tuple<const char*, const char*, const char*> aLocals[] = {
      // PC at the line, name, where the variable is declared
      {"main.c:11", "i", "main.c:11"},     {"main.c:14", "i", "main.c:9"},      {"main.c:14", "Sum", "main.c:7"},
      {"main.c:24", "Count", "main.c:23"}, {"main.c:26", "Count", "main.c:21"}, {"main.c:24", "n", "main.c:20"},
  };
  for (const auto& [sPC, sName, sDecl] : aLocals) {
    SCOPED_TRACE(std::string(sPC) + ' ' + sName);
    ELFAPI_SetCurrentPC(ELFAPI_GetAddrOfLoc(Loc(sPC)));
    const ELF_SYM_HANDLE Sym = ELFAPI_FindSymbol(QLatin1String(sName), true, true, true, true);
    EXPECT_EQ(LocText(ELFAPI_GetDeclLoc(Sym)), sDecl);
    EXPECT_EQ(LocText(Loc(sName)), sDecl);
    const U32 Addr = ELFAPI_GetAddr(Sym);
    if (Addr != INVALID_ADDR) {
      EXPECT_EQ(AddrOf(sName), Addr);
    }
  }
  const std::pair<const char*, const char*> aFiles[] = {
      // text, path of the file whose line it is; without code on the line none
      {"util.c:1", "/demo/names/sub/util.c"},
      {"util.c:2", "/demo/names/same/util.c"},
      {"same/util.c:2", "/demo/names/same/util.c"},
      {"SAME\\util.c:2", "/demo/names/same/util.c"},
      {"names/sub/util.c:1", "/demo/names/sub/util.c"},
      {"same/util.c:1", ""},
      {"ame/util.c:2", ""},
      {"/same/util.c:2", ""},
  };
  for (const auto& [sText, sPath] : aFiles) {
    PARSED_LOC_KIND Kind;
    const U32 Addr = ELFAPI_ParseLocation(QLatin1String(sText), Kind).Start;
    EXPECT_EQ(Kind == PARSED_LOC_SRC ? ELFAPI_GetFilePathOf(Loc(sText).File) : QString(), QLatin1String(sPath))
        << sText;
    EXPECT_EQ(Addr != 0, *sPath != 0) << sText;
  }
  ELFAPI_RedirectFile(u"/demo/names/same/util.c"_s, u"/new/other.c"_s);
  EXPECT_TRUE(Loc("new/other.c:2").IsValid() && Loc("util.c:2").File == FileId("/demo/names/sub/util.c"));
}

TEST_F(FunctionsTest, SymbolsAtAnAddress) {
  EXPECT_EQ(Name(ELFAPI_GetSymbolAt(AddrOf("SecondStep"))), "SecondStep");
  EXPECT_EQ(ELFAPI_GetSymbolAt(AddrOf("SecondStep") + 2), 0u);
  EXPECT_EQ(Name(ELFAPI_FindSymbolAt(AddrOf("Table"))), "Table");
  const std::tuple<U32, QString, int> aCases[] = {
      // address, mapping, class
      {0x08000000, u"$Data"_s, 1},      {AddrOf("ResetHandler"), u"$Thumb"_s, -1}, {0x0800000E, u"$Data"_s, 1},
      {AddrOf("main"), u"$Thumb"_s, 0}, {AddrOf("main") + 6, u"$Thumb"_s, -1},     {AddrOf("Table"), u"$Data"_s, 1},
  };
  for (const auto& [Addr, sMapping, Class] : aCases) {
    EXPECT_EQ(ELFAPI_GetMappingName(Addr, false), sMapping) << std::hex << Addr;
    EXPECT_EQ(ELFAPI_ClassifyAddr(Addr), Class) << std::hex << Addr;
  }
  EXPECT_EQ(ELFAPI_GetMappingName(AddrOf("ResetHandler"), true), u"$Thumb");
  EXPECT_EQ(ELFAPI_GetMappingName(AddrOf("ResetHandler") + 2, true), QString());
}

TEST_F(FunctionsTest, LocalsFollowTheCurrentPC) {
  const auto FoundLocals = [](const QString& sName) {
    return Names(ELFAPI_FindSymbols(sName, true, true, true, true));
  };
  ELFAPI_SetCurrentPC(ELFAPI_GetAddrOfLoc(Loc("first.c:16")));
  EXPECT_EQ(Names(ELFAPI_GetLocalVars()), "Value Sum Index Part");
  EXPECT_EQ(FoundLocals(u"Part"_s), "Part");
  ELFAPI_SetCurrentPC(AddrOf("Geometry::Flat::Square::Side"));
  EXPECT_EQ(FoundLocals(u"this"_s), "this");
  EXPECT_EQ(FoundLocals(u"Part"_s), "");
  ELFAPI_SetCurrentPC(AddrOf("ResetHandler"));
  EXPECT_TRUE(ELFAPI_GetLocalVars().isEmpty());
  // A static variable that the compiler describes in the abstract function alone.
  ASSERT_EQ(ELFAPI_Load(CORPUS_DIR + u"../../elf/data/pump_gcc.elf"_s), 0);
  const auto IsCounted = [](ELF_SYM_HANDLE Func) {
    return !ELFAPI_IsInlined(Func) && ELFAPI_GetAddr(Func) != INVALID_ADDR;
  };
  const ELF_SYM_LIST Counted = ELFAPI_FindSymbols(u"Counted"_s, true, false, false, false);
  const auto Func = std::find_if(Counted.begin(), Counted.end(), IsCounted);
  ASSERT_NE(Func, Counted.end());
  ELFAPI_SetCurrentPC(ELFAPI_GetAddr(*Func));
  EXPECT_EQ(Names(ELFAPI_GetLocalVars()), "Step Calls");
  EXPECT_EQ(Names(ELFAPI_GetLocalVars(true)), "Calls");
  EXPECT_EQ(Names(ELFAPI_FindSymbols(u"Calls"_s, false, true, false, false)), "Calls");
  // The same in a block of it, beside a global one of that name.
  ASSERT_EQ(ELFAPI_Load(DEMO_DIR + u"scopes.elf"_s), 0);
  const U32 aPlaces[][2] = {{0x08000014, 0x20000010}, {0x0800002E, 0x20000010}, {AddrOf("main"), 0x20000000}};
  for (const auto& [PC, Addr] : aPlaces) {
    ELFAPI_SetCurrentPC(PC);
    EXPECT_EQ(ELFAPI_GetAddr(ELFAPI_FindSymbol(u"Calls"_s, true, true, false, true)), Addr) << std::hex << PC;
  }
}

TEST_F(FunctionsTest, NamesOfSeveralUnitsFollowTheCurrentPC) {
  ASSERT_EQ(ELFAPI_Load(CORPUS_DIR + u"../../elf/data/twins.elf"_s), 0);
  const std::tuple<U32, const char*, U32, U32> aVariables[] = {
      // current PC, name, address, size
      {AddrOf("first"), "level", 0x20000000, 4},     {AddrOf("second"), "level", 0x20000008, 4},
      {AddrOf("main"), "level", 0x20000008, 4},      {AddrOf("main"), "::level", 0x20000008, 4},
      {AddrOf("second"), "counter", 0x2000000C, 12}, {AddrOf("first"), "init", 0x8000, 20},
      {AddrOf("main"), "init", 0x8038, 20},          {INVALID_ADDR, "level", 0x20000008, 4},
      {INVALID_ADDR, "same_level", 0x20000008, 4},
  };
  for (const auto& [PC, sName, Addr, Size] : aVariables) {
    SCOPED_TRACE(testing::Message() << std::hex << PC << ' ' << sName);
    ELFAPI_SetCurrentPC(PC);
    const ELF_SYM_HANDLE Sym = ELFAPI_FindSymbol(QLatin1String(sName), true, true, true, true);
    EXPECT_EQ(std::pair(ELFAPI_GetAddr(Sym), ELFAPI_GetSize(Sym)), std::pair(Addr, Size));
    EXPECT_EQ(AddrOf(sName), Addr);
  }
  const std::tuple<const char*, const char*, U32> aTypes[] = {
      // current function, type, size
      {"first", "cfg", 4},
      {"second", "cfg", 12},
      {"small", "Local", 1},
      {"large", "Local", 12},
  };
  for (const auto& [sFunc, sType, Size] : aTypes) {
    ELFAPI_SetCurrentPC(AddrOf(sFunc));
    EXPECT_EQ(ELFAPI_GetSize(ELFAPI_FindSymbol(QLatin1String(sType), false, true, true, false)), Size) << sFunc;
  }
  for (const char* sFunc : {"first", "second"}) {
    ELFAPI_SetCurrentPC(AddrOf(sFunc));
    EXPECT_EQ(ELFAPI_GetScopeName(ELFAPI_FindEnumerator(u"SHARED"_s)).toStdString(), sFunc);
  }
}

TEST_F(FunctionsTest, TextsOfUsers) {
  const std::tuple<const char*, U32, PARSED_LOC_KIND> aCases[] = {
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
  for (const auto& [sText, Addr, Expected] : aCases) {
    PARSED_LOC_KIND Kind;
    EXPECT_EQ(ELFAPI_ParseLocation(QLatin1String(sText), Kind).Start, Addr) << sText;
    EXPECT_EQ(Kind, Expected) << sText;
  }
  // A local variable in registers has a line, and one inside a namespace an address.
  const U32 Start = AddrOf("FirstStep");
  ELFAPI_SetCurrentPC(Start);
  PARSED_LOC_KIND Kind;
  EXPECT_EQ(ELFAPI_ParseLocation(u"Index"_s, Kind).Start, ELFAPI_GetAddrOfLoc(Loc("first.c:14")));
  EXPECT_EQ(Kind, PARSED_LOC_DECL);
  EXPECT_EQ(ELFAPI_ParseLocation(u"FirstStep"_s, Kind).Size, ELFAPI_GetSize(Global("FirstStep")));
  EXPECT_EQ(ELFAPI_ParseLocation(u"Flat::NumSquares"_s, Kind).Size, 4u);
  EXPECT_EQ(Kind, PARSED_LOC_SYMBOL);
  EXPECT_EQ(LocText(Loc("8000058")), "first.c:23");
  EXPECT_EQ(LocText(Loc("main")), "first.c:22");
  EXPECT_FALSE(Loc("8000008").IsValid());
  EXPECT_EQ(ELFAPI_GetSrcLocText(Loc("first.c:7:3")), u"first.c:7:3");
}

TEST_F(FunctionsTest, FileIsKnownByThePathWhereTheFinderFindsIt) {
  const QString sHere = DEMO_DIR + u"second.c"_s;
  EXPECT_EQ(ELFAPI_FileId(sHere), INVALID_FILE_ID);
  CFileFinder::Get()->AddPathSubstitute(u"/demo/"_s, DEMO_DIR);
  EXPECT_EQ(ELFAPI_FileId(sHere), FileId("/Demo/Second.c"));
  EXPECT_NE(ELFAPI_FileId(sHere), INVALID_FILE_ID);
  CFileFinder::Get()->Clear();
  EXPECT_EQ(ELFAPI_FileId(sHere), INVALID_FILE_ID);
}

}  // namespace
