#pragma once
// What holds for every text, and a picture of spans that can be read beside the text.

#include <string>

#include <QString>
#include <QStringList>
#include <QStringView>

#include "ui/syntax/syntax_highlighter.h"

struct HIGHLIGHTED {
  std::vector<TextSpan> Spans;
  std::vector<SYNTAX_KIND> Kinds;
  I32 State = SYNTAX_IDLE;
};

inline HIGHLIGHTED HighlightText(const CSyntaxHighlighter& Highlighter, SYNTAX_LANGUAGE Language, QStringView sText,
                                 I32 State = SYNTAX_IDLE) {
  HIGHLIGHTED Result{.State = State};
  Highlighter.Highlight(Language, sText, Result.Spans, Result.Kinds, Result.State);
  return Result;
}

// One letter for each character, by its kind: a capital letter where a span begins, "." where there is none.
inline std::string Picture(const HIGHLIGHTED& Text, qsizetype NumChars) {
  constexpr char LETTERS[] = "OCSKDIMLVR";
  std::string sPicture(static_cast<size_t>(NumChars), '.');
  for (size_t i = 0; i < Text.Spans.size(); ++i) {
    const char Letter = LETTERS[Text.Kinds[i]];
    sPicture.replace(Text.Spans[i].Start, Text.Spans[i].Length, Text.Spans[i].Length, static_cast<char>(Letter + 32));
    sPicture[Text.Spans[i].Start] = Letter;
  }
  return sPicture;
}

// Whether each character lies in a comment, "c", or in a string, "s"; "." elsewhere and for line feeds, which no line
// that stands alone holds.
inline std::string CommentsAndStrings(const HIGHLIGHTED& Text, QStringView sText) {
  std::string sPicture(static_cast<size_t>(sText.size()), '.');
  for (size_t i = 0; i < Text.Spans.size(); ++i) {
    if (Text.Kinds[i] != SYNTAX_COMMENT && Text.Kinds[i] != SYNTAX_STRING) continue;
    for (I32 c = Text.Spans[i].Start; c < Text.Spans[i].Start + Text.Spans[i].Length; ++c) {
      if (sText[c] != u'\n') sPicture[c] = Text.Kinds[i] == SYNTAX_COMMENT ? 'c' : 's';
    }
  }
  return sPicture;
}

// The same, line by line with the state carried on; State is that after the last line.
inline std::string CommentsAndStringsByLine(SYNTAX_LANGUAGE Language, QStringView sText, I32& State) {
  std::string sPicture;
  for (const QStringView sLine : sText.split(u'\n')) {
    const HIGHLIGHTED Line = HighlightText(CSyntaxHighlighter(), Language, sLine, State);
    State = Line.State;
    sPicture += (sPicture.empty() && sLine.data() == sText.data() ? "" : ".") + CommentsAndStrings(Line, sLine);
  }
  return sPicture;
}

inline std::string BrokenOrder(const HIGHLIGHTED& Text, qsizetype NumChars) {
  if (Text.Spans.size() != Text.Kinds.size()) return "lists of different lengths";
  I64 End = 0;
  for (size_t i = 0; i < Text.Spans.size(); ++i) {
    if (Text.Spans[i].Start < End || Text.Spans[i].Length < 1) return "spans that overlap, go back or are empty";
    if (Text.Kinds[i] > SYNTAX_REGISTER) return "no such kind";
    End = I64{Text.Spans[i].Start} + Text.Spans[i].Length;
  }
  return End > NumChars ? "a span beyond the text" : "";
}

inline std::string BrokenFill(HIGHLIGHTED Text, qsizetype NumChars) {
  const std::string sBefore = Picture(Text, NumChars);
  CSyntaxHighlighter::FillGaps(Text.Spans, Text.Kinds, static_cast<I32>(NumChars));
  I32 End = 0;
  for (const TextSpan& Span : Text.Spans) {
    if (Span.Start != End) return "a hole or an overlap after FillGaps";
    End += Span.Length;
  }
  if (End != NumChars || Text.Spans.size() != Text.Kinds.size() || Text.Spans.empty()) return "FillGaps misses the end";
  const std::string sAfter = Picture(Text, NumChars);
  for (size_t i = 0; i < sBefore.size(); ++i) {
    if (sBefore[i] != sAfter[i] && (sBefore[i] != '.' || (sAfter[i] | 32) != 'o')) return "FillGaps changed a span";
  }
  return "";
}

inline std::string BrokenErasure(SYNTAX_LANGUAGE Language, QStringView sText) {
  QString sErased = sText.toString();
  CSyntaxHighlighter::EraseCommentsAndStrings(Language, sErased, u' ');
  if (sErased.size() != sText.size()) return "the erased text has another length";
  I32 State = SYNTAX_IDLE;
  const std::string sPicture = CommentsAndStringsByLine(Language, sText, State);
  for (qsizetype i = 0; i < sText.size(); ++i) {
    const bool bErased = sPicture[i] != '.' && sText[i] != u'\r';
    if (sErased[i] != (bErased ? QChar(u' ') : sText[i])) return "too much or too little erased";
  }
  State = SYNTAX_IDLE;
  const std::string sRest = CommentsAndStringsByLine(Language, sErased, State);
  return sRest.find_first_not_of('.') != std::string::npos ? "comments or strings left after the erasure" : "";
}

// An empty text when all is well, otherwise what is broken.
inline std::string BrokenRule(const CSyntaxHighlighter& Highlighter, SYNTAX_LANGUAGE Language, QStringView sText,
                              I32 StartState) {
  const HIGHLIGHTED Text = HighlightText(Highlighter, Language, sText, StartState);
  if (std::string s = BrokenOrder(Text, sText.size()); !s.empty()) return s;
  if (std::string s = BrokenFill(Text, sText.size()); !s.empty()) return s;
  if (Language == SYNTAX_ASM_LISTING) {
    return Text.State == SYNTAX_IDLE || Text.State == SYNTAX_IN_IMMEDIATE ? "" : "a state that a listing cannot leave";
  }
  I32 State = StartState;
  if (CommentsAndStrings(Text, sText) != CommentsAndStringsByLine(Language, sText, State) || State != Text.State) {
    return "comments or strings differ line by line";
  }
  const bool bOpen = State == SYNTAX_IN_BLOCK_COMMENT || State == SYNTAX_IN_STRING || State == SYNTAX_IN_PATH;
  if (!bOpen && State != SYNTAX_IDLE) return "a state that no text can leave";
  return BrokenErasure(Language, sText);
}
