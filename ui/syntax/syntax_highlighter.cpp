#include "ui/syntax/syntax_highlighter.h"

#include <algorithm>
#include <limits>

#include "shell/settings/color_ids.h"
#include "ui/syntax/listing_scanner.h"
#include "ui/syntax/source_scanner.h"

namespace {

struct SUFFIX_ROW {
  QStringView sSuffix;
  SYNTAX_LANGUAGE Language;
};

constexpr SUFFIX_ROW SUFFIXES[] = {
    {u"c", SYNTAX_C},     {u"h", SYNTAX_C},       {u"cpp", SYNTAX_CPP},
    {u"hpp", SYNTAX_CPP}, {u"s", SYNTAX_GNU_ASM}, {u"asm", SYNTAX_ASM_LISTING},
};

constexpr int WINDOW_TEXT_COLOR = -1;

// By SYNTAX_KIND.
constexpr int COLORS[] = {
    WINDOW_TEXT_COLOR, COLOR_SYNTAX_COMMENT,  COLOR_SYNTAX_STRING, COLOR_SYNTAX_KEYWORD,   COLOR_SYNTAX_DIRECTIVE,
    WINDOW_TEXT_COLOR, COLOR_SYNTAX_MNEMONIC, COLOR_SYNTAX_LABEL,  COLOR_SYNTAX_IMMEDIATE, COLOR_SYNTAX_REGISTER,
};
static_assert(std::size(COLORS) == SYNTAX_REGISTER + 1);

constexpr qsizetype MAX_TEXT_CHARS = std::numeric_limits<I32>::max();

SYNTAX_STATE StartState(I32 State) {
  return State > SYNTAX_IDLE && State <= SYNTAX_IN_DIRECTIVE ? static_cast<SYNTAX_STATE>(State) : SYNTAX_IDLE;
}

I32 ColumnAfter(I32 Column, I32 NumColumns) {
  const I64 Sum = I64{Column} + NumColumns;
  return static_cast<I32>(std::clamp<I64>(Sum, std::numeric_limits<I32>::min(), std::numeric_limits<I32>::max()));
}

// An empty text counts as one gap.
size_t NumGaps(const std::vector<TextSpan>& Spans, I32 TextLength) {
  size_t Count = 0;
  I32 Pos = 0;
  for (const TextSpan& Span : Spans) {
    if (Span.Start > Pos) ++Count;
    Pos = Span.Start + Span.Length;
  }
  return Pos < TextLength || TextLength == 0 ? Count + 1 : Count;
}

void Fill(QChar* pText, TextSpan Span, QChar FillChar) {
  for (I32 i = Span.Start; i < Span.Start + Span.Length; ++i) {
    if (pText[i] != u'\r') pText[i] = FillChar;
  }
}

}  // namespace

SYNTAX_LANGUAGE CSyntaxHighlighter::GetLanguage(QStringView sSuffix) {
  const auto* const pRow = std::ranges::find(SUFFIXES, sSuffix, &SUFFIX_ROW::sSuffix);
  return pRow == std::end(SUFFIXES) ? SYNTAX_PLAIN : pRow->Language;
}

int CSyntaxHighlighter::GetColorID(SYNTAX_KIND Kind) {
  return Kind < std::size(COLORS) ? COLORS[Kind] : WINDOW_TEXT_COLOR;
}

void CSyntaxHighlighter::Highlight(SYNTAX_LANGUAGE Language, QStringView sText, std::vector<TextSpan>& Spans,
                                   std::vector<SYNTAX_KIND>& Kinds, I32& State) const {
  Spans.clear();
  Kinds.clear();
  const SPAN_LIST Out{Spans, Kinds};
  const std::u16string_view sScanned(sText.utf16(), static_cast<size_t>(std::min(sText.size(), MAX_TEXT_CHARS)));
  if (Language == SYNTAX_ASM_LISTING) {
    const MNEMONIC_COLUMNS Columns{m_StartColumn, ColumnAfter(m_StartColumn, m_MnemonicColumns)};
    State = CListingScanner(sScanned, Columns, Out).Run();
  } else {
    State = CSourceScanner(Language, sScanned, Out).Run(StartState(State));
  }
}

// In place, from the end: every row that is painted comes through here.
void CSyntaxHighlighter::FillGaps(std::vector<TextSpan>& Spans, std::vector<SYNTAX_KIND>& Kinds, I32 TextLength) {
  size_t From = Spans.size();
  size_t To = From + NumGaps(Spans, TextLength);
  Spans.resize(To);
  Kinds.resize(To);
  const auto PutBefore = [&](TextSpan Span, SYNTAX_KIND Kind) {
    --To;
    Spans[To] = Span;
    Kinds[To] = Kind;
  };
  I32 End = TextLength;
  while (From > 0) {
    const TextSpan Span = Spans[--From];
    const I32 SpanEnd = Span.Start + Span.Length;
    if (SpanEnd < End) PutBefore({SpanEnd, End - SpanEnd}, SYNTAX_DEFAULT);
    PutBefore(Span, Kinds[From]);
    End = Span.Start;
  }
  if (To > 0) PutBefore({0, End}, SYNTAX_DEFAULT);
}

void CSyntaxHighlighter::EraseCommentsAndStrings(SYNTAX_LANGUAGE Language, QString& sText, QChar FillChar) {
  const CSyntaxHighlighter Highlighter;
  std::vector<TextSpan> Spans;
  std::vector<SYNTAX_KIND> Kinds;
  I32 State = SYNTAX_IDLE;
  QChar* const pText = sText.data();
  for (qsizetype Start = 0; Start < sText.size();) {
    const qsizetype LineFeed = sText.indexOf(u'\n', Start);
    const qsizetype End = LineFeed < 0 ? sText.size() : LineFeed;
    Highlighter.Highlight(Language, QStringView(pText + Start, End - Start), Spans, Kinds, State);
    for (size_t i = 0; i < Spans.size(); ++i) {
      if (Kinds[i] == SYNTAX_COMMENT || Kinds[i] == SYNTAX_STRING) Fill(pText + Start, Spans[i], FillChar);
    }
    Start = End + 1;
  }
}
