#include "script/vscript.h"

#include <QCoreApplication>
#include <QDir>
#include <QThread>

#include "script/api_stubs.h"
#include "script/ctrans.h"
#include "script/error_excerpt.h"
#include "script/script_host.h"
#include "script/text_file.h"
#include "shell/log/console_print.h"
#include "shell/log/log.h"

namespace {

constexpr int CLOSE_WAIT_MS = 100'000;
constexpr int MAX_CALL_LEVEL = 10;
constexpr const char* STOPPED = "Script stopped by the user";

struct HOST_STATE {
  VSCRIPT_HOST Host;
  std::shared_ptr<CTrans> pCTrans;  // a running hook holds it too
  QString sText;
  QString sFileText;  // what the file held when it was read or written
  U32 NumLoads = 0;
  QString sScriptPath;
  QString sErrorText;
  QString sErrorStatement;
  QStringList ErrorExcerpt;
  int ErrorLineNo = -1;
  bool HasScriptError = false;
  bool CloseRequested = false;
  bool StopRequested = false;  // until the last hook has ended
  int CallLevel = 0;
  int CurrentFuncID = HOOK_NONE;
};

HOST_STATE& State() {
  static HOST_STATE Instance;
  return Instance;
}

void LogDebug(const QString& sText) {
  LogMsg(sText, MSG_INFO | MSG_TO_STDOUT | MSG_TO_FILE);
}
void LogWarning(const QString& sText) {
  LogMsg(sText, MSG_WARNING | MSG_TO_STDOUT | MSG_TO_FILE);
}

void SetError(const QString& sText, int LineNo = -1) {
  HOST_STATE& S = State();
  S.sErrorText = sText;
  S.ErrorLineNo = LineNo;
  S.HasScriptError = true;
}

void SetHookError(int FuncID) {
  const HOOK_INFO* const pHook = GetHookInfo(FuncID);
  SetError(QStringLiteral("Error in script function ") + QLatin1String(pHook ? pHook->sPrototype : ""));
}

// A script that still runs after its successor was loaded says nothing about the new one.
std::function<void(const CTRANS_ERROR&)> ErrorSink(U32 LoadNo) {
  return [LoadNo](const CTRANS_ERROR& Error) {
    HOST_STATE& S = State();
    if (S.NumLoads != LoadNo) return;
    S.sErrorStatement = QString::fromStdString(Error.sStatement);
    S.ErrorExcerpt = MakeErrorExcerpt(QDir::toNativeSeparators(S.sScriptPath), S.sText.toUtf8(), Error);
    if (Error.sText.empty()) {
      SetHookError(S.CurrentFuncID);
    } else {
      SetError(QString::fromStdString(Error.sText), Error.LineNo);
    }
  };
}

// One running hook.
class CHookRun {
public:
  explicit CHookRun(int FuncID) : m_OuterFuncID(State().CurrentFuncID) {
    State().CurrentFuncID = FuncID;
    if (State().CallLevel++ == 0 && State().Host.OnRunning) State().Host.OnRunning(true);
  }
  ~CHookRun() {
    State().CurrentFuncID = m_OuterFuncID;
    if (--State().CallLevel > 0) return;
    State().StopRequested = false;
    if (State().Host.OnRunning) State().Host.OnRunning(false);
  }
  CHookRun(const CHookRun&) = delete;
  CHookRun& operator=(const CHookRun&) = delete;

private:
  int m_OuterFuncID;
};

QString Quoted(const QString& sText) {
  return QLatin1Char('"') + sText + QLatin1Char('"');
}

// -1 and its word when the script can't run a hook now; 0 and bRun false when it is closing.
int CheckRunnable(int FuncID, bool* pRun) {
  HOST_STATE& S = State();
  *pRun = false;
  if (!S.pCTrans) {
    LogDebug(QStringLiteral("Cannot execute script function: pCTrans is NULL"));
    return -1;
  }
  if (S.CloseRequested) {
    LogDebug(QStringLiteral("Cannot execute script function: close was requested"));
    return 0;
  }
  if (S.HasScriptError) {
    LogDebug(QStringLiteral("Cannot execute script function: script file has error"));
    return -1;
  }
  if (FuncID > NUM_HOOKS) {
    LogDebug(QStringLiteral("Cannot execute script function: invalid function ID"));
    return 0;
  }
  if (S.CallLevel > MAX_CALL_LEVEL) {
    const QString sText = QStringLiteral("Error executing script function %1: maximum call level reached.")
                              .arg(Quoted(GetHookName(S.CurrentFuncID)));
    PrintConsoleError(sText);
    LogWarning(sText);
    return -1;
  }
  if (GetHookInfo(FuncID) == nullptr) {
    LogWarning(QStringLiteral("Cannot execute unknown script function"));
    return -1;
  }
  *pRun = true;
  return 0;
}

int LoadFile(const QString& sPath) {
  bool bOk = false;
  const QString sText = ReadTextFile(sPath, &bOk);
  if (bOk) return VScript::LoadText(sText);
  VScript::Close();
  SetError(QStringLiteral("file not found"));
  return -1;
}

}  // namespace

void ProcessHostEvents() {
  if (State().Host.ProcessEvents) {
    State().Host.ProcessEvents();
  } else {
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
  }
}

int FindHostRegister(const QString& sName) {
  return State().Host.FindRegister ? State().Host.FindRegister(sName) : -1;
}

namespace VScript {

void SetHost(VSCRIPT_HOST Host) {
  State().Host = std::move(Host);
}

int Load(const QString& sPath) {
  HOST_STATE& S = State();
  S.CloseRequested = false;
  S.sScriptPath = sPath;
  const int Result = LoadFile(sPath);
  S.sScriptPath = sPath;
  if (Result < 0) {
    LogDebug(QStringLiteral("VScript::Load: could not load project file"));
    return Result;
  }
  if (!S.HasScriptError && !HasFunction(HOOK_ON_PROJECT_LOAD)) {
    SetError(QStringLiteral("Required user function missing: ") +
             QLatin1String(GetHookInfo(HOOK_ON_PROJECT_LOAD)->sPrototype));
    return -1;
  }
  for (int FuncID = 1; FuncID <= NUM_HOOKS && !S.HasScriptError; ++FuncID) {
    const QString sName = GetHookName(FuncID);
    if (S.pCTrans->GetNumParams(sName.toStdString()) == 0) continue;
    PrintConsoleError(
        QStringLiteral("The function \"%1\" of the project takes parameters and can't be called").arg(sName));
  }
  return Result;
}

int LoadText(const QString& sText) {
  HOST_STATE& S = State();
  const QString sPath = S.sScriptPath;
  LogDebug(QStringLiteral("Script waiting to close."));
  RequestClose();
  QElapsedTimer Timer;
  Timer.start();
  while (S.CallLevel > 0 && Timer.elapsed() < CLOSE_WAIT_MS) {
    ProcessHostEvents();
    QThread::yieldCurrentThread();
  }
  Close();
  LogDebug(QStringLiteral("Script closed."));
  S.sScriptPath = sPath;
  if (sText.isEmpty()) {
    SetError(QStringLiteral("empty file"));
    LogDebug(QStringLiteral("Script file not parsed. Empty script text"));
    return -1;
  }
  S.sText = S.sFileText = sText;
  S.pCTrans = std::make_shared<CTrans>(sText.toStdString(), CTRANS_CALLBACKS{ErrorSink(S.NumLoads), ProcessHostEvents});
  RegisterConstants(*S.pCTrans);
  RegisterApiFunctions(*S.pCTrans);
  if (S.pCTrans->ParseGlobals() < 0) {
    LogWarning(QStringLiteral("Script file not parsed. could not create globals"));
    S.pCTrans.reset();
    S.sText.clear();
    S.HasScriptError = true;
    return -1;
  }
  S.CloseRequested = false;
  return 0;
}

int Reload() {
  if (!IsFileChanged()) return 0;
  const QString sPath = State().sScriptPath;
  Load(sPath);
  return 1;
}

bool IsFileChanged() {
  HOST_STATE& S = State();
  bool bOk = false;
  const QString sText = S.sScriptPath.isEmpty() ? QString() : ReadTextFile(S.sScriptPath, &bOk);
  return bOk && sText != S.sFileText;
}

bool SaveText(const QString& sPath) {
  HOST_STATE& S = State();
  if (!WriteTextFile(sPath, S.sText)) return false;
  S.sScriptPath = sPath;
  bool bOk = false;
  S.sFileText = ReadTextFile(sPath, &bOk);
  return true;
}

void Close() {
  HOST_STATE& S = State();
  S.pCTrans.reset();
  ++S.NumLoads;
  S.sText.clear();
  S.sFileText.clear();
  S.sScriptPath.clear();
  S.sErrorText.clear();
  S.sErrorStatement.clear();
  S.ErrorExcerpt.clear();
  S.ErrorLineNo = -1;
  S.HasScriptError = false;
}

void RequestClose() {
  HOST_STATE& S = State();
  S.CloseRequested = true;
  if (S.pCTrans) S.pCTrans->RequestClose();
}

void Stop() {
  HOST_STATE& S = State();
  if (S.CallLevel == 0) return;
  S.StopRequested = true;
  if (S.pCTrans) S.pCTrans->Abort(STOPPED);
}

bool IsStopping() {
  return State().CallLevel > 0 && (State().StopRequested || State().CloseRequested);
}

bool HasFunction(int FuncID) {
  const HOST_STATE& S = State();
  return S.pCTrans && !S.HasScriptError && !S.CloseRequested && GetHookInfo(FuncID) &&
         S.pCTrans->HasScriptFunction(GetHookName(FuncID).toStdString());
}

int ExecFunction(int FuncID) {
  HOST_STATE& S = State();
  bool bRun = false;
  const int Refusal = CheckRunnable(FuncID, &bRun);
  if (!bRun) return Refusal;
  const CHookRun Run(FuncID);
  const std::shared_ptr<CTrans> pEngine = S.pCTrans;
  return pEngine->CallFunction(GetHookName(FuncID).toStdString());
}

bool IsLoaded() {
  return State().pCTrans != nullptr;
}
bool HasError() {
  return State().HasScriptError;
}
int CurrentFuncID() {
  return State().CurrentFuncID;
}
int CallLevel() {
  return State().CallLevel;
}
int GetErrorLine() {
  return State().ErrorLineNo;
}
QString GetErrorStatement() {
  return State().sErrorStatement;
}
QStringList GetErrorExcerpt() {
  return State().ErrorExcerpt;
}

QString GetErrorText() {
  const HOST_STATE& S = State();
  QString sText = S.sErrorText.simplified();
  sText.remove(QLatin1Char('.'));
  return S.ErrorLineNo < 0 ? sText : sText + QStringLiteral(" at line ") + QString::number(S.ErrorLineNo);
}

QString GetFilePath() {
  return State().sScriptPath;
}
void SetFilePath(const QString& sPath) {
  State().sScriptPath = sPath;
}
QString GetText() {
  return State().sText;
}

}  // namespace VScript
