#include "elf_fixture.h"

// A program of three units, none of which describes everything, as two compilers and with type units.
class ElfJoin : public CElfTest {
protected:
  static constexpr const char* PROGRAMS[] = {"pump_gcc.elf", "pump_types.elf", "pump_clang.elf"};

  static constexpr U32 ATTR_SIGNATURE = 0x69;

  static std::string TypeOf(ELF_SYM_HANDLE hSym) {
    const char* sText = ELF_GetTypeName(hSym);
    return sText ? sText : "";
  }
  ELF_SYM_HANDLE Type(const std::string& sName) const { return Find(ELF_GetNumTypes, ELF_GetTypeEntry, sName); }
  // What a pointer points to.
  static ELF_SYM_HANDLE Target(ELF_SYM_HANDLE hSym) {
    return ELF_GetType(ELF_GetType(ELF_GetType(hSym, true), false), true);
  }
  static ELF_SYM_HANDLE Member(ELF_SYM_HANDLE hSym, const char* sName) {
    const I32 Index = ELF_FindMember(hSym, sName);
    return Index < 0 ? 0 : ELF_GetMember(hSym, static_cast<U32>(Index));
  }
};

TEST_F(ElfJoin, VariablesOfTypesThatOtherUnitsDescribe) {
  // variable, type, size
  const std::tuple<const char*, const char*, U32> aCases[] = {
      {"Pumps", "class Pump[3]", 72},  {"First", "struct Valve&", 4}, {"Opened", "struct Handle*", 4},
      {"Slots", "void**", 4},          {"Handles", "void*[2]", 8},    {"Allocate", "void*(uint)*", 4},
      {"Method", "int() Meter::*", 8}, {"Largest", "enum Limit", 8},
  };
  for (const char* sProgram : PROGRAMS) {
    Open(sProgram);
    for (const auto& [sName, sType, Size] : aCases) {
      SCOPED_TRACE(std::string(sProgram) + " " + sName);
      EXPECT_EQ(TypeOf(Variable(sName)), sType);
      EXPECT_EQ(ELF_GetSize(Variable(sName)), Size);
    }
  }
}

TEST_F(ElfJoin, ClassesAndMembersHaveTheirDefinitions) {
  for (const char* sProgram : PROGRAMS) {
    SCOPED_TRACE(sProgram);
    Open(sProgram);
    EXPECT_EQ(ELF_GetNumMembers(Target(Variable("Opened"))), 2u);
    ASSERT_EQ(NameOf(Target(Variable("Unknown"))), "Secret");
    EXPECT_EQ(ELF_GetNumMembers(Target(Variable("Unknown"))), 0u) << "the other unit's is another class";
    const ELF_SYM_HANDLE hPump = Type("Pump");
    EXPECT_EQ(ELF_GetNumBases(hPump), 2u);
    EXPECT_EQ(NameOf(ELF_GetContainingNamespace(hPump)), "Plant");
    EXPECT_EQ(ELF_GetNumRanges(Member(hPump, "Open")), 1u);
    const ELF_SYM_LOC Place = ELF_GetLocation(Member(Type("Valve"), "NumValves"), 0);
    EXPECT_EQ(Place.Type, U32{ELF_LOC_MEM});
    EXPECT_EQ(Place.Addr, ELF_GetLocation(Variable("NumValves"), 0).Addr);
    U64 Value = 0;
    const ELF_SYM_HANDLE hHigh = Member(Type("Limit"), "High");
    EXPECT_EQ(ELF_GetConstValue(hHigh, reinterpret_cast<U8*>(&Value), sizeof Value), 8u);
    EXPECT_EQ(Value, 0x123456789Aull);
    EXPECT_EQ(TypeOf(hHigh), "enum Limit");
  }
}

// Of a class in a type unit, which gives none of the constructors a name for the linker, and in both units, each of
// which defines some members.
TEST_F(ElfJoin, EachMemberHasTheCodeOfItsOwnParameters) {
  const char* const aLinked[] = {"_ZN4PipeC2Ei", "_ZN4PipeC2EN3Oil4FlowE", "_ZN4PipeC2EN5Water4FlowE", "",
                                 "_ZNK4Pipe5WidthEv"};
  for (const auto& [sProgram, NumClasses] : {std::pair("parts.elf", 1u), {"parts_twice.elf", 2u}}) {
    Open(sProgram);
    U32 NumPipes = 0;
    for (U32 i = 0; i < ELF_GetNumTypes(pFile); ++i) {
      const ELF_SYM_HANDLE hPipe = ELF_GetTypeEntry(pFile, i);
      if (NameOf(hPipe) != "Pipe") continue;
      ++NumPipes;
      EXPECT_EQ(ELF_GetLocation(Member(hPipe, "NumPipes"), 0).Addr, ELF_GetLocation(Variable("NumPipes"), 0).Addr);
      U32 First = static_cast<U32>(ELF_FindMember(hPipe, "Pipe"));
      for (const std::string sLinked : aLinked) {
        SCOPED_TRACE(sProgram + std::to_string(NumPipes) + sLinked);
        const ELF_SYM_HANDLE hMember = ELF_GetMember(hPipe, First++);
        ASSERT_EQ(ELF_GetNumRanges(hMember), sLinked.empty() ? 0u : 1u);
        if (sLinked.empty()) continue;
        const ELF_SYM_HANDLE hSymbol = Find(ELF_GetNumSymbols, ELF_GetSymbolHandle, sLinked);
        EXPECT_EQ(ELF_GetRangeLow(hMember, 0), ELF_GetRangeLow(hSymbol, 0) & ~1u);
      }
    }
    EXPECT_EQ(NumPipes, NumClasses);
  }
}

TEST_F(ElfJoin, TemplatesWithoutArgumentsInTheirNames) {
  Open("parts.elf");
  for (const auto& [sName, Size] : {std::pair("OfDouble", 24u), {"OfChar", 8u}, {"OfOil", 12u}, {"OfWater", 8u}})
    EXPECT_EQ(ELF_GetSize(Target(Variable(sName))), Size) << sName;
}

TEST_F(ElfJoin, SignatureAsANumberIsTheOffsetOfItsType) {
  Open("pump_types.elf");
  const ELF_SYM_HANDLE hSkeleton = ELF_GetParent(ELF_GetAttrDie(Function("Open"), ELF_ATTR_SPECIFICATION));
  const ELF_SYM_HANDLE hType = ELF_GetDefinition(hSkeleton);
  ASSERT_TRUE(hType != 0 && hType != hSkeleton);
  I64 Offset = 0;
  EXPECT_EQ(ELF_GetAttrValue(hSkeleton, ATTR_SIGNATURE, &Offset), 0);
  EXPECT_EQ(ELF_GetDieByOffset(pFile, static_cast<U32>(Offset), true), hType);
}

// Where a function was inlined, its code stands in the scopes of another one, and its copy for callers in none.
TEST_F(ElfJoin, FunctionsHaveTheScopesOfTheirSource) {
  for (const char* sProgram : PROGRAMS) {
    SCOPED_TRACE(sProgram);
    Open(sProgram);
    for (const char* sName : {"Counted", "Run", "Calls"})
      EXPECT_EQ(NameOf(ELF_GetContainingNamespace(Function(sName))), "Plant") << sName;
    U32 NumInlined = 0;
    for (U32 i = 0; i < ELF_GetNumInlinedFuncs(pFile); ++i) {
      const ELF_SYM_HANDLE hInlined = ELF_GetInlinedFunc(pFile, i);
      if (NameOf(hInlined) != "Outside") continue;
      ++NumInlined;
      EXPECT_EQ(ELF_GetContainingNamespace(hInlined), 0u);
      EXPECT_EQ(NameOf(ELF_GetContainingFunc(hInlined)), "Calls");
    }
    EXPECT_GE(NumInlined, 2u);
    const ELF_SYM_HANDLE hCalls = Local(Function("Counted"), "Calls");
    EXPECT_TRUE(ELF_IsStatic(hCalls) && ELF_GetLocation(hCalls, 0).Type == ELF_LOC_MEM);
    EXPECT_EQ(ELF_GetLocal(Function("Counted"), ELF_GetNumLocals(Function("Counted"))), 0u);
  }
  EXPECT_NE(Function("_ZThn8_N5Plant4Pump4ReadEv"), 0u) << "a thunk has no other name";
}
