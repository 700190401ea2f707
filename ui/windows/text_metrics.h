#pragma once

#include <array>

#include <QFont>
#include <QHash>
#include <QRawFont>
#include <QStringView>

// Whether a text has neither control characters nor any beyond ASCII.
bool IsPrintableAscii(QStringView sText);

// Columns of a row and pixels of a font. A column is one UTF-16 unit; the second of a pair and a combining mark take no
// room. Every character has its place by the widths of those ahead of it, each taken alone, so that what is painted
// piece by piece and what is clicked on agree. Main thread.
class CTextMetrics {
public:
  CTextMetrics() { SetFont(QFont()); }
  void SetFont(const QFont& Font);
  // The font to paint with: without kerning.
  const QFont& Font() const { return m_Font; }
  // Columns between tab stops, at least 1.
  void SetTabSpacing(int Columns) { m_TabSpacing = std::max(1, Columns); }
  int TabSpacing() const { return m_TabSpacing; }
  // Width of "0".
  qreal CharWidth() const { return m_aWidth['0']; }
  int RowHeight() const { return m_RowHeight; }
  int Ascent() const { return m_Ascent; }

  // Left edge of a column; its right edge, for the row's length, is the row's width.
  qreal XOf(QStringView sRow, int Column) const;
  // Column whose left edge is nearest to x, at which a click puts the cursor.
  int NearestColumn(QStringView sRow, qreal x) const;
  // Column whose character covers x; the row's length behind its end.
  int ColumnAt(QStringView sRow, qreal x) const;
  // Width of the character at a column that begins at x.
  qreal WidthAt(QStringView sRow, int Column, qreal x) const;
  // All characters of ASCII are equally wide.
  bool IsFixedPitch() const { return m_bFixedPitch; }
  // The glyphs of ASCII, to paint a row without working out its layout; none where the font lacks one of them.
  const QRawFont& RawFont() const { return m_RawFont; }
  bool HasGlyphs() const { return !m_Glyphs.isEmpty(); }
  quint32 GlyphOf(QChar Ascii) const { return m_Glyphs[Ascii.unicode()]; }
  // The next or the last column at which a character begins.
  static int NextColumn(QStringView sRow, int Column);
  static int PreviousColumn(QStringView sRow, int Column);

private:
  void FindGlyphs();
  bool IsUniform(QStringView sRow) const { return m_bFixedPitch && IsPrintableAscii(sRow); }
  qreal WideWidth(QStringView sRow, int Column) const;

  static constexpr int NUM_ASCII = 128;
  QFont m_Font;
  std::array<qreal, NUM_ASCII> m_aWidth = {};
  bool m_bFixedPitch = false;
  QRawFont m_RawFont;
  QList<quint32> m_Glyphs;  // of all ASCII characters
  int m_RowHeight = 16;
  int m_Ascent = 12;
  int m_TabSpacing = 4;
  mutable QHash<char32_t, qreal> m_Wide;  // widths of other characters
};

// Whether a character takes no room of its own.
bool IsCombining(char32_t Char);
