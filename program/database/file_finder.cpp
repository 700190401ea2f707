#include "program/database/file_finder.h"

#include <QCoreApplication>
#include <QFileInfo>

#include "base/msg_flags.h"

namespace {

constexpr int STATS_DELAY_MS = 500;

}  // namespace

CFileFinder* CFileFinder::Get() {
  static CFileFinder Finder;
  return &Finder;
}

CFileFinder::CFileFinder() : m_StatsTimer(this) {
  m_StatsTimer.setSingleShot(true);
  m_StatsTimer.setInterval(STATS_DELAY_MS);
  connect(&m_StatsTimer, &QTimer::timeout, this, &CFileFinder::OnDelayTimerTimeout);
  // The first use may be a load on another thread.
  if (QCoreApplication::instance()) moveToThread(QCoreApplication::instance()->thread());
}

void CFileFinder::OnDelayTimerTimeout() {
  Q_EMIT SrcFileResStatsChanged();
  if (!m_Sink) return;
  if (!m_ResolvedFiles.isEmpty()) {
    m_Sink(QStringLiteral("%1 source file paths resolved").arg(m_ResolvedFiles.size()), MSG_INFO | MSG_TO_ALL);
  }
  if (!m_UnresolvedFiles.isEmpty()) {
    m_Sink(QStringLiteral("%1 source files not found").arg(m_UnresolvedFiles.size()), MSG_INFO | MSG_TO_ALL);
  }
}

QString CFileFinder::ResolvePath(const QString& sPath) {
  if (sPath.isEmpty()) return {};
  const RESOLVED_PATH Result = m_Resolver.Resolve(sPath);
  Report(sPath, Result.sPath, Result.bFoundInProject);
  return Result.sPath;
}

QString CFileFinder::FindFile(const QString& sPath) const {
  return m_Resolver.Resolve(sPath).sPath;
}

QString CFileFinder::ExpandMacros(const QString& sText) const {
  return m_Resolver.ExpandMacros(sText);
}

void CFileFinder::Report(const QString& sAsked, const QString& sResult, bool bFoundInProject) {
  const bool bFound = QFileInfo(sResult).isFile();
  if (CPathResolver::IsSourceName(sAsked)) {
    ReportSource(sAsked, sResult, bFound);
  } else if (m_bLogResults) {
    ReportOther(sAsked, sResult, bFound, bFoundInProject);
  }
}

void CFileFinder::ReportSource(const QString& sAsked, const QString& sResult, bool bFound) {
  if (bFound) {
    m_ResolvedFiles.insert(sResult);
    Q_EMIT SrcFilePathResolved(sAsked, sResult);
  } else {
    m_UnresolvedFiles.insert(sAsked);
  }
  m_StatsTimer.start();
}

void CFileFinder::ReportOther(const QString& sAsked, const QString& sResult, bool bFound, bool bFoundInProject) {
  LOGGED& Logged = m_ResolveLog[sAsked];
  bool& bLogged = bFound ? Logged.bFound : Logged.bMissing;
  if (bLogged || (bFound && (sResult == sAsked || bFoundInProject))) return;
  bLogged = true;
  if (!m_Sink) return;
  m_Sink(bFound ? QStringLiteral("File path resolved: \"%1\" was found at \"%2\"").arg(sAsked, sResult)
                : QStringLiteral("File not found: %1").arg(sAsked),
         MSG_INFO | MSG_TO_CONSOLE);
}

void CFileFinder::AddFileAlias(const QString& sOldPath, const QString& sNewPath) {
  m_Resolver.AddFileAlias(sOldPath, sNewPath);
  ClearStats();
}

void CFileFinder::AddPathSubstitute(const QString& sOldPart, const QString& sNewPart) {
  m_Resolver.AddPathSubstitute(sOldPart, sNewPart);
  ClearStats();
}

void CFileFinder::AddSearchPath(const QString& sPath) {
  m_Resolver.AddSearchPath(sPath);
  ClearStats();
}

void CFileFinder::AddRootPath(const QString& sPath) {
  m_Resolver.AddRootPath(sPath);
  ClearStats();
}

MOVED_TREE CFileFinder::AddMovedFile(const QString& sWanted, const QString& sChosen) {
  MOVED_TREE Tree;
  if (!QFileInfo(sChosen).isFile()) {
    Tree.sProblem = QStringLiteral("file not found");
    return Tree;
  }
  QStringList Known(m_ResolvedFiles.cbegin(), m_ResolvedFiles.cend());
  Known.append(QStringList(m_UnresolvedFiles.cbegin(), m_UnresolvedFiles.cend()));
  Tree = FindMovedTree(sWanted, sChosen, Known);
  if (Tree.Rule == MOVED_TREE_NONE) return Tree;
  if (m_Resolver.AddMovedTree(Tree, sWanted, sChosen)) {
    ClearStats();
  } else {
    Tree = MOVED_TREE();
    Tree.sProblem = QStringLiteral("another rule of the project leads elsewhere");
  }
  return Tree;
}

QString CFileFinder::GetAliasOf(const QString& sPath) const {
  return m_Resolver.GetAliasOf(sPath);
}

void CFileFinder::Clear() {
  m_Resolver.Clear();
  m_ResolveLog.clear();
  ClearStats();
  m_bLogResults = true;
}

void CFileFinder::ClearStats() {
  m_UnresolvedFiles.clear();
  m_ResolvedFiles.clear();
}

void CFileFinder::SetProjectPath(const QString& sPath) {
  m_Resolver.SetProjectPath(sPath);
}

void CFileFinder::SetProgramPath(const QString& sPath) {
  m_Resolver.SetProgramPath(sPath);
}

void CFileFinder::SetExecutableDir(const QString& sDir) {
  m_Resolver.SetExecutableDir(sDir);
}

void CFileFinder::SetMessageSink(MessageSink Sink) {
  m_Sink = std::move(Sink);
  m_Resolver.SetLog([DebugSink = m_Sink](const QString& sText) {
    if (DebugSink) DebugSink(sText, MSG_INFO | MSG_TO_STDOUT | MSG_TO_FILE);
  });
}

U32 CFileFinder::GetGeneration() const {
  return m_Resolver.GetGeneration();
}
