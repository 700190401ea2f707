#include <QElapsedTimer>

#include "base/msg_flags.h"
#include "device/data_files/vfile.h"
#include "program/database/core_link.h"
#include "program/database/database.h"
#include "program/elf/elf.h"

namespace {

std::recursive_mutex& Mutex() {
  static std::recursive_mutex TheMutex;
  return TheMutex;
}

DATABASE& Database() {
  static DATABASE TheDatabase;
  return TheDatabase;
}

MessageSink& Sink() {
  static MessageSink TheSink;
  return TheSink;
}

// Busy for the time of a load or unload, also of an unload inside a load.
class CBusyMark {
public:
  CBusyMark() : m_bWasBusy(DatabaseState().bBusy.exchange(true)) {}
  ~CBusyMark() { DatabaseState().bBusy = m_bWasBusy; }

private:
  bool m_bWasBusy;
};

QString TimeText(const QElapsedTimer& Timer) {
  return QStringLiteral("%1 ms").arg(Timer.elapsed());
}

void InitReader() {
  ELF_SetInstAlignment(InstAlignment());
  ELF_SetMessageCallback(
      [](const char* sText, U32 Flags) { DatabaseLog(QString::fromUtf8(sText), Flags | MSG_SRC_ELF); });
}

void LoadImage(DATABASE& Db) {
  Db.DataSegments = StoreCoreImage(VFile::CFileWorker::Get()->ReadProgramSegments());
  for (const CMemBlock& Block : Db.DataSegments) {
    Db.LowestAddr = std::min(Db.LowestAddr, Block.VirtAddr);
    Db.HighestAddr = std::max(Db.HighestAddr, CAddrRange{Block.VirtAddr, Block.NumBytes}.End());
  }
}

void CloseProgram(DATABASE& Db) {
  AttachToCore(nullptr);
  StoreCoreImage({});
  VFile::CFileWorker::Get()->SetProgram(nullptr);
  QElapsedTimer Timer;
  Timer.start();
  ELF_Close(Db.pElf);
  DatabaseLog(QStringLiteral("ELF_Close() after ms: %1").arg(Timer.elapsed()));
}

void BuildTables(DATABASE& Db) {
  QElapsedTimer Timer;
  Timer.start();
  const auto StepDone = [&Timer](const char* sStep) {
    DatabaseLog(QString::fromLatin1(sStep) + QStringLiteral(": ") + TimeText(Timer));
  };
  LoadImage(Db);
  StepDone("Program data segments initialized in");
  LoadFilesAndLines(Db, StepDone);
  LoadSymbols(Db, StepDone);
  AnalyzeCoreProgram();
  DatabaseLog(QStringLiteral("ELF-API wrapper initialized in ") + TimeText(Timer));
  DatabaseLog(QStringLiteral("Function count: %1").arg(Db.Functions.Functions().size()));
  DatabaseLog(QStringLiteral("Global variable count: %1").arg(Db.GlobalVars.size()));
}

}  // namespace

CDatabaseLock::CDatabaseLock() : m_Lock(Mutex()) {}

DATABASE* CDatabaseLock::operator->() const {
  return &Database();
}

DATABASE_STATE& DatabaseState() {
  static DATABASE_STATE TheState;
  return TheState;
}

void DatabaseLog(const QString& sText) {
  DatabaseLog(sText, MSG_INFO | MSG_TO_STDOUT | MSG_TO_FILE);
}

void DatabaseLog(const QString& sText, U32 Flags) {
  if (Sink()) Sink()(sText, Flags);
}

void ELFAPI_SetMessageSink(MessageSink NewSink) {
  const CDatabaseLock Db;
  Sink() = std::move(NewSink);
}

int ELFAPI_Load(const QString& sPath) {
  const CDatabaseLock Lock;
  const CBusyMark Busy;
  ELFAPI_Unload();
  InitReader();
  ELF_FILE* pElf = ELF_Open(sPath.toUtf8().constData());
  if (!pElf) return -1;
  DATABASE& Db = Database();
  Db.pElf = pElf;
  Db.sPath = sPath;
  AttachToCore(pElf);
  VFile::CFileWorker::Get()->SetProgram(pElf);
  BuildTables(Db);
  DatabaseState().bLoaded = true;
  return 0;
}

void ELFAPI_Unload() {
  const CDatabaseLock Lock;
  const CBusyMark Busy;
  DATABASE& Db = Database();
  DatabaseState().bLoaded = false;
  if (!Db.pElf) {
    // Questions to the empty database have left their empty indexes.
    Db = DATABASE();
    return;
  }
  QElapsedTimer Timer;
  Timer.start();
  CloseProgram(Db);
  Db = DATABASE();
  DatabaseLog(QStringLiteral("ELF-API Wrapper deinitialized after ms: %1").arg(Timer.elapsed()));
}

bool ELFAPI_IsLoaded() {
  return DatabaseState().bLoaded;
}

bool ELFAPI_IsBusy() {
  return DatabaseState().bBusy;
}
