#include "elf_builder.h"
#include "elf_fixture.h"
#include "hex_bytes.h"
#include "program/elf/line_program.h"

namespace {

void Append(std::vector<U8>& aBytes, U64 Value, U32 NumBytes, bool bBigEndian) {
  for (U32 i = 0; i < NumBytes; ++i)
    aBytes.push_back(static_cast<U8>(Value >> 8 * (bBigEndian ? NumBytes - 1 - i : i)));
}

// Instruction length 2, operations of an instruction from version 4 on, lines from -3 up to 8, opcodes up to 13.
std::string Registers(U32 Version) {
  return std::string(Version >= 4 ? "02 01" : "02") + "01 fd 0c 0d 00 01 01 01 01 00 00 00 01 00 00 01";
}

const char OLD_FILES[] = "696e6300 2f6100 00  612e6300 00 00 00  622e6800 01 05 8001  632e6800 02 00 00  00";

// A table with the lengths that its parts have.
struct TABLE {
  U32 Version;
  std::string sHeader;  // from the length of instructions on
  std::string sProgram;
  bool b64 = false;
  bool bBigEndian = false;

  std::vector<U8> Bytes() const {
    const std::vector<U8> aHeader = HexBytes(sHeader), aProgram = HexBytes(sProgram);
    const U32 OffsetSize = b64 ? 8 : 4, NumSizes = Version >= 5 ? 2 : 0;
    std::vector<U8> aBytes;
    if (b64) Append(aBytes, 0xFFFFFFFF, 4, bBigEndian);
    Append(aBytes, 2 + NumSizes + OffsetSize + aHeader.size() + aProgram.size(), OffsetSize, bBigEndian);
    Append(aBytes, Version, 2, bBigEndian);
    if (NumSizes) aBytes.insert(aBytes.end(), {4, 0});
    Append(aBytes, aHeader.size(), OffsetSize, bBigEndian);
    aBytes.insert(aBytes.end(), aHeader.begin(), aHeader.end());
    aBytes.insert(aBytes.end(), aProgram.begin(), aProgram.end());
    return aBytes;
  }
};

std::string DamageText(const DWARF_DAMAGE& Damage) {
  return std::string("!") + Damage.sItem + "=" + std::to_string(Damage.Value);
}

// "/ inc: a.c@0 b.h@1", directories and files by their numbers; the wrong item where the header is refused.
std::string HeaderText(const std::vector<U8>& aLine, bool bBigEndian = false) {
  static const char acStrings[] = "/src\0lib\0x.c\0y.h";
  const CByteCursor Strings(reinterpret_cast<const U8*>(acStrings), sizeof(acStrings), bBigEndian);
  LINE_HEADER Header;
  const DWARF_DAMAGE Damage = ReadLineHeader({CursorOver(aLine, bBigEndian), Strings, Strings}, 0, Header);
  if (Damage.sWhat) return DamageText(Damage);
  std::string sText;
  for (const char* sDir : Header.aDirs) sText += std::string(sDir) + " ";
  sText += ":" + std::to_string(Header.FirstFile);
  for (const LINE_FILE& File : Header.aFiles) {
    sText += std::string(" ") + (File.sName ? File.sName : "?") + "@" + std::to_string(File.Dir);
  }
  return sText;
}

// "8000 12/1:3 SP": address, line, file, column; S statement, P end of a prologue, E end of the sequence.
std::string RowsText(const TABLE& Table) {
  const std::vector<U8> aBytes = Table.Bytes();
  LINE_HEADER Header;
  const CByteCursor Line = CursorOver(aBytes, Table.bBigEndian);
  if (ReadLineHeader({Line, {}, {}}, 0, Header).sWhat) return "header";
  CLineProgram Program(Header);
  std::string sText;
  for (LINE_ROW Row; Program.Next(Row);) {
    char acText[80];
    std::snprintf(acText, sizeof(acText), "%llX %u/%llu:%llu%s%s%s, ", Row.Addr, Row.Line, Row.File, Row.Column,
                  Row.bIsStmt ? " S" : "", Row.bPrologueEnd ? "P" : "", Row.bEndSequence ? "E" : "");
    sText += acText;
  }
  return Program.Damage().sWhat ? sText + DamageText(Program.Damage()) : sText;
}

}  // namespace

TEST(Lines, HeadersOfAllVersions) {
  // version, what follows the registers, directories and files
  const std::tuple<U32, const char*, const char*> aCases[] = {
      {2, OLD_FILES, " inc /a :1 a.c@0 b.h@1 c.h@2"},
      {3, "00 00", " :1"},
      {4, "00 612e6300 ff01 00 00 00", " :1 a.c@255"},
      // Texts in other sections, an MD5 sum, numbers in each size, a block.
      {5,
       "01 01 1f 02 00000000 05000000  03 01 1f 02 0b 05 1e 02 09000000 00 00112233445566778899aabbccddeeff"
       "0d000000 01 00112233445566778899aabbccddeeff",
       "/src lib :0 x.c@0 y.h@1"},
      {5, "01 01 08 01 2f00  04 01 0e 02 0f 03 09 04 05 01 0d000000 00 02 abcd 0102", "/ :0 y.h@0"},
      {5, "01 01 08 01 2f00  03 02 05 8140 1f 01 08 01 0100 05000000 7a2e6300", "/ :0 z.c@1"},
      {5, "01 01 08 01 2f00  02 01 1a 02 0b 01 05 00", "/ :0 ?@0"},  // a number in another unit's table
      {5, "00 00 00 00", ":0"},
      // Damage names the wrong item.
      {1, OLD_FILES, "!version=1"},
      {6, OLD_FILES, "!version=6"},
      {4, "00 612e6300 01 00", "!file=1"},
      {4, "00 612e63", "!file=0"},
      {5, "00 00 00 05", "!file=5"},
      {5, "01 01 1f 01 ff000000 00 00", "!directory=0"},
      {5, "01 01 08 ffffffff0f 2f00", "!directory=4294967295"},
      {5, "01 01 19 ffffffff0f 00 00", "!directory=0"},  // a form without bytes
      {5, "01 01 7f 01 00 00 00", "!directory=1"},
  };
  for (const auto& [Version, sTables, sText] : aCases) {
    EXPECT_EQ(HeaderText(TABLE{Version, Registers(Version) + sTables, ""}.Bytes()), sText) << Version << " " << sTables;
  }
  EXPECT_EQ(HeaderText(TABLE{3, Registers(3) + OLD_FILES, "", true, true}.Bytes(), true),
            " inc /a :1 a.c@0 b.h@1 c.h@2");
  EXPECT_EQ(HeaderText(TABLE{5, Registers(5) + "01 01 1f 01 0000000000000005 00 00", "", true, true}.Bytes(), true),
            "lib :0");
  EXPECT_EQ(HeaderText(TABLE{2, "02 01 fd 0c 00", ""}.Bytes()), "!opcode_base=0");
  EXPECT_EQ(HeaderText(HexBytes("ffffff00 0400")), "!offset=0");
  EXPECT_EQ(HeaderText(HexBytes("06000000 0400 01000000")), "!header_length=1");
}

TEST(Lines, Programs) {
  const std::string sHeader = Registers(4) + "00 00";
  // program, rows
  const std::tuple<const char*, const char*> aCases[] = {
      // Special opcodes: 13 + (line + 3) + 12 * instructions.
      {"00 05 02 00800000 10 1d 02 02 00 01 01", "8000 1/1:0 S, 8002 2/1:0 S, 8006 2/1:0 SE, "},
      {"00 05 02 00800000 03 e400 04 02 05 8102 0a 06 01 01", "8000 101/2:257P, 8000 101/2:257, "},
      {"08 01 09 1110 01", "28 1/1:0 S, 1039 1/1:0 S, "},  // the last special opcode's step, and one of any size
      {"03 7f 01 03 7f 01", "0 0/1:0 S, 0 4294967295/1:0 S, "},
      {"04 05 05 07 0a 00 01 01 01", "0 1/5:7 SPE, 0 1/1:0 S, "},  // registers begin anew
      {"00 09 02 0080000001000000 01", "100008000 1/1:0 S, "},
      {"00 02 04 05 00 05 80 aabbccdd 07 0b 0c 09 01", "0 1/1:0 S, "},  // discriminator, a compiler's own opcode
      {"00 08 03 6e2e6300 01 00 00 04 04 01", "0 1/4:0 S, "},
      // Damage names where the opcode stands.
      {"01 02 80", "0 1/1:0 S, !opcode at=27"},
      {"01 00 05 02 0000", "0 1/1:0 S, !opcode at=27"},
      {"00 00 01", "!length=0"},
      {"00 06 02 0000000000", "!length=6"},
      {"00 04 03 616263", "!length=4"},
      {"00 ffffffffffffffffff01 02", "!opcode at=26"},
  };
  for (const auto& [sProgram, sRows] : aCases) EXPECT_EQ(RowsText({4, sHeader, sProgram}), sRows) << sProgram;
  EXPECT_EQ(RowsText({4, sHeader, "00 05 02 00008000 01", true, true}), "8000 1/1:0 S, ");
  // Three operations an instruction of 8 bytes.
  const std::string sWide = "08 03 01 fd 0c 0d 00 01 01 01 01 00 00 00 01 00 00 01 00 00";
  EXPECT_EQ(RowsText({4, sWide, "02 04 01 02 02 01 09 0300 02 01 01"}), "8 1/1:0 S, 10 1/1:0 S, 13 1/1:0 S, ");
  // Opcode 10 is special in old tables; an opcode with other operands than the standard's is none of its own.
  EXPECT_EQ(RowsText({2, "02 01 fd 0c 0a 00 01 01 01 01 00 00 00 01 00 00", "0d 1a"}), "0 1/1:0 S, 2 2/1:0 S, ");
  EXPECT_EQ(RowsText({2, "02 00 fd 0c 0d 00 01 01 02 01 00 00 00 01 00 00 01 00 00", "04 05 06 01"}), "0 1/1:0, ");
  EXPECT_EQ(RowsText({2, "02 01 fd 00 0d 00 01 01 01 01 00 00 00 01 00 00 01 00 00", "01"}), "!line_range=0");
}

using ElfLines = CElfTest;

// A table of version 2 and, behind it, one of version 5, of which only the damaged one is left out.
TEST_F(ElfLines, ADamagedTableIsNamedAndTheOtherOneStays) {
  Open("mixed.elf");
  const U32 Section = ELF_GetSectionFileOffset(pFile, static_cast<U32>(ELF_FindSection(pFile, ".debug_line")));
  const U32 NumLines = ELF_GetNumSrcLines(pFile);
  // offset of the changed byte in the section, value, message
  const std::tuple<U32, U8, const char*> aCases[] = {
      {4, 9, "line table of an unknown version in func CLineReader (version, 0x9)"},
      {3, 1, "line table outside its section in func CLineReader (offset, 0x0)"},
      {14, 0, "line table without opcodes in func CLineReader (opcode_base, 0x0)"},
      {0x226 + 9, 0xFF, "line table header longer than its table in func CLineReader (header_length, 0xFF2F)"},
  };
  for (const auto& [Offset, Value, sMessage] : aCases) {
    std::vector<char> aBytes = BytesOf("mixed.elf");
    aBytes[Section + Offset] = static_cast<char>(Value);
    ASSERT_TRUE(OpenBytes(aBytes));
    EXPECT_THAT(aMessages, testing::Contains(std::string("libdwarf: ") + sMessage));
    EXPECT_TRUE(ELF_GetNumSrcLines(pFile) > 0 && ELF_GetNumSrcLines(pFile) < NumLines) << sMessage;
    EXPECT_NE(Function("main"), 0u);
  }
}

// Linkers mark what they dropped by addresses where no code can be.
TEST_F(ElfLines, RowsAndRangesOfMarkedCode) {
  const char DEMO[] = "../../database/data/demo.elf";
  Open(DEMO);
  const U32 NumLines = ELF_GetNumSrcLines(pFile);
  U32 NumDropped = 0;
  for (; !(ELF_GetSrcLineFlags(pFile, NumDropped) & ELF_LINE_END_SEQUENCE); ++NumDropped) {
  }
  ASSERT_EQ(ELF_GetSrcLineAddr(pFile, NumDropped++), 0x10u) << "the first run is the dropped one";
  for (const char* sMark : {"ffffffff", "feffffff"}) {
    std::vector<char> aBytes = WithBytes(BytesOf(DEMO), "000502 00000000", std::string("000502") + sMark);
    aBytes = WithBytes(aBytes, "00000000 10000000 019c", std::string(sMark) + "10000000 019c");
    ASSERT_NE(OpenBytes(aBytes), nullptr);
    EXPECT_EQ(ELF_GetNumSrcLines(pFile), NumLines - NumDropped) << sMark;
    const ELF_SYM_HANDLE hDropped = Function("DroppedByLinker");
    EXPECT_EQ(ELF_GetRangeLow(hDropped, 0), ELF_GetRangeHigh(hDropped, 0)) << sMark;
  }
}

// A file that only the program of the table names belongs to the unit as well.
TEST_F(ElfLines, FilesNamedByTheProgram) {
  const std::vector<U8> aLine = TABLE{4, Registers(4) + "00 00", "00 08 03 6e2e6300 00 00 00 01 00 01 01"}.Bytes();
  OpenBytes(CElfBuilder()
                .Add(".debug_abbrev", "01 11 00 10 17 0000 00")
                .Add(".debug_info", "0c000000 0400 00000000 04 01 00000000")
                .Add(".debug_line", aLine)
                .Bytes());
  ASSERT_EQ(ELF_GetNumSrcFiles(pFile), 1u);
  EXPECT_STREQ(ELF_GetSrcFile(pFile, 0), "n.c");
  EXPECT_EQ(ELF_GetSrcFileNumUnits(pFile, 0), 1u);
}
