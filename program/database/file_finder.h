#pragma once

#include <QObject>
#include <QSet>
#include <QTimer>

#include "base/sinks.h"
#include "program/database/path_resolver.h"

// The one place that turns the path of a source, description, plug-in or project file, as a program or project names
// it, into a file on this host. Main thread only, except FindFile and GetGeneration.
class CFileFinder : public QObject {
  Q_OBJECT

public:
  // The only instance, made on first use.
  static CFileFinder* Get();

  // The path of an existing file. When there is none: an absolute path comes back as expanded, a relative one that was
  // searched for without success gives an empty text. Notes the outcome for the statistics and the console.
  QString ResolvePath(const QString& sPath);
  // The same search without noting the outcome. Any thread.
  QString FindFile(const QString& sPath) const;
  // The text with the path macros "$(ProjectDir)", "$(DocDir)", ... replaced, case insensitive.
  QString ExpandMacros(const QString& sText) const;

  // Project settings. Each may change every result, so each clears the statistics.
  void AddFileAlias(const QString& sOldPath, const QString& sNewPath);
  void AddPathSubstitute(const QString& sOldPart, const QString& sNewPart);
  void AddSearchPath(const QString& sPath);
  void AddRootPath(const QString& sPath);
  // The user has shown where a missing source file lies: finds the rest of its tree from there, too. The rule was added
  // if it is not MOVED_TREE_NONE; otherwise AddFileAlias leads to the one file, and sProblem tells the user why only to
  // it.
  MOVED_TREE AddMovedFile(const QString& sWanted, const QString& sChosen);
  // The alias target that equals sPath without regard to case, or sPath itself.
  QString GetAliasOf(const QString& sPath) const;
  // Forgets the project's settings, log state and statistics.
  void Clear();
  void ClearStats();

  // Told by those who know: the open project file, the loaded program file (empty for none), and the directory of the
  // executable where it differs from the application's.
  void SetProjectPath(const QString& sPath);
  void SetProgramPath(const QString& sPath);
  void SetExecutableDir(const QString& sDir);
  // Whether results for other files than sources go to the console; Clear sets it.
  void SetLogResults(bool bLog) { m_bLogResults = bLog; }
  // Receiver of the finder's messages.
  void SetMessageSink(MessageSink Sink);

  // Source files asked for since the last ClearStats.
  const QSet<QString>& GetUnresolvedFiles() const { return m_UnresolvedFiles; }
  const QSet<QString>& GetResolvedFiles() const { return m_ResolvedFiles; }
  // Changes with every setting, so that others know when to drop remembered results. Any thread.
  U32 GetGeneration() const;

Q_SIGNALS:
  void SrcFilePathResolved(QString OrigPath, QString ResolvedPath);
  // At most once in 500 ms, after the last of a burst of results. The finder tells the two numbers as messages, too.
  void SrcFileResStatsChanged();

private:
  friend class CFindBurst;

  // Which lines have been logged for an asked path.
  struct LOGGED {
    bool bFound = false;
    bool bMissing = false;
  };

  CFileFinder();
  void OnDelayTimerTimeout();
  void Report(const QString& sAsked, const QString& sResult, bool bFoundInProject);
  void ReportSource(const QString& sAsked, const QString& sResult, bool bFound);
  void ReportOther(const QString& sAsked, const QString& sResult, bool bFound, bool bFoundInProject);

  CPathResolver m_Resolver;
  MessageSink m_Sink;
  QTimer m_StatsTimer;
  QHash<QString, LOGGED> m_ResolveLog;
  QSet<QString> m_UnresolvedFiles;
  QSet<QString> m_ResolvedFiles;
  bool m_bLogResults = true;
};

// For whoever looks for many files at once: while one exists, search directories are read once. Any thread.
class CFindBurst {
public:
  CFindBurst() { CFileFinder::Get()->m_Resolver.BeginBurst(); }
  ~CFindBurst() { CFileFinder::Get()->m_Resolver.EndBurst(); }
  CFindBurst(const CFindBurst&) = delete;
  CFindBurst& operator=(const CFindBurst&) = delete;
};
