// The settings cache against a real store in a folder of its own.

#include <QDir>
#include <QDirIterator>
#include <QSettings>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include "shell/settings/settings_cache.h"
#include "tests/common/file_size_limit.h"
#include "tests/common/files.h"

using namespace Qt::StringLiterals;

namespace {

const SETTING_GROUP MainWindow = {"AppData", "MainWindow"};
const SETTING_GROUP Timeouts = {"AppData", "MessageTimeouts"};

class SettingsTest : public testing::Test {
protected:
  void SetUp() override {
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, Dir.path());
    SetSettingsInMemory(false);
    ForgetAll();
  }
  void TearDown() override { ForgetAll(); }

  static void ForgetAll() {
    for (const QString& sKey : GetSettingKeys(MainWindow)) RemoveSetting(SettingPath(MainWindow, sKey));
    for (const QString& sKey : GetSettingKeys(Timeouts)) RemoveSetting(SettingPath(Timeouts, sKey));
  }
  QString StoreFile() const {
    QDirIterator Files(Dir.path(), QDir::Files, QDirIterator::Subdirectories);
    return Files.hasNext() ? Files.next() : QString();
  }

  QTemporaryDir Dir;
};

TEST_F(SettingsTest, ValuesComeBackInTheTypeOfTheDefault) {
  // A key, the value, and a default.
  const std::tuple<QString, QVariant, QVariant> Cases[] = {
      {"Bool", true, false},
      {"Int", -1, 7},
      {"U64", 0xFFFFFFFFFFull, 0ull},
      {"Text", u"a, \"b\" = c; äöü"_s, QString()},
      {"Bytes", QByteArray("\0\xFF\x01 state", 9), QByteArray()},
      {"List", QStringList{"C:/a,b.vdebug", "x y"}, QStringList()},
      {"OneEntry", QStringList{"only"}, QStringList()},
  };
  for (const auto& [sKey, Value, Default] : Cases) SetSetting(MainWindow, sKey, Value);
  ASSERT_EQ(0, SaveSettings());
  ForgetAll();
  for (const auto& [sKey, Value, Default] : Cases) EXPECT_EQ(GetSetting(MainWindow, sKey, Default), Default);
  ASSERT_EQ(0, LoadSettings());
  for (const auto& [sKey, Value, Default] : Cases) {
    const QVariant Loaded = GetSetting(MainWindow, sKey, Default);
    EXPECT_TRUE(Loaded.typeId() == Value.typeId() && Loaded == Value) << sKey.toStdString();
  }
}

TEST_F(SettingsTest, StoreHoldsNothingButTheCache) {
  SetSetting(Timeouts, "1", 1ull);
  SetSetting(Timeouts, "2", 2ull);
  ASSERT_EQ(0, SaveSettings());
  RemoveSetting("AppData/MessageTimeouts/1");
  ASSERT_EQ(0, SaveSettings());
  ForgetAll();
  ASSERT_EQ(0, LoadSettings());
  EXPECT_EQ(GetSettingKeys(Timeouts), QStringList{"2"});
}

TEST_F(SettingsTest, ValuesOfTheWrongKindGiveTheDefault) {
  SetSetting(MainWindow, "Int", "twelve");
  SetSetting(MainWindow, "Bool", "perhaps");
  EXPECT_EQ(GetSetting(MainWindow, "Int", 5), 5);
  EXPECT_EQ(GetSetting(MainWindow, "Bool", true), true);
  EXPECT_FALSE(HasSetting(MainWindow, "Other"));
}

TEST_F(SettingsTest, DamagedStoreIsPutAsideAndDefaultsApply) {
  const QByteArray Damages[] = {
      "[AppData]\nno equals sign here\nMainWindow\\Version=V9\n[[\x01\xFE\n",
      "[AppData]\nMainWindow\\Version=V9\nMainWindow\\Geom",
      QByteArray(4096, '\0'),
      QByteArray("[AppData]\nMainWindow\\Version=V9\n") + QByteArray(100, '\0'),
  };
  for (const QByteArray& Damage : Damages) {
    SetSetting(MainWindow, "Version", "V1.00");
    ASSERT_EQ(0, SaveSettings());
    const QString sFile = StoreFile();
    WriteBytes(sFile, Damage);
    EXPECT_EQ(-1, LoadSettings()) << Damage.left(40).toStdString();
    EXPECT_FALSE(HasSetting(MainWindow, "Version"));
    EXPECT_EQ(ReadBytes(sFile + ".damaged"), Damage);
    SetSetting(MainWindow, "Version", "V2.00");
    EXPECT_EQ(0, SaveSettings());
    EXPECT_EQ(0, LoadSettings());
    EXPECT_EQ(GetSetting(MainWindow, "Version", QString()), "V2.00");
    QFile::remove(sFile + ".damaged");
  }
}

TEST_F(SettingsTest, StoreStaysWholeWhenTheDiskIsFull) {
  SetSetting(MainWindow, "Version", "V1.00");
  ASSERT_EQ(0, SaveSettings());
  SetSetting(MainWindow, "Version", "V2.00");
  {
    const CFileSizeLimit Limit;
    EXPECT_EQ(-1, SaveSettings());
  }
  EXPECT_TRUE(ReadBytes(StoreFile()).contains("V1.00"));
}

TEST_F(SettingsTest, BatchSessionsLeaveTheStoreAlone) {
  SetSettingsInMemory(true);
  SetSetting(MainWindow, "Version", "V3.00");
  EXPECT_EQ(0, SaveSettings());
  EXPECT_EQ(StoreFile(), QString());
  EXPECT_EQ(GetSetting(MainWindow, "Version"), "V3.00");
}

}  // namespace
