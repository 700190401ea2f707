#include "shell/log/log_file.h"

bool CLogFile::Open(const QString& sPath) {
  Close();
  if (sPath.isEmpty()) return true;
  m_File.setFileName(sPath);
  return m_File.open(QIODevice::ReadWrite | QIODevice::Append | QIODevice::Truncate);
}

void CLogFile::Close() {
  if (m_File.isOpen()) m_File.close();
}

void CLogFile::Write(const QByteArray& Data) {
  if (!m_File.isOpen()) return;
  if (m_File.size() > LOG_FILE_MAX_SIZE) m_File.resize(LOG_FILE_KEPT_SIZE);
  m_File.write(Data);
  m_File.flush();
}
