#pragma once

#include <QStringList>
#include <QTextLayout>
#include <vector>

#include "ui/syntax/syntax_highlighter.h"

// The colours of a text's rows. One pass over the text finds the state in which each row starts, so that a row can be
// coloured alone.
class CSourceColors {
public:
  void SetText(const QStringList& Rows, SYNTAX_LANGUAGE Language);
  // Formats for a row's text, which covers it whole. TabSpacing as in the text's expansion to columns; the ranges count
  // columns. bLightGround: the row has a light colour of its own, whatever the palette.
  QList<QTextLayout::FormatRange> FormatsOf(int Row, const QString& sText, int TabSpacing, bool bLightGround) const;

private:
  SYNTAX_LANGUAGE m_Language = SYNTAX_PLAIN;
  std::vector<I32> m_States;  // one for each row
};

// Tabs to blanks, so that columns and pixels agree.
QString ExpandTabs(const QString& sText, int TabSpacing);
