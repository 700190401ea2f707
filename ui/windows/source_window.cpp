#include "ui/windows/source_window.h"

#include <QFileInfo>
#include <QScrollBar>
#include <QTabBar>

#include "device/device.h"
#include "device/device_context.h"
#include "program/database/elfapi.h"
#include "program/database/file_finder.h"
#include "project/user_file.h"
#include "shell/actions/action_dispatch.h"
#include "shell/actions/action_ids.h"
#include "shell/look/look.h"
#include "shell/settings/colors.h"
#include "shell/settings/fonts.h"
#include "shell/settings/sys_vars.h"
#include "shell/settings/var_ids.h"
#include "ui/popup_menu.h"
#include "ui/tool_tip.h"
#include "ui/windows/locate_file.h"
#include "ui/windows/side_bar.h"
#include "ui/windows/source_document.h"
#include "ui/windows/source_editor.h"

struct SOURCE_WINDOW_STATE {
  QTabBar* pTabs = nullptr;
  CSideBar* pSidebar = nullptr;
  CSourceEditor* pEditor = nullptr;
  QList<SOURCE_DOCUMENT> Documents;  // in the order of the tabs
  int Shown = -1;                    // document that the editor holds
  CSrcLoc PcLoc;
  U32 PcAddr = INVALID_ADDR;
  bool bLoading = false;  // the tab bar changes by ourselves
  bool bActive = false;   // this code view, not the disassembly, stands for the PC

  SOURCE_DOCUMENT* Active() { return Shown >= 0 && Shown < Documents.size() ? &Documents[Shown] : nullptr; }
  int IndexOf(const QString& sPath) const;
  bool IsPcIn(const SOURCE_DOCUMENT& Document) const { return PcLoc.IsValid() && Document.FileNo == PcLoc.File; }

  void Show(int Index);
  void SaveView();
  void GoToRow(int Line);
  void HighlightPcLine();
  unsigned MarksOf(int Row);
};

// By the path that it was opened with, or by the place where it lies.
int SOURCE_WINDOW_STATE::IndexOf(const QString& sPath) const {
  for (qsizetype i = 0; i < Documents.size(); ++i) {
    if (Documents[i].sFilePath == sPath) return static_cast<int>(i);
  }
  const QString sFound = FindSourceFile(sPath);
  for (qsizetype i = 0; i < Documents.size(); ++i) {
    if (Documents[i].bExists && Documents[i].sResolvedPath == sFound) return static_cast<int>(i);
  }
  return -1;
}

void SOURCE_WINDOW_STATE::SaveView() {
  SOURCE_DOCUMENT* const pDocument = Active();
  if (pDocument && pDocument->bExists) {
    pDocument->SliderPos = pEditor->TopRow();
    pDocument->CursorPos = pEditor->CursorTextPos();
  }
}

void SOURCE_WINDOW_STATE::Show(int Index) {
  SaveView();
  Shown = Index;
  SOURCE_DOCUMENT* const pDocument = Active();
  if (pDocument == nullptr) {
    pEditor->SetMessage(QString());
    return;
  }
  if (pDocument->bExists) {
    pEditor->SetText(pDocument->sText, pDocument->sFilePath, pDocument->FileNo);
    pEditor->SetCursorTextPos(pDocument->CursorPos);
    pEditor->verticalScrollBar()->setValue(pDocument->SliderPos);
  } else {
    pEditor->SetMessage(
        QStringLiteral("File not found:\n\n%1\n\nPlease use the source files window to locate the file manually")
            .arg(pDocument->sFilePath));
  }
  HighlightPcLine();
}

void SOURCE_WINDOW_STATE::GoToRow(int Line) {
  const int Row = pEditor->RowOfLine(static_cast<U32>(Line) + 1);
  pEditor->EnsureRowVisible(Row);
  pEditor->SetCursorPos({0, Row});
}

void SOURCE_WINDOW_STATE::HighlightPcLine() {
  pEditor->ClearHighlights();
  SOURCE_DOCUMENT* const pDocument = Active();
  const bool bHalted = CDevice::Get().IsConnected() && CDevice::Get().IsHalted();
  if (pDocument && pDocument->bExists && bHalted && IsPcIn(*pDocument)) {
    const U32 ColorID = bActive ? COLOR_PC_ACTIVE : COLOR_PC_INACTIVE;
    pEditor->SetLineHighlight(PcLoc.Line, ColorID);
    pEditor->SetAddrHighlight(PcAddr, ColorID);
  }
  pSidebar->update();
}

unsigned SOURCE_WINDOW_STATE::MarksOf(int Row) {
  const SOURCE_DOCUMENT* const pDocument = Active();
  if (pDocument == nullptr || !pDocument->bExists || pDocument->FileNo == INVALID_FILE_ID) return SIDE_BAR_NONE;
  if (!pEditor->IsSourceRow(Row)) return SIDE_BAR_NONE;
  const CSrcLoc Loc = pEditor->LocOfRow(Row);
  unsigned Marks = SIDE_BAR_NONE;
  for (const U32 Addr : ELFAPI_GetAddrsOfLoc(Loc)) {
    Marks |= SIDE_BAR_CODE;
    BP Entry;
    if (!CDevice::Get().Context().Breakpoints.GetAt(Addr, Entry)) continue;
    if (Entry.State == BP_STATE_ENABLED) Marks |= SIDE_BAR_BREAKPOINT;
    if (Entry.State == BP_STATE_DISABLED) Marks |= SIDE_BAR_BREAKPOINT_DISABLED;
  }
  const bool bHalted = CDevice::Get().IsConnected() && CDevice::Get().IsHalted();
  if (bHalted && PcLoc.IsValid() && Loc.IsSameLine(PcLoc)) Marks |= bActive ? SIDE_BAR_PC : SIDE_BAR_PC_INACTIVE;
  return Marks;
}

CSourceWindow::CSourceWindow(QWidget* pParent)
    : CWindow(pParent, QStringLiteral("Source")), m_pState(std::make_unique<SOURCE_WINDOW_STATE>()) {
  Flags &= ~(WF_CLEAR_WHEN_HIDDEN | WF_CLEAR_ON_DISCONNECT);
  SOURCE_WINDOW_STATE& S = *m_pState;
  auto* const pCentral = new QWidget(this);
  pCentral->setObjectName(QStringLiteral("CanvasWidget"));
  auto* const pLayout = new QVBoxLayout(pCentral);
  pLayout->setContentsMargins(0, 0, 0, 0);
  pLayout->setSpacing(0);
  S.pTabs = new QTabBar(pCentral);
  S.pTabs->setMovable(true);
  S.pTabs->setTabsClosable(true);
  S.pTabs->setExpanding(false);
  S.pTabs->setDocumentMode(true);
  S.pTabs->setDrawBase(false);
  S.pTabs->setElideMode(Qt::ElideRight);
  S.pTabs->setFocusPolicy(Qt::NoFocus);
  S.pTabs->installEventFilter(this);
  S.pEditor = new CSourceEditor(pCentral);
  S.pEditor->setObjectName(QStringLiteral("SourceEditor"));
  S.pSidebar = new CSideBar(
      S.pEditor, [this](int Row) { return m_pState->MarksOf(Row); }, pCentral);
  pLayout->addWidget(S.pTabs);
  auto* const pRow = new QHBoxLayout;
  pRow->setSpacing(0);
  pRow->addWidget(S.pSidebar);
  pRow->addWidget(S.pEditor, 1);
  pLayout->addLayout(pRow, 1);
  setCentralWidget(pCentral);
  setFocusProxy(S.pEditor);

  connect(S.pTabs, &QTabBar::currentChanged, this, [this](int Index) {
    if (!m_pState->bLoading) m_pState->Show(Index);
    Q_EMIT StatusTextChanged();
  });
  connect(S.pTabs, &QTabBar::tabMoved, this, [this](int From, int To) {
    m_pState->Documents.move(From, To);
    m_pState->Shown = m_pState->pTabs->currentIndex();
  });
  connect(S.pTabs, &QTabBar::tabCloseRequested, this,
          [this](int Index) { PerformAction(ACTION_FILE_CLOSE, m_pState->Documents[Index].sFilePath); });
  connect(S.pEditor, &CSourceEditor::CustomContextMenuRequested, this, [this](const QPoint& Pos) {
    CPopupMenu Menu(this);
    m_pState->pEditor->AddMenuEntries(&Menu, true);
    const SOURCE_DOCUMENT* const pDocument = m_pState->Active();
    if (pDocument && !pDocument->bExists) {
      const QString sPath = pDocument->sFilePath;
      Menu.AddSeparator();
      Menu.addAction(QStringLiteral("&Locate File..."), this, [this, sPath] { LocateFile(this, sPath); });
    }
    Menu.Run(Pos);
  });
  connect(S.pEditor, &CSourceEditor::CursorPositionChanged, this, [this] { Q_EMIT StatusTextChanged(); });
}

CSourceWindow::~CSourceWindow() = default;

bool CSourceWindow::Open(const QString& sPath, bool bInBackground, int SliderPos, const QPoint& CursorPos) {
  if (sPath.isEmpty()) return false;
  SOURCE_WINDOW_STATE& S = *m_pState;
  const int Index = S.IndexOf(sPath);
  if (Index >= 0) {
    if (!bInBackground) S.pTabs->setCurrentIndex(Index);
    return true;
  }
  SOURCE_DOCUMENT Document = LoadSourceDocument(sPath);
  if (SliderPos >= 0) Document.SliderPos = SliderPos;
  if (CursorPos.x() >= 0) Document.CursorPos = CursorPos;
  S.bLoading = true;
  S.Documents.prepend(Document);
  S.pTabs->insertTab(0, QFileInfo(Document.bExists ? Document.sResolvedPath : sPath).fileName());
  S.pTabs->setTabIcon(0, GetIcon(QStringLiteral("document-text.png")));
  if (S.Shown >= 0) ++S.Shown;
  if (!bInBackground || S.Documents.size() == 1) {
    S.pTabs->setCurrentIndex(0);
    S.Show(0);
  }
  S.bLoading = false;
  Q_EMIT ContentChanged();
  return true;
}

bool CSourceWindow::ShowLocation(const CSrcLoc& Loc) {
  if (!Loc.IsValid() || !Open(ELFAPI_GetFilePathOf(Loc.File))) return false;
  m_pState->GoToRow(static_cast<int>(Loc.Line) - 1);
  return true;
}

bool CSourceWindow::ShowLine(U32 Line) {
  if (Line == 0 || Line > static_cast<U32>(NumLines())) return false;
  m_pState->GoToRow(static_cast<int>(Line) - 1);
  return true;
}

void CSourceWindow::ShowNextDocument() {
  const int NumTabs = m_pState->pTabs->count();
  if (NumTabs > 0) m_pState->pTabs->setCurrentIndex((m_pState->pTabs->currentIndex() + 1) % NumTabs);
}

int CSourceWindow::NumLines() const {
  const SOURCE_DOCUMENT* const pDocument = m_pState->Active();
  return pDocument && pDocument->bExists ? m_pState->pEditor->NumLines() : 0;
}

int CSourceWindow::CursorLine() const {
  return m_pState->pEditor->CursorTextPos().y() + 1;
}

void CSourceWindow::Close(const QString& sPath) {
  SOURCE_WINDOW_STATE& S = *m_pState;
  const int Index = S.IndexOf(sPath);
  if (Index < 0) return;
  S.SaveView();
  S.bLoading = true;
  S.pTabs->removeTab(Index);
  S.Documents.removeAt(Index);
  S.bLoading = false;
  if (Index == S.Shown) {
    S.Shown = -1;
    S.Show(S.pTabs->currentIndex());
  } else if (Index < S.Shown) {
    --S.Shown;
  }
  Q_EMIT ContentChanged();
}

void CSourceWindow::CloseAllButThis() {
  const QString sActive = ActiveFile();
  for (const QString& sPath : OpenFiles()) {
    if (sPath != sActive) Close(sPath);
  }
}

void CSourceWindow::CloseAll() {
  while (!m_pState->Documents.isEmpty()) Close(m_pState->Documents.first().sFilePath);
}

bool CSourceWindow::IsOpen(const QString& sPath) const {
  return m_pState->IndexOf(sPath) >= 0;
}

QStringList CSourceWindow::OpenFiles() const {
  QStringList Files;
  for (const SOURCE_DOCUMENT& Document : m_pState->Documents) Files << Document.sFilePath;
  return Files;
}

QString CSourceWindow::ActiveFile() const {
  const SOURCE_DOCUMENT* const pDocument = m_pState->Active();
  return pDocument ? pDocument->sFilePath : QString();
}

void CSourceWindow::ReloadDocuments() {
  SOURCE_WINDOW_STATE& S = *m_pState;
  S.SaveView();
  for (SOURCE_DOCUMENT& Document : S.Documents) {
    SOURCE_DOCUMENT Fresh = LoadSourceDocument(Document.sFilePath);
    Fresh.SliderPos = Document.SliderPos;
    Fresh.CursorPos = Document.CursorPos;
    Document = Fresh;
  }
  const int Index = S.Shown;
  S.Shown = -1;
  S.Show(Index);
}

void CSourceWindow::ResolveDocuments() {
  SOURCE_WINDOW_STATE& S = *m_pState;
  S.SaveView();
  for (qsizetype i = 0; i < S.Documents.size(); ++i) {
    SOURCE_DOCUMENT& Document = S.Documents[i];
    if (FindSourceFile(Document.sFilePath) == Document.sResolvedPath) continue;
    SOURCE_DOCUMENT Fresh = LoadSourceDocument(Document.sFilePath);
    if (!Fresh.bExists) continue;
    Fresh.SliderPos = Document.SliderPos;
    Fresh.CursorPos = Document.CursorPos;
    Document = Fresh;
    S.pTabs->setTabText(static_cast<int>(i), QFileInfo(Fresh.sResolvedPath).fileName());
    if (i != S.Shown) continue;
    S.Shown = -1;
    S.Show(static_cast<int>(i));
    if (S.IsPcIn(Document)) S.GoToRow(static_cast<int>(S.PcLoc.Line) - 1);
  }
}

bool CSourceWindow::ShowPC(U32 PC) {
  SOURCE_WINDOW_STATE& S = *m_pState;
  S.PcAddr = PC;
  S.PcLoc = ELFAPI_GetLastSrcLoc(PC);
  const bool bShown = ShowLocation(S.PcLoc);
  S.HighlightPcLine();
  return bShown;
}

void CSourceWindow::ClearPC() {
  m_pState->PcLoc = CSrcLoc();
  m_pState->PcAddr = INVALID_ADDR;
  m_pState->HighlightPcLine();
}

void CSourceWindow::Clear() {
  CloseAll();
  ClearPC();
  CWindow::Clear();
}

void CSourceWindow::Repaint() {
  m_pState->HighlightPcLine();
  CWindow::Repaint();
}

// A target that runs on has no place to show: the next halt is on its way.
void CSourceWindow::Update(U32 NewPC) {
  if (IsStandingStill()) ShowPC(NewPC);
}

bool CSourceWindow::IsEmpty() const {
  return m_pState == nullptr || m_pState->Documents.isEmpty();
}

QString CSourceWindow::GetEmptyWindowText(DEBUG_STATES) const {
  return QStringLiteral("No source file is open");
}

void CSourceWindow::SetFont(int FontID, const QFont& /*Font*/) {
  if (FontID != FONT_SRC_CODE && FontID != FONT_APP_MONO && FontID != FONT_APP && FontID != FONT_LINE_NUMBERS) return;
  m_pState->pEditor->SetFonts(::GetFont(FONT_SRC_CODE), ::GetFont(FONT_LINE_NUMBERS));
  m_pState->pSidebar->UpdateWidth();
}

void CSourceWindow::SetColor(int /*ColorID*/, const QColor& /*Color*/) {
  m_pState->HighlightPcLine();
  m_pState->pEditor->viewport()->update();
}

void CSourceWindow::SetPreference(int VarID, int Value) {
  if (VarID == PREF_TAB_SPACING) m_pState->pEditor->SetTabSpacing(Value);
  if (VarID == PREF_LINE_NUMBER_FREQ) m_pState->pEditor->SetLineNumberFreq(Value);
  if (VarID == PREF_SHOW_SIDEBAR_SRC) m_pState->pSidebar->setVisible(Value != 0);
}

QString CSourceWindow::GetUserConfigStr() const {
  return GetVarValue(PREF_SHOW_SRC_CODE_PROFILE) != 0 ? ExecCountersText(GetName()) : QString();
}

void CSourceWindow::SetUserConfigStr(const QString& sConfig) {
  const std::optional<bool> Shown = FindExecCounters(sConfig, GetName());
  if (Shown) PerformAction(ACTION_EDIT_PREFERENCE, QStringLiteral("PREF_SHOW_SRC_CODE_PROFILE"), *Shown ? 1 : 0);
}

QString CSourceWindow::GetStatusText() const {
  if (IsEmpty()) return QStringLiteral("Ln 0  Ch 0");
  const QPoint Pos = m_pState->pEditor->CursorTextPos();
  return QStringLiteral("Ln %1  Ch %2").arg(Pos.y() + 1).arg(Pos.x() + 1);
}

QString CSourceWindow::DumpText() const {
  const SOURCE_DOCUMENT* const pDocument = m_pState->Active();
  if (pDocument == nullptr) return {};
  const QString sPlace = m_pState->PcLoc.IsValid() ? ELFAPI_GetSrcLocText(m_pState->PcLoc) : QString();
  return QFileInfo(pDocument->sFilePath).fileName() + QLatin1Char('\t') + sPlace + QLatin1Char('\n') + pDocument->sText;
}

// The whole path of a tab's file.
void CSourceWindow::OnTooltipRequested(const QPoint& Pos) {
  const int Index = m_pState->pTabs->tabAt(m_pState->pTabs->mapFromGlobal(Pos));
  if (Index < 0) return;
  const SOURCE_DOCUMENT& Document = m_pState->Documents[Index];
  CToolTip::_GetSingleton()->ShowText(m_pState->pTabs, Pos,
                                      Document.bExists ? Document.sResolvedPath : Document.sFilePath);
}

void CSourceWindow::OnActivationChanged(bool bActive) {
  m_pState->bActive = bActive;
  m_pState->HighlightPcLine();
}

void CSourceWindow::OnDeviceDisconnectDone() {
  ClearPC();
  CWindow::OnDeviceDisconnectDone();
}

void CSourceWindow::OnDeviceResumeDone(RESUME_MODES Mode) {
  m_pState->HighlightPcLine();
  CWindow::OnDeviceResumeDone(Mode);
}
