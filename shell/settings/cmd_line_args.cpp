#include "shell/settings/cmd_line_args.h"

#include "base/text.h"

namespace {

CMD_LINE_ARGS TheArgs;

enum OPTION_FORM : U8 { OPTION_NEEDS_VALUE, OPTION_OPTIONAL_VALUE };

struct OPTION {
  const char* sName;
  OPTION_FORM Form;
  QString CMD_LINE_ARGS::*pField;
  bool IsPath;
  const char* sHostIF;  // host interface that the option selects, or null
};

constexpr OPTION Options[] = {
    {"device", OPTION_NEEDS_VALUE, &CMD_LINE_ARGS::sDevice, false, nullptr},
    {"usb", OPTION_OPTIONAL_VALUE, &CMD_LINE_ARGS::sHostIFIdent, false, "USB"},
    {"ip", OPTION_OPTIONAL_VALUE, &CMD_LINE_ARGS::sHostIFIdent, false, "IP"},
    {"if", OPTION_NEEDS_VALUE, &CMD_LINE_ARGS::sTargetIF, false, nullptr},
    {"speed", OPTION_NEEDS_VALUE, &CMD_LINE_ARGS::sTIFSpeed, false, nullptr},
    {"datafile", OPTION_NEEDS_VALUE, &CMD_LINE_ARGS::sProgramFile, true, nullptr},
    {"programfile", OPTION_NEEDS_VALUE, &CMD_LINE_ARGS::sProgramFile, true, nullptr},
    {"project", OPTION_NEEDS_VALUE, &CMD_LINE_ARGS::sProjectFile, true, nullptr},
    {"logfile", OPTION_NEEDS_VALUE, &CMD_LINE_ARGS::sLogFile, true, nullptr},
    {"loginterval", OPTION_NEEDS_VALUE, &CMD_LINE_ARGS::sLogInterval, false, nullptr},
    {"vnodescriptfile", OPTION_NEEDS_VALUE, &CMD_LINE_ARGS::sVNodeScriptFile, false, nullptr},
    {"jtagconfig", OPTION_NEEDS_VALUE, &CMD_LINE_ARGS::sJTAGConfig, false, nullptr},
};

void ApplyOption(const OPTION& Option, const QString& sNext, bool bHasValue, CMD_LINE_ARGS* pArgs) {
  if (!bHasValue && Option.Form == OPTION_NEEDS_VALUE) return;
  const QString sValue = bHasValue ? Unquoted(sNext) : QString();
  if (Option.sHostIF) pArgs->sHostIF = QLatin1String(Option.sHostIF);
  pArgs->*Option.pField = Option.IsPath ? NormalisedPath(sValue) : sValue;
}

// The options without a field of their own.
bool ApplySpecial(const QString& sName, CMD_LINE_ARGS* pArgs) {
  if (sName == u"debug") {
    pArgs->DebugMode = true;
  } else if (sName == u"lumpack") {
    pArgs->sDevice = QStringLiteral("MK66FN2M0XXX18");
    pArgs->sTargetIF = QStringLiteral("SWD");
    pArgs->sTIFSpeed = QStringLiteral("2000");
  } else {
    return false;
  }
  return true;
}

// "usb=123" becomes the option -usb with the value 123.
void SplitSelection(const QString& sSelection, qsizetype Index, QStringList* pArguments) {
  const qsizetype Equals = sSelection.indexOf(u'=');
  (*pArguments)[Index] = u'-' + sSelection.left(Equals);
  if (Equals >= 0) pArguments->insert(Index + 1, sSelection.mid(Equals + 1));
}

QString OptionName(QString sArg) {
  while (sArg.startsWith(u'-')) sArg.remove(0, 1);
  return sArg.toLower();
}

}  // namespace

CMD_LINE_ARGS ParseCmdLine(QStringList Arguments) {
  CMD_LINE_ARGS Args;
  for (qsizetype i = 0; i < Arguments.size(); ++i) {
    if (!Arguments.at(i).startsWith(u'-')) continue;
    const QString sName = OptionName(Arguments.at(i));
    const QString sNext = Arguments.value(i + 1);
    const bool bHasValue = i + 1 < Arguments.size() && !sNext.startsWith(u'-');
    if (sName == u"select") {
      if (bHasValue) SplitSelection(Unquoted(sNext).toLower(), i + 1, &Arguments);
      continue;
    }
    if (ApplySpecial(sName, &Args)) continue;
    for (const OPTION& Option : Options) {
      if (sName == QLatin1String(Option.sName)) ApplyOption(Option, sNext, bHasValue, &Args);
    }
  }
  return Args;
}

void SetCmdLineArgs(const CMD_LINE_ARGS& Args) {
  TheArgs = Args;
}

const CMD_LINE_ARGS& GetCmdLineArgs() {
  return TheArgs;
}
