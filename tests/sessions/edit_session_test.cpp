// Variables, colours and fonts are set and refused, at the console and by a script.

#include "session_runner.h"

namespace {

using EditSession = SessionTest;

// A command, what the console writes of it, and the value that it refuses; empty where it takes it.
const struct {
  QString sCommand, sEcho, sRefused;
} EDITS[] = {
    {u"Edit.SysVar (var_reset_mode, \"RESET & RUN\")"_s, u"Edit.SysVar (VAR_RESET_MODE, \"Reset & Run\")"_s, {}},
    {u"Edit.SysVar (VAR_RESET_MODE, 0)"_s, u"Edit.SysVar (VAR_RESET_MODE, \"Reset & Halt\")"_s, {}},
    {u"Edit.SysVar (VAR_RTT_ENABLED, no)"_s, u"Edit.SysVar (VAR_RTT_ENABLED, \"no\")"_s, {}},
    {u"Edit.SysVar (VAR_RTT_ENABLED, 2)"_s, {}, u"2"_s},
    {u"Edit.SysVar (VAR_TIF_SPEED, 0)"_s, u"Edit.SysVar (VAR_TIF_SPEED, \"Auto Speed\")"_s, {}},
    {u"Edit.SysVar (VAR_SWO_CPU_SPEED, 0)"_s, u"Edit.SysVar (VAR_SWO_CPU_SPEED, FREQ_AUTO)"_s, {}},
    {u"Edit.SysVar (VAR_SWO_CPU_SPEED, 2100000000)"_s, {}, u"2100000000"_s},
    {u"Edit.SysVar (VAR_TIF_SCAN_CHAIN_LEN, 1000000000)"_s, {}, {}},
    {u"Edit.SysVar (VAR_TIF_SCAN_CHAIN_LEN, 1000000001)"_s, {}, u"1000000001"_s},
    {u"Edit.SysVar (VAR_TIF_SCAN_CHAIN_LEN, 18446744073709551615)"_s, {}, u"18446744073709551615"_s},
    {u"Edit.SysVar (VAR_TIF_SCAN_CHAIN_LEN, no such value)"_s, {}, u"no such value"_s},
    {u"Edit.SysVar (VAR_BREAK_AT_THIS_SYMBOL, start_up)"_s,
     u"Edit.SysVar (VAR_BREAK_AT_THIS_SYMBOL, \"start_up\")"_s,
     {}},
    {u"Edit.SysVar (VAR_BREAK_AT_THIS_SYMBOL, %1)"_s.arg(QString(101, u's')), {}, QString(101, u's')},
    {u"Edit.Preference (PREF_SHOW_SIDEBAR_SRC, \"NO\")"_s, u"Edit.Preference (PREF_SHOW_SIDEBAR_SRC, 0)"_s, {}},
    {u"Edit.Preference (pref_restrict_src_edit, 1)"_s,
     u"Edit.Preference (PREF_RESTRICT_SRC_EDIT, \"not while debugging\")"_s,
     {}},
    {u"Edit.Preference (PREF_TAB_SPACING, 9)"_s, {}, u"9"_s},
    {u"Edit.Color (\"PC Row Active\", Crimson)"_s, u"Edit.Color (COLOR_PC_ACTIVE, \"#dc143c\")"_s, {}},
    {u"Edit.Color (COLOR_PC_ACTIVE, \"no such value\")"_s, {}, u"no such value"_s},
    {u"Edit.Font (FONT_CONSOLE, \"DejaVu Sans,59pt,bold\")"_s,
     u"Edit.Font (FONT_CONSOLE, \"DejaVu Sans,  59pt,  Bold\")"_s,
     {}},
    {u"Edit.Font (FONT_CONSOLE, \"DejaVu Sans, 60pt, Bold\")"_s, {}, u"DejaVu Sans, 60pt, Bold"_s},
    {u"Edit.SysVar (58, 7)"_s, {}, u"unknown system variable: \"58\""_s},
    {u"Edit.Preference (58, 7)"_s, {}, u"unknown preference: \"58\""_s},
    {u"Edit.Color (45, \"blue\")"_s, {}, u"unknown color: \"45\""_s},
    {u"Edit.Font (11, \"blue\")"_s, {}, u"unknown font: \"11\""_s},
};

void ExpectLines(const SESSION_RESULT& Run, const QStringList& Expected) {
  Run.Expect(0);
  const QStringList Lines = Run.Lines.filter(QRegularExpression(u"^(Edit\\.|refused)"_s));
  EXPECT_EQ(Lines.join(u'\n').toStdString(), Expected.join(u'\n').toStdString());
}

// What the console writes of a row that was set is a statement of a script, which does the same again.
TEST_F(EditSession, AtTheConsoleAndByAScriptOfWhatThatWrites) {
  QStringList Commands, Lines, Accepted;
  for (const auto& [sCommand, sEcho, sRefused] : EDITS) {
    Commands << u'-' + sCommand + u';';
    Lines << (sEcho.isEmpty() ? sCommand : sEcho) + u';';
    if (sRefused.isEmpty()) {
      Accepted << Lines.last();
    } else {
      Lines << sCommand + u": "_s +
                   (sRefused.startsWith(u"unknown") ? sRefused : u"invalid parameter: \"%1\""_s.arg(sRefused));
    }
  }
  ExpectLines(RunSession(Commands.join(u'\n')), Lines);
  const QString sScript =
      u"void OnProjectLoad (void) {\n%1\n"
      "if (Edit.SysVar (VAR_RTT_ENABLED, 2) == 0xFFFFFFFF) Util.Log (\"refused\");\n}\n"_s.arg(Accepted.join(u'\n'));
  ExpectLines(RunWithFile(Write("edit.vdebug", sScript.toUtf8())),
              Accepted + QStringList{u"Edit.SysVar (3, 2);"_s, u"Edit.SysVar (3, 2): invalid parameter: \"2\""_s,
                                     u"refused"_s});
}

}  // namespace
