#include "rtos/plugin_host.h"

#include <array>

#include <QLibrary>

#include "base/msg_flags.h"
#include "rtos/plugin_services.h"
#include "shell/log/log.h"

namespace {

constexpr size_t MAX_NAME_BYTES = 500;

void LogInfo(const QString& sText) {
  LogMsg(sText, MSG_INFO | MSG_TO_ALL);
}

template <typename FUNC>
FUNC Find(QLibrary& Library, const char* sExport) {
  return reinterpret_cast<FUNC>(Library.resolve(sExport));
}

}  // namespace

CPluginHost& CPluginHost::Get() {
  static CPluginHost Host;
  return Host;
}

CPluginHost::CPluginHost() {
  ClearAPI();
}

CPluginHost::~CPluginHost() = default;

bool CPluginHost::Load(const QString& sFile) {
  LogInfo(QStringLiteral("Unloading previous plugin"));
  Unload();
  LogInfo(QStringLiteral("Loading plugin from ") + sFile);
  pLibrary = std::make_unique<QLibrary>(sFile);
  if (!pLibrary->load()) return Fail("Plugin libary was not found or could not be loaded");
  if (!Resolve()) return Fail("Plugin does not provide all required functions");
  sPath = sFile;
  return Exchange();
}

bool CPluginHost::Resolve() {
  pSetAPI = Find<PLUGIN_SET_API>(*pLibrary, "PLUGIN_SetAPI");
  pGetAPI = Find<PLUGIN_GET_API>(*pLibrary, "PLUGIN_GetAPI");
  pGetVersion = Find<PLUGIN_GET_VERSION>(*pLibrary, "PLUGIN_GetVersion");
  pGetName = Find<PLUGIN_GET_NAME>(*pLibrary, "PLUGIN_GetName");
  return pSetAPI && pGetAPI && pGetVersion && pGetName;
}

bool CPluginHost::Exchange() {
  std::array<char, MAX_NAME_BYTES + 1> acName = {};
  if (pGetName(acName.data(), MAX_NAME_BYTES) != 0) return Fail("Plugin does not provide a valid name");
  sName = QString::fromUtf8(acName.data());
  if (pGetVersion(&Version) != 0) Version = 0;
  pSetAPI(&PluginHostAPI());
  ClearAPI();
  if (pGetAPI(&API, PLUGIN_NUM_FUNCS) < 0) return Fail("Plugin does not provide required API structure");
  Tasks.clear();
  bLoaded = true;
  return true;
}

bool CPluginHost::Fail(const char* sError) {
  sLastError = QLatin1String(sError);
  LogMsg(sLastError, MSG_WARNING | MSG_TO_ALL);
  ClearAPI();
  sName.clear();
  pSetAPI = nullptr;
  pGetAPI = nullptr;
  pGetVersion = nullptr;
  pGetName = nullptr;
  return false;
}

void CPluginHost::Unload() {
  if (sPath.isEmpty()) return;
  ClearAPI();
  Tasks.clear();
  bLoaded = false;
  sName.clear();
  sPath.clear();
  Version = 0;
  if (pLibrary) pLibrary->unload();
  pLibrary.reset();
  LogInfo(QStringLiteral("Plugin unloaded."));
}

void CPluginHost::ClearAPI() {
  API = {};
  API.NumFuncs = PLUGIN_NUM_FUNCS;
}

// ---- Calls

template <typename FUNC, typename... ARGS>
I32 CPluginHost::Call(FUNC pFunc, const char* sFunc, I32 Absent, ARGS... Args) {
  if (pFunc == nullptr || bClosing) return Absent;
  const I32 Result = pFunc(Args...);
  LogInfo(QLatin1String(sFunc) + QStringLiteral(" returns %1").arg(Result));
  return Result;
}

QString CPluginHost::GetListName(U32 ListIndex) {
  return ListIndex == 0 ? QStringLiteral("Tasks") : QString();
}

bool CPluginHost::SupportsInfo(U32 ListIndex) {
  return bLoaded && Call(API.SupportsInfo, "SupportsInfo", 1, ListIndex) != 0;
}

void CPluginHost::OnInit() {
  Call(API.OnInit, "OnInit", 0);
}

I32 CPluginHost::OnDebugStart() {
  return Call(API.OnDebugStart, "OnDebugStart", -1);
}

void CPluginHost::OnDebugEnd() {
  Call(API.OnDebugEnd, "OnDebugEnd", 0);
}

I32 CPluginHost::OnUpdate(U32 ListIndex) {
  return Call(API.OnUpdate, "OnUpdate", -1, ListIndex);
}

U32 CPluginHost::GetTaskCount() {
  return static_cast<U32>(Call(API.GetTaskCount, "GetTaskCount", 0));
}

U32 CPluginHost::GetCurrTaskID() {
  return static_cast<U32>(Call(API.GetCurrTaskID, "GetCurrTaskID", 0));
}

// ---- Tasks

// Tasks that have ended stay known: a breakpoint may wait for one of that name.
void CPluginHost::RefreshTasks() {
  constexpr I32 MAX_TASKS = 100'000;  // a plug-in that counts more has read garbage
  const I32 Count = static_cast<I32>(GetTaskCount());
  if (Count < 1 || Count > MAX_TASKS || static_cast<size_t>(Count) <= Tasks.size()) return;
  for (U32 Index = 0; Index < static_cast<U32>(Count); ++Index) {
    // Room for a terminating zero behind what the plug-in may fill.
    struct {
      PLUGIN_TASK_INFO Info;
      char End;
    } Buffer = {};
    Call(API.GetCurrTaskInfo, "GetCurrTaskInfo", 0, Index, &Buffer.Info);
    Tasks[QString::fromUtf8(Buffer.Info.sName,
                            static_cast<qsizetype>(qstrnlen(Buffer.Info.sName, sizeof(Buffer.Info.sName))))] =
        Buffer.Info.TaskId;
  }
}

QStringList CPluginHost::GetTaskNames() {
  RefreshTasks();
  QStringList Names;
  for (const auto& [sTask, TaskId] : Tasks) Names << sTask;
  return Names;
}

QString CPluginHost::GetTaskName(U32 TaskId) {
  RefreshTasks();
  for (const auto& [sTask, Id] : Tasks) {
    if (Id == TaskId) return sTask;
  }
  return {};
}

bool CPluginHost::FindTask(const QString& sTask, U32* pTaskId) {
  RefreshTasks();
  const auto It = Tasks.find(sTask);
  *pTaskId = It == Tasks.end() ? 0 : It->second;
  return It != Tasks.end();
}

U32 CPluginHost::GetTaskId(const QString& sTask) {
  U32 TaskId = 0;
  FindTask(sTask, &TaskId);
  return TaskId;
}
