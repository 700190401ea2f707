// The life of a project: opening behind running scripts, closing, saving, and what is wrong with its files.

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "project/project.h"
#include "script/text_file.h"
#include "script/vscript.h"
#include "shell/actions/action_dispatch.h"
#include "shell/actions/action_ids.h"
#include "shell/actions/action_link.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr int OPEN_LIMIT_MS = 2000;
constexpr int SETTLE_MS = 60;  // several intervals of the open timer

void TurnEventLoop(int Milliseconds) {
  QElapsedTimer Timer;
  Timer.start();
  while (Timer.elapsed() < Milliseconds) QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
}

class CProjectTest : public testing::Test {
protected:
  CProjectTest() {
    Project().SetHost({});
    Project().Close();
    VScript::Close();
    QObject::connect(&Project(), &CProject::AboutToOpen, &m_Context, [this](const QString& s) { Note("about", s); });
    QObject::connect(&Project(), &CProject::Closed, &m_Context, [this](const QString& s) { Note("closed", s); });
    QObject::connect(&Project(), &CProject::Opened, &m_Context, [this](const QString& s) {
      Note("opened", s);
      VScript::ExecFunction(HOOK_ON_PROJECT_LOAD);
    });
    RegisterActionHandler(ACTION_WINDOW_SHOW, [this] { Note("ran", GetActionArgs(ACTION_WINDOW_SHOW).value(0)); });
    RegisterActionHandler(ACTION_FILE_OPEN, [this] {
      Project().Open(Path(GetActionArgs(ACTION_FILE_OPEN).value(0)));
      TurnEventLoop(SETTLE_MS);
      Note("still in", VScript::GetFilePath());
    });
  }
  ~CProjectTest() override {
    UnregisterActionHandler(ACTION_WINDOW_SHOW);
    UnregisterActionHandler(ACTION_FILE_OPEN);
    Project().SetHost({});
  }

  static CProject& Project() { return CProject::Get(); }
  QString Path(const QString& sName) const { return m_Dir.filePath(sName); }
  QString Write(const char* sName, const QString& sText) {
    const QString sPath = Path(QLatin1String(sName));
    EXPECT_TRUE(WriteTextFile(sPath, sText));
    return sPath;
  }
  void Note(const char* sWhat, const QString& sPath) {
    m_Notes.push_back(sWhat + (" " + sPath.section(QLatin1Char('/'), -1).toStdString()));
  }
  void Open(const QString& sPath) {
    Project().Open(sPath);
    QElapsedTimer Timer;
    Timer.start();
    while (Project().IsOpening() && Timer.elapsed() < OPEN_LIMIT_MS) QCoreApplication::processEvents();
    EXPECT_FALSE(Project().IsOpening());
  }

  std::vector<std::string> m_Notes;

private:
  QTemporaryDir m_Dir;
  QObject m_Context;
};

TEST_F(CProjectTest, OpeningClosesTheOldOneFirst) {
  const QString sA = Write("a.vdebug", QStringLiteral("void OnProjectLoad (void) { Window.Show(\"A\"); }"));
  const QString sB = Write("b.vdebug", QStringLiteral("void OnProjectLoad (void) { Window.Show(\"B\"); }"));
  Project().Open(sA);
  EXPECT_TRUE(Project().IsOpening());
  EXPECT_THAT(m_Notes, ElementsAre("about a.vdebug")) << "the file is read by the event loop";
  Open(sA);
  Project().SetProgramFile(sA);
  Project().AddSvdFile(QStringLiteral("x.svd"));
  m_Notes.clear();
  Open(sB);
  EXPECT_THAT(m_Notes, ElementsAre("about b.vdebug", "closed a.vdebug", "opened b.vdebug", "ran B"));
  EXPECT_EQ(sB, Project().GetFileName());
  EXPECT_EQ(QString(), Project().GetProgramFile());
  EXPECT_THAT(Project().GetSvdFiles(), IsEmpty());
  EXPECT_FALSE(Project().IsModified());
  m_Notes.clear();
  Open(Path(QStringLiteral("gone.vdebug")));
  EXPECT_THAT(m_Notes, ElementsAre("about gone.vdebug", "opened gone.vdebug"));
  EXPECT_FALSE(Project().IsOpen());
  EXPECT_EQ(sB, Project().GetFileName());
}

TEST_F(CProjectTest, AScriptThatOpensAnotherProjectEndsFirst) {
  const QString sA = Write("a.vdebug", QStringLiteral("void OnProjectLoad (void) { Window.Show(\"A\"); "
                                                      "File.Open(\"b.vdebug\"); Window.Show(\"behind\"); }"));
  Write("b.vdebug", QStringLiteral("void OnProjectLoad (void) { Window.Show(\"B\"); }"));
  Open(sA);
  EXPECT_THAT(m_Notes, ElementsAre("about a.vdebug", "closed ", "opened a.vdebug", "ran A", "about b.vdebug",
                                   "still in a.vdebug", "closed a.vdebug", "opened b.vdebug", "ran B"));
}

TEST_F(CProjectTest, AProjectThatOpensItselfIsLoadedOnce) {
  const QString sA =
      Write("a.vdebug", QStringLiteral("void OnProjectLoad (void) { File.Open(\"a.vdebug\"); Window.Show(\"A\"); }"));
  Open(sA);
  TurnEventLoop(SETTLE_MS);
  EXPECT_THAT(m_Notes, ElementsAre("about a.vdebug", "closed ", "opened a.vdebug", "still in a.vdebug", "ran A"));
  EXPECT_TRUE(VScript::HasFunction(HOOK_ON_PROJECT_LOAD)) << "its hooks stay usable";
  m_Notes.clear();
  Open(sA);
  EXPECT_THAT(m_Notes, Contains("opened a.vdebug")) << "later it can be opened again";
}

TEST_F(CProjectTest, ANewProjectIsModifiedUntilItIsSaved) {
  QStringList Paths;
  PROJECT_HOST Host;
  Host.SetProjectPath = [&Paths](const QString& sPath) { Paths << sPath; };
  Project().SetHost(Host);
  Project().Create({QStringLiteral("Window.Show (\"made\");")});
  EXPECT_THAT(m_Notes, ElementsAre("ran made"));
  EXPECT_TRUE(Project().IsModified());
  EXPECT_FALSE(Project().Save(Path(QStringLiteral("no/such/directory/a.vdebug"))));
  EXPECT_TRUE(Project().IsModified()) << "nothing was written";
  EXPECT_EQ(QString(), Project().GetFileName());
  const QString sPath = Path(QStringLiteral("new.vdebug"));
  EXPECT_TRUE(Project().Save(sPath));
  EXPECT_FALSE(Project().IsModified());
  EXPECT_EQ(sPath, Project().GetFileName());
  EXPECT_THAT(Paths, ElementsAre(sPath));
  m_Notes.clear();
  Open(sPath);
  EXPECT_THAT(m_Notes, Contains("ran made"));
}

TEST_F(CProjectTest, SavingWritesTheTextUnchangedOrMakesOne) {
  const QString sText = QStringLiteral("// mine\r\nvoid OnProjectLoad (void) {\r\n}\r\n");
  Open(Write("a.vdebug", sText));
  const QString sCopy = Path(QStringLiteral("copy.vdebug"));
  ASSERT_TRUE(Project().Save(sCopy));
  bool bOk = false;
  EXPECT_EQ(sText, ReadTextFile(sCopy, &bOk));
  Project().Close();
  VScript::Close();
  PROJECT_HOST Host;
  Host.DeviceCommands = [] { return QStringList{QStringLiteral("Project.SetDevice (\"X\");")}; };
  Project().SetHost(Host);
  Project().AddSvdFile(QStringLiteral("x.svd"));
  Project().SetProgramFile(QStringLiteral("p.elf"));
  const QString sMade = Path(QStringLiteral("made.vdebug"));
  ASSERT_TRUE(Project().Save(sMade));
  const QStringList Lines = ReadTextFile(sMade, &bOk).split(QStringLiteral("\r\n"));
  const qsizetype First = Lines.indexOf(QStringLiteral("  Project.SetDevice (\"X\");"));
  ASSERT_LE(0, First);
  EXPECT_THAT(Lines.mid(First + 1, 5), ElementsAre(QStringLiteral("  Project.AddSvdFile (\"x.svd\");"),
                                                   QStringLiteral("  //"), QStringLiteral("  // User settings"),
                                                   QStringLiteral("  //"), QStringLiteral("  File.Open (\"p.elf\");")));
}

TEST_F(CProjectTest, ErrorsNameEachMissingFile) {
  const QString sProgram = Write("p.elf", QStringLiteral("x"));
  PROJECT_HOST Host;
  bool bRegisters = true;
  Host.HasCpuRegisters = [&bRegisters] { return bRegisters; };
  Host.ResolvePath = [&](const QString& sPath) { return sPath == QLatin1String("found.svd") ? sProgram : QString(); };
  Project().SetHost(Host);
  Project().AddSvdFile(QStringLiteral("found.svd"));
  Project().SetProgramFile(sProgram);
  EXPECT_THAT(Project().GetProjectErrors(), IsEmpty());
  EXPECT_TRUE(Project().GetProgramFileTime().isValid());
  bRegisters = false;
  Project().AddSvdFile(QStringLiteral("lost.svd"));
  Project().SetProgramFile(QStringLiteral("lost.elf"));
  EXPECT_FALSE(Project().GetProgramFileTime().isValid());
  EXPECT_THAT(Project().GetProjectErrors(),
              ElementsAre(QStringLiteral("CPU register set description file not found (specify with "
                                         "'Project.AddSvdFile') - debugging w/o core registers."),
                          QStringLiteral("file not found: lost.svd"), QStringLiteral("file not found: lost.elf")));
}

}  // namespace
