#include "shell/dialogs/trace_settings_dialog.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QFrame>
#include <QLabel>
#include <QPushButton>
#include <QStackedWidget>
#include <QVBoxLayout>

#include "device/device.h"
#include "device/device_context.h"
#include "shell/dialogs/swo_panel.h"
#include "shell/dialogs/trace_pins_panel.h"
#include "shell/look/look.h"
#include "shell/settings/named_constants.h"
#include "shell/settings/sys_vars.h"
#include "shell/settings/var_ids.h"

namespace {

constexpr int SPACING = 10;  // pixels
constexpr U32 NUM_SWO_SPEEDS = 10;

bool HasSWO() {
  return CDevice::Get().Context().State.aCapability[HW_CAP_SWO];
}

}  // namespace

CTraceSettingsDialog::CTraceSettingsDialog(QWidget* pParent, const TRACE_SETTINGS& Settings)
    : CDialog(pParent, QStringLiteral("TraceSettingsDialog"), QStringLiteral("Trace Settings")),
      m_Before(Settings),
      m_pSource(new QComboBox(this)),
      m_pPages(new QStackedWidget(this)),
      m_pPins(new CTracePinsPanel(this)),
      m_pSwo(new CSwoPanel(HasSWO(), this)),
      m_pButtons(new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this)) {
  setWindowIcon(GetIcon(QStringLiteral("settings-trace.png")));
  m_pSource->setObjectName(QStringLiteral("TraceSource"));
  const SYS_VAR* const pVar = GetVarInfo(VAR_TRACE_SOURCE);
  for (qsizetype i = 0; i < GetVarValues(pVar).size(); ++i)
    m_pSource->addItem(GetVarValueNames(pVar)[i], GetVarValues(pVar)[i]);
  m_pButtons->button(QDialogButtonBox::Ok)->setDefault(true);
  LayOut();
  m_pPins->ShowSettings(Settings);
  const U32 CoreSpeedHz = CDevice::Get().Context().State.CoreSpeed;
  m_pSwo->ShowSettings(Settings, CoreSpeedHz);
  m_pSource->setCurrentIndex(m_pSource->findData(Settings.Source));
  connect(m_pButtons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(m_pButtons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  connect(m_pSource, &QComboBox::currentIndexChanged, this, &CTraceSettingsDialog::OnSourceChanged);
  connect(m_pPins, &CTracePinsPanel::Changed, this, &CTraceSettingsDialog::OnChanged);
  connect(m_pSwo, &CSwoPanel::Changed, this, &CTraceSettingsDialog::OnChanged);
  connect(m_pSwo, &CSwoPanel::CPUClockChanged, this, &CTraceSettingsDialog::RequestSpeeds);
  connect(m_pSwo, &CSwoPanel::CoreSpeedWanted, this, &CTraceSettingsDialog::RequestCoreSpeed);
  OnSourceChanged();
  RequestSpeeds(Settings.CPUSpeed != 0 ? Settings.CPUSpeed : CoreSpeedHz);
  SetFixedToContents();
}

void CTraceSettingsDialog::LayOut() {
  auto* const pForm = new QFormLayout;
  pForm->addRow(QStringLiteral("Trace &Source:"), m_pSource);
  auto* const pLine = new QFrame(this);
  pLine->setFrameStyle(QFrame::HLine | QFrame::Plain);
  pLine->setForegroundRole(QPalette::Mid);
  m_pPages->addWidget(m_pPins);
  m_pPages->addWidget(m_pSwo);
  auto* const pLayout = new QVBoxLayout(this);
  pLayout->setSpacing(SPACING);
  pLayout->addLayout(pForm);
  pLayout->addWidget(pLine);
  pLayout->addWidget(m_pPages, 1);
  pLayout->addWidget(m_pButtons);
  AlignInputs();
}

// The inputs of all forms begin below each other.
void CTraceSettingsDialog::AlignInputs() {
  int Width = 0;
  for (const QLabel* const pLabel : findChildren<QLabel*>()) {
    if (pLabel->buddy()) Width = std::max(Width, pLabel->sizeHint().width());
  }
  for (QLabel* const pLabel : findChildren<QLabel*>()) {
    if (pLabel->buddy()) pLabel->setMinimumWidth(Width);
  }
}

U32 CTraceSettingsDialog::Source() const {
  return m_pSource->currentData().toUInt();
}

void CTraceSettingsDialog::OnSourceChanged() {
  m_pPages->setCurrentWidget(Source() == TRACE_SOURCE_SWO ? static_cast<QWidget*>(m_pSwo) : m_pPins);
  m_pPins->setEnabled(Source() == TRACE_SOURCE_ETM);
  OnChanged();
}

void CTraceSettingsDialog::OnChanged() {
  m_pButtons->button(QDialogButtonBox::Ok)->setEnabled(Source() != TRACE_SOURCE_SWO || m_pSwo->IsInputValid());
}

TRACE_SETTINGS CTraceSettingsDialog::Settings() const {
  TRACE_SETTINGS Settings = m_Before;
  Settings.Source = Source();
  if (Settings.Source == TRACE_SOURCE_ETM) m_pPins->StoreSettings(&Settings);
  if (Settings.Source == TRACE_SOURCE_SWO) m_pSwo->StoreSettings(&Settings);
  return Settings;
}

void CTraceSettingsDialog::RequestSpeeds(U32 CPUSpeedHz) {
  if (!CDevice::Get().IsConnected() || !HasSWO() || CPUSpeedHz == 0) return;
  DEVICE_JOB Job;
  Job.Type = JT_SWO_GET_COMPAT_SPEEDS;
  Job.Param[0] = CPUSpeedHz;
  Job.Param[1] = NUM_SWO_SPEEDS;
  if (CDevice::Get().RequestDynParam(Job, 0, NUM_SWO_SPEEDS * sizeof(U32)) == 0) CDevice::Get().ScheduleJob(&Job);
}

void CTraceSettingsDialog::RequestCoreSpeed() {
  if (CDevice::Get().IsConnected() && CDevice::Get().IsHalted()) CDevice::Get().ScheduleMeasureCoreSpeed();
}

void CTraceSettingsDialog::OnDeviceGetSWOSpeedsDone(U32, U32 NumItems, U32* paSpeedsHz) {
  QList<U32> Speeds;
  // The unused end of the list is zero.
  for (U32 i = 0; i < std::min(NumItems, NUM_SWO_SPEEDS) && paSpeedsHz[i] != 0; ++i) Speeds << paSpeedsHz[i];
  m_pSwo->SetSpeeds(Speeds);
}

void CTraceSettingsDialog::OnDeviceMeasureCoreSpeedDone(U32 SpeedHz) {
  m_pSwo->SetCoreSpeed(SpeedHz);
  RequestSpeeds(SpeedHz);
}
