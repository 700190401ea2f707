#pragma once

#include <QList>
#include <QMainWindow>
#include <QMenu>
#include <QToolBar>

// The menus that are filled at run time.
struct DYNAMIC_MENUS {
  QMenu* pRecentProjects = nullptr;
  QMenu* pRecentPrograms = nullptr;
  QMenu* pWindowList = nullptr;  // the windows follow what the table puts there
};

// Builds the menu bar and the tool bars from their tables. Rows whose handler does not exist yet are left out, and so
// is a menu without rows. Called once all handlers are registered.
DYNAMIC_MENUS CreateMenuBar(QMainWindow* pWindow);
QList<QToolBar*> CreateToolBars(QMainWindow* pWindow);
// Icon, tip and check mark of the start and reset buttons as the mode variables have them.
void UpdateModeButtons();
