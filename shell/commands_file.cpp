// File.*, Util.*, Help.* as far as their windows exist.

#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>

#include "program/database/file_finder.h"
#include "project/file_classes.h"
#include "project/project.h"
#include "shell/actions/action_dispatch.h"
#include "shell/actions/action_errors.h"
#include "shell/actions/action_ids.h"
#include "shell/batch_session.h"
#include "shell/command_args.h"
#include "shell/commands.h"
#include "shell/directories.h"
#include "shell/main_window.h"
#include "shell/program_loader.h"
#include "shell/project_controller.h"
#include "shell/session_controller.h"
#include "ui/message_box.h"
#include "ui/windows/source_window.h"

namespace {

constexpr U64 SAVED = 1;
constexpr U64 NOT_SAVED = 2;

QString ArgOf(U32 ActionID) {
  return GetActionArgs(ActionID).value(0);
}

void OpenFound(COMMAND_CONTEXT& Context) {
  constexpr U32 ID = ACTION_FILE_OPEN;
  if (!CheckActionArgs(ID, 0)) return;
  QString sPath = ArgOf(ID);
  if (sPath.isEmpty()) {
    sPath = CBatchSession::IsActive()
                ? QString()
                : QFileDialog::getOpenFileName(&Context.Window, QStringLiteral("Open File"),
                                               Context.Projects.sDefaultDirOpen, OpenDialogFilter());
    if (sPath.isEmpty()) return SuppressEcho(ID);
    Context.Projects.sDefaultDirOpen = QFileInfo(sPath).absolutePath();
    Context.Loader.SetUserChosen(true);
    SetActionArgs(ID, QStringList{sPath});
  }
  QString sFound = sPath;
  if (!QFileInfo(sFound).isFile()) sFound = CFileFinder::Get()->ResolvePath(sPath);
  if (!QFileInfo(sFound).isFile()) return SetPathError(ID, ActionError::FILE_NOT_FOUND, sPath);
  Context.Projects.OpenFile(QFileInfo(sFound).absoluteFilePath());
}

void Open(COMMAND_CONTEXT& Context) {
  OpenFound(Context);
  Context.Loader.EndOpen();
}

void OpenRecent(COMMAND_CONTEXT& Context) {
  constexpr U32 ID = ACTION_FILE_OPEN_RECENT_PROGRAM;
  bool bNumber = false;
  const int Index = ArgOf(ID).toInt(&bNumber, 0);
  const QStringList& Programs = Context.Projects.RecentPrograms().Paths();
  if (bNumber && Index >= 0 && Index < Programs.size()) PerformAction(ACTION_FILE_OPEN, Programs[Index]);
}

// A file's contents to the target; the program of the session stays.
void Load(COMMAND_CONTEXT& Context) {
  constexpr U32 ID = ACTION_FILE_LOAD;
  if (!CheckActionArgs(ID, 0)) return;
  QString sFile = ArgOf(ID);
  if (sFile.isEmpty()) {
    sFile = CBatchSession::IsActive()
                ? QString()
                : QFileDialog::getOpenFileName(&Context.Window, QStringLiteral("Load File"),
                                               Context.Projects.sDefaultDirOpen, LoadDialogFilter());
    if (sFile.isEmpty()) return SuppressEcho(ID);
    Context.Projects.sDefaultDirOpen = QFileInfo(sFile).absolutePath();
    SetActionArgs(ID, QStringList{sFile});
  }
  if (!CheckConnected(ID)) return;
  const QString sPath = CFileFinder::Get()->ResolvePath(sFile);
  if (!QFileInfo(sPath).isFile())
    return SetActionError(ID, QLatin1String(ActionError::FILE_NOT_FOUND), QuotedArg(sFile));
  U32 Addr = 0;
  const bool bAddr = GetActionArgs(ID).size() > 1;
  if (bAddr && !GetAddressArg(ID, 1, &Addr)) return;
  if (!bAddr && IsBinFile(sPath)) return SetActionError(ID, QLatin1String(ActionError::INVALID_PARAMETER));
  Context.Session.DownloadFile(sPath, DOWNLOAD_FILE, bAddr ? static_cast<I64>(Addr) : -1);
}

// Without argument the active document.
void Close(COMMAND_CONTEXT& Context) {
  constexpr U32 ID = ACTION_FILE_CLOSE;
  if (!CheckActionArgs(ID, 0)) return;
  CSourceWindow& Source = Context.Window.Source();
  const QString sPath = ArgOf(ID).isEmpty() ? Source.ActiveFile() : ArgOf(ID);
  if (sPath.isEmpty()) return SuppressEcho(ID);
  SetActionArgs(ID, QStringList{sPath});
  if (!Source.IsOpen(sPath)) return SetActionError(ID, QLatin1String(ActionError::FILE_IS_NOT_OPEN));
  if (!Source.NotifyUserClose(sPath)) return SuppressEcho(ID);
  Source.Close(sPath);
}

void CloseAll(COMMAND_CONTEXT& Context) {
  constexpr U32 ID = ACTION_FILE_CLOSE_ALL;
  if (!CheckActionArgs(ID)) return;
  CSourceWindow& Source = Context.Window.Source();
  if (!Source.NotifyUserClose(Source.OpenFiles())) return SuppressEcho(ID);
  Source.CloseAll();
}

void CloseAllButThis(COMMAND_CONTEXT& Context) {
  constexpr U32 ID = ACTION_FILE_CLOSE_ALL_BUT_THIS;
  if (!CheckActionArgs(ID)) return;
  CSourceWindow& Source = Context.Window.Source();
  // While the question stands, a halt may bring another document to the front.
  const QStringList Others = Source.OtherFiles();
  if (!Source.NotifyUserClose(Others)) return SuppressEcho(ID);
  Source.CloseFiles(Others);
}

// Without argument the active document. What goes wrong with the file, the console says by itself.
void Save(COMMAND_CONTEXT& Context) {
  constexpr U32 ID = ACTION_FILE_SAVE;
  if (!CheckActionArgs(ID, 0)) return;
  CSourceWindow& Source = Context.Window.Source();
  const QString sPath = ArgOf(ID).isEmpty() ? Source.ActiveFile() : ArgOf(ID);
  SetActionArgs(ID, QStringList{sPath});
  if (!Source.IsOpen(sPath)) return SetActionError(ID, QLatin1String(ActionError::FILE_IS_NOT_OPEN));
  SetActionResult(ID, Source.Save(sPath) ? SAVED : NOT_SAVED);
}

void NewProject(COMMAND_CONTEXT& Context) {
  Context.Projects.NewProject();
}

void SaveProjectAs(COMMAND_CONTEXT& Context) {
  constexpr U32 ID = ACTION_FILE_SAVE_PROJ_AS;
  SetActionResult(ID, NOT_SAVED);
  QString sPath = ArgOf(ID);
  if (sPath.isEmpty()) {
    const QString sStart = CProject::Get().GetFileName().isEmpty() ? QDir::homePath() : CProject::Get().GetFileName();
    sPath = CBatchSession::IsActive()
                ? QString()
                : QFileDialog::getSaveFileName(&Context.Window, QStringLiteral("Save Project as..."), sStart,
                                               ProjectDialogFilter());
    if (sPath.isEmpty()) return SuppressEcho(ID);
  }
  if (QFileInfo(sPath).suffix().isEmpty()) sPath += QStringLiteral(".vdebug");
  bool bUsable = IsProjectFile(sPath);
  if (bUsable && !QFileInfo(sPath).isFile()) {
    QFile Probe(sPath);
    bUsable = Probe.open(QIODevice::WriteOnly);
    if (bUsable) Probe.remove();
  }
  if (!bUsable) return SetPathError(ID, ActionError::INVALID_PROJECT_FILENAME, sPath);
  Context.Projects.sDefaultDirSave = QFileInfo(sPath).absolutePath();
  SetActionArgs(ID, QStringList{sPath});
  if (Context.Projects.SaveProject(QFileInfo(sPath).absoluteFilePath())) SetActionResult(ID, SAVED);
}

void SaveAll(COMMAND_CONTEXT& Context) {
  const QString sPath = CProject::Get().GetFileName();
  if (QFileInfo(sPath).isFile()) {
    Context.Projects.SaveProject(sPath);
  } else {
    ClearActionArgs(ACTION_FILE_SAVE_PROJ_AS);
    PerformAction(ACTION_FILE_SAVE_PROJ_AS);
  }
  Context.Projects.SaveDocuments();
}

void Exit(COMMAND_CONTEXT& Context) {
  QMetaObject::invokeMethod(&Context.Window, &QWidget::close, Qt::QueuedConnection);
}

constexpr COMMAND_HANDLER HANDLERS[] = {
    {ACTION_FILE_OPEN, Open},
    {ACTION_FILE_OPEN_RECENT_PROGRAM, OpenRecent},
    {ACTION_FILE_LOAD, Load},
    {ACTION_FILE_CLOSE, Close},
    {ACTION_FILE_CLOSE_ALL, CloseAll},
    {ACTION_FILE_CLOSE_ALL_BUT_THIS, CloseAllButThis},
    {ACTION_FILE_NEW_PROJECT, NewProject},
    {ACTION_FILE_SAVE, Save},
    {ACTION_FILE_SAVE_PROJ_AS, SaveProjectAs},
    {ACTION_FILE_SAVE_ALL, SaveAll},
    {ACTION_FILE_EXIT, Exit},
};

}  // namespace

void RegisterFileCommands(COMMAND_CONTEXT& Context) {
  RegisterCommands(Context, HANDLERS);
}
