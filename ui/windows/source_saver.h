#pragma once

#include <functional>
#include <optional>

#include <QStringList>

#include "ui/windows/source_document.h"

class CSourceDocuments;
class CSourceEditor;

// What becomes of the user's changes to sources: saving, the questions before they are lost, and files that another
// program has changed.
class CSourceSaver {
public:
  CSourceSaver(CSourceDocuments& Documents, CSourceEditor& Editor) : m_Documents(Documents), m_Editor(Editor) {}

  bool HasUnsavedChanges(int Index) const;
  QStringList NamesWithUnsavedChanges() const;
  // Writes a document with its line ends; asks which to use where they are mixed. False when it can't be written: it
  // stays modified, and the console says why. One without changes is not written.
  bool Save(int Index);
  bool SaveAll();
  // While a question stands, the target may halt and open a document: all that goes on behind it goes by paths.
  //
  // Asks for each document that is to be closed and has unsaved changes, in one question, whether to save it. False
  // when the user goes back, or when one that was to be saved could not be.
  bool ConfirmClose(const QStringList& Paths);
  // Asks whether to read those documents again that another program has changed. Returns those that are to be read:
  // their unsaved changes are gone.
  QStringList ConfirmReload();

private:
  QString TextOf(const SOURCE_DOCUMENT& Document) const;
  std::optional<EOL_FORMAT> ChooseLineEnds(const QString& sFileName) const;

  CSourceDocuments& m_Documents;
  CSourceEditor& m_Editor;
};
