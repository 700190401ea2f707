#include "script/api_stubs.h"

#include <QCoreApplication>
#include <QThread>

#include "device/device.h"
#include "device/device_job.h"
#include "script/ctrans.h"
#include "script/job_waits.h"
#include "script/script_host.h"
#include "shell/actions/action_dispatch.h"
#include "shell/actions/action_ids.h"
#include "shell/actions/action_info.h"
#include "shell/log/console_print.h"
#include "shell/log/log.h"
#include "shell/settings/color_table.h"
#include "shell/settings/fonts.h"
#include "shell/settings/named_constants.h"
#include "shell/settings/sys_vars.h"

namespace {

constexpr U64 FAILED = 0xFFFFFFFF;  // -1 as scripts see it
constexpr int HALT_WAIT_MS = 100;
constexpr int CONTROL_JOBS_WAIT_MS = 120'000;
constexpr int REQUESTS_WAIT_MS = 5000;
constexpr int EVENTS_AFTER_WAIT = 10;

enum class PARAM { TEXT, SIGNED, UNSIGNED, BP_TYPE, ACCESS_TYPE, ACCESS_SIZE };

// Parameters whose numbers stand for named constants, by the last word of their declaration.
PARAM ParamOf(const QString& sParam, bool bString) {
  if (bString) return PARAM::TEXT;
  if (sParam.endsWith(QLatin1String(" AccessType"))) return PARAM::ACCESS_TYPE;
  if (sParam.endsWith(QLatin1String(" AccessSize"))) return PARAM::ACCESS_SIZE;
  if (sParam.endsWith(QLatin1String(" Type"))) return PARAM::BP_TYPE;
  return sParam.startsWith(QLatin1String("unsigned")) ? PARAM::UNSIGNED : PARAM::SIGNED;
}

QString SymbolText(const char* sPrefix, U64 Value) {
  const NAMED_CONST* const pConst = FindNamedConstByValue(QLatin1String(sPrefix), static_cast<U32>(Value));
  return pConst ? QString::fromLatin1(pConst->sSymbol) : QString::number(static_cast<U32>(Value));
}

QString ArgText(const CTrans& Engine, PARAM Kind, U64 Value) {
  switch (Kind) {
    case PARAM::TEXT: {
      const std::string_view sText = Engine.TextAt(Value);
      return QString::fromUtf8(sText.data(), static_cast<qsizetype>(sText.size()));
    }
    case PARAM::SIGNED:
      return QString::number(static_cast<I32>(Value));
    case PARAM::UNSIGNED:
      return QStringLiteral("0x") + QString::number(static_cast<U32>(Value), 16).toUpper();
    case PARAM::BP_TYPE:
      return SymbolText("BP_TYPE_", Value);
    case PARAM::ACCESS_TYPE:
      return SymbolText("AT_", Value);
    case PARAM::ACCESS_SIZE:
      return SymbolText("AW_", Value);
  }
  return {};
}

// A script's string lies in the script heap; a number passed for one does not, and no number is that high.
bool CheckArg(const CTrans& Engine, PARAM Kind, U64 Value) {
  if (Engine.IsHeapPointer(Value) == (Kind == PARAM::TEXT)) return true;
  if (Kind != PARAM::TEXT) {
    PrintConsoleError(
        QStringLiteral("Invalid user function parameter: \"%1\"").arg(ArgText(Engine, PARAM::TEXT, Value)));
    return false;
  }
  PrintConsoleError(QStringLiteral("Invalid user function parameter: %1 (%2)")
                        .arg(QStringLiteral("0x") + QString::number(Value, 16).toUpper(), QString::number(Value)));
  return false;
}

// What the device thread completes after a function of the project stood in for an operation.
void WaitForRequests() {
  CDevice& Device = CDevice::Get();
  if (!Device.IsRequestPending()) return;
  QElapsedTimer Timer;
  Timer.start();
  while (Device.isRunning() && Device.IsRequestPending() && Timer.elapsed() < REQUESTS_WAIT_MS) QThread::msleep(1);
  Device.ProcessEvents(EVENTS_AFTER_WAIT);
}

// The device work of a command that has just run.
bool WaitForCommand(U32 ActionID) {
  if (ActionID == ACTION_DEBUG_START) return WaitForControlJobs();
  for (const JOB_WAIT& Wait : AllJobWaits()) {
    if (Wait.ActionID == ActionID) WaitForJobDone(Wait.JobType, Wait.ProcessEvents);
  }
  WaitForRequests();
  // The file is written when the last event has come.
  while (ActionID == ACTION_TARGET_SAVE_MEMORY && CDevice::Get().HasEvents()) {
    CDevice::Get().ProcessEvents(EVENTS_AFTER_WAIT);
  }
  if (ActionID == ACTION_DEBUG_HALT || ActionID == ACTION_EXEC_RESET) {
    CDevice::Get().WaitUntilHalted(HALT_WAIT_MS);
    CDevice::Get().ProcessEvents(EVENTS_AFTER_WAIT);
  }
  return true;
}

U64 PerformCommand(U32 ActionID, const QStringList& Args) {
  QVariant aArgs[MAX_ACTION_ARGS];
  for (int i = 0; i < Args.size() && i < MAX_ACTION_ARGS; ++i) aArgs[i] = Args[i];
  if (Args.isEmpty()) ClearActionArgs(ActionID);
  const I64 Result = PerformAction(ActionID, aArgs[0], aArgs[1], aArgs[2], aArgs[3], aArgs[4], aArgs[5], aArgs[6]);
  if (Result < 0) return static_cast<U32>(Result);
  return WaitForCommand(ActionID) ? static_cast<U32>(Result) : FAILED;
}

// Commands that answer without the action table, so that a loop over memory prints nothing and a message is not echoed
// as a command.
bool AnswerDirectly(U32 ActionID, const QStringList& Args, U64* pResult) {
  bool bOk = false;
  switch (ActionID) {
    case ACTION_TARGET_READ_U32:
      *pResult = ReadTargetInt(Args.value(0).toUInt(nullptr, 0), 4, &bOk);
      return true;
    case ACTION_TARGET_READ_U16:
      *pResult = ReadTargetInt(Args.value(0).toUInt(nullptr, 0), 2, &bOk);
      return true;
    case ACTION_TARGET_READ_U8:
      *pResult = ReadTargetInt(Args.value(0).toUInt(nullptr, 0), 1, &bOk);
      return true;
    case ACTION_UTIL_LOG:
      PrintConsoleColor(Args.value(0), CONSOLE_COLOR_SCRIPT);
      *pResult = 0;
      return true;
    case ACTION_TARGET_GET_REG:
      *pResult = static_cast<U32>(ReadTargetReg(Args.value(0)));
      return true;
    default:
      return false;
  }
}

// The start symbol is the one variable whose value is a text; the others may be given one, as the console writes them.
bool IsVarText(const CTrans& Engine, U32 ActionID, const U64* paArgs, U32 Index) {
  if (Index != 1 || (ActionID != ACTION_EDIT_SYS_VAR && ActionID != ACTION_EDIT_PREFERENCE)) return false;
  return Engine.IsHeapPointer(paArgs[1]) || (ActionID == ACTION_EDIT_SYS_VAR && paArgs[0] == VAR_BREAK_AT_THIS_SYMBOL);
}

CTRANS_API_FUNC MakeStub(CTrans& Engine, U32 ActionID) {
  std::vector<PARAM> Params;
  for (int i = 0; i < GetParamCount(ActionID); ++i) {
    Params.push_back(ParamOf(GetParamText(ActionID, i), IsStringParam(ActionID, i)));
  }
  return [&Engine, ActionID, Params = std::move(Params)](const U64* paArgs, U32 NumArgs) -> U64 {
    QStringList Args;
    for (U32 i = 0; i < NumArgs && i < Params.size(); ++i) {
      const PARAM Kind = IsVarText(Engine, ActionID, paArgs, i) ? PARAM::TEXT : Params[i];
      if (!CheckArg(Engine, Kind, paArgs[i])) return FAILED;
      Args << ArgText(Engine, Kind, paArgs[i]);
    }
    U64 Result = 0;
    return AnswerDirectly(ActionID, Args, &Result) ? Result : PerformCommand(ActionID, Args);
  };
}

}  // namespace

void RegisterApiFunctions(CTrans& Engine) {
  for (const U32 ID : GetCommandIDs()) {
    for (const QString& sPrototype : {GetPrototype(ID), GetAliasPrototype(ID)}) {
      if (sPrototype.isEmpty()) continue;
      if (Engine.AddApiFunction(sPrototype.toStdString(), MakeStub(Engine, ID)) < 0) {
        LogMsg(QStringLiteral("Error registering API function for ") + GetActionInfo(ID).sObjectName,
               MSG_WARNING | MSG_TO_STDOUT | MSG_TO_FILE);
      }
    }
  }
}

void RegisterConstants(CTrans& Engine) {
  for (const NAMED_CONST& Const : NamedConsts) Engine.AddConstant(Const.sSymbol, Const.Value);
  Engine.AddConstant(NAMED_CONST_ALIAS, NamedConstValue(QLatin1String(NAMED_CONST_ALIAS_OF)));
  for (U32 ID = 0; ID < NUM_VARS; ++ID) Engine.AddConstant(GetVarInfo(ID)->sName, ID);
  for (U32 ID = 0; ID < NUM_COLORS; ++ID) Engine.AddConstant(GetColorInfo(ID)->sName, ID);
  for (U32 ID = 0; ID < NUM_FONTS; ++ID) Engine.AddConstant(GetFontInfo(ID)->sName, ID);
}

void WaitForJobDone(U32 JobType, bool bProcessEvents) {
  CDevice& Device = CDevice::Get();
  Device.WaitForJob(JobType, bProcessEvents);
  Device.ProcessEvents(EVENTS_AFTER_WAIT);
}

bool WaitForControlJobs() {
  CDevice& Device = CDevice::Get();
  QElapsedTimer Timer;
  Timer.start();
  // What a finished job leads to is scheduled when its event is delivered.
  while (Device.isRunning() && (Device.IsQueueBusy(JQ_CONTROL) || Device.IsRequestPending() || Device.HasEvents())) {
    if (Timer.elapsed() > CONTROL_JOBS_WAIT_MS) return false;
    ProcessHostEvents();
    QThread::yieldCurrentThread();
  }
  return true;
}
