#include "program/database/file_finder.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QTemporaryDir>

#include "base/msg_flags.h"

namespace {

class FileFinderTest : public testing::Test {
protected:
  FileFinderTest() : m_Finder(*CFileFinder::Get()), m_sRoot(QDir(m_Dir.path()).canonicalPath()) {}

  // The finder's timer needs one.
  static void SetUpTestSuite() {
    static int argc = 1;
    static char sName[] = "test";
    static char* argv[] = {sName, nullptr};
    static QCoreApplication Application(argc, argv);
  }
  void SetUp() override {
    for (const char* sFile :
         {"project/demo.vdebug", "project/src/main.c", "project/local.c", "root/src/main.c", "root/only_root.c",
          "search/lost.c", "search/sub/deep.c", "app/Config/Peripherals/chip.xml", "app/Config/CPU/core.svd",
          "app/Plugins/OS/kernel.so", "app/Doc/manual.pdf", "program/beside.c", "search/image.elf", "project/own.svd",
          "project/own.xml", "project/lib/image.hex"}) {
      Make(QString::fromLatin1(sFile));
    }
    m_Finder.Clear();
    m_Finder.SetMessageSink([this](const QString& sText, U32 Flags) {
      if (Flags & (MSG_TO_CONSOLE | MSG_TO_ALL)) m_Console.append(sText);
    });
    m_Finder.SetProjectPath(Path("project/demo.vdebug"));
    m_Finder.SetProgramPath(Path("program/demo.elf"));
    m_Finder.SetExecutableDir(Path("app"));
  }
  void TearDown() override {
    m_Finder.Clear();
    m_Finder.SetMessageSink({});
    m_Finder.SetProjectPath({});
    m_Finder.SetProgramPath({});
    m_Finder.SetExecutableDir({});
  }

  QString Path(const char* sPath) const { return Path(QString::fromLatin1(sPath)); }
  QString Path(const QString& sPath) const { return m_sRoot + QLatin1Char('/') + sPath; }
  void Make(const QString& sPath) {
    QDir().mkpath(QFileInfo(Path(sPath)).path());
    QFile File(Path(sPath));
    ASSERT_TRUE(File.open(QIODevice::WriteOnly));
  }
  // The result relative to the tree.
  QString Resolve(const QString& sPath) {
    QString sResult = m_Finder.ResolvePath(sPath);
    if (sResult.startsWith(m_sRoot)) sResult = sResult.mid(m_sRoot.size() + 1);
    return sResult;
  }
  QString Resolve(const char* sPath) { return Resolve(QString::fromLatin1(sPath)); }

  CFileFinder& m_Finder;
  QTemporaryDir m_Dir;
  QString m_sRoot;
  QStringList m_Console;
};

TEST_F(FileFinderTest, ExpandsMacros) {
  const struct {
    const char* sText;
    QString sExpected;
  } aCases[] = {
      {"$(ProjectDir)/a.c", Path("project/a.c")},
      {"$(PROJECTDIR)/$(projectdir)", Path("project") + QLatin1Char('/') + Path("project")},
      {"$(DocDir)", Path("app/Doc/")},
      {"$(ConfigDir)/CPU", Path("app/Config//CPU")},
      {"$(LibraryDir)$(PluginDir)", Path("app/Lib/") + Path("app/Plugins/")},
      {"$(InstallDir)|$(ExecutableDir)|$(AppBundleDir)", QStringList{Path("app"), Path("app"), Path("app")}.join(u'|')},
      {"$(AppDir)/x", Path("program/x")},
      {"$(Other)$", QStringLiteral("$(Other)$")},
  };
  for (const auto& Case : aCases) {
    EXPECT_EQ(m_Finder.ExpandMacros(QString::fromLatin1(Case.sText)), Case.sExpected) << Case.sText;
  }
  m_Finder.SetProjectPath({});
  EXPECT_EQ(m_Finder.ExpandMacros(QStringLiteral("$(ProjectDir)/a.c")), QStringLiteral("/a.c"));
}

TEST_F(FileFinderTest, LooksForEachKindInItsPlaces) {
  m_Finder.AddSearchPath(QStringLiteral("$(ProjectDir)/../search"));
  const struct {
    const char* sAsked;
    const char* sFound;
  } aCases[] = {
      {"src/main.c", "project/src/main.c"},   // base
      {"src\\main.c", "project/src/main.c"},  // other host's separators
      {"gone/away/lost.c", "search/lost.c"},  // by bare name
      {"beside.c", "program/beside.c"},       // beside the program
      {"deep.c", ""},                         // search directories are not searched recursively
      {"chip.svd", "app/Config/Peripherals/chip.xml"},
      {"core.xml", "app/Config/CPU/core.svd"},
      {"own.xml", "project/own.xml"},  // a file at its place, whatever lies beside it
      {"kernel.so", "app/Plugins/OS/kernel.so"},
      {"manual.pdf", "app/Doc/manual.pdf"},
      {"out/image.elf", "search/image.elf"},
      {"main.vdebug", ""},
      {"", ""},
  };
  for (const auto& Case : aCases) EXPECT_EQ(Resolve(Case.sAsked), QString::fromLatin1(Case.sFound)) << Case.sAsked;
}

TEST_F(FileFinderTest, RootPathsComeFirstInTheirOrder) {
  m_Finder.AddRootPath(QStringLiteral("../root"));  // relative to the project
  EXPECT_EQ(Resolve("src/main.c"), QStringLiteral("root/src/main.c"));
  EXPECT_EQ(Resolve("only_root.c"), QStringLiteral("root/only_root.c"));
  EXPECT_EQ(Resolve("local.c"), QStringLiteral("project/local.c"));
  m_Finder.Clear();
  m_Finder.AddRootPath(Path("project"));
  m_Finder.AddRootPath(Path("root"));
  EXPECT_EQ(Resolve("src/main.c"), QStringLiteral("project/src/main.c"));
}

TEST_F(FileFinderTest, ProjectWithoutDirectoryIsNoBase) {
  QStringList Tested;
  m_Finder.SetMessageSink([&Tested](const QString& sText, U32) {
    if (sText.startsWith(QStringLiteral("Testing "))) Tested.append(sText.mid(8));
  });
  m_Finder.SetProjectPath(QStringLiteral("demo.vdebug"));
  EXPECT_EQ(Resolve("src/main.c"), QString());
  EXPECT_EQ(Tested, (QStringList{Path("app/src/main.c"), Path("program/src/main.c")}));
}

TEST_F(FileFinderTest, AbsolutePathsAreNotSearchedFor) {
  m_Finder.AddSearchPath(Path("search"));
  EXPECT_EQ(Resolve(Path("project/./src//main.c")), QStringLiteral("project/src/main.c"));
  EXPECT_EQ(Resolve("/build/agent/lost.c"), QStringLiteral("/build/agent/lost.c"));
  EXPECT_EQ(Resolve("C:\\build\\lost.c"), QStringLiteral("C:\\build\\lost.c"));
  m_Finder.AddPathSubstitute(QStringLiteral("c:/build"), Path("search"));
  EXPECT_EQ(Resolve("C:\\build\\lost.c"), QStringLiteral("search/lost.c"));
  EXPECT_EQ(Resolve("C:\\BUILD\\sub\\deep.c"), QStringLiteral("search/sub/deep.c"));
}

TEST_F(FileFinderTest, AliasesAndSubstitutesApplyInKeyOrder) {
  m_Finder.AddFileAlias(QStringLiteral("Old.c"), Path("project/local.c"));
  m_Finder.AddFileAlias(QStringLiteral("old.c"), Path("search/lost.c"));
  EXPECT_EQ(Resolve("OLD.C"), QStringLiteral("project/local.c"));
  EXPECT_EQ(m_Finder.GetAliasOf(Path("PROJECT/local.c")), Path("project/local.c"));
  EXPECT_EQ(m_Finder.GetAliasOf(QStringLiteral("no/alias.c")), QStringLiteral("no/alias.c"));
  // Substitutes chain: the first one's result holds the second one's key.
  m_Finder.AddPathSubstitute(QStringLiteral("/a/"), QStringLiteral("/b/"));
  m_Finder.AddPathSubstitute(QStringLiteral("/b/"), Path("search/"));
  EXPECT_EQ(Resolve("/a/lost.c"), QStringLiteral("search/lost.c"));
  // A missing file keeps the form it had before the cleaning.
  EXPECT_EQ(Resolve("/c//./gone.c"), QStringLiteral("/c//./gone.c"));
}

TEST_F(FileFinderTest, ReportsEachPathOnce) {
  m_Finder.AddSearchPath(Path("search"));
  m_Finder.AddSearchPath(QStringLiteral("lib"));
  for (int i = 0; i < 2; ++i) {
    Resolve("x/image.elf");
    Resolve("out/image.hex");  // found in a search directory of the project's directory
    Resolve("absent.elf");
    Resolve("demo.vdebug");  // found in the project's directory
  }
  EXPECT_EQ(m_Console,
            (QStringList{
                QStringLiteral("File path resolved: \"x/image.elf\" was found at \"%1\"").arg(Path("search/image.elf")),
                QStringLiteral("File not found: absent.elf")}));
  m_Console.clear();
  m_Finder.SetLogResults(false);
  Resolve("other.elf");
  EXPECT_TRUE(m_Console.isEmpty());
}

TEST_F(FileFinderTest, CountsSourceFilesAndSignalsABurstOnce) {
  int NumChanges = 0;
  QStringList Resolved;
  QObject Receiver;
  QObject::connect(&m_Finder, &CFileFinder::SrcFileResStatsChanged, &Receiver, [&] { ++NumChanges; });
  QObject::connect(&m_Finder, &CFileFinder::SrcFilePathResolved, &Receiver,
                   [&](const QString& sAsked, const QString& sPath) {
                     Resolved = {sAsked, sPath};
                   });
  Resolve("src/main.c");
  Resolve("./src/main.c");
  Resolve("absent.c");
  EXPECT_EQ(m_Finder.GetResolvedFiles(), QSet<QString>{Path("project/src/main.c")});
  EXPECT_EQ(m_Finder.GetUnresolvedFiles(), QSet<QString>{QStringLiteral("absent.c")});
  EXPECT_EQ(Resolved, (QStringList{QStringLiteral("./src/main.c"), Path("project/src/main.c")}));
  EXPECT_EQ(NumChanges, 0);
  QEventLoop Loop;
  QTimer::singleShot(800, &Loop, &QEventLoop::quit);
  Loop.exec();
  EXPECT_EQ(NumChanges, 1);
  EXPECT_EQ(m_Console,
            (QStringList{QStringLiteral("1 source file paths resolved"), QStringLiteral("1 source files not found")}));
  m_Finder.AddSearchPath(Path("search"));
  EXPECT_TRUE(m_Finder.GetUnresolvedFiles().isEmpty());
}

}  // namespace
