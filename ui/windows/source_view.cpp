#include "ui/windows/source_view.h"

#include <QScrollBar>
#include <QTabBar>
#include <QVBoxLayout>

#include "program/database/elfapi.h"
#include "shell/look/look.h"
#include "ui/windows/document_tabs.h"
#include "ui/windows/side_bar.h"
#include "ui/windows/source_editor.h"
#include "ui/windows/source_header_bar.h"
#include "ui/windows/source_marks.h"

CSourceView::CSourceView(QWidget* pParent)
    : QWidget(pParent),
      m_pTabs(new CDocumentTabs(this)),
      m_pHeaderBar(new CSourceHeaderBar(this)),
      m_pEditor(new CSourceEditor(this)),
      m_Saver(m_Documents, *m_pEditor),
      m_Pc(*m_pEditor),
      m_Expansions(*m_pEditor) {
  setObjectName(QStringLiteral("CanvasWidget"));
  m_pEditor->setObjectName(QStringLiteral("SourceEditor"));
  m_pSideBar = new CSideBar(
      m_pEditor, [this](int Row) { return MarksOfRow(*m_pEditor, m_Pc, Row); }, this);
  LayOut();
  connect(m_pTabs->Bar(), &QTabBar::currentChanged, this, &CSourceView::OnTabIndexChanged);
  connect(m_pTabs->Bar(), &QTabBar::tabMoved, this, [this](int From, int To) {
    m_Documents.Move(From, To);
    m_Shown = m_pTabs->Bar()->currentIndex();
  });
  connect(m_pEditor, &CSourceEditor::LineExpansionStateToggled, this, [this](int Line) {
    m_Expansions.OnToggled(static_cast<U32>(Line));
    UpdateHighlights();
  });
  connect(m_pEditor, &CSourceEditor::DocumentStateChanged, this, &CSourceView::UpdateTabs);
}

CSourceView::~CSourceView() = default;

void CSourceView::LayOut() {
  auto* const pLayout = new QVBoxLayout(this);
  pLayout->setContentsMargins(0, 0, 0, 0);
  pLayout->setSpacing(0);
  pLayout->addWidget(m_pTabs);
  pLayout->addWidget(m_pHeaderBar);
  auto* const pRow = new QHBoxLayout;
  pRow->setSpacing(0);
  pRow->addWidget(m_pSideBar);
  pRow->addWidget(m_pEditor, 1);
  pLayout->addLayout(pRow, 1);
}

U32 CSourceView::ActiveFileNo() const {
  return Active() ? Active()->FileNo : INVALID_FILE_ID;
}

// ---- Documents

bool CSourceView::Open(const QString& sPath, bool bInBackground, int SliderPos, const QPoint& CursorPos) {
  if (sPath.isEmpty()) return false;
  const int Index = m_Documents.IndexOf(sPath);
  if (Index >= 0) {
    if (!bInBackground) SetCurrent(Index);
    return true;
  }
  SOURCE_DOCUMENT Document = LoadSourceDocument(sPath);
  if (SliderPos >= 0) Document.SliderPos = SliderPos;
  if (CursorPos.x() >= 0) Document.CursorPos = CursorPos;
  m_bLoading = true;
  m_Documents.Prepend(Document);
  m_pTabs->Bar()->insertTab(0, Document.FileName());
  m_pTabs->Bar()->setFixedHeight(m_pTabs->Bar()->tabRect(0).height());
  if (m_Shown >= 0) ++m_Shown;
  if (!bInBackground || m_Documents.Count() == 1) {
    m_pTabs->Bar()->setCurrentIndex(0);
    Show(0);
  }
  m_bLoading = false;
  UpdateTabs();
  Q_EMIT DocumentsChanged();
  return true;
}

void CSourceView::Close(int Index) {
  const SOURCE_DOCUMENT* const pDocument = m_Documents.At(Index);
  if (pDocument == nullptr) return;
  SaveView();
  m_pEditor->DropEdits(pDocument->sFilePath);
  m_bLoading = true;
  m_pTabs->Bar()->removeTab(Index);
  m_Documents.RemoveAt(Index);
  m_bLoading = false;
  if (Index == m_Shown) {
    m_Shown = -1;
    Show(m_pTabs->Bar()->currentIndex());
  } else if (Index < m_Shown) {
    --m_Shown;
  }
  Q_EMIT DocumentsChanged();
}

void CSourceView::SetCurrent(int Index) {
  m_pTabs->Bar()->setCurrentIndex(Index);
}

void CSourceView::OnTabIndexChanged(int Index) {
  if (!m_bLoading) Show(Index);
}

void CSourceView::Reload(const QList<int>& Indices, bool bOnlyFound) {
  SaveView();
  for (const int Index : Indices) {
    SOURCE_DOCUMENT& Document = *m_Documents.At(Index);
    if (m_Saver.HasUnsavedChanges(Index)) {
      Document.FileNo = ELFAPI_FileId(Document.sFilePath);
    } else if (m_Documents.Reload(Index, bOnlyFound)) {
      m_pEditor->DropEdits(Document.sFilePath);
    } else {
      continue;
    }
    if (Index != m_Shown) continue;
    m_Shown = -1;
    Show(Index);
  }
  UpdateTabs();
}

// ---- The document in the editor

void CSourceView::SaveView() {
  SOURCE_DOCUMENT* const pDocument = Active();
  if (pDocument == nullptr || !pDocument->bExists) return;
  pDocument->SliderPos = m_pEditor->TopRow();
  pDocument->CursorPos = m_pEditor->CursorTextPos();
}

void CSourceView::Show(int Index) {
  SaveView();
  m_Shown = Index;
  setUpdatesEnabled(false);
  const SOURCE_DOCUMENT* const pDocument = Active();
  if (pDocument && pDocument->bExists) {
    m_pEditor->SetText(pDocument->sText, pDocument->sFilePath, pDocument->FileNo);
    m_Expansions.Restore();
    m_pEditor->SetCursorTextPos(pDocument->CursorPos);
    m_pEditor->verticalScrollBar()->setValue(pDocument->SliderPos);
  } else {
    m_pEditor->SetMessage(
        pDocument
            ? QStringLiteral("File not found:\n\n%1\n\nPlease use the source files window to locate the file manually")
                  .arg(pDocument->sFilePath)
            : QString());
  }
  m_pHeaderBar->Init(pDocument && pDocument->bExists ? pDocument->FileNo : INVALID_FILE_ID);
  UpdateHighlights();
  setUpdatesEnabled(true);
  Q_EMIT DocumentShown();
}

void CSourceView::GoToRow(int Row) {
  if (Row < 0) return;
  m_pEditor->EnsureRowVisible(Row);
  m_pEditor->SetCursorPos({0, Row});
}

void CSourceView::ShowPcRow() {
  GoToRow(m_pEditor->PcRow());
}

void CSourceView::UpdateHighlights() {
  m_Pc.Update(HasText() ? ActiveFileNo() : INVALID_FILE_ID);
  m_pSideBar->update();
}

// The tab of the file where the target stands has an arrow, one with unsaved changes a star.
void CSourceView::UpdateTabs() {
  for (int i = 0; i < m_Documents.Count(); ++i) {
    const SOURCE_DOCUMENT& Document = *m_Documents.At(i);
    const bool bPc = m_Pc.PcLoc().IsValid() && Document.FileNo == m_Pc.PcLoc().File;
    QString sText = Document.FileName();
    if (m_Saver.HasUnsavedChanges(i)) sText += QLatin1Char('*');
    m_pTabs->Bar()->setTabText(i, sText.replace(QLatin1Char('&'), QLatin1String("&&")));
    m_pTabs->Bar()->setTabIcon(i, GetIcon(bPc ? QStringLiteral("arrow-pc.png") : QStringLiteral("document-text.png")));
  }
}

// ---- State

SOURCE_VIEW_STATE CSourceView::SaveState() {
  SaveView();
  SOURCE_VIEW_STATE State;
  for (int i = 0; i < m_Documents.Count(); ++i) {
    const SOURCE_DOCUMENT& Document = *m_Documents.At(i);
    State.Documents.append({Document.sFilePath, Document.SliderPos, Document.CursorPos});
  }
  if (Active()) State.sActive = Active()->sFilePath;
  State.Expanded = m_Expansions.Locs();
  return State;
}

void CSourceView::RestoreState(const SOURCE_VIEW_STATE& State) {
  m_Expansions.SetLocs(State.Expanded);
  for (auto it = State.Documents.crbegin(); it != State.Documents.crend(); ++it) {
    Open(it->sFilePath, true, it->SliderPos, it->CursorPos);
  }
  SetCurrent(m_Documents.IndexOf(State.sActive));
}
