#include "device/breakpoints/windows/breakpoint_dialog.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>

#include "shell/look/look.h"
#include "shell/settings/fonts.h"
#include "ui/input_dialog.h"

namespace {

const QString RECENT = QStringLiteral("RecentExpressionsList");
const QString ON_CHANGE = QStringLiteral("DoTriggerOnChange");
const QString SKIP = QStringLiteral("SkipCount");
const QString TASK = QStringLiteral("FilterTaskID");
const QString MSG_BOX = QStringLiteral("ExtraActionMsgBoxText");
const QString CONSOLE = QStringLiteral("ExtraActionConsoleText");

constexpr int INPUT_CHARACTERS = 40;
constexpr int SPACING = 10;  // pixels

QComboBox* CreateInput(QWidget* pParent, const QStringList& Offered, const char* sName) {
  auto* const pBox = new QComboBox(pParent);
  pBox->setObjectName(QLatin1String(sName));
  pBox->setEditable(true);
  pBox->setCompleter(nullptr);
  pBox->setInsertPolicy(QComboBox::NoInsert);
  pBox->setMinimumWidth(GetTextWidth(FONT_APP, QString(INPUT_CHARACTERS, QLatin1Char('n'))));
  for (const QString& sText : Offered) {
    if (!sText.isEmpty()) pBox->addItem(sText);
  }
  pBox->setEditText(QString());
  return pBox;
}

QLabel* CreateHint(QWidget* pParent, const char* sName) {
  auto* const pHint = new QLabel(pParent);
  pHint->setObjectName(QLatin1String(sName));
  pHint->setTextFormat(Qt::PlainText);
  pHint->setWordWrap(true);
  return pHint;
}

}  // namespace

CBreakpointDialog::CBreakpointDialog(QWidget* pParent, const QString& sPlace, bool bDerived,
                                     const BREAKPOINT_EVALUATOR& Evaluator)
    : CDialog(pParent, QStringLiteral("BreakpointDialog"),
              bDerived ? QStringLiteral("Derived Breakpoint") : QStringLiteral("Breakpoint Properties")),
      m_Evaluator(Evaluator) {
  setWindowIcon(GetIcon(QStringLiteral("breakpoint-dialog.png")));
  auto* const pLayout = new QVBoxLayout(this);
  pLayout->setSpacing(SPACING);
  auto* const pPlace = new QLabel(sPlace, this);
  pPlace->setTextFormat(Qt::PlainText);
  pLayout->addWidget(pPlace);
  m_pEnabled = new QCheckBox(QStringLiteral("&Enabled"), this);
  m_pEnabled->setObjectName(QStringLiteral("Enabled"));
  pLayout->addWidget(m_pEnabled);
  pLayout->addWidget(CreateConditionBox());
  pLayout->addWidget(CreateActionBox());
  pLayout->addStretch();
  auto* const pButtons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
  pButtons->button(QDialogButtonBox::Ok)->setDefault(true);
  pLayout->addWidget(pButtons);
  connect(pButtons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(pButtons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  connect(m_pCondition, &QComboBox::editTextChanged, this, &CBreakpointDialog::UpdateHints);
  connect(m_pTask, &QComboBox::editTextChanged, this, &CBreakpointDialog::UpdateHints);
  m_pCondition->setFocus();
  SetFixedToContents();
}

QWidget* CBreakpointDialog::CreateConditionBox() {
  auto* const pBox = new QGroupBox(QStringLiteral("Halts That Count"), this);
  auto* const pForm = new QFormLayout(pBox);
  m_pCondition = CreateInput(pBox, Setting(RECENT, QStringList()).toStringList(), "Condition");
  m_pWhenTrue = new QRadioButton(QStringLiteral("Trigger when &true"), pBox);
  m_pOnChange = new QRadioButton(QStringLiteral("Trigger on c&hange"), pBox);
  m_pWhenTrue->setObjectName(QStringLiteral("WhenTrue"));
  m_pOnChange->setObjectName(QStringLiteral("OnChange"));
  m_pConditionHint = CreateHint(pBox, "ConditionHint");
  m_pSkip = new QSpinBox(pBox);
  m_pSkip->setObjectName(QStringLiteral("Skip"));
  m_pSkip->setRange(0, INT_MAX);
  m_pSkip->setGroupSeparatorShown(true);
  m_pTask = CreateInput(pBox, {Setting(TASK, QString()).toString()}, "Task");
  m_pTask->lineEdit()->setPlaceholderText(QStringLiteral("All tasks"));
  m_pTaskHint = CreateHint(pBox, "TaskHint");
  pForm->addRow(QStringLiteral("&Condition:"), m_pCondition);
  pForm->addRow(QString(), m_pConditionHint);
  pForm->addRow(QString(), m_pWhenTrue);
  pForm->addRow(QString(), m_pOnChange);
  pForm->addRow(QStringLiteral("&Skip #:"), m_pSkip);
  pForm->addRow(QStringLiteral("Task &Filter:"), m_pTask);
  pForm->addRow(QString(), m_pTaskHint);
  return pBox;
}

QWidget* CBreakpointDialog::CreateActionBox() {
  auto* const pBox = new QGroupBox(QStringLiteral(" Extra Actions"), this);
  auto* const pForm = new QFormLayout(pBox);
  m_pPopup = CreateInput(pBox, {Setting(MSG_BOX, QString()).toString()}, "PopupMessage");
  m_pConsole = CreateInput(pBox, {Setting(CONSOLE, QString()).toString()}, "ConsoleMessage");
  pForm->addRow(QStringLiteral("&Popup Message:"), m_pPopup);
  pForm->addRow(QStringLiteral("Conso&le Message:"), m_pConsole);
  return pBox;
}

void CBreakpointDialog::SetBreakpoint(const CBreakpointProps& Props, U32 State) {
  m_pEnabled->setTristate(State == BP_STATE_MIXED);
  m_pEnabled->setCheckState(State == BP_STATE_MIXED     ? Qt::PartiallyChecked
                            : State == BP_STATE_ENABLED ? Qt::Checked
                                                        : Qt::Unchecked);
  // A breakpoint without condition begins with the choice that was made last.
  const bool bOnChange = Props.Condition.isEmpty() ? Setting(ON_CHANGE, false).toBool() : Props.DoTriggerOnChange;
  (bOnChange ? m_pOnChange : m_pWhenTrue)->setChecked(true);
  m_pCondition->setEditText(Props.Condition);
  m_SkipCount = Props.SkipCount;
  m_pSkip->setValue(static_cast<int>(std::min<U32>(m_SkipCount, INT_MAX)));
  m_pTask->setEditText(Props.FilterTaskID);
  m_pPopup->setEditText(Props.ExtraActionMsgBoxText);
  m_pConsole->setEditText(Props.ExtraActionConsoleText);
  UpdateHints();
}

CBreakpointProps CBreakpointDialog::Props() const {
  CBreakpointProps Props;
  Props.Condition = m_pCondition->currentText().trimmed();
  Props.DoTriggerOnChange = !Props.Condition.isEmpty() && m_pOnChange->isChecked();
  // One that is greater than the field can show stays as it is.
  Props.SkipCount =
      m_pSkip->value() == INT_MAX ? std::max<U32>(m_SkipCount, INT_MAX) : static_cast<U32>(m_pSkip->value());
  Props.FilterTaskID = m_pTask->currentText().trimmed();
  Props.ExtraActionMsgBoxText = m_pPopup->currentText();
  Props.ExtraActionConsoleText = m_pConsole->currentText();
  return Props;
}

U32 CBreakpointDialog::State() const {
  switch (m_pEnabled->checkState()) {
    case Qt::Checked:
      return BP_STATE_ENABLED;
    case Qt::Unchecked:
      return BP_STATE_DISABLED;
    default:
      return BP_STATE_MIXED;
  }
}

// A condition that can't be read does not keep the target from halting; the user is told before that happens.
void CBreakpointDialog::UpdateHints() {
  const QString sCondition = m_pCondition->currentText().trimmed();
  QString sHint;
  QString sReason;
  if (!sCondition.isEmpty() && !m_Evaluator.EvalCondition) {
    sHint = QStringLiteral("Conditions can't be evaluated yet: every halt counts.");
  } else if (!sCondition.isEmpty() && m_Evaluator.CheckCondition && !m_Evaluator.CheckCondition(sCondition, &sReason)) {
    sHint = QStringLiteral("Not an expression: every halt counts. %1").arg(sReason).trimmed();
  }
  m_pConditionHint->setText(sHint);
  m_pConditionHint->setVisible(!sHint.isEmpty());
  m_pWhenTrue->setEnabled(!sCondition.isEmpty());
  m_pOnChange->setEnabled(!sCondition.isEmpty());
  const bool bNoTasks = !m_Evaluator.CurrentTask && !m_pTask->currentText().trimmed().isEmpty();
  m_pTaskHint->setText(bNoTasks ? QStringLiteral("The tasks aren't known: halts of all of them count.") : QString());
  m_pTaskHint->setVisible(bNoTasks);
}

void CBreakpointDialog::accept() {
  const CBreakpointProps Entered = Props();
  if (!Entered.Condition.isEmpty()) {
    StoreSetting(RECENT, CInputDialog::AddToHistory(Setting(RECENT, QStringList()).toStringList(), Entered.Condition));
    StoreSetting(ON_CHANGE, Entered.DoTriggerOnChange);
  }
  StoreSetting(SKIP, Entered.SkipCount);
  StoreSetting(TASK, Entered.FilterTaskID);
  StoreSetting(MSG_BOX, Entered.ExtraActionMsgBoxText);
  StoreSetting(CONSOLE, Entered.ExtraActionConsoleText);
  QDialog::accept();
}
