#include "shell/dialogs/swo_panel.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QSpinBox>

#include "shell/settings/sys_vars.h"
#include "shell/settings/var_ids.h"

namespace {

constexpr int MAX_CPU_CLOCK_HZ = 2147483646;
constexpr int CLOCK_CHARACTERS = 12;  // least width of the clocks

// Clock, unit and "Auto" in a row that the label leads to.
void AddClockRow(QFormLayout* pForm, const QString& sLabel, QWidget* pClock, QCheckBox* pAuto) {
  auto* const pRow = new QHBoxLayout;
  pRow->addWidget(pClock, 1);
  pRow->addWidget(new QLabel(QStringLiteral("Hz")));
  pRow->addWidget(pAuto);
  pForm->addRow(sLabel, pRow);
  qobject_cast<QLabel*>(pForm->labelForField(pRow))->setBuddy(pClock);
}

}  // namespace

CSwoPanel::CSwoPanel(bool bCapable, QWidget* pParent)
    : QWidget(pParent),
      m_pCPUClock(new QSpinBox(this)),
      m_pCPUAuto(new QCheckBox(QStringLiteral("&Auto"), this)),
      m_pSWOClock(new QComboBox(this)),
      m_pSWOAuto(new QCheckBox(QStringLiteral("A&uto"), this)),
      m_bCapable(bCapable) {
  m_pCPUClock->setObjectName(QStringLiteral("CPUClock"));
  m_pCPUClock->setRange(0, bCapable ? MAX_CPU_CLOCK_HZ : 0);
  m_pCPUAuto->setObjectName(QStringLiteral("CPUClockAuto"));
  m_pCPUAuto->setToolTip(QStringLiteral("The clock is measured"));
  m_pSWOClock->setObjectName(QStringLiteral("SWOClock"));
  m_pSWOClock->setEditable(true);
  m_pSWOClock->setInsertPolicy(QComboBox::NoInsert);
  m_pSWOClock->setCompleter(nullptr);
  m_pSWOClock->setMinimumContentsLength(CLOCK_CHARACTERS);
  m_pSWOAuto->setObjectName(QStringLiteral("SWOClockAuto"));
  m_pSWOAuto->setToolTip(QStringLiteral("The highest clock that probe and CPU clock make possible"));
  auto* const pForm = new QFormLayout(this);
  pForm->setContentsMargins(0, 0, 0, 0);
  AddClockRow(pForm, QStringLiteral("&CPU Clock:"), m_pCPUClock, m_pCPUAuto);
  AddClockRow(pForm, QStringLiteral("SWO C&lock:"), m_pSWOClock, m_pSWOAuto);
  if (!bCapable) pForm->addRow(new QLabel(QStringLiteral("Probe or target have no SWO."), this));
  connect(m_pCPUClock, &QSpinBox::valueChanged, this, &CSwoPanel::OnChanged);
  connect(m_pCPUClock, &QSpinBox::editingFinished, this,
          [this] { Q_EMIT CPUClockChanged(static_cast<U32>(m_pCPUClock->value())); });
  connect(m_pCPUAuto, &QCheckBox::toggled, this, [this](bool bOn) {
    OnChanged();
    if (bOn) Q_EMIT CoreSpeedWanted();
  });
  connect(m_pSWOClock, &QComboBox::currentTextChanged, this, &CSwoPanel::OnChanged);
  connect(m_pSWOAuto, &QCheckBox::toggled, this, [this](bool bOn) {
    if (bOn && m_pSWOClock->count() > 0) m_pSWOClock->setCurrentIndex(0);
    OnChanged();
  });
}

void CSwoPanel::OnChanged() {
  m_pCPUAuto->setEnabled(m_bCapable);
  m_pSWOAuto->setEnabled(m_bCapable);
  m_pCPUClock->setEnabled(m_bCapable && !m_pCPUAuto->isChecked());
  m_pCPUClock->setSpecialValueText(m_pCPUAuto->isChecked() ? QStringLiteral("unknown") : QString());
  m_pSWOClock->setEnabled(m_bCapable && !m_pSWOAuto->isChecked());
  Q_EMIT Changed();
}

U32 CSwoPanel::SWOSpeed(bool* pOk) const {
  return m_pSWOClock->currentText().trimmed().toUInt(pOk);
}

void CSwoPanel::ShowSettings(const TRACE_SETTINGS& Settings, U32 CoreSpeed) {
  m_pCPUAuto->setChecked(Settings.CPUSpeed == 0);
  m_pSWOAuto->setChecked(Settings.SWOSpeed == 0);
  m_pCPUClock->setValue(static_cast<int>(Settings.CPUSpeed != 0 ? Settings.CPUSpeed : CoreSpeed));
  if (m_bCapable && Settings.SWOSpeed != 0) m_pSWOClock->setEditText(QString::number(Settings.SWOSpeed));
  OnChanged();
}

void CSwoPanel::SetCoreSpeed(U32 SpeedHz) {
  if (m_bCapable && m_pCPUAuto->isChecked()) m_pCPUClock->setValue(static_cast<int>(SpeedHz));
}

void CSwoPanel::SetSpeeds(const QList<U32>& SpeedsHz) {
  if (!m_bCapable) return;
  const QString sBefore = m_pSWOClock->currentText();
  m_pSWOClock->clear();
  for (const U32 Speed : SpeedsHz) m_pSWOClock->addItem(QString::number(Speed));
  if (m_pSWOAuto->isChecked()) {
    m_pSWOClock->setCurrentIndex(SpeedsHz.isEmpty() ? -1 : 0);
  } else {
    m_pSWOClock->setCurrentIndex(m_pSWOClock->findText(sBefore));
    m_pSWOClock->setEditText(sBefore);
  }
}

// Without the capability the settings stay as they are.
void CSwoPanel::StoreSettings(TRACE_SETTINGS* pSettings) const {
  if (!m_bCapable) return;
  bool bOk = false;
  pSettings->CPUSpeed = m_pCPUAuto->isChecked() ? 0 : static_cast<U32>(m_pCPUClock->value());
  pSettings->SWOSpeed = m_pSWOAuto->isChecked() ? 0 : SWOSpeed(&bOk);
}

bool CSwoPanel::IsInputValid() const {
  if (!m_bCapable) return true;
  bool bNumber = m_pSWOAuto->isChecked();
  const U32 Speed = bNumber ? 0 : SWOSpeed(&bNumber);
  const bool bCPU = m_pCPUAuto->isChecked() || m_pCPUClock->value() > 0;
  return bNumber && (Speed > 0 || m_pSWOAuto->isChecked()) && IsVarValueAllowed(GetVarInfo(VAR_SWO_SPEED), Speed) &&
         bCPU && IsVarValueAllowed(GetVarInfo(VAR_SWO_CPU_SPEED), m_pCPUClock->value());
}
