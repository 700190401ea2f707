#pragma once

#include "shell/dialogs/config_dialog.h"

// Chooses how the probe reaches the target.
class CTargetInterfaceDialog : public CConfigDialog {
  Q_OBJECT

public:
  CTargetInterfaceDialog(QWidget* pParent, const QByteArray& sXML);
};
