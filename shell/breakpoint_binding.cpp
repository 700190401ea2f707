#include "shell/breakpoint_binding.h"

#include <QColor>

#include "device/breakpoints/breakpoint_manager.h"
#include "device/breakpoints/windows/breakpoint_actions.h"
#include "program/database/elfapi.h"
#include "shell/log/console_print.h"
#include "shell/main_window.h"
#include "shell/program_loader.h"
#include "ui/message_box.h"
#include "ui/windows/source_window.h"

namespace {

constexpr QRgb MESSAGE_COLOR = qRgb(0x8E, 0x24, 0xAA);

// After the halt has reached every window: the box waits for the user.
void ShowTriggered(const QString& sConsoleText, const QString& sMsgBoxText) {
  if (!sConsoleText.isEmpty()) PrintConsole(sConsoleText, MESSAGE_COLOR);
  if (sMsgBoxText.isEmpty()) return;
  QMetaObject::invokeMethod(
      &CBreakpointManager::Get(),
      [sMsgBoxText] {
        CMessageBox::Show(QStringLiteral("Breakpoint Triggered"), sMsgBoxText, CMessageBox::NO_CHECK_BOX,
                          QStringLiteral("breakpoint-17.png"), QDialogButtonBox::Ok);
      },
      Qt::QueuedConnection);
}

BREAKPOINT_LOCATION AtCursor(const CSourceWindow& Source) {
  const CODE_PLACE Place = Source.CursorPlace();
  return {Place.bInstruction ? CSrcLoc() : Place.Loc, Place.bInstruction ? Place.Addr : INVALID_ADDR};
}

void AddKey(CSourceWindow& Source, const QKeySequence& Key, void (*Perform)(const BREAKPOINT_LOCATION&)) {
  auto* const pAction = new QAction(&Source);
  pAction->setShortcut(Key);
  pAction->setShortcutContext(Qt::WidgetWithChildrenShortcut);
  QObject::connect(pAction, &QAction::triggered, &Source, [&Source, Perform] {
    const BREAKPOINT_LOCATION Location = AtCursor(Source);
    if (Location.IsValid()) Perform(Location);
  });
  Source.addAction(pAction);
}

}  // namespace

void BindBreakpoints(CMainWindow& Window, CProgramLoader& Loader) {
  CBreakpointManager& Manager = CBreakpointManager::Get();
  QObject::connect(&Loader, &CProgramLoader::AboutToChange, &Manager, &CBreakpointManager::BackupState);
  QObject::connect(&Loader, &CProgramLoader::DataFileOpened, &Manager, [&Manager](const QString& sPath, bool bSame) {
    if (bSame) {
      Manager.RestoreState();
    } else {
      Manager.ForgetState(sPath.isEmpty());
    }
  });
  QObject::connect(&Manager, &CBreakpointManager::Triggered, &Window, ShowTriggered);
  CSourceWindow& Source = Window.Source();
  QObject::connect(&Manager, &CBreakpointManager::Changed, &Source, &CWindow::Repaint);
  QObject::connect(&Manager, &CBreakpointManager::EmptyChanged, &Window, &CMainWindow::OnSessionStateChanged);
  if (const CWindow* const pBreakpoints = Window.FindWindow(QStringLiteral("Breakpoints"), false)) {
    QObject::connect(pBreakpoints, &CWindow::SrcLocSelected, &Source,
                     [&Source](const CSrcLoc& Loc) { Source.ShowLocation(Loc); });
    QObject::connect(pBreakpoints, &CWindow::InstrSelected, &Source,
                     [&Source](I64 Addr) { Source.ShowLocation(ELFAPI_GetFirstSrcLoc(static_cast<U32>(Addr))); });
  }
  AddKey(Source, Qt::Key_F9, [](const BREAKPOINT_LOCATION& Location) { ToggleBreakpoint(Location); });
  AddKey(Source, Qt::SHIFT | Qt::Key_F9, [](const BREAKPOINT_LOCATION& Location) { ToggleBreakpointState(Location); });
  AddKey(Source, Qt::Key_F8, [](const BREAKPOINT_LOCATION& Location) { EditBreakpoint(Location); });
}
