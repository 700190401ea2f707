#include "program/database/database.h"

#include "base/msg_flags.h"

namespace {

thread_local DATABASE* pDatabaseOfThread = nullptr;

std::recursive_mutex& Mutex() {
  static std::recursive_mutex TheMutex;
  return TheMutex;
}

std::unique_ptr<DATABASE>& Database() {
  static auto pDatabase = std::make_unique<DATABASE>();
  return pDatabase;
}

// Programs that are being built log on threads of their own.
struct SINK {
  std::mutex Mutex;
  MessageSink Sink;
};

SINK& Sink() {
  static SINK TheSink;
  return TheSink;
}

}  // namespace

CDatabaseLock::CDatabaseLock() {
  if (!pDatabaseOfThread) m_Lock = std::unique_lock(Mutex());
}

DATABASE* CDatabaseLock::operator->() const {
  return pDatabaseOfThread ? pDatabaseOfThread : Database().get();
}

void CDatabaseLock::Exchange(std::unique_ptr<DATABASE>& pOther) {
  std::swap(Database(), pOther);
}

void UseDatabase(DATABASE* pDatabase) {
  pDatabaseOfThread = pDatabase;
}

DATABASE_STATE& DatabaseState() {
  static DATABASE_STATE TheState;
  return TheState;
}

CBusyMark::CBusyMark() {
  ++DatabaseState().NumBusy;
}

CBusyMark::~CBusyMark() {
  --DatabaseState().NumBusy;
}

void DatabaseLog(const QString& sText) {
  DatabaseLog(sText, MSG_INFO | MSG_TO_STDOUT | MSG_TO_FILE);
}

void DatabaseLog(const QString& sText, U32 Flags) {
  MessageSink Receiver;
  {
    const std::lock_guard Lock(Sink().Mutex);
    Receiver = Sink().Sink;
  }
  if (Receiver) Receiver(sText, Flags);
}

void ELFAPI_SetMessageSink(MessageSink NewSink) {
  const std::lock_guard Lock(Sink().Mutex);
  Sink().Sink = std::move(NewSink);
}
