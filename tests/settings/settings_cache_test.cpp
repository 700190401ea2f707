// The settings cache against a real store in a folder of its own.

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <csignal>

#include "shell/settings/settings_cache.h"

namespace {

const SETTING_GROUP MainWindow = {QStringLiteral("AppData"), QStringLiteral("MainWindow")};
const SETTING_GROUP Timeouts = {QStringLiteral("AppData"), QStringLiteral("MessageTimeouts")};

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

struct ROUND_TRIP {
  const char* sKey;
  QVariant Value;
  QVariant Default;
};

TEST_F(SettingsTest, ValuesComeBackInTheTypeOfTheDefault) {
  const ROUND_TRIP Cases[] = {
      {"Bool", true, false},
      {"Int", -1, 7},
      {"U64", 0xFFFFFFFFFFull, 0ull},
      {"Text", QStringLiteral("a, \"b\" = c; äöü"), QString()},
      {"Bytes", QByteArray("\0\xFF\x01 state", 9), QByteArray()},
      {"List", QStringList{"C:/a,b.vdebug", "x y"}, QStringList()},
      {"OneEntry", QStringList{"only"}, QStringList()},
  };
  for (const ROUND_TRIP& Case : Cases) SetSetting(MainWindow, QLatin1String(Case.sKey), Case.Value);
  ASSERT_EQ(0, SaveSettings());
  ForgetAll();
  for (const ROUND_TRIP& Case : Cases) {
    EXPECT_EQ(GetSetting(MainWindow, QLatin1String(Case.sKey), Case.Default), Case.Default) << "forgotten";
  }
  ASSERT_EQ(0, LoadSettings());
  for (const ROUND_TRIP& Case : Cases) {
    const QVariant Value = GetSetting(MainWindow, QLatin1String(Case.sKey), Case.Default);
    EXPECT_EQ(Value.typeId(), Case.Value.typeId()) << Case.sKey;
    EXPECT_EQ(Value, Case.Value) << Case.sKey;
  }
}

TEST_F(SettingsTest, StoreHoldsNothingButTheCache) {
  SetSetting(Timeouts, QStringLiteral("1"), 1ull);
  SetSetting(Timeouts, QStringLiteral("2"), 2ull);
  ASSERT_EQ(0, SaveSettings());
  RemoveSetting(QStringLiteral("AppData/MessageTimeouts/1"));
  ASSERT_EQ(0, SaveSettings());
  ForgetAll();
  ASSERT_EQ(0, LoadSettings());
  EXPECT_EQ(GetSettingKeys(Timeouts), QStringList{"2"});
}

TEST_F(SettingsTest, ValuesOfTheWrongKindGiveTheDefault) {
  SetSetting(MainWindow, QStringLiteral("Int"), QStringLiteral("twelve"));
  SetSetting(MainWindow, QStringLiteral("Bool"), QStringLiteral("perhaps"));
  EXPECT_EQ(GetSetting(MainWindow, QStringLiteral("Int"), 5), 5);
  EXPECT_EQ(GetSetting(MainWindow, QStringLiteral("Bool"), true), true);
  EXPECT_FALSE(HasSetting(MainWindow, QStringLiteral("Other")));
}

TEST_F(SettingsTest, KeysDirectlyBelowAGroup) {
  const SETTING_GROUP AppData = {QStringLiteral("AppData/")};
  SetSetting(MainWindow, QStringLiteral("Version"), QStringLiteral("V1.00"));
  SetSetting({QStringLiteral("AppData"), QStringLiteral("MainWindowX")}, QStringLiteral("Key"), 1);
  EXPECT_EQ(GetSettingKeys(MainWindow), QStringList{"Version"});
  EXPECT_TRUE(GetSettingKeys(AppData).isEmpty());
  EXPECT_TRUE(HasSetting(AppData, QStringLiteral("/MainWindow//Version")));
  RemoveSetting(QStringLiteral("AppData/MainWindowX/Key"));
}

TEST_F(SettingsTest, DamagedStoreIsPutAsideAndDefaultsApply) {
  const QByteArray Damages[] = {
      "[AppData]\nno equals sign here\nMainWindow\\Version=V9\n[[\x01\xFE\n",
      "[AppData]\nMainWindow\\Version=V9\nMainWindow\\Geom",
      QByteArray(4096, '\0'),
      QByteArray("[AppData]\nMainWindow\\Version=V9\n") + QByteArray(100, '\0'),
  };
  for (const QByteArray& Damage : Damages) {
    SetSetting(MainWindow, QStringLiteral("Version"), QStringLiteral("V1.00"));
    ASSERT_EQ(0, SaveSettings());
    const QString sFile = StoreFile();
    QFile File(sFile);
    ASSERT_TRUE(File.open(QIODevice::WriteOnly | QIODevice::Truncate));
    File.write(Damage);
    File.close();
    EXPECT_EQ(-1, LoadSettings()) << Damage.left(40).toStdString();
    EXPECT_FALSE(HasSetting(MainWindow, QStringLiteral("Version")));
    QFile Aside(sFile + QStringLiteral(".damaged"));
    ASSERT_TRUE(Aside.open(QIODevice::ReadOnly));
    EXPECT_EQ(Aside.readAll(), Damage);
    SetSetting(MainWindow, QStringLiteral("Version"), QStringLiteral("V2.00"));
    EXPECT_EQ(0, SaveSettings());
    EXPECT_EQ(0, LoadSettings());
    EXPECT_EQ(GetSetting(MainWindow, QStringLiteral("Version"), QString()), QStringLiteral("V2.00"));
    Aside.remove();
  }
}

// No file may grow while the limit stands, as on a full disk.
class CFileSizeLimit {
public:
  CFileSizeLimit() {
    getrlimit(RLIMIT_FSIZE, &m_Old);
    std::signal(SIGXFSZ, SIG_IGN);
    const rlimit None{0, m_Old.rlim_max};
    setrlimit(RLIMIT_FSIZE, &None);
  }
  ~CFileSizeLimit() { setrlimit(RLIMIT_FSIZE, &m_Old); }

private:
  rlimit m_Old{};
};

TEST_F(SettingsTest, StoreStaysWholeWhenTheDiskIsFull) {
  SetSetting(MainWindow, QStringLiteral("Version"), QStringLiteral("V1.00"));
  ASSERT_EQ(0, SaveSettings());
  SetSetting(MainWindow, QStringLiteral("Version"), QStringLiteral("V2.00"));
  {
    const CFileSizeLimit Limit;
    EXPECT_EQ(-1, SaveSettings());
  }
  QFile Store(StoreFile());
  ASSERT_TRUE(Store.open(QIODevice::ReadOnly));
  EXPECT_TRUE(Store.readAll().contains("V1.00"));
}

TEST_F(SettingsTest, BatchSessionsLeaveTheStoreAlone) {
  SetSettingsInMemory(true);
  SetSetting(MainWindow, QStringLiteral("Version"), QStringLiteral("V3.00"));
  EXPECT_EQ(0, SaveSettings());
  EXPECT_EQ(StoreFile(), QString());
  EXPECT_EQ(GetSetting(MainWindow, QStringLiteral("Version")), QStringLiteral("V3.00"));
}

}  // namespace
