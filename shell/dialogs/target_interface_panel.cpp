#include "shell/dialogs/target_interface_panel.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QSpinBox>

#include "device/device_config.h"
#include "device/interface_speed.h"
#include "device/probe_api/records.h"
#include "shell/settings/named_constants.h"
#include "shell/settings/sys_vars.h"
#include "shell/settings/var_ids.h"

namespace {

constexpr U32 HZ_PER_KHZ = 1000;
constexpr int MAX_CHAIN_BITS = 0xFFFF;

QString SpeedText(U32 SpeedHz) {
  const SYS_VAR* const pVar = GetVarInfo(VAR_TIF_SPEED);
  if (IsVarValueAllowed(pVar, SpeedHz)) return GetVarText(pVar, SpeedHz);
  return QStringLiteral("%1 kHz").arg(SpeedHz / HZ_PER_KHZ);
}

// What Project.SetTIFSpeed takes, or an entry's name.
U32 ParseSpeed(const QString& sText, bool* pOk) {
  *pOk = true;
  const SYS_VAR* const pVar = GetVarInfo(VAR_TIF_SPEED);
  const QStringList Names = GetVarValueNames(pVar);
  for (qsizetype i = 0; i < Names.size(); ++i) {
    if (Names[i].compare(sText, Qt::CaseInsensitive) == 0) return static_cast<U32>(GetVarValues(pVar)[i]);
  }
  return ParseInterfaceSpeed(sText, pOk);
}

QSpinBox* MakeBits(const QString& sName, const QString& sToolTip, QWidget* pParent) {
  auto* const pBits = new QSpinBox(pParent);
  pBits->setObjectName(sName);
  pBits->setToolTip(sToolTip);
  pBits->setRange(0, MAX_CHAIN_BITS);
  return pBits;
}

}  // namespace

CTargetInterfacePanel::CTargetInterfacePanel(QWidget* pParent)
    : CConfigPanel(pParent),
      m_pForm(new QFormLayout(this)),
      m_pInterface(new QComboBox(this)),
      m_pSpeed(new QComboBox(this)),
      m_pMultipleTargets(new QCheckBox(QStringLiteral("&More than one device on the scan chain"), this)),
      m_pDRPre(MakeBits(QStringLiteral("DRPre"), QStringLiteral("Data bits ahead of the device: one a device"), this)),
      m_pIRPre(MakeBits(QStringLiteral("IRPre"),
                        QStringLiteral("Sum of the lengths of the instruction registers ahead of the device"), this)) {
  m_pForm->setContentsMargins(0, 0, 0, 0);
  m_pInterface->setObjectName(QStringLiteral("TargetInterface"));
  m_pInterface->addItem(QStringLiteral("JTAG"), VNODE_TIF_JTAG);
  m_pInterface->addItem(QStringLiteral("SWD"), VNODE_TIF_SWD);
  m_pSpeed->setObjectName(QStringLiteral("Speed"));
  m_pSpeed->setEditable(true);
  m_pSpeed->setInsertPolicy(QComboBox::NoInsert);
  m_pSpeed->setCompleter(nullptr);
  m_pSpeed->addItems(GetVarValueNames(GetVarInfo(VAR_TIF_SPEED)));
  m_pSpeed->setToolTip(QStringLiteral("An entry of the list, or any frequency in whole kHz, such as 1500 kHz"));
  m_pMultipleTargets->setObjectName(QStringLiteral("MultipleTargets"));
  m_pForm->addRow(QStringLiteral("&Target Interface:"), m_pInterface);
  m_pForm->addRow(QStringLiteral("S&peed:"), m_pSpeed);
  m_pForm->addRow(m_pMultipleTargets);
  m_pForm->addRow(QStringLiteral("Data &Bits Ahead (DRPre):"), m_pDRPre);
  m_pForm->addRow(QStringLiteral("&Instruction Bits Ahead (IRPre):"), m_pIRPre);
  const auto OnChanged = [this] {
    ShowRows();
    Q_EMIT Changed();
  };
  connect(m_pInterface, &QComboBox::currentIndexChanged, this, OnChanged);
  connect(m_pMultipleTargets, &QCheckBox::toggled, this, OnChanged);
  connect(m_pSpeed, &QComboBox::currentTextChanged, this, &CConfigPanel::Changed);
  connect(m_pDRPre, &QSpinBox::valueChanged, this, &CConfigPanel::Changed);
  connect(m_pIRPre, &QSpinBox::valueChanged, this, &CConfigPanel::Changed);
}

bool CTargetInterfacePanel::IsJTAG() const {
  return m_pInterface->currentData().toInt() == VNODE_TIF_JTAG;
}

U32 CTargetInterfacePanel::Speed(bool* pOk) const {
  return ParseSpeed(m_pSpeed->currentText().trimmed(), pOk);
}

void CTargetInterfacePanel::ShowRows() {
  for (QWidget* const pInput :
       {static_cast<QWidget*>(m_pMultipleTargets), static_cast<QWidget*>(m_pDRPre), static_cast<QWidget*>(m_pIRPre)}) {
    m_pForm->setRowVisible(pInput, IsJTAG());
  }
  m_pDRPre->setEnabled(m_pMultipleTargets->isChecked());
  m_pIRPre->setEnabled(m_pMultipleTargets->isChecked());
}

void CTargetInterfacePanel::ShowConfig(const CDeviceConfig& Config) {
  m_pInterface->setCurrentIndex(Config.Value(DCP_TARGET_IF) == VNODE_TIF_JTAG ? 0 : 1);
  m_pSpeed->setCurrentText(SpeedText(static_cast<U32>(Config.Value(DCP_SPEED))));
  m_pMultipleTargets->setChecked(Config.Value(DCP_MULTIPLE_TARGETS) != 0);
  m_pDRPre->setValue(Config.Value(DCP_DR_PRE));
  m_pIRPre->setValue(Config.Value(DCP_IR_PRE));
  ShowRows();
}

void CTargetInterfacePanel::StoreConfig(CDeviceConfig* pConfig) const {
  bool bOk = false;
  const U32 SpeedHz = Speed(&bOk);
  pConfig->SetValue(DCP_TARGET_IF, m_pInterface->currentData().toInt());
  pConfig->SetValue(DCP_SPEED, static_cast<I32>(SpeedHz));
  pConfig->SetValue(DCP_USE_MAX_SPEED, SpeedHz == VNODE_SPEED_AUTO);
  pConfig->SetValue(DCP_USE_ADAPTIVE, SpeedHz == VNODE_SPEED_ADAPTIVE);
  if (!IsJTAG()) return;
  pConfig->SetValue(DCP_MULTIPLE_TARGETS, m_pMultipleTargets->isChecked());
  if (!m_pMultipleTargets->isChecked()) return;
  pConfig->SetValue(DCP_DR_PRE, m_pDRPre->value());
  pConfig->SetValue(DCP_IR_PRE, m_pIRPre->value());
}

bool CTargetInterfacePanel::IsInputValid() const {
  bool bOk = false;
  Speed(&bOk);
  // Every device ahead has both a data bit and instruction bits.
  const bool bChain = IsJTAG() && m_pMultipleTargets->isChecked();
  return bOk && !(bChain && (m_pDRPre->value() == 0) != (m_pIRPre->value() == 0));
}

QList<QWidget*> CTargetInterfacePanel::Inputs() const {
  return {m_pInterface, m_pSpeed, m_pMultipleTargets, m_pDRPre, m_pIRPre};
}
