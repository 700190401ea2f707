#include "script/text_file.h"

#include <QFile>
#include <QStringDecoder>

#include "base/msg_flags.h"
#include "base/save_file.h"
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
  QString sReason;
  if (SaveFile(sPath, sText.toUtf8(), &sReason)) return true;
  LogMsg(QStringLiteral("Could not write \"%1\": %2").arg(sPath, sReason), MSG_WARNING | MSG_TO_ALL);
  return false;
}
