#include "shell/plugin_binding.h"

#include <QFileInfo>

#include "device/breakpoints/breakpoint_manager.h"
#include "program/database/elfapi.h"
#include "program/database/file_finder.h"
#include "rtos/plugin_host.h"
#include "shell/actions/action_dispatch.h"
#include "shell/actions/action_ids.h"
#include "shell/commands.h"
#include "shell/log/log.h"

namespace {

// A file of that name, or the name with what libraries end in.
QString FindPlugin(const QString& sFile) {
  for (const char* sSuffix : {"", ".dll", ".so", ".dylib"}) {
    const QString sPath = CFileFinder::Get()->ResolvePath(sFile + QLatin1String(sSuffix));
    if (QFileInfo(sPath).isFile()) return sPath;
  }
  return sFile;
}

// Without a plug-in that knows the task, a filter does not keep the target from halting.
void UpdateTaskFilters() {
  CBreakpointManager& Manager = CBreakpointManager::Get();
  BREAKPOINT_EVALUATOR Evaluator = Manager.Evaluator();
  Evaluator.CurrentTask = nullptr;
  Evaluator.FindTask = nullptr;
  if (CPluginHost::Get().HasCurrTask()) {
    Evaluator.CurrentTask = [](U64* pTaskID) {
      *pTaskID = CPluginHost::Get().GetCurrTaskID();
      return true;
    };
    Evaluator.FindTask = [](const QString& sName, U64* pTaskID) {
      U32 TaskID = 0;
      const bool bFound = CPluginHost::Get().FindTask(sName, &TaskID);
      *pTaskID = TaskID;
      return bFound;
    };
  }
  Manager.SetEvaluator(Evaluator);
}

void SetOSPlugin(COMMAND_CONTEXT&) {
  constexpr U32 ID = ACTION_PROJ_SET_OS_PLUGIN;
  if (!CheckActionArgs(ID)) return;
  CPluginHost& Host = CPluginHost::Get();
  const bool bLoaded = Host.Load(FindPlugin(GetActionArgs(ID).value(0)));
  UpdateTaskFilters();
  if (!bLoaded) return SetActionError(ID, Host.GetLastError());
  LogMsg(QStringLiteral("Plugin Loaded: ") + Host.GetPath(), MSG_INFO | MSG_TO_ALL);
  Host.OnInit();
}

constexpr COMMAND_HANDLER HANDLERS[] = {{ACTION_PROJ_SET_OS_PLUGIN, SetOSPlugin}};

struct KNOWN_OS {
  const char* sSymbol;
  const char* sName;
  const char* sPlugin;
};
constexpr KNOWN_OS KNOWN_SYSTEMS[] = {{"OS_Global", "lumOS", "lumosPlugin"},
                                      {"pxCurrentTCB", "FreeRTOS", "FreeRTOSPlugin"}};

}  // namespace

void UnloadPlugin() {
  CPluginHost::Get().Unload();
  UpdateTaskFilters();
}

void HintAtPlugins() {
  if (CPluginHost::Get().IsLoaded()) return;
  for (const KNOWN_OS& System : KNOWN_SYSTEMS) {
    if (ELFAPI_FindSymbol(QLatin1String(System.sSymbol), true, false, false, true) == 0) continue;
    LogMsg(QStringLiteral("The target application seems to be using %1, but %1-awareness is not enabled.\n"
                          "To enable %1-awareness in Vexor, add command 'Project.SetOSPlugin(\"%2\")' to "
                          "the project file.")
               .arg(QLatin1String(System.sName), QLatin1String(System.sPlugin)),
           MSG_WARNING | MSG_TO_ALL);
  }
}

void RegisterPluginCommands(COMMAND_CONTEXT& Context) {
  RegisterCommands(Context, HANDLERS);
}
