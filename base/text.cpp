#include "base/text.h"

#include <QDir>
#include <QRegularExpression>

QString AddrText(U32 Addr, bool bGrouped) {
  QString sText = QStringLiteral("%1").arg(Addr, 8, 16, QLatin1Char('0')).toUpper();
  if (bGrouped) sText.insert(4, GROUP_BLANK);
  return sText;
}

QString HexText(U32 Value) {
  return QStringLiteral("0x") + AddrText(Value);
}

QString GroupedText(U64 Value, QChar Separator) {
  QString sText = QString::number(Value);
  for (qsizetype i = sText.size() - 3; i > 0; i -= 3) sText.insert(i, Separator);
  return sText;
}

QString NormalisedPath(QString sPath) {
  sPath.replace(QLatin1Char('\\'), QLatin1Char('/'));
  sPath.replace(QLatin1String("//"), QLatin1String("/"));
  return sPath.isEmpty() ? sPath : QDir::cleanPath(sPath);
}

QString Unquoted(QString sText) {
  sText = sText.trimmed();
  if (sText.startsWith(QLatin1Char('"'))) sText.remove(0, 1);
  if (sText.endsWith(QLatin1Char('"'))) sText.chop(1);
  return sText.trimmed();
}

QString WithUnixLineEnds(QString sText) {
  sText.replace(QLatin1String("\r\n"), QLatin1String("\n"));
  return sText.replace(QLatin1Char('\r'), QLatin1Char('\n'));
}

QString MenuText(QString sText) {
  return sText.replace(QLatin1Char('&'), QLatin1String("&&"));
}

QString WildcardToRegExp(QStringView sPattern) {
  QString sResult;
  for (const QChar c : sPattern) {
    if (c == QLatin1Char('*')) {
      sResult += QLatin1String(".*");
    } else if (c == QLatin1Char('?')) {
      sResult += QLatin1Char('.');
    } else {
      sResult += QRegularExpression::escape(QString(c));
    }
  }
  return QRegularExpression::anchoredPattern(sResult);
}
