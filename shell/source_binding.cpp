#include "shell/source_binding.h"

#include <memory>

#include "device/breakpoints/breakpoint_manager.h"
#include "device/breakpoints/windows/breakpoint_offer.h"
#include "shell/actions/action_dispatch.h"
#include "shell/main_window.h"
#include "ui/windows/source_window.h"

namespace {

BREAKPOINT_LOCATION BreakpointPlace(const CODE_PLACE& Place) {
  return Place.bInstruction ? BREAKPOINT_LOCATION{{}, Place.Addr} : BREAKPOINT_LOCATION{Place.Loc, INVALID_ADDR};
}

// Text that comes in and goes moves the breakpoints behind it.
void MoveBreakpoints(const EDIT_EVENT& Event) {
  if (Event.NumLines != 0) CBreakpointManager::Get().ShiftLines(Event.FileNo, Event.FirstLine, Event.NumLines);
}

// The actions belong to the window of the breakpoints, which takes them back after each use.
void BindBreakpointActions(CMainWindow& Window, CSourceWindow& Source) {
  CWindow* const pOwner = Window.FindWindow(QStringLiteral("Breakpoints"), false);
  QObject::connect(&Source, &CSourceWindow::BreakpointToggleRequested, &Window, [pOwner](const CODE_PLACE& Place) {
    {
      const CBreakpointOffer Offer(BreakpointPlace(Place));
      if (IsActionEnabled(Offer.ToggleID(), true)) TriggerAction(Offer.ToggleID());
    }
    if (pOwner) pOwner->OnContentChanged();
  });
  const auto pOffer = std::make_shared<std::unique_ptr<CBreakpointOffer>>();
  QObject::connect(&Source, &CSourceWindow::MenuOpening, &Window, [pOffer](const CODE_PLACE& Place) {
    *pOffer = std::make_unique<CBreakpointOffer>(BreakpointPlace(Place));
  });
  QObject::connect(&Source, &CSourceWindow::MenuClosed, &Window, [pOffer, pOwner] {
    pOffer->reset();
    if (pOwner) pOwner->OnContentChanged();
  });
}

}  // namespace

void BindSource(CMainWindow& Window) {
  CSourceWindow& Source = Window.Source();
  BindBreakpointActions(Window, Source);
  QObject::connect(&Source, &CSourceWindow::ArgumentOffered, &Window, &CMainWindow::OnSessionStateChanged);
  QObject::connect(&Source, &CSourceWindow::DocumentStateChanged, &Window, &CMainWindow::OnSessionStateChanged);
  QObject::connect(&Source, &CSourceWindow::DocumentEdited, &Window, MoveBreakpoints);
  CBreakpointManager::Get().SetEditedText([&Source](const QString& sPath) { return Source.UnsavedText(sPath); });
  QObject::connect(&Source, &QObject::destroyed, [] { CBreakpointManager::Get().SetEditedText({}); });
  Source.OnContentChanged();  // linking has enabled all its actions
}
