#include <gtest/gtest.h>

#include <QFileInfo>
#include <QTemporaryDir>

#include "project/file_classes.h"
#include "project/recent_list.h"
#include "tests/common/files.h"
#include "tests/common/print.h"

namespace {

TEST(FileClasses, FollowTheLastSuffix) {
  // P project, S source, D data, E program, X peripherals.
  const std::pair<const char*, const char*> aCases[] = {
      {"a.VDEBUG", "P"}, {"dir.c/a.elf", "DE"}, {"dir.c/a", ""}, {"a.b.CPP", "S"}, {"a.vdebug.user", ""},
      {"x.srec", "D"},   {"x.xml", "X"},        {"", ""},        {".", ""},        {"a.vdebug ", ""},
  };
  for (const auto& [sPath, sClasses] : aCases) {
    QString sFound;
    if (IsProjectFile(sPath)) sFound += 'P';
    if (IsSourceFile(sPath)) sFound += 'S';
    if (IsDataFile(sPath)) sFound += 'D';
    if (IsElfFile(sPath)) sFound += 'E';
    if (IsSvdFile(sPath)) sFound += 'X';
    EXPECT_EQ(sFound, sClasses) << sPath;
  }
}

TEST(FileClasses, AFileWithoutSuffixIsKnownByItsStart) {
  QTemporaryDir Dir;
  const QByteArray Program("\177ELF\1\1\1\0\0\0\0\0more", 16);
  EXPECT_TRUE(IsElfFile(WriteBytes(Dir.filePath("elf"), Program)));
  EXPECT_FALSE(IsElfFile(WriteBytes(Dir.filePath("short"), Program.first(7))));
  EXPECT_FALSE(IsElfFile(WriteBytes(Dir.filePath("text"), "hello world, hello world")));
  EXPECT_FALSE(IsElfFile(Dir.filePath("missing")));
}

TEST(RecentList, KeepsTheLatestFirstAndOnce) {
  QTemporaryDir Dir;
  QStringList Files;
  for (int i = 0; i < 6; ++i) Files << WriteBytes(Dir.filePath(QString("%1.vdebug").arg(i)), "x");
  CRecentList List(MAX_RECENT_PROJECTS, IsProjectFile);
  const auto Names = [&List] {
    std::string sNames;
    for (const QString& sPath : List.Paths()) sNames += QFileInfo(sPath).baseName().toStdString() + ' ';
    return sNames;
  };
  for (int i = 0; i < 5; ++i) List.Update({}, Files[i]);
  EXPECT_EQ(Names(), "4 3 2 1 ");
  List.Update({}, Files[2]);
  EXPECT_EQ(Names(), "2 4 3 1 ");
  List.Update(Files[3], Files[5]);
  EXPECT_EQ(Names(), "5 2 4 1 ");
  List.Update({}, Dir.filePath("gone.vdebug"));
  EXPECT_EQ(Names(), "5 2 4 ");
  QFile::remove(Files[2]);
  List.Install(QStringList{WriteBytes(Dir.filePath("a.txt"), "x")} + Files);
  EXPECT_EQ(Names(), "0 1 3 4 ");
}

}  // namespace
