#include "program/database/program_build.h"

#include <QElapsedTimer>
#include <new>

#include "base/msg_flags.h"
#include "device/data_files/vfile.h"
#include "program/database/core_link.h"
#include "program/database/database.h"
#include "program/elf/elf.h"

namespace {

// Share of the reader in the time of a build, in thousandths; the rest goes to the steps evenly.
constexpr U32 READER_SHARE = 700;
constexpr U32 NUM_STEPS = 16;

QString TimeText(const QElapsedTimer& Timer) {
  return QStringLiteral("%1 ms").arg(Timer.elapsed());
}

// Makes this thread ask the new tables.
class CDatabaseScope {
public:
  explicit CDatabaseScope(DATABASE* pDatabase) { UseDatabase(pDatabase); }
  ~CDatabaseScope() { UseDatabase(nullptr); }
  CDatabaseScope(const CDatabaseScope&) = delete;
  CDatabaseScope& operator=(const CDatabaseScope&) = delete;
};

// Makes this thread ask the new program.
class CBuildScope {
public:
  CBuildScope(READER_STATE* pReader, VCore::CORE_STATE* pCore, DATABASE* pDatabase) : m_Database(pDatabase) {
    ELF_UseReader(pReader);
    UseCore(pCore);
  }
  ~CBuildScope() {
    UseCore(nullptr);
    ELF_UseReader(nullptr);
  }

private:
  CDatabaseScope m_Database;
};

void LogNoMemory(const QString& sPath) {
  DatabaseLog(QStringLiteral("\"%1\": not enough memory for the tables of the program").arg(sPath),
              MSG_ERROR | MSG_TO_ALL);
}

// Once it is told to stop, it stays so.
class CProgress {
public:
  explicit CProgress(BUILD_PROGRESS Ask) : m_Ask(std::move(Ask)) {}

  bool GoOn(U32 Permille) {
    m_bGoesOn = m_bGoesOn && (!m_Ask || m_Ask(Permille));
    return m_bGoesOn;
  }
  bool GoesOn() const { return m_bGoesOn; }

private:
  BUILD_PROGRESS m_Ask;
  bool m_bGoesOn = true;
};

ELF_FILE* OpenFile(const QString& sPath, CProgress& Progress) {
  ELF_SetInstAlignment(InstAlignment());
  ELF_SetMessageCallback(
      [](const char* sText, U32 Flags) { DatabaseLog(QString::fromUtf8(sText), Flags | MSG_SRC_ELF); });
  ELF_SetProgressCallback([&Progress](U64 Done, U64 Total) {
    return Progress.GoOn(static_cast<U32>(Total != 0 ? Done * READER_SHARE / Total : 0));
  });
  ELF_FILE* pElf = ELF_Open(sPath.toUtf8().constData());
  ELF_SetProgressCallback({});
  return pElf;
}

void LoadImage(DATABASE& Db) {
  Db.DataSegments = StoreCoreImage(VFile::CFileWorker::Get()->ReadSegments(Db.pElf));
  for (const CMemBlock& Block : Db.DataSegments) {
    Db.LowestAddr = std::min(Db.LowestAddr, Block.VirtAddr);
    Db.HighestAddr = std::max(Db.HighestAddr, CAddrRange{Block.VirtAddr, Block.NumBytes}.End());
  }
}

bool BuildTables(DATABASE& Db, CProgress& Progress) {
  QElapsedTimer Timer;
  Timer.start();
  U32 NumSteps = 0;
  const auto StepDone = [&](const char* sStep) {
    DatabaseLog(QString::fromLatin1(sStep) + QStringLiteral(": ") + TimeText(Timer));
    return Progress.GoOn(READER_SHARE + ++NumSteps * (BUILD_PROGRESS_END - READER_SHARE) / NUM_STEPS);
  };
  AttachToCore(Db.pElf);
  LoadImage(Db);
  if (!StepDone("Program data segments initialized in")) return false;
  if (!LoadFilesAndLines(Db, StepDone) || !LoadSymbols(Db, StepDone)) return false;
  // What was asked of unfinished tables.
  Db.Caches = {};
  DatabaseLog(QStringLiteral("ELF-API wrapper initialized in ") + TimeText(Timer));
  DatabaseLog(QStringLiteral("Function count: %1").arg(Db.Functions.Functions().size()));
  DatabaseLog(QStringLiteral("Global variable count: %1").arg(Db.GlobalVars.size()));
  return true;
}

}  // namespace

// Decoding may ask the target for its state, whose thread may wait for the database: not under its mutex.
void GiveProgramToCore() {
  {
    const CDatabaseLock Db;
    if (!Db->pElf) return;
    AttachToCore(Db->pElf);
  }
  AnalyzeCoreProgram();
}

bool RebuildTables(CDatabaseLock& Db) {
  const CBusyMark Busy;
  auto pNew = std::make_unique<DATABASE>();
  pNew->pElf = Db->pElf;
  pNew->sPath = Db->sPath;
  const CFileTable& OldFiles = Db->Files;
  const U32 CurrentPC = Db->Scope.CurrentPC;
  try {
    const CDatabaseScope Scope(pNew.get());
    CProgress Progress({});
    BuildTables(*pNew, Progress);
    pNew->Files.RedirectLike(OldFiles);
    ELFAPI_SetCurrentPC(CurrentPC);
  } catch (const std::bad_alloc&) {
    LogNoMemory(Db->sPath);
    return false;
  }
  Db.Exchange(pNew);
  VFile::CFileWorker::Get()->SetProgram(Db->DataSegments);
  return true;
}

CProgramBuild::CProgramBuild() = default;

CProgramBuild::~CProgramBuild() {
  const bool bProgram = m_pDatabase && m_pDatabase->pElf;
  QElapsedTimer Timer;
  Timer.start();
  m_pCore.reset();
  m_pReader.reset();
  if (bProgram) DatabaseLog(QStringLiteral("ELF_Close() after ms: %1").arg(Timer.elapsed()));
  m_pDatabase.reset();
  if (bProgram) DatabaseLog(QStringLiteral("ELF-API Wrapper deinitialized after ms: %1").arg(Timer.elapsed()));
}

PROGRAM_BUILD_RESULT CProgramBuild::Read(const QString& sPath, const BUILD_PROGRESS& Ask) {
  const CBusyMark Busy;
  {
    const CDatabaseLock Lock;
    m_pReader = ELF_NewReader();
  }
  m_pCore = NewCore();
  m_pDatabase = std::make_unique<DATABASE>();
  const CBuildScope Scope(m_pReader.get(), m_pCore.get(), m_pDatabase.get());
  CProgress Progress(Ask);
  m_pDatabase->pElf = OpenFile(sPath, Progress);
  if (!Progress.GoesOn()) return PROGRAM_BUILD_STOPPED;
  if (!m_pDatabase->pElf) return PROGRAM_REFUSED;
  m_pDatabase->sPath = sPath;
  try {
    if (!BuildTables(*m_pDatabase, Progress)) return PROGRAM_BUILD_STOPPED;
    AnalyzeCoreProgram();
    return Progress.GoOn(BUILD_PROGRESS_END) ? PROGRAM_BUILT : PROGRAM_BUILD_STOPPED;
  } catch (const std::bad_alloc&) {
    LogNoMemory(sPath);
    return PROGRAM_REFUSED;
  }
}

void CProgramBuild::TakeOver() {
  bool bDecoded = false;
  {
    const CBusyMark Busy;
    CDatabaseLock Db;
    // The target may stand still meanwhile.
    const U32 CurrentPC = Db->Scope.CurrentPC;
    ELF_ExchangeReader(*m_pReader);
    bDecoded = TakeCoreProgram(*m_pCore);
    Db.Exchange(m_pDatabase);
    ELFAPI_SetCurrentPC(CurrentPC);
    VFile::CFileWorker::Get()->SetProgram(Db->DataSegments);
    DatabaseState().bLoaded = true;
  }
  if (!bDecoded) AnalyzeCoreProgram();
}
