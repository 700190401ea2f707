#include "ui/windows/source_window.h"

#include <QFileInfo>
#include <QScrollBar>
#include <QTabBar>

#include "device/device.h"
#include "program/database/elfapi.h"
#include "project/user_file.h"
#include "shell/actions/action_dispatch.h"
#include "shell/actions/action_ids.h"
#include "shell/look/look.h"
#include "shell/settings/fonts.h"
#include "shell/settings/sys_vars.h"
#include "shell/settings/var_ids.h"
#include "ui/message_box.h"
#include "ui/popup_menu.h"
#include "ui/tool_tip.h"
#include "ui/windows/document_tabs.h"
#include "ui/windows/locate_file.h"
#include "ui/windows/source_editor.h"
#include "ui/windows/source_header_bar.h"
#include "ui/windows/source_marks.h"
#include "ui/windows/source_menus.h"
#include "ui/windows/source_mouse.h"

CSourceWindow::CSourceWindow(QWidget* pParent)
    : CWindow(pParent, QStringLiteral("Source")),
      m_pView(new CSourceView(this)),
      m_pTips(new CSourceTips(&m_pView->Editor())) {
  Flags &= ~(WF_CLEAR_WHEN_HIDDEN | WF_CLEAR_ON_DISCONNECT);
  setCentralWidget(m_pView);
  setFocusProxy(&m_pView->Editor());
  ConnectView();
}

CSourceWindow::~CSourceWindow() = default;

void CSourceWindow::ConnectView() {
  CSourceEditor* const pEditor = &m_pView->Editor();
  auto* const pMouse = new CSourceMouse(pEditor);
  m_pView->Tabs().Bar()->installEventFilter(this);
  connect(pMouse, &CSourceMouse::Clicked, this, &CSourceWindow::OnEditorClicked);
  connect(pMouse, &CSourceMouse::ArgumentOffered, this, &CSourceWindow::ArgumentOffered);
  connect(m_pTips, &CSourceTips::SymbolTooltipRequest, this, &CSourceWindow::SymbolTooltipRequest);
  connect(pEditor, &CSourceEditor::CursorPositionChanged, this, [this] {
    m_pView->HeaderBar().RequestUpdate();
    UpdateActions();
    Q_EMIT StatusTextChanged();
  });
  connect(pEditor, &CSourceEditor::LineExpansionStateToggled, this, &CSourceWindow::UpdateActions);
  connect(pEditor, &CSourceEditor::CustomContextMenuRequested, this, &CSourceWindow::ShowContextMenu);
  connect(pEditor, &CSourceEditor::DocumentStateChanged, this, &CSourceWindow::DocumentStateChanged);
  connect(pEditor, &CSourceEditor::DocumentEdited, this, [this](const EDIT_EVENT& Event) {
    m_pTips->Invalidate();
    Q_EMIT DocumentEdited(Event);
  });
  connect(&m_pView->SideBar(), &CSideBar::Clicked, this, &CSourceWindow::OnSidebarClicked);
  connect(&m_pView->HeaderBar(), &CSourceHeaderBar::UpdateRequested, this, &CSourceWindow::OnHeaderBarUpdate);
  connect(&m_pView->HeaderBar(), &CSourceHeaderBar::SymbolChosen, this,
          [this](const CSrcLoc& Loc) { SelectLocation(Loc, true); });
  connect(&m_pView->Tabs(), &CDocumentTabs::CloseRequested, this,
          [this](int Index) { PerformAction(ACTION_FILE_CLOSE, m_pView->Documents().At(Index)->sFilePath); });
  connect(&m_pView->Tabs(), &CDocumentTabs::MenuRequested, this, &CSourceWindow::ShowTabMenu);
  connect(m_pView, &CSourceView::DocumentShown, this, &CSourceWindow::OnDocumentShown);
  connect(m_pView, &CSourceView::DocumentsChanged, this, &CSourceWindow::ContentChanged);
}

// ---- Documents

bool CSourceWindow::Open(const QString& sPath, bool bInBackground, int SliderPos, const QPoint& CursorPos) {
  return m_pView->Open(sPath, bInBackground, SliderPos, CursorPos);
}

bool CSourceWindow::SelectLocation(const CSrcLoc& Loc, bool bSetFocus) {
  if (!Loc.IsValid() || !Open(ELFAPI_GetFilePathOf(Loc.File))) return false;
  m_pView->GoToRow(GetTextEditor().RowOfLine(Loc.Line));
  if (bSetFocus) setFocus();
  return true;
}

bool CSourceWindow::ShowLine(U32 Line) {
  if (Line == 0 || Line > static_cast<U32>(NumLines())) return false;
  m_pView->GoToRow(GetTextEditor().RowOfLine(Line));
  return true;
}

bool CSourceWindow::SelectText(int LineNo, int Col, int Len) {
  return m_pView->HasText() && LineNo > 0 && GetTextEditor().SelectText(static_cast<U32>(LineNo), Col, Len);
}

bool CSourceWindow::SelectTextIn(const QString& sPath, int LineNo, int Col, int Len) {
  return Open(sPath) && SelectText(LineNo, Col, Len);
}

bool CSourceWindow::Find(const QString& sText) {
  m_sFindWhat = sText;
  return FindNext();
}

bool CSourceWindow::FindNext() {
  return m_pView->HasText() && !m_sFindWhat.isEmpty() && GetTextEditor().FindNext(m_sFindWhat);
}

bool CSourceWindow::FindNextUnderCursor() {
  return m_pView->HasText() && GetTextEditor().FindNextUnderCursor();
}

void CSourceWindow::ShowNextDocument() {
  const int NumTabs = m_pView->Documents().Count();
  if (NumTabs > 0) m_pView->SetCurrent((m_pView->Shown() + 1) % NumTabs);
}

QString CSourceWindow::ActiveFile() const {
  const SOURCE_DOCUMENT* const pDocument = m_pView->Active();
  return pDocument ? pDocument->sFilePath : QString();
}

int CSourceWindow::NumLines() const {
  return m_pView->HasText() ? GetTextEditor().NumLines() : 0;
}

int CSourceWindow::CursorLine() const {
  return static_cast<int>(GetTextEditor().Rows().LineOfRow(GetTextEditor().CursorPos().y()));
}

QList<int> CSourceWindow::AllIndices() const {
  QList<int> Indices(m_pView->Documents().Count());
  std::iota(Indices.begin(), Indices.end(), 0);
  return Indices;
}

QStringList CSourceWindow::OtherFiles() const {
  QStringList Paths = OpenFiles();
  Paths.removeOne(ActiveFile());
  return Paths;
}

void CSourceWindow::Close(const QString& sPath) {
  m_pView->Close(m_pView->Documents().IndexOf(sPath));
}

void CSourceWindow::CloseAll() {
  CloseFiles(OpenFiles());
  m_ObsvPoints.Clear();
}

void CSourceWindow::CloseAllButThis() {
  CloseFiles(OtherFiles());
}

void CSourceWindow::CloseFiles(const QStringList& Paths) {
  for (const QString& sPath : Paths) Close(sPath);
}

void CSourceWindow::ReloadDocuments() {
  GetTextEditor().UpdateInstructions();
  m_pView->Reload(AllIndices());
}

void CSourceWindow::ResolveDocuments() {
  QList<int> Moved;
  for (const int i : AllIndices()) {
    const SOURCE_DOCUMENT& Document = *m_pView->Documents().At(i);
    const bool bMoved = FindSourceFile(Document.sFilePath) != Document.sResolvedPath;
    if (bMoved || ELFAPI_FileId(Document.sFilePath) != Document.FileNo) Moved << i;
  }
  if (Moved.isEmpty()) return;
  m_pView->Reload(Moved, true);
  if (Moved.contains(m_pView->Shown()) && GetPcLoc().File == m_pView->ActiveFileNo()) m_pView->ShowPcRow();
}

void CSourceWindow::OnDocumentShown() {
  if (m_bAutoExpandPcLine && IsStandingStill()) ExpandPcLine();
  m_pTips->Invalidate();
  OnHeaderBarUpdate();
  UpdateActions();
  Q_EMIT StatusTextChanged();
  Q_EMIT DocumentStateChanged(m_pView->ActiveFileNo(), IsActiveDocumentChanged());
  // In the turn after this one: the box waits for the user.
  QMetaObject::invokeMethod(this, &CSourceWindow::ShowOutOfDateNotice, Qt::QueuedConnection);
}

void CSourceWindow::ShowOutOfDateNotice() {
  const SOURCE_DOCUMENT* const pDocument = m_pView->Active();
  // Another question comes first, and shows the document anew.
  if (pDocument == nullptr || QApplication::activeModalWidget() || !CDevice::Get().IsConnected()) return;
  if (!IsDocumentModified(pDocument->sFilePath)) return;
  if (!m_pView->Documents().TakeNotice(*pDocument)) return;
  CMessageBox::Show(pDocument->FileName(),
                    QStringLiteral("This source file has changed. It no longer matches the version of\n the file used "
                                   "to build the application beeing debugged."),
                    CMessageBox::NO_CHECK_BOX, QStringLiteral("document--exclamation.png"), QDialogButtonBox::Ok);
}

// ---- Changes

bool CSourceWindow::HasModifiedDocument() const {
  return m_pView->Documents().HasModified() || HasDocumentWithUnsavedChanges();
}

bool CSourceWindow::IsDocumentModified(const QString& sPath) const {
  const int Index = m_pView->Documents().IndexOf(sPath);
  const SOURCE_DOCUMENT* const pDocument = m_pView->Documents().At(Index);
  return pDocument && (m_pView->Documents().IsModified(*pDocument) || m_pView->Saver().HasUnsavedChanges(Index));
}

std::optional<QString> CSourceWindow::UnsavedText(const QString& sPath) const {
  const int Index = m_pView->Documents().IndexOf(sPath);
  if (!m_pView->Saver().HasUnsavedChanges(Index)) return {};
  return m_pView->Editor().EditedText(m_pView->Documents().At(Index)->sFilePath);
}

bool CSourceWindow::Save(const QString& sPath) {
  return m_pView->Saver().Save(m_pView->Documents().IndexOf(sPath));
}

bool CSourceWindow::NotifyUserClose(const QString& sPath) {
  return m_pView->Saver().ConfirmClose({sPath});
}

bool CSourceWindow::NotifyUserClose(const QStringList& Paths) {
  return m_pView->Saver().ConfirmClose(Paths);
}

void CSourceWindow::CheckOutsideChanges() {
  QList<int> Changed;
  for (const QString& sPath : m_pView->Saver().ConfirmReload()) {
    const int Index = m_pView->Documents().IndexOf(sPath);
    if (Index >= 0) Changed << Index;
  }
  if (!Changed.isEmpty()) m_pView->Reload(Changed, true);
}

// ---- Places

CODE_PLACE CSourceWindow::PlaceOfRow(int Row) const {
  if (!m_pView->HasText() || m_pView->ActiveFileNo() == INVALID_FILE_ID || GetTextEditor().Rows().LineOfRow(Row) == 0)
    return {};
  return {GetTextEditor().Rows().LocOfRow(Row), GetTextEditor().Rows().AddrOfRow(Row),
          GetTextEditor().Rows().IsInstruction(Row)};
}

CODE_PLACE CSourceWindow::CursorPlace() const {
  return m_MenuPlace ? *m_MenuPlace : PlaceOfRow(GetTextEditor().CursorPos().y());
}

unsigned CSourceWindow::MarksOfRow(int Row) const {
  return ::MarksOfRow(GetTextEditor(), m_pView->Pc(), Row);
}

void CSourceWindow::OnEditorClicked(const QPoint& Pos) {
  if (!m_pView->HasText()) return;
  const CSourceEditor& Editor = GetTextEditor();
  const int CharWidth = std::max(1, QFontMetrics(Editor.font()).horizontalAdvance(QLatin1Char('0')));
  m_ObsvPoints.Add({m_pView->ActiveFileNo(), ActiveFile(), Editor.Rows().LineOfRow(Editor.PosAt(Pos).y()),
                    std::max(0, Pos.x() / CharWidth), Editor.horizontalScrollBar()->value(),
                    Editor.verticalScrollBar()->value()});
}

void CSourceWindow::ShowObsvPoint(const OBSERVATION_POINT& Point) {
  if (!Point.IsValid() || !Open(Point.sFilePath) || !ShowLine(Point.Line)) return;
  GetTextEditor().horizontalScrollBar()->setValue(Point.HScroll);
  GetTextEditor().verticalScrollBar()->setValue(Point.VScroll);
  setFocus();
}

void CSourceWindow::OnHeaderBarUpdate() {
  const CODE_PLACE Place = CursorPlace();
  m_pView->HeaderBar().SetSelection(Place.Loc.IsValid() ? ELFAPI_GetFuncOfLoc(Place.Loc) : 0);
}

void CSourceWindow::OnSidebarClicked(int Row, int Button) {
  const CODE_PLACE Place = PlaceOfRow(Row);
  if (!Place.IsValid()) return;
  if (Place.bInstruction) {
    Q_EMIT InstrSelected(Place.Addr);
  } else if (Place.HasCode()) {
    Q_EMIT SrcLocSelected(Place.Loc, 0);
  }
  if (Button != Qt::RightButton) {
    Q_EMIT BreakpointToggleRequested(Place);
    return;
  }
  RunMenu(Place, QCursor::pos(), [](CPopupMenu& Menu) { AddMarginEntries(Menu); });
}

// ---- Menus

void CSourceWindow::RunMenu(const CODE_PLACE& Place, const QPoint& GlobalPos,
                            const std::function<void(CPopupMenu&)>& AddEntries) {
  Q_EMIT MenuOpening(Place);
  UpdateActions();
  CPopupMenu Menu(this);
  AddEntries(Menu);
  // A halt may take the cursor elsewhere meanwhile.
  m_MenuPlace = Place;
  Menu.Run(GlobalPos);
  m_MenuPlace.reset();
  Q_EMIT MenuClosed();
}

void CSourceWindow::ShowContextMenu(const QPoint& GlobalPos) {
  const SOURCE_DOCUMENT* const pDocument = m_pView->Active();
  if (pDocument && !pDocument->bExists) {
    const QString sPath = pDocument->sFilePath;
    CPopupMenu Menu(this);
    GetTextEditor().AddMenuEntries(&Menu, false);
    Menu.AddSeparator();
    Menu.addAction(QStringLiteral("&Locate File..."), this, [this, sPath] { LocateFile(this, sPath); });
    Menu.Run(GlobalPos);
    return;
  }
  if (!m_pView->HasText()) return;
  RunMenu(CursorPlace(), GlobalPos, [this](CPopupMenu& Menu) { AddSourceEntries(Menu, GetTextEditor()); });
}

void CSourceWindow::ShowTabMenu(int Index, const QPoint& GlobalPos) {
  m_pView->SetCurrent(Index);
  CPopupMenu Menu(this);
  AddTabEntries(Menu);
  Menu.Run(GlobalPos);
}

void CSourceWindow::UpdateActions() {
  CWindow::UpdateActions();
  // Their keys are those of lines here.
  actionWinAdd->setEnabled(false);
  actionWinClear->setEnabled(false);
  UpdateSourceActions(GetTextEditor(), m_pView->HasText());
}

// ---- Lines and their instructions

void CSourceWindow::ShowInstructions(bool bOn) {
  const CODE_PLACE Place = CursorPlace();
  if (!Place.Loc.IsValid()) return;
  if (!(bOn ? GetTextEditor().Expand(Place.Loc) : GetTextEditor().Collapse(Place.Loc))) return;
  m_pView->Expansions().OnToggled(Place.Loc.Line);
  m_pView->UpdateHighlights();
  UpdateActions();
}

void CSourceWindow::ExpandAll() {
  if (!m_pView->HasText()) return;
  m_pView->Expansions().ExpandAll();
  m_pView->UpdateHighlights();
  UpdateActions();
}

void CSourceWindow::CollapseAll(bool bUpdateHistory) {
  m_pView->Expansions().CollapseAll(bUpdateHistory);
  m_pView->UpdateHighlights();
  UpdateActions();
}

void CSourceWindow::ExpandPcLine() {
  if (GetPcLoc().IsValid() && GetPcLoc().File == m_pView->ActiveFileNo()) GetTextEditor().Expand(GetPcLoc());
}

// ---- The PC line

bool CSourceWindow::ShowPC(U32 PC) {
  m_pView->Pc().SetPc(PC);
  const bool bShown = GetPcLoc().IsValid() && Open(ELFAPI_GetFilePathOf(GetPcLoc().File));
  if (bShown) {
    if (m_bAutoExpandPcLine) ExpandPcLine();
    m_pView->ShowPcRow();
  }
  m_pView->UpdateHighlights();
  m_pView->UpdateTabs();
  UpdateActions();
  return bShown;
}

void CSourceWindow::ClearPC() {
  m_pView->Pc().ClearPc();
  m_pView->UpdateHighlights();
  m_pView->UpdateTabs();
}

void CSourceWindow::SetReturnAddrs(const CPcHighlights::RETURN_ADDRS& ReturnAddrs) {
  m_pView->Pc().SetReturnAddrs(ReturnAddrs);
  m_pView->UpdateHighlights();
}

void CSourceWindow::SetCounters(const std::function<std::optional<ROW_COUNTERS>(const CODE_PLACE&)>& CountersOf) {
  GetSideBar().SetCounters([this, CountersOf](int Row) { return CountersOf(PlaceOfRow(Row)); });
}

void CSourceWindow::SetHeaderBarVisible(bool bVisible) {
  m_pView->HeaderBar().setVisible(bVisible);
}

// ---- CWindow

void CSourceWindow::Clear() {
  CloseAll();
  ClearPC();
  CWindow::Clear();
}

void CSourceWindow::Repaint() {
  m_pView->UpdateHighlights();
  CWindow::Repaint();
}

// A target that runs on has no place to show: the next halt is on its way.
void CSourceWindow::Update(U32 NewPC) {
  if (IsStandingStill()) ShowPC(NewPC);
}

bool CSourceWindow::IsEmpty() const {
  return m_pView == nullptr || m_pView->Documents().IsEmpty();
}

QString CSourceWindow::GetEmptyWindowText(DEBUG_STATES) const {
  return QStringLiteral("No source file is open");
}

void CSourceWindow::SetFont(int FontID, const QFont& /*Font*/) {
  if (FontID != FONT_SRC_CODE && FontID != FONT_APP_MONO && FontID != FONT_APP && FontID != FONT_LINE_NUMBERS) return;
  GetTextEditor().SetFonts(::GetFont(FONT_SRC_CODE), ::GetFont(FONT_LINE_NUMBERS));
  GetSideBar().UpdateWidth();
}

void CSourceWindow::SetColor(int /*ColorID*/, const QColor& /*Color*/) {
  m_pView->UpdateHighlights();
  GetTextEditor().viewport()->update();
  m_pView->Tabs().UpdateStyle();
}

void CSourceWindow::SetPreference(int VarID, int Value) {
  CSourceEditor& Editor = GetTextEditor();
  switch (VarID) {
    case PREF_TAB_SPACING:
      return Editor.SetTabSpacing(Value);
    case PREF_LINE_NUMBER_FREQ:
      return Editor.SetLineNumberFreq(Value);
    case PREF_SHOW_EXPANSION_BAR:
      return Editor.SetExpansionBarShown(Value != 0);
    case PREF_INDENT_INLINE_ASSEMBLY:
      return Editor.SetInlineAssemblyIndented(Value != 0);
    case PREF_SHOW_ENCODINGS_ASM:
      return Editor.SetEncodingsShown(Value != 0);
    case PREF_SHOW_HEX_BLOCKS:
      return Editor.UpdateInstructions();
    case PREF_SHOW_SIDEBAR_SRC:
      return GetSideBar().setVisible(Value != 0);
    case PREF_SHOW_SRC_CODE_PROFILE:
      return GetSideBar().SetCountersShown(Value != 0);
    case PREF_LOCK_HEADER_BAR:
      return m_pView->HeaderBar().SetLocked(Value != 0);
    case PREF_SHOW_TOOLTIPS:
      return m_pTips->SetEnabled(Value != 0);
    default:
      return;
  }
}

QString CSourceWindow::GetUserConfigStr() const {
  return GetVarValue(PREF_SHOW_SRC_CODE_PROFILE) != 0 ? ExecCountersText(GetName()) : QString();
}

void CSourceWindow::SetUserConfigStr(const QString& sConfig) {
  const std::optional<bool> Shown = FindExecCounters(sConfig, GetName());
  if (Shown) PerformAction(ACTION_EDIT_PREFERENCE, QStringLiteral("PREF_SHOW_SRC_CODE_PROFILE"), *Shown ? 1 : 0);
}

void CSourceWindow::BackupState(int StateID) {
  m_States[StateID] = m_pView->SaveState();
}

void CSourceWindow::RestoreState(int StateID, U32 /*DoNotRestoreFlags*/) {
  const auto it = m_States.constFind(StateID);
  if (it != m_States.cend()) m_pView->RestoreState(*it);
}

QString CSourceWindow::GetStatusText() const {
  if (IsEmpty()) return QStringLiteral("Ln 0  Ch 0");
  return QStringLiteral("Ln %1  Ch %2").arg(CursorLine()).arg(GetTextEditor().CursorPos().x() + 1);
}

QString CSourceWindow::DumpText() const {
  if (m_pView->Active() == nullptr) return {};
  const QString sPlace = GetPcLoc().IsValid() ? ELFAPI_GetSrcLocText(GetPcLoc()) : QString();
  const QString sText = m_pView->HasText() ? GetTextEditor().GetText() : QString();
  return QFileInfo(ActiveFile()).fileName() + QLatin1Char('\t') + sPlace + QLatin1Char('\n') + sText;
}

// The whole path of a tab's file.
void CSourceWindow::OnTooltipRequested(const QPoint& Pos) {
  QTabBar* const pBar = m_pView->Tabs().Bar();
  const SOURCE_DOCUMENT* const pDocument = m_pView->Documents().At(pBar->tabAt(pBar->mapFromGlobal(Pos)));
  if (pDocument) CToolTip::_GetSingleton()->ShowText(pBar, Pos, pDocument->Place());
}

void CSourceWindow::OnActivationChanged(bool bActive) {
  m_pView->Pc().SetActive(bActive);
  m_pView->UpdateHighlights();
}

void CSourceWindow::OnDeviceDisconnectDone() {
  ClearPC();
  CWindow::OnDeviceDisconnectDone();
}

void CSourceWindow::OnDeviceHaltDone(U32 /*PC*/, HALT_REASONS /*Reason*/) {
  UpdateActions();
}

void CSourceWindow::OnDeviceStepped(U32 /*PC*/) {}

void CSourceWindow::OnDeviceResumeDone(RESUME_MODES Mode) {
  m_pView->UpdateHighlights();
  CWindow::OnDeviceResumeDone(Mode);
}
