// Real object code: every instruction that the listing has is decoded with the listing's size, and none is refused.
#include <gtest/gtest.h>

#include <fstream>

#include "decode_helper.h"

namespace {

TEST(ObjectCode, StartsAndSizes) {
  for (const auto& [sName, ArchVersion] : {std::pair<std::string, U32>{"cortex-m0", 6},
                                           {"cortex-m3", 7},
                                           {"cortex-m4", 7},
                                           {"cortex-m33", 8},
                                           {"cortex-m4f", 7},
                                           {"cortex-m7", 7}}) {
    const std::string sBase = VEXOR_SOURCE_DIR "/tests/decoder/data/" + sName;
    std::ifstream Code(sBase + ".bin", std::ios::binary), Starts(sBase + ".starts");
    const std::string sCode((std::istreambuf_iterator<char>(Code)), {});
    DISASM_CONTEXT Context;
    Context.ArchVersion = ArchVersion;
    U32 NumInstructions = 0, Addr = 0;
    int Size = 0;
    char Kind = 0, sText[128];
    while (Starts >> std::hex >> Addr >> Size >> Kind) {
      if (Kind != 'i') continue;
      ASSERT_LT(Addr, sCode.size());
      const U8* pCode = reinterpret_cast<const U8*>(sCode.data()) + Addr;
      const U32 NumBytes = static_cast<U32>(sCode.size() - Addr);
      EXPECT_EQ(DISASM_DecodeThumb(Context, Addr, pCode, NumBytes, sText, sizeof(sText), nullptr), Size)
          << sName << " " << std::hex << Addr;
      ++NumInstructions;
    }
    EXPECT_GT(NumInstructions, 30u) << sName;
  }
}

}  // namespace
