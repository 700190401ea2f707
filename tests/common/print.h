#pragma once
// Qt's strings in the failures of GoogleTest, as texts.

#include <QString>

#include <ostream>

inline void PrintTo(const QString& sText, std::ostream* pStream) {
  *pStream << '"' << sText.toStdString() << '"';
}
