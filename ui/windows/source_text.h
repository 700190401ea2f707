#pragma once

#include <QString>
#include <QStringView>
#include <vector>

// What a replacement did to the lines: NumOld lines from First (from 0) on are NumNew others now. Where whole lines
// were inserted or removed it is these alone.
struct LINE_CHANGE {
  int First = 0;
  int NumOld = 0;
  int NumNew = 0;
};

// A document's text and where its lines lie in it. Lines count from 0 here and end with a line feed, which belongs to
// no line. Splitting takes one pass; a replacement looks at the lines that it touches and moves the starts of the rest.
class CSourceText {
public:
  // With bOpenEnd the empty line behind a final line feed counts too, so that there is something to write in.
  void Set(const QString& sText, bool bOpenEnd);
  // Lets the empty line behind a final line feed count from now on.
  void OpenEnd();
  const QString& Text() const { return m_sText; }
  int Size() const { return static_cast<int>(m_sText.size()); }
  int NumLines() const { return static_cast<int>(m_Starts.size()) - 1; }
  // Empty for a line that there is not.
  QStringView Line(int Line) const;
  // Position of a line's start; of the text's end for one behind the last.
  int StartOf(int Line) const;
  // The line that holds a position, line feeds included; the last one for the end of the text.
  int LineAt(int Position) const;
  // Position and number are brought into the text's bounds.
  LINE_CHANGE Replace(int Position, int NumRemoved, QStringView sAdded);

private:
  // Starts of the lines of [From, To); To is the start of a line, or with bLast the end of the text.
  std::vector<int> Split(int From, int To, bool bLast) const;
  bool HasLineAtEnd() const;

  QString m_sText;
  std::vector<int> m_Starts = {0};  // one more than lines: the last stands one behind the last line's line feed
  bool m_bOpenEnd = false;
};
