#pragma once

#include <QHash>
#include <QStringView>
#include <vector>

#include "ui/syntax/syntax_highlighter.h"
#include "ui/windows/source_text.h"

// The coloured pieces of a row, without gaps.
struct ROW_SPANS {
  std::vector<TextSpan> Spans;
  std::vector<SYNTAX_KIND> Kinds;
  bool bAscii = false;  // nothing but printable ASCII
};

// The colours of a text's lines. One pass over the text finds the state in which each line begins, so that a line can
// be coloured alone; a line's spans are made when they are first asked for, and kept.
class CSourceColors {
public:
  void SetText(const CSourceText& Text, SYNTAX_LANGUAGE Language);
  // After a change of the text. The line up to which others look different now.
  int Update(const CSourceText& Text, const LINE_CHANGE& Change);
  // Valid until the next question; Line from 0.
  const ROW_SPANS& SpansOf(int Line, QStringView sText);
  // Of the text of an instruction row, whose mnemonics stand from a column on.
  static ROW_SPANS InstructionSpans(QStringView sText, int MnemonicColumn);

private:
  SYNTAX_LANGUAGE m_Language = SYNTAX_PLAIN;
  std::vector<U8> m_States;  // SYNTAX_STATE at each line's start
  QHash<int, ROW_SPANS> m_Spans;
};
