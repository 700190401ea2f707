#include "program/elf/elf_types.h"

#include "elf_builder.h"
#include "elf_fixture.h"

// On the programs of the corpus, which every compiler and version of DWARF describes in its own way.
class ElfTypes : public CElfTest {
protected:
  void OpenCorpus(const std::string& sName) { Open("../../corpus/data/" + sName + ".elf"); }
  static std::string TypeOf(ELF_SYM_HANDLE hSym) {
    const char* sText = ELF_GetTypeName(hSym);
    return sText ? sText : "";
  }
  ELF_SYM_HANDLE Type(const std::string& sName) const { return Find(ELF_GetNumTypes, ELF_GetTypeEntry, sName); }
  static ELF_SYM_HANDLE Member(ELF_SYM_HANDLE hSym, const char* sName) {
    const I32 Index = ELF_FindMember(hSym, sName);
    return Index < 0 ? 0 : ELF_GetMember(hSym, static_cast<U32>(Index));
  }
};

using testing::ElementsAre;

TEST_F(ElfTypes, NamesAndSizesOfVariables) {
  // variable, type, size, signed
  const std::tuple<const char*, const char*, U32, bool> aCases[] = {
      {"nodes", "struct node[3]", 48, false},
      {"sink", "volatile ulong", 4, false},
      {"status", "struct flags", 8, false},
      {"names", "const char*[3]", 12, false},
      {"grid", "short[4][3][2]", 48, true},
      {"ratio", "double", 8, false},
      {"tail", "const struct tail*", 4, false},
      {"message", "struct message", 9, false},
      {"counter", "int", 4, true},
  };
  for (const char* sFile : {"gcc_v2_O0", "gcc_v4_O1_be8", "gcc_v5_O1_dwarf64"}) {
    OpenCorpus(sFile);
    for (const auto& [sName, sType, Size, bSigned] : aCases) {
      SCOPED_TRACE(std::string(sFile) + " " + sName);
      const ELF_SYM_HANDLE hVar = Variable(sName);
      EXPECT_EQ(TypeOf(hVar), sType);
      EXPECT_EQ(ELF_GetSize(hVar), Size);
      EXPECT_EQ(ELF_IsSigned(hVar), bSigned);
    }
  }
}

TEST_F(ElfTypes, NamesOfFunctionsAndTheirPointers) {
  for (const char* sFile : {"gcc_v3_O2", "gcc_v5_O0", "clang_v4_O0", "clang_v5_O0"}) {
    SCOPED_TRACE(sFile);
    OpenCorpus(sFile);
    EXPECT_EQ(TypeOf(Function("main")), "static int()") << "no object pointer";
    EXPECT_EQ(TypeOf(Member(Type("message"), "handler")), "int(const struct message*, int)*");
    EXPECT_EQ(TypeOf(Local(Function("walk"), "first")), "const struct node*");
  }
}

TEST_F(ElfTypes, Arrays) {
  for (const char* sFile : {"gcc_v2_O0", "gcc_v5_O1", "clang_v5_O0"}) {
    SCOPED_TRACE(sFile);
    OpenCorpus(sFile);
    ELF_ARRAY_INFO Info;
    ASSERT_EQ(ELF_GetArrayInfo(Variable("grid"), &Info), 0);
    EXPECT_TRUE(Info.TotalSize == 48 && Info.ElementSize == 2 && Info.TotalCount == 24 && Info.NumDimensions == 3);
    EXPECT_THAT(std::vector<U32>(Info.aCounts, Info.aCounts + 4), ElementsAre(4, 3, 2, 0));
    ASSERT_EQ(ELF_GetArrayInfo(Local(Function("squares"), "values"), &Info), 0);
    EXPECT_TRUE(Info.ElementSize == 4 && Info.TotalCount == 1) << "its count is known only while the program runs";
    Info.TotalCount = 99;
    EXPECT_EQ(ELF_GetArrayInfo(Variable("ratio"), &Info), -1);
    EXPECT_EQ(Info.TotalCount, 99u);
  }
}

TEST_F(ElfTypes, ClassesAndTheirBases) {
  for (const char* sFile : {"gcc_v4_Og", "gcc_v5_O0", "gcc_v4_O1_be8"}) {
    SCOPED_TRACE(sFile);
    OpenCorpus(sFile);
    const ELF_SYM_HANDLE hDerived = Type("Derived"), hBase = Type("Base");
    ASSERT_EQ(ELF_GetNumBases(hDerived), 2u);
    EXPECT_EQ(ELF_GetType(ELF_GetBase(hDerived, 0), true), hBase);
    EXPECT_EQ(NameOf(ELF_GetType(ELF_GetBase(hDerived, 1), true)), "Mixin");
    EXPECT_TRUE(ELF_GetBase(hDerived, 2) == 0 && ELF_GetNumBases(hBase) == 0);
    EXPECT_EQ(ELF_GetAccess(Member(hBase, "id")), ELF_ACCESS_PROTECTED);
    EXPECT_EQ(ELF_GetAccess(Member(hBase, "on")), ELF_ACCESS_PRIVATE);
    EXPECT_EQ(ELF_GetAccess(Member(hBase, "number")), ELF_ACCESS_PUBLIC);
    EXPECT_EQ(ELF_GetAccess(Member(Type("Mixin"), "extra")), ELF_ACCESS_PUBLIC) << "by the kind of class";
    EXPECT_EQ(ELF_GetAccess(Function("main")), ELF_ACCESS_NONE);
    EXPECT_EQ(ELF_GetVirtuality(Member(hBase, "value")), ELF_VIRTUALITY_VIRTUAL) << "all that this compiler says";
    EXPECT_EQ(ELF_GetVirtuality(Member(hBase, "number")), ELF_VIRTUALITY_NONE);
    EXPECT_EQ(TypeOf(Member(hBase, "value")), "virtual long(long)") << "the object is no parameter";
    const ELF_SYM_HANDLE hValue = Member(hDerived, "value");
    EXPECT_NE(ELF_GetNumRanges(hValue), 0u) << "the definition stands for the declaration";
    EXPECT_EQ(NameOf(ELF_GetObjectPointer(hValue)), "this");
    EXPECT_EQ(ELF_GetTag(Member(hBase, "made")), ELF_TAG_VARIABLE);
  }
}

TEST_F(ElfTypes, StaticLocals) {
  for (const char* sFile : {"gcc_v2_O0", "gcc_v5_O0", "clang_v5_O0"}) {
    SCOPED_TRACE(sFile);
    OpenCorpus(sFile);
    const ELF_SYM_HANDLE hApply = Function("apply");
    EXPECT_TRUE(ELF_IsStatic(Local(hApply, "calls")) && !ELF_IsStatic(Local(hApply, "a")));
    EXPECT_EQ(TypeOf(Local(hApply, "calls")), "static int");
    EXPECT_FALSE(ELF_IsStatic(Variable("counter"))) << "in no function";
  }
}

// A place by its number in the pool of addresses, as split units of version 4 have it.
TEST_F(ElfTypes, StaticLocalByANumber) {
  OpenBytes(CElfBuilder()
                .Add(".debug_abbrev", "01 11 01 b342 17 0000  02 2e 01 0000  03 34 00 02 18 0000 00")
                .Add(".debug_info", "12000000 0400 00000000 04  01 00000000  02  03 02 fb00  00 00")
                .Add(".debug_addr", "10000020")
                .Bytes());
  const ELF_SYM_HANDLE hLocal = ELF_GetLocal(ELF_GetDieByOffset(pFile, 16, false), 0);
  EXPECT_EQ(ELF_GetLocation(hLocal, 0).Addr, 0x20000010u);
  EXPECT_TRUE(ELF_IsStatic(hLocal));
}

TEST_F(ElfTypes, ConstantsAndNeutralValues) {
  for (const char* sFile : {"gcc_v5_O0", "clang_v4_O0", "gcc_v4_O1_be8"}) {
    SCOPED_TRACE(sFile);
    OpenCorpus(sFile);
    const ELF_SYM_HANDLE hColour = ELF_GetType(Type("colour"), true);
    I32 Value = 0;
    EXPECT_EQ(ELF_GetConstValue(Member(hColour, "COLOUR_NEGATIVE"), reinterpret_cast<U8*>(&Value), sizeof Value), 4u);
    EXPECT_EQ(Value, -3);
    U8 aShort[2] = {0, 0xAA};
    EXPECT_EQ(ELF_GetConstValue(Member(hColour, "COLOUR_GREEN"), aShort, 1), 1u);
    EXPECT_TRUE(aShort[0] == 5 && aShort[1] == 0xAA);
    EXPECT_EQ(ELF_GetConstValue(Variable("ratio"), aShort, 1), 0u);
  }
  const ELF_SYM_HANDLE hSymbol = ELF_GetSymbolHandle(pFile, 1);
  EXPECT_TRUE(ELF_GetTypeName(hSymbol) == nullptr && ELF_GetType(hSymbol, true) == 0);
  EXPECT_TRUE(ELF_GetNumMembers(hSymbol) == 0 && ELF_GetNumLocals(0) == 0 && ELF_FindMember(0, "x") == -1);
  EXPECT_TRUE(ELF_GetName(ELF_GetSymbolHandle(pFile, 0)) == nullptr) << "the null entry";
  EXPECT_EQ(ELF_GetSectionName(pFile, ELF_GetNumSections(pFile)), nullptr);
}
