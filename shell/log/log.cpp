#include "shell/log/log.h"

#include <cstdio>

#include "shell/log/console_print.h"
#include "shell/log/log_file.h"

namespace {

constexpr qsizetype MAX_MSG_BYTES = 2048;  // buffer of one message, final zero included
constexpr int DEFAULT_LOG_INTERVAL = 512;  // bytes
constexpr qsizetype MAX_LOG_PATH_BYTES = 511;
constexpr U32 RGBA_ERROR = 0xFFB22222u;
constexpr U32 RGBA_PROBE = 0xFF00008Bu;

struct FLAG_TEXT {
  U32 Flag;
  const char* sText;
};
constexpr FLAG_TEXT SourcePrefixes[] = {
    {MSG_SRC_ELF, "ElfLib: "}, {MSG_SRC_PROBE, "V-Node: "}, {MSG_SRC_TARGET, "Target: "}, {MSG_SRC_CORE, "Core: "}};
constexpr FLAG_TEXT LevelPrefixes[] = {{MSG_ERROR, "[E] "}, {MSG_WARNING, "[W] "}, {MSG_INFO, " i  "}};

struct LOG_STATE {
  std::mutex Mutex;
  CLogFile AppFile;
  QByteArray Pending;  // lines of the application log that are not written yet
  QByteArray PathText;
  int Interval = DEFAULT_LOG_INTERVAL;
  std::mutex ConsoleFileMutex;
  CLogFile ConsoleFile;
  std::atomic<bool> IsAppFileOpen = false;
  std::atomic<bool> DebugMode = false;
  std::atomic<bool> ConsoleExists = false;

  ~LOG_STATE() { WritePending(); }
  void WritePending() {
    if (!Pending.isEmpty()) AppFile.Write(Pending);
    Pending.clear();
  }
};

LOG_STATE& State() {
  static LOG_STATE TheState;
  return TheState;
}

bool WantsSink(U32 Flags, U32 Sink) {
  return (Flags & (Sink | MSG_TO_ALL)) != 0;
}

const char* PrefixOf(U32 Flags, const FLAG_TEXT* pTable, size_t NumRows) {
  for (size_t i = 0; i < NumRows; ++i) {
    if (Flags & pTable[i].Flag) return pTable[i].sText;
  }
  return "";
}

QByteArray MessageText(const char* sText, U32 Flags) {
  QByteArray Text(sText, static_cast<qsizetype>(qstrnlen(sText, MAX_MSG_BYTES - 1)));
  const QByteArray Prefix = PrefixOf(Flags, SourcePrefixes, std::size(SourcePrefixes));
  if (Prefix.size() + Text.size() < MAX_MSG_BYTES) Text.prepend(Prefix);
  qsizetype Size = Text.size();
  while (Size > 0 && strchr("\r\n ", Text.at(Size - 1))) --Size;
  Text.truncate(Size);
  return Text;
}

U32 ConsoleColor(U32 Flags) {
  if (Flags & MSG_ERROR) return RGBA_ERROR;
  return Flags & MSG_SRC_PROBE ? RGBA_PROBE : CONSOLE_RGBA_DEFAULT;
}

}  // namespace

int LogMsg(const char* sText, U32 Flags) {
  if (!sText || !*sText) return -1;
  if (!IsLogSinkActive(Flags)) return 0;
  LOG_STATE& Log = State();
  const std::scoped_lock Lock(Log.Mutex);
  const QByteArray Text = MessageText(sText, Flags);
  if (WantsSink(Flags, MSG_TO_CONSOLE) && Log.ConsoleExists) PrintConsole(Text.constData(), ConsoleColor(Flags));
  const QByteArray Line = PrefixOf(Flags, LevelPrefixes, std::size(LevelPrefixes)) + Text;
  if (WantsSink(Flags, MSG_TO_STDOUT) && Log.DebugMode) {
    puts(Line.constData());
    fflush(stdout);
  }
  if (WantsSink(Flags, MSG_TO_FILE) && Log.IsAppFileOpen) {
    Log.Pending += Line + '\n';
    if (Log.Pending.size() >= Log.Interval) Log.WritePending();
  }
  return 0;
}

int LogMsg(const QString& sText, U32 Flags) {
  return LogMsg(sText.toUtf8().constData(), Flags);
}

bool IsLogSinkActive(U32 Flags) {
  const LOG_STATE& Log = State();
  return (WantsSink(Flags, MSG_TO_CONSOLE) && Log.ConsoleExists) ||
         (WantsSink(Flags, MSG_TO_STDOUT) && Log.DebugMode) || (WantsSink(Flags, MSG_TO_FILE) && Log.IsAppFileOpen);
}

void HandleQtMessage(QtMsgType Type, const QMessageLogContext&, const QString& sText) {
  U32 Flags = MSG_INFO | MSG_TO_STDOUT | MSG_TO_FILE;
  if (Type == QtWarningMsg) {
    Flags = MSG_WARNING | MSG_TO_STDOUT | MSG_TO_FILE;
  } else if (Type == QtCriticalMsg || Type == QtFatalMsg) {
    Flags = MSG_ERROR | MSG_TO_STDOUT | MSG_TO_FILE | MSG_TO_CONSOLE;
  }
  if (!IsLogSinkActive(Flags)) return;
  LogMsg(sText, Flags | MSG_FROM_QT);
  if (Type != QtFatalMsg) return;
  // The program ends behind this one.
  const std::scoped_lock Lock(State().Mutex);
  State().WritePending();
}

int OpenLogFile(int Index, const char* sPath) {
  if (Index != LOG_FILE_APPLICATION && Index != LOG_FILE_CONSOLE) return -1;
  LOG_STATE& Log = State();
  const QByteArray Path(sPath);
  if (Index == LOG_FILE_CONSOLE) {
    const std::scoped_lock Lock(Log.ConsoleFileMutex);
    return Log.ConsoleFile.Open(QString::fromUtf8(Path)) ? 0 : -1;
  }
  const std::scoped_lock Lock(Log.Mutex);
  Log.WritePending();
  Log.PathText = Path.left(MAX_LOG_PATH_BYTES);
  const bool bOpened = Log.AppFile.Open(QString::fromUtf8(Path));
  Log.IsAppFileOpen = Log.AppFile.IsOpen();
  return bOpened ? 0 : -1;
}

void CloseLogFiles() {
  OpenLogFile(LOG_FILE_APPLICATION, nullptr);
  OpenLogFile(LOG_FILE_CONSOLE, nullptr);
}

const char* GetLogFilePath() {
  const LOG_STATE& Log = State();
  return Log.PathText.isEmpty() ? nullptr : Log.PathText.constData();
}

void SetLogInterval(const QString& sLogInterval) {
  LOG_STATE& Log = State();
  const std::scoped_lock Lock(Log.Mutex);
  const int Interval = sLogInterval.trimmed().toInt();
  Log.Interval = Interval < 1 ? DEFAULT_LOG_INTERVAL : Interval;
}

void SetDebugMode(bool On) {
  State().DebugMode = On;
}

bool IsDebugMode() {
  return State().DebugMode;
}

void SetConsoleExists(bool Exists) {
  State().ConsoleExists = Exists;
}

bool IsConsoleExisting() {
  return State().ConsoleExists;
}

void WriteConsoleLogFile(const char* sText, U32 NumBytes) {
  LOG_STATE& Log = State();
  const std::scoped_lock Lock(Log.ConsoleFileMutex);
  Log.ConsoleFile.Write(QByteArray(sText, NumBytes));
}
