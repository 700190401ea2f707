#include "shell/table_windows.h"

#include "base/stable_hash.h"
#include "program/windows/functions_window.h"
#include "program/windows/source_files_window.h"
#include "shell/main_window.h"
#include "shell/program_loader.h"
#include "shell/settings/settings_cache.h"
#include "ui/table/model_view_window.h"

namespace {

const SETTING_GROUP HEADER_GROUP = {QStringLiteral("AppData"), QStringLiteral("Perspectives"), QStringLiteral("Debug"),
                                    QStringLiteral("TableHeaderState")};

// Of one program. A window keeps one for each.
int StateIdOf(const QString& sProgramPath) {
  return static_cast<int>(StableHash32(sProgramPath.toLower()));
}

// Those that show what the program holds.
QList<CModelViewWindow*> ProgramWindows(const CMainWindow& Window) {
  QList<CModelViewWindow*> Windows;
  for (CWindow* const pWindow : Window.GetWindowList()) {
    if (qobject_cast<CFunctionsWindow*>(pWindow) || qobject_cast<CSourceFilesWindow*>(pWindow)) {
      Windows << static_cast<CModelViewWindow*>(pWindow);
    }
  }
  return Windows;
}

}  // namespace

void BindTableWindows(CMainWindow& Window, CProgramLoader& Loader) {
  const QList<CModelViewWindow*> Windows = ProgramWindows(Window);
  QObject::connect(&Loader, &CProgramLoader::AboutToChange, &Window, [Windows, &Loader] {
    for (CModelViewWindow* const pWindow : Windows) {
      pWindow->BackupState(StateIdOf(Loader.GetProgramPath()));
      pWindow->Clear();
    }
  });
  QObject::connect(&Loader, &CProgramLoader::DataFileOpened, &Window, [Windows](const QString& sPath, bool) {
    for (CModelViewWindow* const pWindow : Windows) {
      pWindow->Reload();
      pWindow->RestoreState(StateIdOf(sPath), RESTORE_NO_HEADER);
    }
  });
}

void LoadTableHeaders(const QList<CWindow*>& Windows) {
  for (CWindow* const pWindow : Windows) {
    auto* const pTable = qobject_cast<CModelViewWindow*>(pWindow);
    const QByteArray State = pTable ? GetSetting(HEADER_GROUP, pTable->GetName()).toByteArray() : QByteArray();
    const QList<TABLE_HEADER_RECORD> Records = ParseUserFile(QString::fromUtf8(State)).TableHeaders;
    if (!Records.isEmpty()) pTable->SetHeaderRecord(Records.constFirst());
  }
}

void StoreTableHeaders(const QList<CWindow*>& Windows) {
  for (CWindow* const pWindow : Windows) {
    const auto* const pTable = qobject_cast<CModelViewWindow*>(pWindow);
    if (pTable == nullptr) continue;
    USER_FILE File;
    File.TableHeaders << pTable->GetHeaderRecord();
    SetSetting(HEADER_GROUP, pTable->GetName(), MakeUserFileText(File).toUtf8());
  }
}
