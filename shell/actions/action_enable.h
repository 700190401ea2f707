#pragma once
// Which commands are accepted, and which menu entries are enabled and visible, as data over the session's state.

#include <QString>

#include "base/types.h"

// What the rules look at; the shell fills it in after each change of state.
struct ACTION_STATE {
  bool Connected = false;
  bool Halted = false;
  bool ProjectOpen = false;
  bool ProjectModified = false;
  bool DocumentOpen = false;
  bool ActiveDocumentModified = false;
  bool AnyDocumentModified = false;
  bool HasBreakpoint = false;
  bool HasDataBreakpoint = false;
  bool PCHasSource = false;
  QString sActiveDocument;  // file name of the active document
};

// Verdict on one row.
struct ACTION_ENABLE {
  bool Accepted = true;
  bool GuiEnabled = true;
  bool Visible = true;
};

// True for rows that have a rule; the others are always accepted and their menu entries are their window's business.
bool HasEnableRule(U32 ID);
// HasArgs: the row's action holds an argument.
ACTION_ENABLE EvaluateEnableRule(U32 ID, const ACTION_STATE& State, bool HasArgs);

// Applies the rules to every linked action, and names the active document in the entry of File.Save. Main thread.
void UpdateActions(const ACTION_STATE& State);
