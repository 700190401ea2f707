#pragma once

#include "shell/dialogs/config_panel.h"

class QCheckBox;
class QComboBox;
class QFormLayout;
class QLineEdit;

// How the probe is reached: by USB, with or without a serial number, or by its address in the network.
class CHostInterfacePanel : public CConfigPanel {
  Q_OBJECT

public:
  explicit CHostInterfacePanel(QWidget* pParent);
  void ShowConfig(const CDeviceConfig& Config) override;
  void StoreConfig(CDeviceConfig* pConfig) const override;
  bool IsInputValid() const override;
  QList<QWidget*> Inputs() const override;

private:
  bool IsIP() const;
  void ShowRows();

  QFormLayout* m_pForm;
  QComboBox* m_pInterface;
  QCheckBox* m_pUseSerialNo;
  QLineEdit* m_pSerialNo;
  QLineEdit* m_pHost;
};
