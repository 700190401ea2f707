#include "script/text_file.h"

#include <QFile>
#include <QSaveFile>
#include <QStringDecoder>

#include "base/msg_flags.h"
#include "base/text.h"
#include "shell/log/log.h"

QString ReadTextFile(const QString& sPath, bool* pOk) {
  QFile File(sPath);
  const QByteArray Bytes = File.open(QIODevice::ReadOnly) ? File.readAll() : QByteArray();
  *pOk = File.isOpen() && File.error() == QFileDevice::NoError;
  if (!*pOk) return {};
  const std::optional<QStringConverter::Encoding> Marked = QStringConverter::encodingForData(Bytes);
  if (Marked) return QStringDecoder(*Marked)(Bytes);
  // Characters that were not understood would be lost with the next save.
  return Bytes.isValidUtf8() ? QString::fromUtf8(Bytes) : QString::fromLatin1(Bytes);
}

bool WriteTextFile(const QString& sPath, QString sText) {
  sText = WithUnixLineEnds(sText).replace(QLatin1Char('\n'), QLatin1String("\r\n"));
  const QByteArray Bytes = sText.toUtf8();
  QSaveFile File(sPath);
  File.setDirectWriteFallback(true);  // a file that may be written can stand where no other may be made
  // The flush is not superfluous: commit() does not see that its own failed, and puts a cut file in the old one's
  // place.
  if (File.open(QIODevice::WriteOnly) && File.write(Bytes) == Bytes.size() && File.flush() && File.commit())
    return true;
  LogMsg(QStringLiteral("Could not write \"%1\": %2").arg(sPath, File.errorString()), MSG_WARNING | MSG_TO_ALL);
  return false;
}
