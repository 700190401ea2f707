// Advanced SIMD, which is the same in both instruction sets but for the first byte.
#include <gtest/gtest.h>

#include "decode_helper.h"

namespace {

const std::pair<U32, const char*> aText[] = {
    {0xf2002844, "VADD.I8\tQ1, Q0, Q2"},
    {0xf28f0050, "VSHR.S8\tQ0, Q0, #1"},
    {0xf3a00f12, "VCVT.U32.F32\tD0, D2, #32"},
    {0xf2890a10, "VSHLL.S8\tQ0, D0, #1"},
    {0xf3820e3f, "VMOV.I64\tD0, #0xFF00FF00FFFFFFFF"},
    {0xf2870f10, "VMOV.F32\tD0, #1"},
    {0xf2902242, "VMLAL.S16\tQ1, D0, D2[0]"},
    {0xf3a2086b, "VMUL.I32\tQ0, Q1, D11[1]"},
    {0xf2b12402, "VEXT.8\tD2, D1, D2, #4"},
    {0xf3b30c01, "VDUP.8\tD0, D1[1]"},
    {0xf4210a8d, "VLD1.32\t{D0, D1}, [R1]!"},
    {0xf401017f, "VST4.16\t{D0, D2, D4, D6}, [R1:256]"},
    {0xf4a109d3, "VLD2.32\t{D0[1], D2[1]}, [R1:64], R3"},
    {0xf4a10d9f, "VLD2.32\t{D0[], D1[]}, [R1:64]"},
};

U32 ThumbWordOf(U32 Word) {
  const bool bData = (Word & 0xFE000000) == 0xF2000000;
  return (Word & 0x00FFFFFF) | (bData ? 0xEF000000 | (Word >> 24 & 1) << 28 : 0xF9000000);
}

DECODED DecodeThumbWord(U32 Word) {
  return DecodeOne(0x1000, {static_cast<U16>(Word >> 16), static_cast<U16>(Word)});
}

TEST(Simd, SameTextInBothInstructionSets) {
  for (const auto& [Word, sText] : aText) {
    const DECODED Arm = DecodeArm(0x1000, Word);
    EXPECT_EQ(Arm.sText, sText) << std::hex << Word;
    EXPECT_EQ((Arm.Info.Flags & IF_MEM) != 0, (Word & 0xFF000000) == 0xF4000000) << sText;
    EXPECT_EQ(DecodeThumbWord(ThumbWordOf(Word)).sText, sText) << std::hex << ThumbWordOf(Word);
  }
}

TEST(Simd, RefusesWhatIsNoInstruction) {
  // No such operation, an odd quad register, an alignment of four registers for two, lists that go over D31.
  for (const U32 Word : {0xf2002c44u, 0xf2003844u, 0xf4210abdu, 0xf461f20du, 0xf3bf0b82u}) {
    EXPECT_EQ(DecodeArm(0, Word).Length, -1) << std::hex << Word << " " << DecodeArm(0, Word).sText;
  }
  EXPECT_EQ(DecodeArm(0, 0xf2002844, 6).Length, -1);
}

}  // namespace
