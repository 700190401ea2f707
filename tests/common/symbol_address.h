#pragma once
// Addresses as readelf has them.

#include <gtest/gtest.h>

#include <QProcess>

// Of a function's first instruction, or of a variable. The path may be relative to the source directory.
inline quint32 AddressOf(const QString& sElf, const QString& sSymbol) {
  QProcess Reader;
  Reader.setWorkingDirectory(QStringLiteral(VEXOR_SOURCE_DIR));
  Reader.start(QStringLiteral("readelf"), {QStringLiteral("-sW"), sElf});
  Reader.waitForFinished();
  for (const QByteArray& sLine : Reader.readAllStandardOutput().split('\n')) {
    const QList<QByteArray> Columns = sLine.simplified().split(' ');
    if (Columns.size() >= 8 && Columns[7] == sSymbol.toUtf8()) return Columns[1].toUInt(nullptr, 16) & ~1u;
  }
  ADD_FAILURE() << sSymbol.toStdString() << " in " << sElf.toStdString();
  return 0;
}
