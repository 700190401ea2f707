// The open source files, as projects, programs and sessions come and go.

#include "base/stable_hash.h"
#include "program/database/elfapi.h"
#include "shell/directories.h"
#include "shell/main_window.h"
#include "shell/program_loader.h"
#include "shell/settings/sys_vars.h"
#include "shell/settings/var_ids.h"
#include "ui/message_box.h"
#include "ui/windows/source_window.h"

namespace {

int StateIdOf(const QString& sProgramPath) {
  return static_cast<int>(StableHash32(sProgramPath.toLower()));
}

}  // namespace

void CMainWindow::OnDataFileOpened(const QString& sPath, bool bSame) {
  for (CWindow* const pWindow : GetWindowList()) {
    pWindow->SetSrcLanguage(ELFAPI_GetSrcLang());
    pWindow->OnDataFileOpened(sPath);
  }
  if (!sPath.isEmpty()) FocusSourceWindow();
  m_pSource->ResetFileSaveStates();
  if (bSame) {
    m_pSource->ReloadDocuments();
  } else {
    ShowDocumentsOf(sPath);
  }
}

// Those of the former program go, but for changes that the user wants to keep.
void CMainWindow::ShowDocumentsOf(const QString& sProgram) {
  m_pSource->BackupState(StateIdOf(m_pLoader->GetProgramPath()));
  if (m_pSource->NotifyUserClose(m_pSource->OpenFiles())) m_pSource->CloseAll();
  m_pSource->ClearLineExpansionHistory();
  m_pSource->RestoreState(StateIdOf(sProgram), 0);
  const ELF_SYM_HANDLE Main = ELFAPI_GetEntryFunc();
  const CSrcLoc Loc = Main ? ELFAPI_GetFirstSrcLoc(ELFAPI_GetAddr(Main)) : CSrcLoc();
  if (Loc.IsValid()) m_pSource->ShowLocation(Loc);
}

bool CMainWindow::ConfirmModifiedSources() {
  const bool bModified = m_pSource->HasModifiedDocument();
  m_pSource->SetShowDocOutOfDateNotifications(!bModified);
  if (!bModified || GetVarValue(VAR_ALLOW_DEBUG_MODIFIED_SRC) != 0) return true;
  const int Answer = CMessageBox::Show(
      ProductTitle(false, false),
      QStringLiteral("Source files have been modified and might not match the files used to build the application.\n"
                     "Start debugging?"),
      CMessageBox::FOR_GOOD, QStringLiteral("document--exclamation.png"), QDialogButtonBox::Yes | QDialogButtonBox::No);
  return Answer == CMessageBox::ACCEPTED;
}

void CMainWindow::OpenSourceFile(const QString& sPath) {
  m_pSource->Open(sPath);
}

bool CMainWindow::CloseDocuments() {
  if (!m_pSource->NotifyUserClose(m_pSource->OpenFiles())) return false;
  m_pSource->CloseAll();
  return true;
}

bool CMainWindow::SaveDocuments() {
  return m_pSource->SaveAll();
}
