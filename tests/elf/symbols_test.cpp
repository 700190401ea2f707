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
  // address, the function that holds it, the nearest function below
  const std::tuple<U32, const char*, const char*> aCases[] = {
      {0x7FFE, "", ""},
      {0x8000, "Accumulate", "Accumulate"},
      {0x803F, "Accumulate", "Accumulate"},
      {0x8040, "main", "main"},
      {0x80BA, "SharedLonger", "SharedLonger"},
      {0x80CA, "", "LastOfSection"},
      {0x20000008, "", "LastOfSection"},
      {0x20000014, "InRam", "InRam"},
  };
  for (const auto& [Addr, sExact, sNearest] : aCases) {
    EXPECT_EQ(NameOfIndex(ELF_FindFuncSymbol(pFile, Addr, true)), sExact) << std::hex << Addr;
    EXPECT_EQ(NameOfIndex(ELF_FindFuncSymbol(pFile, Addr, false)), sNearest) << std::hex << Addr;
  }
  EXPECT_EQ(NameOfIndex(ELF_FindSymbolAt(pFile, 0x20000010, -1)), "EndObject");
  EXPECT_EQ(NameOfIndex(ELF_FindSymbolAt(pFile, 0x8000, ELF_SYMBOL_NOTYPE)), "$t");
  EXPECT_EQ(NameOfIndex(ELF_FindSymbolAt(pFile, 0x80B8, ELF_SYMBOL_FUNC)), "Shared") << "although its value is odd";
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
  pData = ELF_ReadImage(pFile, 0x8040, 0x8044);
  ELF_AddRelocation("main", 0x1000);
  EXPECT_EQ(ELF_ReadImage(pFile, 0x9040, 0x9044), pData);
  EXPECT_EQ(ELF_ReadImage(pFile, 0x8040, 0x8044), nullptr) << "moved away";
  EXPECT_EQ(ELF_ReadImage(pFile, 0x9074, 0x907C), nullptr) << "what follows did not move";
  EXPECT_EQ(ELF_ReadImage(pFile, 0x803C, 0x8080), nullptr) << "the middle moved away";
}

TEST_F(ElfSymbols, ExtentIsThatOfThePlaces) {
  Open("plain.elf");
  EXPECT_EQ(ELF_GetSymbolExtent(pFile).Lowest, 0x8000u) << "not that of the null entry";
  EXPECT_EQ(ELF_GetSymbolExtent(pFile).NumSymbols, ELF_GetNumSymbols(pFile));
  const U32 Highest = ELF_GetSymbolExtent(pFile).Highest;
  ELF_AddRelocation("*", 0x1000);
  EXPECT_EQ(ELF_GetSymbolExtent(pFile).Lowest, 0x9000u);
  EXPECT_EQ(ELF_GetSymbolExtent(pFile).Highest, Highest + 0x1000);
}

// Addresses going out are those of the copy, addresses coming in are found in the file.
TEST_F(ElfSymbols, RelocatedSymbols) {
  // what moves by 0x1000; what 0x8042, in main, and 0x20000004 become
  const std::tuple<const char*, U32, U32> aCases[] = {
      {"*", 0x9042, 0x20001004},
      {"0x8000-0x9000", 0x9042, 0x20000004},
      {".data", 0x8042, 0x20001004},
      {"main", 0x9042, 0x20000004},
      {"Accumulate", 0x8042, 0x20000004},
      {"32768 - 32834", 0x8042, 0x20000004},
      {"0x8042-0x8043", 0x9042, 0x20000004},
  };
  for (const auto& [sMoved, InText, InData] : aCases) {
    Open("plain.elf");
    ASSERT_EQ(ELF_AddRelocation(sMoved, 0x1000), 0) << sMoved;
    EXPECT_EQ(ELF_RelocToFile(0x8042, 1, 0), InText) << sMoved;
    EXPECT_EQ(ELF_RelocToFile(0x20000004, 1, 0), InData) << sMoved;
    EXPECT_EQ(ELF_RelocFromFile(InText, 1, 0), 0x8042u) << sMoved;
  }
  for (const char* sRefused : {"", "0-0", "NoSuchSymbol"}) EXPECT_EQ(ELF_AddRelocation(sRefused, 4), -1) << sRefused;
  Open("plain.elf");
  ELF_AddRelocation("main", 0x100);
  EXPECT_EQ(NameOfIndex(ELF_FindFuncSymbol(pFile, 0x8150, true)), "main") << "found at its target address";
  EXPECT_EQ(ELF_RelocToFile(0x8078, 0, 1), 0x8178u) << "the end of a range belongs to it";
  EXPECT_EQ(ELF_RelocToFile(0x8078, 1, 0), 0x8078u);
}

// The Thumb bit makes starts and ends odd.
TEST_F(ElfSymbols, RangesOfRelocatedThumbCode) {
  // file, what moves by 0x100000, function, its range; by symbol where there is no entry
  const std::tuple<const char*, const char*, const char*, U32, U32> aCases[] = {
      {"plain.elf", "main", "main", 0x108041, 0x108079},
      {"plain.elf", "main", "Accumulate", 0x8001, 0x8041},
      {"plain.elf", ".text", "LastOfSection", 0x1080BD, 0x1080CB},
      {"plain.elf", ".text", "$t", 0x108000, 0x108000},
      {"plain.elf", ".data", "Elsewhere", 0x20100000, 0x20100004},
      {"plain.elf", "0x20000000-0x20000010", "EndObject", 0x20000010, 0x20000014},
      {"../../database/data/low.elf", "ResetHandler", "ResetHandler", 0x100009, 0x100013},
      {"../../database/data/low.elf", "0x12-0x100", "ResetHandler", 9, 0x13},
  };
  for (const auto& [sFile, sMoved, sName, Low, High] : aCases) {
    Open(sFile);
    ASSERT_EQ(ELF_AddRelocation(sMoved, 0x100000), 0);
    ELF_SYM_HANDLE hSym = Function(sName);
    if (!hSym) hSym = Find(ELF_GetNumSymbols, ELF_GetSymbolHandle, sName);
    EXPECT_EQ(ELF_GetRangeLow(hSym, 0), Low) << sMoved << " " << sName;
    EXPECT_EQ(ELF_GetRangeHigh(hSym, 0), High) << sMoved << " " << sName;
  }
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
