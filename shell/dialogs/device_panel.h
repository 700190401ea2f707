#pragma once

#include "shell/dialogs/config_panel.h"
#include "shell/dialogs/device_records.h"
#include "ui/table/item_delegate.h"

class CDeviceDataModel;
class CFilterHeaderView;
class CSortFilter;
class CTableHeader;
class CTreeView;
class QComboBox;
class QLabel;
class QSpinBox;

// The target device, chosen from a table that can be filtered, its core and its byte order. A device that the library
// doesn't know stays chosen until another one is.
class CDevicePanel : public CConfigPanel, private IItemStyle {
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
  // The style of the items: what the filters found is marked.
  CHANGE_LEVELS GetChangeLevel(const QModelIndex&) const override { return CHANGE_LEVEL_NONE; }
  TEXT_MATCH GetFilterMatch(const QModelIndex& Index, const QString& sText) const override;

  void InitTable();
  void FitColumns();
  void LayOut();
  void OnSelected();
  void SelectChosen();
  void ShowState();
  void OnRowsChanged();
  void OnFilterLeft();

  CDeviceDataModel* m_pModel;
  CSortFilter* m_pProxy;
  CTreeView* m_pTable;
  CTableHeader* m_pHeader;
  CFilterHeaderView* m_pFilters;
  QLabel* m_pNothing;  // why the table is empty
  QLabel* m_pChosen;
  QSpinBox* m_pCoreIndex;
  QComboBox* m_pEndian;
  QString m_sDevice;
  bool m_bDeviceNeeded;
  bool m_bChanging = false;  // rows come and go
};
