// How long the main thread waits for what it asks of the target, with the device thread and the simulated board behind
// it. Prints one row per operation: name, median and 90th percentile in microseconds.

#include <QCoreApplication>
#include <QEventLoop>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <vector>

#include "core/vcore.h"
#include "device/device.h"
#include "device/device_data_provider.h"
#include "device/device_event_worker.h"
#include "device/probe_api/register_index.h"

namespace {

using CLOCK = std::chrono::steady_clock;

constexpr U32 CODE = 0x20000000;
constexpr U32 CORE_CORTEX_M4 = 0x0E0000FF;
// adds r0, #1 / adds r1, #2 / b CODE
constexpr U8 LOOP_CODE[] = {0x01, 0x30, 0x02, 0x31, 0xFC, 0xE7};
constexpr int NUM_HALTS = 300;
constexpr int NUM_STEPS = 2000;
constexpr int NUM_IN_FLIGHT = 1000;
constexpr int NUM_DOWNLOADS = 10;
constexpr U32 FLASH = 0x08000000;
constexpr U32 DOWNLOAD_BYTES = 512 * 1024;
constexpr auto LIMIT = std::chrono::seconds(10);

struct CListener : CDeviceEventListener {
  bool bConnected = false, bDisconnected = false, bResumed = false, bWritten = false, bBreakpoint = false;
  bool bDownloaded = false;
  int NumHalts = 0;
  int NumSteps = 0;
  int NumRegisters = 0;
  CLOCK::time_point HaltTime;

  void OnDeviceConnectDone(CONNECT_MODES) override { bConnected = true; }
  void OnDeviceDisconnectDone() override { bDisconnected = true; }
  void OnDeviceResumeDone(RESUME_MODES) override { bResumed = true; }
  void OnDeviceWriteMemDone(U32, U32, U8*) override { bWritten = true; }
  void OnDeviceSetBPDone(U32) override { bBreakpoint = true; }
  void OnDeviceStepInstDone(U32) override { ++NumSteps; }
  void OnDeviceWriteRegDone(U32, U64) override { ++NumRegisters; }
  void OnDeviceEndDownloadDone(const char*) override { bDownloaded = true; }
  void OnDeviceHaltDone(U32, HALT_REASONS) override {
    HaltTime = CLOCK::now();
    ++NumHalts;
  }
};

void WaitUntil(const char* sWhat, const std::function<bool()>& IsReached) {
  const auto End = CLOCK::now() + LIMIT;
  while (!IsReached()) {
    if (CLOCK::now() > End) {
      std::fprintf(stderr, "halt_bench: waited in vain for %s\n", sWhat);
      std::exit(1);
    }
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents, 20);
  }
}

void WaitUntilIdle(CDevice& Device) {
  WaitUntil("the end of all jobs", [&] { return !Device.IsQueueBusy(JQ_ALL) && !Device.HasEvents(); });
}

void Print(const char* sName, std::vector<double> aMicroseconds) {
  std::sort(aMicroseconds.begin(), aMicroseconds.end());
  const size_t Num = aMicroseconds.size();
  std::printf("%s\t%.1f\t%.1f\n", sName, aMicroseconds[Num / 2], aMicroseconds[Num * 9 / 10]);
}

// Time of one run of Do, which waits until all is done, divided by the number of operations in it.
void MeasureWork(const char* sName, int NumRuns, int NumOperations, const std::function<void()>& Do) {
  std::vector<double> aMicroseconds;
  for (int i = 0; i < NumRuns; ++i) {
    const auto Start = CLOCK::now();
    Do();
    const std::chrono::duration<double, std::micro> Time = CLOCK::now() - Start;
    aMicroseconds.push_back(Time.count() / NumOperations);
  }
  Print(sName, std::move(aMicroseconds));
}

// Time from Cause, on the main thread, to the news of the halt that it leads to.
void Measure(const char* sName, CDevice& Device, CListener& Listener, const std::function<void()>& Prepare,
             const std::function<void()>& Cause) {
  std::vector<double> aMicroseconds;
  for (int i = 0; i < NUM_HALTS; ++i) {
    Prepare();
    WaitUntilIdle(Device);
    const int NumBefore = Listener.NumHalts;
    const auto Start = CLOCK::now();
    Cause();
    WaitUntil(sName, [&] { return Listener.NumHalts > NumBefore; });
    aMicroseconds.push_back(std::chrono::duration<double, std::micro>(Listener.HaltTime - Start).count());
  }
  Print(sName, std::move(aMicroseconds));
}

void MeasureSteps(CDevice& Device, CListener& Listener) {
  MeasureWork("instruction step", NUM_STEPS, 1, [&] {
    Listener.NumSteps = 0;
    Device.ScheduleStepInst();
    WaitUntil("the step", [&] { return Listener.NumSteps == 1; });
  });
  // The listeners hear of the last ones only.
  MeasureWork("instruction step, 1000 at once", 10, NUM_IN_FLIGHT, [&] {
    for (int i = 0; i < NUM_IN_FLIGHT; ++i) Device.ScheduleStepInst();
    WaitUntilIdle(Device);
  });
  MeasureWork("job and event, 1000 at once", 20, NUM_IN_FLIGHT, [&] {
    Listener.NumRegisters = 0;
    for (int i = 0; i < NUM_IN_FLIGHT; ++i) Device.ScheduleWriteReg(4, static_cast<U64>(i));
    WaitUntil("the registers", [&] { return Listener.NumRegisters == NUM_IN_FLIGHT; });
  });
}

void MeasureDownload(CDevice& Device, CListener& Listener) {
  // Another image each time, so that all of it is programmed.
  std::vector<U8> aImage(DOWNLOAD_BYTES);
  U32 Seed = 1;
  MeasureWork("download of 512 KB", NUM_DOWNLOADS, 1, [&] {
    for (U8& Byte : aImage) Byte = static_cast<U8>((Seed = Seed * 1664525 + 1013904223) >> 24);
    const U32 aRange[] = {FLASH, FLASH + DOWNLOAD_BYTES};
    Listener.bDownloaded = false;
    Device.ScheduleWriteMemMultiple(1, aRange, DOWNLOAD_BYTES, aImage.data(), 0, 0, MEM_FLAG_DOWNLOAD);
    Device.ScheduleEndDownload(false, "image");
    WaitUntil("the download", [&] { return Listener.bDownloaded; });
  });
}

void Connect(CDevice& Device, CListener& Listener) {
  Device.ScheduleSetConfigParam(DCP_DEVICE_NAME, "STM32F407IE");
  Device.ScheduleSetConfigParam(DCP_CONNECT_MODE, HOST_IF_USB);
  Device.ScheduleSetConfigParam(DCP_TARGET_IF, 1);
  Device.ScheduleConnect(CM_ATTACH);
  WaitUntil("the connection", [&] { return Listener.bConnected; });
  Device.ScheduleHalt();
  WaitUntil("the first halt", [&] { return Listener.NumHalts > 0; });
  Device.ScheduleWriteMem(CODE, sizeof(LOOP_CODE), 0, 0, 0, LOOP_CODE);
  Device.ScheduleWriteReg(VNODE_REG_PC, CODE);
  WaitUntil("the program", [&] { return Listener.bWritten; });
  WaitUntilIdle(Device);
}

}  // namespace

int main(int argc, char** argv) {
  QCoreApplication Application(argc, argv);
  qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
  CDevice::SetLibraryFolder(QStringLiteral(VEXOR_BIN_DIR));
  CDeviceDataProvider::Get();
  CDevice& Device = CDevice::Get();
  const CDeviceEventWorker Worker(Device);
  VCore::Init({CORE_CORTEX_M4, 0, 0}, VCORE_API{});
  CListener Listener;
  Connect(Device, Listener);

  Measure(
      "user's halt", Device, Listener,
      [&] {
        Listener.bResumed = false;
        Device.ScheduleContinue();
        WaitUntil("the program's run", [&] { return Listener.bResumed; });
      },
      [&] { Device.ScheduleHalt(); });
  Device.ScheduleSetBreakpoint(CODE, BP_STATE_ENABLED, BP_TYPE_ANY);
  WaitUntil("the breakpoint", [&] { return Listener.bBreakpoint; });
  // The program needs three instructions from one hit to the next, so that the time is all the debugger's.
  Measure(
      "continue to breakpoint", Device, Listener, [] {}, [&] { Device.ScheduleContinue(); });

  Device.ScheduleClearAllBreakpoints();
  WaitUntilIdle(Device);
  MeasureSteps(Device, Listener);
  MeasureDownload(Device, Listener);

  Device.ScheduleDisconnect();
  WaitUntil("the end", [&] { return Listener.bDisconnected; });
  Device.Shutdown();
  return 0;
}
