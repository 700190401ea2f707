#include <random>

#include "elf_fixture.h"
#include "query_all.h"

// Nothing that stands in a file may crash the reader or keep it busy. Run these under the sanitizers too.
using ElfDamaged = CElfTest;

namespace {

constexpr U32 CUT_DISTANCE = 64;
constexpr U32 NUM_DAMAGED = 150;  // copies of each file
constexpr U32 MAX_CHANGES = 8;    // bytes in a copy

const char* const apFiles[] = {"gcc_dwarf3_O2.elf", "gcc_dwarf5_O2.elf", "clang_dwarf5.elf", "cpp_dwarf4_types.elf",
                               "big_endian.elf"};

}  // namespace

TEST_F(ElfDamaged, CutFiles) {
  for (const char* sName : {"gcc_dwarf5_O2.elf", "big_endian.elf"}) {
    const std::vector<char> aWhole = BytesOf(sName);
    for (size_t Size = 0; Size < aWhole.size(); Size += CUT_DISTANCE) {
      OpenBytes(std::vector<char>(aWhole.begin(), aWhole.begin() + static_cast<long>(Size)));
      EXPECT_EQ(pFile, nullptr) << "the section headers stand at the end";
    }
  }
}

TEST_F(ElfDamaged, ChangedBytes) {
  for (const char* sName : apFiles) {
    const std::vector<char> aWhole = BytesOf(sName);
    U32 NumOpened = 0;
    for (U32 Seed = 0; Seed < NUM_DAMAGED; ++Seed) {
      SCOPED_TRACE(std::string(sName) + " seed " + std::to_string(Seed));
      std::mt19937 Random(Seed);
      std::vector<char> aBytes = aWhole;
      for (U32 i = 0; i <= Random() % MAX_CHANGES; ++i) aBytes[Random() % aBytes.size()] = static_cast<char>(Random());
      if (!OpenBytes(aBytes)) continue;
      QueryAll(pFile);
      ++NumOpened;
    }
    EXPECT_GT(NumOpened, NUM_DAMAGED / 2) << "most damage leaves a file that opens";
  }
}

// The counts of a header are the classic way to make a reader allocate without end.
TEST_F(ElfDamaged, AbsurdHeaderFields) {
  constexpr size_t FIRST_FIELD = 16, HEADER_SIZE = 52;
  for (size_t Offset = FIRST_FIELD; Offset < HEADER_SIZE; ++Offset) {
    for (const int Value : {0x00, 0x01, 0x7F, 0x80, 0xFF}) {
      std::vector<char> aBytes = BytesOf("gcc_dwarf5_O2.elf");
      aBytes[Offset] = static_cast<char>(Value);
      if (OpenBytes(aBytes)) QueryAll(pFile);
    }
  }
}

// A file of the 64-bit class is read with the 32-bit layout: what comes out is arbitrary, but it comes out.
TEST_F(ElfDamaged, SixtyFourBitClass) {
  std::vector<char> aBytes = BytesOf("gcc_dwarf5_O2.elf");
  aBytes[4] = 2;
  ASSERT_NE(OpenBytes(aBytes), nullptr) << "the class itself is no reason to refuse a file";
  EXPECT_EQ(ELF_GetFileClass(pFile), 2u);
}
