#pragma once

#include <QHash>
#include <QMap>
#include <QString>
#include <QStringList>
#include <QStringMatcher>
#include <atomic>
#include <functional>
#include <mutex>

#include "base/types.h"
#include "program/database/moved_tree.h"

// Outcome of one search. Path may name no file.
struct RESOLVED_PATH {
  QString sPath;
  bool bFoundInProject = false;  // the last relative lookup hit in the project's directory
};

// The rules by which a path becomes a file on this host: macros, aliases, substitutes, base and search directories.
// Knows no statistics. Any thread.
class CPathResolver {
public:
  using LogFunc = std::function<void(const QString& sText)>;

  RESOLVED_PATH Resolve(const QString& sPath) const;
  QString ExpandMacros(const QString& sText) const;
  QString GetAliasOf(const QString& sPath) const;

  void AddFileAlias(const QString& sOldPath, const QString& sNewPath);
  void AddPathSubstitute(const QString& sOldPart, const QString& sNewPart);
  void AddSearchPath(const QString& sPath);
  void AddRootPath(const QString& sPath);
  // Forgets the four lists above.
  void Clear();

  // Adds the rule of a moved tree if the wanted path then leads to the chosen file; else nothing changes and false.
  bool AddMovedTree(const MOVED_TREE& Tree, const QString& sWanted, const QString& sChosen);

  // Between these the contents of search directories are read once and remembered. They nest; see CFindBurst.
  void BeginBurst();
  void EndBurst();

  // Files whose directories are bases; empty for none.
  void SetProjectPath(const QString& sPath);
  void SetProgramPath(const QString& sPath);
  // Empty for the application's own directory.
  void SetExecutableDir(const QString& sDir);
  // Receives the course of every search, for the debug log.
  void SetLog(LogFunc Log);
  // Counts the changes of settings.
  U32 GetGeneration() const { return m_Generation; }

  // True for names that are looked for as source files.
  static bool IsSourceName(const QString& sPath);

private:
  struct SEARCH;
  struct SUBSTITUTE {
    QString sNewPart;
    QStringMatcher Matcher;  // of the old part
  };
  // The first file of each name in the directories of a search.
  using LISTING = QHash<QString, RESOLVED_PATH>;

  void Log(const QString& sText) const;
  QString ExecutableDir() const;
  QString MacroValue(const QString& sMacro) const;
  QString ApplyAliases(const QString& sPath) const;
  QString ApplySubstitutes(const QString& sPath) const;
  // A directory is looked for in the current one, too.
  QString FindInBases(const QString& sPath, bool bDirectory, bool& bInProject) const;
  QString TryBase(const QString& sBase, const QString& sPath, bool bDirectory) const;
  QString SearchDir(const QString& sDir, bool& bInProject) const;
  RESOLVED_PATH FindInEach(const QString& sName, const SEARCH& Search) const;
  const LISTING& ListingOf(const SEARCH& Search) const;
  QString FindInDirs(const QString& sName, const SEARCH& Search, bool& bInProject) const;
  QStringList SearchNames(const SEARCH& Search, const QString& sPath) const;
  QString FindByKind(const SEARCH& Search, const QString& sPath, bool& bInProject) const;
  static const SEARCH& SearchFor(const QString& sPath);

  mutable std::recursive_mutex m_Mutex;
  LogFunc m_Log;
  QMap<QString, QString> m_FileAliases;
  QHash<QString, QString> m_AliasKeys;         // first key of each folded form
  QHash<QString, QString> m_CleanedAliasKeys;  // the same of the cleaned keys
  QMap<QString, SUBSTITUTE> m_PathSubstitutes;
  QStringList m_SearchDirs;
  QStringList m_RootPaths;
  QString m_sProjectPath;
  QString m_sProgramPath;
  QString m_sExecutableDir;
  std::atomic<U32> m_Generation{0};

  // Remembered during bursts.
  int m_NumBursts = 0;
  mutable QHash<const SEARCH*, LISTING> m_Listings;
  mutable U32 m_ListingsGeneration = 0;
};
