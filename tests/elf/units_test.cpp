#include "elf_builder.h"
#include "elf_fixture.h"
#include "program/elf/elf_types.h"
#include "program/elf/reader_state.h"

// Units made by hand: what no compiler at hand emits, and what is damaged.
class ElfUnits : public CElfTest {
protected:
  static ELF_SYM_HANDLE EntryOf(U32 Number) {
    return static_cast<U64>(ELF_HANDLE_MAGIC) << 32 | static_cast<U64>(ELF_HANDLE_DWARF) << 29 | Number;
  }
  static U32 NumEntries() {
    U32 Count = 0;
    while (ELF_GetHandleKind(EntryOf(Count + 1)) == ELF_HANDLE_DWARF) ++Count;
    return Count;
  }
};

namespace {

template <typename T>
std::string Hex(T Value) {
  char acText[17];
  std::string sText;
  U8 aBytes[sizeof(T)];
  StoreInt<T>(aBytes, Value, false);
  for (const U8 Byte : aBytes) {
    std::snprintf(acText, sizeof(acText), "%02x", Byte);
    sText += acText;
  }
  return sText;
}

// A compilation unit with its header in front.
std::string Unit(U16 Version, bool b64, const std::string& sBody) {
  const std::string sOffset = b64 ? "0000000000000000" : "00000000";
  const std::string sAfterLength = Hex(Version) + (Version >= 5 ? "01 04" + sOffset : sOffset + "04") + sBody;
  const U32 Length = static_cast<U32>(HexBytes(sAfterLength).size());
  return (b64 ? "ffffffff" + Hex<U64>(Length) : Hex(Length)) + sAfterLength;
}

// What the entry answers about its attribute, in one text.
std::string Answer(ELF_SYM_HANDLE hSym, U32 Attr) {
  if (Attr == ELF_ATTR_NAME) {
    const char* sName = ELF_GetName(hSym);
    return sName ? sName : "none";
  }
  if (Attr == ELF_ATTR_TYPE) {
    const ELF_SYM_HANDLE hType = ELF_GetAttrDie(hSym, Attr);
    return hType ? "entry " + std::to_string(hType & 0x3FFFFFF) : "none";
  }
  I64 Value = 0;
  if (ELF_GetAttrValue(hSym, Attr, &Value) == 0) return std::to_string(Value);
  U8 aBytes[32];
  const U32 NumBytes = ELF_GetConstValue(hSym, aBytes, sizeof(aBytes));
  std::string sText;
  for (U32 i = 0; i < NumBytes; ++i) sText += Hex(aBytes[i]);
  return sText.empty() ? "none" : "bytes " + sText;
}

constexpr U32 NAME = ELF_ATTR_NAME, NUMBER = ELF_ATTR_CONST_VALUE, TYPE = ELF_ATTR_TYPE;
struct FORM_CASE {
  U16 Version;
  bool b64;
  U32 Attr;
  const char* sForm;  // as it stands in the abbreviation
  const char* sValue;
  const char* sAnswer;
};
constexpr FORM_CASE FORM_CASES[] = {
    {2, false, NUMBER, "0b", "ff", "255"},
    {3, false, NUMBER, "05", "ffff", "65535"},
    {4, false, NUMBER, "06", "01000080", "2147483649"},
    {5, false, NUMBER, "07", "ffffffffffffffff", "-1"},
    {5, false, NUMBER, "0f", "8001", "128"},
    {5, false, NUMBER, "0d", "807f", "-128"},
    {5, false, NUMBER, "21 7e", "", "-2"},
    {5, false, NUMBER, "16", "0b 2a", "42"},
    {5, false, NUMBER, "16", "81 3e 01", "8192"},
    {4, false, NUMBER, "0c", "07", "1"},
    {4, false, NUMBER, "19", "", "1"},
    {4, false, NUMBER, "17", "78563412", "305419896"},
    {4, true, NUMBER, "17", "7856341200000000", "305419896"},
    {4, false, NUMBER, "01", "00100000", "4096"},
    {5, false, NUMBER, "1b", "00", "4096"},
    {5, false, NUMBER, "29", "01", "8192"},
    {5, false, NUMBER, "2a", "0100", "8192"},
    {5, false, NUMBER, "2b", "010000", "8192"},
    {5, false, NUMBER, "2c", "01000000", "8192"},
    {4, false, NUMBER, "81 3e", "00", "4096"},
    {5, false, NUMBER, "1b", "09", "none"},
    {4, false, NUMBER, "0a", "02 0102", "bytes 0102"},
    {4, false, NUMBER, "03", "0200 0102", "bytes 0102"},
    {4, false, NUMBER, "04", "02000000 0102", "bytes 0102"},
    {4, false, NUMBER, "09", "02 0102", "bytes 0102"},
    {4, false, NUMBER, "18", "01 30", "bytes 30"},
    {5, false, NUMBER, "1e", "000102030405060708090a0b0c0d0e0f", "bytes 000102030405060708090a0b0c0d0e0f"},
    {5, false, NUMBER, "22", "03", "none"},
    {5, false, NUMBER, "23", "03", "none"},
    {2, false, NAME, "08", "6f6e6500", "one"},
    {2, false, NAME, "0e", "05000000", "one"},
    {3, true, NAME, "0e", "0500000000000000", "one"},
    {5, false, NAME, "1f", "00000000", "line"},
    {5, false, NAME, "1a", "02", "two"},
    {5, false, NAME, "25", "01", "one"},
    {5, false, NAME, "26", "0100", "one"},
    {5, false, NAME, "27", "010000", "one"},
    {5, false, NAME, "28", "01000000", "one"},
    {4, false, NAME, "82 3e", "02", "two"},
    {5, false, NAME, "1a", "ffffffffffffffffff01", "none"},
    {5, false, NAME, "0e", "ffff0000", "none"},
    {5, false, NAME, "1d", "00000000", "none"},
    {5, false, NAME, "a1 3e", "00000000", "none"},
    {4, false, TYPE, "11", "0b", "entry 1"},
    {4, false, TYPE, "12", "0b00", "entry 1"},
    {4, false, TYPE, "13", "0b000000", "entry 1"},
    {4, false, TYPE, "14", "0b00000000000000", "entry 1"},
    {4, false, TYPE, "15", "0b", "entry 1"},
    {4, false, TYPE, "10", "0b000000", "entry 1"},
    {2, true, TYPE, "10", "17000000", "entry 1"},
    {3, true, TYPE, "10", "1700000000000000", "entry 1"},
    {4, false, TYPE, "13", "0a000000", "none"},
    {4, false, TYPE, "14", "0b000000000000ff", "none"},
    {4, false, TYPE, "20", "0102030405060708", "none"},
    {5, false, TYPE, "1c", "00000000", "none"},
    {5, false, TYPE, "24", "0000000000000000", "none"},
    {5, false, TYPE, "a0 3e", "00000000", "none"},
};

}  // namespace

// One value of each form, with a byte size of 0x5A behind it that is only found if the form's length is right.
TEST_F(ElfUnits, EveryForm) {
  for (const FORM_CASE& Case : FORM_CASES) {
    SCOPED_TRACE(std::string(Case.sForm) + ": " + Case.sValue + " in version " + std::to_string(Case.Version));
    const std::string sAbbrevs =
        "01 11 01 72 06 73 06 0000  02 34 00" + Hex(static_cast<U8>(Case.Attr)) + Case.sForm + "0b 0b 0000 00";
    OpenBytes(CElfBuilder()
                  .Add(".debug_abbrev", sAbbrevs)
                  .Add(".debug_info",
                       Unit(Case.Version, Case.b64, "01 08000000 08000000  02" + std::string(Case.sValue) + "5a  00"))
                  .Add(".debug_str", "7a65726f00 6f6e6500 74776f00")
                  .Add(".debug_line_str", "6c696e6500")
                  .Add(".debug_str_offsets", "0000000000000000 00000000 05000000 09000000")
                  .Add(".debug_addr", "0000000000000000 00100000 00200000")
                  .Bytes());
    ASSERT_EQ(NumEntries(), 2u);
    EXPECT_EQ(Answer(EntryOf(2), Case.Attr), Case.sAnswer);
    EXPECT_EQ(ELF_GetSize(EntryOf(2)), 0x5Au);
    const bool bMessage = std::string(Case.sAnswer) == "none" && Case.Attr == NAME;
    EXPECT_TRUE(!bMessage || testing::Value(aMessages, testing::Contains(testing::StartsWith("libdwarf: "))));
  }
}

// What is wrong with a unit is said, with the item's name and value; entries and units in front of it stay, and units
// behind it where its end is known.
TEST_F(ElfUnits, DamagedUnits) {
  const std::string sGood = Unit(4, false, "01 0205 0206 00");
  const std::string sUnitText = "Could not parse debug info for compilation unit.";
  const std::string sDeep = [] {
    std::string sText;
    for (int i = 0; i < 1100; ++i) sText += "01";
    return sText;
  }();
  const std::tuple<std::string, std::string, U32> aCases[] = {
      // units, what is said, entries found
      {sGood, "", 3},
      {Unit(4, false, "01 0205"), "", 2},
      {"f5ffffff 0400 00000000 04 01" + sGood, "libdwarf: unit length is damaged in func ReadUnitHeader (offset, 0x0)",
       0},
      {sGood + "ff000000 0400 00000000 04 01",
       "libdwarf: unit reaches beyond its section in func ReadUnitHeader (offset, 0x11)", 3},
      {"03000000 0400 00" + sGood, "libdwarf: unit header is cut off in func ReadUnitHeader (offset, 0x0)", 3},
      {Unit(6, false, "01 00") + sGood, "libdwarf: unit version not supported in func ReadUnitHeader (version, 0x6)",
       3},
      {"08000000 0400 00000000 03 01" + sGood,
       "libdwarf: address size not supported in func ReadUnitHeader (address_size, 0x3)", 3},
      {"08000000 0400 99000000 04 01" + sGood,
       "libdwarf: unit has no abbreviations in func ReadUnitHeader (abbrev_offset, 0x99)", 3},
      {"09000000 0500 09 04 00000000 01" + sGood, "libdwarf: unknown unit type in func ReadUnitHeader (unit_type, 0x9)",
       3},
      {"15000000 0500 02 04 00000000 0102030405060708 40000000 01" + sGood,
       "libdwarf: type outside its unit in func ReadUnitHeader (type_offset, 0x40)", 3},
      {Unit(4, false, "01 0205 09") + sGood,
       "libdwarf: abbreviation is missing in func CDieWalk::WalkUnit (offset, 0xE)", 5},
      {Unit(4, false, "01 02") + sGood, "libdwarf: entry is cut off in func CDieWalk::WalkUnit (offset, 0xC)", 4},
      {Unit(4, false, "01 0312") + sGood,
       "libdwarf: abbreviation has an unknown form in func CDieWalk::WalkUnit (offset, 0xC)", 4},
      {Unit(4, false, "01 041616 0b01") + sGood, "libdwarf: entry is cut off in func CDieWalk::WalkUnit (offset, 0xC)",
       4},
      {Unit(4, false, sDeep) + sGood,
       "libdwarf: entries are nested too deep in func CDieWalk::WalkUnit (offset, 0x3F3)", 1004},
  };
  for (const auto& [sUnits, sMessage, Count] : aCases) {
    SCOPED_TRACE(sMessage);
    const char* sAbbrevs = "01 11 01 0000  02 34 00 0b 0b 0000  03 34 00 0b 7f 0000  04 34 00 1c 16 0000 00";
    ASSERT_NE(OpenBytes(CElfBuilder().Add(".debug_abbrev", sAbbrevs).Add(".debug_info", sUnits).Bytes()), nullptr);
    EXPECT_EQ(NumEntries(), Count);
    EXPECT_EQ(aMessages[0].starts_with("libdwarf: ") ? aMessages[0] : "", sMessage);
    const bool bInEntries = sMessage.find("WalkUnit") != std::string::npos;
    EXPECT_EQ(testing::Value(aMessages, testing::Contains(sUnitText)), bInEntries);
  }
}

// Zeros, as a copy leaves them that was broken off, are damage without end: a console has no room for all of it.
TEST_F(ElfUnits, MessagesAboutMuchDamageEnd) {
  ASSERT_NE(OpenBytes(CElfBuilder().Add(".debug_abbrev", "00").Add(".debug_info", std::vector<U8>(4000)).Bytes()),
            nullptr);
  EXPECT_EQ(aMessages[199], "libdwarf: unit header is cut off in func ReadUnitHeader (offset, 0x31C)");
  EXPECT_EQ(aMessages[200], "debug info has more errors, which are not listed.");
  EXPECT_FALSE(aMessages[201].starts_with("libdwarf"));
}

// Many functions that name one long list: where all lists together are longer than the section, each keeps its share.
TEST_F(ElfUnits, RangeListsOverEachOther) {
  std::string sList, sFunctions;
  for (U32 i = 1; i <= 100; ++i) sList += Hex(16 * i) + Hex(16 * i + 8);
  for (const auto& [NumFunctions, NumRanges] : {std::pair(3u, 100u), std::pair(40u, 12u)}) {
    while (sFunctions.size() < 10 * NumFunctions) sFunctions += "0200000000";
    OpenBytes(CElfBuilder()
                  .Add(".debug_abbrev", "01 11 01 0000  02 2e 00 55 17 0000 00")
                  .Add(".debug_info", Unit(4, false, "01" + sFunctions + "00"))
                  .Add(".debug_ranges", sList + "0000000000000000")
                  .Bytes());
    EXPECT_EQ(ELF_GetNumRanges(EntryOf(1 + NumFunctions)), NumRanges);
    EXPECT_EQ(ELF_GetRangeLow(EntryOf(2), 0), 16u);
  }
}

// Version 5 counts the directory of compilation among the others, and assemblers name it twice.
TEST_F(ElfUnits, ARelativeCompilationDirectoryIsJoinedOnce) {
  const std::string sHeader =
      "02 01 01 fd 0c 01  01 0108 03 73726300 73726300 696e6300  02 0108 020b 03 612e6300 00 622e6300 01 632e6800 02";
  const U32 Length = static_cast<U32>(HexBytes(sHeader).size());
  OpenBytes(CElfBuilder()
                .Add(".debug_abbrev", "01 11 00 1b 08 10 17 0000 00")
                .Add(".debug_info", Unit(5, false, "01 73726300 00000000"))
                .Add(".debug_line", Hex(Length + 8) + "0500 04 00" + Hex(Length) + sHeader)
                .Bytes());
  std::string sFiles;
  for (U32 i = 0; i < ELF_GetNumSrcFiles(pFile); ++i) sFiles += std::string(ELF_GetSrcFile(pFile, i)) + " ";
  EXPECT_EQ(sFiles, "src/a.c src/b.c src/inc/c.h ");
}

// Codes need not count from 1, nor ascend; of two abbreviations with one code the first counts.
TEST_F(ElfUnits, SparseAbbreviations) {
  OpenBytes(CElfBuilder()
                .Add(".debug_abbrev", "ff01 34 00 0b 0b 0000  07 11 01 0000  ff01 34 00 0b 05 0000  00")
                .Add(".debug_info", Unit(4, false, "07 ff01 21 ff01 22 00"))
                .Bytes());
  ASSERT_EQ(NumEntries(), 3u);
  EXPECT_EQ(ELF_GetSize(EntryOf(2)), 0x21u);
  EXPECT_EQ(ELF_GetSize(EntryOf(3)), 0x22u);
}

// A handle has room for a number of 26 bits. A file with more entries has its symbols and says so.
TEST_F(ElfUnits, MoreEntriesThanNumbers) {
  const U32 MaxEntries = ReaderState().MaxEntries;
  EXPECT_EQ(MaxEntries, (1u << 26) - 1);
  Open("gcc_dwarf5_O2.elf");
  const U32 Count = NumEntries();
  ReaderState().MaxEntries = Count - 1;
  Open("gcc_dwarf5_O2.elf");
  EXPECT_THAT(aMessages, testing::ElementsAre("debug info has more than " + std::to_string(Count - 1) +
                                                  " entries, which is more than can be numbered.",
                                              "debug info could not be parsed."));
  EXPECT_EQ(NumEntries(), 0u);
  EXPECT_EQ(ELF_GetNumFunctions(pFile) + ELF_GetNumSrcLines(pFile) + ELF_GetNumFdes(pFile), 0u);
  EXPECT_GE(ELF_FindFuncSymbol(pFile, ELF_GetEntryPoint(pFile), true), 0);
  ReaderState().MaxEntries = Count;
  Open("gcc_dwarf5_O2.elf");
  EXPECT_EQ(NumEntries(), Count);
  ReaderState().MaxEntries = MaxEntries;
}

// A compressed section whose header or stream is wrong is left out, with its name; no size in it is believed.
TEST_F(ElfUnits, DamagedCompressedSections) {
  struct CHANGE {
    const char* sFile;
    const char* sSection;
    U32 Offset;  // in the section
    char Value;
    bool bRefused;
  };
  const CHANGE aChanges[] = {
      {"gcc_v5_O2_zlib.elf", ".debug_info", 0, 1, false},        // the method it has
      {"gcc_v5_O2_zlib.elf", ".debug_info", 0, 2, true},         // another one
      {"gcc_v5_O2_zlib.elf", ".debug_info", 4, 0, true},         // size: other than what the stream gives
      {"gcc_v5_O2_zlib.elf", ".debug_info", 7, 0x7F, true},      // more than the stream can give
      {"gcc_v5_O2_zlib.elf", ".debug_info", 12, 0, true},        // stream
      {"gcc_v4_O2_zdebug.elf", ".zdebug_info", 0, 'Y', true},    // magic number
      {"gcc_v4_O2_zdebug.elf", ".zdebug_info", 4, 0x7F, true},   // size
      {"gcc_v4_O2_zdebug.elf", ".zdebug_info", 100, 'x', true},  // stream
  };
  for (const CHANGE& Change : aChanges) {
    SCOPED_TRACE(std::string(Change.sSection) + " " + std::to_string(Change.Offset));
    const std::string sPath = std::string("../../corpus/data/") + Change.sFile;
    Open(sPath);
    ASSERT_GT(NumEntries(), 100u);
    const I32 Section = ELF_FindSection(pFile, Change.sSection);
    EXPECT_EQ(ELF_GetSectionIndex(EntryOf(1)), Section);
    std::vector<char> aBytes = BytesOf(sPath);
    aBytes[ELF_GetSectionFileOffset(pFile, static_cast<U32>(Section)) + Change.Offset] = Change.Value;
    ASSERT_NE(OpenBytes(aBytes), nullptr);
    EXPECT_EQ(NumEntries() == 0, Change.bRefused);
    const std::string sMessage = std::string("section ") + Change.sSection + " is damaged and was left out.";
    EXPECT_EQ(testing::Value(aMessages, testing::Contains(sMessage)), Change.bRefused);
  }
}
