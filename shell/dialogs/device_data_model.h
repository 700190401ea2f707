#pragma once

#include "shell/dialogs/device_records.h"
#include "ui/table/table_model.h"

// The devices of the probe library as a table, one a row.
class CDeviceDataModel : public CTableModel {
  Q_OBJECT

public:
  enum COLUMNS : int {
    COLUMN_MANUFACTURER,
    COLUMN_DEVICE,
    COLUMN_CORE,
    COLUMN_NUM_CORES,
    COLUMN_FLASH_SIZE,
    COLUMN_RAM_SIZE,
    NUM_COLUMNS
  };

  CDeviceDataModel(const QList<DEVICE_RECORD>& Devices, QObject* pParent);

  // Row of a device, whatever the case of its letters; -1 if there is none.
  int FindDevice(const QString& sName) const;
  const DEVICE_RECORD& Device(int Row) const { return m_Devices[Row]; }

  int rowCount(const QModelIndex& Parent = {}) const override;
  QVariant GetItemData(const QModelIndex& Index, int Role) const override;
  int GetFallbackColumn() const override { return COLUMN_DEVICE; }

private:
  QList<DEVICE_RECORD> m_Devices;
};
