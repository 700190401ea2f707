#pragma once

#include <QAbstractTableModel>

#include "shell/dialogs/device_records.h"

// The devices of the probe library as a table, one a row.
class CDeviceDataModel : public QAbstractTableModel {
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
  // The value that a column is sorted by.
  static constexpr int SORT_ROLE = Qt::UserRole;

  CDeviceDataModel(const QList<DEVICE_RECORD>& Devices, QObject* pParent);

  // Row of a device, whatever the case of its letters; -1 if there is none.
  int FindDevice(const QString& sName) const;
  const DEVICE_RECORD& Device(int Row) const { return m_Devices[Row]; }

  int rowCount(const QModelIndex& Parent = {}) const override;
  int columnCount(const QModelIndex& Parent = {}) const override;
  QVariant data(const QModelIndex& Index, int Role = Qt::DisplayRole) const override;
  QVariant headerData(int Section, Qt::Orientation Orientation, int Role = Qt::DisplayRole) const override;

private:
  QVariant Value(const DEVICE_RECORD& Device, int Column) const;

  QList<DEVICE_RECORD> m_Devices;
};
