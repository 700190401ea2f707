#pragma once

#include "base/types.h"
#include "shell/dialogs/config_panel.h"

class QCheckBox;
class QComboBox;
class QFormLayout;
class QSpinBox;

// How the probe reaches the target: interface, speed, and the target's place on a scan chain.
class CTargetInterfacePanel : public CConfigPanel {
  Q_OBJECT

public:
  explicit CTargetInterfacePanel(QWidget* pParent);
  void ShowConfig(const CDeviceConfig& Config) override;
  void StoreConfig(CDeviceConfig* pConfig) const override;
  bool IsInputValid() const override;
  QList<QWidget*> Inputs() const override;

private:
  bool IsJTAG() const;
  U32 Speed(bool* pOk) const;
  void ShowRows();

  QFormLayout* m_pForm;
  QComboBox* m_pInterface;
  QComboBox* m_pSpeed;
  QCheckBox* m_pMultipleTargets;
  QSpinBox* m_pDRPre;
  QSpinBox* m_pIRPre;
};
