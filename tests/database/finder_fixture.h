#pragma once
// What the tests of the file finder share: a folder with files of their own, "@" in the paths of the tests.

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDir>
#include <QTemporaryDir>

#include "program/database/file_finder.h"
#include "tests/common/files.h"

using namespace Qt::Literals::StringLiterals;

class FinderTest : public testing::Test {
protected:
  using PATHS = std::initializer_list<std::pair<const char*, const char*>>;

  FinderTest() : m_Finder(*CFileFinder::Get()), m_sRoot(QDir(m_Dir.path()).canonicalPath()) {
    m_Finder.Clear();
    m_Finder.SetExecutableDir(Full("@/app"));
  }
  ~FinderTest() override {
    m_Finder.Clear();
    m_Finder.SetMessageSink({});
    m_Finder.SetProjectPath({});
    m_Finder.SetProgramPath({});
    m_Finder.SetExecutableDir({});
  }
  // The finder's timer needs one.
  static void SetUpTestSuite() {
    static int argc = 1;
    static char sName[] = "test";
    static char* argv[] = {sName, nullptr};
    static QCoreApplication Application(argc, argv);
  }

  QString Full(const char* sPath) const { return QString::fromLatin1(sPath).replace(u'@', m_sRoot); }
  std::string Short(QString sPath) const { return sPath.replace(m_sRoot, u"@"_s).toStdString(); }
  void Make(std::initializer_list<const char*> Files) {
    for (const char* sFile : Files) {
      QDir().mkpath(QFileInfo(Full(sFile)).path());
      WriteBytes(Full(sFile), {});
    }
  }
  std::string Resolve(const char* sPath) { return Short(m_Finder.ResolvePath(QLatin1String(sPath))); }
  void ExpectFound(PATHS Paths) {
    for (const auto& [sAsked, sFound] : Paths) EXPECT_EQ(Resolve(sAsked), sFound) << sAsked;
  }

  CFileFinder& m_Finder;
  QTemporaryDir m_Dir;
  QString m_sRoot;
};
