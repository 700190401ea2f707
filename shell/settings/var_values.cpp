// The values that a variable may take, and their texts.

#include "base/text.h"
#include "shell/settings/named_constants.h"
#include "shell/settings/sys_vars.h"
#include "shell/settings/var_table.h"

namespace {

constexpr QLatin1String RANGE_MIN("SysVarMin");
constexpr QLatin1String RANGE_MAX("SysVarMax");

struct VAR_ENTRY {
  QString sName;
  I64 Value;
};

// The list of sValues, be it entries or the two ends of a range.
QList<VAR_ENTRY> EntriesOf(const SYS_VAR* pVar) {
  QList<VAR_ENTRY> Entries;
  const QStringList Parts = QString::fromUtf8(pVar->sValues).split(u',');
  for (const QString& sPart : Parts) {
    const qsizetype Equals = sPart.lastIndexOf(u'=');
    bool bOk = false;
    Entries.append({sPart.left(Equals), ParseNumber(sPart.mid(Equals + 1), &bOk)});
  }
  return Entries;
}

bool IsSelection(const SYS_VAR* pVar) {
  return pVar && pVar->Type == VAR_TYPE_SELECTION;
}

bool GetRange(const SYS_VAR* pVar, I64* pMin, I64* pMax) {
  const QList<VAR_ENTRY> Entries = EntriesOf(pVar);
  if (Entries.size() != 2 || Entries[0].sName != RANGE_MIN || Entries[1].sName != RANGE_MAX) return false;
  *pMin = Entries[0].Value;
  *pMax = Entries[1].Value;
  return true;
}

QString SelectionText(const SYS_VAR* pVar, U32 Value) {
  for (const VAR_ENTRY& Entry : EntriesOf(pVar)) {
    if (static_cast<U32>(Entry.Value) == Value) return Entry.sName;
  }
  return {};
}

QString NumberText(const SYS_VAR* pVar, U32 Value) {
  const I64 Number = pVar->Type == VAR_TYPE_SIGNED ? static_cast<I32>(Value) : static_cast<I64>(Value);
  I64 Min = 0;
  I64 Max = 0;
  if (!GetRange(pVar, &Min, &Max)) return QStringLiteral("%1 (Could not check range).").arg(Number);
  if (Number >= Min && Number <= Max) return QString::number(Number);
  return QStringLiteral("Value %1 is out of range (Min: %2, Max: %3)").arg(Number).arg(Min).arg(Max);
}

bool ParseSelection(const QString& sText, const QList<VAR_ENTRY>& Entries, I64* pValue) {
  for (const VAR_ENTRY& Entry : Entries) {
    if (Entry.sName.compare(sText, Qt::CaseInsensitive) == 0) {
      *pValue = Entry.Value;
      return true;
    }
  }
  const auto IsListed = [&](I64 Value) {
    return std::any_of(Entries.begin(), Entries.end(), [=](const VAR_ENTRY& Entry) { return Entry.Value == Value; });
  };
  const NAMED_CONST* pConst = FindNamedConst(sText);
  bool bNumber = pConst != nullptr;
  *pValue = pConst ? pConst->Value : 0;
  if (pConst && IsListed(*pValue)) return true;
  *pValue = ParseNumber(sText, &bNumber);
  if (!bNumber) return false;
  if (IsListed(*pValue)) return true;
  if (*pValue < 0 || *pValue >= Entries.size()) return false;
  *pValue = Entries[*pValue].Value;
  return true;
}

bool ParseVarNumber(const SYS_VAR* pVar, const QString& sText, I64* pValue) {
  bool bOk = false;
  *pValue = ParseNumber(sText, &bOk);
  // A number of more than 63 bits comes back as a negative one.
  if (bOk && *pValue < 0 && !sText.contains(u'-')) return false;
  if (!bOk) {
    *pValue = NamedConstValue(sText);
    bOk = *pValue >= 0;
  }
  if (!bOk && pVar->Type == VAR_TYPE_FREQUENCY) *pValue = ParseFrequency(sText, &bOk);
  return bOk && IsVarValueAllowed(pVar, *pValue);
}

}  // namespace

QString GetVarTypeName(const SYS_VAR* pVar) {
  switch (pVar ? pVar->Type : VAR_TYPE_STRING) {
    case VAR_TYPE_SELECTION:
      return QStringLiteral("string selection");
    case VAR_TYPE_SIGNED:
      return QStringLiteral("signed int");
    case VAR_TYPE_UNSIGNED:
    case VAR_TYPE_FREQUENCY:
      return QStringLiteral("unsigned int");
    case VAR_TYPE_STRING:
      break;
  }
  return QStringLiteral("string");
}

bool IsBoolVar(const SYS_VAR* pVar) {
  const QStringList Names = GetVarValueNames(pVar);
  bool bFirst = false;
  bool bSecond = false;
  if (Names.size() != 2) return false;
  ParseBool(Names[0], &bFirst);
  ParseBool(Names[1], &bSecond);
  return bFirst && bSecond;
}

QString GetVarText(const SYS_VAR* pVar, U32 OptionalValue) {
  if (!pVar) return {};
  const U32 Value = OptionalValue == VAR_NONE ? GetVarValue(GetVarIndex(pVar)) : OptionalValue;
  switch (pVar->Type) {
    case VAR_TYPE_SELECTION:
      return SelectionText(pVar, Value);
    case VAR_TYPE_FREQUENCY:
      if (IsVarValueAllowed(pVar, Value)) return FrequencyText(Value);
      return NumberText(pVar, Value);
    case VAR_TYPE_STRING:
      return GetVarString(GetVarIndex(pVar));
    default:
      return NumberText(pVar, Value);
  }
}

QStringList GetVarValueNames(const SYS_VAR* pVar) {
  QStringList Names;
  if (!IsSelection(pVar)) return Names;
  for (const VAR_ENTRY& Entry : EntriesOf(pVar)) Names.append(Entry.sName);
  return Names;
}

QList<I64> GetVarValues(const SYS_VAR* pVar) {
  QList<I64> Values;
  if (!IsSelection(pVar)) return Values;
  for (const VAR_ENTRY& Entry : EntriesOf(pVar)) Values.append(Entry.Value);
  return Values;
}

QString GetVarRangeText(const SYS_VAR* pVar) {
  if (!pVar) return {};
  I64 Min = EntriesOf(pVar).constFirst().Value;
  I64 Max = Min;
  for (const VAR_ENTRY& Entry : EntriesOf(pVar)) {
    Min = std::min(Min, Entry.Value);
    Max = std::max(Max, Entry.Value);
  }
  return QStringLiteral("%1 - %2").arg(Min).arg(Max);
}

bool IsVarValueAllowed(const SYS_VAR* pVar, I64 Value) {
  if (!pVar) return false;
  if (IsSelection(pVar)) return GetVarValues(pVar).contains(Value);
  I64 Min = 0;
  I64 Max = 0;
  return GetRange(pVar, &Min, &Max) && Value >= Min && Value <= Max;
}

U32 ParseVarValue(const SYS_VAR* pVar, const QString& sText, bool* pOk) {
  *pOk = false;
  if (!pVar || pVar->Type == VAR_TYPE_STRING) return 0;
  const QString sValue = Unquoted(sText);
  if (IsBoolVar(pVar)) return ParseBool(sValue, pOk);
  I64 Value = 0;
  *pOk = IsSelection(pVar) ? ParseSelection(sValue, EntriesOf(pVar), &Value) : ParseVarNumber(pVar, sValue, &Value);
  return *pOk ? static_cast<U32>(Value) : 0;
}
