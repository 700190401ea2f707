// Spans of disassembly rows, made up and real.

#include <cstring>

#include <gtest/gtest.h>

#include <QRegularExpression>

#include "core/decoder/disasm.h"
#include "span_rules.h"
#include "tests/common/files.h"

using namespace Qt::StringLiterals;

namespace {

constexpr I32 IDLE = SYNTAX_IDLE;
constexpr I32 IMMEDIATE = SYNTAX_IN_IMMEDIATE;
constexpr int MNEMONIC_COLUMNS = CSyntaxHighlighter::DEFAULT_MNEMONIC_COLUMNS;

// A text and the picture of its spans.
struct LISTING_ROW {
  int StartColumn;
  int MnemonicColumns;
  I32 StateOut;
  const char* sText;
  const char* sPicture;
};

TEST(ListingScanner, RowsOfDisassembly) {
  const LISTING_ROW ROWS[] = {
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
  for (const LISTING_ROW& Row : ROWS) {
    SCOPED_TRACE(Row.sText);
    const QString sText = Row.sText;
    const CSyntaxHighlighter Highlighter(Row.StartColumn, Row.MnemonicColumns);
    for (const I32 StateIn : {IDLE, I32{SYNTAX_IN_BLOCK_COMMENT}, IMMEDIATE, I32{SYNTAX_IN_LABEL}, -1}) {
      const HIGHLIGHTED Text = HighlightText(Highlighter, SYNTAX_ASM_LISTING, sText, StateIn);
      ASSERT_EQ(BrokenOrder(Text, sText.size()), "");
      EXPECT_EQ(Picture(Text, sText.size()), Row.sPicture);
      EXPECT_EQ(Text.State, Row.StateOut);
    }
  }
}

// The instructions of a code image as rows, operands at the column behind the mnemonic.
QStringList DecodedRows(const char* sFile) {
  const QByteArray Code = ReadBytes(QString(VEXOR_SOURCE_DIR "/tests/sim/firmware/program_") + sFile);
  DISASM_CONTEXT Context;
  DISASM_SetMode(Context, DISASM_THUMB);
  QStringList asRow;
  for (qsizetype Pos = 0; Pos + 4 <= Code.size();) {
    char sText[128];
    const int Length =
        DISASM_DecodeThumb(Context, static_cast<U32>(Pos), reinterpret_cast<const U8*>(Code.data()) + Pos, 4, sText,
                           sizeof(sText), nullptr);
    Pos += Length > 0 ? Length : 2;
    if (Length <= 0) continue;
    const char* const pTab = std::strchr(sText, '\t');
    const qsizetype NumChars = pTab ? pTab - sText : 0;
    asRow += pTab ? QString::fromLatin1(sText, NumChars).leftJustified(MNEMONIC_COLUMNS) + QLatin1String(pTab + 1)
                  : QString::fromLatin1(sText);
  }
  return asRow;
}

// Every register of the row that stands where operands begin, as a pattern finds it.
void CheckRegisters(const QString& sRow, const std::string& sPicture) {
  static const QRegularExpression REGISTER(u"(?<=[ \\[{,])(SP|PC|LR|R[0-9]|R1[01])(?![A-Za-z0-9_.])"_s);
  for (auto Match = REGISTER.globalMatch(sRow); Match.hasNext();) {
    const QRegularExpressionMatch Found = Match.next();
    EXPECT_EQ(sPicture.substr(Found.capturedStart(), Found.capturedLength()),
              std::string("Rrr").substr(0, Found.capturedLength()));
  }
}

TEST(ListingScanner, RowsThatTheDecoderWrites) {
  const CSyntaxHighlighter Highlighter;
  for (const char* const sFile : {"v6m.bin", "v7em.bin"}) {
    const QStringList asRow = DecodedRows(sFile);
    EXPECT_GT(asRow.size(), 50) << sFile;
    for (const QString& sRow : asRow) {
      SCOPED_TRACE(sRow.toStdString());
      ASSERT_EQ(BrokenRule(Highlighter, SYNTAX_ASM_LISTING, sRow, IDLE), "");
      const std::string sPicture = Picture(HighlightText(Highlighter, SYNTAX_ASM_LISTING, sRow), sRow.size());
      EXPECT_EQ(sPicture[0], 'M');
      EXPECT_EQ(sPicture.find('M', 1), std::string::npos) << sPicture;
      CheckRegisters(sRow, sPicture);
    }
  }
}

}  // namespace
