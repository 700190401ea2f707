#include "ui/windows/source_documents.h"

#include "base/text.h"

int CSourceDocuments::IndexOf(const QString& sPath) const {
  for (int i = 0; i < Count(); ++i) {
    if (m_List[i].sFilePath == sPath) return i;
  }
  const QString sFound = NormalisedPath(FindSourceFile(sPath));
  const QString sAsked = NormalisedPath(sPath);
  for (int i = 0; i < Count(); ++i) {
    const SOURCE_DOCUMENT& Document = m_List[i];
    if (Document.bExists ? NormalisedPath(Document.sResolvedPath) == sFound
                         : NormalisedPath(Document.sFilePath) == sAsked)
      return i;
  }
  return -1;
}

QStringList CSourceDocuments::Paths() const {
  QStringList Paths;
  for (const SOURCE_DOCUMENT& Document : m_List) Paths << Document.sFilePath;
  return Paths;
}

bool CSourceDocuments::Reload(int Index, bool bOnlyFound) {
  SOURCE_DOCUMENT& Document = m_List[Index];
  SOURCE_DOCUMENT Fresh = LoadSourceDocument(Document.sFilePath);
  if (bOnlyFound && !Fresh.bExists) return false;
  Fresh.SliderPos = Document.SliderPos;
  Fresh.CursorPos = Document.CursorPos;
  Document = Fresh;
  return true;
}

void CSourceDocuments::SetNotices(bool bOn) {
  m_bNotices = bOn;
  m_Noticed.clear();
}

bool CSourceDocuments::TakeNotice(const SOURCE_DOCUMENT& Document) {
  if (!m_bNotices || m_Noticed.contains(Document.Place())) return false;
  m_Noticed.insert(Document.Place());
  return true;
}
