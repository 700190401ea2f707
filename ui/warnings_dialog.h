#pragma once

#include <functional>

#include "ui/dialog.h"

// A list of things that are wrong, and what to do about it. Its result is a CMessageBox::RESULTS value.
class CWarningsDialog : public CDialog {
  Q_OBJECT

public:
  // A heading, a list, a note, and the buttons Edit (calls OnEdit, stays open), Ignore (default) and Cancel. True for
  // Ignore.
  static bool ShowList(const QString& sTitle, const QString& sText, const QStringList& Warnings, const QString& sNote,
                       const std::function<void()>& OnEdit);
  // A heading and a note with OK.
  static void ShowText(const QString& sTitle, const QString& sText, const QString& sNote);
  // Answers in place of the user, as in a batch session: prints and returns whether to go on. Null: dialogs are shown.
  static void SetResponder(std::function<bool(const QString& sTitle, const QStringList& Lines)> Responder);

private:
  CWarningsDialog(const QString& sTitle, const QString& sText, const QStringList& Warnings, const QString& sNote);
};
