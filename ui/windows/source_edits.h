#pragma once

#include <map>
#include <memory>
#include <optional>
#include <vector>

#include <QKeyEvent>
#include <QObject>
#include <QPlainTextEdit>

#include "ui/windows/source_types.h"

// The ends of a selection, as positions in a text; the cursor is at Pos.
struct EDIT_SELECTION {
  int Anchor = 0;
  int Pos = 0;
  bool operator==(const EDIT_SELECTION&) const = default;
};

// The edited documents, by path: one hidden text field each, which keeps text, undo and redo.
class CSourceEdits : public QObject {
  Q_OBJECT

public:
  using QObject::QObject;

  bool Has(const QString& sPath) const { return m_Documents.contains(sPath); }
  // Makes the field of a document that has none.
  void Open(const QString& sPath, const QString& sText);
  // Lines have moved by an edit.
  void NoteMove(const QString& sPath, const EDIT_EVENT& Move);
  // The moves since the text was that of the disk, newest first, which went with the edits.
  std::vector<EDIT_EVENT> Drop(const QString& sPath);
  std::optional<QString> Text(const QString& sPath) const;
  bool IsModified(const QString& sPath) const;
  // What the text is now counts as unmodified.
  void SetSaved(const QString& sPath);
  bool CanUndo(const QString& sPath) const;
  bool CanRedo(const QString& sPath) const;

  // Whether a key edits; Copy and moves don't.
  static bool IsEdit(const QKeyEvent& Event);
  // These edit an open document and answer where the cursor is then.
  EDIT_SELECTION Press(const QString& sPath, const QKeyEvent& Event, EDIT_SELECTION Selection);
  EDIT_SELECTION Insert(const QString& sPath, const QString& sText, EDIT_SELECTION Selection);
  // Moves the lines of the selection one stop to the right, or with bBack to the left, and selects them whole.
  EDIT_SELECTION Indent(const QString& sPath, EDIT_SELECTION Selection, bool bBack, int TabSpacing);

Q_SIGNALS:
  // At Position NumRemoved characters were replaced by sAdded; line feeds end the lines.
  void Changed(const QString& sPath, int Position, int NumRemoved, const QString& sAdded);

private:
  struct DOCUMENT {
    std::unique_ptr<QPlainTextEdit> pField;
    int Size = 0;
    std::vector<EDIT_EVENT> Moves;  // of lines, since the text was saved
  };
  DOCUMENT* Find(const QString& sPath);
  const DOCUMENT* Find(const QString& sPath) const { return const_cast<CSourceEdits*>(this)->Find(sPath); }
  void OnContentsChange(const QString& sPath, int Position, int NumRemoved, int NumAdded);

  std::map<QString, DOCUMENT> m_Documents;
};
