#include "elf_fixture.h"

using ElfSymbols = CElfTest;

// The addresses are those of plain.elf: sizes.S stands at 0x80B4 in .text, which ends at 0x80CA.
TEST_F(ElfSymbols, MissingSizesComeFromTheNeighbours) {
  Open("plain.elf");
  const std::map<std::string, U32> Expected = {
      {"NoSize", 4}, {"LastOfSection", 14}, {"NoSizeObject", 12}, {"main", 56}};
  std::map<std::string, U32> Found;
  for (U32 i = 0; i < ELF_GetNumSymbols(pFile); ++i) {
    const ELF_SYM_HANDLE hSym = ELF_GetSymbolHandle(pFile, i);
    if (Expected.count(NameOf(hSym))) Found[NameOf(hSym)] = ELF_GetSize(hSym);
  }
  EXPECT_EQ(Found, Expected);
}

TEST_F(ElfSymbols, FunctionListHasOneNamedFunctionForEachAddress) {
  Open("plain.elf");
  std::vector<std::string> aNames;
  for (U32 i = 0; i < ELF_GetNumFuncSymbols(pFile); ++i) aNames.push_back(NameOf(ELF_GetFuncSymbol(pFile, i)));
  EXPECT_EQ(aNames, (std::vector<std::string>{"Accumulate", "main", "UsesInline", "Split", "NoSize", "SharedLonger",
                                              "LastOfSection", "InRam"}));
}

TEST_F(ElfSymbols, LookupByAddress) {
  Open("plain.elf");
  struct CASE {
    U32 Addr;
    const char* sExact;  // empty: none
    const char* sNearest;
  };
  constexpr CASE aCases[] = {
      {0x7FFE, "", ""},
      {0x8000, "Accumulate", "Accumulate"},
      {0x803F, "Accumulate", "Accumulate"},
      {0x8040, "main", "main"},
      {0x80BA, "SharedLonger", "SharedLonger"},
      {0x80CA, "", "LastOfSection"},
      {0x20000008, "", "LastOfSection"},
      {0x20000014, "InRam", "InRam"},
  };
  const auto Named = [this](I32 Index) {
    return Index < 0 ? std::string() : NameOf(ELF_GetSymbolHandle(pFile, static_cast<U32>(Index)));
  };
  for (const CASE& Case : aCases) {
    EXPECT_EQ(Named(ELF_FindFuncSymbol(pFile, Case.Addr, true)), Case.sExact) << std::hex << Case.Addr;
    EXPECT_EQ(Named(ELF_FindFuncSymbol(pFile, Case.Addr, false)), Case.sNearest) << std::hex << Case.Addr;
  }
  EXPECT_EQ(Named(ELF_FindSymbolAt(pFile, 0x20000010, -1)), "EndObject");
  EXPECT_EQ(Named(ELF_FindSymbolAt(pFile, 0x8000, ELF_SYMBOL_NOTYPE)), "$t");
  EXPECT_EQ(Named(ELF_FindSymbolAt(pFile, 0x80B8, ELF_SYMBOL_FUNC)), "Shared") << "although its value is odd";
  EXPECT_EQ(ELF_FindSymbolAt(pFile, 0x80B8, ELF_SYMBOL_OBJECT), -1);
  EXPECT_EQ(ELF_FindSymbolAt(pFile, 0x80BA, -1), -1);
}

TEST_F(ElfSymbols, ImageIsReadAtRunTimeAddresses) {
  Open("plain.elf");
  const U8* pData = ELF_ReadImage(pFile, 0x20000000, 0x20000004);
  ASSERT_NE(pData, nullptr);
  EXPECT_EQ(*pData, 7) << "the initial value of Elsewhere";
  EXPECT_EQ(ELF_ReadImage(pFile, 0x20000000, 0x20000021), nullptr) << "reaches into .bss";
  EXPECT_EQ(ELF_ReadImage(pFile, 0x7FFE, 0x8004), nullptr);
  EXPECT_EQ(ELF_ReadImage(pFile, 0x8004, 0x8000), nullptr);
  EXPECT_EQ(ELF_ReadImage(pFile, 0x8000, 0xFFFFFFFF), nullptr);
}

TEST_F(ElfSymbols, SectionsByNameAndPosition) {
  Open("plain.elf");
  const I32 Text = ELF_FindSection(pFile, ".text");
  ASSERT_GT(Text, 0);
  EXPECT_EQ(ELF_GetSectionAddr(pFile, static_cast<U32>(Text)), 0x8000u);
  EXPECT_STREQ(ELF_GetSectionName(pFile, static_cast<U32>(Text)), ".text");
  const U32 Bss = static_cast<U32>(ELF_FindSection(pFile, ".bss"));
  EXPECT_GT(ELF_GetSectionSize(pFile, Bss), 0u);
  EXPECT_EQ(ELF_GetSectionData(pFile, Bss), nullptr) << "no bytes in the file";
  EXPECT_EQ(ELF_GetSectionNumEntries(pFile, static_cast<U32>(ELF_FindSection(pFile, ".symtab"))),
            ELF_GetNumSymbols(pFile));
  EXPECT_EQ(ELF_FindSection(pFile, ".tex"), -1);
  EXPECT_STREQ(ELF_GetSectionName(pFile, 1000), "");
  ELF_RELOCATION Relocation;
  EXPECT_EQ(ELF_GetRelocation(pFile, static_cast<U32>(Text), 0, &Relocation), -1);
}

// Addresses going out are those of the copy, addresses coming in are found in the file.
TEST_F(ElfSymbols, RelocatedSymbols) {
  Open("plain.elf");
  struct CASE {
    const char* sText;
    U32 InText;  // what 0x8042, in main, becomes when this moves by 0x1000
    U32 InData;  // 0x20000004
  };
  constexpr CASE aCases[] = {
      {"*", 0x9042, 0x20001004},
      {"0x8000-0x9000", 0x9042, 0x20000004},
      {".data", 0x8042, 0x20001004},
      {"main", 0x9042, 0x20000004},
      {"Accumulate", 0x8042, 0x20000004},
      {"32768 - 32834", 0x8042, 0x20000004},
      {"0x8042-0x8043", 0x9042, 0x20000004},
  };
  for (const CASE& Case : aCases) {
    Open("plain.elf");
    ASSERT_EQ(ELF_AddRelocation(Case.sText, 0x1000), 0) << Case.sText;
    EXPECT_EQ(ELF_RelocToFile(0x8042, 1, 0), Case.InText) << Case.sText;
    EXPECT_EQ(ELF_RelocToFile(0x20000004, 1, 0), Case.InData) << Case.sText;
    EXPECT_EQ(ELF_RelocFromFile(Case.InText, 1, 0), 0x8042u) << Case.sText;
  }
  for (const char* sRefused : {"", "0-0", "NoSuchSymbol"}) EXPECT_EQ(ELF_AddRelocation(sRefused, 4), -1) << sRefused;
  Open("plain.elf");
  ELF_AddRelocation("main", 0x100);
  const I32 Main = ELF_FindFuncSymbol(pFile, 0x8150, true);
  ASSERT_GE(Main, 0) << "found at its target address";
  const ELF_SYM_HANDLE hMain = ELF_GetSymbolHandle(pFile, static_cast<U32>(Main));
  EXPECT_EQ(NameOf(hMain), "main");
  EXPECT_EQ(ELF_GetRangeLow(hMain, 0), 0x8141u);
  EXPECT_EQ(ELF_RelocToFile(0x8078, 0, 1), 0x8178u) << "the end of a range belongs to it";
  EXPECT_EQ(ELF_RelocToFile(0x8078, 1, 0), 0x8078u);
}

// A relocation may be given before the program is opened.
TEST_F(ElfSymbols, RelocationWaitsForTheFile) {
  Close();
  EXPECT_EQ(ELF_AddRelocation("main", 0x20), 0);
  EXPECT_EQ(ELF_RelocToFile(0x8040, 1, 0), 0x8040u);
  pFile = ELF_Open(DataPath("plain.elf").c_str());
  EXPECT_EQ(ELF_RelocToFile(0x8040, 1, 0), 0x8060u);
  Close();
  EXPECT_EQ(ELF_RelocToFile(0x8040, 1, 0), 0x8040u) << "closing drops it";
}
