#include "soak_actions.h"

#include <algorithm>
#include <array>

#include "device/device.h"
#include "device/device_data_provider.h"
#include "device/probe_api/register_index.h"
#include "shell/main_window.h"
#include "shell/windows/console_window.h"

using namespace Qt::StringLiterals;

namespace {

constexpr U32 SCRATCH = 0x20008000;  // RAM that the program does not use
constexpr U32 MAX_BYTES = 3000;
constexpr const char* PROGRAM = VEXOR_SOURCE_DIR "/examples/traffic_light/traffic_light.elf";

const std::vector<const char*> FUNCTIONS = {"main",          "traffic_tick",    "traffic_init",
                                            "crossing_step", "history_add",     "checksum",
                                            "fibonacci",     "SysTick_Handler", "Reset_Handler"};
constexpr U32 LAST_HARD = 0x140;
// Instructions of the example program: starts of functions, and places within.
const std::vector<U32> CODE = {0x44, 0x84, 0xD0, 0x130, 0x140, 0x144, 0x204, 0x226, 0x280, 0x2AA, 0x2C4, 0x31C, 0x330};

// %1 function, %2 code address, %3 data address, %4 small number, %5 path of the program
const std::vector<const char*> LINES = {
    "Debug.Start ();",
    "Debug.Start ();",
    "Debug.Stop ();",
    "Debug.Connect ();",
    "Debug.Disconnect ();",
    "Debug.Download ();",
    "Debug.Continue ();",
    "Debug.Continue ();",
    "Debug.Continue ();",
    "Debug.Halt ();",
    "Debug.Halt ();",
    "Debug.Reset ();",
    "Debug.StepInto ();",
    "Debug.StepOver ();",
    "Debug.StepOut ();",
    "Debug.RunTo (\"%1\");",
    "Debug.SetNextStatement (\"%1\");",
    "Debug.SetNextPC (%2);",
    "Debug.SetResetMode (RM_RESET_HALT);",
    "Debug.SetResetMode (RM_BREAK_AT_SYMBOL);",
    "Debug.SetResetMode (RM_RESET_AND_RUN);",
    "Debug.SetConnectMode (CM_DOWNLOAD_RESET);",
    "Debug.SetConnectMode (CM_ATTACH);",
    "Debug.SetConnectMode (CM_ATTACH_HALT);",
    "Debug.SetSteppingMode (SM_INST);",
    "Debug.SetSteppingMode (SM_LINE);",
    "Break.Set (%2);",
    "Break.SetEx (%2, BP_TYPE_SOFT);",
    "Break.Clear (%2);",
    "Break.Enable (%2);",
    "Break.Disable (%2);",
    "Break.SetOnSrc (\"%1\");",
    "Break.ClearOnSrc (\"%1\");",
    "Break.DisableOnSrc (\"%1\");",
    "Break.EnableOnSrc (\"%1\");",
    "Break.ClearAll ();",
    "Target.ReadU32 (%3);",
    "Target.ReadU8 (%3);",
    "Target.WriteU32 (%3, %4);",
    "Target.WriteU16 (%3, %4);",
    "Target.GetReg (\"PC\");",
    "Target.SetReg (\"R4\", %4);",
    "Target.FillMemory (%3, %4, 0x5A);",
    "Target.SetAccessWidth (AW_WORD);",
    "Exec.Reset ();",
    "Exec.Connect ();",
    "Exec.Download (\"%5\");",
    "File.Load (\"%5\", 0);",
    "Elf.GetExprValue (\"%1\");",
    "View.PC ();",
    "View.Source (\"%1\");",
    "Project.SetTIFSpeed (\"%4 kHz\");",
    "No.Command (%4);",
};

// SetBPEx is not among them: a breakpoint that could not be set when its target came back stays in the list as pending,
// so that the list and the library differ rightly.
const std::vector<const char*> FAULTS = {
    "sim.fail Halt 1",
    "sim.fail Step 1 -1 AFTER 2",
    "sim.fail Reset 1",
    "sim.fail ReadReg 3",
    "sim.fail ReadRegs 2",
    "sim.fail WriteReg 2",
    "sim.fail ReadMem 5",
    "sim.fail WriteMem 2",
    "sim.fail GoEx 1",
    "sim.fail IsHalted 1",
    "sim.fail ClrBPEx 2",
    "sim.fail EndDownload 1",
    "sim.fail-download verify",
    "sim.fail-download compare",
    "sim.refuse-connect 1",
    "sim.refuse-connect 2",
    "sim.lose-connection 0",
    "sim.lose-connection 30",
    "sim.slow 3",
    "sim.no-halt",
    "sim.no-halt silent",
    "sim.power-cycle",
    "sim.bad-memory 0x20000000 0x100",
    "sim.fail Open 1",
    "sim.fail SelectUSB 1",
    "sim.clear-faults",
    "sim.clear-faults",
    "sim.clear-faults",
};

}  // namespace

CSoakActions::CSoakActions(CMainWindow& Window, U32 Seed) : m_Window(Window), m_Random(Seed) {
  AddRunControl();
  AddBreakpoints();
  AddAccess();
  AddProvider();
}

U32 CSoakActions::Draw(U32 Max) {
  // Not a distribution of the library: those differ between its versions.
  return static_cast<U32>((static_cast<U64>(m_Random()) * (static_cast<U64>(Max) + 1)) >> 32);
}

U32 CSoakActions::CodeAddr() {
  return Pick(CODE);
}

U32 CSoakActions::DataAddr() {
  return Draw(9) == 0 ? 0xFFFFFF00 : SCRATCH + Draw(0x1FFF);
}

QString CSoakActions::Type() {
  const auto Hex = [](U32 Value) { return QStringLiteral("0x%1").arg(Value, 8, 16, QLatin1Char('0')); };
  const QString sLine = QString::fromLatin1(Pick(LINES))
                            .replace(u"%1"_s, QLatin1String(Pick(FUNCTIONS)))
                            .replace(u"%2"_s, Hex(CodeAddr()))
                            .replace(u"%3"_s, Hex(DataAddr()))
                            .replace(u"%4"_s, QString::number(1 + Draw(999)))
                            .replace(u"%5"_s, QLatin1String(PROGRAM));
  m_Window.Console().OnCommandEntered(sLine);
  return sLine;
}

QString CSoakActions::Inject() {
  const char* sFault = Pick(FAULTS);
  if (Draw(1) == 0) {
    m_Window.Console().OnCommandEntered(u"Exec.Command (\"%1\");"_s.arg(QLatin1String(sFault)));
  } else {
    CDevice::Get().ScheduleExecVNodeCmd(sFault);
  }
  return QLatin1String(sFault);
}

QString CSoakActions::Call() {
  const CALL& Item = Pick(m_Calls);
  Item.Do();
  return QLatin1String(Item.sName);
}

void CSoakActions::AddRunControl() {
  CDevice& Device = CDevice::Get();
  m_Calls.insert(m_Calls.end(),
                 {
                     {"Halt", [&] { Device.ScheduleHalt(); }},
                     {"Halt", [&] { Device.ScheduleHalt(); }},
                     {"Continue", [&] { Device.ScheduleContinue(); }},
                     {"Continue", [&] { Device.ScheduleContinue(); }},
                     {"Continue, Halt", [&] { Device.ScheduleContinue(), Device.ScheduleHalt(); }},
                     {"Reset", [&] { Device.ScheduleReset(static_cast<RESET_MODES>(Draw(RM_RESET_AND_RUN))); }},
                     {"StepInst",
                      [&] {
                        for (U32 i = Draw(20); i > 0; --i) Device.ScheduleStepInst();
                      }},
                     {"StepInto", [&] { Device.ScheduleStepInto(); }},
                     {"StepOver", [&] { Device.ScheduleStepOver(); }},
                     {"StepOut", [&] { Device.ScheduleStepOut(); }},
                     {"RunTo", [&] { Device.ScheduleRunTo(CodeAddr()); }},
                     {"SetTargetExecState", [&] { Device.ScheduleSetTargetExecState(0, 0); }},
                     {"MeasureCoreSpeed", [&] { Device.ScheduleMeasureCoreSpeed(); }},
                     {"GetDeviceInfo", [&] { Device.ScheduleGetDeviceInfo("STM32F407VG"); }},
                     {"EndDownload", [&] { Device.ScheduleEndDownload(Draw(1) != 0, "soak"); }},
                     {"CancelJobs", [&] { Device.CancelJobs(JT_ANY, Draw(JQ_ALL)); }},
                 });
}

void CSoakActions::AddBreakpoints() {
  CDevice& Device = CDevice::Get();
  const auto State = [this] { return Draw(2) ? BP_STATE_ENABLED : BP_STATE_DISABLED; };
  // Never more that need a comparator than the core has, one left over for runs.
  const auto Type = [this](U32 Addr) {
    const BP_TYPES Drawn = static_cast<BP_TYPES>(Draw(BP_TYPE_SOFT));
    return Drawn == BP_TYPE_HARD && Addr > LAST_HARD ? BP_TYPE_ANY : Drawn;
  };
  m_Calls.insert(m_Calls.end(), {
                                    {"SetBreakpoint",
                                     [=, this, &Device] {
                                       const U32 Addr = CodeAddr();
                                       Device.ScheduleSetBreakpoint(Addr, State(), Type(Addr));
                                     }},
                                    {"ClearBreakpoint", [&, this] { Device.ScheduleClearBreakpoint(CodeAddr()); }},
                                    {"SetBreakpoints",
                                     [=, this, &Device] {
                                       const std::array<U32, 3> aAddr = {CodeAddr(), CodeAddr(), CodeAddr()};
                                       const U32 Last = *std::max_element(aAddr.begin(), aAddr.end());
                                       Device.ScheduleSetBreakpoints(3, aAddr.data(), State(), Type(Last));
                                     }},
                                    {"ClearBreakpoints",
                                     [&, this] {
                                       const std::array<U32, 2> aAddr = {CodeAddr(), CodeAddr()};
                                       Device.ScheduleClearBreakpoints(2, aAddr.data());
                                     }},
                                    {"ClearAllBreakpoints", [&] { Device.ScheduleClearAllBreakpoints(); }},
                                    {"ResetBreakpoints", [&] { Device.ScheduleResetBreakpoints(); }},
                                });
}

void CSoakActions::AddAccess() {
  CDevice& Device = CDevice::Get();
  m_Calls.insert(
      m_Calls.end(),
      {
          {"ReadMem", [&, this] { Device.ScheduleReadMem(DataAddr(), 1 + Draw(MAX_BYTES), 0, 0, 0); }},
          {"ReadMem in chunks",
           [&, this] { Device.ScheduleReadMem(DataAddr(), 1 + Draw(MAX_BYTES), 64, 0, MEM_FLAG_ITEM_WISE); }},
          {"WriteMem",
           [&, this] {
             const std::vector<U8> aData(1 + Draw(MAX_BYTES), static_cast<U8>(Draw(255)));
             const U32 Flags = Draw(3) ? 0u : static_cast<U32>(MEM_FLAG_HALT);
             Device.ScheduleWriteMem(DataAddr(), static_cast<U32>(aData.size()), 0, 0, Flags, aData.data());
           }},
          {"WriteMemMultiple",
           [&] {
             const std::array<U32, 4> aRange = {SCRATCH, SCRATCH + 8, SCRATCH + 64, SCRATCH + 72};
             const std::array<U8, 16> aData = {};
             Device.ScheduleWriteMemMultiple(2, aRange.data(), 16, aData.data(), 0, 0, MEM_FLAG_DOWNLOAD);
           }},
          {"ReadReg", [&, this] { Device.ScheduleReadReg(Draw(VNODE_NUM_REGS)); }},
          {"ReadRegs",
           [&, this] {
             const std::array<U32, 4> aIndex = {0, VNODE_REG_SP, VNODE_REG_PC, Draw(VNODE_NUM_REGS - 1)};
             Device.ScheduleReadRegs(4, aIndex.data());
           }},
          {"WriteReg", [&, this] { Device.ScheduleWriteReg(Draw(7), Draw(1000)); }},
          {"ReadCPReg", [&] { Device.ScheduleReadCPReg("CP15_1_0_0_0"); }},
      });
}

void CSoakActions::AddProvider() {
  CDeviceDataProvider& Provider = CDeviceDataProvider::Get();
  m_Calls.insert(m_Calls.end(),
                 {
                     {"RequestMem", [&, this] { Provider.RequestMem(this, DataAddr(), 1 + Draw(MAX_BYTES), 0, 0, 0); }},
                     {"RequestMem", [&, this] { Provider.RequestMem(this, CodeAddr(), 16, 0, 0, MEM_FLAG_NO_CACHE); }},
                     {"RequestRegs",
                      [&, this] {
                        const std::array<U32, 3> aIndex = {VNODE_REG_SP, VNODE_REG_PC, VNODE_REG_XPSR};
                        Provider.RequestRegs(this, 3, aIndex.data());
                      }},
                     {"GetMem",
                      [&, this] {
                        std::array<U8, 64> aData;
                        Provider.GetMem(this, DataAddr(), 1 + Draw(63), 0, aData.data());
                      }},
                     {"GetReg",
                      [&, this] {
                        U64 Value = 0;
                        Provider.GetReg(this, VNODE_REG_PC, &Value);
                      }},
                     {"CancelMemRequests", [&] { Provider.CancelMemRequests(); }},
                     {"ClearCaches", [&] { Provider.ClearCaches(false); }},
                 });
}
