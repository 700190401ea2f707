#include "program/database/interval_tree.h"

#include <algorithm>

void CIntervalTree::Add(U32 Low, U32 High, U64 Value) {
  if (Low <= High) m_Intervals.push_back({Low, High, Value});
}

void CIntervalTree::Build() {
  std::stable_sort(m_Intervals.begin(), m_Intervals.end(), [](const INTERVAL& A, const INTERVAL& B) {
    return A.Low != B.Low ? A.Low < B.Low : A.High > B.High;
  });
  m_MaxHigh.resize(m_Intervals.size());
  BuildRange(0, m_Intervals.size());
}

U32 CIntervalTree::BuildRange(size_t First, size_t End) {
  if (First >= End) return 0;
  const size_t Root = First + (End - First) / 2;
  m_MaxHigh[Root] = std::max({m_Intervals[Root].High, BuildRange(First, Root), BuildRange(Root + 1, End)});
  return m_MaxHigh[Root];
}

void CIntervalTree::Clear() {
  m_Intervals.clear();
  m_MaxHigh.clear();
}

QList<U64> CIntervalTree::Find(U32 Point) const {
  QList<U64> Values;
  FindInRange(0, m_MaxHigh.size(), Point, Values);
  return Values;
}

void CIntervalTree::FindInRange(size_t First, size_t End, U32 Point, QList<U64>& Values) const {
  if (First >= End) return;
  const size_t Root = First + (End - First) / 2;
  if (m_MaxHigh[Root] < Point) return;
  FindInRange(First, Root, Point, Values);
  const INTERVAL& Interval = m_Intervals[Root];
  if (Interval.Low > Point) return;
  if (Interval.High >= Point) Values.append(Interval.Value);
  FindInRange(Root + 1, End, Point, Values);
}
