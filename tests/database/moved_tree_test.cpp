// Sources that lie elsewhere than their program says: one shown file leads to the rest of its tree.

#include "finder_fixture.h"

namespace {

TEST(MovedTree, IsWhatBothPathsEndIn) {
  using TEXT = const char*;
  // wanted, chosen; the rule, what it replaces and by what
  const std::tuple<TEXT, TEXT, MOVED_TREE_RULE, TEXT, TEXT> aCases[] = {
      {"C:\\build\\fw\\src\\a.c", "/home/u/fw/src/a.c", MOVED_TREE_SUBSTITUTE, "C:/build/", "/home/u/"},
      {"c:/FW/Src/A.c", "/home/u/fw/src/a.c", MOVED_TREE_SUBSTITUTE, "c:/", "/home/u/"},
      {"\\\\server\\share\\fw\\a.c", "/mnt/fw/a.c", MOVED_TREE_SUBSTITUTE, "/server/share/", "/mnt/"},
      {"/agent/_work/1/s/a.c", "/home/u/s/a.c", MOVED_TREE_SUBSTITUTE, "/agent/_work/1/", "/home/u/"},
      {"/agent/build/../src/a.c", "/home/u/src/a.c", MOVED_TREE_SUBSTITUTE, "/agent/build/../", "/home/u/"},
      {"/agent/old/a.c", "/home/new/a.c", MOVED_TREE_SUBSTITUTE, "/agent/old/", "/home/new/"},
      {"fw/src/a.c", "/home/u/fw/src/a.c", MOVED_TREE_ROOT, "", "/home/u/"},
      {"./src/a.c", "/home/u/src/a.c", MOVED_TREE_ROOT, "", "/home/u/"},
      {"../src/a.c", "/home/u/src/a.c", MOVED_TREE_NONE, "", ""},
      {"/agent/a.c", "/home/b.c", MOVED_TREE_NONE, "", ""},
      {"/agent/a.c", "/home/agent/a.c", MOVED_TREE_NONE, "", ""},    // "/" would be everywhere
      {"/a/src/x.c", "/home/a/src/y/x.c", MOVED_TREE_NONE, "", ""},  // applied to its own result
      {"/other/x.c", "/home/x.c", MOVED_TREE_NONE, "", ""},          // stands inside a known path
      {"/agent/a.c", "/agent/a.c", MOVED_TREE_NONE, "", ""},
      {"", "/agent/a.c", MOVED_TREE_NONE, "", ""},
      {"/agent/", "/home/", MOVED_TREE_NONE, "", ""},
  };
  const QStringList Known = {u"/lib/other/z.c"_s, u"/agent/old/deep/b.c"_s};
  for (const auto& [sWanted, sChosen, Rule, sOld, sNew] : aCases) {
    const MOVED_TREE Tree = FindMovedTree(QLatin1String(sWanted), QLatin1String(sChosen), Known);
    EXPECT_EQ(Tree.Rule, Rule) << sWanted << ": " << Tree.sProblem.toStdString();
    EXPECT_EQ(Tree.sProblem.isEmpty(), Rule != MOVED_TREE_NONE) << sWanted;
    if (Rule != MOVED_TREE_NONE) {
      EXPECT_EQ(Tree.sOld + u" -> "_s + Tree.sNew, sOld + u" -> "_s + sNew) << sWanted;
    }
  }
}

class MovedFilesTest : public FinderTest {
protected:
  MovedFilesTest() {
    Make({"@/here/fw/src/a.c", "@/here/fw/src/b.c", "@/here/fw/inc/c.h", "@/odd/a.c", "@/dir/one/x.c"});
  }
  MOVED_TREE Moved(const char* sWanted, const char* sChosen) {
    return m_Finder.AddMovedFile(QLatin1String(sWanted), Full(sChosen));
  }
};

TEST_F(MovedFilesTest, TheRestOfTheTreeFollows) {
  EXPECT_EQ(Moved("D:\\ci\\fw\\src\\a.c", "@/here/fw/src/a.c").Rule, MOVED_TREE_SUBSTITUTE);
  ExpectFound({{"D:\\ci\\fw\\src\\a.c", "@/here/fw/src/a.c"},
               {"d:/ci/fw/src/b.c", "@/here/fw/src/b.c"},
               {"D:/ci/fw/src/../inc/c.h", "@/here/fw/inc/c.h"},
               {"D:/ci2/fw/src/b.c", "D:/ci2/fw/src/b.c"}});
  EXPECT_EQ(Moved("\\\\nas\\share\\fw\\src\\a.c", "@/here/fw/src/a.c").Rule, MOVED_TREE_SUBSTITUTE);
  EXPECT_EQ(Moved("src/b.c", "@/here/fw/src/b.c").Rule, MOVED_TREE_ROOT);
  ExpectFound({{"\\\\NAS\\share\\fw\\inc\\c.h", "@/here/fw/inc/c.h"}, {"inc/c.h", "@/here/fw/inc/c.h"}});
}

TEST_F(MovedFilesTest, WhatLeadsElsewhereIsRefusedAndUndone) {
  m_Finder.AddPathSubstitute(u"D:/ci/"_s, Full("@/here/"));
  const U32 Before = m_Finder.GetGeneration();
  EXPECT_EQ(Moved("D:/ci/gone/a.c", "@/odd/a.c").Rule, MOVED_TREE_NONE)
      << "the first substitute leaves nothing of the second one's key";
  EXPECT_NE(m_Finder.GetGeneration(), Before) << "what was remembered of the attempt is dropped";
  EXPECT_EQ(Moved("D:/ci/a.c", "@/odd/a.c").Rule, MOVED_TREE_NONE) << "the same key leads the rest of the tree already";
  EXPECT_EQ(Resolve("D:/ci/fw/src/a.c"), "@/here/fw/src/a.c") << "the old rule stands";
  EXPECT_EQ(Moved("/x/a.c", "@/no/a.c").sProblem, u"file not found");
}

TEST_F(MovedFilesTest, ABurstReadsDirectoriesOnceAndEndsWithItsMemory) {
  m_Finder.AddSearchPath(Full("@/dir/one"));
  m_Finder.AddSearchPath(Full("@/dir/two"));
  Make({"@/dir/two/w.c"});
  ASSERT_TRUE(QFile::link(u"none"_s, Full("@/dir/one/w.c")));
  {
    const CFindBurst Outer;
    const CFindBurst Inner;
    EXPECT_EQ(Resolve("gone/x.c"), "@/dir/one/x.c");
    EXPECT_EQ(Resolve("gone/one"), "") << "a directory is no file";
    EXPECT_EQ(Resolve("gone/w.c"), "@/dir/two/w.c") << "nor is a link that leads nowhere";
    Make({"@/dir/two/y.c"});
    EXPECT_EQ(Resolve("gone/y.c"), "") << "seen after the burst";
    m_Finder.AddSearchPath(Full("@/odd"));
    EXPECT_EQ(Resolve("gone/a.c"), "@/odd/a.c") << "settings count at once";
  }
  Make({"@/dir/one/z.c"});
  EXPECT_EQ(Resolve("gone/y.c"), "@/dir/two/y.c");
  const CFindBurst Again;
  ExpectFound({{"gone/z.c", "@/dir/one/z.c"}, {"gone/Z.c", ""}});
}

}  // namespace
