#pragma once

#include <QList>
#include <vector>

#include "base/types.h"

// Which of many intervals contain a point. Intervals are closed at both ends and may nest and overlap.
class CIntervalTree {
public:
  // Ignored where High is below Low. Found only after the next Build.
  void Add(U32 Low, U32 High, U64 Value);
  void Build();
  void Clear();
  // Values of all intervals that contain the point: by ascending Low, at equal Low the longer one first, at equal
  // intervals in the order of adding. Takes logarithmic time and the time for the result.
  QList<U64> Find(U32 Point) const;

private:
  struct INTERVAL {
    U32 Low;
    U32 High;
    U64 Value;
  };

  U32 BuildRange(size_t First, size_t End);
  void FindInRange(size_t First, size_t End, U32 Point, QList<U64>& Values) const;

  std::vector<INTERVAL> m_Intervals;
  // The sorted list seen as a balanced tree, each range's root in its middle: the highest end below each root.
  std::vector<U32> m_MaxHigh;
};
