#pragma once

#include "shell/dialogs/config_dialog.h"
#include "shell/dialogs/device_records.h"

// Chooses the target device, its core and its byte order.
class CDeviceSelectionDialog : public CConfigDialog {
  Q_OBJECT

public:
  CDeviceSelectionDialog(QWidget* pParent, const QByteArray& sXML, const QList<DEVICE_RECORD>& Devices);
};
