// Saves the settings over and over, for the kill loop: every save writes the same number under all keys.
//   settings_writer DIRECTORY         writes until killed, prints each number once it is saved
//   settings_writer DIRECTORY check   prints the number that the store holds; exit 1 unless all keys agree

#include <QSettings>
#include <cstdio>
#include <cstring>

#include "base/types.h"
#include "shell/settings/settings_cache.h"

namespace {

constexpr int NUM_KEYS = 300;
const SETTING_GROUP GROUP = {QStringLiteral("AppData"), QStringLiteral("KillLoop")};

QString KeyName(int Index) {
  return QStringLiteral("Key%1").arg(Index);
}

U64 NumberOf(int Index) {
  return GetSetting(GROUP, KeyName(Index), U64(0)).toULongLong();
}

int Check() {
  for (int i = 1; i < NUM_KEYS; ++i) {
    if (NumberOf(i) != NumberOf(0)) return 1;
  }
  std::printf("%llu\n", NumberOf(0));
  return 0;
}

[[noreturn]] void WriteForever() {
  for (U64 Number = NumberOf(0) + 1;; ++Number) {
    for (int i = 0; i < NUM_KEYS; ++i) SetSetting(GROUP, KeyName(i), Number);
    if (SaveSettings() != 0) std::exit(2);
    std::printf("%llu\n", Number);
    std::fflush(stdout);
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) return 2;
  QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, QString::fromLocal8Bit(argv[1]));
  if (LoadSettings() != 0) return 1;
  if (argc > 2 && std::strcmp(argv[2], "check") == 0) return Check();
  WriteForever();
}
