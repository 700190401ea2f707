// Opening a big project: a script of 10,000 lines, 2,000 of them calls, with 500 search paths and 500 aliases and
// substitutes, and then the sources of a program that was built elsewhere, 5,000 of them. Prints one line a step.
//   project_bench [--tree DIRECTORY]: keeps the files there, for a peer to look for the same.
#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QGuiApplication>
#include <QTemporaryDir>
#include <cstdio>

#include "program/database/file_finder.h"
#include "project/project_text.h"
#include "project/user_file.h"
#include "project/window_layout.h"
#include "script/text_file.h"
#include "script/vscript.h"
#include "shell/actions/action_dispatch.h"
#include "shell/actions/action_ids.h"
#include "shell/actions/action_link.h"

namespace {

constexpr int NUM_LINES = 10'000;
constexpr int NUM_CALLS = 2'000;
constexpr int NUM_DIRS = 500;
constexpr int NUM_ALIASES = 400;
constexpr int NUM_SUBSTITUTES = 100;
constexpr int NUM_SOURCES = 5'000;
constexpr int NUM_DOCKS = 40;

QString DirName(int Index) {
  return QStringLiteral("module%1").arg(Index, 3, 10, QLatin1Char('0'));
}

QString SourceName(int Index) {
  return QStringLiteral("file%1.c").arg(Index, 4, 10, QLatin1Char('0'));
}

void MakeTree(const QString& sRoot) {
  for (int i = 0; i < NUM_DIRS; ++i) QDir().mkpath(sRoot + u'/' + DirName(i));
  for (int i = 0; i < NUM_SOURCES; ++i) {
    QFile File(sRoot + u'/' + DirName(i % NUM_DIRS) + u'/' + SourceName(i));
    if (!File.open(QIODevice::WriteOnly)) std::perror("project_bench");
  }
}

QString ProjectText(const QString& sRoot) {
  QStringList Lines = {QStringLiteral("void OnProjectLoad (void) {"),
                       QStringLiteral("  //\n  // Dialog-generated settings\n  //"),
                       QStringLiteral("  Project.SetTIFSpeed (\"4 MHz\");")};
  for (int i = 0; i < NUM_DIRS; ++i)
    Lines << QStringLiteral("  Project.AddSearchPath (\"%1/%2\");").arg(sRoot, DirName(i));
  for (int i = 0; i < NUM_ALIASES; ++i) {
    Lines << QStringLiteral("  Project.AddFileAlias (\"/gone/alias%1.c\", \"%2/%3/%4\");")
                 .arg(i)
                 .arg(sRoot, DirName(i), SourceName(i));
  }
  for (int i = 0; i < NUM_SUBSTITUTES; ++i) {
    Lines << QStringLiteral("  Project.AddPathSubstitute (\"C:/agent%1/\", \"%2/\");").arg(i).arg(sRoot);
  }
  while (Lines.size() < NUM_CALLS) Lines << QStringLiteral("  Project.SetTIFSpeed (\"4 MHz\");");
  while (Lines.size() < NUM_LINES - 1)
    Lines << QStringLiteral("  // A line that the user wrote about line %1").arg(Lines.size());
  return Lines.join(u'\n') + QStringLiteral("\n}\n");
}

// A fifth each: at its place, by alias, by substitute, by name in the search directories, nowhere.
QStringList Sources(const QString& sRoot) {
  QStringList Paths;
  for (int i = 0; i < NUM_SOURCES; ++i) {
    const QString sFile = DirName(i % NUM_DIRS) + u'/' + SourceName(i);
    switch (i % 5) {
      case 0:
        Paths << sRoot + u'/' + sFile;
        break;
      case 1:
        Paths << QStringLiteral("/gone/alias%1.c").arg(i % NUM_ALIASES);
        break;
      case 2:
        Paths << QStringLiteral("C:\\agent%1\\").arg(i % NUM_SUBSTITUTES) + QString(sFile).replace(u'/', u'\\');
        break;
      case 3:
        Paths << QStringLiteral("../build/") + SourceName(i);
        break;
      default:
        Paths << QStringLiteral("lost/") + SourceName(i + NUM_SOURCES);
        break;
    }
  }
  return Paths;
}

class CStep {
public:
  explicit CStep(const char* sName) : m_sName(sName) { m_Timer.start(); }
  ~CStep() { std::printf("%-28s %8.1f ms\n", m_sName, static_cast<double>(m_Timer.nsecsElapsed()) / 1e6); }

private:
  const char* m_sName;
  QElapsedTimer m_Timer;
};

void RegisterCommands() {
  CFileFinder* const pFinder = CFileFinder::Get();
  const auto Arg = [](U32 ID, int Index) { return GetActionArgs(ID).value(Index); };
  RegisterActionHandler(ACTION_PROJ_ADD_SEARCH_PATH,
                        [=] { pFinder->AddSearchPath(Arg(ACTION_PROJ_ADD_SEARCH_PATH, 0)); });
  RegisterActionHandler(ACTION_PROJ_ADD_FILE_ALIAS, [=] {
    pFinder->AddFileAlias(Arg(ACTION_PROJ_ADD_FILE_ALIAS, 0), Arg(ACTION_PROJ_ADD_FILE_ALIAS, 1));
  });
  RegisterActionHandler(ACTION_PROJ_ADD_PATH_SUBSTITUTE, [=] {
    pFinder->AddPathSubstitute(Arg(ACTION_PROJ_ADD_PATH_SUBSTITUTE, 0), Arg(ACTION_PROJ_ADD_PATH_SUBSTITUTE, 1));
  });
  RegisterActionHandler(ACTION_SET_TIF_SPEED, [] {});
}

int Resolve(const QStringList& Paths) {
  const CStep Step("resolve 5,000 sources");
  const CFindBurst Burst;
  int NumFound = 0;
  for (const QString& sPath : Paths) NumFound += QFile::exists(CFileFinder::Get()->ResolvePath(sPath)) ? 1 : 0;
  return NumFound;
}

void EditText(const QString& sText) {
  const CStep Step("replace settings in the text");
  const TEXT_EDIT Edit = ReplaceVNodeCommands(sText, {QStringLiteral("Project.SetDevice (\"X\");")});
  if (!Edit.sError.isEmpty()) std::printf("not edited: %s\n", qUtf8Printable(Edit.sError));
}

void ReadUserFile() {
  USER_FILE File;
  QStringList Names;
  for (int i = 0; i < NUM_DOCKS; ++i) {
    Names << DirName(i);
    File.Docks << DOCK_RECORD{Names.last(), DOCK_AREA_LEFT, i % 4, i / 8, 100, 100, true, {}};
  }
  const QString sText = MakeUserFileText(File);
  const CStep Step("read and plan a user file");
  if (PlanDocks(ParseUserFile(sText).Docks, Names).Steps.size() != NUM_DOCKS) std::puts("docks are missing");
}

}  // namespace

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QGuiApplication App(argc, argv);
  const QTemporaryDir Temporary;
  const qsizetype Option = App.arguments().indexOf(QStringLiteral("--tree"));
  const QString sRoot = Option < 0 ? Temporary.path() : App.arguments().value(Option + 1);
  MakeTree(sRoot);
  RegisterCommands();
  const QString sProject = sRoot + QStringLiteral("/big.vdebug");
  const QString sText = ProjectText(sRoot);
  if (!WriteTextFile(sProject, sText)) return 1;
  CFileFinder::Get()->SetProjectPath(sProject);
  int NumFound = 0;
  {
    const CStep Step("all of it");
    {
      const CStep Load("read and check the project");
      if (VScript::Load(sProject) != 0) return 1;
    }
    {
      const CStep Run("run its 2,000 calls");
      if (VScript::ExecFunction(HOOK_ON_PROJECT_LOAD) != 0) return 1;
    }
    NumFound = Resolve(Sources(sRoot));
  }
  EditText(sText);
  ReadUserFile();
  std::printf("found %d of %d\n", NumFound, NUM_SOURCES);
  return NumFound == NUM_SOURCES * 4 / 5 ? 0 : 1;
}
