#include <QElapsedTimer>

#include "device/data_files/vfile.h"
#include "program/database/core_link.h"
#include "program/database/database.h"
#include "program/database/program_build.h"
#include "program/elf/elf.h"

namespace {

void CloseProgram(DATABASE& Db) {
  AttachToCore(nullptr);
  StoreCoreImage({});
  VFile::CFileWorker::Get()->SetProgram({});
  QElapsedTimer Timer;
  Timer.start();
  ELF_Close(Db.pElf);
  DatabaseLog(QStringLiteral("ELF_Close() after ms: %1").arg(Timer.elapsed()));
}

}  // namespace

int ELFAPI_Load(const QString& sPath) {
  CProgramBuild Build;
  if (Build.Read(sPath) != PROGRAM_BUILT) {
    ELFAPI_Unload();
    return -1;
  }
  Build.TakeOver();
  return 0;
}

void ELFAPI_Unload() {
  const CDatabaseLock Lock;
  const CBusyMark Busy;
  DATABASE& Db = *Lock;
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
  return DatabaseState().NumBusy != 0;
}
