#include "ui/windows/line_expansions.h"

#include <algorithm>

std::vector<CLineExpansions::EXPANSION>::const_iterator CLineExpansions::FirstFrom(int Line) const {
  return std::ranges::lower_bound(m_List, Line, {}, &EXPANSION::Line);
}

void CLineExpansions::CountRows() {
  int NumBefore = 0;
  for (EXPANSION& Expansion : m_List) {
    Expansion.NumBefore = NumBefore;
    NumBefore += static_cast<int>(Expansion.Rows.size());
  }
}

void CLineExpansions::SetAll(std::vector<EXPANSION> All) {
  m_List = std::move(All);
  CountRows();
}

bool CLineExpansions::Open(int Line, INSTRUCTION_ROWS Rows) {
  const auto Place = FirstFrom(Line);
  if (Rows.empty() || (Place != m_List.end() && Place->Line == Line)) return false;
  m_List.insert(Place, {Line, std::move(Rows)});
  CountRows();
  return true;
}

bool CLineExpansions::Close(int Line) {
  const auto Place = FirstFrom(Line);
  if (Place == m_List.end() || Place->Line != Line) return false;
  m_List.erase(Place);
  CountRows();
  return true;
}

const INSTRUCTION_ROWS* CLineExpansions::Find(int Line) const {
  const auto Place = FirstFrom(Line);
  return Place != m_List.end() && Place->Line == Line ? &Place->Rows : nullptr;
}

int CLineExpansions::NumRowsBefore(int Line) const {
  const auto Place = FirstFrom(Line);
  if (Place == m_List.begin()) return 0;
  const EXPANSION& Last = *std::prev(Place);
  return Last.NumBefore + static_cast<int>(Last.Rows.size());
}

ROW_ORIGIN CLineExpansions::OriginOf(int Row) const {
  // The last opened line whose source row is at or above the row.
  const auto Behind = std::ranges::upper_bound(
      m_List, Row, {}, [](const EXPANSION& Expansion) { return Expansion.Line + Expansion.NumBefore; });
  if (Behind == m_List.begin()) return {Row};
  const EXPANSION& Nearest = *std::prev(Behind);
  const int NumRows = static_cast<int>(Nearest.Rows.size());
  const int Distance = Row - Nearest.Line - Nearest.NumBefore;
  if (Distance >= 1 && Distance <= NumRows) return {Nearest.Line, Distance - 1};
  return {Distance == 0 ? Nearest.Line : Row - Nearest.NumBefore - NumRows};
}

int CLineExpansions::RowOf(const ROW_ORIGIN& Origin) const {
  const INSTRUCTION_ROWS* const pRows = Origin.Inst >= 0 ? Find(Origin.Line) : nullptr;
  const int Inst = pRows ? std::min(Origin.Inst + 1, static_cast<int>(pRows->size())) : 0;
  return Origin.Line + NumRowsBefore(Origin.Line) + Inst;
}

void CLineExpansions::ReplaceLines(int First, int NumOld, int NumNew) {
  const auto IsGone = [=](const EXPANSION& Expansion) {
    const bool bKept = Expansion.Line == First && NumNew > 0;
    return Expansion.Line >= First && Expansion.Line < First + NumOld && !bKept;
  };
  std::erase_if(m_List, IsGone);
  for (EXPANSION& Expansion : m_List) {
    if (Expansion.Line >= First + NumOld) Expansion.Line += NumNew - NumOld;
  }
  CountRows();
}
