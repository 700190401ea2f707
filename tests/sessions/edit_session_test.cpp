// Every variable, colour and font is set and refused, at the console and by a script. What the program may answer is
// worked out here from the rows of its tables.

#include "session_runner.h"
#include "shell/settings/color_table.h"
#include "shell/settings/colors.h"
#include "shell/settings/fonts.h"
#include "shell/settings/sys_vars.h"

namespace {

using EditSession = SessionTest;

const QString NO_VALUE = u"no such value"_s;

struct ENTRY {
  QString sName;
  QString sValue;
};

QList<ENTRY> EntriesOf(const SYS_VAR& Var) {
  QList<ENTRY> Entries;
  for (const QString& sPart : QString::fromLatin1(Var.sValues).split(u',')) {
    Entries.append({sPart.section(u'=', 0, -2), sPart.section(u'=', -1)});
  }
  return Entries;
}

QString InQuotes(const QString& sText) {
  return u'"' + sText + u'"';
}

// Commands, and the lines of the console that show them.
struct EXCHANGE {
  QString sCommands;
  QStringList Lines;
  QStringList Accepted;  // those of the lines that have no error behind them

  // sShown, sEchoed: the name and the value as the console writes them.
  void Accept(const char* sCommand, const QString& sName, const QString& sValue, const QString& sShown,
              const QString& sEchoed) {
    sCommands += u"%1 (%2, %3);\n"_s.arg(QLatin1String(sCommand), sName, sValue);
    Accepted += u"%1 (%2, %3);"_s.arg(QLatin1String(sCommand), sShown, sEchoed);
    Lines += Accepted.last();
  }
  // sOffender: the argument that the error names. A console goes on after a command with a minus sign.
  void Refuse(const char* sCommand, const QString& sName, const QString& sValue, const char* sWords,
              const QString& sOffender, const char* sSign = "-") {
    const QString sEcho = u"%1 (%2, %3)"_s.arg(QLatin1String(sCommand), sName, sValue);
    sCommands += QLatin1String(sSign) + sEcho + QLatin1String(";\n");
    Lines +=
        {sEcho + u';', sEcho + QLatin1String(": ") + QLatin1String(sWords) + QLatin1String(": ") + InQuotes(sOffender)};
  }
};

const char* CommandOf(U32 ID) {
  return ID < FIRST_PREFERENCE ? "Edit.SysVar" : "Edit.Preference";
}

// How the console writes a selection's entry, given as its name.
QString EchoedEntry(U32 ID, const QString& sName) {
  bool bNumber = false;
  sName.toInt(&bNumber);
  if (ID < FIRST_PREFERENCE) return InQuotes(sName);
  if (bNumber) return sName;
  if (sName == QLatin1String("yes")) return u"1"_s;
  return sName == QLatin1String("no") ? u"0"_s : InQuotes(sName);
}

// How it writes a number.
QString EchoedNumber(const SYS_VAR& Var, const QString& sValue) {
  const bool bNamed = Var.Type == VAR_TYPE_FREQUENCY && sValue == QLatin1String("0");
  return bNamed ? u"FREQ_AUTO"_s : sValue;
}

void AddSelection(U32 ID, EXCHANGE& Exchange) {
  const SYS_VAR& Var = *GetVarInfo(ID);
  const QString sVar = QLatin1String(Var.sName);
  for (const ENTRY& Entry : EntriesOf(Var)) {
    const QString sEchoed = EchoedEntry(ID, Entry.sName);
    Exchange.Accept(CommandOf(ID), sVar, InQuotes(Entry.sName.toUpper()), sVar, sEchoed);
    Exchange.Accept(CommandOf(ID), sVar.toLower(), Entry.sValue, sVar, sEchoed);
  }
}

void AddRange(U32 ID, EXCHANGE& Exchange) {
  const SYS_VAR& Var = *GetVarInfo(ID);
  const QString sVar = QLatin1String(Var.sName);
  const QString sMin = EntriesOf(Var).constFirst().sValue;
  const QString sMax = EntriesOf(Var).constLast().sValue;
  for (const QString& sValue : {sMin, sMax})
    Exchange.Accept(CommandOf(ID), sVar, sValue, sVar, EchoedNumber(Var, sValue));
  for (const QString& sValue :
       {QString::number(sMin.toLongLong() - 1), QString::number(sMax.toLongLong() + 1), u"18446744073709551615"_s}) {
    Exchange.Refuse(CommandOf(ID), sVar, sValue, "invalid parameter", sValue);
  }
}

EXCHANGE ConsoleExchange() {
  EXCHANGE Exchange;
  for (U32 ID = 0; ID < NUM_VARS; ++ID) {
    const QString sVar = QLatin1String(GetVarInfo(ID)->sName);
    if (GetVarInfo(ID)->Type == VAR_TYPE_STRING) {
      Exchange.Accept(CommandOf(ID), sVar, u"start_up"_s, sVar, u"\"start_up\""_s);
      Exchange.Refuse(CommandOf(ID), sVar, QString(101, u's'), "invalid parameter", QString(101, u's'));
      continue;
    }
    if (GetVarInfo(ID)->Type == VAR_TYPE_SELECTION) {
      AddSelection(ID, Exchange);
    } else {
      AddRange(ID, Exchange);
    }
    Exchange.Refuse(CommandOf(ID), sVar, NO_VALUE, "invalid parameter", NO_VALUE);
  }
  for (U32 ID = 0; ID < NUM_COLORS; ++ID) {
    const QString sColor = QLatin1String(GetColorInfo(ID)->sName);
    const QString sShown = InQuotes(QLatin1String(GetColorInfo(ID)->sDisplayName));
    Exchange.Accept("Edit.Color", sShown, u"Crimson"_s, sColor, u"\"#dc143c\""_s);
    Exchange.Refuse("Edit.Color", sColor, InQuotes(NO_VALUE), "invalid parameter", NO_VALUE);
  }
  const QString sTooLarge = u"DejaVu Sans, 60pt, Bold"_s;
  for (U32 ID = 0; ID < NUM_FONTS; ++ID) {
    const QString sFont = QLatin1String(GetFontInfo(ID)->sName);
    Exchange.Accept("Edit.Font", sFont, u"\"DejaVu Sans,59pt,bold\""_s, sFont, u"\"DejaVu Sans,  59pt,  Bold\""_s);
    Exchange.Refuse("Edit.Font", sFont, InQuotes(sTooLarge), "invalid parameter", sTooLarge);
  }
  const QString sBlue = u"\"blue\""_s;
  Exchange.Refuse("Edit.SysVar", u"58"_s, u"7"_s, "unknown system variable", u"58"_s);
  Exchange.Refuse("Edit.SysVar", u"VAR_NONE"_s, u"7"_s, "unknown system variable", u"VAR_NONE"_s);
  Exchange.Refuse("Edit.Preference", u"58"_s, u"7"_s, "unknown preference", u"58"_s);
  Exchange.Refuse("Edit.Color", u"45"_s, sBlue, "unknown color", u"45"_s);
  Exchange.Refuse("Edit.Font", u"11"_s, sBlue, "unknown font", u"11"_s);
  return Exchange;
}

void ExpectLines(const SESSION_RESULT& Run, const QStringList& Expected) {
  Run.Expect(0);
  const QStringList Lines = Run.Lines.filter(QRegularExpression(u"^(Edit\\.|refused)"_s));
  for (qsizetype i = 0; i < std::min(Lines.size(), Expected.size()); ++i)
    ASSERT_EQ(Lines[i].toStdString(), Expected[i].toStdString()) << "line " << i;
  EXPECT_EQ(Lines.size(), Expected.size());
}

TEST_F(EditSession, TheConsoleSetsAndRefusesEveryRow) {
  const EXCHANGE Exchange = ConsoleExchange();
  ExpectLines(RunSession(Exchange.sCommands), Exchange.Lines);
}

// What the console writes of a row that was set is a statement of a script, which does the same again.
TEST_F(EditSession, AScriptOfWhatTheConsoleWritesDoesTheSame) {
  const QStringList Lines = ConsoleExchange().Accepted;
  EXCHANGE Exchange{Lines.join(u'\n'), Lines};
  Exchange.sCommands += u"  if (Edit.SysVar (VAR_RTT_ENABLED, 2) == 0xFFFFFFFF) Util.Log (\"refused\");\n"_s;
  Exchange.Lines += {u"Edit.SysVar (3, 2);"_s, u"Edit.SysVar (3, 2): invalid parameter: \"2\""_s, u"refused"_s};
  Exchange.Refuse("Edit.Preference", u"58"_s, u"7"_s, "unknown preference", u"58"_s, "");
  const QByteArray Script = "void OnProjectLoad (void) {\n" + Exchange.sCommands.toUtf8() + "}\n";
  ExpectLines(RunWithFile(Write("edit.vdebug", Script)), Exchange.Lines);
}

}  // namespace
