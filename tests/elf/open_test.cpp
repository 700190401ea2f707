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
