#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>

#include "project/file_classes.h"
#include "project/project.h"
#include "project/project_text.h"
#include "project/recent_list.h"
#include "script/ctrans.h"
#include "script/hook_table.h"

namespace {

void WriteFile(const QString& sPath, const QByteArray& Data) {
  QFile File(sPath);
  ASSERT_TRUE(File.open(QIODevice::WriteOnly));
  File.write(Data);
}

TEST(FileClasses, FollowTheLastSuffix) {
  struct CLASS_CASE {
    const char* sPath;
    bool Project, Source, Data, Elf, Svd;
  };
  const CLASS_CASE aCases[] = {
      {"a.VDEBUG", true, false, false, false, false},
      {"dir.c/a.elf", false, false, true, true, false},
      {"dir.c/a", false, false, false, false, false},
      {"a.b.CPP", false, true, false, false, false},
      {"a.vdebug.user", false, false, false, false, false},
      {"x.srec", false, false, true, false, false},
      {"x.xml", false, false, false, false, true},
      {"", false, false, false, false, false},
      {".", false, false, false, false, false},
      {"a.vdebug ", false, false, false, false, false},
  };
  for (const CLASS_CASE& Case : aCases) {
    const QString sPath = QString::fromLatin1(Case.sPath);
    EXPECT_EQ(Case.Project, IsProjectFile(sPath)) << Case.sPath;
    EXPECT_EQ(Case.Source, IsSourceFile(sPath)) << Case.sPath;
    EXPECT_EQ(Case.Data, IsDataFile(sPath)) << Case.sPath;
    EXPECT_EQ(Case.Elf, IsElfFile(sPath)) << Case.sPath;
    EXPECT_EQ(Case.Svd, IsSvdFile(sPath)) << Case.sPath;
  }
}

TEST(FileClasses, AFileWithoutSuffixIsKnownByItsStart) {
  QTemporaryDir Dir;
  WriteFile(Dir.filePath(QStringLiteral("elf")), QByteArray("\x7F"
                                                            "ELF\1\1\1\0\0\0\0\0more",
                                                            16));
  WriteFile(Dir.filePath(QStringLiteral("short")), QByteArray("\x7F"
                                                              "ELF\1\1\1",
                                                              7));
  WriteFile(Dir.filePath(QStringLiteral("text")), "hello world, hello world");
  EXPECT_TRUE(IsElfFile(Dir.filePath(QStringLiteral("elf"))));
  EXPECT_FALSE(IsElfFile(Dir.filePath(QStringLiteral("short"))));
  EXPECT_FALSE(IsElfFile(Dir.filePath(QStringLiteral("text"))));
  EXPECT_FALSE(IsElfFile(Dir.filePath(QStringLiteral("missing"))));
}

TEST(RecentList, KeepsTheLatestFirstAndOnce) {
  QTemporaryDir Dir;
  QStringList Files;
  for (int i = 0; i < 6; ++i) {
    Files << Dir.filePath(QStringLiteral("p%1.vdebug").arg(i));
    WriteFile(Files.last(), "x");
  }
  CRecentList List(MAX_RECENT_PROJECTS, IsProjectFile);
  for (int i = 0; i < 5; ++i) List.Update({}, Files[i]);
  EXPECT_EQ((QStringList{Files[4], Files[3], Files[2], Files[1]}), List.Paths());
  List.Update({}, Files[2]);
  EXPECT_EQ((QStringList{Files[2], Files[4], Files[3], Files[1]}), List.Paths());
  List.Update(Files[3], Files[5]);
  EXPECT_EQ((QStringList{Files[5], Files[2], Files[4], Files[1]}), List.Paths());
  List.Update({}, Dir.filePath(QStringLiteral("gone.vdebug")));
  EXPECT_EQ(3, List.Paths().size());
  EXPECT_FALSE(List.Paths().contains(Dir.filePath(QStringLiteral("gone.vdebug"))));
  QFile::remove(Files[2]);
  List.Install(List.Paths());
  EXPECT_FALSE(List.Paths().contains(Files[2]));
}

TEST(Project, UserFileName) {
  EXPECT_EQ(QStringLiteral("a/b.vdebug.user"), CProject::GetUserFileName(QStringLiteral("a/b.vdebug")));
  EXPECT_EQ(QStringLiteral("a.b.vdebug.user"), CProject::GetUserFileName(QStringLiteral("a.b.vdebug")));
  EXPECT_EQ(QString(), CProject::GetUserFileName(QStringLiteral("plain")));
}

TEST(ProjectText, IsAScriptWithOneActiveHook) {
  const QString sText =
      MakeProjectText({QStringLiteral("File.Open (\"a.elf\");"), QStringLiteral("Project.SetDevice (\"X\");")});
  QStringList Calls;
  CTrans Engine(sText.toStdString(), {});
  const auto Note = [&Calls](const char* sName) {
    return [&Calls, sName](const U64* paArgs, U32) {
      Calls << QString::fromLatin1(sName) + QLatin1Char(':') +
                   QString::fromUtf8(reinterpret_cast<const char*>(paArgs[0]));
      return U64{0};
    };
  };
  Engine.AddApiFunction("__api__ int File.Open (const char* s);", Note("open"));
  Engine.AddApiFunction("__api__ int Project.SetDevice (const char* s);", Note("device"));
  EXPECT_EQ(0, Engine.ParseGlobals());
  EXPECT_FALSE(Engine.HasError());
  EXPECT_EQ(CTRANS_OK, Engine.CallFunction("OnProjectLoad"));
  EXPECT_EQ((QStringList{QStringLiteral("device:X"), QStringLiteral("open:a.elf")}), Calls) << "the program opens last";
  for (int ID = 2; ID <= NUM_HOOKS; ++ID) {
    EXPECT_FALSE(Engine.HasScriptFunction(GetHookName(ID).toStdString())) << ID;
    EXPECT_TRUE(sText.contains(QStringLiteral("//void ") + GetHookName(ID))) << ID;
  }
  for (const QString& sLine : sText.split(QLatin1Char('\n'))) EXPECT_LE(sLine.size(), 75) << sLine.toStdString();
}

TEST(ProjectText, CommandsReplaceTheirOwnLinesOnly) {
  struct TEXT_CASE {
    const char* sName;
    const char* sBefore;
    const char* sAfter;  // null: refused, the file stays
  };
  const TEXT_CASE aCases[] = {
      {"behind the mark",
       "void OnProjectLoad (void) {\n  //\n  // Dialog-generated settings\n  //\n  Project.SetDevice (\"old\");\n"
       "  //\n  // User settings\n  //\n  Window.Show (\"Console\");\n}\n",
       "void OnProjectLoad (void) {\n  //\n  // Dialog-generated settings\n  //\n  Project.SetDevice (\"new\");\n"
       "  File.Open (\"a.elf\");\n  //\n  // User settings\n  //\n  Window.Show (\"Console\");\n}\n"},
      {"no mark: at the head of the body",
       "int x;\r\nvoid OnProjectLoad (void) {\r\n  int i;\r\n}\r\nvoid AfterTargetHalt (void) { File.Open(\"b\"); "
       "}\r\n",
       "int x;\nvoid OnProjectLoad (void) {\n  Project.SetDevice (\"new\");\n  File.Open (\"a.elf\");\n  int i;\n}\n"
       "void AfterTargetHalt (void) { File.Open(\"b\"); }\n"},
      {"whole names, nested braces, twice the same",
       "void OnProjectLoad (void) {\n  if (1) {\n    File.OpenRecent (0);\n  }\n  File.Open (\"x\");\n"
       "  File.Open (\"y\");\n}\n",
       "void OnProjectLoad (void) {\n  Project.SetDevice (\"new\");\n  File.Open (\"a.elf\");\n  if (1) {\n"
       "    File.OpenRecent (0);\n  }\n}\n"},
      {"on one line", "void OnProjectLoad (void) { Project.SetDevice (\"old\"); Util.Log (\"kept\"); }",
       "void OnProjectLoad (void) {\n  Project.SetDevice (\"new\");\n  File.Open (\"a.elf\");\n"
       "  Util.Log (\"kept\"); }"},
      {"no such function", "void BeforeTargetReset (void) {\n}\n", nullptr},
      {"no end", "void OnProjectLoad (void) {\n  Project.SetDevice (\"old\");\n", nullptr},
      {"empty", "", nullptr},
  };
  QTemporaryDir Dir;
  const QString sPath = Dir.filePath(QStringLiteral("a.vdebug"));
  const QStringList Commands = {QStringLiteral("Project.SetDevice (\"new\");"),
                                QStringLiteral("File.Open (\"a.elf\");")};
  for (const TEXT_CASE& Case : aCases) {
    WriteFile(sPath, Case.sBefore);
    EXPECT_EQ(CProject::Get().AddCommands(sPath, Commands), Case.sAfter != nullptr) << Case.sName;
    QFile File(sPath);
    ASSERT_TRUE(File.open(QIODevice::ReadOnly));
    const QByteArray After = File.readAll();
    EXPECT_EQ(Case.sAfter ? QByteArray(After).replace("\r\n", "\n").toStdString() : After.toStdString(),
              Case.sAfter ? Case.sAfter : Case.sBefore)
        << Case.sName;
  }
  EXPECT_FALSE(CProject::Get().AddCommands(Dir.filePath(QStringLiteral("missing.vdebug")), Commands));
}

}  // namespace
