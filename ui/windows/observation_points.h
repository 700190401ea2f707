#pragma once

#include <QList>

#include "base/types.h"

// A place that the user has clicked, and how the view stood.
struct OBSERVATION_POINT {
  U32 FileNo = 0;
  QString sFilePath;  // stands for the number where a file is not the program's
  U32 Line = 0;       // from 1, 0: no place
  int Column = 0;
  int HScroll = 0;  // pixels
  int VScroll = 0;  // rows

  bool IsValid() const { return Line != 0; }
  bool IsSameLine(const OBSERVATION_POINT& Other) const {
    return FileNo == Other.FileNo && sFilePath == Other.sFilePath && Line == Other.Line;
  }
};

// The places of a user's way through the sources, to go back and forward on.
class CObservationPoints {
public:
  // Adds a place at the end, unless it is on the line of the last one, and stands there from now on.
  void Add(const OBSERVATION_POINT& Point);
  // One back or forward, around the ends; no place while there is none.
  OBSERVATION_POINT Prev() { return Step(-1); }
  OBSERVATION_POINT Next() { return Step(1); }
  void Clear();
  qsizetype Count() const { return m_Points.size(); }

private:
  OBSERVATION_POINT Step(int Delta);

  QList<OBSERVATION_POINT> m_Points;
  qsizetype m_Index = 0;
};
