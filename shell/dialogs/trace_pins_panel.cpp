#include "shell/dialogs/trace_pins_panel.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QSignalBlocker>

namespace {

constexpr I32 MIN_DELAY_PS = -5000;
constexpr I32 MAX_DELAY_PS = 5000;
constexpr I32 DELAY_STEP_PS = 50;
constexpr double PS_PER_NS = 1000.0;
constexpr int DELAY_DECIMALS = 2;
constexpr U32 WIDTHS[] = {1, 2, 4};
constexpr const char* WIDTH_TEXTS[] = {"1 Bit", "2 Bit", "4 Bit"};

QString DelayText(I32 Picoseconds) {
  return (Picoseconds > 0 ? QStringLiteral("+") : QString()) +
         QString::number(Picoseconds / PS_PER_NS, 'f', DELAY_DECIMALS) + QStringLiteral(" ns");
}

}  // namespace

CTracePinsPanel::CTracePinsPanel(QWidget* pParent)
    : QWidget(pParent),
      m_pForm(new QFormLayout(this)),
      m_pWidth(new QComboBox(this)),
      m_pOverride(new QCheckBox(QStringLiteral("&Override Timings"), this)),
      m_pIdentical(new QCheckBox(QStringLiteral("&Identical delays for all data lines"), this)) {
  m_pForm->setContentsMargins(0, 0, 0, 0);
  m_pWidth->setObjectName(QStringLiteral("TracePortWidth"));
  for (size_t i = 0; i < std::size(WIDTHS); ++i) m_pWidth->addItem(QLatin1String(WIDTH_TEXTS[i]), WIDTHS[i]);
  m_pOverride->setObjectName(QStringLiteral("OverrideTimings"));
  m_pIdentical->setObjectName(QStringLiteral("IdenticalDelays"));
  m_pForm->addRow(QStringLiteral("Trace Port &Width:"), m_pWidth);
  m_pForm->addRow(m_pOverride);
  m_pForm->addRow(m_pIdentical);
  connect(m_pWidth, &QComboBox::currentIndexChanged, this, &CTracePinsPanel::OnChanged);
  connect(m_pOverride, &QCheckBox::toggled, this, &CTracePinsPanel::OnChanged);
  connect(m_pIdentical, &QCheckBox::toggled, this, &CTracePinsPanel::OnChanged);
  for (U32 Line = 0; Line < NUM_TRACE_DELAYS; ++Line) {
    auto* const pDelay = new QComboBox(this);
    pDelay->setObjectName(QStringLiteral("Delay%1").arg(Line));
    for (I32 Delay = MIN_DELAY_PS; Delay <= MAX_DELAY_PS; Delay += DELAY_STEP_PS)
      pDelay->addItem(DelayText(Delay), Delay);
    m_paDelay[Line] = pDelay;
    m_pForm->addRow(QStringLiteral("Delay D&%1:").arg(Line), pDelay);
    connect(pDelay, &QComboBox::currentIndexChanged, this, &CTracePinsPanel::OnChanged);
  }
}

U32 CTracePinsPanel::NumLines() const {
  return m_pWidth->currentData().toUInt();
}

I32 CTracePinsPanel::Delay(U32 Line) const {
  return m_paDelay[Line]->currentData().toInt();
}

void CTracePinsPanel::SelectDelay(U32 Line, I32 Picoseconds) {
  const QSignalBlocker Blocker(m_paDelay[Line]);
  const int Entry = m_paDelay[Line]->findData(Picoseconds);
  m_paDelay[Line]->setCurrentIndex(Entry >= 0 ? Entry : m_paDelay[Line]->findData(TRACE_DELAY_DEFAULT_PS));
}

void CTracePinsPanel::OnChanged() {
  if (m_pIdentical->isChecked()) {
    for (U32 Line = 1; Line < NUM_TRACE_DELAYS; ++Line) SelectDelay(Line, Delay(0));
  }
  ShowRows();
  Q_EMIT Changed();
}

void CTracePinsPanel::ShowRows() {
  const bool bOverride = m_pOverride->isChecked();
  m_pForm->setRowVisible(m_pIdentical, NumLines() > 1);
  m_pIdentical->setEnabled(bOverride);
  for (U32 Line = 0; Line < NUM_TRACE_DELAYS; ++Line) {
    m_pForm->setRowVisible(m_paDelay[Line], Line < NumLines());
    m_paDelay[Line]->setEnabled(bOverride && (Line == 0 || !m_pIdentical->isChecked()));
  }
}

void CTracePinsPanel::ShowSettings(const TRACE_SETTINGS& Settings) {
  const QSignalBlocker Blockers[] = {QSignalBlocker(m_pWidth), QSignalBlocker(m_pIdentical),
                                     QSignalBlocker(m_pOverride)};
  m_pWidth->setCurrentIndex(std::max(m_pWidth->findData(Settings.PortWidth), 0));
  for (U32 Line = 0; Line < NUM_TRACE_DELAYS; ++Line) SelectDelay(Line, Settings.aDelay[Line]);
  bool bIdentical = true;
  for (U32 Line = 1; Line < NumLines(); ++Line) bIdentical &= Settings.aDelay[Line] == Settings.aDelay[0];
  m_pIdentical->setChecked(bIdentical);
  m_pOverride->setChecked(!bIdentical || Settings.aDelay[0] != TRACE_DELAY_DEFAULT_PS || Settings.bTiming);
  ShowRows();
}

void CTracePinsPanel::StoreSettings(TRACE_SETTINGS* pSettings) const {
  pSettings->PortWidth = NumLines();
  pSettings->bTiming = m_pOverride->isChecked();
  for (U32 Line = 0; Line < NUM_TRACE_DELAYS; ++Line)
    pSettings->aDelay[Line] = pSettings->bTiming ? Delay(Line) : TRACE_DELAY_DEFAULT_PS;
}
