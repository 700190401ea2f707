#include "shell/settings/preferences.h"

#include <algorithm>

#include "base/text.h"
#include "shell/settings/named_constants.h"
#include "shell/settings/sys_vars.h"

namespace {

constexpr I32 TRACE_DELAY_STEP = 50;                           // picoseconds
constexpr U32 LAST_REPORTED_SYS_VAR = VAR_TRACE_PORT_DELAY_3;  // rows behind it take effect when they are read

struct LISTENER {
  int Handle;
  bool IsPreference;
  VarListener Function;
};

QList<LISTENER>& Listeners() {
  static QList<LISTENER> TheListeners;
  return TheListeners;
}

int AddListener(bool bPreference, const VarListener& Function) {
  static int LastHandle = 0;
  Listeners().append({++LastHandle, bPreference, Function});
  return LastHandle;
}

void Tell(bool bPreference, U32 ID, U32 Value) {
  const QList<LISTENER> Copy = Listeners();
  for (const LISTENER& Listener : Copy) {
    if (Listener.IsPreference == bPreference) Listener.Function(ID, Value);
  }
}

QString Quoted(const QString& sText) {
  return u'"' + sText + u'"';
}

VAR_EDIT Refused(const char* sError, const QString& sArg) {
  VAR_EDIT Edit;
  Edit.sError = QLatin1String(sError);
  Edit.sDetail = Quoted(sArg);
  return Edit;
}

U32 RoundedDelay(U32 Value) {
  const I32 Delay = static_cast<I32>(Value);
  const I32 Rest = (Delay % TRACE_DELAY_STEP + TRACE_DELAY_STEP) % TRACE_DELAY_STEP;
  return static_cast<U32>(Delay - Rest);
}

bool IsTraceDelay(U32 ID) {
  return ID >= VAR_TRACE_PORT_DELAY_0 && ID <= VAR_TRACE_PORT_DELAY_3;
}

int SetSysVar(const SYS_VAR* pVar, const QString& sValue) {
  if (pVar->Type == VAR_TYPE_STRING) return SetVarFromText(pVar, sValue, 0);
  bool bOk = false;
  U32 Value = ParseVarValue(pVar, sValue, &bOk);
  if (!bOk) return -1;
  if (IsTraceDelay(GetVarIndex(pVar))) Value = RoundedDelay(Value);
  return SetVarValue(pVar, Value, 0);
}

VAR_EDIT Done(const SYS_VAR* pVar) {
  VAR_EDIT Edit;
  Edit.ID = GetVarIndex(pVar);
  Edit.Value = pVar->Type == VAR_TYPE_STRING ? 0 : GetVarValue(Edit.ID);
  Edit.sName = GetVarName(Edit.ID);
  Edit.sText = GetVarText(pVar);
  // By its symbol: other constants have the display text of automatic speed.
  if (pVar->Type == VAR_TYPE_FREQUENCY) {
    const NAMED_CONST* const pConst = FindNamedConstByValue(QStringLiteral("FREQ_"), Edit.Value);
    if (pConst) Edit.sText = QLatin1String(pConst->sSymbol);
  }
  return Edit;
}

// An entry's name that could be taken for a constant of another value, such as "None", or has blanks.
bool NeedsQuotes(const SYS_VAR* pVar, const QString& sText) {
  bool bNumber = false;
  ParseNumber(sText, &bNumber);
  return pVar->Type == VAR_TYPE_SELECTION && !bNumber && !IsBoolVar(pVar);
}

}  // namespace

VAR_EDIT EditSysVar(const QString& sVarID, const QString& sValue) {
  const SYS_VAR* pVar = FindVar(sVarID);
  if (!pVar) return Refused("unknown system variable", sVarID);
  if (SetSysVar(pVar, sValue) < 0) return Refused("invalid parameter", sValue);
  VAR_EDIT Edit = Done(pVar);
  if (Edit.ID <= LAST_REPORTED_SYS_VAR) Tell(false, Edit.ID, Edit.Value);
  Edit = Done(pVar);
  if (pVar->Type == VAR_TYPE_SELECTION || pVar->Type == VAR_TYPE_STRING) Edit.sText = Quoted(Edit.sText);
  return Edit;
}

VAR_EDIT EditPreference(const QString& sPrefID, const QString& sValue, bool bSave) {
  const SYS_VAR* pVar = FindVar(sPrefID);
  if (!pVar) return Refused("unknown preference", sPrefID);
  bool bOk = false;
  const U32 Value = ParseVarValue(pVar, sValue, &bOk);
  if (!bOk || SetVarValue(pVar, Value, bSave) < 0) return Refused("invalid parameter", sValue);
  VAR_EDIT Edit = Done(pVar);
  Tell(true, Edit.ID, Edit.Value);
  if (NeedsQuotes(pVar, Edit.sText)) Edit.sText = Quoted(Edit.sText);
  return Edit;
}

U32 GetSysVar(const QString& sVarID, bool* pOk) {
  const SYS_VAR* pVar = FindVar(sVarID);
  if (pOk) *pOk = pVar != nullptr;
  return pVar ? GetVarValue(GetVarIndex(pVar)) : 0;
}

int AddSysVarListener(const VarListener& Listener) {
  return AddListener(false, Listener);
}

int AddPreferenceListener(const VarListener& Listener) {
  return AddListener(true, Listener);
}

void RemoveVarListener(int Handle) {
  Listeners().removeIf([=](const LISTENER& Listener) { return Listener.Handle == Handle; });
}
