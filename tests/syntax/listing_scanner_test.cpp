// Spans of disassembly rows, made up and real.

#include <cstring>

#include <gtest/gtest.h>

#include <QFile>
#include <QRegularExpression>

#include "core/decoder/disasm.h"
#include "span_rules.h"

namespace {

constexpr I32 IDLE = SYNTAX_IDLE;
constexpr I32 IMMEDIATE = SYNTAX_IN_IMMEDIATE;
constexpr int MNEMONIC_COLUMNS = CSyntaxHighlighter::DEFAULT_MNEMONIC_COLUMNS;

// The text, and on the line below it the picture of its spans.
struct LISTING_ROW {
  int StartColumn;
  int MnemonicColumns;
  I32 StateOut;
  const char* sTextAndPicture;
};

TEST(ListingScanner, RowsOfDisassembly) {
  const LISTING_ROW ROWS[] = {
      {0, 12, IMMEDIATE, R"(
MOV R0, #0x10
Mmm.Rr..Vvvvv)"},
      {0, 12, IDLE, R"(
BL          <main+4>
Mm..........Llllllll)"},
      {0, 12, IDLE, R"(
B           Reset_Handler
M...........Lllllllllllll)"},
      {0, 12, IDLE, R"(
B loop
M.Mmmm)"},
      {0, 12, IDLE, R"(
BX          LR
Mm..........Rr)"},
      {0, 12, IDLE, R"(
LDR.W       R11, [PC, #-0x4]
Mmmmm.......Rrr...Rr..Vvvvv.)"},
      {0, 12, IDLE, R"(
PUSH        {R4-R6,LR}
Mmmm.........Rr....Rr.)"},
      {0, 12, IDLE, R"(
ADD.W       R12, SP, #8, LSL
Mmmmm.......Ooo..Rr..Vvv.Lll)"},
      {0, 12, IDLE, R"(
[R0,#-4,R3] r1 #0xABCDEFGH (
.Rr.VvvvRr..Oo.Vvvvvvvvv....)"},
      {20, 12, IMMEDIATE, R"(
08000120  BEEF      MOVS        R0, #1
..........Oooo......Mmmm........Rr..Vv)"},
      {2, 3, IDLE, R"(
A B C D E
O.M.M.O.L)"},
      {0, 12, IDLE, R"(
<a <b> R0
Llllll.Rr)"},
      {0, 12, IDLE, R"(
NOP <main
Mmm.Lllll)"},
      {0, 12, IDLE, R"(
R0<x>#1#2 ü
RrLllVvVv..)"},
  };
  for (const LISTING_ROW& Row : ROWS) {
    SCOPED_TRACE(Row.sTextAndPicture);
    const QStringList asLine = QString::fromUtf8(Row.sTextAndPicture).split(u'\n');
    const CSyntaxHighlighter Highlighter(Row.StartColumn, Row.MnemonicColumns);
    for (const I32 StateIn : {IDLE, I32{SYNTAX_IN_BLOCK_COMMENT}, IMMEDIATE, I32{SYNTAX_IN_LABEL}, -1}) {
      const HIGHLIGHTED Text = HighlightText(Highlighter, SYNTAX_ASM_LISTING, asLine[1], StateIn);
      ASSERT_EQ(BrokenOrder(Text, asLine[1].size()), "");
      EXPECT_EQ(Picture(Text, asLine[1].size()), asLine[2].toStdString());
      EXPECT_EQ(Text.State, Row.StateOut);
    }
  }
}

// The instructions of a code image as rows, operands at the column behind the mnemonic.
QStringList DecodedRows(const char* sFile) {
  QFile File(QStringLiteral(VEXOR_SOURCE_DIR "/tests/decoder/data/") + QLatin1String(sFile));
  if (!File.open(QIODevice::ReadOnly)) return {};
  const QByteArray Code = File.readAll();
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
  static const QRegularExpression REGISTER(QStringLiteral("(?<=[ \\[{,])(SP|PC|LR|R[0-9]|R1[01])(?![A-Za-z0-9_.])"));
  for (auto Match = REGISTER.globalMatch(sRow); Match.hasNext();) {
    const QRegularExpressionMatch Found = Match.next();
    EXPECT_EQ(sPicture.substr(Found.capturedStart(), Found.capturedLength()),
              std::string("Rrr").substr(0, Found.capturedLength()));
  }
}

TEST(ListingScanner, RowsThatTheDecoderWrites) {
  const CSyntaxHighlighter Highlighter;
  for (const char* const sFile : {"cortex-m0.bin", "cortex-m4f.bin", "cortex-m33.bin"}) {
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
