#pragma once

#include "shell/dialogs/config_dialog.h"
#include "shell/dialogs/device_records.h"

// The whole configuration of a connection: device, host interface and target interface.
class CVNodeSettingsDialog : public CConfigDialog {
  Q_OBJECT

public:
  CVNodeSettingsDialog(QWidget* pParent, const QByteArray& sXML, const QList<DEVICE_RECORD>& Devices);
};
