#pragma once

#include <QPoint>
#include <QString>
#include <QStringList>

#include "base/types.h"

// How the lines of a file end.
enum EOL_FORMAT : int { EOL_WINDOWS = 0, EOL_UNIX = 1, EOL_MAC = 2, EOL_MIXED = 3 };

// One open file: its text with line feeds alone, and the view of it that is kept while another tab is active.
struct SOURCE_DOCUMENT {
  U32 FileNo = 0;         // number of the path in the program database, INVALID_FILE_ID for other files
  QString sFilePath;      // as given
  QString sResolvedPath;  // where the file lies on this host
  bool bExists = false;
  QString sText;
  EOL_FORMAT LineEnding = EOL_UNIX;
  int SliderPos = 0;
  QPoint CursorPos;  // column, line
};

// Format of the first ten line ends.
EOL_FORMAT DetectLineEnding(const QString& sText);
// UTF-8, or Latin-1 where that is not valid.
QString DecodeSource(const QByteArray& Bytes);
// Where the file lies on this host, as far as it can be found. Unlike opening it, this does not count as a request.
QString FindSourceFile(const QString& sPath);
// Finds the file and reads it; a missing one leaves the text empty and bExists false.
SOURCE_DOCUMENT LoadSourceDocument(const QString& sPath);
