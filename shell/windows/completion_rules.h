#pragma once
// What can stand for each parameter of a command, for the completion of typed commands.

#include "base/types.h"

enum COMPLETION_KIND : U8 {
  COMPLETION_NONE,
  COMPLETION_FILE,
  COMPLETION_DIRECTORY,
  COMPLETION_WINDOW,
  COMPLETION_TOOLBAR,
  COMPLETION_PREFERENCE,
  COMPLETION_SYS_VAR,
  COMPLETION_VAR_VALUE,  // of the variable that the first argument names
  COMPLETION_COLOR,
  COMPLETION_COLOR_VALUE,  // of the colour that the first argument names
  COMPLETION_FONT,
  COMPLETION_FONT_VALUE,  // of the font that the first argument names
  COMPLETION_ON_OFF,
  COMPLETION_CONSTANT,  // the named constants whose symbols begin with sPrefix
};

struct COMPLETION_RULE {
  COMPLETION_KIND Kind = COMPLETION_NONE;
  const char* sPrefix = "";
};

// The rule for a parameter (counted from 0) of the row of a command. Numbers of which nothing more is known take every
// named constant, unknown texts nothing.
COMPLETION_RULE FindCompletionRule(U32 ActionID, int Param);
