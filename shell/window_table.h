#pragma once
// The windows in the order in which they are made, as data for the whole program.

#include <span>

#include <Qt>

#include "base/types.h"

class CWindow;
class QWidget;

struct WINDOW_ROW {
  const char* sName;        // object name of the dock; the name that commands use
  const char* sTitle;       // of the dock
  Qt::DockWidgetArea Area;  // NoDockWidgetArea: the central widget
  bool ShownFirst;          // in the default layout
  U32 ShowID;               // row of its entry in the View menu, NUM_ACTIONS for none
  // Makes the window on its dock, or on the main window; null as long as there is no such window.
  CWindow* (*Create)(QWidget* pParent);
};

std::span<const WINDOW_ROW> GetWindowTable();
