#pragma once

#include <QWidget>

#include "program/database/program_build.h"

// Reads a program on a thread of its own and returns when that is done. After 50 ms, and every 50 ms from then on, it
// turns the event loop, with progress in the status bar and the user's input limited to Cancel, which gives
// PROGRAM_BUILD_STOPPED. Main thread.
PROGRAM_BUILD_RESULT ReadProgram(CProgramBuild& Build, const QString& sPath, QWidget* pMainWindow);
