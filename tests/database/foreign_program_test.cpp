// A program as other compilers describe theirs: source paths of another system, forms beside the values, frames in
// words.

#include "demo_program.h"

#include "program/database/elfapi_types.h"

namespace {

constexpr U32 START = 0x8000, SCALED = 0x800C, FACTOR = 0x8010;

class ForeignProgramTest : public DemoProgramTest {
protected:
  void SetUp() override {
    DemoProgramTest::SetUp();
    ASSERT_EQ(ELFAPI_Load(DEMO_DIR + u"foreign.elf"_s), 0);
  }
};

TEST_F(ForeignProgramTest, PathsWithDrivesAndBackslashes) {
  QStringList Paths;
  for (const U32 File : ELFAPI_GetFileIds()) Paths.append(ELFAPI_GetFilePathOf(File));
  EXPECT_EQ(Paths, (QStringList{u"C:\\Work\\src\\a.c"_s, u"C:\\Work/inc\\b.h"_s}));
  const std::pair<const char*, U32> aCases[] = {
      {"a.c:3", START},
      {"A.C:3", START},
      {"C:\\Work\\src\\a.c:3", START},
      {"c:\\work\\SRC\\a.c: 3", START},
      {"C:/Work/src/a.c:3", START},
      {"c:/WORK/src/A.C:3:1", START},
      {"src\\a.c:3", START},
      {"b.h:7", SCALED},
      {"inc/B.h:7", SCALED},
      {"C:\\Work\\inc\\b.h:7", SCALED},
      {"D:\\Work\\src\\a.c:3", 0},
      {"rc\\a.c:3", 0},
      {"C:3", 0},
  };
  for (const auto& [sText, Addr] : aCases) {
    PARSED_LOC_KIND Kind;
    EXPECT_EQ(ELFAPI_ParseLocation(QLatin1String(sText), Kind).Start, Addr) << sText;
    EXPECT_EQ(Kind, Addr ? PARSED_LOC_SRC : PARSED_LOC_NONE) << sText;
  }
  EXPECT_EQ(LocTextAt(START + 4), "a.c:4");
  EXPECT_EQ(LocText(ELFAPI_GetDeclLoc(Global("Level"))), "a.c:1");
}

TEST_F(ForeignProgramTest, CodeOfBothInstructionSetsAndData) {
  const std::tuple<U32, QString, int> aCases[] = {
      // address, mapping, class
      {START, u"$ARM"_s, 0},   {START + 8, u"$ARM"_s, 0},   {SCALED, u"$Thumb"_s, 0},
      {FACTOR, u"$Data"_s, 1}, {0x20000000, u"$Data"_s, 1},
  };
  for (const auto& [Addr, sMapping, Class] : aCases) {
    EXPECT_EQ(ELFAPI_GetMappingName(Addr, false), sMapping) << std::hex << Addr;
    EXPECT_EQ(ELFAPI_ClassifyAddr(Addr), Class) << std::hex << Addr;
  }
  EXPECT_EQ(ELFAPI_GetAddrRange(Global("Scaled")), (CAddrRange{SCALED, FACTOR - SCALED}));
  EXPECT_EQ(ELFAPI_GetAddrRange(Global("Start")), (CAddrRange{START, SCALED - START}));
  EXPECT_EQ(ELFAPI_GetTypeName(Global("Level")), u"int");
}

TEST_F(ForeignProgramTest, FramesAreCountedInWords) {
  const ELF_SYM_LOC Sp = ELFAPI_GetCfiRegs(START + 4, 16).at(13);
  EXPECT_TRUE(Sp.Type == ELF_LOC_REG_OFFSET && Sp.Reg == 13);
  EXPECT_EQ(Sp.Offset, 8);
}

}  // namespace
