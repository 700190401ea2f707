#include "ui/windows/source_saver.h"

#include <QApplication>

#include "base/text.h"
#include "shell/log/console_print.h"
#include "shell/settings/named_constants.h"
#include "ui/input_dialog.h"
#include "ui/message_box.h"
#include "ui/windows/source_documents.h"
#include "ui/windows/source_editor.h"

namespace {

constexpr EOL_FORMAT EOL_CHOICES[] = {EOL_WINDOWS, EOL_UNIX, EOL_MAC};

QString NamesText(const QStringList& Names) {
  return QStringLiteral("The following documents are modified:\n\n") + Names.join(QLatin1Char('\n'));
}

}  // namespace

bool CSourceSaver::HasUnsavedChanges(int Index) const {
  const SOURCE_DOCUMENT* const pDocument = m_Documents.At(Index);
  return pDocument && m_Editor.HasUnsavedChanges(pDocument->sFilePath);
}

QStringList CSourceSaver::NamesWithUnsavedChanges() const {
  QStringList Names;
  for (int i = 0; i < m_Documents.Count(); ++i) {
    if (HasUnsavedChanges(i)) Names << m_Documents.At(i)->FileName();
  }
  return Names;
}

QString CSourceSaver::TextOf(const SOURCE_DOCUMENT& Document) const {
  return m_Editor.EditedText(Document.sFilePath).value_or(Document.sText);
}

// Nothing where the dialog is cancelled: the text stays as the editor has it.
std::optional<EOL_FORMAT> CSourceSaver::ChooseLineEnds(const QString& sFileName) const {
  CInputDialog Dialog(QApplication::activeWindow(), QStringLiteral("Save ") + MenuText(sFileName),
                      QStringLiteral("file-save.png"),
                      QStringLiteral("The document to be saved contains inconsistent line endings.\n"
                                     "Please specify which format is to be used before saving."));
  QStringList Choices;
  while (const NAMED_CONST* const pConst =
             FindNamedConstByValue(QStringLiteral("EOL_FORMAT_"), static_cast<U32>(Choices.size()))) {
    Choices << QLatin1String(pConst->sDisplayText);
  }
  Dialog.SetChoices(Choices, EOL_UNIX);
  if (Dialog.exec() != QDialog::Accepted) return {};
  const int Choice = Dialog.Index();
  if (Choice < 0 || Choice >= static_cast<int>(std::size(EOL_CHOICES))) return {};
  return EOL_CHOICES[Choice];
}

bool CSourceSaver::Save(int Index) {
  SOURCE_DOCUMENT* pDocument = m_Documents.At(Index);
  if (pDocument == nullptr || !pDocument->bExists || !HasUnsavedChanges(Index)) return true;
  if (pDocument->LineEnding == EOL_MIXED) {
    const QString sPath = pDocument->sFilePath;
    const std::optional<EOL_FORMAT> Chosen = ChooseLineEnds(pDocument->FileName());
    pDocument = m_Documents.At(m_Documents.IndexOf(sPath));
    if (pDocument == nullptr) return true;
    if (Chosen) pDocument->LineEnding = *Chosen;
  }
  QString sReason;
  if (!WriteSourceDocument(*pDocument, TextOf(*pDocument), &sReason)) {
    PrintConsoleError(QStringLiteral("\"%1\" could not be saved: %2").arg(pDocument->sResolvedPath, sReason));
    return false;
  }
  m_Documents.SetModified(*pDocument);
  m_Editor.SetSaved(pDocument->sFilePath);
  return true;
}

bool CSourceSaver::SaveAll() {
  bool bAll = true;
  for (const QString& sPath : m_Documents.Paths()) bAll = Save(m_Documents.IndexOf(sPath)) && bAll;
  return bAll;
}

bool CSourceSaver::ConfirmClose(const QStringList& Paths) {
  QStringList Unsaved, Names;
  for (const QString& sPath : Paths) {
    const int Index = m_Documents.IndexOf(sPath);
    if (!HasUnsavedChanges(Index)) continue;
    Unsaved << sPath;
    Names << m_Documents.At(Index)->FileName();
  }
  if (Unsaved.isEmpty()) return true;
  const QString sText = Names.size() == 1 ? Names.first() + QStringLiteral(" is modified. Save changes?")
                                          : NamesText(Names) + QStringLiteral("\n\nSave changes?");
  const int Answer = CMessageBox::Show(QStringLiteral("Save Document Changes?"), sText, CMessageBox::NO_CHECK_BOX,
                                       QStringLiteral("document--pencil.png"),
                                       QDialogButtonBox::Yes | QDialogButtonBox::No | QDialogButtonBox::Cancel);
  if (Answer == CMessageBox::OTHER) return false;
  bool bSaved = true;
  for (const QString& sPath : Unsaved) {
    if (Answer == CMessageBox::ACCEPTED) bSaved = Save(m_Documents.IndexOf(sPath)) && bSaved;
  }
  return bSaved;
}

QStringList CSourceSaver::ConfirmReload() {
  QStringList Changed, Names;
  bool bUnsaved = false;
  for (int i = 0; i < m_Documents.Count(); ++i) {
    if (!HasChangedOutside(*m_Documents.At(i))) continue;
    Changed << m_Documents.At(i)->sFilePath;
    Names << m_Documents.At(i)->FileName();
    bUnsaved = bUnsaved || HasUnsavedChanges(i);
    m_Documents.SetModified(*m_Documents.At(i));
  }
  if (Changed.isEmpty()) return {};
  QString sText = Names.size() == 1
                      ? QStringLiteral("%1 has been modified by another application.\nDo you want to reload it?")
                      : QStringLiteral(
                            "The following documents have been modified by another application:\n\n%1\n\n"
                            "Do you want to reload them?");
  sText = sText.arg(Names.join(QLatin1Char('\n')));
  if (bUnsaved) sText += QStringLiteral("\n\nUnsaved changes will be lost.");
  const int Answer = CMessageBox::Show(QStringLiteral("Reload Source File"), sText, CMessageBox::NO_CHECK_BOX,
                                       QString(), QDialogButtonBox::Yes | QDialogButtonBox::No);
  if (Answer != CMessageBox::ACCEPTED) return {};
  for (const QString& sPath : Changed) m_Editor.DropEdits(sPath);
  return Changed;
}
