#pragma once
// One of the two log files: bounded in size, flushed after each write.

#include <QByteArray>
#include <QFile>

#include "base/types.h"

inline constexpr qint64 LOG_FILE_MAX_SIZE = 16'000'000;  // bytes; a larger file is cut before the next write
inline constexpr qint64 LOG_FILE_KEPT_SIZE = 16'000;     // bytes that stay of it

class CLogFile {
public:
  // Opens and empties the file; an empty path only closes. False when it could not be opened.
  bool Open(const QString& sPath);
  void Close();
  bool IsOpen() const { return m_File.isOpen(); }
  // Appends and flushes. A file that has been removed meanwhile is made again.
  void Write(const QByteArray& Data);

private:
  void Reopen();

  QFile m_File;
};
