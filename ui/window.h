#pragma once

#include <QAction>
#include <QFrame>
#include <QLabel>
#include <QMainWindow>
#include <QMenu>
#include <QPointer>
#include <QPushButton>

#include "base/elf_sym.h"
#include "base/src_loc.h"
#include "device/device_event_listener.h"
#include "ui/window_types.h"

class CDockWindow;
class QActionGroup;

// Base of every view, the main window included: a QMainWindow in a dock that hears the device. Gives all windows one
// virtual interface, one way to say that there is nothing to see, and one policy on when to update after a halt.
class CWindow : public QMainWindow, public CDeviceEventListener {
  Q_OBJECT

public:
  // sName becomes the object name. A subclass calls its own Init() at the end of its constructor.
  CWindow(QWidget* pParent, const QString& sName);
  ~CWindow() override;

  // --- Contents
  virtual void Clear();
  virtual void Repaint();
  // Shows the state of the target that stands at NewPC.
  virtual void Update(U32 /*NewPC*/) {}
  virtual bool IsEmpty() const { return false; }
  virtual QString GetEmptyWindowText(DEBUG_STATES State) const;
  virtual QString GetEmptyWindowButtonText(DEBUG_STATES /*State*/) const { return {}; }
  virtual QString GetStatusText() const { return {}; }

  // --- Settings
  virtual void SetFont(int /*FontID*/, const QFont& /*Font*/) {}
  virtual void SetColor(int /*ColorID*/, const QColor& /*Color*/) {}
  virtual void SetPreference(int /*VarID*/, int /*Value*/) {}
  virtual void SetWindowTitle(const QString& sTitle);
  virtual void SetFlag(U32 Flag, bool bEnabled);
  virtual void SetSrcLanguage(ELF_SRC_LANG /*Lang*/) {}
  virtual void SetUpdateMode(WIN_UPDATE_MODES Mode) { UpdateMode = Mode; }
  virtual void SetEnabled(bool bOn);
  virtual void SetActive(bool bOn);
  virtual void SetDisplayFormat(int Format);
  virtual void ExpandAll() {}
  virtual void CollapseAll() {}
  virtual void ScrollBy(int dx, int dy);
  void ScrollToTop() { ScrollBy(0, -SCROLL_TO_END); }
  void ScrollToBottom() { ScrollBy(0, SCROLL_TO_END); }
  void ScrollToLeft() { ScrollBy(-SCROLL_TO_END, 0); }
  void ScrollToRight() { ScrollBy(SCROLL_TO_END, 0); }

  // --- What belongs to a program (StateID: hash of its path) or to the user file of a project
  virtual void ClearStateBackup() {}
  virtual void BackupState(int /*StateID*/) {}
  virtual void RestoreState(int /*StateID*/, U32 /*DoNotRestoreFlags*/) {}
  virtual QString GetUserConfigStr() const { return {}; }
  virtual void SetUserConfigStr(const QString& /*sConfig*/) {}

  // --- Identity and state
  virtual QString GetName() const;
  virtual QString GetDisplayName() const { return GetName(); }
  virtual QString GetClearAllPostfix() const { return GetName(); }
  // The window's rows as tab-separated text, for batch sessions and the clipboard.
  virtual QString DumpText() const { return {}; }
  U32 GetFlags() const { return Flags; }
  bool TestFlag(U32 Flag) const { return (Flags & Flag) != 0; }
  bool HasFocus() const { return bHasFocus; }
  bool IsContentsModifiable() const { return TestFlag(WF_MODIFIABLE); }
  bool IsEnabled() const { return bEnabled; }
  // Visible, or held by its dock as a hidden tab.
  bool IsOpen() const;
  bool IsVisible() const;
  bool IsObscured() const;
  bool IsFloating() const;
  bool IsActive() const { return bActive; }
  int GetDisplayFormat() const { return DisplayFormat; }
  CDockWindow* GetDock() const { return pDock; }
  // Called by the dock when it is destroyed, which the window outlives a little.
  void ForgetDock() { pDock = nullptr; }

  // Connects a signal. For triggered() of an action the listeners of ActionTriggered and ActionPerformed, the console's
  // echo above all, are told before and after the slot. Signatures as SIGNAL() and SLOT() make them.
  virtual void Connect(QObject* pSender, const char* sSignal, QObject* pReceiver, const char* sSlot);
  virtual void Disconnect(QObject* pSender, const char* sSignal, QObject* pReceiver, const char* sSlot);
  virtual void ShowContextMenu(const QPoint& Pos) { OnContextMenuRequested(Pos); }

  // --- Device events: the defaults of every window.
  void OnDeviceConnectDone(CONNECT_MODES Mode) override;
  void OnDeviceDisconnectDone() override;
  void OnDeviceResumeDone(RESUME_MODES Mode) override;
  void OnDeviceHaltDone(U32 PC, HALT_REASONS Reason) override;
  void OnDeviceResetDone(U32 PC, RESET_MODES Mode) override;
  void OnDeviceStepped(U32 PC) override;

public Q_SLOTS:
  virtual void OnDisplayFormatChanged(int Format);
  virtual void OnSizeChanged(int /*Width*/, int /*Height*/) {}
  virtual void OnFlagChanged(U32 Flag, bool bValue);
  virtual void OnStateChanged(bool /*bEnabled*/) { OnContentChanged(); }
  virtual void OnFloatingStateChanged(bool /*bFloating*/) {}
  virtual void OnVisibilityChanged(bool bVisible);
  virtual void OnActivationChanged(bool /*bActive*/) {}
  virtual void OnFocusChanged(bool bFocus);
  virtual void OnFocusChanged(QWidget* pOld, QWidget* pNew);
  virtual void OnContextMenuRequested(const QPoint& /*Pos*/) {}
  // The pointer rests on a watched widget, at a point of the screen: the place to show the shared tool tip.
  virtual void OnTooltipRequested(const QPoint& /*Pos*/) {}
  virtual void OnSrcLocSelected(const CSrcLoc& /*Loc*/, int /*Type*/) {}
  virtual void OnFuncSelected(ELF_SYM_HANDLE /*hFunc*/) {}
  virtual void OnSymbolSelected(U64 /*SymID*/) {}
  virtual void OnInstrSelected(I64 /*Addr*/) {}
  virtual void OnEmptyWindowButtonClicked() {}
  virtual void OnContentChanged();
  virtual void OnActionAddTriggered() {}
  virtual void OnActionClearTriggered();
  void OnActionSetDispFormTriggered();
  virtual void OnCallFrameEvaluated(int /*Index*/) {}
  virtual void OnCallStackUnwinded() {}
  virtual void OnDataFileOpened(const QString& /*sPath*/) {}
  void OnActionTriggered();
  void OnActionPerformed();

Q_SIGNALS:
  void StatusTextChanged();
  void ContentChanged();
  void DisplayFormatChanged(int Format);
  void SizeChanged(int Width, int Height);
  void FocusChanged(bool bFocus);
  void FlagChanged(U32 Flag, bool bValue);
  void FloatingStateChanged(bool bFloating);
  void VisibilityChanged(bool bVisible);
  void StateChanged(bool bEnabled);
  void ActivationChanged(bool bActive);
  void InstrSelected(I64 Addr);
  void SrcLocSelected(CSrcLoc Location, int Type);
  void SymbolSelected(U64 SymID);
  void FuncSelected(ELF_SYM_HANDLE hFunc);
  void CallSiteSelected(int CallStackIdx);
  void ActionTriggered(QAction* pAction);
  void ActionPerformed(QAction* pAction);

protected:
  static constexpr int SCROLL_TO_END = 65535;

  virtual void Init();
  virtual void UpdateActions();
  // Lets a window give ACTION_WIN_ADD and ACTION_WIN_CLEAR an icon and a text of its own, whenever it is shown.
  virtual void SetActionStyle(U32 /*ActionID*/, QAction* /*pAction*/) {}
  // The paint event of a watched widget; true when it is done.
  virtual bool OnPaint(QWidget* /*pWidget*/) { return false; }
  virtual void OnDragEnter(QDragEnterEvent* pEvent);
  virtual void OnDragDrop(QDropEvent* /*pEvent*/) {}
  void AddDisplayFormatMenu(QMenu* pMenu);
  void ShowCentralWidget(bool bShow);

  bool eventFilter(QObject* pWatched, QEvent* pEvent) override;
  void paintEvent(QPaintEvent* pEvent) override;
  void resizeEvent(QResizeEvent* pEvent) override;
  void showEvent(QShowEvent* pEvent) override;
  void dragEnterEvent(QDragEnterEvent* pEvent) override { OnDragEnter(pEvent); }
  void dropEvent(QDropEvent* pEvent) override { OnDragDrop(pEvent); }
  QSize sizeHint() const override;

  U32 Flags = WF_CLEAR_WHEN_HIDDEN | WF_CLEAR_ON_DISCONNECT;
  WIN_UPDATE_MODES UpdateMode = WIN_UPDATE_VISIBLE;
  int DisplayFormat = 0;
  QAction* actionWinClear = nullptr;
  QAction* actionWinAdd = nullptr;

private:
  void CreateActions();
  void CreateOverlay();
  void UpdateEmptyWindow();
  void ReleaseFixedSize();
  void HaltUpdate(U32 PC);

  bool bEnabled = true;
  bool bActive = false;
  bool bHasFocus = false;
  CDockWindow* pDock = nullptr;
  QPointer<QWidget> pFocusProxy;  // the proxy while the window is empty and takes the focus itself
  QActionGroup* pFormatGroup = nullptr;
  QFrame* buttonFrame = nullptr;  // overlay of an empty window
  QLabel* labelEmptyWindow = nullptr;
  QPushButton* buttonEmptyWindow = nullptr;
};

// The window or dock that a widget belongs to: the widget itself or the nearest parent of that kind, null at the top.
CWindow* GetWindow(QWidget* pWidget);
CDockWindow* GetDock(QWidget* pWidget);
CWindow* GetWindowOfDock(QDockWidget* pDock);
