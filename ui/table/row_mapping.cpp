#include "ui/table/row_mapping.h"

#include <utility>

void CRowMapping::Set(std::vector<int> Sources, int NumSources) {
  m_Sources = std::move(Sources);
  m_Rows.assign(static_cast<size_t>(NumSources), -1);
  Renumber(0);
}

void CRowMapping::Renumber(int From) {
  for (int Row = From; Row < NumRows(); ++Row) {
    m_Rows[static_cast<size_t>(m_Sources[static_cast<size_t>(Row)])] = Row;
  }
}

void CRowMapping::InsertSources(int First, int Last) {
  const int Count = Last - First + 1;
  m_Rows.insert(m_Rows.begin() + First, static_cast<size_t>(Count), -1);
  for (int& Source : m_Sources) {
    if (Source >= First) Source += Count;
  }
}

void CRowMapping::Show(int Pos, const std::vector<int>& Sources) {
  m_Sources.insert(m_Sources.begin() + Pos, Sources.begin(), Sources.end());
  Renumber(Pos);
}

void CRowMapping::Hide(int First, int Last) {
  for (int Row = First; Row <= Last; ++Row) m_Rows[static_cast<size_t>(m_Sources[static_cast<size_t>(Row)])] = -1;
  m_Sources.erase(m_Sources.begin() + First, m_Sources.begin() + Last + 1);
  Renumber(First);
}

void CRowMapping::RemoveSources(int First, int Last) {
  m_Rows.erase(m_Rows.begin() + First, m_Rows.begin() + Last + 1);
  const int Count = Last - First + 1;
  for (int& Source : m_Sources) {
    if (Source > Last) Source -= Count;
  }
}
