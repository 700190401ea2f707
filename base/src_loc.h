#pragma once

#include <QHashFunctions>
#include <QList>
#include <QMetaType>

#include "base/types.h"

// A place in a source file. File is the interned identifier of the program database, Line counts from 1, Column 0
// stands for the whole line.
struct CSrcLoc {
  U32 File = 0;
  U32 Line = 0;
  U32 Column = 0;

  // False for the all-zero value, which means none, and for an unknown file (0xFFFFFFFF).
  bool IsValid() const { return File != 0xFFFFFFFFu && (File != 0 || Line != 0 || Column != 0); }
  // Tables of locations compare file and line only.
  bool IsSameLine(const CSrcLoc& Other) const { return File == Other.File && Line == Other.Line; }
};

inline bool operator==(const CSrcLoc& A, const CSrcLoc& B) { return A.IsSameLine(B); }
inline size_t qHash(const CSrcLoc& Loc, size_t Seed = 0) { return ((Loc.File + 713u) * 31u + Loc.Line) ^ Seed; }

using QSrcLoc = CSrcLoc;
using QSrcLocs = QList<CSrcLoc>;

Q_DECLARE_METATYPE(CSrcLoc)
