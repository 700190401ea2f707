// Edit.VNodeSettings and Edit.TraceSettings: the settings of probe, target and trace in dialogs.

#include <QFileInfo>

#include "device/device.h"
#include "device/device_context.h"
#include "project/project.h"
#include "shell/actions/action_dispatch.h"
#include "shell/actions/action_ids.h"
#include "shell/actions/command_console.h"
#include "shell/commands.h"
#include "shell/dialogs/device_records.h"
#include "shell/dialogs/trace_settings_dialog.h"
#include "shell/dialogs/vnode_settings_dialog.h"
#include "shell/log/log.h"
#include "shell/main_window.h"
#include "shell/vnode_commands.h"
#include "ui/message_box.h"

namespace {

constexpr const char* TIMING_COMMAND = "Project.SetTraceTiming";

// The saved project in which settings can be stored; empty if there is none.
QString SavedProject() {
  const QString sPath = CProject::Get().GetFileName();
  return QFileInfo(sPath).isFile() ? sPath : QString();
}

bool IsStoringWanted(const QString& sTitle) {
  return !SavedProject().isEmpty() &&
         CMessageBox::Show(sTitle, QStringLiteral("Do you want to save the configuration to the project?"),
                           CMessageBox::NO_CHECK_BOX, QStringLiteral("document--pencil.png"),
                           QDialogButtonBox::Yes | QDialogButtonBox::No) == CMessageBox::ACCEPTED;
}

void EditVNodeSettings(COMMAND_CONTEXT& Context) {
  if (!CheckActionArgs(ACTION_EDIT_VNODE_SETTINGS)) return;
  CDeviceContext& Device = CDevice::Get().Context();
  CVNodeSettingsDialog Dialog(&Context.Window, Device.Config.ToXML(), ReadDeviceRecords(Device.Api));
  if (Dialog.exec() != QDialog::Accepted || !Dialog.IsModified()) return;
  if (IsStoringWanted(QStringLiteral("V-Node Settings Modified")) &&
      !CProject::Get().UpdateVNodeCommands(SavedProject(), VNodeCommands(Dialog.Config()))) {
    LogMsg(QStringLiteral("Could not write V-Node settings to the project file. See the log file for details."),
           MSG_ERROR | MSG_TO_ALL);
  }
  CDevice::Get().ScheduleConfigure(Dialog.XML().constData());
}

void EditTraceSettings(COMMAND_CONTEXT& Context) {
  if (!CheckActionArgs(ACTION_EDIT_TRACE_SETTINGS)) return;
  const TRACE_SETTINGS Before = GetTraceSettings(CProject::Get().HasCommand(QLatin1String(TIMING_COMMAND)));
  CTraceSettingsDialog Dialog(&Context.Window, Before);
  if (Dialog.exec() != QDialog::Accepted || !Dialog.IsModified()) return;
  const TRACE_SETTINGS After = Dialog.Settings();
  if (IsStoringWanted(QStringLiteral("Trace Settings Modified")) &&
      !CProject::Get().UpdateTraceCommands(SavedProject(), TraceCommands(After))) {
    LogMsg(QStringLiteral("Could not write trace settings to the project file. See the log file for details."),
           MSG_ERROR | MSG_TO_ALL);
  }
  for (const QString& sCommand : TraceChanges(Before, After)) ExecuteCommand(sCommand);
}

constexpr COMMAND_HANDLER HANDLERS[] = {
    {ACTION_EDIT_VNODE_SETTINGS, EditVNodeSettings},
    {ACTION_EDIT_TRACE_SETTINGS, EditTraceSettings},
};

}  // namespace

void RegisterSettingsCommands(COMMAND_CONTEXT& Context) {
  RegisterCommands(Context, HANDLERS);
}
