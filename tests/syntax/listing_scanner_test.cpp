// Spans of disassembly rows.

#include <gtest/gtest.h>

#include "span_rules.h"

namespace {

constexpr I32 IDLE = SYNTAX_IDLE;
constexpr I32 IMMEDIATE = SYNTAX_IN_IMMEDIATE;

TEST(ListingScanner, RowsOfDisassembly) {
  // First column and columns of mnemonics, the state at the end, a text and the picture of its spans.
  const std::tuple<int, int, I32, const char*, const char*> ROWS[] = {
      {0, 12, IMMEDIATE, "MOV R0, #0x10", "Mmm.Rr..Vvvvv"},
      {0, 12, IDLE, "BL          <main+4>", "Mm..........Llllllll"},
      {0, 12, IDLE, "B           Reset_Handler", "M...........Lllllllllllll"},
      {0, 12, IDLE, "B loop", "M.Mmmm"},
      {0, 12, IDLE, "BX          LR", "Mm..........Rr"},
      {0, 12, IDLE, "LDR.W       R11, [PC, #-0x4]", "Mmmmm.......Rrr...Rr..Vvvvv."},
      {0, 12, IDLE, "PUSH        {R4-R6,LR}", "Mmmm.........Rr....Rr."},
      {0, 12, IDLE, "ADD.W       R12, SP, #8, LSL", "Mmmmm.......Ooo..Rr..Vvv.Lll"},
      {0, 12, IDLE, "[R0,#-4,R3] r1 #0xABCDEFGH (", ".Rr.VvvvRr..Oo.Vvvvvvvvv...."},
      {20, 12, IMMEDIATE, "08000120  BEEF      MOVS        R0, #1", "..........Oooo......Mmmm........Rr..Vv"},
      {2, 3, IDLE, "A B C D E", "O.M.M.O.L"},
      {0, 12, IDLE, "<a <b> R0", "Llllll.Rr"},
      {0, 12, IDLE, "NOP <main", "Mmm.Lllll"},
      {0, 12, IDLE, "R0<x>#1#2 ü", "RrLllVvVv.."},
  };
  for (const auto& [StartColumn, MnemonicColumns, StateOut, sRow, sPicture] : ROWS) {
    SCOPED_TRACE(sRow);
    const QString sText = sRow;
    const CSyntaxHighlighter Highlighter(StartColumn, MnemonicColumns);
    for (const I32 StateIn : {IDLE, I32{SYNTAX_IN_BLOCK_COMMENT}, IMMEDIATE, I32{SYNTAX_IN_LABEL}, -1}) {
      const HIGHLIGHTED Text = HighlightText(Highlighter, SYNTAX_ASM_LISTING, sText, StateIn);
      ASSERT_EQ(BrokenOrder(Text, sText.size()), "");
      EXPECT_EQ(Picture(Text, sText.size()), sPicture);
      EXPECT_EQ(Text.State, StateOut);
    }
  }
}

}  // namespace
