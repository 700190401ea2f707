#include <map>

#include "elf_fixture.h"
#include "program/elf/base_type_name.h"
#include "program/elf/elf_types.h"
#include "program/elf/source_path.h"

using ElfDwarf = CElfTest;

// The same source says the same in every version of DWARF, at every optimisation and in both byte orders.
TEST_F(ElfDwarf, SampleProgramInAllVersions) {
  // file, greatest version of its units, instances of Twice with code
  const std::tuple<std::string, U32, U32> aPrograms[] = {
      {"gcc_dwarf2_O0.elf", 2, 0}, {"gcc_dwarf3_O2.elf", 3, 3},  {"gcc_dwarf4_O2.elf", 4, 3},
      {"gcc_dwarf5_O0.elf", 5, 0}, {"gcc_dwarf5_O2.elf", 5, 3},  {"mixed.elf", 5, 3},
      {"big_endian.elf", 4, 3},    {"gcc_dwarf5_lto.elf", 5, 5},
  };
  for (const auto& [sName, Version, NumTwice] : aPrograms) {
    SCOPED_TRACE(sName);
    Open(sName);
    EXPECT_EQ(ELF_IsTargetBigEndian(), sName == "big_endian.elf");
    EXPECT_EQ(ELF_GetVersion(pFile), Version);
    EXPECT_EQ(ELF_GetSrcLang(pFile), ELF_SRC_LANG_C);
    const ELF_SYM_HANDLE hMain = ELF_GetEntryFunc(pFile);
    EXPECT_EQ(NameOf(hMain), "main");
    EXPECT_EQ(ELF_GetRangeLow(hMain, 0), ELF_GetEntryPoint(pFile));
    EXPECT_STREQ(ELF_GetDeclFile(hMain), "/sample/sample.c");
    I64 Line = 0;
    EXPECT_EQ(ELF_GetAttrValue(hMain, ELF_ATTR_DECL_LINE, &Line), 0);
    EXPECT_EQ(Line, 19);
    EXPECT_TRUE(ELF_GetSize(Variable("Samples")) == 48 && ELF_GetSize(Variable("Matrix")) == 20);
    EXPECT_EQ(NameOf(ELF_FindRttControlBlock(pFile)), "_MORVEK_RTT");
    EXPECT_EQ(ELF_GetTag(ELF_FindRttControlBlock(pFile)), ELF_TAG_VARIABLE);
    U32 NumInlined = 0;
    for (U32 i = 0; i < ELF_GetNumInlinedFuncs(pFile); ++i) {
      const ELF_SYM_HANDLE hInlined = ELF_GetInlinedFunc(pFile, i);
      if (NameOf(hInlined) != "Twice") continue;
      EXPECT_STREQ(ELF_GetDeclFile(ELF_GetAbstractOrigin(hInlined)), "/sample/sample.h");
      const ELF_SYM_HANDLE hAround = ELF_GetContainingFunc(hInlined);
      ASSERT_NE(ELF_GetNumRanges(hInlined), 0u);
      EXPECT_GE(ELF_GetRangeLow(hInlined, 0), ELF_GetRangeLow(hAround, 0));
      EXPECT_LT(ELF_GetRangeLow(hInlined, 0), ELF_GetRangeHigh(hAround, 0));
      ++NumInlined;
    }
    EXPECT_EQ(NumInlined, NumTwice);
  }
}

// Debug information and symbols come by different ways: they have to agree on every function.
TEST_F(ElfDwarf, RangesOfFunctionsMatchTheirSymbols) {
  for (const char* sName : {"gcc_dwarf2_O0.elf", "gcc_dwarf5_O2.elf", "clang_dwarf4.elf", "clang_dwarf5.elf",
                            "big_endian.elf", "cpp_dwarf4_types.elf"}) {
    SCOPED_TRACE(sName);
    Open(sName);
    U32 NumChecked = 0;
    for (U32 i = 0; i < ELF_GetNumFunctions(pFile); ++i) {
      const ELF_SYM_HANDLE hFunc = ELF_GetFunction(pFile, i);
      if (ELF_GetNumRanges(hFunc) != 1) continue;
      const I32 Index = ELF_FindFuncSymbol(pFile, ELF_GetRangeLow(hFunc, 0), true);
      ASSERT_GE(Index, 0) << NameOf(hFunc);
      const ELF_SYM_HANDLE hSym = ELF_GetSymbolHandle(pFile, static_cast<U32>(Index));
      EXPECT_EQ(ELF_GetValue(hSym) & ~1u, ELF_GetRangeLow(hFunc, 0));
      EXPECT_EQ(ELF_GetSize(hSym), ELF_GetRangeHigh(hFunc, 0) - ELF_GetRangeLow(hFunc, 0)) << NameOf(hFunc);
      ++NumChecked;
    }
    EXPECT_GE(NumChecked, 3u);
  }
}

// A unit in two regions and inlined code in pieces have lists of ranges, of another kind in each version.
TEST_F(ElfDwarf, RangeLists) {
  for (const char* sName : {"gcc_dwarf3_O2.elf", "gcc_dwarf5_O2.elf", "clang_dwarf4.elf", "clang_dwarf5.elf"}) {
    SCOPED_TRACE(sName);
    Open(sName);
    const ELF_SYM_HANDLE hInRam = Function("InRam");
    const ELF_SYM_HANDLE hUnit = ELF_GetCompUnit(hInRam);
    EXPECT_EQ(ELF_GetTag(hUnit), ELF_TAG_COMPILE_UNIT);
    ASSERT_GE(ELF_GetNumRanges(hUnit), 2u);
    std::map<U32, U32> Ranges;
    for (U32 i = 0; i < ELF_GetNumRanges(hUnit); ++i) Ranges[ELF_GetRangeLow(hUnit, i)] = ELF_GetRangeHigh(hUnit, i);
    EXPECT_EQ(Ranges[ELF_GetRangeLow(hInRam, 0)], ELF_GetRangeHigh(hInRam, 0));
    EXPECT_EQ(ELF_GetRangeLow(hUnit, 99), INVALID_ADDR);
  }
}

TEST_F(ElfDwarf, ScopesOfClassMembers) {
  for (const char* sName : {"cpp_dwarf5.elf", "cpp_dwarf4_types.elf"}) {
    SCOPED_TRACE(sName);
    Open(sName);
    EXPECT_EQ(ELF_GetSrcLang(pFile), ELF_SRC_LANG_CPP);
    const ELF_SYM_HANDLE hStep = Function("Step");
    EXPECT_EQ(NameOf(ELF_GetContainingClass(hStep)), "Drive");
    EXPECT_EQ(NameOf(ELF_GetContainingNamespace(hStep)), "Motor");
    EXPECT_EQ(ELF_GetContainingFunc(hStep), 0u);
    const ELF_SYM_HANDLE hDeclaration = ELF_GetAttrDie(hStep, ELF_ATTR_SPECIFICATION);
    EXPECT_EQ(ELF_GetDefinition(hDeclaration), hStep);
    EXPECT_EQ(NameOf(Variable("NumDrives")), "NumDrives") << "named by its declaration";
    EXPECT_EQ(ELF_GetSize(Variable("Hidden")), 12u) << "through a type unit's signature in one of the files";
    EXPECT_STREQ(ELF_GetDeclFile(Find(ELF_GetNumTypes, ELF_GetTypeEntry, "Drive")), "/sample/drive.cpp");
  }
}

TEST_F(ElfDwarf, TreeOfEntries) {
  Open("gcc_dwarf5_O0.elf");
  const ELF_SYM_HANDLE hMain = Function("main");
  const ELF_SYM_HANDLE hUnit = ELF_GetCompUnit(hMain);
  EXPECT_EQ(ELF_GetParent(hUnit), 0u);
  EXPECT_EQ(ELF_GetNextSibling(hUnit), 0u) << "another unit is no sibling";
  U32 NumMains = 0;
  for (ELF_SYM_HANDLE hChild = ELF_GetFirstChild(hUnit); hChild; hChild = ELF_GetNextSibling(hChild)) {
    EXPECT_EQ(ELF_GetParent(hChild), hUnit);
    NumMains += hChild == hMain;
  }
  EXPECT_EQ(NumMains, 1u);
  EXPECT_EQ(ELF_GetTag(ELF_GetDieByOffset(pFile, 12, false)), ELF_TAG_COMPILE_UNIT) << "behind the unit's header";
  EXPECT_EQ(ELF_GetDieByOffset(pFile, 13, false), 0u) << "inside an entry";
  EXPECT_EQ(ELF_GetTag(hMain | 0x1C000000), ELF_TAG_INVALID) << "a slot that is not open";
}

// What a compiler marks as made up is a function where it has code: that of a lambda.
TEST_F(ElfDwarf, FunctionsOfLambdas) {
  for (const char* sFile : {"gcc_v2_O0", "gcc_v5_O0", "clang_v5_O0"}) {
    Open(std::string("../../corpus/data/") + sFile + ".elf");
    EXPECT_STREQ(ELF_GetDeclFile(Function("operator()")), "/corpus/model.cpp") << sFile;
  }
}

// Link-time optimisation leaves an entry without a place beside each variable's; only one of the two is in the list.
TEST_F(ElfDwarf, GlobalsOfLinkTimeOptimisation) {
  Open("../../corpus/data/gcc_v5_O2_lto.elf");
  std::map<std::string, U32> NumByName;
  for (U32 i = 0; i < ELF_GetNumGlobalVars(pFile); ++i) ++NumByName[NameOf(ELF_GetGlobalVar(pFile, i))];
  const std::pair<const char*, bool> aVariables[] = {{"table", true},   {"made", true},    {"nodes", true},
                                                     {"counter", true}, {"status", false}, {"grid", false}};
  for (const auto& [sName, bPlace] : aVariables) {
    EXPECT_EQ(NumByName[sName], 1u) << sName;
    EXPECT_EQ(ELF_GetLocation(Variable(sName), 0).Type == ELF_LOC_MEM, bPlace) << sName;
  }
}

TEST_F(ElfDwarf, SourceFilesAndTheirUnits) {
  Open("mixed.elf");
  std::map<std::string, U32> NumUnits;
  for (U32 i = 0; i < ELF_GetNumSrcFiles(pFile); ++i)
    NumUnits[ELF_GetSrcFile(pFile, i)] = ELF_GetSrcFileNumUnits(pFile, i);
  EXPECT_EQ(NumUnits,
            (std::map<std::string, U32>{{"/sample/sample.c", 1}, {"/sample/sample.h", 2}, {"/sample/other.c", 1}}));
}

TEST_F(ElfDwarf, FrameEntriesCoverTheFunctions) {
  Open("gcc_dwarf5_O0.elf");
  std::map<U32, U32> Frames;
  for (U32 i = 0; i < ELF_GetNumFdes(pFile); ++i) Frames[ELF_GetFdeLow(pFile, i)] = ELF_GetFdeHigh(pFile, i);
  for (U32 i = 0; i < ELF_GetNumFunctions(pFile); ++i) {
    const ELF_SYM_HANDLE hFunc = ELF_GetFunction(pFile, i);
    EXPECT_EQ(Frames[ELF_GetRangeLow(hFunc, 0)], ELF_GetRangeHigh(hFunc, 0)) << NameOf(hFunc);
  }
  constexpr U32 LINK_REGISTER = 14;
  EXPECT_EQ(ELF_GetRetAddrReg(pFile), LINK_REGISTER);
}

TEST_F(ElfDwarf, FileWithoutDebugInformation) {
  Open("plain.elf");
  EXPECT_TRUE(ELF_GetNumFunctions(pFile) == 0 && ELF_GetNumSrcLines(pFile) == 0 && ELF_GetEntryFunc(pFile) == 0);
  EXPECT_EQ(ELF_GetHandleKind(ELF_FindRttControlBlock(pFile)), ELF_HANDLE_SYMBOL);
}

TEST(ElfText, ShortBaseTypeNames) {
  const std::pair<const char*, const char*> aCases[] = {
      {"short unsigned int", "ushort"}, {"long unsigned int", "ulong"}, {"long long unsigned int", "long ulong"},
      {"signed char", "char"},          {"long long int", "long long"}, {"double", "double"},
  };
  for (const auto& [sName, sShort] : aCases) EXPECT_EQ(ShortBaseTypeName(sName), sShort) << sName;
}

TEST(ElfText, SourcePaths) {
  // working directory, include directory, name; the path
  const std::array<const char*, 4> aCases[] = {
      {"/build", "src", "main.c", "/build/src/main.c"},
      {"/build", "", "main.c", "/build/main.c"},
      {"/build", "/usr/include", "a.h", "/usr/include/a.h"},
      {"/build", "src", "/abs/a.c", "/abs/a.c"},
      {"C:\\Work\\", "src", "a.c", "C:\\Work\\src/a.c"},
      {"/build", "D:/lib", "a.h", "D:/lib/a.h"},
      {"", "", "a.c", "a.c"},
  };
  for (const auto& [sCompDir, sInclude, sName, sPath] : aCases)
    EXPECT_EQ(JoinSourcePath(sCompDir, sInclude, sName), sPath);
}
