// Writes the reference pages of the user's guide into a directory.

#include <QDir>
#include <QSaveFile>
#include <cstdio>

#include "docs/reference/reference_pages.h"

namespace {

bool WritePage(const QDir& Directory, const char* sName, const QString& sText) {
  QSaveFile File(Directory.filePath(QLatin1String(sName)));
  const QByteArray Bytes = sText.toUtf8();
  if (File.open(QIODevice::WriteOnly) && File.write(Bytes) == Bytes.size() && File.commit()) return true;
  std::fprintf(stderr, "%s: %s\n", qPrintable(File.fileName()), qPrintable(File.errorString()));
  return false;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: manual_reference DIRECTORY\n");
    return 2;
  }
  const QDir Directory(QString::fromLocal8Bit(argv[1]));
  const bool bDone = WritePage(Directory, "commands.md", CommandsPage()) &&
                     WritePage(Directory, "keys.md", KeysPage()) && WritePage(Directory, "settings.md", SettingsPage());
  return bDone ? 0 : 1;
}
