#include "ui/windows/source_painter.h"

#include <QGlyphRun>
#include <algorithm>
#include <cmath>

#include "core/vcore.h"
#include "shell/look/look.h"
#include "shell/settings/colors.h"

namespace {

constexpr int MARKED_NUMBER_DARKER = 180;  // percent, of a line number on a light row
constexpr int CURSOR_WIDTH = 1;            // pixels
constexpr int LIGHT_GROUND = 140;          // lightness above which a row's colour needs dark text
constexpr int DARKER = 110;                // percent, of the cursor's row in a second group of instructions
constexpr int SELECTION_ALPHA = 110;
constexpr int SELECTION_ALPHA_NO_FOCUS = 70;

// The neutral grounds are made for a light palette: how much of the text's colour they hold on a dark one, in percent.
struct NEUTRAL_GROUND {
  U32 ColorID;
  int TextShare;
};
constexpr NEUTRAL_GROUND NEUTRAL_GROUNDS[] = {
    {COLOR_HIGHLIGHT_LIGHT, 20}, {COLOR_INLINE_ASM_BACKG, 6}, {COLOR_INLINE_ASM_BACKG_ALTERNATE, 10}};

bool IsLight(const QColor& Ground) {
  return Ground.isValid() && Ground.lightness() > LIGHT_GROUND;
}

QColor Mixed(const QColor& a, const QColor& b, int ShareOfB) {
  const auto Mix = [ShareOfB](int x, int y) { return x + (y - x) * ShareOfB / 100; };
  return {Mix(a.red(), b.red()), Mix(a.green(), b.green()), Mix(a.blue(), b.blue())};
}

QColor GroundColor(U32 ColorID, const QPalette& Palette) {
  if (!IsDarkPalette() || IsColorModified(ColorID)) return GetColor(ColorID);
  const auto* const pNeutral = std::ranges::find(NEUTRAL_GROUNDS, ColorID, &NEUTRAL_GROUND::ColorID);
  if (pNeutral == std::end(NEUTRAL_GROUNDS)) return GetColor(ColorID);
  return Mixed(Palette.color(QPalette::Base), Palette.color(QPalette::Text), pNeutral->TextShare);
}

bool IsBlank(QStringView sText) {
  return std::ranges::all_of(sText, [](QChar Char) { return Char.unicode() <= u' '; });
}

}  // namespace

// A row's text with all that its painting needs.
struct CSourcePainter::TEXT_ROW {
  QStringView sText;
  const ROW_SPANS& Spans;
  bool bLightGround;
  qreal x;         // of its first column in the viewport
  qreal Baseline;  // y
  qreal ClipLeft;
  qreal ClipRight;
};

ROW_GROUND CSourcePainter::GroundOf(int Row) const {
  ROW_GROUND Result;
  const INSTRUCTION_ROW* const pInstruction = m_S.Rows.InstructionAt(Row);
  Result.bInstruction = pInstruction != nullptr;
  Result.bEmpty = m_S.Rows.RowText(Row).isEmpty();
  Result.bHoldsCursor = Row == m_S.Cursor.Pos().y() && !m_S.Cursor.HasSelection() && !m_S.Layout.Options.bMessage;
  Result.bMarksCursor = Result.bHoldsCursor && m_S.bFocus;
  Result.Line = m_S.Rows.LineOfRow(Row);
  if (pInstruction) {
    Result.Addr = pInstruction->Addr;
    Result.Group = pInstruction->Group;
    return Result;
  }
  if (const INSTRUCTION_ROWS* const pRows = m_S.Rows.InstructionsOf(Result.Line)) {
    Result.bExpanded = true;
    Result.bOneInstruction =
        pRows->back().Addr + pRows->back().Length - pRows->front().Addr <= VCore::GetInfo().MaxInstLen;
    Result.bColorBelow = std::ranges::any_of(
        *pRows, [this](const INSTRUCTION_ROW& Instruction) { return m_S.Highlights.HasAddr(Instruction.Addr); });
  }
  return Result;
}

QColor CSourcePainter::Ground(int Row) const {
  const std::optional<ROW_COLOR> Color = m_S.Highlights.ColorOf(GroundOf(Row));
  if (!Color) return {};
  const QColor Result = GroundColor(Color->ColorID, m_S.Palette);
  if (!Color->bDarker) return Result;
  return IsDarkPalette() ? Result.lighter(DARKER) : Result.darker(DARKER);
}

void CSourcePainter::PaintGrounds(int First, int Last) {
  for (int Row = First; Row <= Last; ++Row) {
    const QColor Color = Ground(Row);
    if (Color.isValid()) m_Painter.fillRect(0, YOf(Row), m_S.Size.width(), m_S.Metrics.RowHeight(), Color);
  }
}

void CSourcePainter::PaintSelection(int First, int Last) {
  if (!m_S.Cursor.HasSelection()) return;
  const TEXT_RANGE Range = m_S.Cursor.Selection();
  QColor Color = m_S.Palette.color(QPalette::Highlight);
  Color.setAlpha(m_S.bFocus ? SELECTION_ALPHA : SELECTION_ALPHA_NO_FOCUS);
  for (int Row = std::max(First, Range.Start.y()); Row <= std::min(Last, Range.End.y()); ++Row) {
    const int From = Row == Range.Start.y() ? Range.Start.x() : 0;
    const int To = Row == Range.End.y() ? Range.End.x() : m_S.Rows.RowLength(Row);
    const qreal Left = m_S.Layout.XOf({From, Row});
    // A selected line feed is shown, too.
    const qreal Right = m_S.Layout.XOf({To, Row}) + (Row == Range.End.y() ? 0 : m_S.Metrics.CharWidth());
    m_Painter.fillRect(QRectF(Left - m_S.ScrollX, YOf(Row), Right - Left, m_S.Metrics.RowHeight()), Color);
  }
}

void CSourcePainter::PaintText(int Row) {
  const QStringView sText = m_S.Rows.RowText(Row);
  if (sText.isEmpty()) return;
  const bool bSource = m_S.Rows.IsSource(Row);
  const int MnemonicColumn = m_S.Rows.MnemonicColumn();
  const ROW_SPANS InstructionSpans = bSource ? ROW_SPANS() : CSourceColors::InstructionSpans(sText, MnemonicColumn);
  const int Line = static_cast<int>(m_S.Rows.LineOfRow(Row)) - 1;
  const TEXT_ROW Text{sText,
                      bSource ? m_S.Colors.SpansOf(Line, sText) : InstructionSpans,
                      IsLight(Ground(Row)),
                      m_S.Layout.TextLeft() + m_S.Layout.Indent(Row) - m_S.ScrollX,
                      static_cast<qreal>(YOf(Row) + m_S.Metrics.Ascent()),
                      static_cast<qreal>(m_TextArea.left()),
                      static_cast<qreal>(m_TextArea.right() + 1)};
  if (m_S.Metrics.IsFixedPitch() && Text.Spans.bAscii) {
    PaintUniform(Text);
  } else {
    PaintMixed(Text);
  }
}

// Marked rows have colours of their own for a light ground; dark text stays readable on them in every palette.
const QColor& CSourcePainter::TextColor(SYNTAX_KIND Kind, bool bLightGround) {
  QColor& Color = m_aColor[Kind + (bLightGround ? NUM_KINDS : 0)];
  if (!Color.isValid()) {
    const int ColorID = CSyntaxHighlighter::GetColorID(Kind);
    const U32 ID = ColorID < 0 ? COLOR_SYNTAX_TEXT : static_cast<U32>(ColorID);
    Color = bLightGround ? GetColor(ID) : GetTextColor(ID);
  }
  return Color;
}

void CSourcePainter::PaintAscii(qreal x, qreal Baseline, QStringView sText) {
  if (!m_S.Metrics.HasGlyphs()) {
    m_Painter.drawText(QPointF(x, Baseline), sText.toString());
    return;
  }
  m_Glyphs.clear();
  m_Positions.clear();
  for (qsizetype i = 0; i < sText.size(); ++i) {
    if (sText[i] == QLatin1Char(' ')) continue;
    m_Glyphs.append(m_S.Metrics.GlyphOf(sText[i]));
    m_Positions.append({static_cast<qreal>(i) * m_S.Metrics.CharWidth(), 0});
  }
  QGlyphRun Run;
  Run.setRawFont(m_S.Metrics.RawFont());
  Run.setRawData(m_Glyphs.constData(), m_Positions.constData(), static_cast<int>(m_Glyphs.size()));
  m_Painter.drawGlyphRun(QPointF(x, Baseline), Run);
}

// Pieces lie at multiples of the width: only those in view are looked at, and what has the same colour is painted at
// once.
void CSourcePainter::PaintUniform(const TEXT_ROW& Row) {
  const qreal Width = m_S.Metrics.CharWidth();
  const int First = static_cast<int>(std::max(0.0, std::floor((Row.ClipLeft - Row.x) / Width)));
  const int End = static_cast<int>(std::ceil((Row.ClipRight - Row.x) / Width));
  const std::vector<TextSpan>& Spans = Row.Spans.Spans;
  const auto IsAhead = [First](const TextSpan& Span) { return Span.Start + Span.Length <= First; };
  const auto Begin = std::ranges::partition_point(Spans, IsAhead) - Spans.begin();
  for (size_t i = static_cast<size_t>(Begin); i < Spans.size() && Spans[i].Start < End;) {
    const QColor& Color = TextColor(Row.Spans.Kinds[i], Row.bLightGround);
    const int From = std::max(First, Spans[i].Start);
    int To = From;
    while (i < Spans.size() && Spans[i].Start < End && TextColor(Row.Spans.Kinds[i], Row.bLightGround) == Color) {
      To = std::min(End, Spans[i].Start + Spans[i].Length);
      ++i;
    }
    const QStringView sPiece = Row.sText.mid(From, To - From);
    if (IsBlank(sPiece)) continue;
    m_Painter.setPen(Color);
    PaintAscii(Row.x + From * Width, Row.Baseline, sPiece);
  }
}

// Runs of ASCII are painted at once, tabs not at all, and every other character at a place of its own, so that no font
// that it is taken from moves what follows.
void CSourcePainter::PaintPieces(const TEXT_ROW& Row, int Start, int End, qreal& x) {
  const auto IsPlain = [&Row](int Column) { return Row.sText[Column].unicode() - 0x20u < 0x5Fu; };
  for (int Column = Start; Column < End && Row.x + x < Row.ClipRight;) {
    const qreal Left = x;
    int Next = Column;
    if (IsPlain(Column)) {
      while (Next < End && IsPlain(Next)) x += m_S.Metrics.WidthAt(Row.sText, Next++, x);
    } else {
      Next = std::min(End, CTextMetrics::NextColumn(Row.sText, Column));
      for (int i = Column; i < Next; ++i) x += m_S.Metrics.WidthAt(Row.sText, i, x);
    }
    const QStringView sPiece = Row.sText.mid(Column, Next - Column);
    if (Row.x + x >= Row.ClipLeft && !IsBlank(sPiece)) {
      m_Painter.drawText(QPointF(Row.x + Left, Row.Baseline), sPiece.toString());
    }
    Column = Next;
  }
}

void CSourcePainter::PaintMixed(const TEXT_ROW& Row) {
  qreal x = 0;
  for (size_t i = 0; i < Row.Spans.Spans.size() && Row.x + x < Row.ClipRight; ++i) {
    const TextSpan& Span = Row.Spans.Spans[i];
    m_Painter.setPen(TextColor(Row.Spans.Kinds[i], Row.bLightGround));
    PaintPieces(Row, Span.Start, Span.Start + Span.Length, x);
  }
}

void CSourcePainter::PaintNumber(int Row) {
  const U32 Line = m_S.Rows.LineOfRow(Row);
  const U32 CursorLine = m_S.Rows.LineOfRow(m_S.Cursor.Pos().y());
  if (!m_S.Rows.IsSource(Row) || !m_S.Layout.ShowsLineNumber(Line, CursorLine)) return;
  m_Painter.setPen(IsLight(Ground(Row)) ? GetColor(COLOR_LINE_NUMBERS).darker(MARKED_NUMBER_DARKER)
                                        : GetTextColor(COLOR_LINE_NUMBERS));
  const QRect Column(0, YOf(Row), m_S.Layout.NumberWidth() - CSourceLayout::NUMBER_MARGIN, m_S.Metrics.RowHeight());
  m_Painter.drawText(Column, Qt::AlignRight | Qt::AlignVCenter, QString::number(Line));
}

// A box with a plus or a minus; below an opened line a stroke beside its instructions.
void CSourcePainter::PaintIndicator(int Row) {
  const int RowHeight = m_S.Metrics.RowHeight();
  const int Size = RowHeight / 2 | 1;
  const int Left = m_S.Layout.NumberWidth() + (m_S.Layout.BarWidth() - Size) / 2;
  const int Top = YOf(Row) + (RowHeight - Size) / 2;
  const QPoint Middle(Left + Size / 2, Top + Size / 2);
  m_Painter.setPen(IsLight(Ground(Row)) ? GetColor(COLOR_LINE_NUMBERS) : GetTextColor(COLOR_LINE_NUMBERS));
  const U32 Line = m_S.Rows.LineOfRow(Row);
  if (!m_S.Rows.IsSource(Row)) {
    const bool bLast = m_S.Rows.LineOfRow(Row + 1) != Line;
    m_Painter.drawLine(Middle.x(), YOf(Row), Middle.x(), bLast ? Middle.y() : YOf(Row) + RowHeight - 1);
    if (bLast) m_Painter.drawLine(Middle.x(), Middle.y(), Left + Size - 1, Middle.y());
    return;
  }
  if (!m_S.Rows.HasCode(Line)) return;
  m_Painter.drawRect(Left, Top, Size - 1, Size - 1);
  m_Painter.drawLine(Left + 2, Middle.y(), Left + Size - 3, Middle.y());
  if (!m_S.Rows.IsExpanded(Line)) m_Painter.drawLine(Middle.x(), Top + 2, Middle.x(), Top + Size - 3);
}

QRect CSourcePainter::CursorRect(const SOURCE_SCENE& Scene) {
  const TEXT_POS Pos = Scene.Cursor.Pos();
  const int x = static_cast<int>(std::round(Scene.Layout.XOf(Pos))) - Scene.ScrollX;
  const int RowHeight = Scene.Metrics.RowHeight();
  return {x, (Pos.y() - Scene.TopRow) * RowHeight, CURSOR_WIDTH, RowHeight};
}

void CSourcePainter::PaintCursor() {
  const QRect Cursor = CursorRect(m_S);
  if (!m_S.bFocus || !m_S.bCursorShown || m_S.Layout.Options.bMessage || m_S.Rows.NumRows() == 0) return;
  if (Cursor.x() < m_S.Layout.BarEnd()) return;
  m_Painter.fillRect(Cursor,
                     IsLight(Ground(m_S.Cursor.Pos().y())) ? QColor(Qt::black) : m_S.Palette.color(QPalette::Text));
}

void CSourcePainter::Paint(const QRect& Dirty) {
  m_Painter.fillRect(Dirty, m_S.Palette.color(QPalette::Base));
  const int RowHeight = m_S.Metrics.RowHeight();
  const int First = m_S.TopRow + std::max(0, Dirty.top() / RowHeight);
  const int Last = std::min(m_S.Rows.NumRows() - 1, m_S.TopRow + Dirty.bottom() / RowHeight);
  PaintGrounds(First, Last);
  m_TextArea = QRect(QPoint(m_S.Layout.BarEnd(), 0), QPoint(m_S.Size.width() - 1, m_S.Size.height() - 1)) & Dirty;
  m_Painter.setClipRect(m_TextArea);
  PaintSelection(First, Last);
  m_Painter.setFont(m_S.Metrics.Font());
  for (int Row = First; Row <= Last; ++Row) PaintText(Row);
  PaintCursor();
  m_Painter.setClipping(false);
  if (m_S.Layout.BarWidth() > 0) {
    for (int Row = First; Row <= Last; ++Row) PaintIndicator(Row);
  }
  const int NumberWidth = m_S.Layout.NumberWidth();
  if (NumberWidth == 0) return;
  m_Painter.setFont(m_S.Layout.LineNumberFont());
  for (int Row = First; Row <= Last; ++Row) PaintNumber(Row);
  // The default is made for a light ground; on a dark one it would be the brightest line of the window.
  const bool bOwnColor = IsDarkPalette() && !IsColorModified(COLOR_LINE_NUMBER_SEPARATOR);
  m_Painter.setPen(bOwnColor ? m_S.Palette.color(QPalette::Button) : GetColor(COLOR_LINE_NUMBER_SEPARATOR));
  m_Painter.drawLine(NumberWidth - 2, 0, NumberWidth - 2, m_S.Size.height());
}
