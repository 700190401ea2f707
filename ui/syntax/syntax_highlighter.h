#pragma once
// Turns a line of text into coloured spans by a single pass over its characters; a small state is carried from line to
// line for what may stay open, such as a block comment. Linear in the length of the text. Any thread.

#include <QString>
#include <QStringView>
#include <vector>

#include "base/types.h"

enum SYNTAX_LANGUAGE : U8 { SYNTAX_PLAIN, SYNTAX_C, SYNTAX_CPP, SYNTAX_GNU_ASM, SYNTAX_ASM_LISTING };

enum SYNTAX_KIND : U8 {
  SYNTAX_DEFAULT,
  SYNTAX_COMMENT,
  SYNTAX_STRING,
  SYNTAX_KEYWORD,
  SYNTAX_DIRECTIVE,
  SYNTAX_IDENTIFIER,
  SYNTAX_MNEMONIC,
  SYNTAX_LABEL,
  SYNTAX_IMMEDIATE,
  SYNTAX_REGISTER,
};

// What a text leaves open for the next one. Listings ignore the state in which they begin.
enum SYNTAX_STATE : I32 {
  SYNTAX_IDLE,
  SYNTAX_IN_BLOCK_COMMENT,
  SYNTAX_IN_LINE_COMMENT,
  SYNTAX_IN_ASM_COMMENT,
  SYNTAX_IN_WORD,
  SYNTAX_IN_STRING,
  SYNTAX_IN_PATH,
  SYNTAX_IN_DIRECTIVE,
  SYNTAX_IN_IMMEDIATE,  // this and the next two: listings only
  SYNTAX_IN_LISTING_WORD,
  SYNTAX_IN_LABEL,
};

// A run of characters, in UTF-16 units from the start of the text.
struct TextSpan {
  I32 Start;
  I32 Length;
};

class CSyntaxHighlighter {
public:
  // MnemonicColumns: width of the columns, from StartColumn on, in which mnemonics of SYNTAX_ASM_LISTING stand.
  explicit CSyntaxHighlighter(int StartColumn = 0, int MnemonicColumns = DEFAULT_MNEMONIC_COLUMNS)
      : m_StartColumn(StartColumn), m_MnemonicColumns(MnemonicColumns) {}

  static constexpr int DEFAULT_MNEMONIC_COLUMNS = 12;

  // By a file's suffix, compared exactly: "c" and "h", "cpp" and "hpp", "s", "asm"; SYNTAX_PLAIN for others.
  static SYNTAX_LANGUAGE GetLanguage(QStringView sSuffix);
  // COLOR_ID of a kind, or -1 where the window's own text colour is to be used.
  static int GetColorID(SYNTAX_KIND Kind);

  // Replaces Spans and Kinds, parallel lists in ascending order and without empty spans, by those of the text, which
  // may hold several lines and is scanned up to its 2^31st character. State is a SYNTAX_STATE: what the last call left,
  // 0 at the start of a document. A caller that knows that a line begins in a comment may pass that instead; what is no
  // state of the language counts as 0.
  void Highlight(SYNTAX_LANGUAGE Language, QStringView sText, std::vector<TextSpan>& Spans,
                 std::vector<SYNTAX_KIND>& Kinds, I32& State) const;

  // Inserts spans of kind SYNTAX_DEFAULT into lists that Highlight made of a text of TextLength characters so that the
  // spans cover the text without holes; an empty text gets one of length 0.
  static void FillGaps(std::vector<TextSpan>& Spans, std::vector<SYNTAX_KIND>& Kinds, I32 TextLength);

  // Overwrites comments, strings and #include paths with FillChar, line ends excepted, so that no word is found in them
  // and the rest keeps its place.
  static void EraseCommentsAndStrings(SYNTAX_LANGUAGE Language, QString& sText, QChar FillChar);

private:
  int m_StartColumn;
  int m_MnemonicColumns;
};
