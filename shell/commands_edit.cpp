// Edit.*: the dialogs for preferences and system variables, fonts, and the search in the active document.

#include <QApplication>

#include "shell/actions/action_dispatch.h"
#include "shell/actions/action_errors.h"
#include "shell/actions/action_ids.h"
#include "shell/command_args.h"
#include "shell/commands.h"
#include "shell/dialogs/preferences_dialog.h"
#include "shell/dialogs/sys_vars_editor.h"
#include "shell/log/console_print.h"
#include "shell/look/look.h"
#include "shell/main_window.h"
#include "shell/settings/fonts.h"
#include "ui/dialog.h"
#include "ui/windows/source_window.h"

namespace {

void Fail(U32 ActionID, const char* sError, const QString& sDetail) {
  SetActionError(ActionID, QLatin1String(sError), QuotedArg(sDetail));
}

void EditPreferences(COMMAND_CONTEXT& Context) {
  if (CheckActionArgs(ACTION_EDIT_PREFERENCES)) CPreferencesDialog::Run(&Context.Window);
}

void EditSysVars(COMMAND_CONTEXT& Context) {
  if (!CheckActionArgs(ACTION_EDIT_SYS_VARS)) return;
  CSysVarsEditor Editor(&Context.Window);
  Editor.exec();
}

void EditFont(COMMAND_CONTEXT& Context) {
  constexpr U32 ID = ACTION_EDIT_FONT;
  if (!CheckActionArgs(ID)) return;
  const QStringList Args = GetActionArgs(ID);
  const int FontID = FindFont(Args.value(0));
  if (FontID < 0) return Fail(ID, ActionError::UNKNOWN_FONT, Args.value(0));
  bool bOk = false;
  const QFont Font = TextToFont(Args.value(1), &bOk);
  if (!bOk) return Fail(ID, ActionError::INVALID_PARAMETER, Args.value(1));
  SetFont(static_cast<U32>(FontID), Font, false);
  SetActionArgs(ID, QStringList{QLatin1String(GetFontInfo(static_cast<U32>(FontID))->sName),
                                FontToText(static_cast<U32>(FontID))});
  Context.Window.ApplyFonts();
  for (QWidget* const pWidget : QApplication::topLevelWidgets()) {
    if (auto* const pDialog = qobject_cast<CDialog*>(pWidget)) pDialog->ApplyFont();
  }
  SpreadApplicationFont();
}

void EditFind(COMMAND_CONTEXT& Context) {
  constexpr U32 ID = ACTION_EDIT_FIND;
  if (!CheckActionArgs(ID)) return;
  const QString sText = GetActionArgs(ID).value(0);
  if (Context.Window.Source().NumLines() == 0) return Fail(ID, ActionError::FILE_IS_NOT_OPEN, QString());
  if (!Context.Window.Source().Find(sText)) PrintConsole(QStringLiteral("\"%1\" was not found").arg(sText));
}

constexpr COMMAND_HANDLER EDIT_HANDLERS[] = {
    {ACTION_EDIT_PREFERENCES, EditPreferences},
    {ACTION_EDIT_SYS_VARS, EditSysVars},
    {ACTION_EDIT_FONT, EditFont},
    {ACTION_EDIT_FIND, EditFind},
};

}  // namespace

void RegisterEditCommands(COMMAND_CONTEXT& Context) {
  RegisterCommands(Context, EDIT_HANDLERS);
  RegisterSettingsCommands(Context);
}
