#pragma once
// What the source editor and the windows that use it speak of.

#include <QPoint>

#include "base/types.h"

// Where a text stands on screen: column and row from 0.
using TEXT_POS = QPoint;

// A change of a document's text.
struct EDIT_EVENT {
  U32 FileNo = 0;
  // The lines from FirstLine (from 1) on are new or have moved by NumLines; those ahead of it are as they were.
  U32 FirstLine = 0;
  int NumLines = 0;
};

enum SEARCH_FLAGS : unsigned {
  SEARCH_DEFAULT = 0,
  SEARCH_MATCH_CASE = 1,
  SEARCH_WHOLE_WORD = 2,
  SEARCH_BACKWARD = 4,
};
