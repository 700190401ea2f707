#pragma once

#include <QList>
#include <QSet>
#include <QStringList>

#include "ui/windows/source_document.h"

// The open documents in the order of their tabs, and which files no longer match the program.
class CSourceDocuments {
public:
  int Count() const { return static_cast<int>(m_List.size()); }
  bool IsEmpty() const { return m_List.isEmpty(); }
  // Null for an index that there is not.
  SOURCE_DOCUMENT* At(int Index) { return Index >= 0 && Index < Count() ? &m_List[Index] : nullptr; }
  const SOURCE_DOCUMENT* At(int Index) const { return Index >= 0 && Index < Count() ? &m_List[Index] : nullptr; }
  // By the path that it was opened with, or by the place where it lies; one that does not exist by any spelling of that
  // path. -1 for a file that is not open.
  int IndexOf(const QString& sPath) const;
  // The paths that the documents were opened with.
  QStringList Paths() const;

  void Prepend(const SOURCE_DOCUMENT& Document) { m_List.prepend(Document); }
  void RemoveAt(int Index) { m_List.removeAt(Index); }
  void Move(int From, int To) { m_List.move(From, To); }
  // Reads a document again and keeps its view. With bOnlyFound one that can't be read stays as it is, and the answer is
  // false.
  bool Reload(int Index, bool bOnlyFound = false);

  // --- Files that differ from those that the program was built of
  void SetModified(const SOURCE_DOCUMENT& Document) { m_Modified.insert(Document.Place()); }
  bool IsModified(const SOURCE_DOCUMENT& Document) const { return m_Modified.contains(Document.Place()); }
  bool HasModified() const { return !m_Modified.isEmpty(); }
  void ResetModified() { m_Modified.clear(); }
  // Whether the user wants to be told of such files from now on, each once.
  void SetNotices(bool bOn);
  // True once for each modified file while notices are wanted.
  bool TakeNotice(const SOURCE_DOCUMENT& Document);

private:
  QList<SOURCE_DOCUMENT> m_List;
  QSet<QString> m_Modified;  // by place, for a document may be closed
  QSet<QString> m_Noticed;
  bool m_bNotices = false;
};
