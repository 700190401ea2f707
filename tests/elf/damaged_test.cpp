#include <random>

#include "elf_fixture.h"
#include "query_all.h"

// Nothing that stands in a file may crash the reader or keep it busy. Run these under the sanitizers too.
using ElfDamaged = CElfTest;

TEST_F(ElfDamaged, ChangedBytes) {
  constexpr U32 NUM_DAMAGED = 150;  // copies of each file
  constexpr U32 MAX_CHANGES = 8;    // bytes in a copy
  for (const char* sName :
       {"gcc_dwarf3_O2.elf", "gcc_dwarf5_O2.elf", "clang_dwarf5.elf", "cpp_dwarf4_types.elf", "big_endian.elf"}) {
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
  constexpr size_t HEADER_SIZE = 52;
  for (size_t Offset = 0; Offset < HEADER_SIZE; ++Offset) {
    for (const int Value : {0x00, 0x01, 0x02, 0x7F, 0x80, 0xFF}) {
      std::vector<char> aBytes = BytesOf("gcc_dwarf5_O2.elf");
      aBytes[Offset] = static_cast<char>(Value);
      if (OpenBytes(aBytes)) QueryAll(pFile);
    }
  }
}
