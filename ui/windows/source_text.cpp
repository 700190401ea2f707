#include "ui/windows/source_text.h"

#include <algorithm>

bool CSourceText::HasLineAtEnd() const {
  return m_bOpenEnd || (!m_sText.isEmpty() && !m_sText.endsWith(QLatin1Char('\n')));
}

std::vector<int> CSourceText::Split(int From, int To, bool bLast) const {
  std::vector<int> Starts;
  const char16_t* const pText = reinterpret_cast<const char16_t*>(m_sText.utf16());
  for (int Start = From; Start < To;) {
    Starts.push_back(Start);
    const char16_t* const pEnd =
        std::char_traits<char16_t>::find(pText + Start, static_cast<size_t>(To - Start), u'\n');
    Start = pEnd ? static_cast<int>(pEnd - pText) + 1 : To;
  }
  if (bLast) {
    const bool bEndsWithFeed = m_sText.isEmpty() || m_sText.endsWith(QLatin1Char('\n'));
    if (HasLineAtEnd() && bEndsWithFeed) Starts.push_back(To);
  }
  return Starts;
}

void CSourceText::Set(const QString& sText, bool bOpenEnd) {
  m_sText = sText;
  m_bOpenEnd = bOpenEnd;
  m_Starts = Split(0, Size(), true);
  m_Starts.push_back(Size() + (HasLineAtEnd() ? 1 : 0));
}

void CSourceText::OpenEnd() {
  if (!m_bOpenEnd) Set(m_sText, true);
}

QStringView CSourceText::Line(int Line) const {
  if (Line < 0 || Line >= NumLines()) return {};
  const int Start = m_Starts[static_cast<size_t>(Line)];
  return QStringView(m_sText).mid(Start, m_Starts[static_cast<size_t>(Line) + 1] - 1 - Start);
}

int CSourceText::StartOf(int Line) const {
  if (Line < 0) return 0;
  return Line < NumLines() ? m_Starts[static_cast<size_t>(Line)] : Size();
}

int CSourceText::LineAt(int Position) const {
  const auto Next = std::upper_bound(m_Starts.begin(), m_Starts.end() - 1, Position);
  return std::max(0, static_cast<int>(Next - m_Starts.begin()) - 1);
}

LINE_CHANGE CSourceText::Replace(int Position, int NumRemoved, QStringView sAdded) {
  Position = std::clamp(Position, 0, Size());
  NumRemoved = std::clamp(NumRemoved, 0, Size() - Position);
  const int First = LineAt(Position);
  const int Last = LineAt(Position + NumRemoved);
  const bool bLinesAlone = Position == StartOf(First) && Position + NumRemoved == StartOf(Last) && Last < NumLines() &&
                           (sAdded.isEmpty() || sAdded.back() == QLatin1Char('\n'));
  const int From = StartOf(First);
  const int Moved = static_cast<int>(sAdded.size()) - NumRemoved;
  const bool bToEnd = Last + 1 >= NumLines();
  const int To = bToEnd ? -1 : StartOf(Last + 1) + Moved;
  m_sText.replace(Position, NumRemoved, sAdded.data(), sAdded.size());

  const std::vector<int> Starts = Split(From, bToEnd ? Size() : To, bToEnd);
  const int NumOld = std::min(Last + 1, NumLines()) - First;
  const auto FirstStart = m_Starts.begin() + First;
  if (NumOld == static_cast<int>(Starts.size())) {
    std::copy(Starts.begin(), Starts.end(), FirstStart);
  } else {
    m_Starts.insert(m_Starts.erase(FirstStart, FirstStart + NumOld), Starts.begin(), Starts.end());
  }
  const auto FirstMoved = m_Starts.begin() + First + static_cast<std::ptrdiff_t>(Starts.size());
  std::for_each(FirstMoved, m_Starts.end(), [Moved](int& Start) { Start += Moved; });
  m_Starts.back() = Size() + (HasLineAtEnd() ? 1 : 0);
  const int NumNew = static_cast<int>(Starts.size());
  return bLinesAlone ? LINE_CHANGE{First, NumOld - 1, NumNew - 1} : LINE_CHANGE{First, NumOld, NumNew};
}
