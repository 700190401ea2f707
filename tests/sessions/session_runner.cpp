#include "session_runner.h"

#include <QProcess>
#include <QRegularExpression>

namespace {

constexpr int END_MS = 10'000;  // for the end of a session that waited in vain

}  // namespace

qint64 SESSION_RESULT::Value(int Index) const {
  const QStringList Values = Lines.filter(QRegularExpression(u"^=> 0x[0-9A-F]+$"_s));
  return Index < Values.size() ? Values[Index].mid(5).toLongLong(nullptr, 16) : -1;
}

void SESSION_RESULT::Expect(int WantedCode, TEXTS Printed, TEXTS NotPrinted) const {
  SCOPED_TRACE(sOutput.toStdString());
  EXPECT_EQ(WantedCode, ExitCode);
  for (const char* sText : Printed) EXPECT_TRUE(sOutput.contains(QLatin1String(sText))) << "missing: " << sText;
  for (const char* sText : NotPrinted) EXPECT_FALSE(sOutput.contains(QLatin1String(sText))) << "too much: " << sText;
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
  Result.Lines = Result.sOutput.split(u'\n');
  return Result;
}

SESSION_RESULT RunSession(QString sText, const QStringList& Options, int LimitMS) {
  static const QRegularExpression Wait(u"^(@wait \\w+)$"_s, QRegularExpression::MultilineOption);
  sText.replace(Wait, u"\\1 %1"_s.arg(LimitMS - END_MS));
  return RunProgram(QStringLiteral(VEXOR_BIN_DIR "/vexor"), Options + QStringList{u"-batch"_s, u"-"_s}, sText.toUtf8(),
                    LimitMS);
}

SESSION_RESULT RunWithFile(const QString& sFile, int WaitMS) {
  const QString sSession = u"File.Open (\"%1\");\n@wait idle %2\nUtil.Log (\"still here\");\n"_s.arg(sFile).arg(WaitMS);
  return RunSession(sSession, {}, 2 * WaitMS + 10'000);
}
