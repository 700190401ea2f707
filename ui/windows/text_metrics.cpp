#include "ui/windows/text_metrics.h"

#include <QFontMetricsF>
#include <algorithm>
#include <cmath>

namespace {

constexpr unsigned FIRST_PRINTABLE = 0x20;
constexpr unsigned LAST_PRINTABLE = 0x7E;
constexpr qreal SAME_WIDTH = 0.01;  // pixels

char32_t CharAt(QStringView sRow, int Column) {
  const QChar First = sRow[Column];
  if (First.isHighSurrogate() && Column + 1 < sRow.size() && sRow[Column + 1].isLowSurrogate()) {
    return QChar::surrogateToUcs4(First, sRow[Column + 1]);
  }
  return First.unicode();
}

// In the midst of what a cursor moves over in one step.
bool IsInside(QStringView sRow, int Column) {
  if (Column <= 0 || Column >= sRow.size()) return false;
  if (sRow[Column].isLowSurrogate() && sRow[Column - 1].isHighSurrogate()) return true;
  return IsCombining(CharAt(sRow, Column));
}

}  // namespace

bool IsPrintableAscii(QStringView sText) {
  unsigned NumOthers = 0;
  for (const QChar Char : sText) {
    NumOthers += static_cast<unsigned>(Char.unicode()) - FIRST_PRINTABLE > LAST_PRINTABLE - FIRST_PRINTABLE ? 1 : 0;
  }
  return NumOthers == 0;
}

bool IsCombining(char32_t Char) {
  if (Char < 0x300) return false;
  const QChar::Category Category = QChar::category(Char);
  return Category == QChar::Mark_NonSpacing || Category == QChar::Mark_Enclosing || Category == QChar::Other_Format;
}

void CTextMetrics::SetFont(const QFont& Font) {
  m_Font = Font;
  m_Font.setKerning(false);
  const QFontMetricsF Metrics(m_Font);
  for (char16_t Char = 0; Char < NUM_ASCII; ++Char) {
    m_aWidth[Char] = Metrics.horizontalAdvance(QChar(std::max<char16_t>(Char, FIRST_PRINTABLE)));
  }
  const auto First = m_aWidth.begin() + FIRST_PRINTABLE;
  const auto [Narrow, Broad] = std::minmax_element(First, m_aWidth.begin() + LAST_PRINTABLE + 1);
  m_bFixedPitch = *Broad - *Narrow < SAME_WIDTH;
  const QFontMetrics Whole(m_Font);
  m_RowHeight = std::max(1, Whole.height());
  m_Ascent = Whole.ascent();
  m_Wide.clear();
  FindGlyphs();
}

void CTextMetrics::FindGlyphs() {
  m_RawFont = QRawFont::fromFont(m_Font);
  QString sAscii(NUM_ASCII, QLatin1Char(' '));
  for (unsigned Char = FIRST_PRINTABLE; Char <= LAST_PRINTABLE; ++Char)
    sAscii[Char] = QChar(static_cast<char16_t>(Char));
  m_Glyphs = m_RawFont.glyphIndexesForString(sAscii);
  if (m_Glyphs.size() != NUM_ASCII || m_Glyphs.contains(0)) m_Glyphs.clear();
}

qreal CTextMetrics::WideWidth(QStringView sRow, int Column) const {
  if (sRow[Column].isLowSurrogate() && Column > 0 && sRow[Column - 1].isHighSurrogate()) return 0;
  const char32_t Char = CharAt(sRow, Column);
  if (IsCombining(Char)) return 0;
  const auto Known = m_Wide.constFind(Char);
  if (Known != m_Wide.constEnd()) return *Known;
  return m_Wide[Char] = QFontMetricsF(m_Font).horizontalAdvance(QString::fromUcs4(&Char, 1));
}

qreal CTextMetrics::WidthAt(QStringView sRow, int Column, qreal x) const {
  const char16_t Char = sRow[Column].unicode();
  if (Char == u'\t') {
    const qreal Stop = m_TabSpacing * CharWidth();
    return (std::floor(x / Stop + SAME_WIDTH) + 1) * Stop - x;
  }
  return Char < NUM_ASCII ? m_aWidth[Char] : WideWidth(sRow, Column);
}

qreal CTextMetrics::XOf(QStringView sRow, int Column) const {
  Column = std::clamp(Column, 0, static_cast<int>(sRow.size()));
  if (IsUniform(sRow.left(Column))) return Column * CharWidth();
  qreal x = 0;
  for (int i = 0; i < Column; ++i) x += WidthAt(sRow, i, x);
  return x;
}

int CTextMetrics::ColumnAt(QStringView sRow, qreal x) const {
  const int Length = static_cast<int>(sRow.size());
  if (x < 0) return 0;
  if (IsUniform(sRow)) return static_cast<int>(std::min<qreal>(Length, std::floor(x / CharWidth())));
  qreal Left = 0;
  for (int i = 0; i < Length; ++i) {
    Left += WidthAt(sRow, i, Left);
    if (x < Left) return i;
  }
  return Length;
}

int CTextMetrics::NearestColumn(QStringView sRow, qreal x) const {
  const int Column = ColumnAt(sRow, x);
  if (Column >= sRow.size()) return static_cast<int>(sRow.size());
  const qreal Left = XOf(sRow, Column);
  const bool bRightHalf = x - Left >= WidthAt(sRow, Column, Left) / 2;
  return bRightHalf ? NextColumn(sRow, Column) : Column;
}

int CTextMetrics::NextColumn(QStringView sRow, int Column) {
  ++Column;
  while (IsInside(sRow, Column)) ++Column;
  return Column;
}

int CTextMetrics::PreviousColumn(QStringView sRow, int Column) {
  --Column;
  while (IsInside(sRow, Column)) --Column;
  return Column;
}
