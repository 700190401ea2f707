#pragma once
// Files that tests write and read whole.

#include <gtest/gtest.h>

#include <QFile>

inline QByteArray ReadBytes(const QString& sPath) {
  QFile File(sPath);
  EXPECT_TRUE(File.open(QIODevice::ReadOnly)) << sPath.toStdString();
  return File.readAll();
}

// Gives the path back.
inline QString WriteBytes(const QString& sPath, const QByteArray& Bytes) {
  QFile File(sPath);
  EXPECT_TRUE(File.open(QIODevice::WriteOnly)) << sPath.toStdString();
  File.write(Bytes);
  return sPath;
}
