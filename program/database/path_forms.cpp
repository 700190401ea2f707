#include "program/database/path_forms.h"

#include <QFileInfo>
#include <algorithm>

QString SingleSlashes(QString sPath) {
  sPath.replace(QLatin1Char('\\'), QLatin1Char('/'));
  while (sPath.contains(QLatin1String("//"))) sPath.replace(QLatin1String("//"), QLatin1String("/"));
  return sPath;
}

QString FileNameOf(const QString& sPath) {
  return sPath.mid(std::max(sPath.lastIndexOf(QLatin1Char('/')), sPath.lastIndexOf(QLatin1Char('\\'))) + 1);
}

bool IsSamePath(const QString& sA, const QString& sB) {
  return sA.compare(sB, Qt::CaseInsensitive) == 0;
}

bool HasDrive(const QString& sPath) {
  return sPath.size() >= 2 && sPath[1] == QLatin1Char(':') && sPath[0].isLetter() && sPath[0].unicode() < 0x80;
}

bool IsRelativePath(const QString& sPath) {
  return !HasDrive(sPath) && QFileInfo(sPath).isRelative();
}
