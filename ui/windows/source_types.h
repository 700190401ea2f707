#pragma once
// What the source editor and the windows that use it speak of.

#include <QPoint>

#include "base/types.h"

// Where a text stands on screen: column and row from 0.
using TEXT_POS = QPoint;

// A change of a document's text: at Position, in characters from the start, NumRemoved were replaced by NumAdded.
struct EDIT_EVENT {
  U32 FileNo = 0;
  int Position = 0;
  int NumRemoved = 0;
  int NumAdded = 0;
  // The lines from FirstLine (from 1) on are new or have moved by NumLines; those ahead of it are as they were.
  U32 FirstLine = 0;
  int NumLines = 0;
};

// What the user says to the first edit of a document in a session.
enum EDIT_ANSWER : U8 { EDIT_NO, EDIT_YES, EDIT_YES_ALWAYS };

enum SEARCH_FLAGS : unsigned {
  SEARCH_DEFAULT = 0,
  SEARCH_MATCH_CASE = 1,
  SEARCH_WHOLE_WORD = 2,
  SEARCH_BACKWARD = 4,
};
