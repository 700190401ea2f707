#include "shell/settings/sys_vars.h"

#include "base/text.h"
#include "shell/settings/named_constants.h"
#include "shell/settings/settings_cache.h"
#include "shell/settings/var_table.h"

namespace {

struct VAR_STATE {
  std::array<std::atomic<U32>, NUM_VARS> Live;
  std::array<U32, NUM_VARS> Saved;
  std::array<QString, NUM_VARS> Texts;  // of string rows
  std::array<bool, NUM_VARS> IsSet;
  std::array<VAR_ACCESSOR, NUM_VARS> Accessors;

  VAR_STATE() { Reset(); }
  void Reset() {
    for (U32 ID = 0; ID < NUM_VARS; ++ID) {
      Live[ID] = static_cast<U32>(SysVars[ID].Default);
      Saved[ID] = static_cast<U32>(SysVars[ID].Default);
      Texts[ID] = QString::fromUtf8(SysVars[ID].sDefault);
      IsSet[ID] = false;
    }
  }
};

VAR_STATE& State() {
  static VAR_STATE TheState;
  return TheState;
}

const SETTING_GROUP& PreferenceGroup() {
  static const SETTING_GROUP Group = {QStringLiteral("AppData"), QStringLiteral("Preferences"),
                                      QStringLiteral("Preferences")};
  return Group;
}

}  // namespace

const SYS_VAR* GetVarInfo(U32 ID) {
  return ID < NUM_VARS ? &SysVars[ID] : nullptr;
}

const SYS_VAR* FindVar(const QString& sText) {
  const QString sName = Unquoted(sText);
  bool bNumber = false;
  const I64 Number = ParseNumber(sName, &bNumber);
  if (bNumber) return Number >= 0 && Number < NUM_VARS ? &SysVars[Number] : nullptr;
  for (const SYS_VAR& Var : SysVars) {
    if (sName.compare(QLatin1String(Var.sName), Qt::CaseInsensitive) == 0) return &Var;
  }
  return nullptr;
}

QString GetVarName(U32 ID) {
  return ID < NUM_VARS ? QString::fromLatin1(SysVars[ID].sName) : QString();
}

U32 GetVarIndex(const SYS_VAR* pVar) {
  return pVar ? static_cast<U32>(pVar - SysVars) : VAR_NONE;
}

U32 GetVarValue(U32 ID) {
  if (ID >= NUM_VARS) return 0;
  const VAR_STATE& Vars = State();
  return Vars.Accessors[ID].Get ? Vars.Accessors[ID].Get() : Vars.Live[ID].load();
}

QString GetVarString(U32 ID) {
  return ID < NUM_VARS ? State().Texts[ID] : QString();
}

U32 GetVarDefault(U32 ID) {
  return ID < NUM_VARS ? static_cast<U32>(SysVars[ID].Default) : 0;
}

U32 GetVarSavedValue(U32 ID) {
  return ID < NUM_VARS ? State().Saved[ID] : 0;
}

int SetVarValue(const SYS_VAR* pVar, U32 Value, U32 Flags) {
  if (!pVar || pVar->Type == VAR_TYPE_STRING) return -1;
  const U32 ID = GetVarIndex(pVar);
  VAR_STATE& Vars = State();
  if (Vars.Accessors[ID].Set) {
    Vars.Accessors[ID].Set(Value);
  } else {
    Vars.Live[ID] = Value;
  }
  if (Flags) Vars.Saved[ID] = Value;
  Vars.IsSet[ID] = true;
  return 0;
}

int SetVarFromText(const SYS_VAR* pVar, const QString& sText, U32 Flags) {
  if (!pVar) return -1;
  QString sValue = sText;
  sValue.remove(u'"');
  if (pVar->Type == VAR_TYPE_STRING) {
    if (sValue.size() > VAR_MAX_TEXT) return -1;
    State().Texts[GetVarIndex(pVar)] = sValue;
    State().IsSet[GetVarIndex(pVar)] = true;
    return 0;
  }
  bool bOk = false;
  if (pVar->Type == VAR_TYPE_UNSIGNED && ParseNumber(sValue, &bOk) < 0 && bOk) return -2;
  const U32 Value = ParseVarValue(pVar, sValue, &bOk);
  return bOk ? SetVarValue(pVar, Value, Flags) : -1;
}

bool IsVarSet(const SYS_VAR* pVar) {
  return pVar && State().IsSet[GetVarIndex(pVar)];
}

void ResetVars() {
  State().Reset();
}

void RegisterVarAccessor(U32 ID, const VAR_ACCESSOR& Accessor) {
  if (ID < NUM_VARS) State().Accessors[ID] = Accessor;
}

void LoadPreferences() {
  for (U32 ID = FIRST_PREFERENCE; ID < NUM_VARS; ++ID) {
    const SYS_VAR* pVar = &SysVars[ID];
    const qlonglong Stored = GetSetting(PreferenceGroup(), GetVarName(ID), qlonglong(pVar->Default)).toLongLong();
    SetVarValue(pVar, static_cast<U32>(IsVarValueAllowed(pVar, Stored) ? Stored : pVar->Default), 1);
  }
}

void SavePreferences() {
  for (U32 ID = FIRST_PREFERENCE; ID < NUM_VARS; ++ID) {
    SetSetting(PreferenceGroup(), GetVarName(ID), State().Saved[ID]);
  }
}
