#pragma once

#include <QDateTime>
#include <QPoint>
#include <QString>

#include "base/types.h"
#include "ui/windows/source_encoding.h"

// One open file: its text with line feeds alone, and the view of it that is kept while another tab is active.
struct SOURCE_DOCUMENT {
  U32 FileNo = 0;         // number of the path in the program database, INVALID_FILE_ID for other files
  QString sFilePath;      // as given
  QString sResolvedPath;  // where the file lies on this host
  bool bExists = false;
  QString sText;  // as it was read or saved last
  EOL_FORMAT LineEnding = EOL_UNIX;
  SOURCE_ENCODING Encoding;
  U32 TextHash = 0;    // of the file's bytes
  QDateTime FileTime;  // of the file when it was read or written
  int SliderPos = 0;
  QPoint CursorPos;  // column, line

  // The file's name, by the place where it was found.
  QString FileName() const;
  // Where it lies, or where it was looked for.
  const QString& Place() const { return bExists ? sResolvedPath : sFilePath; }
};

// Where the file lies on this host, as far as it can be found. Unlike opening it, this does not count as a request.
QString FindSourceFile(const QString& sPath);
// Finds the file and reads it; a missing one leaves the text empty and bExists false.
SOURCE_DOCUMENT LoadSourceDocument(const QString& sPath);
// Whether the file no longer has the bytes that were read or written; false for one that has gone. Notes the file's
// time, so that the same change is not found twice.
bool HasChangedOutside(SOURCE_DOCUMENT& Document);
// Writes a text as the document's file, in its encoding and with its line ends: beside it, then in its place, so that
// the file is whole at every moment; only where its folder takes no other file, over it. False, with the reason, when
// it can't be written; the document is as before then.
bool WriteSourceDocument(SOURCE_DOCUMENT& Document, const QString& sText, QString* psReason);
