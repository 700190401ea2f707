#pragma once
// The breakpoint manager over the device, without a target, and the programs of these tests.

#include <gtest/gtest.h>

#include <QCoreApplication>

#include "device/breakpoints/breakpoint_manager.h"
#include "device/device.h"
#include "device/device_context.h"
#include "program/database/elfapi.h"
#include "program/database/file_finder.h"

using namespace Qt::StringLiterals;

const QString DATA = QStringLiteral(VEXOR_SOURCE_DIR "/tests/breakpoints/data/");

class Breakpoints : public testing::Test {
protected:
  static void SetUpTestSuite() {
    static int Argc = 1;
    static char sName[] = "breakpoints_test";
    static char* apArgs[] = {sName, nullptr};
    if (!QCoreApplication::instance()) new QCoreApplication(Argc, apArgs);
    CDevice::SetLibraryFolder(QStringLiteral(VEXOR_BIN_DIR));
  }
  void SetUp() override {
    Manager().ClearAll();
    Finish();
  }
  void TearDown() override { ELFAPI_Unload(); }

  static CBreakpointManager& Manager() { return CBreakpointManager::Get(); }
  static CBreakpointList& List() { return CDevice::Get().Context().Breakpoints; }
  // Lets the device do what was asked for, and tell of it.
  static void Finish() {
    CDevice& Device = CDevice::Get();
    do {
      for (const U32 Type : {JT_EDIT_BP, JT_SET_BP, JT_SET_BPS, JT_CLEAR_BP, JT_CLEAR_BPS, JT_CLEAR_ALL_BPS})
        Device.WaitForJob(Type, false);
      while (Device.ProcessEvents(100) > 0) {
      }
    } while (Device.IsJobPending(JT_ANY));
  }
  static void Load(const QString& sElf) {
    CFileFinder::Get()->SetProgramPath(sElf);
    ASSERT_EQ(ELFAPI_Load(sElf), 0) << sElf.toStdString();
  }
};
