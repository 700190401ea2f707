#include "ui/dock_window.h"

#include <QCloseEvent>
#include <QKeySequence>

#include "shell/actions/action_dispatch.h"
#include "shell/actions/action_ids.h"
#include "shell/look/look.h"
#include "shell/settings/color_ids.h"
#include "shell/settings/fonts.h"
#include "ui/window.h"

namespace {

constexpr int CLOSE_BUTTON_SIZE = 10;  // pixels
constexpr int MIN_HEIGHT = 38;         // pixels
constexpr const char* MIN_WIDTH_TAIL = "----";

}  // namespace

CDockWindow::CDockWindow(const QString& sName, const QString& sTitle, QWidget* pParent) : QDockWidget(sTitle, pParent) {
  setObjectName(sName);
  setAllowedAreas(Qt::LeftDockWidgetArea | Qt::RightDockWidgetArea | Qt::BottomDockWidgetArea);
  setFocusPolicy(Qt::StrongFocus);
  ApplyFont();
  UpdateStyle();
  hide();
}

CDockWindow::~CDockWindow() {
  if (CWindow* const pWindow = GetWindowOfDock(this)) pWindow->ForgetDock();
}

void CDockWindow::ApplyFont() {
  QFont Font = GetFont(FONT_APP);
  // In a font that equals the application's, the style sheet paints the title as the first of them was.
  Font.setStyleStrategy(QFont::PreferMatch);
  setFont(Font);
  QFont Bold = Font;
  Bold.setBold(true);
  setMinimumSize(QFontMetrics(Bold).horizontalAdvance(windowTitle() + QLatin1String(MIN_WIDTH_TAIL)), MIN_HEIGHT);
}

void CDockWindow::SetHighlighted(bool bOn) {
  if (bHasFocus == bOn) return;
  bHasFocus = bOn;
  UpdateStyle();
}

void CDockWindow::UpdateStyle() {
  const QString sButtons =
      QStringLiteral(
          "QDockWidget { titlebar-close-icon: url(:/icons/titlebar-close-icon%1.png); }"
          "QDockWidget::close-button { subcontrol-position: right center; subcontrol-origin: margin; right: 4px;"
          " width: %2px; height: %2px; icon-size: %2px; border: none; background: transparent; }"
          "QDockWidget::float-button { icon-size: 0px; width: 0px; }")
          .arg(bHasFocus || IsDarkPalette() ? QStringLiteral("-white") : QString())
          .arg(CLOSE_BUTTON_SIZE);
  QString sTitle;
  if (bHasFocus) {
    const QString sColor = GetColor(COLOR_HIGHLIGHT_DARK).name();
    sTitle = QStringLiteral(
                 "QDockWidget { color: white; font-weight: bold; }"
                 "QDockWidget::title { text-align: left; padding: 4px 6px;"
                 " background: qlineargradient(x1:0, y1:0, x2:0, y2:1, stop:0 %1, stop:1 %1); }")
                 .arg(sColor);
  } else {
    sTitle = QStringLiteral("QDockWidget::title { text-align: left; padding: 4px 6px; background: %1; }")
                 .arg(QApplication::palette().color(QPalette::Button).name());
  }
  // Setting a style sheet, even the same one, changes the palette, which leads here again.
  if (sButtons + sTitle != styleSheet()) setStyleSheet(sButtons + sTitle);
}

void CDockWindow::closeEvent(QCloseEvent* pEvent) {
  pEvent->ignore();
  PerformAction(ACTION_WINDOW_CLOSE, objectName());
}

void CDockWindow::keyPressEvent(QKeyEvent* pEvent) {
  const QString sKey = QKeySequence(pEvent->keyCombination()).toString();
  const CWindow* const pWindow = GetWindowOfDock(this);
  for (QAction* const pAction : pWindow ? pWindow->actions() : QList<QAction*>()) {
    if (!sKey.isEmpty() && pAction->isEnabled() && pAction->shortcut().toString() == sKey) {
      pAction->trigger();
      return;
    }
  }
  QDockWidget::keyPressEvent(pEvent);
}

void CDockWindow::changeEvent(QEvent* pEvent) {
  if (pEvent->type() == QEvent::PaletteChange)
    QMetaObject::invokeMethod(this, &CDockWindow::UpdateStyle, Qt::QueuedConnection);
  QDockWidget::changeEvent(pEvent);
}
