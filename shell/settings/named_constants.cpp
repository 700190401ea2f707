#include "shell/settings/named_constants.h"

#include "base/text.h"

namespace {

constexpr U32 FREQ_VALUE_AUTO = 0;
constexpr U32 FREQ_VALUE_ADAPTIVE = 65535;
constexpr double MAX_FREQ_HZ = 4294967295.0;

bool EqualsText(const QString& sText, const char* sOther) {
  return sText.compare(QLatin1String(sOther), Qt::CaseInsensitive) == 0;
}

}  // namespace

const NAMED_CONST* FindNamedConst(const QString& sText) {
  QString sName = Unquoted(sText);
  if (EqualsText(sName, NAMED_CONST_ALIAS)) sName = QLatin1String(NAMED_CONST_ALIAS_OF);
  for (const NAMED_CONST& Const : NamedConsts) {
    if (EqualsText(sName, Const.sSymbol) || EqualsText(sName, Const.sDisplayText)) return &Const;
  }
  return nullptr;
}

I64 NamedConstValue(const QString& sText) {
  const NAMED_CONST* pConst = FindNamedConst(sText);
  return pConst ? static_cast<I64>(pConst->Value) : -1;
}

const NAMED_CONST* FindNamedConstByValue(const QString& sSymbolPrefix, U32 Value) {
  for (const NAMED_CONST& Const : NamedConsts) {
    if (Const.Value == Value && QLatin1String(Const.sSymbol).startsWith(sSymbolPrefix)) return &Const;
  }
  return nullptr;
}

I64 ParseNumber(const QString& sText, bool* pOk) {
  const QString sNumber = sText.trimmed();
  const U64 Value = sNumber.toULongLong(pOk, 0);
  return *pOk ? static_cast<I64>(Value) : sNumber.toLongLong(pOk, 0);
}

I64 ParseConstOrNumber(const QString& sText, bool* pOk) {
  if (const NAMED_CONST* pConst = FindNamedConst(sText)) {
    *pOk = true;
    return pConst->Value;
  }
  return ParseNumber(Unquoted(sText), pOk);
}

U32 ParseFrequency(const QString& sText, bool* pOk) {
  static const QRegularExpression Form(QStringLiteral("^([0-9]+(?:\\.[0-9]+)?)\\s*([kM]?)Hz$"),
                                       QRegularExpression::CaseInsensitiveOption);
  const QString sFreq = Unquoted(sText);
  *pOk = true;
  if (EqualsText(sFreq, "auto")) return FREQ_VALUE_AUTO;
  if (EqualsText(sFreq, "adaptive")) return FREQ_VALUE_ADAPTIVE;
  const QRegularExpressionMatch Match = Form.match(sFreq);
  const QString sUnit = Match.captured(2).toLower();
  const double Factor = sUnit == u"k" ? 1e3 : sUnit == u"m" ? 1e6 : 1.0;
  const double FreqHz = Match.captured(1).toDouble() * Factor + 0.5;
  *pOk = Match.hasMatch() && FreqHz < MAX_FREQ_HZ;
  return *pOk ? static_cast<U32>(FreqHz) : 0;
}

QString FrequencyText(U32 FreqHz) {
  const NAMED_CONST* pConst = FindNamedConstByValue(QStringLiteral("FREQ_"), FreqHz);
  return pConst ? QString::fromLatin1(pConst->sDisplayText) : QStringLiteral("%1 Hz").arg(FreqHz);
}

bool ParseBool(const QString& sText, bool* pOk) {
  static const QStringList TrueWords = {"true", "on", "1", "0x1", "enabled", "active", "yes"};
  static const QStringList FalseWords = {"false", "off", "0", "0x0", "disabled", "inactive", "no"};
  const QString sWord = Unquoted(sText).toLower();
  const bool bTrue = TrueWords.contains(sWord);
  *pOk = bTrue || FalseWords.contains(sWord);
  return bTrue;
}
