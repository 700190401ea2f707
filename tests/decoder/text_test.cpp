#include <gtest/gtest.h>

#include "core/decoder/row_table.h"
#include "decode_helper.h"

namespace {

const std::pair<std::vector<U16>, const char*> aTexts[] = {
    {{0x0008}, "MOVS\tR0, R1"},
    {{0xb963}, "CBNZ\tR3, 0x0000101C"},
    {{0x4810}, "LDR\tR0, [PC, #0x40]\t; [0x00001044]"},
    {{0xde05}, "UDF\t#05"},
    {{0xc906}, "LDM\tR1, {R1-R2}"},  // the base is loaded, so it is not written back
    {{0xe8e1, 0x2304}, "STRD\tR2, R3, [R1], #0x10"},
    {{0xea4f, 0x1131}, "ROR\tR1, R1, #0x04"},
    {{0xea41, 0x0231}, "ORR.W\tR2, R1, R1, RRX #1"},
    {{0xf5a1, 0x7280}, "SUB.W\tR2, R1, #0x100"},
    {{0xf3c2, 0x4009}, "UBFX\tR0, R2, #16, #10"},
    {{0xf851, 0x2f08}, "LDR\tR2, [R1, #0x08]!"},
    {{0xf851, 0x2023}, "LDR.W\tR2, [R1, R3, LSL #2]"},
    {{0xf3bf, 0x8f4b}, "DSB\tISH"},
    {{0xf380, 0x8800}, "MSR\tAPSR_nzcvq, R0"},
    {{0xf3ef, 0x8088}, "MRS\tR0, MSP_NS"},
    {{0xee06, 0x0f10}, "MCR\tp15, #0, R0, c6, c0, #0"},
    {{0xeeb7, 0x0a00}, "VMOV.F32\tS0, #1"},
    {{0xed2d, 0x8b04}, "VPUSH\t{D8-D9}"},
    {{0xee20, 0x0b10}, "VMOV\tD0[1], R0"},
    {{0xea5f, 0x901f}, "CSET\tR0, EQ"},
    {{0xe89f, 0x800f}, "CLRM\t{R0-R3, APSR}"},
    {{0xed6d, 0xcf81}, "VSTR\tFPCXTNS, [SP, #-0x04]!"},
    {{0xf3af, 0x800d}, "PACBTI\tR12, LR, SP"},
    {{0xeef1, 0xfa10}, "VMRS\tAPSR_nzcv, FPSCR"},
};

TEST(OperandText, OfEachForm) {
  for (const auto& [aHalfword, sText] : aTexts) {
    const DECODED Decoded = DecodeOne(0x1000, aHalfword, 8);
    EXPECT_EQ(Decoded.sText, sText);
    EXPECT_EQ(Decoded.Length, static_cast<int>(2 * aHalfword.size())) << sText;
  }
}

// A conditional block: suffixes, no S on 16-bit forms, conditions, and the block's end.
TEST(OperandText, ITBlock) {
  DISASM_CONTEXT Context;
  DISASM_SetMode(Context, DISASM_THUMB);
  const std::tuple<std::vector<U16>, const char*, U32> aCase[] = {
      {{0xbf0b}, "ITETE\tEQ", 15},  // condition EQ, mask 1011
      {{0x3001}, "ADDEQ\tR0, #0x01", 0},
      {{0x0048}, "LSLNE\tR0, R1, #0x01", 1},
      {{0xeb01, 0x0002}, "ADDEQ.W\tR0, R1, R2", 0},
      {{0x4770}, "BXNE\tLR", 1},
      {{0x3001}, "ADDS\tR0, #0x01", 15},
      {{0xbf38}, "IT\tCC", 15},
      {{0x2001}, "MOVCC\tR0, #0x01", 3},
      {{0x2001}, "MOVS\tR0, #0x01", 15},
  };
  for (const auto& [aHalfword, sText, Cond] : aCase) {
    const DECODED Decoded = DecodeWith(Context, 0x1000, aHalfword);
    EXPECT_EQ(Decoded.sText, sText);
    EXPECT_EQ(Decoded.Info.Flags >> IF_COND_SHIFT & 15, Cond) << sText;
    EXPECT_EQ((Decoded.Info.Flags & IF_CONDITIONAL) != 0, Cond < 15) << sText;
  }
}

TEST(DecodeTables, EveryTemplateNamesKnownDirectives) {
  for (const CRowTable* pTable : {&Thumb16Table(), &Thumb32Table(), &SimdTable(), &ArmTable()})
    for (const auto& Entry : pTable->Entries()) EXPECT_TRUE(Entry.Template.IsValid()) << Entry.pRow->sText;
}

// Where two rows match the same word, the one that is tried first is a special case of the other or says that it goes
// first. Anything else is a slip in one of the two patterns.
TEST(DecodeTables, RowsOverlapInAStatedOrder) {
  for (const CRowTable* pTable : {&Thumb16Table(), &Thumb32Table(), &SimdTable(), &ArmTable()}) {
    const auto& aEntry = pTable->Entries();
    for (size_t i = 0; i < aEntry.size(); ++i) {
      const INST_ROW& First = *aEntry[i].pRow;
      for (size_t j = i + 1; j < aEntry.size(); ++j) {
        const INST_ROW& Later = *aEntry[j].pRow;
        if (((First.Value ^ Later.Value) & First.Mask & Later.Mask) != 0) continue;
        const bool bSpecialCase = (First.Mask & Later.Mask) == Later.Mask && First.Mask != Later.Mask;
        EXPECT_TRUE(bSpecialCase || aEntry[i].Order == ROW_FIRST) << First.sText << " before " << Later.sText;
      }
    }
  }
}

TEST(DecodeText, NeverRunsOverTheBuffer) {
  for (U32 Size = 1; Size < 24; ++Size) {
    std::vector<char> sText(32, '#');
    const U8 aByte[] = {0x2d, 0xe9, 0xf0, 0x43};
    DISASM_CONTEXT Context;
    EXPECT_EQ(DISASM_DecodeThumb(Context, 0, aByte, 4, sText.data(), Size, nullptr), 4);
    EXPECT_EQ(sText.data(), std::string("PUSH.W\t{R4-R9, LR}").substr(0, Size - 1));
    EXPECT_EQ(sText[Size], '#');
  }
}

TEST(DecodeText, ShortBuffersAreReported) {
  std::string sError;
  DISASM_API API;
  API.pfLogErrorText = [&](const char* sText) { sError = sText; };
  DISASM_CONTEXT Context;
  Context.pAPI = &API;
  const U8 aByte[] = {0x2d, 0xe9};
  EXPECT_EQ(DISASM_DecodeThumb(Context, 0, aByte, 1, nullptr, 0, nullptr), -1);
  EXPECT_EQ(sError, "Data buffer too small (< 2 Bytes).");
  EXPECT_EQ(DISASM_DecodeThumb(Context, 0, aByte, 2, nullptr, 0, nullptr), -1);
  EXPECT_EQ(sError, "Data buffer too small (< 4 Bytes).");
}

}  // namespace
