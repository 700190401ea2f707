#pragma once

#include "shell/dialogs/config_dialog.h"

// Chooses how the probe is reached.
class CHostInterfaceDialog : public CConfigDialog {
  Q_OBJECT

public:
  CHostInterfaceDialog(QWidget* pParent, const QByteArray& sXML);
};
