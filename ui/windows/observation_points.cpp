#include "ui/windows/observation_points.h"

void CObservationPoints::Add(const OBSERVATION_POINT& Point) {
  if (m_Points.isEmpty() || !m_Points.last().IsSameLine(Point)) m_Points << Point;
  m_Index = m_Points.size() - 1;
}

OBSERVATION_POINT CObservationPoints::Step(int Delta) {
  if (m_Points.isEmpty()) return {};
  m_Index = (m_Index + Delta + m_Points.size()) % m_Points.size();
  return m_Points[m_Index];
}

void CObservationPoints::Clear() {
  m_Points.clear();
  m_Index = 0;
}
