// Sources that lie elsewhere than their program says: one shown file leads to the rest of its tree.

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include "program/database/file_finder.h"

namespace {

TEST(MovedTree, IsWhatBothPathsEndIn) {
  const struct {
    const char* sWanted;
    const char* sChosen;
    MOVED_TREE_RULE Rule;
    const char* sOld;
    const char* sNew;
  } aCases[] = {
      {"C:\\build\\fw\\src\\a.c", "/home/u/fw/src/a.c", MOVED_TREE_SUBSTITUTE, "C:/build/", "/home/u/"},
      {"c:/FW/Src/A.c", "/home/u/fw/src/a.c", MOVED_TREE_SUBSTITUTE, "c:/", "/home/u/"},
      {"\\\\server\\share\\fw\\a.c", "/mnt/fw/a.c", MOVED_TREE_SUBSTITUTE, "/server/share/", "/mnt/"},
      {"/agent/_work/1/s/a.c", "/home/u/s/a.c", MOVED_TREE_SUBSTITUTE, "/agent/_work/1/", "/home/u/"},
      {"/agent/build/../src/a.c", "/home/u/src/a.c", MOVED_TREE_SUBSTITUTE, "/agent/build/../", "/home/u/"},
      {"/agent/old/a.c", "/home/new/a.c", MOVED_TREE_SUBSTITUTE, "/agent/old/", "/home/new/"},
      {"fw/src/a.c", "/home/u/fw/src/a.c", MOVED_TREE_ROOT, "", "/home/u/"},
      {"../src/a.c", "/home/u/src/a.c", MOVED_TREE_NONE, "", ""},
      {"/agent/a.c", "/home/b.c", MOVED_TREE_NONE, "", ""},
      {"/agent/a.c", "/home/agent/a.c", MOVED_TREE_NONE, "", ""},    // "/" would be everywhere
      {"/a/src/x.c", "/home/a/src/y/x.c", MOVED_TREE_NONE, "", ""},  // applied to its own result
      {"/other/x.c", "/home/x.c", MOVED_TREE_NONE, "", ""},          // stands inside a known path
      {"/agent/a.c", "/agent/a.c", MOVED_TREE_NONE, "", ""},
      {"", "/agent/a.c", MOVED_TREE_NONE, "", ""},
      {"/agent/", "/home/", MOVED_TREE_NONE, "", ""},
  };
  const QStringList Known = {QStringLiteral("/lib/other/z.c"), QStringLiteral("/agent/old/deep/b.c")};
  for (const auto& Case : aCases) {
    const MOVED_TREE Tree = FindMovedTree(QString::fromLatin1(Case.sWanted), QString::fromLatin1(Case.sChosen), Known);
    EXPECT_EQ(Tree.Rule, Case.Rule) << Case.sWanted << ": " << Tree.sProblem.toStdString();
    EXPECT_EQ(Tree.sProblem.isEmpty(), Case.Rule != MOVED_TREE_NONE) << Case.sWanted;
    if (Case.Rule == MOVED_TREE_NONE) continue;
    EXPECT_EQ(Tree.sOld, QString::fromLatin1(Case.sOld)) << Case.sWanted;
    EXPECT_EQ(Tree.sNew, QString::fromLatin1(Case.sNew)) << Case.sWanted;
  }
}

class MovedFilesTest : public testing::Test {
protected:
  MovedFilesTest() : m_Finder(*CFileFinder::Get()), m_sRoot(QDir(m_Dir.path()).canonicalPath()) {
    m_Finder.Clear();
    m_Finder.SetExecutableDir(Path("app"));
    for (const char* sFile : {"here/fw/src/a.c", "here/fw/src/b.c", "here/fw/inc/c.h", "odd/a.c", "dir/one/x.c"})
      Make(sFile);
  }
  ~MovedFilesTest() override {
    m_Finder.Clear();
    m_Finder.SetExecutableDir({});
  }
  QString Path(const char* sPath) const { return m_sRoot + u'/' + QLatin1String(sPath); }
  void Make(const char* sFile) {
    QDir().mkpath(QFileInfo(Path(sFile)).path());
    QFile File(Path(sFile));
    EXPECT_TRUE(File.open(QIODevice::WriteOnly));
  }
  QString Find(const char* sPath) const { return m_Finder.FindFile(QLatin1String(sPath)); }

  CFileFinder& m_Finder;
  QTemporaryDir m_Dir;
  QString m_sRoot;
};

TEST_F(MovedFilesTest, TheRestOfTheTreeFollows) {
  EXPECT_EQ(m_Finder.AddMovedFile(QStringLiteral("D:\\ci\\fw\\src\\a.c"), Path("here/fw/src/a.c")).Rule,
            MOVED_TREE_SUBSTITUTE);
  EXPECT_EQ(Find("D:\\ci\\fw\\src\\a.c"), Path("here/fw/src/a.c"));
  EXPECT_EQ(Find("d:/ci/fw/src/b.c"), Path("here/fw/src/b.c"));
  EXPECT_EQ(Find("D:/ci/fw/src/../inc/c.h"), Path("here/fw/inc/c.h"));
  EXPECT_EQ(Find("D:/ci2/fw/src/b.c"), QStringLiteral("D:/ci2/fw/src/b.c"));
  EXPECT_EQ(m_Finder.AddMovedFile(QStringLiteral("\\\\nas\\share\\fw\\src\\a.c"), Path("here/fw/src/a.c")).Rule,
            MOVED_TREE_SUBSTITUTE);
  EXPECT_EQ(Find("\\\\NAS\\share\\fw\\inc\\c.h"), Path("here/fw/inc/c.h"));
  EXPECT_EQ(m_Finder.AddMovedFile(QStringLiteral("src/b.c"), Path("here/fw/src/b.c")).Rule, MOVED_TREE_ROOT);
  EXPECT_EQ(Find("inc/c.h"), Path("here/fw/inc/c.h"));
}

TEST_F(MovedFilesTest, WhatLeadsElsewhereIsRefusedAndUndone) {
  m_Finder.AddPathSubstitute(QStringLiteral("D:/ci/"), Path("here/"));
  const U32 Before = m_Finder.GetGeneration();
  EXPECT_EQ(m_Finder.AddMovedFile(QStringLiteral("D:/ci/gone/a.c"), Path("odd/a.c")).Rule, MOVED_TREE_NONE)
      << "the first substitute leaves nothing of the second one's key";
  EXPECT_NE(m_Finder.GetGeneration(), Before) << "what was remembered of the attempt is dropped";
  EXPECT_EQ(m_Finder.AddMovedFile(QStringLiteral("D:/ci/a.c"), Path("odd/a.c")).Rule, MOVED_TREE_NONE)
      << "the same key leads the rest of the tree already";
  EXPECT_EQ(Find("D:/ci/fw/src/a.c"), Path("here/fw/src/a.c")) << "the old rule stands";
  EXPECT_EQ(m_Finder.AddMovedFile(QStringLiteral("/x/a.c"), Path("no/a.c")).sProblem, QStringLiteral("file not found"));
}

TEST_F(MovedFilesTest, ABurstReadsDirectoriesOnceAndEndsWithItsMemory) {
  m_Finder.AddSearchPath(Path("dir/one"));
  m_Finder.AddSearchPath(Path("dir/two"));
  const auto Resolved = [this](const char* sPath) { return Find(sPath); };
  {
    const CFindBurst Outer;
    const CFindBurst Inner;
    EXPECT_EQ(Resolved("gone/x.c"), Path("dir/one/x.c"));
    EXPECT_EQ(Resolved("gone/one"), QString()) << "a directory is no file";
    Make("dir/two/y.c");
    EXPECT_EQ(Resolved("gone/y.c"), QString()) << "seen after the burst";
    m_Finder.AddSearchPath(Path("odd"));
    EXPECT_EQ(Resolved("gone/a.c"), Path("odd/a.c")) << "settings count at once";
  }
  Make("dir/one/z.c");
  EXPECT_EQ(Resolved("gone/y.c"), Path("dir/two/y.c"));
  const CFindBurst Again;
  EXPECT_EQ(Resolved("gone/z.c"), Path("dir/one/z.c"));
  EXPECT_EQ(Resolved("gone/Z.c"), QString());
}

}  // namespace
