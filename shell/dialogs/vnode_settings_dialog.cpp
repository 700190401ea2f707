#include "shell/dialogs/vnode_settings_dialog.h"

#include <QGroupBox>
#include <QHBoxLayout>
#include <QVBoxLayout>

#include "shell/dialogs/device_panel.h"
#include "shell/dialogs/host_interface_panel.h"
#include "shell/dialogs/target_interface_panel.h"

namespace {

QGroupBox* Framed(const QString& sTitle, QWidget* pPanel) {
  auto* const pBox = new QGroupBox(sTitle);
  auto* const pLayout = new QVBoxLayout(pBox);
  pLayout->addWidget(pPanel);
  pLayout->addStretch();
  return pBox;
}

}  // namespace

CVNodeSettingsDialog::CVNodeSettingsDialog(QWidget* pParent, const QByteArray& sXML,
                                           const QList<DEVICE_RECORD>& Devices)
    : CConfigDialog(pParent, QStringLiteral("VNodeSettingsDialog"), QStringLiteral("V-Node Settings")) {
  auto* const pDevice = new CDevicePanel(Devices, false, this);
  auto* const pHost = new CHostInterfacePanel(this);
  auto* const pTarget = new CTargetInterfacePanel(this);
  auto* const pInterfaces = new QHBoxLayout;
  pInterfaces->addWidget(Framed(QStringLiteral("Host Interface"), pHost), 1);
  pInterfaces->addWidget(Framed(QStringLiteral("Target Interface"), pTarget), 1);
  auto* const pContents = new QVBoxLayout;
  pContents->addWidget(pDevice, 1);
  pContents->addLayout(pInterfaces);
  SetContents(pContents, {pDevice, pHost, pTarget}, sXML);
}
