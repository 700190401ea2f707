// Saving when the disk is full, the directory or the file is read-only, or the file is not where its name stands.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include "project/project.h"
#include "script/text_file.h"
#include "script/vscript.h"
#include "shell/log/log.h"
#include "tests/common/file_size_limit.h"
#include "tests/common/files.h"
#include "tests/common/print.h"

namespace {

constexpr uid_t NOBODY = 65534;

// Permissions do not bind the super-user.
class CPlainUser {
public:
  CPlainUser() : m_bWasRoot(geteuid() == 0 && seteuid(NOBODY) == 0) {}
  ~CPlainUser() { EXPECT_EQ(m_bWasRoot ? seteuid(0) : 0, 0); }

private:
  bool m_bWasRoot;
};

struct FULL_DISK_OF_A_PLAIN_USER {
  CPlainUser Plain;
  CFileSizeLimit Full;
};

class SavingTest : public testing::Test {
protected:
  SavingTest() {
    CProject::Get().SetHost({});
    CProject::Get().Close();
    VScript::Close();
  }
  ~SavingTest() override { CProject::Get().SetHost({}); }

  QString Path(const char* sName) const { return m_Dir.filePath(sName); }
  // The old file stays, with nothing beside it, and the log says so.
  template <typename TROUBLE>
  void ExpectFailure(const QString& sPath) {
    const QString sLog = Path("log.txt");
    OpenLogFile(LOG_FILE_APPLICATION, sLog.toUtf8().constData());
    {
      const TROUBLE Trouble;
      for (int Lines : {1, 10'000}) EXPECT_FALSE(WriteTextFile(sPath, QString("new\n").repeated(Lines)));
    }
    CloseLogFiles();
    EXPECT_EQ(ReadBytes(sPath), "old\r\n");
    const QDir Dir(QFileInfo(sPath).path());
    EXPECT_EQ(Dir.entryList(QDir::Files | QDir::Hidden | QDir::System), QStringList{"a.vdebug"});
    EXPECT_TRUE(ReadBytes(sLog).contains("Could not write \"" + sPath.toUtf8())) << ReadBytes(sLog).toStdString();
  }

  QTemporaryDir m_Dir;
};

TEST_F(SavingTest, AFullDiskOrAReadOnlyFileKeepsTheOldTextAndSaysSo) {
  const QString sDir = Path("locked");
  ASSERT_TRUE(QDir().mkpath(sDir));
  const QString sPath = WriteBytes(sDir + "/a.vdebug", "old\r\n");
  ExpectFailure<CFileSizeLimit>(sPath);
  ASSERT_EQ(chmod(sPath.toUtf8().constData(), 0666), 0);
  ASSERT_EQ(chmod(sDir.toUtf8().constData(), 0555), 0);
  ASSERT_EQ(chmod(m_Dir.path().toUtf8().constData(), 0755), 0);
  {
    const CPlainUser Plain;
    EXPECT_TRUE(WriteTextFile(sPath, "old\n")) << "a file that may be written";
  }
  ExpectFailure<FULL_DISK_OF_A_PLAIN_USER>(sPath);
  ASSERT_EQ(chmod(sPath.toUtf8().constData(), 0444), 0);
  ExpectFailure<CPlainUser>(sPath);
  chmod(sDir.toUtf8().constData(), 0755);
}

TEST_F(SavingTest, LinksAndPermissionsSurvive) {
  const QString sFile = WriteBytes(Path("real.vdebug"), "old");
  const QString sLink = Path("link.vdebug");
  const QString sSecond = Path("second.vdebug");
  const QString sDangling = Path("dangling.vdebug");
  ASSERT_EQ(chmod(sFile.toUtf8().constData(), 0640), 0);
  ASSERT_TRUE(QFile::link("real.vdebug", sLink));
  ASSERT_TRUE(QFile::link("link.vdebug", sSecond));
  ASSERT_TRUE(QFile::link("made.vdebug", sDangling));
  ASSERT_TRUE(WriteTextFile(sSecond, "new"));
  EXPECT_EQ(ReadBytes(sFile), "new");
  EXPECT_TRUE(QFileInfo(sLink).isSymLink());
  EXPECT_TRUE(QFileInfo(sSecond).isSymLink());
  using enum QFileDevice::Permission;
  EXPECT_EQ(QFileInfo(sFile).permissions() & ~(ReadUser | WriteUser), ReadOwner | WriteOwner | ReadGroup);
  ASSERT_TRUE(WriteTextFile(sDangling, "made"));
  EXPECT_TRUE(QFileInfo(sDangling).isSymLink());
  EXPECT_EQ(ReadBytes(Path("made.vdebug")), "made");
}

TEST_F(SavingTest, ReadsWhatItIsGivenWithoutLosingCharacters) {
  const std::pair<QByteArray, QString> aCases[] = {
      {"caf\303\251", "caf\u00E9"},  // UTF-8
      {"caf\351", "caf\u00E9"},      // Latin-1
      {"\357\273\277a", "a"},       {QByteArray("\377\376a\0", 4), "a"}, {"", ""},
  };
  for (const auto& [Bytes, sText] : aCases) {
    bool bOk = false;
    EXPECT_EQ(ReadTextFile(WriteBytes(Path("t"), Bytes), &bOk), sText) << Bytes.toHex().toStdString();
    EXPECT_TRUE(bOk);
  }
  ASSERT_TRUE(WriteTextFile(Path("t"), "a\r\nb\rc\nd\u00E9"));
  EXPECT_EQ(ReadBytes(Path("t")), "a\r\nb\r\nc\r\nd\xC3\xA9");
}

TEST_F(SavingTest, WhatCouldNotBeSavedIsMadeAnewFromTheSettingsOfThenOrStaysModified) {
  CProject& Project = CProject::Get();
  Project.SetProgramFile("first.elf");
  {
    const CFileSizeLimit Full;
    EXPECT_FALSE(Project.Save(Path("a.vdebug")));
  }
  EXPECT_EQ(Project.GetFileName(), QString());
  Project.SetProgramFile("second.elf");
  ASSERT_TRUE(Project.Save(Path("a.vdebug")));
  EXPECT_TRUE(ReadBytes(Path("a.vdebug")).contains("second.elf"));
  EXPECT_FALSE(ReadBytes(Path("a.vdebug")).contains("first.elf"));
  Project.Create({});
  EXPECT_FALSE(Project.Save(Path("no/such/a.vdebug")));
  EXPECT_TRUE(Project.IsModified());
  EXPECT_TRUE(Project.Save(Path("b.vdebug")));
  EXPECT_FALSE(Project.IsModified());
}

TEST_F(SavingTest, EditsOfTheLoadedFileOutliveTheNextSave) {
  CProject& Project = CProject::Get();
  const QString sPath =
      WriteBytes(Path("a.vdebug"), "void OnProjectLoad (void) {\r\n  // mine\r\n  Project.SetDevice (\"A\");\r\n}\r\n");
  ASSERT_EQ(VScript::Load(sPath), 0);
  EXPECT_TRUE(Project.HasCommand("Project.SetDevice"));
  EXPECT_FALSE(Project.HasCommand("Project.SetHostIF"));
  ASSERT_TRUE(Project.UpdateVNodeCommands(sPath, {"Project.SetHostIF (\"USB\", \"\");"}));
  EXPECT_FALSE(Project.HasCommand("Project.SetDevice"));
  ASSERT_TRUE(Project.Save(sPath));
  EXPECT_EQ(ReadBytes(sPath),
            "void OnProjectLoad (void) {\r\n  Project.SetHostIF (\"USB\", \"\");\r\n  // mine\r\n}\r\n");
  EXPECT_FALSE(Project.AddCommands(WriteBytes(Path("empty.vdebug"), ""), {"A ();"}));
  EXPECT_FALSE(Project.AddCommands(Path("missing.vdebug"), {"A ();"}));
}

TEST_F(SavingTest, AProjectIsKnownByItsPathWithoutLinks) {
  CProject& Project = CProject::Get();
  QStringList Paths;
  PROJECT_HOST Host;
  Host.SetProjectPath = [&Paths](const QString& sPath) { Paths << sPath; };
  Project.SetHost(Host);
  WriteBytes(Path("real.vdebug"), "void OnProjectLoad (void) {\n}\n");
  ASSERT_TRUE(QFile::link("real.vdebug", Path("link.vdebug")));
  ASSERT_EQ(VScript::Load(Path("link.vdebug")), 0);
  ASSERT_TRUE(Project.Save(Path("link.vdebug")));
  const QString sReal = QFileInfo(Path("real.vdebug")).canonicalFilePath();
  EXPECT_EQ(Project.GetProjectId(), sReal);
  EXPECT_EQ(Paths, QStringList{sReal});
  EXPECT_EQ(Project.GetFileName(), Path("link.vdebug"));
}

}  // namespace
