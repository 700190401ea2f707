// The ARM instruction set: texts, flags, gates.
#include <gtest/gtest.h>

#include "decode_helper.h"

namespace {

constexpr U32 ADDR = 0x1000;

const std::pair<U32, const char*> aText[] = {
    {0x00921003, "ADDSEQ\tR1, R2, R3"},
    {0xe0821183, "ADD\tR1, R2, R3, LSL #3"},
    {0xe0821023, "ADD\tR1, R2, R3, LSR #32"},  // amount 0 is 32
    {0xe0821063, "ADD\tR1, R2, R3, RRX #1"},
    {0xe29f1010, "ADDS\tR1, PC, #0x10"},  // sets the flags, so it is no address
    {0xe7cf1212, "BFI\tR1, R2, #4, #12"},
    {0xe6a71252, "SSAT\tR1, #8, R2, ASR #4"},
    {0xe5b21004, "LDR\tR1, [R2, #0x04]!"},
    {0xe14210f8, "STRD\tR1, R2, [R2, #-0x08]"},
    {0xe59f1008, "LDR\tR1, [PC, #0x08]\t; [0x00001010]"},
    {0xe49d1004, "POP\t{R1}"},
    {0xe1a21f94, "STREXD\tR1, R4, R5, [R2]"},
    {0xfb00003e, "BLX\t0x00001102"},
    {0xe169f001, "MSR\tSPSR_fc, R1"},
    {0xe1021200, "MRS\tR1, R10_usr"},
    {0xf10e00d3, "CPSID\tif, #19"},
    {0xf9ed0513, "SRSIB\tSP!, #0x13"},
    {0xee011f10, "MCR\tp15, #0x00, R1, c1, c0, #0x00"},
    {0xec921f08, "LDC\tp15, c1, [R2], {8}"},
};

TEST(ArmText, OfEachForm) {
  for (const auto& [Word, sText] : aText) {
    const DECODED Decoded = DecodeArm(ADDR, Word);
    EXPECT_EQ(Decoded.sText, sText) << std::hex << Word;
    EXPECT_EQ(Decoded.Length, 4) << sText;
  }
}

TEST(ArmText, RefusesWhatIsNoInstruction) {
  for (const U32 Word : {0xe8920000u, 0xe7c21412u, 0x01200070u, 0xe1c2f0d0u, 0xe3a11000u, 0xf0000000u, 0xe6000010u}) {
    const DECODED Decoded = DecodeArm(ADDR, Word);
    EXPECT_EQ(Decoded.Length, -1) << std::hex << Word << Decoded.sText;
    EXPECT_EQ(Decoded.Info.Flags, 0u);
  }
}

// Words that were read wrongly once, as the comparison with other disassemblers showed.
TEST(ArmText, MissesOfTheComparison) {
  EXPECT_EQ(DecodeArm(ADDR, 0xe16e11ac).sText, "SMULTB\tLR, R12, R1");  // bits that should be zero, accepted
  EXPECT_EQ(DecodeArm(ADDR, 0xe18a45d3).sText, "LDRD\tR4, R5, [R10, R3]");
  EXPECT_EQ(DecodeArm(ADDR, 0xe5b23000).sText, "LDR\tR3, [R2, #0x00]!");
  EXPECT_EQ(DecodeArm(ADDR, 0xec938b0b).sText, "FLDMIAX\tR3, {D8-D12}");
  EXPECT_EQ(DecodeArm(ADDR, 0xec4994d5, 4).Length, -1);  // MCRR before it was there
  EXPECT_EQ(DecodeArm(ADDR, 0xee300a21, 5).sText, "VADD.F32\tS0, S0, S3");
  EXPECT_EQ(DecodeOne(ADDR, {0xf3a5, 0x071b}).Length, -1);  // neither USAT nor USAT16
  EXPECT_EQ(DecodeOne(ADDR, {0xea8f, 0xd3ed}).Length, -1);
  EXPECT_EQ(DecodeOne(ADDR, {0xe841, 0xf503}, 8).sText, "STREX\tR5, PC, [R1, #0x0C]");  // not TT
  EXPECT_EQ(DecodeOne(ADDR, {0xf3ee, 0x8120}).sText, "MRS\tR1, LR_fiq");
}

TEST(ArmText, BigEndianCode) {
  DISASM_CONTEXT Context;
  Context.BigEndian = 1;
  const U8 aByte[] = {0xe0, 0x82, 0x10, 0x03};
  char sText[64];
  EXPECT_EQ(DISASM_DecodeARM(Context, ADDR, aByte, 4, sText, sizeof(sText), nullptr), 4);
  EXPECT_STREQ(sText, "ADD\tR1, R2, R3");
}

}  // namespace
