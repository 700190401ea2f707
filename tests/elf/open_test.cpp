#include "base/endian.h"
#include "elf_builder.h"
#include "elf_fixture.h"

using ElfOpen = CElfTest;

// Offsets of bytes in the ELF header of a little-endian file, what they are changed to, and what is said of it.
TEST_F(ElfOpen, DamagedHeadersAreRefusedWithTheirTexts) {
  const std::tuple<size_t, char, const char*> aCases[] = {
      {1, 'X', "Not a valid elf object file."},
      {4, 0, "Invalid ELF file. Invalid file class"},
      {5, 3, "Invalid ELF file. Invalid data encoding"},
      {6, 2, "Invalid ELF file. Invalid ELF header version number."},
      {20, 0, "Invalid ELF file. Invalid file version number."},
      {31, 0x70, "could not parse segment headers."},
      {35, 0x70, "could not section headers."},
      {49, 0x7F, "could not section headers."},
      {46, 0, "could not section headers."},  // each over the others
  };
  for (const auto& [Offset, Value, sMessage] : aCases) {
    std::vector<char> aBytes = BytesOf("plain.elf");
    aBytes[Offset] = Value;
    EXPECT_EQ(OpenBytes(aBytes), nullptr) << Offset;
    EXPECT_THAT(aMessages, testing::Contains(sMessage)) << Offset;
    EXPECT_NE(Open("plain.elf"), nullptr) << "the reader is usable after " << Offset;
  }
}

TEST_F(ElfOpen, FilesThatAreNoProgramsAreRefused) {
  using TEXTS = std::vector<std::string>;
  const std::pair<std::vector<char>, TEXTS> aCases[] = {
      {{}, {"invalid file size detected. Could not parse file."}},
      {{'t', 'e', 'x', 't', '\n'},
       {"not an elf file.", "Not a valid elf object file.", "could not parse file header."}},
      {{0x7F, 'E', 'L'}, {"Not a valid elf object file.", "could not parse file header."}},
      {WithSectionByte("plain.elf", ".symtab", 23, 0x10), {"could not parse symbols."}},
  };
  for (const auto& [aBytes, aExpected] : aCases) {
    EXPECT_EQ(OpenBytes(aBytes), nullptr);
    EXPECT_EQ(aMessages, aExpected);
  }
  aMessages.clear();
  EXPECT_EQ(ELF_Open(DataPath("absent.elf").c_str()), nullptr);
  EXPECT_EQ(aMessages, TEXTS{"failed to open file."});
}

TEST_F(ElfOpen, HeadersOfSegmentsAndSections) {
  Open("plain.elf");
  EXPECT_EQ(ELF_GetFileClass(pFile), 1u);
  EXPECT_EQ(ELF_GetFileSize(pFile), BytesOf("plain.elf").size());
  const std::array<U32, 8> aSegments[] = {
      // type, flags, offset, addresses, sizes in the file and in memory, distance of the first section
      {1, 5, 0x1000, 0x8000, 0x8000, 0xCA, 0xCA, 0},
      {1, 7, 0x2000, 0x20000000, 0x80CA, 0x20, 0x80, 0},
  };
  ASSERT_EQ(ELF_GetNumSegments(pFile), 2u);
  for (U32 i = 0; i < 2; ++i) {
    const std::array<U32, 8> aFound = {ELF_GetSegmentType(pFile, i),    ELF_GetSegmentFlags(pFile, i),
                                       ELF_GetSegmentOffset(pFile, i),  ELF_GetSegmentVAddr(pFile, i),
                                       ELF_GetSegmentPAddr(pFile, i),   ELF_GetSegmentFileSize(pFile, i),
                                       ELF_GetSegmentMemSize(pFile, i), ELF_GetSegmentSectionOffset(pFile, i)};
    EXPECT_EQ(aFound, aSegments[i]);
  }
  std::string sNames;
  for (U32 i = 0; i < ELF_GetNumSections(pFile); ++i) sNames += std::string(ELF_GetSectionName(pFile, i)) + ' ';
  EXPECT_EQ(sNames, " .text .data .bss .comment .ARM.attributes .symtab .strtab .shstrtab ");
  const U32 Symtab = static_cast<U32>(ELF_FindSection(pFile, ".symtab"));
  EXPECT_TRUE(ELF_GetSectionEntSize(pFile, Symtab) == 16 && ELF_GetSectionNumEntries(pFile, Symtab) == 0x29);
  ELF_RELOCATION Relocation;
  EXPECT_EQ(ELF_GetRelocation(pFile, Symtab, 0, &Relocation), -1);
  EXPECT_EQ(ELF_GetRetAddrReg(Open("gcc_dwarf5_O0.elf")), 14u);
}

// The table of symbols called one of relocations: the same words mean offset, information and addend.
TEST_F(ElfOpen, Relocations) {
  constexpr size_t TYPE = 4;
  constexpr char RELA = 4, REL = 9;
  for (const char Type : {RELA, REL}) {
    const std::vector<char> aBytes = WithSectionByte("plain.elf", ".symtab", TYPE, Type);
    const U32 Section = static_cast<U32>(ELF_FindSection(pFile, ".symtab"));
    const U32 Last = ELF_GetSectionNumEntries(pFile, Section) - 1;
    const U8* pLast = ELF_GetSectionData(pFile, Section) + 16 * Last;
    const U32 Offset = LoadInt<U32>(pLast, false), Info = LoadInt<U32>(pLast + 4, false);
    const I32 Addend = static_cast<I32>(LoadInt<U32>(pLast + 8, false));
    OpenBytes(aBytes);
    ELF_RELOCATION Found;
    ASSERT_EQ(ELF_GetRelocation(pFile, Section, Last, &Found), 0);
    EXPECT_TRUE(Found.Offset == Offset && Found.Type == (Info & 0xFF) && Found.Symbol == Info >> 8);
    EXPECT_EQ(Found.Addend, Type == RELA ? Addend : 0);
    EXPECT_EQ(ELF_GetRelocation(pFile, Section, Last + 1, &Found), -1);
  }
}

TEST_F(ElfOpen, OneFileAtATime) {
  Open("plain.elf");
  EXPECT_EQ(ELF_Open(DataPath("mixed.elf").c_str()), nullptr);
  EXPECT_EQ(aMessages.back(), "maximum number of files already open.");
  EXPECT_GT(ELF_GetNumSymbols(pFile), 0u) << "the open file stays";
  ELF_FILE* pClosed = pFile;
  const ELF_SYM_HANDLE hSym = ELF_GetSymbolHandle(pFile, 5);
  Close();
  ELF_Close(pClosed);
  EXPECT_EQ(ELF_GetNumSymbols(pClosed), 0u);
  EXPECT_EQ(ELF_GetEncoding(pClosed), ELF_ENCODING_INVALID);
  EXPECT_EQ(ELF_GetEntryPoint(pClosed), INVALID_ADDR);
  EXPECT_EQ(ELF_GetTag(hSym), ELF_TAG_INVALID);
}

// Numbers that the header has no room for stand in the first section header.
TEST_F(ElfOpen, ExtendedNumbers) {
  Open("plain.elf");
  const U32 NumSegments = ELF_GetNumSegments(pFile), NumSections = ELF_GetNumSections(pFile);
  std::vector<char> aBytes = BytesOf("plain.elf");
  U8* pHeader = reinterpret_cast<U8*>(aBytes.data());
  U8* pFirst = pHeader + LoadInt<U32>(pHeader + 32, false);
  StoreInt<U32>(pFirst + 20, NumSections, false);
  StoreInt<U32>(pFirst + 24, LoadInt<U16>(pHeader + 50, false), false);
  StoreInt<U32>(pFirst + 28, NumSegments, false);
  StoreInt<U16>(pHeader + 44, 0xFFFF, false);
  StoreInt<U16>(pHeader + 48, 0, false);
  StoreInt<U16>(pHeader + 50, 0xFFFF, false);
  ASSERT_NE(OpenBytes(aBytes), nullptr);
  EXPECT_EQ(ELF_GetNumSegments(pFile), NumSegments);
  EXPECT_EQ(ELF_GetNumSections(pFile), NumSections);
  EXPECT_GT(ELF_FindSection(pFile, ".text"), 0);
  StoreInt<U32>(pFirst + 20, 0x7FFFFFFF, false);
  EXPECT_EQ(OpenBytes(aBytes), nullptr);
  EXPECT_THAT(aMessages, testing::Contains("could not section headers."));
}

// A unit of 14 bytes with one entry, in a block that is stored as it is.
TEST_F(ElfOpen, SectionsCompressedByZstd) {
  constexpr U32 COMPRESSED = 0x800;
  const std::string sStream = "28b52ffd 20 0e 710000 0a000000 0400 00000000 04 01 6100";
  const std::tuple<std::string, bool> aCases[] = {
      {"02000000 0e000000 01000000" + sStream, true},
      {"02000000 0d000000 01000000" + sStream, false},
      {"02000000 0f000000 01000000" + sStream, false},
      {"02000000 ffffffff 01000000" + sStream, false},
      {"03000000 0e000000 01000000" + sStream, false},
      {"02000000 0e000000 01000000 28b52ffc" + sStream.substr(8), false},
      {"02000000 0e000000 01000000" + sStream.substr(0, sStream.size() - 2), false},
      {"02000000 0e000000 01000000", false},
  };
  for (const auto& [sSection, bGood] : aCases) {
    OpenBytes(CElfBuilder()
                  .Add(".debug_abbrev", "01 11 00 03 08 0000 00")
                  .Add(".debug_info", HexBytes(sSection), COMPRESSED)
                  .Bytes());
    const ELF_SYM_HANDLE hUnit = ELF_GetDieByOffset(pFile, 11, false);
    EXPECT_EQ(NameOf(hUnit), bGood ? "a" : "") << sSection;
    EXPECT_EQ(testing::Value(aMessages, testing::Contains("section .debug_info is damaged and was left out.")), !bGood);
  }
}
