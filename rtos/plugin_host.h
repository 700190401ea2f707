#pragma once

#include <map>
#include <memory>

#include <QStringList>

#include "base/types.h"
#include "rtos/plugin_api.h"

class QLibrary;

// The plug-in that knows the target's real-time operating system: one at a time, loaded by the project. Every call into
// it is logged with its result; a function that it does not offer gives the result said here. One instance, main
// thread.
class CPluginHost {
public:
  static CPluginHost& Get();

  // Loads a plug-in in place of the one before. False with the reason in GetLastError, which was logged as a warning;
  // none is loaded then.
  bool Load(const QString& sPath);
  // Unloads it; no-op without one.
  void Unload();
  bool IsLoaded() const { return bLoaded; }
  const QString& GetName() const { return sName; }
  const QString& GetPath() const { return sPath; }
  U32 GetVersion() const { return Version; }
  const QString& GetLastError() const { return sLastError; }
  // "Tasks" for list 0, empty for the others.
  static QString GetListName(U32 ListIndex);
  // Whether the plug-in wants that list window.
  bool SupportsInfo(U32 ListIndex);

  // Tasks that have been seen since the plug-in was loaded.
  QStringList GetTaskNames();
  // Empty for an unknown task.
  QString GetTaskName(U32 TaskId);
  // False, and 0, for a name that is not known.
  bool FindTask(const QString& sTask, U32* pTaskId);
  U32 GetTaskId(const QString& sTask);

  void OnInit();
  I32 OnDebugStart();  // -1 without the function
  void OnDebugEnd();
  I32 OnUpdate(U32 ListIndex);  // -1 without the function
  U32 GetTaskCount();           // 0 without the function
  U32 GetCurrTaskID();          // 0 without the function
  bool HasCurrTask() const { return API.GetCurrTaskID != nullptr; }

  // The main window is being destroyed: no call reaches the plug-in from now on.
  void SetClosing() { bClosing = true; }
  bool IsClosing() const { return bClosing; }

private:
  CPluginHost();
  ~CPluginHost();

  bool Resolve();
  bool Exchange();
  bool Fail(const char* sError);
  void ClearAPI();
  void RefreshTasks();
  template <typename FUNC, typename... ARGS>
  I32 Call(FUNC pFunc, const char* sFunc, I32 Absent, ARGS... Args);

  std::unique_ptr<QLibrary> pLibrary;
  PLUGIN_SET_API pSetAPI = nullptr;
  PLUGIN_GET_API pGetAPI = nullptr;
  PLUGIN_GET_VERSION pGetVersion = nullptr;
  PLUGIN_GET_NAME pGetName = nullptr;
  PLUGIN_API API = {};
  bool bLoaded = false;
  bool bClosing = false;
  U32 Version = 0;
  QString sName;
  QString sPath;
  QString sLastError;
  std::map<QString, U32> Tasks;  // name to ID
};
