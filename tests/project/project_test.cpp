// The life of a project: opening behind running scripts, closing, saving, and what is wrong with its files.

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "project/project.h"
#include "script/vscript.h"
#include "shell/actions/action_dispatch.h"
#include "shell/actions/action_ids.h"
#include "shell/actions/action_link.h"
#include "tests/common/files.h"
#include "tests/common/print.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr int OPEN_LIMIT_MS = 20000;
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
  QString Write(const char* sName, const char* sBody) {
    return WriteBytes(Path(sName), "void OnProjectLoad (void) { " + QByteArray(sBody) + " }");
  }
  void Note(const char* sWhat, const QString& sPath) {
    m_Notes.push_back(sWhat + (" " + sPath.section(u'/', -1).toStdString()));
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
  const QString sA = Write("a.vdebug", "Window.Show(\"A\");");
  const QString sB = Write("b.vdebug", "Window.Show(\"B\");");
  Project().Open(sA);
  EXPECT_TRUE(Project().IsOpening());
  bool bBusy = true;
  PROJECT_HOST Host;
  Host.IsBusy = [&bBusy] { return bBusy; };
  Project().SetHost(Host);
  TurnEventLoop(SETTLE_MS);
  EXPECT_THAT(m_Notes, ElementsAre("about a.vdebug")) << "the file is read by the event loop, once nothing else is";
  bBusy = false;
  Open(sA);
  Project().SetProgramFile(sA);
  Project().AddSvdFile("x.svd");
  m_Notes.clear();
  Open(sB);
  EXPECT_THAT(m_Notes, ElementsAre("about b.vdebug", "closed a.vdebug", "opened b.vdebug", "ran B"));
  EXPECT_EQ(sB, Project().GetFileName());
  EXPECT_EQ(QString(), Project().GetProgramFile());
  EXPECT_THAT(Project().GetSvdFiles(), IsEmpty());
  EXPECT_FALSE(Project().IsModified());
  m_Notes.clear();
  Open(Path("gone.vdebug"));
  EXPECT_THAT(m_Notes, ElementsAre("about gone.vdebug", "opened gone.vdebug"));
  EXPECT_FALSE(Project().IsOpen());
  EXPECT_EQ(sB, Project().GetFileName());
}

TEST_F(CProjectTest, AScriptThatOpensAnotherProjectEndsFirst) {
  const QString sA = Write("a.vdebug", "Window.Show(\"A\"); File.Open(\"b.vdebug\"); Window.Show(\"behind\");");
  Write("b.vdebug", "Window.Show(\"B\");");
  Open(sA);
  EXPECT_THAT(m_Notes, ElementsAre("about a.vdebug", "closed ", "opened a.vdebug", "ran A", "about b.vdebug",
                                   "still in a.vdebug", "closed a.vdebug", "opened b.vdebug", "ran B"));
}

TEST_F(CProjectTest, AProjectThatOpensItselfIsLoadedOnce) {
  const QString sA = Write("a.vdebug", "File.Open(\"a.vdebug\"); Window.Show(\"A\");");
  Open(sA);
  TurnEventLoop(SETTLE_MS);
  EXPECT_THAT(m_Notes, ElementsAre("about a.vdebug", "closed ", "opened a.vdebug", "still in a.vdebug", "ran A"));
  EXPECT_TRUE(VScript::HasFunction(HOOK_ON_PROJECT_LOAD)) << "its hooks stay usable";
  m_Notes.clear();
  Open(sA);
  EXPECT_THAT(m_Notes, Contains("opened a.vdebug")) << "later it can be opened again";
}

TEST_F(CProjectTest, ErrorsNameEachMissingFile) {
  const QString sProgram = Write("p.elf", "x");
  PROJECT_HOST Host;
  bool bRegisters = true;
  Host.HasCpuRegisters = [&bRegisters] { return bRegisters; };
  Host.ResolvePath = [&](const QString& sPath) { return sPath == "found.svd" ? sProgram : QString(); };
  Project().SetHost(Host);
  Project().AddSvdFile("found.svd");
  Project().SetProgramFile(sProgram);
  EXPECT_THAT(Project().GetProjectErrors(), IsEmpty());
  EXPECT_TRUE(Project().GetProgramFileTime().isValid());
  bRegisters = false;
  Project().AddSvdFile("lost.svd");
  Project().SetProgramFile("lost.elf");
  EXPECT_FALSE(Project().GetProgramFileTime().isValid());
  EXPECT_THAT(Project().GetProjectErrors(), ElementsAre("CPU register set description file not found (specify with "
                                                        "'Project.AddSvdFile') - debugging w/o core registers.",
                                                        "file not found: lost.svd", "file not found: lost.elf"));
}

}  // namespace
