#include "shell/directories.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFileInfo>

#include "project/file_classes.h"

namespace {

constexpr int VERSION_MAJOR = 0;
constexpr int VERSION_MINOR = 1;
constexpr int VERSION_REVISION = 0;
constexpr int LAST_SINGLE_LETTER = 26;
constexpr int ISO_DATE_LENGTH = 10;

QString Below(const char* sName) {
  return ApplicationDir() + QLatin1Char('/') + QLatin1String(sName);
}

}  // namespace

QString ApplicationDir() {
  static const QString sDir = QDir(QCoreApplication::applicationDirPath()).canonicalPath();
  return sDir;
}

QString ConfigDir() {
  return Below("Config");
}
QString PeripheralsDir() {
  return Below("Config/Peripherals");
}
QString LibDir() {
  return Below("Lib");
}
QString DocDir() {
  return Below("Doc");
}
QString PluginsDir() {
  return Below("Plugins");
}

QString DefaultDirFor(const QString& sPath) {
  const QFileInfo Info(sPath);
  if (!sPath.isEmpty() && Info.exists()) return QDir(Info.absolutePath()).canonicalPath();
  if (IsSvdFile(sPath)) return PeripheralsDir();
  if (IsDocFile(sPath)) return DocDir();
  if (IsPluginFile(sPath)) return PluginsDir();
  return ApplicationDir();
}

QString ProductTitle(bool bSubtitle, bool bVersion) {
  QString sTitle = QStringLiteral("Vexor");
  if (bSubtitle) sTitle += QStringLiteral(" - The V-Node Debugger");
  if (bVersion) sTitle += QLatin1Char(' ') + ProgramVersionText();
  return sTitle;
}

QString VersionText(int Major, int Minor, int Revision) {
  QString sText = QStringLiteral("V%1.%2").arg(Major).arg(Minor, 2, 10, QLatin1Char('0'));
  if (Revision > LAST_SINGLE_LETTER) {
    sText += QStringLiteral("z%1").arg(Revision - LAST_SINGLE_LETTER, 2, 10, QLatin1Char('0'));
  } else if (Revision > 0) {
    sText += QChar(QLatin1Char(static_cast<char>('a' + Revision - 1)));
  }
  return sText;
}

QString ProgramVersionText() {
  return VersionText(VERSION_MAJOR, VERSION_MINOR, VERSION_REVISION);
}

QString BuildDate() {
  const QFileInfo Info(QCoreApplication::applicationFilePath());
  const QDateTime Made = Info.birthTime().isValid() ? Info.birthTime() : Info.lastModified();
  return Made.toString(Qt::ISODate).left(ISO_DATE_LENGTH);
}
