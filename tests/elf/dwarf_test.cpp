#include <map>

#include "elf_fixture.h"
#include "program/elf/source_path.h"

using ElfDwarf = CElfTest;

// The same source says the same in every version of DWARF, at every optimisation and in both byte orders.
TEST_F(ElfDwarf, SampleProgramInAllVersions) {
  // file, greatest version of its units
  const std::pair<std::string, U32> aPrograms[] = {
      {"gcc_dwarf2_O0.elf", 2}, {"gcc_dwarf3_O2.elf", 3}, {"gcc_dwarf4_O2.elf", 4}, {"gcc_dwarf5_O0.elf", 5},
      {"gcc_dwarf5_O2.elf", 5}, {"mixed.elf", 5},         {"big_endian.elf", 4},    {"gcc_dwarf5_lto.elf", 5},
      {"clang_dwarf4.elf", 4},  {"clang_dwarf5.elf", 5},
  };
  for (const auto& [sName, Version] : aPrograms) {
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

// What a function says of its calls is walked over, and can be asked for.
TEST_F(ElfDwarf, CallSites) {
  // file, tag of a call, attribute that names the function called
  const std::tuple<const char*, U32, U32> aCases[] = {
      {"gcc_dwarf5_O2.elf", ELF_TAG_CALL_SITE, ELF_ATTR_CALL_ORIGIN},
      {"gcc_dwarf4_O2.elf", ELF_TAG_GNU_CALL_SITE, ELF_ATTR_ABSTRACT_ORIGIN},
  };
  for (const auto& [sFile, Tag, Callee] : aCases) {
    SCOPED_TRACE(sFile);
    Open(sFile);
    const ELF_SYM_HANDLE hMain = Function("main");
    std::string sCalled;
    for (ELF_SYM_HANDLE hChild = ELF_GetFirstChild(hMain); hChild; hChild = ELF_GetNextSibling(hChild)) {
      if (ELF_GetTag(hChild) == Tag) sCalled += NameOf(ELF_GetAttrDie(hChild, Callee)) + ' ';
    }
    EXPECT_EQ(sCalled, "Accumulate ");
    for (U32 i = 0; i < ELF_GetNumLocals(hMain); ++i) EXPECT_NE(ELF_GetTag(ELF_GetLocal(hMain, i)), Tag);
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

TEST_F(ElfDwarf, SourceFilesAndTheirUnits) {
  Open("mixed.elf");
  std::map<std::string, std::string> Units;
  for (U32 i = 0; i < ELF_GetNumSrcFiles(pFile); ++i) {
    for (U32 Unit = 0; Unit < ELF_GetSrcFileNumUnits(pFile, i); ++Unit)
      Units[ELF_GetSrcFile(pFile, i)] += NameOf(ELF_GetSrcFileUnit(pFile, i, Unit)) + ' ';
  }
  EXPECT_EQ(Units, (std::map<std::string, std::string>{{"/sample/sample.c", "sample.c "},
                                                       {"/sample/sample.h", "sample.c other.c "},
                                                       {"/sample/other.c", "other.c "}}));
}

TEST_F(ElfDwarf, FileWithoutDebugInformation) {
  Open("plain.elf");
  EXPECT_TRUE(ELF_GetNumFunctions(pFile) == 0 && ELF_GetNumSrcLines(pFile) == 0 && ELF_GetEntryFunc(pFile) == 0);
  EXPECT_EQ(ELF_GetHandleKind(ELF_FindRttControlBlock(pFile)), ELF_HANDLE_SYMBOL);
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
