#include "shell/dialogs/device_selection_dialog.h"

#include <QVBoxLayout>

#include "shell/dialogs/device_panel.h"

CDeviceSelectionDialog::CDeviceSelectionDialog(QWidget* pParent, const QByteArray& sXML,
                                               const QList<DEVICE_RECORD>& Devices)
    : CConfigDialog(pParent, QStringLiteral("DeviceSelectionDialog"), QStringLiteral("Device Selection")) {
  auto* const pPanel = new CDevicePanel(Devices, true, this);
  auto* const pContents = new QVBoxLayout;
  pContents->addWidget(pPanel);
  SetContents(pContents, {pPanel}, sXML);
  connect(pPanel, &CDevicePanel::DeviceActivated, this, &QDialog::accept);
}
