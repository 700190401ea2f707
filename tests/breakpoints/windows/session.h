#pragma once
// The main window with the program of these tests open, and what was told to the device.

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QSpinBox>

#include "../../dialogs/drive.h"
#include "../../shell/frame.h"
#include "device/breakpoints/breakpoint_manager.h"
#include "device/device_context.h"
#include "program/database/elfapi.h"
#include "shell/actions/action_dispatch.h"
#include "shell/actions/action_ids.h"
#include "ui/windows/source_window.h"

using namespace Qt::StringLiterals;

constexpr int LINE_INLINE = 29;  // three addresses
constexpr int LINE_PASS = 56;    // one

// Lets the device do what was asked for.
inline void Settle() {
  (void)QTest::qWaitFor([] { return !CDevice::Get().IsJobPending(JT_ANY) && !CDevice::Get().HasEvents(); });
}

inline CMainWindow* StartWithProgram() {
  CMainWindow* const pWindow = StartFrame();
  if (pWindow) {
    PerformAction(ACTION_SET_DEVICE, u"CMSDK_CM4"_s);
    Settle();
    PerformAction(ACTION_FILE_OPEN, QStringLiteral(VEXOR_SOURCE_DIR "/tests/breakpoints/data/lines_O0.elf"));
    // Comes a while after the program.
    (void)QTest::qWaitFor([&] { return ConsoleText(*pWindow).contains(u"source file paths resolved"_s); });
    pWindow->Console().Clear();
  }
  return pWindow;
}

// The device's list as "address state type" in order of addresses.
inline QStringList DeviceList() {
  Settle();
  QStringList Texts;
  for (const BP& Entry : CDevice::Get().Context().Breakpoints.GetAll())
    Texts << u"%1 %2 %3"_s.arg(Entry.Addr, 0, 16).arg(Entry.State).arg(Entry.Type);
  Texts.sort();
  return Texts;
}

// What the console has shown since the last call, without time stamps.
inline QString TakeConsole(CMainWindow& Window) {
  const QString sText = ConsoleText(Window);
  Window.Console().Clear();
  return sText;
}

inline CSrcLoc Line(int Number) {
  return ELFAPI_ParseSrcLoc(u"lines.cpp:%1"_s.arg(Number));
}
