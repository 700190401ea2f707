// Help.*, the command list excepted.

#include "device/device.h"
#include "device/device_context.h"
#include "shell/actions/action_ids.h"
#include "shell/actions/action_info.h"
#include "shell/batch_session.h"
#include "shell/commands.h"
#include "shell/dialogs/about_dialog.h"
#include "shell/dialogs/manual_window.h"
#include "shell/directories.h"
#include "shell/main_window.h"
#include "shell/windows/console_window.h"

namespace {

const QLatin1String COMMANDS_PAGE("commands.md");

void HelpAbout(COMMAND_CONTEXT& Context) {
  CAboutDialog::FACTS Facts;
  Facts.sTitle = ProductTitle(true, true);
  Facts.sBuilt = BuildDate();
  const auto Probe = CDevice::Get().Context().Facts.Get();
  if (!Probe.sLibraryPath.isEmpty()) {
    Facts.sLibrary = LibraryVersionText(Probe.LibraryVersion) + QLatin1Char('\n') + Probe.sLibraryPath;
  }
  CAboutDialog(&Context.Window, Facts).exec();
}

// With a command in the console's input the guide opens at that command.
void HelpManual(COMMAND_CONTEXT& Context) {
  static QPointer<CManualWindow> pManual;
  if (CBatchSession::IsActive()) return;
  if (!pManual) pManual = new CManualWindow(&Context.Window, DocDir() + QStringLiteral("/manual"));
  const U32 ID = Context.Window.Console().CommandInInput();
  pManual->show();
  if (ID < NUM_ACTIONS) pManual->ShowTopic(COMMANDS_PAGE, GetCommandName(ID));
  pManual->raise();
  pManual->activateWindow();
}

constexpr COMMAND_HANDLER HANDLERS[] = {
    {ACTION_HELP_ABOUT, HelpAbout},
    {ACTION_HELP_MANUAL, HelpManual},
};

}  // namespace

void RegisterHelpCommands(COMMAND_CONTEXT& Context) {
  RegisterCommands(Context, HANDLERS);
}
