// Saving when the disk is full, the directory is read-only, or the file is not where its name stands.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <csignal>

#include "project/project.h"
#include "script/text_file.h"
#include "script/vscript.h"
#include "shell/log/log.h"

namespace {

constexpr uid_t NOBODY = 65534;

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

// Permissions do not bind the super-user.
class CPlainUser {
public:
  CPlainUser() : m_bWasRoot(geteuid() == 0 && seteuid(NOBODY) == 0) {}
  ~CPlainUser() {
    if (m_bWasRoot) EXPECT_EQ(seteuid(0), 0);
  }

private:
  bool m_bWasRoot;
};

class SavingTest : public testing::Test {
protected:
  QString Path(const char* sName) const { return m_Dir.filePath(QLatin1String(sName)); }
  void Write(const QString& sPath, const QByteArray& Bytes) {
    QFile File(sPath);
    ASSERT_TRUE(File.open(QIODevice::WriteOnly));
    File.write(Bytes);
  }
  static QByteArray Read(const QString& sPath) {
    QFile File(sPath);
    return File.open(QIODevice::ReadOnly) ? File.readAll() : QByteArray("<missing>");
  }
  QStringList Entries() const { return QDir(m_Dir.path()).entryList(QDir::Files | QDir::Hidden | QDir::System); }
  // What reached the log while a write failed.
  template <typename FUNC>
  QString LogOf(FUNC Write) {
    const QString sLog = Path("log.txt");
    OpenLogFile(LOG_FILE_APPLICATION, sLog.toUtf8().constData());
    Write();
    CloseLogFiles();
    const QString sText = QString::fromUtf8(Read(sLog));
    QFile::remove(sLog);
    return sText;
  }

  QTemporaryDir m_Dir;
};

TEST_F(SavingTest, AFullDiskKeepsTheOldFileAndSaysSo) {
  const QString sPath = Path("a.vdebug");
  Write(sPath, "old\r\n");
  bool bWritten = true;
  // The log itself is closed, and so written, when the disk has room again.
  const QString sLog = LogOf([&] {
    const CFileSizeLimit Full;
    bWritten = WriteTextFile(sPath, QStringLiteral("new\n").repeated(10000));
  });
  EXPECT_FALSE(bWritten);
  EXPECT_EQ(Read(sPath), "old\r\n");
  EXPECT_EQ(Entries(), QStringList{QStringLiteral("a.vdebug")}) << "nothing is left beside it";
  EXPECT_TRUE(sLog.contains(QStringLiteral("Could not write \"") + sPath)) << sLog.toStdString();
}

TEST_F(SavingTest, AReadOnlyDirectoryKeepsTheOldFileAndSaysSo) {
  const QString sDir = Path("locked");
  const QString sPath = sDir + QStringLiteral("/a.vdebug");
  ASSERT_TRUE(QDir().mkpath(sDir));
  Write(sPath, "old");
  ASSERT_EQ(chmod(sPath.toUtf8().constData(), 0666), 0);
  ASSERT_EQ(chmod(sDir.toUtf8().constData(), 0555), 0);
  ASSERT_EQ(chmod(m_Dir.path().toUtf8().constData(), 0755), 0);
  bool bWritten = true;
  const QString sLog = LogOf([&] {
    const CPlainUser User;
    bWritten = WriteTextFile(sPath, QStringLiteral("new"));
  });
  EXPECT_FALSE(bWritten);
  EXPECT_EQ(Read(sPath), "old");
  EXPECT_TRUE(sLog.contains(sPath)) << sLog.toStdString();
  chmod(sDir.toUtf8().constData(), 0755);
}

TEST_F(SavingTest, LinksAndPermissionsSurvive) {
  const QString sFile = Path("real.vdebug");
  const QString sLink = Path("link.vdebug");
  const QString sSecond = Path("second.vdebug");
  const QString sDangling = Path("dangling.vdebug");
  Write(sFile, "old");
  ASSERT_EQ(chmod(sFile.toUtf8().constData(), 0640), 0);
  ASSERT_TRUE(QFile::link(QStringLiteral("real.vdebug"), sLink));
  ASSERT_TRUE(QFile::link(QStringLiteral("link.vdebug"), sSecond));
  ASSERT_TRUE(QFile::link(QStringLiteral("made.vdebug"), sDangling));
  ASSERT_TRUE(WriteTextFile(sSecond, QStringLiteral("new")));
  EXPECT_EQ(Read(sFile), "new");
  EXPECT_TRUE(QFileInfo(sLink).isSymLink());
  EXPECT_TRUE(QFileInfo(sSecond).isSymLink());
  struct stat Info;
  ASSERT_EQ(stat(sFile.toUtf8().constData(), &Info), 0);
  EXPECT_EQ(Info.st_mode & 0777u, 0640u);
  ASSERT_TRUE(WriteTextFile(sDangling, QStringLiteral("made")));
  EXPECT_TRUE(QFileInfo(sDangling).isSymLink());
  EXPECT_EQ(Read(Path("made.vdebug")), "made");
}

TEST_F(SavingTest, ReadsWhatItIsGivenWithoutLosingCharacters) {
  const struct {
    QByteArray Bytes;
    QString sText;
  } aCases[] = {
      {"caf\xC3\xA9", QStringLiteral(u"caf\u00E9")},
      {"caf\xE9", QStringLiteral(u"caf\u00E9")},  // Latin-1
      {"\xEF\xBB\xBF"
       "a",
       QStringLiteral("a")},
      {QByteArray("\xFF\xFE"
                  "a\0",
                  4),
       QStringLiteral("a")},
      {"", QString()},
  };
  for (const auto& Case : aCases) {
    Write(Path("t"), Case.Bytes);
    bool bOk = false;
    EXPECT_EQ(ReadTextFile(Path("t"), &bOk), Case.sText) << Case.Bytes.toHex().toStdString();
    EXPECT_TRUE(bOk);
  }
  ASSERT_TRUE(WriteTextFile(Path("t"), QStringLiteral(u"a\r\nb\rc\nd\u00E9")));
  EXPECT_EQ(Read(Path("t")), "a\r\nb\r\nc\r\nd\xC3\xA9");
}

TEST_F(SavingTest, AProjectThatCouldNotBeSavedStaysModified) {
  CProject& Project = CProject::Get();
  VScript::Close();
  Project.SetHost({});
  const QString sPath = Path("a.vdebug");
  Project.Create({});
  {
    const CFileSizeLimit Full;
    EXPECT_FALSE(Project.Save(sPath));
  }
  EXPECT_TRUE(Project.IsModified());
  EXPECT_EQ(Project.GetFileName(), QString());
  EXPECT_TRUE(Project.Save(sPath));
  EXPECT_FALSE(Project.IsModified());
}

TEST_F(SavingTest, ATextThatCouldNotBeSavedIsMadeAnewFromTheSettingsOfThen) {
  CProject& Project = CProject::Get();
  Project.SetHost({});
  Project.Close();
  VScript::Close();
  Project.SetProgramFile(QStringLiteral("first.elf"));
  EXPECT_FALSE(Project.Save(Path("no/such/a.vdebug")));
  Project.SetProgramFile(QStringLiteral("second.elf"));
  ASSERT_TRUE(Project.Save(Path("a.vdebug")));
  EXPECT_TRUE(Read(Path("a.vdebug")).contains("second.elf"));
  EXPECT_FALSE(Read(Path("a.vdebug")).contains("first.elf"));
}

TEST_F(SavingTest, EditsOfTheLoadedFileOutliveTheNextSave) {
  CProject& Project = CProject::Get();
  Project.SetHost({});
  const QString sPath = Path("a.vdebug");
  Write(sPath, "void OnProjectLoad (void) {\r\n  // mine\r\n  Project.SetDevice (\"A\");\r\n}\r\n");
  ASSERT_EQ(VScript::Load(sPath), 0);
  EXPECT_TRUE(Project.HasCommand(QStringLiteral("Project.SetDevice")));
  EXPECT_FALSE(Project.HasCommand(QStringLiteral("Project.SetHostIF")));
  ASSERT_TRUE(Project.UpdateVNodeCommands(sPath, {QStringLiteral("Project.SetHostIF (\"USB\", \"\");")}));
  EXPECT_FALSE(Project.HasCommand(QStringLiteral("Project.SetDevice")));
  ASSERT_TRUE(Project.Save(sPath));
  EXPECT_EQ(Read(sPath), "void OnProjectLoad (void) {\r\n  Project.SetHostIF (\"USB\", \"\");\r\n  // mine\r\n}\r\n");
  Write(Path("empty.vdebug"), "");
  EXPECT_FALSE(Project.AddCommands(Path("empty.vdebug"), {QStringLiteral("A ();")}));
  EXPECT_FALSE(Project.AddCommands(Path("missing.vdebug"), {QStringLiteral("A ();")}));
}

TEST_F(SavingTest, AProjectIsKnownByItsPathWithoutLinks) {
  CProject& Project = CProject::Get();
  QStringList Paths;
  PROJECT_HOST Host;
  Host.SetProjectPath = [&Paths](const QString& sPath) { Paths << sPath; };
  Project.SetHost(Host);
  Project.Close();
  Write(Path("real.vdebug"), "void OnProjectLoad (void) {\n}\n");
  ASSERT_TRUE(QFile::link(QStringLiteral("real.vdebug"), Path("link.vdebug")));
  ASSERT_EQ(VScript::Load(Path("link.vdebug")), 0);
  ASSERT_TRUE(Project.Save(Path("link.vdebug")));
  const QString sReal = QFileInfo(Path("real.vdebug")).canonicalFilePath();
  EXPECT_EQ(Project.GetProjectId(), sReal);
  EXPECT_EQ(Paths, QStringList{sReal});
  EXPECT_EQ(Project.GetFileName(), Path("link.vdebug"));
  Project.SetHost({});
}

}  // namespace
