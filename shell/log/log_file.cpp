#include "shell/log/log_file.h"

namespace {

constexpr QIODevice::OpenMode OPEN_MODE = QIODevice::ReadWrite | QIODevice::Append | QIODevice::Truncate;

}  // namespace

bool CLogFile::Open(const QString& sPath) {
  Close();
  if (sPath.isEmpty()) return true;
  m_File.setFileName(sPath);
  return m_File.open(OPEN_MODE);
}

void CLogFile::Reopen() {
  QFile File(m_File.fileName());
  if (!File.open(QIODevice::WriteOnly)) return;
  File.close();
  m_File.close();
  m_File.open(OPEN_MODE);
}

void CLogFile::Close() {
  if (m_File.isOpen()) m_File.close();
}

void CLogFile::Write(const QByteArray& Data) {
  if (!m_File.isOpen()) return;
  // A file that somebody has removed would swallow what comes: it begins anew. One that can't be made again now may be
  // later.
  if (!m_File.exists()) Reopen();
  if (m_File.size() > LOG_FILE_MAX_SIZE) m_File.resize(LOG_FILE_KEPT_SIZE);
  m_File.write(Data);
  m_File.flush();
}
