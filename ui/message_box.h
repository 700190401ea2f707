#pragma once

#include <functional>

#include <QDialog>
#include <QDialogButtonBox>

class QCheckBox;

// The one message box. A box may remember that it is not to be shown again: its time-out says for how long.
class CMessageBox : public QDialog {
  Q_OBJECT

public:
  enum RESULTS : int { DECLINED = 0, ACCEPTED = 1, OTHER = 2 };
  // Hours, or one of these.
  enum TIMEOUTS : int { NO_CHECK_BOX = 0, FOR_THIS_RUN = -1, FOR_GOOD = -2, TODAY = 24 };

  // Runs the box, or answers without one when an earlier answer was to be remembered: 1 (run, good) or 0 (hours).
  // sIcon is a name for GetIcon, empty for none.
  static int Show(const QString& sTitle, const QString& sText, int Timeout, const QString& sIcon,
                  QDialogButtonBox::StandardButtons Buttons);
  static CMessageBox* Make(const QString& sTitle, const QString& sText, int Timeout, const QString& sIcon,
                           QDialogButtonBox::StandardButtons Buttons);
  // What is remembered for this run only, and all that is remembered.
  static void PurgeSessionTimeouts();
  static void ResetTimeouts();

  // Takes the place of the user, as in a batch session: gets title, text and the default button's result, and returns
  // the result to use. Null: boxes are shown.
  using RESPONDER = std::function<int(const QString& sTitle, const QString& sText, int DefaultResult)>;
  static void SetResponder(RESPONDER Responder);

  int Result() const { return m_Result; }
  QDialogButtonBox::StandardButton PressedButton() const { return m_Pressed; }
  QPushButton* Button(QDialogButtonBox::StandardButton Which) const { return m_pButtons->button(Which); }

private:
  CMessageBox(const QString& sTitle, const QString& sText, int Timeout, const QString& sIcon,
              QDialogButtonBox::StandardButtons Buttons);
  void LayOutButtons();
  void OnButtonClicked(QAbstractButton* pButton);
  void StoreTimeout() const;

  QString m_sText;
  int m_Timeout;
  int m_Result = OTHER;
  QDialogButtonBox::StandardButton m_Pressed = QDialogButtonBox::NoButton;
  QDialogButtonBox* m_pButtons = nullptr;
  QCheckBox* m_pCheckBox = nullptr;
};
