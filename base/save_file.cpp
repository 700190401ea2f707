#include "base/save_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace {

bool MayWrite(const QString& sPath) {
  return faccessat(AT_FDCWD, QFile::encodeName(sPath).constData(), W_OK, AT_EACCESS) == 0;
}

bool CanOnlyWriteInPlace(const QString& sPath) {
  const QFileInfo File(QFileInfo(sPath).canonicalFilePath());
  return File.isFile() && MayWrite(File.filePath()) && !MayWrite(File.path());
}

bool WriteFrom(QFile& File, const QByteArray& Bytes) {
  return File.seek(0) && File.write(Bytes) == Bytes.size() && File.resize(Bytes.size());
}

bool WriteInPlace(const QString& sPath, const QByteArray& Bytes, QString* psReason) {
  QFile File(sPath);
  const bool bOpen = File.open(QIODevice::ReadWrite | QIODevice::ExistingOnly | QIODevice::Unbuffered);
  const QByteArray Old = bOpen ? File.readAll() : QByteArray();
  const bool bRead = bOpen && File.error() == QFileDevice::NoError;
  if (bRead && WriteFrom(File, Bytes)) return true;
  *psReason = File.errorString();
  if (bRead) WriteFrom(File, Old);
  return false;
}

}  // namespace

bool SaveFile(const QString& sPath, const QByteArray& Bytes, QString* psReason) {
  if (CanOnlyWriteInPlace(sPath)) return WriteInPlace(sPath, Bytes, psReason);
  QSaveFile File(sPath);
  // The flush is not superfluous: commit() does not see that its own failed, and puts a cut file in the old one's
  // place.
  if (File.open(QIODevice::WriteOnly) && File.write(Bytes) == Bytes.size() && File.flush() && File.commit())
    return true;
  *psReason = File.errorString();
  return false;
}
