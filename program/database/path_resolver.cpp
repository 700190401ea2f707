#include "program/database/path_resolver.h"

#include <QCoreApplication>
#include <QDir>
#include <QDirIterator>
#include <QFileInfo>

#include "base/text.h"
#include "program/database/path_forms.h"

// How files with certain names are looked for.
struct CPathResolver::SEARCH {
  const char* sPatterns;
  QStringList Dirs;           // searched after the project's search directories
  QStringList Suffixes = {};  // in the directories the name is tried with each of these instead of its own
  bool bLogStart = false;
};

namespace {

const QString DOC_DIR = QStringLiteral("$(DocDir)");
const QString CONFIG_DIR = QStringLiteral("$(ConfigDir)");
const QString PLUGIN_DIR = QStringLiteral("$(PluginDir)");
const QString EXECUTABLE_DIR = QStringLiteral("$(ExecutableDir)");

const char SOURCE_PATTERNS[] = "*.h *.c *.hpp *.cpp *.s";

bool IsFile(const QString& sPath) {
  return QFileInfo(sPath).isFile();
}

// Patterns are all of the form "*.suffix".
bool Matches(const char* sPatterns, const QString& sPath) {
  const QString sName = sPath.mid(sPath.lastIndexOf(QLatin1Char('/')) + 1);
  for (const auto& sPattern : QLatin1String(sPatterns).tokenize(QLatin1Char(' '))) {
    if (sName.endsWith(sPattern.mid(1), Qt::CaseInsensitive)) return true;
  }
  return false;
}

QString DirOf(const QString& sFile) {
  return sFile.isEmpty() ? QString() : NormalisedPath(QFileInfo(sFile).path());
}

// Of several keys that fold to the same, the first in key order counts.
void TakeFirst(QHash<QString, QString>& Keys, const QString& sFolded, const QString& sKey) {
  const auto Known = Keys.find(sFolded);
  if (Known == Keys.end()) {
    Keys.insert(sFolded, sKey);
  } else {
    *Known = std::min(*Known, sKey);
  }
}

}  // namespace

bool CPathResolver::IsSourceName(const QString& sPath) {
  return Matches(SOURCE_PATTERNS, sPath);
}

const CPathResolver::SEARCH& CPathResolver::SearchFor(const QString& sPath) {
  static const SEARCH Source{SOURCE_PATTERNS, {}, {}, true};
  static const SEARCH Project{"*.bin *.mot *.srec *.hex *.elf *.out *.axf *.vdebug", {}};
  static const SEARCH aOthers[] = {
      {"*.svd *.xml",
       {CONFIG_DIR, CONFIG_DIR + QStringLiteral("/CPU/"), CONFIG_DIR + QStringLiteral("/Peripherals/")},
       {QStringLiteral(".svd"), QStringLiteral(".xml")}},
      {"*.dll *.so *.dylib", {PLUGIN_DIR, PLUGIN_DIR + QStringLiteral("/OS/"), PLUGIN_DIR + QStringLiteral("/Core/")}},
      {"*.txt *.pdf *.html", {DOC_DIR, EXECUTABLE_DIR + QStringLiteral("/Doc")}},
  };
  for (const SEARCH& Search : aOthers) {
    if (Matches(Search.sPatterns, sPath)) return Search;
  }
  if (Matches(Project.sPatterns, sPath)) return Project;
  return QFileInfo(sPath).suffix().isEmpty() ? Project : Source;
}

void CPathResolver::Log(const QString& sText) const {
  if (m_Log) m_Log(sText);
}

QString CPathResolver::ExecutableDir() const {
  if (!m_sExecutableDir.isEmpty()) return m_sExecutableDir;
  static const QString sDir = QDir(QCoreApplication::applicationDirPath()).canonicalPath();
  return sDir;
}

QString CPathResolver::MacroValue(const QString& sMacro) const {
  static const QHash<QString, QString> SubDirs = {{DOC_DIR, QStringLiteral("/Doc/")},
                                                  {CONFIG_DIR, QStringLiteral("/Config/")},
                                                  {QStringLiteral("$(LibraryDir)"), QStringLiteral("/Lib/")},
                                                  {PLUGIN_DIR, QStringLiteral("/Plugins/")}};
  if (sMacro == QLatin1String("$(ProjectDir)")) return DirOf(m_sProjectPath);
  if (sMacro == QLatin1String("$(AppDir)")) return DirOf(m_sProgramPath);
  return ExecutableDir() + SubDirs.value(sMacro);
}

QString CPathResolver::ExpandMacros(const QString& sText) const {
  if (!sText.contains(QLatin1Char('$'))) return sText;
  static const QStringList Macros = {DOC_DIR,
                                     PLUGIN_DIR,
                                     QStringLiteral("$(ProjectDir)"),
                                     QStringLiteral("$(InstallDir)"),
                                     EXECUTABLE_DIR,
                                     QStringLiteral("$(AppDir)"),
                                     QStringLiteral("$(AppBundleDir)"),
                                     CONFIG_DIR,
                                     QStringLiteral("$(LibraryDir)")};
  const std::lock_guard Lock(m_Mutex);
  QString sResult = sText;
  for (const QString& sMacro : Macros) sResult.replace(sMacro, MacroValue(sMacro), Qt::CaseInsensitive);
  if (sResult != sText) Log(QStringLiteral("FileFinder: expanded %1 to %2").arg(sText, sResult));
  return sResult;
}

QString CPathResolver::ApplyAliases(const QString& sPath) const {
  if (m_FileAliases.isEmpty()) return {};
  Log(QStringLiteral("Applying file aliases to ") + sPath);
  const auto AsWritten = m_AliasKeys.constFind(sPath.toCaseFolded());
  const auto AsCleaned = m_CleanedAliasKeys.constFind(NormalisedPath(sPath).toCaseFolded());
  if (AsWritten == m_AliasKeys.cend() && AsCleaned == m_CleanedAliasKeys.cend()) return {};
  QString sKey = AsWritten == m_AliasKeys.cend() ? *AsCleaned : *AsWritten;
  if (AsCleaned != m_CleanedAliasKeys.cend()) sKey = std::min(sKey, *AsCleaned);
  const QString sValue = m_FileAliases.value(sKey);
  Log(QStringLiteral("mapped %1 to %2").arg(sPath, sValue));
  return sValue;
}

QString CPathResolver::ApplySubstitutes(const QString& sPath) const {
  if (m_PathSubstitutes.isEmpty()) return {};
  Log(QStringLiteral("Applying path substitutes in : ") + sPath);
  QString sResult = SingleSlashes(sPath);
  bool bApplied = false;
  for (auto it = m_PathSubstitutes.cbegin(); it != m_PathSubstitutes.cend(); ++it) {
    if (it.key().isEmpty() || it->Matcher.indexIn(sResult) < 0) continue;
    sResult.replace(it.key(), it->sNewPart, Qt::CaseInsensitive);
    bApplied = true;
    Log(QStringLiteral("Path substituted: %1 -> %2").arg(it.key(), it->sNewPart));
  }
  return bApplied ? sResult : sPath;
}

QString CPathResolver::TryBase(const QString& sBase, const QString& sPath, bool bDirectory) const {
  QString sJoined = sBase;
  while (sJoined.endsWith(QLatin1Char('/'))) sJoined.chop(1);
  sJoined += sPath.startsWith(QLatin1Char('/')) ? sPath : QLatin1Char('/') + sPath;
  Log(QStringLiteral("Testing ") + sJoined);
  const bool bFound = bDirectory ? QFileInfo(sJoined).isDir() : IsFile(sJoined);
  return bFound ? NormalisedPath(sJoined) : QString();
}

QString CPathResolver::FindInBases(const QString& sPath, bool bDirectory, bool& bInProject) const {
  // A project file without directory would make the current directory a base.
  const bool bHasDir = NormalisedPath(m_sProjectPath).contains(QLatin1Char('/'));
  const QString sProjectDir = bHasDir ? DirOf(m_sProjectPath) : QString();
  QStringList Bases = m_RootPaths;
  const qsizetype ProjectIndex = sProjectDir.isEmpty() ? -1 : Bases.size();
  if (!sProjectDir.isEmpty()) Bases.append(sProjectDir);
  Bases.append(ExecutableDir());
  if (!m_sProgramPath.isEmpty()) Bases.append(DirOf(m_sProgramPath));
  if (bDirectory) Bases.append(QDir::currentPath());
  for (qsizetype i = 0; i < Bases.size(); ++i) {
    const QString sFound = TryBase(Bases[i], sPath, bDirectory);
    if (sFound.isEmpty()) continue;
    bInProject = i == ProjectIndex;
    return sFound;
  }
  return {};
}

QString CPathResolver::SearchDir(const QString& sDir, bool& bInProject) const {
  const QString sPath = ExpandMacros(sDir);
  bInProject = false;
  return IsRelativePath(sPath) ? FindInBases(sPath, true, bInProject) : sPath;
}

QString CPathResolver::FindInDirs(const QString& sName, const SEARCH& Search, bool& bInProject) const {
  if (m_SearchDirs.isEmpty() && Search.Dirs.isEmpty()) return {};
  Log(QStringLiteral("Looking for %1 in search directories.").arg(sName));
  const RESOLVED_PATH Found = m_NumBursts > 0 ? ListingOf(Search).value(sName) : FindInEach(sName, Search);
  bInProject = Found.bFoundInProject;
  if (!Found.sPath.isEmpty()) Log(QStringLiteral("Found %1 in %2").arg(sName, Found.sPath));
  return Found.sPath;
}

RESOLVED_PATH CPathResolver::FindInEach(const QString& sName, const SEARCH& Search) const {
  for (const QString& sEntry : m_SearchDirs + Search.Dirs) {
    bool bInProject = false;
    const QString sDir = SearchDir(sEntry, bInProject);
    if (sDir.isEmpty()) continue;
    const QString sPath = NormalisedPath(sDir + QLatin1Char('/') + sName);
    if (IsFile(sPath)) return {sPath, bInProject};
  }
  return {};
}

const CPathResolver::LISTING& CPathResolver::ListingOf(const SEARCH& Search) const {
  if (m_ListingsGeneration != m_Generation) m_Listings.clear();
  m_ListingsGeneration = m_Generation;
  const auto Known = m_Listings.constFind(&Search);
  if (Known != m_Listings.cend()) return *Known;
  LISTING& Listing = m_Listings[&Search];
  for (const QString& sEntry : m_SearchDirs + Search.Dirs) {
    bool bInProject = false;
    const QString sDir = SearchDir(sEntry, bInProject);
    if (sDir.isEmpty()) continue;
    QDirIterator Files(sDir, QDir::Files | QDir::Hidden);  // a link that leads nowhere is none
    while (Files.hasNext()) {
      Files.next();
      const QString sFile = Files.fileName();
      if (Listing.contains(sFile)) continue;
      Listing.insert(sFile, {NormalisedPath(sDir + QLatin1Char('/') + sFile), bInProject});
    }
  }
  return Listing;
}

void CPathResolver::BeginBurst() {
  const std::lock_guard Lock(m_Mutex);
  ++m_NumBursts;
}

void CPathResolver::EndBurst() {
  const std::lock_guard Lock(m_Mutex);
  if (--m_NumBursts == 0) m_Listings.clear();
}

bool CPathResolver::AddMovedTree(const MOVED_TREE& Tree, const QString& sWanted, const QString& sChosen) {
  const std::lock_guard Lock(m_Mutex);
  if (Tree.Rule == MOVED_TREE_NONE || m_PathSubstitutes.contains(Tree.sOld)) return false;
  const auto Substitutes = m_PathSubstitutes;
  const QStringList RootPaths = m_RootPaths;
  if (Tree.Rule == MOVED_TREE_ROOT) {
    AddRootPath(Tree.sNew);
  } else {
    AddPathSubstitute(Tree.sOld, Tree.sNew);
  }
  if (NormalisedPath(Resolve(sWanted).sPath) == NormalisedPath(sChosen)) return true;
  m_PathSubstitutes = Substitutes;
  m_RootPaths = RootPaths;
  ++m_Generation;
  return false;
}

QString CPathResolver::FindByKind(const SEARCH& Search, const QString& sPath, bool& bInProject) const {
  if (Search.bLogStart) Log(QStringLiteral("Resolving source file path: ") + sPath);
  const QString sInBase = FindInBases(sPath, false, bInProject);
  if (!sInBase.isEmpty()) return sInBase;
  for (const QString& sCandidate : SearchNames(Search, sPath)) {
    const QString sName = sCandidate.mid(sCandidate.lastIndexOf(QLatin1Char('/')) + 1);
    const QString sFound = FindInDirs(sName, Search, bInProject);
    if (!sFound.isEmpty()) return sFound;
  }
  bInProject = false;
  return {};
}

QStringList CPathResolver::SearchNames(const SEARCH& Search, const QString& sPath) const {
  if (Search.Suffixes.isEmpty()) return {sPath};
  const QString sStem = sPath.left(sPath.size() - QFileInfo(sPath).suffix().size() - 1);
  QStringList Names;
  for (const QString& sSuffix : Search.Suffixes) Names.append(sStem + sSuffix);
  return Names;
}

RESOLVED_PATH CPathResolver::Resolve(const QString& sPath) const {
  if (sPath.isEmpty()) return {};
  const std::lock_guard Lock(m_Mutex);
  Log(QStringLiteral("Starting to resolve: ") + sPath);
  QString sWorking = ExpandMacros(sPath);
  const QString sAlias = ApplyAliases(sWorking);
  if (!sAlias.isEmpty()) sWorking = sAlias;
  const QString sSubstituted = ApplySubstitutes(sWorking);
  if (!sSubstituted.isEmpty()) sWorking = sSubstituted;
  const QString sCleaned = NormalisedPath(sWorking);
  if (!IsRelativePath(sCleaned)) return {IsFile(sCleaned) ? sCleaned : sWorking, false};
  if (IsFile(sCleaned)) return {sCleaned, false};
  RESOLVED_PATH Result;
  Result.sPath = FindByKind(SearchFor(sCleaned), sCleaned, Result.bFoundInProject);
  return Result;
}

QString CPathResolver::GetAliasOf(const QString& sPath) const {
  const std::lock_guard Lock(m_Mutex);
  for (const QString& sValue : m_FileAliases) {
    if (IsSamePath(sValue, sPath)) return sValue;
  }
  return sPath;
}

void CPathResolver::AddFileAlias(const QString& sOldPath, const QString& sNewPath) {
  const std::lock_guard Lock(m_Mutex);
  const QString sKey = ExpandMacros(sOldPath);
  m_FileAliases.insert(sKey, NormalisedPath(ExpandMacros(sNewPath)));
  TakeFirst(m_AliasKeys, sKey.toCaseFolded(), sKey);
  TakeFirst(m_CleanedAliasKeys, NormalisedPath(sKey).toCaseFolded(), sKey);
  ++m_Generation;
}

void CPathResolver::AddPathSubstitute(const QString& sOldPart, const QString& sNewPart) {
  const std::lock_guard Lock(m_Mutex);
  const QString sKey = SingleSlashes(ExpandMacros(sOldPart));
  m_PathSubstitutes.insert(sKey, {SingleSlashes(ExpandMacros(sNewPart)), QStringMatcher(sKey, Qt::CaseInsensitive)});
  ++m_Generation;
}

void CPathResolver::AddSearchPath(const QString& sPath) {
  const std::lock_guard Lock(m_Mutex);
  m_SearchDirs.append(NormalisedPath(ExpandMacros(sPath)));
  ++m_Generation;
}

void CPathResolver::AddRootPath(const QString& sPath) {
  const std::lock_guard Lock(m_Mutex);
  QString sRoot = NormalisedPath(ExpandMacros(sPath));
  bool bInProject = false;
  const QString sFound = IsRelativePath(sRoot) ? FindInBases(sRoot, true, bInProject) : QString();
  if (!sFound.isEmpty()) sRoot = sFound;
  if (!m_RootPaths.contains(sRoot)) m_RootPaths.append(sRoot);
  ++m_Generation;
}

void CPathResolver::Clear() {
  const std::lock_guard Lock(m_Mutex);
  m_FileAliases.clear();
  m_AliasKeys.clear();
  m_CleanedAliasKeys.clear();
  m_PathSubstitutes.clear();
  m_SearchDirs.clear();
  m_RootPaths.clear();
  ++m_Generation;
}

void CPathResolver::SetProjectPath(const QString& sPath) {
  const std::lock_guard Lock(m_Mutex);
  m_sProjectPath = sPath;
  ++m_Generation;
}

void CPathResolver::SetProgramPath(const QString& sPath) {
  const std::lock_guard Lock(m_Mutex);
  m_sProgramPath = sPath;
  ++m_Generation;
}

void CPathResolver::SetExecutableDir(const QString& sDir) {
  const std::lock_guard Lock(m_Mutex);
  m_sExecutableDir = sDir;
  ++m_Generation;
}

void CPathResolver::SetLog(LogFunc Log) {
  const std::lock_guard Lock(m_Mutex);
  m_Log = std::move(Log);
}
