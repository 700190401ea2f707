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

void CSyntaxHighlighter::FillGaps(std::vector<TextSpan>& Spans, std::vector<SYNTAX_KIND>& Kinds, I32 TextLength) {
  std::vector<TextSpan> Filled;
  std::vector<SYNTAX_KIND> FilledKinds;
  Filled.reserve(2 * Spans.size() + 1);
  FilledKinds.reserve(2 * Spans.size() + 1);
  const SPAN_LIST Out{Filled, FilledKinds};
  I32 Pos = 0;
  for (size_t i = 0; i < Spans.size(); ++i) {
    const I32 End = Spans[i].Start + Spans[i].Length;
    Out.Add(Pos, Spans[i].Start, SYNTAX_DEFAULT);
    Out.Add(Spans[i].Start, End, Kinds[i]);
    Pos = End;
  }
  Out.Add(Pos, TextLength, SYNTAX_DEFAULT);
  if (TextLength == 0) {
    Filled.push_back({0, 0});
    FilledKinds.push_back(SYNTAX_DEFAULT);
  }
  Spans.swap(Filled);
  Kinds.swap(FilledKinds);
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
