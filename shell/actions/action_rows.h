#pragma once
// The constant part of the action table, in two data files.

#include "shell/actions/action_ids.h"

enum ACTION_ECHO : U8 { ECHO_NONE, ECHO_BEFORE, ECHO_AFTER };  // ECHO_AFTER: once the handler has run

struct ACTION_ROW {
  ACTION_ID ID;
  const char* sObjectName;
  const char* sPrototype;
  const char* sHotkey;
  ACTION_ECHO Echo;
  const char* sArgText;
  const char* sDescription;
  const char* sDisplayText;
};

inline constexpr U32 NUM_COMMAND_ROWS = 151;
inline constexpr U32 NUM_LOCAL_ROWS = 180;
static_assert(NUM_COMMAND_ROWS + NUM_LOCAL_ROWS == NUM_ACTIONS);

extern const ACTION_ROW CommandRows[NUM_COMMAND_ROWS];
extern const ACTION_ROW LocalRows[NUM_LOCAL_ROWS];
