#include "script/error_excerpt.h"

#include "script/ctrans.h"

namespace {

constexpr int MAX_STATEMENT_LINES = 3;
constexpr qsizetype MAX_LINE = 120;     // characters
constexpr qsizetype BEFORE_ERROR = 80;  // of them, in a line that is longer

QString MakeCaretLine(const QString& sBefore) {
  QString sBlanks = sBefore;
  for (QChar& Char : sBlanks) {
    if (Char != QLatin1Char('\t')) Char = QLatin1Char(' ');
  }
  return sBlanks + QLatin1Char('^');
}

}  // namespace

QStringList MakeErrorExcerpt(const QString& sFile, const QByteArray& Text, const CTRANS_ERROR& Error) {
  const QByteArrayList Lines = Text.split('\n');
  if (Error.LineNo < 1 || Error.LineNo > Lines.size()) return {};
  const auto LineAt = [&Lines](int LineNo) {
    QString sLine = QString::fromUtf8(Lines[LineNo - 1]);
    if (sLine.endsWith(QLatin1Char('\r'))) sLine.chop(1);
    return sLine;
  };
  const QString sLine = LineAt(Error.LineNo);
  const QString sBefore = QString::fromUtf8(Lines[Error.LineNo - 1].left(Error.ColumnNo - 1)).left(sLine.size());
  QStringList Result{QStringLiteral("%1:%2:%3").arg(sFile).arg(Error.LineNo).arg(sBefore.size() + 1)};
  const bool bLong = Error.LineNo - Error.FirstLineNo >= MAX_STATEMENT_LINES;
  for (int LineNo = std::max(1, Error.FirstLineNo); LineNo < Error.LineNo; ++LineNo) {
    Result << LineAt(LineNo).left(MAX_LINE);
    if (!bLong) continue;
    Result << QStringLiteral("...");
    break;
  }
  const qsizetype Start = std::max<qsizetype>(0, sBefore.size() - BEFORE_ERROR);
  Result << sLine.mid(Start, MAX_LINE) << MakeCaretLine(sBefore.mid(Start));
  return Result;
}
