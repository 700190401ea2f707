#pragma once

#include <memory>

#include <QWidget>

#include "ui/windows/expansion_history.h"
#include "ui/windows/pc_highlights.h"
#include "ui/windows/source_documents.h"
#include "ui/windows/source_saver.h"

class CDocumentTabs;
class CSideBar;
class CSourceEditor;
class CSourceHeaderBar;
class QTabBar;

// How the open documents stand, to be restored: in the order of the tabs.
struct SOURCE_VIEW_STATE {
  struct DOCUMENT {
    QString sFilePath;
    int SliderPos = 0;
    QPoint CursorPos;
  };
  QList<DOCUMENT> Documents;
  QString sActive;
  QSet<CSrcLoc> Expanded;
};

// The parts of the source window as one widget: tabs over a header bar over side bar and editor. One editor serves all
// documents; a change of the tab changes the document in it.
class CSourceView : public QWidget {
  Q_OBJECT

public:
  explicit CSourceView(QWidget* pParent);
  ~CSourceView() override;

  CSourceEditor& Editor() const { return *m_pEditor; }
  CSideBar& SideBar() const { return *m_pSideBar; }
  CSourceHeaderBar& HeaderBar() const { return *m_pHeaderBar; }
  CDocumentTabs& Tabs() const { return *m_pTabs; }
  CSourceDocuments& Documents() { return m_Documents; }
  const CSourceDocuments& Documents() const { return m_Documents; }
  CSourceSaver& Saver() { return m_Saver; }
  CPcHighlights& Pc() { return m_Pc; }
  CExpansionHistory& Expansions() { return m_Expansions; }

  // Index of the document that the editor shows, -1 for none.
  int Shown() const { return m_Shown; }
  SOURCE_DOCUMENT* Active() { return m_Documents.At(m_Shown); }
  const SOURCE_DOCUMENT* Active() const { return m_Documents.At(m_Shown); }
  // The active document is shown with its text.
  bool HasText() const { return Active() && Active()->bExists; }
  U32 ActiveFileNo() const;

  // See CSourceWindow::Open.
  bool Open(const QString& sPath, bool bInBackground, int SliderPos, const QPoint& CursorPos);
  void Close(int Index);
  void SetCurrent(int Index);
  // Looks documents up again, and reads those that have no unsaved changes; with bOnlyFound those only that are found.
  void Reload(const QList<int>& Indices, bool bOnlyFound = false);
  // Puts the cursor there, in view.
  void GoToRow(int Row);
  void ShowPcRow();
  void UpdateHighlights();
  void UpdateTabs();
  SOURCE_VIEW_STATE SaveState();
  void RestoreState(const SOURCE_VIEW_STATE& State);

Q_SIGNALS:
  // Another document is in the editor, or none.
  void DocumentShown();
  void DocumentsChanged();

private:
  void LayOut();
  void Show(int Index);
  void SaveView();
  void OnTabIndexChanged(int Index);

  CDocumentTabs* m_pTabs;
  CSourceHeaderBar* m_pHeaderBar;
  CSourceEditor* m_pEditor;
  CSideBar* m_pSideBar = nullptr;
  CSourceDocuments m_Documents;
  CSourceSaver m_Saver;
  CPcHighlights m_Pc;
  CExpansionHistory m_Expansions;
  int m_Shown = -1;
  bool m_bLoading = false;  // the tab bar changes by ourselves
};
