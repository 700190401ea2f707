#include "elf_fixture.h"

namespace {

struct REFUSED_FILE {
  const char* sWhat;
  size_t Offset;  // of the byte that is changed
  char Value;
  const char* sMessage;
};

// Offsets in the ELF header of a little-endian file.
constexpr REFUSED_FILE aRefused[] = {
    {"magic", 1, 'X', "Not a valid elf object file."},
    {"class", 4, 0, "Invalid ELF file. Invalid file class"},
    {"byte order", 5, 3, "Invalid ELF file. Invalid data encoding"},
    {"header version", 6, 2, "Invalid ELF file. Invalid ELF header version number."},
    {"file version", 20, 0, "Invalid ELF file. Invalid file version number."},
    {"segment offset", 31, 0x70, "could not parse segment headers."},
    {"section offset", 35, 0x70, "could not section headers."},
    {"number of sections", 49, 0x7F, "could not section headers."},
};

}  // namespace

using ElfOpen = CElfTest;

TEST_F(ElfOpen, DamagedHeadersAreRefusedWithTheirTexts) {
  for (const REFUSED_FILE& Refused : aRefused) {
    std::vector<char> aBytes = BytesOf("plain.elf");
    aBytes[Refused.Offset] = Refused.Value;
    EXPECT_EQ(OpenBytes(aBytes), nullptr) << Refused.sWhat;
    EXPECT_THAT(aMessages, testing::Contains(Refused.sMessage)) << Refused.sWhat;
    EXPECT_NE(Open("plain.elf"), nullptr) << "the reader is usable after: " << Refused.sWhat;
  }
}

TEST_F(ElfOpen, FilesThatAreNoProgramsAreRefused) {
  EXPECT_EQ(OpenBytes({}), nullptr);
  EXPECT_EQ(aMessages, std::vector<std::string>{"invalid file size detected. Could not parse file."});
  aMessages.clear();
  EXPECT_EQ(ELF_Open(DataPath("absent.elf").c_str()), nullptr);
  EXPECT_EQ(aMessages, std::vector<std::string>{"failed to open file."});
  EXPECT_EQ(OpenBytes({'t', 'e', 'x', 't', '\n'}), nullptr);
  EXPECT_EQ(aMessages, (std::vector<std::string>{"not an elf file.", "Not a valid elf object file.",
                                                 "could not parse file header."}));
  EXPECT_EQ(OpenBytes({0x7F, 'E', 'L'}), nullptr);
  EXPECT_EQ(aMessages, (std::vector<std::string>{"Not a valid elf object file.", "could not parse file header."}));
}

TEST_F(ElfOpen, SymbolsOutsideTheFileAreRefused) {
  std::vector<char> aBytes = BytesOf("plain.elf");
  Open("plain.elf");
  const U32 Index = static_cast<U32>(ELF_FindSection(pFile, ".symtab"));
  const U32 SectionHeaders = static_cast<U8>(aBytes[32]) | static_cast<U8>(aBytes[33]) << 8;
  constexpr U32 HEADER_SIZE = 40, SIZE_FIELD = 20;
  aBytes[SectionHeaders + Index * HEADER_SIZE + SIZE_FIELD + 3] = 0x10;
  EXPECT_EQ(OpenBytes(aBytes), nullptr);
  EXPECT_EQ(aMessages, std::vector<std::string>{"could not parse symbols."});
}

TEST_F(ElfOpen, CompressedLineTableIsLeftOutAndSaid) {
  std::vector<char> aBytes = BytesOf("gcc_dwarf5_O2.elf");
  Open("gcc_dwarf5_O2.elf");
  const U32 Index = static_cast<U32>(ELF_FindSection(pFile, ".debug_line"));
  const U32 SectionHeaders = static_cast<U8>(aBytes[32]) | static_cast<U8>(aBytes[33]) << 8;
  constexpr U32 HEADER_SIZE = 40, FLAGS_FIELD = 8;
  aBytes[SectionHeaders + Index * HEADER_SIZE + FLAGS_FIELD + 1] = 0x08;
  ASSERT_NE(OpenBytes(aBytes), nullptr);
  EXPECT_THAT(aMessages, testing::Contains("section .debug_line is compressed and was left out."));
  EXPECT_EQ(ELF_GetNumSrcLines(pFile), 0u);
  EXPECT_EQ(NameOf(ELF_GetEntryFunc(pFile)), "main");
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
  EXPECT_EQ(ELF_GetFileClass(pClosed), ELF_CLASS_NO_FILE);
  EXPECT_EQ(ELF_GetEncoding(pClosed), ELF_ENCODING_INVALID);
  EXPECT_EQ(ELF_GetEntryPoint(pClosed), INVALID_ADDR);
  EXPECT_EQ(ELF_GetTag(hSym), ELF_TAG_INVALID);
}

TEST_F(ElfOpen, LogLinesComeInOrder) {
  Open("cpp_dwarf5.elf");
  const char* const apExpected[] = {"parsed type unit tree in ms:   ",
                                    "parsed debug info tree in ms:  ",
                                    "parsed source file info in ms: ",
                                    "parsed source line info in ms: ",
                                    "parsed call frame info in ms:  ",
                                    "File Size: ",
                                    "Dwarf Symbol Count: ",
                                    "ELF Symbol Count: ",
                                    "Data Encoding: Little Endian",
                                    "Source Language: C++",
                                    "total init time: ",
                                    "Dwarf Version: 5"};
  ASSERT_EQ(aMessages.size(), std::size(apExpected));
  for (size_t i = 0; i < aMessages.size(); ++i) EXPECT_EQ(aMessages[i].rfind(apExpected[i], 0), 0u) << aMessages[i];
}

TEST_F(ElfOpen, ByteOrders) {
  Open("big_endian.elf");
  EXPECT_EQ(ELF_GetEncoding(pFile), ELF_ENCODING_BIG);
  EXPECT_TRUE(ELF_IsTargetBigEndian());
  EXPECT_EQ(ELF_GetEntryPoint(pFile), 0x8064u);
  Open("plain.elf");
  EXPECT_FALSE(ELF_IsTargetBigEndian());
  EXPECT_EQ(ELF_GetEntryPoint(pFile), 0x8040u) << "bit 0 of a Thumb entry is cleared";
}
