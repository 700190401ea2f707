#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

// What a run of the program printed and how it ended.
struct SESSION_RESULT {
  int ExitCode = -1;
  bool bTimedOut = false;
  QString sOutput;
  QStringList Lines;

  bool Has(const char* sText) const { return sOutput.contains(QLatin1String(sText)); }
  // Value of the n-th "=> 0x..." line, -1 if there is none.
  qint64 Value(int Index) const;
};

// Runs a batch session from a text, in the source directory. Options go in front of -batch.
SESSION_RESULT RunSession(const QString& sText, const QStringList& Options = {}, int LimitMS = 60'000);
// Runs any of our programs.
SESSION_RESULT RunProgram(const QString& sProgram, const QStringList& Arguments, const QByteArray& Input = {},
                          int LimitMS = 60'000);
// Address of a function's first instruction, as readelf gives it.
quint32 AddressOf(const QString& sElf, const QString& sSymbol);
