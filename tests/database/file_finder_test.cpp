#include <QEventLoop>

#include "base/msg_flags.h"
#include "finder_fixture.h"

namespace {

class FileFinderTest : public FinderTest {
protected:
  FileFinderTest() {
    Make({"@/project/demo.vdebug", "@/project/src/main.c", "@/project/local.c", "@/base/src/main.c",
          "@/base/only_base.c", "@/search/lost.c", "@/search/sub/deep.c", "@/app/Config/Peripherals/chip.xml",
          "@/app/Config/CPU/core.svd", "@/app/Plugins/OS/kernel.so", "@/app/Doc/manual.pdf", "@/program/beside.c",
          "@/search/image.elf", "@/project/own.svd", "@/project/own.xml", "@/project/lib/image.hex"});
    m_Finder.SetMessageSink([this](const QString& sText, U32 Flags) {
      if (Flags & (MSG_TO_CONSOLE | MSG_TO_ALL)) m_Console.push_back(Short(sText));
      if (sText.startsWith(u"Testing ")) m_Tested.push_back(Short(sText.mid(8)));
    });
    m_Finder.SetProjectPath(Full("@/project/demo.vdebug"));
    m_Finder.SetProgramPath(Full("@/program/demo.elf"));
  }

  std::vector<std::string> m_Console, m_Tested;
};

TEST_F(FileFinderTest, ExpandsMacros) {
  const PATHS Cases = {
      {"$(ProjectDir)/a.c", "@/project/a.c"},
      {"$(PROJECTDIR)/$(projectdir)", "@/project/@/project"},
      {"$(DocDir)", "@/app/Doc/"},
      {"$(ConfigDir)/CPU", "@/app/Config//CPU"},
      {"$(LibraryDir)$(PluginDir)", "@/app/Lib/@/app/Plugins/"},
      {"$(InstallDir)|$(ExecutableDir)|$(AppBundleDir)", "@/app|@/app|@/app"},
      {"$(AppDir)/x", "@/program/x"},
      {"$(Other)$", "$(Other)$"},
  };
  for (const auto& [sText, sExpanded] : Cases)
    EXPECT_EQ(Short(m_Finder.ExpandMacros(QLatin1String(sText))), sExpanded) << sText;
  m_Finder.SetProjectPath({});
  EXPECT_EQ(m_Finder.ExpandMacros(u"$(ProjectDir)/a.c"_s), u"/a.c");
}

TEST_F(FileFinderTest, LooksForEachKindInItsPlaces) {
  m_Finder.AddSearchPath(u"$(ProjectDir)/../search"_s);
  ExpectFound({
      {"src/main.c", "@/project/src/main.c"},   // base
      {"src\\main.c", "@/project/src/main.c"},  // other host's separators
      {"gone/away/lost.c", "@/search/lost.c"},  // by bare name
      {"beside.c", "@/program/beside.c"},       // beside the program
      {"deep.c", ""},                           // search directories are not searched recursively
      {"chip.svd", "@/app/Config/Peripherals/chip.xml"},
      {"core.xml", "@/app/Config/CPU/core.svd"},
      {"own.xml", "@/project/own.xml"},  // a file at its place, whatever lies beside it
      {"kernel.so", "@/app/Plugins/OS/kernel.so"},
      {"manual.pdf", "@/app/Doc/manual.pdf"},
      {"out/image.elf", "@/search/image.elf"},
      {"main.vdebug", ""},
      {"", ""},
  });
}

TEST_F(FileFinderTest, RootPathsComeFirstInTheirOrder) {
  m_Finder.AddRootPath(u"../base"_s);  // relative to the project
  ExpectFound(
      {{"src/main.c", "@/base/src/main.c"}, {"only_base.c", "@/base/only_base.c"}, {"local.c", "@/project/local.c"}});
  m_Finder.Clear();
  m_Finder.AddRootPath(Full("@/project"));
  m_Finder.AddRootPath(Full("@/base"));
  ExpectFound({{"src/main.c", "@/project/src/main.c"}});
}

TEST_F(FileFinderTest, ProjectWithoutDirectoryIsNoBase) {
  m_Finder.SetProjectPath(u"demo.vdebug"_s);
  ExpectFound({{"src/main.c", ""}});
  EXPECT_EQ(m_Tested, (std::vector<std::string>{"@/app/src/main.c", "@/program/src/main.c"}));
}

TEST_F(FileFinderTest, AbsolutePathsAreNotSearchedFor) {
  m_Finder.AddSearchPath(Full("@/search"));
  EXPECT_EQ(Short(m_Finder.ResolvePath(Full("@/project/./src//main.c"))), "@/project/src/main.c");
  ExpectFound({{"/build/agent/lost.c", "/build/agent/lost.c"}, {"C:\\build\\lost.c", "C:\\build\\lost.c"}});
  m_Finder.AddPathSubstitute(u"c:/build"_s, Full("@/search"));
  ExpectFound({{"C:\\build\\lost.c", "@/search/lost.c"}, {"C:\\BUILD\\sub\\deep.c", "@/search/sub/deep.c"}});
}

TEST_F(FileFinderTest, AliasesAndSubstitutesApplyInKeyOrder) {
  m_Finder.AddFileAlias(u"Old.c"_s, Full("@/project/local.c"));
  m_Finder.AddFileAlias(u"old.c"_s, Full("@/search/lost.c"));
  EXPECT_EQ(m_Finder.GetAliasOf(Full("@/PROJECT/local.c")), Full("@/project/local.c"));
  EXPECT_EQ(m_Finder.GetAliasOf(u"no/alias.c"_s), u"no/alias.c");
  m_Finder.AddPathSubstitute(u"/a/"_s, u"/b/"_s);
  m_Finder.AddPathSubstitute(u"/b/"_s, Full("@/search/"));
  ExpectFound({{"OLD.C", "@/project/local.c"},
               {"/a/lost.c", "@/search/lost.c"},    // the first one's result holds the second one's key
               {"/c//./gone.c", "/c//./gone.c"}});  // missing: as it was before the cleaning
}

TEST_F(FileFinderTest, ReportsEachPathOnce) {
  m_Finder.AddSearchPath(Full("@/search"));
  m_Finder.AddSearchPath(u"lib"_s);
  // The second and the last are found in the project's directory.
  for (int i = 0; i < 2; ++i)
    for (const char* sPath : {"x/image.elf", "out/image.hex", "absent.elf", "demo.vdebug"}) Resolve(sPath);
  m_Finder.SetLogResults(false);
  Resolve("other.elf");
  EXPECT_EQ(m_Console,
            (std::vector<std::string>{"File path resolved: \"x/image.elf\" was found at \"@/search/image.elf\"",
                                      "File not found: absent.elf"}));
}

TEST_F(FileFinderTest, CountsSourceFilesAndSignalsABurstOnce) {
  int NumChanges = 0;
  std::string sResolved;
  QObject Receiver;
  QObject::connect(&m_Finder, &CFileFinder::SrcFileResStatsChanged, &Receiver, [&] { ++NumChanges; });
  QObject::connect(&m_Finder, &CFileFinder::SrcFilePathResolved, &Receiver,
                   [&](const QString& sAsked, const QString& sPath) { sResolved = Short(sAsked + u" is "_s + sPath); });
  for (const char* sPath : {"src/main.c", "./src/main.c", "absent.c"}) Resolve(sPath);
  EXPECT_EQ(m_Finder.GetResolvedFiles(), QSet<QString>{Full("@/project/src/main.c")});
  EXPECT_EQ(m_Finder.GetUnresolvedFiles(), QSet<QString>{u"absent.c"_s});
  EXPECT_EQ(sResolved, "./src/main.c is @/project/src/main.c");
  EXPECT_EQ(NumChanges, 0);
  QEventLoop Loop;
  QObject::connect(&m_Finder, &CFileFinder::SrcFileResStatsChanged, &Loop, &QEventLoop::quit);
  QTimer::singleShot(10'000, &Loop, &QEventLoop::quit);
  Loop.exec();
  EXPECT_EQ(NumChanges, 1);
  EXPECT_EQ(m_Console, (std::vector<std::string>{"1 source file paths resolved", "1 source files not found"}));
  m_Finder.AddSearchPath(Full("@/search"));
  EXPECT_TRUE(m_Finder.GetUnresolvedFiles().isEmpty());
}

}  // namespace
