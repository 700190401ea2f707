#pragma once

#include "device/breakpoints/breakpoint_evaluator.h"
#include "ui/dialog.h"

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QRadioButton;
class QSpinBox;

// The dialog "Breakpoint Properties": when a halt at the breakpoint counts, and what it does beside halting. Offers
// what was entered last.
class CBreakpointDialog : public CDialog {
  Q_OBJECT

public:
  // sPlace is shown. A breakpoint at one address of a source line has a title of its own. The evaluator tells whether a
  // condition can be evaluated; it outlives the dialog.
  CBreakpointDialog(QWidget* pParent, const QString& sPlace, bool bDerived, const BREAKPOINT_EVALUATOR& Evaluator);

  // State: BP_STATES or BP_STATE_MIXED.
  void SetBreakpoint(const CBreakpointProps& Props, U32 State);
  CBreakpointProps Props() const;
  U32 State() const;

  void accept() override;

private:
  QWidget* CreateConditionBox();
  QWidget* CreateActionBox();
  void UpdateHints();

  const BREAKPOINT_EVALUATOR& m_Evaluator;
  QCheckBox* m_pEnabled;
  QComboBox* m_pCondition;
  QRadioButton* m_pWhenTrue;
  QRadioButton* m_pOnChange;
  QLabel* m_pConditionHint;
  QSpinBox* m_pSkip;
  U32 m_SkipCount = 0;  // as it was given
  QComboBox* m_pTask;
  QLabel* m_pTaskHint;
  QComboBox* m_pPopup;
  QComboBox* m_pConsole;
};
