#include "session_runner.h"

#include <QProcess>
#include <QRegularExpression>

qint64 SESSION_RESULT::Value(int Index) const {
  static const QRegularExpression Pattern(QStringLiteral("^=> 0x([0-9A-F]+)$"));
  for (const QString& sLine : Lines) {
    const QRegularExpressionMatch Match = Pattern.match(sLine);
    if (Match.hasMatch() && Index-- == 0) return Match.captured(1).toLongLong(nullptr, 16);
  }
  return -1;
}

SESSION_RESULT RunProgram(const QString& sProgram, const QStringList& Arguments, const QByteArray& Input, int LimitMS) {
  QProcess Process;
  Process.setWorkingDirectory(QStringLiteral(VEXOR_SOURCE_DIR));
  Process.setProcessChannelMode(QProcess::MergedChannels);
  Process.start(sProgram, Arguments);
  Process.write(Input);
  Process.closeWriteChannel();
  SESSION_RESULT Result;
  Result.bTimedOut = !Process.waitForFinished(LimitMS);
  if (Result.bTimedOut) Process.kill();
  Process.waitForFinished();
  Result.ExitCode = Process.exitStatus() == QProcess::NormalExit ? Process.exitCode() : -1;
  Result.sOutput = QString::fromUtf8(Process.readAll());
  Result.Lines = Result.sOutput.split(QLatin1Char('\n'));
  return Result;
}

SESSION_RESULT RunSession(const QString& sText, const QStringList& Options, int LimitMS) {
  return RunProgram(QStringLiteral(VEXOR_BIN_DIR "/vexor"),
                    Options + QStringList{QStringLiteral("-batch"), QStringLiteral("-")}, sText.toUtf8(), LimitMS);
}

quint32 AddressOf(const QString& sElf, const QString& sSymbol) {
  const SESSION_RESULT Symbols = RunProgram(QStringLiteral("readelf"), {QStringLiteral("-sW"), sElf});
  for (const QString& sLine : Symbols.Lines) {
    const QStringList Columns = sLine.simplified().split(QLatin1Char(' '));
    if (Columns.size() >= 8 && Columns[7] == sSymbol) return Columns[1].toUInt(nullptr, 16) & ~1u;
  }
  return 0;
}
