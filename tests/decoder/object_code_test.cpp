// Real object code: every instruction that the listing has is decoded with the listing's size, and none is refused.
#include <gtest/gtest.h>

#include <fstream>

#include "decode_helper.h"

namespace {

struct OBJECT_CODE {
  const char* sName;
  U32 ArchVersion;
};

class ObjectCodeTest : public testing::TestWithParam<OBJECT_CODE> {};

TEST_P(ObjectCodeTest, StartsAndSizes) {
  const std::string sBase = std::string(VEXOR_SOURCE_DIR "/tests/decoder/data/") + GetParam().sName;
  std::ifstream Code(sBase + ".bin", std::ios::binary);
  const std::string sCode((std::istreambuf_iterator<char>(Code)), {});
  std::ifstream Starts(sBase + ".starts");
  ASSERT_TRUE(Code && Starts);

  DISASM_CONTEXT Context;
  Context.ArchVersion = GetParam().ArchVersion;
  U32 NumInstructions = 0;
  U32 Addr = 0;
  int Size = 0;
  char Kind = 0;
  while (Starts >> std::hex >> Addr >> Size >> Kind) {
    if (Kind != 'i') continue;
    ASSERT_LT(Addr, sCode.size());
    char sText[128];
    const int Decoded = DISASM_DecodeThumb(Context, Addr, reinterpret_cast<const U8*>(sCode.data()) + Addr,
                                           static_cast<U32>(sCode.size() - Addr), sText, sizeof(sText), nullptr);
    EXPECT_EQ(Decoded, Size) << std::hex << Addr;
    ++NumInstructions;
  }
  EXPECT_GT(NumInstructions, 30u);
}

INSTANTIATE_TEST_SUITE_P(Cores, ObjectCodeTest,
                         testing::Values(OBJECT_CODE{"cortex-m0", 6}, OBJECT_CODE{"cortex-m3", 7},
                                         OBJECT_CODE{"cortex-m4", 7}, OBJECT_CODE{"cortex-m33", 8},
                                         OBJECT_CODE{"cortex-m4f", 7}, OBJECT_CODE{"cortex-m7", 7}));

}  // namespace
