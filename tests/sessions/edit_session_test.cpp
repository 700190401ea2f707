// Every variable, colour and font is set and refused, at the console and by a script. What the program may answer is
// worked out here from the rows of its tables.

#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>

#include "session_runner.h"
#include "shell/settings/color_table.h"
#include "shell/settings/colors.h"
#include "shell/settings/fonts.h"
#include "shell/settings/sys_vars.h"

namespace {

constexpr const char* NO_VALUE = "no such value";
constexpr int FIRST_FONT_SIZE = 9;  // points, of the first identifier

struct ENTRY {
  QString sName;
  QString sValue;
};

QList<ENTRY> EntriesOf(const SYS_VAR& Var) {
  QList<ENTRY> Entries;
  for (const QString& sPart : QString::fromLatin1(Var.sValues).split(QLatin1Char(','))) {
    Entries.append({sPart.section(QLatin1Char('='), 0, -2), sPart.section(QLatin1Char('='), -1)});
  }
  return Entries;
}

QString InQuotes(const QString& sText) {
  return QLatin1Char('"') + sText + QLatin1Char('"');
}

// Commands, and the lines of the console that show them.
struct EXCHANGE {
  QString sCommands;
  QStringList Lines;

  void Accept(const char* sCommand, const QString& sName, const QString& sValue, const QString& sEchoed) {
    sCommands += QStringLiteral("%1 (%2, %3);\n").arg(QLatin1String(sCommand), sName, sValue);
    Lines += QStringLiteral("%1 (%2, %3);").arg(QLatin1String(sCommand), sName, sEchoed);
  }
  // sOffender: the argument that the error names. A console goes on after a command with a minus sign.
  void Refuse(const char* sCommand, const QString& sName, const QString& sValue, const char* sWords,
              const QString& sOffender, const char* sSign = "-") {
    const QString sEcho = QStringLiteral("%1 (%2, %3)").arg(QLatin1String(sCommand), sName, sValue);
    sCommands += QLatin1String(sSign) + sEcho + QLatin1String(";\n");
    Lines += {sEcho + QLatin1Char(';'),
              sEcho + QLatin1String(": ") + QLatin1String(sWords) + QLatin1String(": ") + InQuotes(sOffender)};
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
  if (sName == QLatin1String("yes")) return QStringLiteral("1");
  return sName == QLatin1String("no") ? QStringLiteral("0") : InQuotes(sName);
}

// How it writes a number.
QString EchoedNumber(const SYS_VAR& Var, const QString& sValue) {
  const bool bNamed = Var.Type == VAR_TYPE_FREQUENCY && sValue == QLatin1String("0");
  return bNamed ? QStringLiteral("FREQ_AUTO") : sValue;
}

void AddSelection(U32 ID, EXCHANGE& Exchange) {
  const SYS_VAR& Var = *GetVarInfo(ID);
  const QString sVar = QLatin1String(Var.sName);
  for (const ENTRY& Entry : EntriesOf(Var)) {
    const QString sEchoed = EchoedEntry(ID, Entry.sName);
    Exchange.Accept(CommandOf(ID), sVar, InQuotes(Entry.sName.toUpper()), sEchoed);
    Exchange.Accept(CommandOf(ID), sVar.toLower(), Entry.sValue, sEchoed);
    Exchange.Lines.last().replace(sVar.toLower(), sVar);
  }
}

void AddRange(U32 ID, EXCHANGE& Exchange) {
  const SYS_VAR& Var = *GetVarInfo(ID);
  const QString sVar = QLatin1String(Var.sName);
  const QString sMin = EntriesOf(Var).constFirst().sValue;
  const QString sMax = EntriesOf(Var).constLast().sValue;
  for (const QString& sValue : {sMin, sMax}) {
    Exchange.Accept(CommandOf(ID), sVar, sValue, EchoedNumber(Var, sValue));
  }
  for (const QString& sValue : {QString::number(sMin.toLongLong() - 1), QString::number(sMax.toLongLong() + 1),
                                QStringLiteral("18446744073709551615")}) {
    Exchange.Refuse(CommandOf(ID), sVar, sValue, "invalid parameter", sValue);
  }
}

EXCHANGE ConsoleExchange() {
  EXCHANGE Exchange;
  for (U32 ID = 0; ID < NUM_VARS; ++ID) {
    const QString sVar = QLatin1String(GetVarInfo(ID)->sName);
    if (GetVarInfo(ID)->Type == VAR_TYPE_STRING) {
      Exchange.Accept(CommandOf(ID), sVar, QStringLiteral("start_up"), QStringLiteral("\"start_up\""));
      Exchange.Refuse(CommandOf(ID), sVar, QString(101, QLatin1Char('s')), "invalid parameter",
                      QString(101, QLatin1Char('s')));
      continue;
    }
    if (GetVarInfo(ID)->Type == VAR_TYPE_SELECTION) {
      AddSelection(ID, Exchange);
    } else {
      AddRange(ID, Exchange);
    }
    Exchange.Refuse(CommandOf(ID), sVar, QLatin1String(NO_VALUE), "invalid parameter", QLatin1String(NO_VALUE));
  }
  for (U32 ID = 0; ID < NUM_COLORS; ++ID) {
    const QString sColor = QLatin1String(GetColorInfo(ID)->sName);
    const QString sShown = InQuotes(QLatin1String(GetColorInfo(ID)->sDisplayName));
    Exchange.Accept("Edit.Color", sShown, QStringLiteral("Crimson"), QStringLiteral("\"#dc143c\""));
    Exchange.Lines.last().replace(sShown, sColor);
    Exchange.Refuse("Edit.Color", sColor, InQuotes(QLatin1String(NO_VALUE)), "invalid parameter",
                    QLatin1String(NO_VALUE));
  }
  const QString sTooLarge = QStringLiteral("DejaVu Sans, 60pt, Bold");
  for (U32 ID = 0; ID < NUM_FONTS; ++ID) {
    const QString sFont = QLatin1String(GetFontInfo(ID)->sName);
    Exchange.Accept("Edit.Font", sFont, QStringLiteral("\"DejaVu Sans,59pt,bold\""),
                    QStringLiteral("\"DejaVu Sans,  59pt,  Bold\""));
    Exchange.Refuse("Edit.Font", sFont, InQuotes(sTooLarge), "invalid parameter", sTooLarge);
  }
  const QString sBlue = QStringLiteral("\"blue\"");
  Exchange.Refuse("Edit.SysVar", QStringLiteral("58"), QStringLiteral("7"), "unknown system variable",
                  QStringLiteral("58"));
  Exchange.Refuse("Edit.SysVar", QStringLiteral("VAR_NONE"), QStringLiteral("7"), "unknown system variable",
                  QStringLiteral("VAR_NONE"));
  Exchange.Refuse("Edit.Preference", QStringLiteral("58"), QStringLiteral("7"), "unknown preference",
                  QStringLiteral("58"));
  Exchange.Refuse("Edit.Color", QStringLiteral("45"), sBlue, "unknown color", QStringLiteral("45"));
  Exchange.Refuse("Edit.Font", QStringLiteral("11"), sBlue, "unknown font", QStringLiteral("11"));
  return Exchange;
}

QStringList EditLines(const SESSION_RESULT& Run) {
  return Run.Lines.filter(QRegularExpression(QStringLiteral("^(Edit\\.|refused)")));
}

void ExpectLines(const SESSION_RESULT& Run, const QStringList& Expected) {
  const QStringList Lines = EditLines(Run);
  for (qsizetype i = 0; i < std::min(Lines.size(), Expected.size()); ++i) {
    ASSERT_EQ(Lines[i].toStdString(), Expected[i].toStdString()) << "line " << i;
  }
  EXPECT_EQ(Lines.size(), Expected.size()) << Run.sOutput.toStdString();
}

TEST(EditSession, TheConsoleSetsAndRefusesEveryRow) {
  const EXCHANGE Exchange = ConsoleExchange();
  const SESSION_RESULT Run = RunSession(Exchange.sCommands);
  EXPECT_EQ(0, Run.ExitCode);
  ExpectLines(Run, Exchange.Lines);
}

TEST(EditSession, WhatTheConsoleWritesDoesTheSameAgain) {
  EXCHANGE Exchange = ConsoleExchange();
  Exchange.Lines.removeIf([](const QString& sLine) { return !sLine.endsWith(QLatin1String(");")); });
  QString sCommands;
  for (const QString& sLine : Exchange.Lines) sCommands += QLatin1Char('-') + sLine + QLatin1Char('\n');
  QStringList Lines = EditLines(RunSession(sCommands));
  Lines.removeIf([](const QString& sLine) { return !sLine.endsWith(QLatin1String(");")); });
  EXPECT_EQ(Lines.join(QLatin1Char('\n')).toStdString(), Exchange.Lines.join(QLatin1Char('\n')).toStdString());
}

// Scripts name rows by constants, and give values as numbers or as texts.
EXCHANGE ScriptExchange() {
  EXCHANGE Exchange;
  for (U32 ID = 0; ID < NUM_VARS; ++ID) {
    const SYS_VAR& Var = *GetVarInfo(ID);
    const QString sVar = QLatin1String(Var.sName);
    const ENTRY Last = EntriesOf(Var).constLast();
    if (Var.Type == VAR_TYPE_STRING) {
      Exchange.Accept(CommandOf(ID), sVar, QStringLiteral("\"start_up\""), QStringLiteral("\"start_up\""));
    } else if (Var.Type == VAR_TYPE_SELECTION) {
      Exchange.Accept(CommandOf(ID), sVar, Last.sValue, EchoedEntry(ID, Last.sName));
      Exchange.Accept(CommandOf(ID), sVar, InQuotes(Last.sName), EchoedEntry(ID, Last.sName));
    } else {
      Exchange.Accept(CommandOf(ID), sVar, Last.sValue, EchoedNumber(Var, Last.sValue));
    }
  }
  for (U32 ID = 0; ID < NUM_COLORS; ++ID) {
    const QString sText = QStringLiteral("\"#aa00%1\"").arg(ID, 2, 16, QLatin1Char('0'));
    Exchange.Accept("Edit.Color", QLatin1String(GetColorInfo(ID)->sName), sText.toUpper(), sText);
  }
  for (U32 ID = 0; ID < NUM_FONTS; ++ID) {
    const QString sText = QStringLiteral("\"DejaVu Sans,  %1pt,  Bold\"").arg(FIRST_FONT_SIZE + static_cast<int>(ID));
    Exchange.Accept("Edit.Font", QLatin1String(GetFontInfo(ID)->sName), sText, sText);
  }
  return Exchange;
}

TEST(EditSession, AScriptSetsEveryRowByItsConstant) {
  EXCHANGE Exchange = ScriptExchange();
  const QString sAnswer =
      QStringLiteral("  if (Edit.SysVar (VAR_RTT_ENABLED, 2) == 0xFFFFFFFF) Util.Log (\"refused\");\n");
  Exchange.sCommands += sAnswer;
  Exchange.Lines += {QStringLiteral("Edit.SysVar (3, 2);"),
                     QStringLiteral("Edit.SysVar (3, 2): invalid parameter: \"2\""), QStringLiteral("refused")};
  Exchange.Refuse("Edit.Preference", QStringLiteral("58"), QStringLiteral("7"), "unknown preference",
                  QStringLiteral("58"), "");
  QTemporaryDir Dir;
  QFile Script(Dir.filePath(QStringLiteral("edit.vdebug")));
  ASSERT_TRUE(Script.open(QIODevice::WriteOnly));
  Script.write("void OnProjectLoad (void) {\n" + Exchange.sCommands.toUtf8() + "}\n");
  Script.close();
  const SESSION_RESULT Run = RunSession(QStringLiteral("File.Open (\"%1\");\n@wait idle\n").arg(Script.fileName()));
  EXPECT_EQ(0, Run.ExitCode);
  ExpectLines(Run, Exchange.Lines);
}

}  // namespace
