// Types, members, places and frames of the programs of the corpus.

#include "demo_program.h"

#include "program/database/elfapi_types.h"
#include "program/elf/elf.h"
#include "program/elf/elf_dwarf_names.h"

namespace {

class TypesTest : public DemoProgramTest {
protected:
  void LoadCorpus(const QString& sName) { ASSERT_EQ(ELFAPI_Load(CORPUS_DIR + sName + u".elf"_s), 0); }
  // A local variable of a function; the scope stays at the function.
  static ELF_SYM_HANDLE Local(const char* sFunc, const char* sName) {
    ELFAPI_SetCurrentPC(AddrOf(sFunc));
    return ELFAPI_FindSymbol(QLatin1String(sName), false, true, false, false);
  }
  static std::string TypeName(ELF_SYM_HANDLE Sym) { return ELFAPI_GetTypeName(Sym).toStdString(); }
};

const QStringList CORPUS_FILES = {u"gcc_v2_O0"_s, u"gcc_v5_O0"_s, u"clang_v4_O0"_s, u"clang_v5_O0"_s};

TEST_F(TypesTest, MembersAlsoOfBaseClasses) {
  struct CASE {
    const char *sClass, *sMember, *sDeclaredIn, *sAccess, *sType;
    I32 Base;
  };
  const CASE aCases[] = {
      {"model::device", "history", "Derived", "public", "class Ring<short int, 4>", -1},
      {"model::device", "level", "Derived", "private", "enum Level", -1},
      {"model::device", "reset", "Derived", "public", "virtual void()", -1},
      {"model::device", "id", "Base", "protected", "int", 0},
      {"model::device", "kind", "Base", "private", "uchar", 0},
      {"model::device", "extra", "Mixin", "public", "long", 1},
      {"model::device", "nothing", "", "", "", -1},
      {"Derived", "extra", "Mixin", "public", "long", 1},
      {"Mixin", "id", "", "", "", -1},
      {"ratio", "extra", "", "", "", -1},
  };
  LoadCorpus(u"gcc_v5_O0"_s);
  for (const CASE& Case : aCases) {
    SCOPED_TRACE(std::string(Case.sClass) + "." + Case.sMember);
    const ELF_SYM_HANDLE Variable = ELFAPI_FindSymbol(QLatin1String(Case.sClass), true, false, true, false);
    ASSERT_NE(Variable, 0u);
    const MEMBER_PLACE Place = ELFAPI_FindMember(Variable, QLatin1String(Case.sMember));
    EXPECT_EQ(Name(Place.Class), Case.sDeclaredIn);
    EXPECT_EQ(Place.Base, Case.Base);
    EXPECT_EQ(Place.Member >= 0, Place.Class != 0);
    if (Place.Member < 0) continue;
    const ELF_SYM_HANDLE Member = ELFAPI_GetMember(Place.Class, static_cast<U32>(Place.Member));
    EXPECT_EQ(Name(Member), Case.sMember);
    EXPECT_EQ(ELFAPI_GetAccessText(Member).toStdString(), Case.sAccess);
    EXPECT_EQ(TypeName(Member), Case.sType);
  }
  const ELF_SYM_HANDLE Node = ELFAPI_FindSymbol(u"node"_s, false, false, true, false);
  const MEMBER_PLACE Word = ELFAPI_FindMember(Node, u"word"_s);
  EXPECT_EQ(Word, (MEMBER_PLACE{0, -1, ELFAPI_GetType(Word.Way.value(0)), {ELFAPI_GetMember(Node, 2)}}));
  EXPECT_EQ(ELFAPI_GetLocation(Word.Way.value(0), 0).Offset, 8);
  const ELF_SYM_HANDLE Device = Global("device");
  EXPECT_EQ(ELFAPI_GetBaseNames(Device), u"Base, Mixin");
  // An object with virtual functions: its table, the identifier and the bits of Base, then Mixin.
  const ELF_SYM_LOC MixinPlace = ELFAPI_GetLocation(ELFAPI_GetBases(Device).value(1), 0);
  EXPECT_EQ(MixinPlace.Type, U32(ELF_LOC_PARENT_LOC));
  EXPECT_EQ(MixinPlace.Offset, 12);
}

TEST_F(TypesTest, BitsSignsAndConstants) {
  struct CASE {
    const char* sMember;
    U32 Offset, BigEndianOffset, Size;
    bool bSigned;
  };
  const CASE aCases[] = {
      {"valid", 0, 31, 1, false}, {"mode", 1, 28, 3, false},  {"level", 4, 21, 7, true},
      {"rest", 0, 0, 0, false},   {"wide", 24, 0, 40, false},
  };
  for (const QString& sFile : CORPUS_FILES + QStringList{u"gcc_v4_O1_be8"_s}) {
    SCOPED_TRACE(sFile.toStdString());
    LoadCorpus(sFile);
    for (const CASE& Case : aCases) {
      SCOPED_TRACE(Case.sMember);
      const MEMBER_PLACE Place = ELFAPI_FindMember(Global("status"), QLatin1String(Case.sMember));
      const ELF_SYM_HANDLE Member = ELFAPI_GetMember(Place.Class, static_cast<U32>(Place.Member));
      EXPECT_EQ(ELFAPI_GetBitOffset(Member), ELFAPI_GetEncoding() == 1 ? Case.BigEndianOffset : Case.Offset);
      EXPECT_EQ(ELFAPI_GetBitSize(Member), Case.Size);
      EXPECT_EQ(ELFAPI_IsSigned(Member), Case.bSigned);
      EXPECT_EQ(ELFAPI_GetAccess(Member), U32(ELF_ACCESS_PUBLIC));
    }
    const ELF_SYM_HANDLE Colour = ELFAPI_FindSymbol(u"colour"_s, false, false, true, false);
    const MEMBER_PLACE Negative = ELFAPI_FindMember(Colour, u"COLOUR_NEGATIVE"_s);
    const ELF_SYM_HANDLE Enumerator = ELFAPI_GetMember(Negative.Class, static_cast<U32>(Negative.Member));
    EXPECT_EQ(ELFAPI_GetConstValue(Enumerator).toHex(), "fdffffff");
    EXPECT_TRUE(ELFAPI_GetTag(Enumerator) == ELF_TAG_ENUMERATOR && ELFAPI_GetTag(0) == ELF_TAG_INVALID);
    EXPECT_TRUE(ELFAPI_IsStatic(Local("apply", "calls")) && !ELFAPI_IsStatic(Local("apply", "a")));
    EXPECT_TRUE(ELFAPI_IsVariable(Local("apply", "a")) && !ELFAPI_IsVariable(Global("apply")));
    EXPECT_EQ(ELFAPI_GetRttBlock(), 0u);
  }
  ASSERT_EQ(ELFAPI_Load(QStringLiteral(VEXOR_SOURCE_DIR "/tests/elf/data/gcc_dwarf5_O2.elf")), 0);
  EXPECT_EQ(ELFAPI_GetTag(ELFAPI_GetRttBlock()), ELF_TAG_VARIABLE);
}

// One unit has the objects and only declares their classes, whose virtual functions stand in others.
TEST_F(TypesTest, ClassesOfOtherUnits) {
  LoadCorpus(u"../../../examples/weather_station/weather_station"_s);
  // object, size, bases, a member
  const std::tuple<const char*, U32, const char16_t*, const char*> aCases[] = {
      {"thermometer", 16, u"Sensor", "last_"},
      {"hygrometer", 20, u"Sensor", "thermometer_"},
      {"barometer", 24, u"Sensor, Calibrated", "noise_"},
  };
  for (const auto& [sName, Size, sBases, sMember] : aCases) {
    SCOPED_TRACE(sName);
    const ELF_SYM_HANDLE Object = Global(sName);
    EXPECT_EQ(ELFAPI_GetSize(Object), Size);
    EXPECT_EQ(ELFAPI_GetBaseNames(Object), QString::fromUtf16(sBases));
    EXPECT_GE(ELFAPI_FindMember(Object, QLatin1String(sMember)).Member, 0);
  }
}

TEST_F(TypesTest, EnumeratorsWithTheirScopes) {
  LoadCorpus(u"../../database/data/scopes"_s);
  const std::pair<const char*, const char*> aCases[] = {
      {"Idle", "Idle"}, {"Plant::Idle", "Idle"}, {"::Plant::Idle", "Idle"},    {"Plant::Mode::Idle", "Idle"},
      {"::Idle", ""},   {"Plant::Off", ""},      {"Plant::Alarm::Off", "Off"},
  };
  for (const auto& [sName, sFound] : aCases)
    EXPECT_EQ(ELFAPI_GetName(ELFAPI_FindEnumerator(QLatin1String(sName))).toStdString(), sFound) << sName;
}

TEST_F(TypesTest, PlacesOfVariables) {
  for (const QString& sFile : CORPUS_FILES) {
    SCOPED_TRACE(sFile.toStdString());
    LoadCorpus(sFile);
    const ELF_SYM_HANDLE Nodes = Global("nodes");
    const ELF_SYM_LOC Loc = ELFAPI_GetLocation(Nodes, 0);
    EXPECT_EQ(Loc.Type, U32(ELF_LOC_MEM));
    PARSED_LOC_KIND Kind;
    EXPECT_EQ(ELFAPI_ParseLocation(u"nodes"_s, Kind), (CAddrRange{Loc.Addr, 48}));
    EXPECT_EQ(Kind, PARSED_LOC_SYMBOL);
    EXPECT_TRUE(ELFAPI_FindSymbolAt(Loc.Addr) == Nodes && ELFAPI_IsLocValid(Loc));
    const ELF_SYM_HANDLE First = Local("walk", "first");
    EXPECT_EQ(ELFAPI_GetAddr(First), INVALID_ADDR);
    const U32 PC = ELFAPI_GetAddr(Global("walk")) + 8;
    EXPECT_TRUE(ELFAPI_IsLocValid(ELFAPI_GetLocation(First, PC)));
    EXPECT_EQ(ELFAPI_GetFrameBase(First, PC), ELFAPI_GetFrameBase(Global("walk"), PC));
    EXPECT_TRUE(ELFAPI_IsLocValid(ELFAPI_GetFrameBase(First, PC)));
    EXPECT_EQ(ELFAPI_GetCfiRegs(PC, 16).size(), 16);
    EXPECT_EQ(ELFAPI_GetCfa(PC), ELFAPI_GetCfiRegs(PC, 16).at(13));
    EXPECT_GT(ELFAPI_GetFrameSize(PC), 0);
    EXPECT_TRUE(ELFAPI_GetCfiBlock(PC).Contains(PC));
  }
}

TEST_F(TypesTest, LocationsWithoutAValue) {
  ELF_SYM_LOC Loc;
  const auto IsValid = [&Loc](U32 Type, U32 Reg, U32 BaseType) {
    Loc.Type = Type;
    Loc.Reg = Reg;
    Loc.BaseType = BaseType;
    return ELFAPI_IsLocValid(Loc);
  };
  EXPECT_TRUE(IsValid(ELF_LOC_REG, 4, 0) && IsValid(ELF_LOC_CONST, 0, 0) && IsValid(ELF_LOC_REG_OFFSET, 13, 0));
  EXPECT_TRUE(IsValid(ELF_LOC_ENTRY_VALUE, 0, ELF_LOC_REG) && IsValid(ELF_LOC_STACK_VALUE, 0, ELF_LOC_CONST));
  EXPECT_FALSE(IsValid(ELF_LOC_NONE, 0, 0) || IsValid(17, 0, 0) || IsValid(ELF_LOC_REG, ELF_REG_UNSPECIFIED, 0));
  EXPECT_FALSE(IsValid(ELF_LOC_REG_INDIRECT, 0, 0) || IsValid(ELF_LOC_ENTRY_VALUE, 0, 0));
}

TEST_F(TypesTest, TheImageIsThatOfTheSegments) {
  const CMemBlock Block = ELFAPI_GetDataSegments().value(0);
  EXPECT_EQ(ELFAPI_ReadImage(Block.VirtAddr + 8, Block.VirtAddr + 24), Block.Data.mid(8, 16));
  EXPECT_TRUE(ELFAPI_ReadImage(Block.VirtAddr, Block.VirtAddr + Block.NumBytes + 1).isEmpty());
}

TEST_F(TypesTest, NothingIsKnownWithoutAProgram) {
  const ELF_SYM_HANDLE Sym = Global("Level");
  const U32 PC = AddrOf("main");
  EXPECT_TRUE(ELFAPI_IsLocValid(ELFAPI_GetLocation(Sym, 0)) && ELFAPI_GetCfa(PC).Type != ELF_LOC_NONE);
  ELFAPI_Unload();
  ELF_ARRAY_INFO Info;
  EXPECT_TRUE(ELFAPI_GetType(Sym) == 0 && ELFAPI_GetMembers(Sym).isEmpty() && !ELFAPI_GetArrayInfo(Sym, Info));
  EXPECT_FALSE(ELFAPI_IsLocValid(ELFAPI_GetLocation(Sym, 0)) || ELFAPI_GetCfa(PC).Type != ELF_LOC_NONE);
  EXPECT_TRUE(ELFAPI_GetFrameSize(PC) == -1 && ELFAPI_ReadImage(PC, PC + 2).isEmpty());
}

}  // namespace
