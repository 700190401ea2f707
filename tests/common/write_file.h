#pragma once
// Files that a QtTest program writes and reads whole; those of GoogleTest have files.h.

#include <QFile>

// Gives the path back.
inline QString WriteFile(const QString& sPath, const QByteArray& Bytes = {}) {
  QFile File(sPath);
  if (!File.open(QIODevice::WriteOnly) || File.write(Bytes) != Bytes.size()) qFatal("cannot write a test's file");
  return sPath;
}

// Empty for a file that can't be read.
inline QByteArray ReadFile(const QString& sPath) {
  QFile File(sPath);
  return File.open(QIODevice::ReadOnly) ? File.readAll() : QByteArray();
}
