#include "shell/dialogs/host_interface_panel.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QLineEdit>
#include <QRegularExpression>

#include "device/device_config.h"
#include "shell/look/look.h"
#include "shell/settings/fonts.h"

namespace {

constexpr int MAX_HOST_CHARACTERS = 255;
constexpr int INPUT_CHARACTERS = 20;  // least width of the inputs
constexpr int DETECT = 0;             // decimal, or hexadecimal behind "0x"
constexpr U32 MAX_PORT = 0xFFFF;

// A name or address, maybe with ":" and a port.
bool IsHost(const QString& sText) {
  static const QRegularExpression Form(QStringLiteral("^[^\\s:]+(?::([0-9]+))?$"));
  const QRegularExpressionMatch Match = Form.match(sText);
  if (!Match.hasMatch()) return false;
  if (Match.captured(1).isEmpty()) return true;
  bool bOk = false;
  const U32 Port = Match.captured(1).toUInt(&bOk);
  return bOk && Port > 0 && Port <= MAX_PORT;
}

}  // namespace

CHostInterfacePanel::CHostInterfacePanel(QWidget* pParent)
    : CConfigPanel(pParent),
      m_pForm(new QFormLayout(this)),
      m_pInterface(new QComboBox(this)),
      m_pUseSerialNo(new QCheckBox(QStringLiteral("Only the probe with this serial n&umber"), this)),
      m_pSerialNo(new QLineEdit(this)),
      m_pHost(new QLineEdit(this)) {
  m_pForm->setContentsMargins(0, 0, 0, 0);
  m_pInterface->setObjectName(QStringLiteral("HostInterface"));
  m_pInterface->addItem(QStringLiteral("USB"), HOST_IF_USB);
  m_pInterface->addItem(QStringLiteral("IP"), HOST_IF_IP);
  m_pUseSerialNo->setObjectName(QStringLiteral("UseSerialNo"));
  m_pSerialNo->setObjectName(QStringLiteral("SerialNo"));
  m_pHost->setObjectName(QStringLiteral("HostName"));
  m_pHost->setMaxLength(MAX_HOST_CHARACTERS);
  m_pHost->setPlaceholderText(QStringLiteral("host or host:port"));
  m_pHost->setToolTip(QStringLiteral(
      "Name or address of the computer on which a GDB server runs, if need be with the port: localhost:3333"));
  m_pHost->setMinimumWidth(GetTextWidth(FONT_APP, QString(INPUT_CHARACTERS, QLatin1Char('n'))));
  m_pForm->addRow(QStringLiteral("&Host Interface:"), m_pInterface);
  m_pForm->addRow(m_pUseSerialNo);
  m_pForm->addRow(QStringLiteral("Serial &Number:"), m_pSerialNo);
  m_pForm->addRow(QStringLiteral("IP &Address:"), m_pHost);
  const auto OnChanged = [this] {
    ShowRows();
    Q_EMIT Changed();
  };
  connect(m_pInterface, &QComboBox::currentIndexChanged, this, OnChanged);
  connect(m_pUseSerialNo, &QCheckBox::toggled, this, OnChanged);
  connect(m_pSerialNo, &QLineEdit::textChanged, this, &CConfigPanel::Changed);
  connect(m_pHost, &QLineEdit::textChanged, this, &CConfigPanel::Changed);
}

bool CHostInterfacePanel::IsIP() const {
  return m_pInterface->currentData().toUInt() == HOST_IF_IP;
}

void CHostInterfacePanel::ShowRows() {
  m_pForm->setRowVisible(m_pUseSerialNo, !IsIP());
  m_pForm->setRowVisible(m_pSerialNo, !IsIP());
  m_pForm->setRowVisible(m_pHost, IsIP());
  m_pSerialNo->setEnabled(m_pUseSerialNo->isChecked());
}

void CHostInterfacePanel::ShowConfig(const CDeviceConfig& Config) {
  const U32 SerialNo = static_cast<U32>(Config.Value(DCP_USB_SERIAL_NO));
  m_pInterface->setCurrentIndex(Config.Value(DCP_CONNECT_MODE) == HOST_IF_IP ? 1 : 0);
  m_pUseSerialNo->setChecked(Config.Value(DCP_USE_SERIAL_NO) != 0);
  m_pSerialNo->setText(SerialNo != 0 ? QString::number(SerialNo) : QString());
  m_pHost->setText(QString::fromUtf8(Config.Text(DCP_HOST_NAME)));
  ShowRows();
}

// What belongs to the interface that isn't chosen stays as it was.
void CHostInterfacePanel::StoreConfig(CDeviceConfig* pConfig) const {
  pConfig->SetValue(DCP_CONNECT_MODE, m_pInterface->currentData().toInt());
  if (IsIP()) {
    pConfig->SetText(DCP_HOST_NAME, m_pHost->text().trimmed().toUtf8());
    return;
  }
  pConfig->SetValue(DCP_USE_SERIAL_NO, m_pUseSerialNo->isChecked());
  if (!m_pUseSerialNo->isChecked()) return;
  pConfig->SetValue(DCP_USB_SERIAL_NO, static_cast<I32>(m_pSerialNo->text().trimmed().toUInt(nullptr, DETECT)));
}

bool CHostInterfacePanel::IsInputValid() const {
  if (IsIP()) return IsHost(m_pHost->text().trimmed());
  bool bNumber = false;
  m_pSerialNo->text().trimmed().toUInt(&bNumber, DETECT);
  return bNumber || !m_pUseSerialNo->isChecked();
}

QList<QWidget*> CHostInterfacePanel::Inputs() const {
  return {m_pInterface, m_pUseSerialNo, m_pSerialNo, m_pHost};
}
