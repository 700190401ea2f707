#include "script/text_file.h"

#include <QFile>
#include <QSaveFile>
#include <QStringDecoder>

#include "base/msg_flags.h"
#include "shell/log/log.h"

QString ReadTextFile(const QString& sPath, bool* pOk) {
  QFile File(sPath);
  *pOk = File.open(QIODevice::ReadOnly);
  if (!*pOk) return {};
  const QByteArray Bytes = File.readAll();
  QStringDecoder Decoder(QStringConverter::encodingForData(Bytes).value_or(QStringConverter::Utf8));
  const QString sText = Decoder(Bytes);
  // Characters that were not understood would be lost with the next save.
  return Decoder.hasError() ? QString::fromLatin1(Bytes) : sText;
}

bool WriteTextFile(const QString& sPath, QString sText) {
  sText.replace(QLatin1String("\r\n"), QLatin1String("\n"));
  sText.replace(QLatin1Char('\r'), QLatin1Char('\n'));
  sText.replace(QLatin1Char('\n'), QLatin1String("\r\n"));
  const QByteArray Bytes = sText.toUtf8();
  QSaveFile File(sPath);
  if (File.open(QIODevice::WriteOnly) && File.write(Bytes) == Bytes.size() && File.commit()) return true;
  LogMsg(QStringLiteral("Could not write \"%1\": %2").arg(sPath, File.errorString()), MSG_WARNING | MSG_TO_ALL);
  return false;
}
