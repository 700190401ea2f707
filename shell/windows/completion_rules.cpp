#include "shell/windows/completion_rules.h"

#include <QString>

#include "shell/actions/action_ids.h"
#include "shell/actions/action_info.h"

namespace {

// The first row that fits counts. NUM_ACTIONS stands for every command, an empty name for every parameter.
struct RULE_ROW {
  U32 ActionID;
  const char* sParam;
  COMPLETION_RULE Rule;
};
constexpr U32 ANY = NUM_ACTIONS;
constexpr RULE_ROW RULES[] = {
    {ACTION_FILE_FIND, "sFileName", {COMPLETION_NONE}},
    {ACTION_EDIT_PREFERENCE, "PrefID", {COMPLETION_PREFERENCE}},
    {ACTION_EDIT_PREFERENCE, "Value", {COMPLETION_VAR_VALUE}},
    {ACTION_EDIT_SYS_VAR, "PrefID", {COMPLETION_SYS_VAR}},
    {ACTION_EDIT_SYS_VAR, "Value", {COMPLETION_VAR_VALUE}},
    {ACTION_DEBUG_SET_RESET_MODE, "Mode", {COMPLETION_CONSTANT, "RM_"}},
    {ACTION_DEBUG_SET_CONNECT_MODE, "Mode", {COMPLETION_CONSTANT, "CM_"}},
    {ANY, "ColorID", {COMPLETION_COLOR}},
    {ANY, "sColor", {COMPLETION_COLOR_VALUE}},
    {ANY, "FontID", {COMPLETION_FONT}},
    {ANY, "sFont", {COMPLETION_FONT_VALUE}},
    {ANY, "sFile", {COMPLETION_FILE}},
    {ANY, "sFileName", {COMPLETION_FILE}},
    {ANY, "sFilePath", {COMPLETION_FILE}},
    {ANY, "sOldPath", {COMPLETION_FILE}},
    {ANY, "sNewPath", {COMPLETION_FILE}},
    {ANY, "sRootPath", {COMPLETION_DIRECTORY}},
    {ANY, "sSearchPath", {COMPLETION_DIRECTORY}},
    {ANY, "sPath", {COMPLETION_DIRECTORY}},
    {ANY, "sSubstitute", {COMPLETION_DIRECTORY}},
    {ANY, "sWindow", {COMPLETION_WINDOW}},
    {ANY, "sToolbar", {COMPLETION_TOOLBAR}},
    {ANY, "sHostIF", {COMPLETION_CONSTANT, "USB|IP"}},
    {ANY, "sTargetIF", {COMPLETION_CONSTANT, "JTAG|SWD"}},
    {ANY, "sTIFSpeed", {COMPLETION_CONSTANT, "FREQ_"}},
    {ANY, "sSWOFreq", {COMPLETION_CONSTANT, "FREQ_"}},
    {ANY, "sCpuFreq", {COMPLETION_CONSTANT, "FREQ_"}},
    {ANY, "FreqHz", {COMPLETION_CONSTANT, "FREQ_"}},
    {ANY, "sSource", {COMPLETION_CONSTANT, "TRACE_SOURCE_"}},
    {ANY, "AccessType", {COMPLETION_CONSTANT, "AT_"}},
    {ANY, "Type", {COMPLETION_CONSTANT, "BP_TYPE_"}},
    {ANY, "Base", {COMPLETION_CONSTANT, "DISPLAY_FORMAT_"}},
    {ACTION_EDIT_DISPLAY_FORMAT, "Format", {COMPLETION_CONSTANT, "DISPLAY_FORMAT_"}},
    {ACTION_TARGET_SET_ACCESS_WIDTH, "Width", {COMPLETION_CONSTANT, "AW_"}},
    {ANY, "OnOff", {COMPLETION_ON_OFF}},
    {ANY, "BigEndian", {COMPLETION_ON_OFF}},
    {ANY, "DoTriggerOnChange", {COMPLETION_ON_OFF}},
};

QString ParamName(U32 ActionID, int Param) {
  const QString sText = GetParamText(ActionID, Param);
  return sText.mid(sText.lastIndexOf(QRegularExpression(QStringLiteral("[ *]"))) + 1);
}

}  // namespace

COMPLETION_RULE FindCompletionRule(U32 ActionID, int Param) {
  if (Param < 0 || Param >= GetParamCount(ActionID)) return {};
  const QString sName = ParamName(ActionID, Param);
  for (const RULE_ROW& Row : RULES) {
    if ((Row.ActionID == ANY || Row.ActionID == ActionID) && sName == QLatin1String(Row.sParam)) return Row.Rule;
  }
  // Some files stand under another name, and say so in the command list.
  const QString sArgText = GetActionInfo(ActionID).sArgText.section(QLatin1Char(','), Param, Param).trimmed();
  if (sArgText == QLatin1String("File")) return {COMPLETION_FILE};
  return IsStringParam(ActionID, Param) ? COMPLETION_RULE{} : COMPLETION_RULE{COMPLETION_CONSTANT, ""};
}
