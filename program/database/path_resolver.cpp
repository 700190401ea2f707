#include "program/database/path_resolver.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

#include "base/text.h"

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

QString SingleSlashes(QString sPath) {
  sPath.replace(QLatin1Char('\\'), QLatin1Char('/'));
  while (sPath.contains(QLatin1String("//"))) sPath.replace(QLatin1String("//"), QLatin1String("/"));
  return sPath;
}

bool IsSamePath(const QString& sA, const QString& sB) {
  return sA.compare(sB, Qt::CaseInsensitive) == 0;
}

bool HasDrive(const QString& sPath) {
  return sPath.size() >= 2 && sPath[1] == QLatin1Char(':') && sPath[0].isLetter() && sPath[0].unicode() < 0x80;
}

bool IsRelative(const QString& sPath) {
  return !HasDrive(sPath) && QFileInfo(sPath).isRelative();
}

bool IsFile(const QString& sPath) {
  return QFileInfo(sPath).isFile();
}

bool Matches(const char* sPatterns, const QString& sPath) {
  return QDir::match(QString::fromLatin1(sPatterns).split(QLatin1Char(' ')), QFileInfo(sPath).fileName());
}

QString DirOf(const QString& sFile) {
  return sFile.isEmpty() ? QString() : NormalisedPath(QFileInfo(sFile).path());
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
  const QString sCleaned = NormalisedPath(sPath);
  for (auto it = m_FileAliases.cbegin(); it != m_FileAliases.cend(); ++it) {
    if (!IsSamePath(it.key(), sPath) && !IsSamePath(NormalisedPath(it.key()), sCleaned)) continue;
    Log(QStringLiteral("mapped %1 to %2").arg(sPath, it.value()));
    return it.value();
  }
  return {};
}

QString CPathResolver::ApplySubstitutes(const QString& sPath) const {
  if (m_PathSubstitutes.isEmpty()) return {};
  Log(QStringLiteral("Applying path substitutes in : ") + sPath);
  QString sResult = SingleSlashes(sPath);
  bool bApplied = false;
  for (auto it = m_PathSubstitutes.cbegin(); it != m_PathSubstitutes.cend(); ++it) {
    if (it.key().isEmpty() || !sResult.contains(it.key(), Qt::CaseInsensitive)) continue;
    sResult.replace(it.key(), it.value(), Qt::CaseInsensitive);
    bApplied = true;
    Log(QStringLiteral("Path substituted: %1 -> %2").arg(it.key(), it.value()));
  }
  return bApplied ? sResult : sPath;
}

QString CPathResolver::TryBase(const QString& sBase, const QString& sPath) const {
  QString sJoined = sBase;
  while (sJoined.endsWith(QLatin1Char('/'))) sJoined.chop(1);
  sJoined += sPath.startsWith(QLatin1Char('/')) ? sPath : QLatin1Char('/') + sPath;
  Log(QStringLiteral("Testing ") + sJoined);
  return QFileInfo::exists(sJoined) ? NormalisedPath(sJoined) : QString();
}

QString CPathResolver::FindInBases(const QString& sPath, bool bWithCurrentDir, bool& bInProject) const {
  // A project file without directory would make the current directory a base.
  const bool bHasDir = NormalisedPath(m_sProjectPath).contains(QLatin1Char('/'));
  const QString sProjectDir = bHasDir ? DirOf(m_sProjectPath) : QString();
  QStringList Bases = m_RootPaths;
  const qsizetype ProjectIndex = sProjectDir.isEmpty() ? -1 : Bases.size();
  if (!sProjectDir.isEmpty()) Bases.append(sProjectDir);
  Bases.append(ExecutableDir());
  if (!m_sProgramPath.isEmpty()) Bases.append(DirOf(m_sProgramPath));
  if (bWithCurrentDir) Bases.append(QDir::currentPath());
  for (qsizetype i = 0; i < Bases.size(); ++i) {
    const QString sFound = TryBase(Bases[i], sPath);
    if (sFound.isEmpty()) continue;
    bInProject = i == ProjectIndex;
    return sFound;
  }
  return {};
}

QString CPathResolver::FindInDirs(const QString& sName, const QStringList& Dirs, bool& bInProject) const {
  if (Dirs.isEmpty()) return {};
  Log(QStringLiteral("Looking for %1 in search directories.").arg(sName));
  for (const QString& sDir : Dirs) {
    QString sPath = ExpandMacros(sDir);
    bInProject = false;
    if (IsRelative(sPath)) sPath = FindInBases(sPath, true, bInProject);
    if (sPath.isEmpty()) continue;
    sPath = NormalisedPath(sPath + QLatin1Char('/') + sName);
    if (!IsFile(sPath)) continue;
    Log(QStringLiteral("Found %1 in %2").arg(sName, sPath));
    return sPath;
  }
  return {};
}

QString CPathResolver::FindByKind(const SEARCH& Search, const QString& sPath, bool& bInProject) const {
  if (Search.bLogStart) Log(QStringLiteral("Resolving source file path: ") + sPath);
  const QString sInBase = FindInBases(sPath, false, bInProject);
  if (IsFile(sInBase)) return sInBase;
  for (const QString& sCandidate : SearchNames(Search, sPath)) {
    const QString sName = sCandidate.mid(sCandidate.lastIndexOf(QLatin1Char('/')) + 1);
    const QString sFound = FindInDirs(sName, m_SearchDirs + Search.Dirs, bInProject);
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
  if (!IsRelative(sCleaned)) return {IsFile(sCleaned) ? sCleaned : sWorking, false};
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
  m_FileAliases.insert(ExpandMacros(sOldPath), NormalisedPath(ExpandMacros(sNewPath)));
  ++m_Generation;
}

void CPathResolver::AddPathSubstitute(const QString& sOldPart, const QString& sNewPart) {
  const std::lock_guard Lock(m_Mutex);
  m_PathSubstitutes.insert(SingleSlashes(ExpandMacros(sOldPart)), SingleSlashes(ExpandMacros(sNewPart)));
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
  const QString sFound = IsRelative(sRoot) ? FindInBases(sRoot, true, bInProject) : QString();
  m_RootPaths.append(sFound.isEmpty() ? sRoot : sFound);
  ++m_Generation;
}

void CPathResolver::Clear() {
  const std::lock_guard Lock(m_Mutex);
  m_FileAliases.clear();
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
