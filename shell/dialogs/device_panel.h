#pragma once

#include "shell/dialogs/config_panel.h"
#include "shell/dialogs/device_records.h"

class CColumnFilterBar;
class CDeviceDataModel;
class CDeviceDataProxyModel;
class QComboBox;
class QLabel;
class QSpinBox;
class QTableView;

// The target device, chosen from a table that can be filtered, its core and its byte order. A device that the library
// doesn't know stays chosen until another one is.
class CDevicePanel : public CConfigPanel {
  Q_OBJECT

public:
  // bDeviceNeeded: the input is valid only with a device that the library knows.
  CDevicePanel(const QList<DEVICE_RECORD>& Devices, bool bDeviceNeeded, QWidget* pParent);
  void ShowConfig(const CDeviceConfig& Config) override;
  void StoreConfig(CDeviceConfig* pConfig) const override;
  bool IsInputValid() const override;
  QList<QWidget*> Inputs() const override;

Q_SIGNALS:
  // A device was double-clicked.
  void DeviceActivated();

protected:
  void showEvent(QShowEvent* pEvent) override;

private:
  void InitTable();
  void LayOut();
  void OnSelected();
  void SelectChosen();
  void ShowState();
  void OnFilterChanged(int Column, const QString& sText);
  void OnFilterLeft();

  CDeviceDataModel* m_pModel;
  CDeviceDataProxyModel* m_pProxy;
  QTableView* m_pTable;
  CColumnFilterBar* m_pFilters;
  QLabel* m_pNothing;  // why the table is empty
  QLabel* m_pChosen;
  QSpinBox* m_pCoreIndex;
  QComboBox* m_pEndian;
  QString m_sDevice;
  bool m_bDeviceNeeded;
  bool m_bFiltering = false;
};
