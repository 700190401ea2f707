#include "shell/dialogs/device_data_model.h"

namespace {

constexpr U32 BYTES_PER_KB = 1024;
constexpr U32 BYTES_PER_MB = BYTES_PER_KB * 1024;
constexpr const char* TITLES[] = {"Manufacturer", "Device", "Core", "NumCores", "Flash Size", "RAM Size"};

bool IsSize(int Column) {
  return Column == CDeviceDataModel::COLUMN_FLASH_SIZE || Column == CDeviceDataModel::COLUMN_RAM_SIZE;
}
bool IsNumber(int Column) {
  return Column >= CDeviceDataModel::COLUMN_NUM_CORES;
}

QString SizeText(U32 NumBytes) {
  if (NumBytes == 0) return QStringLiteral("-");
  if (NumBytes % BYTES_PER_MB == 0) return QStringLiteral("%1 MB").arg(NumBytes / BYTES_PER_MB);
  if (NumBytes % BYTES_PER_KB == 0) return QStringLiteral("%1 KB").arg(NumBytes / BYTES_PER_KB);
  return QStringLiteral("%1 bytes").arg(NumBytes);
}

}  // namespace

CDeviceDataModel::CDeviceDataModel(const QList<DEVICE_RECORD>& Devices, QObject* pParent)
    : QAbstractTableModel(pParent), m_Devices(Devices) {}

int CDeviceDataModel::FindDevice(const QString& sName) const {
  for (int Row = 0; Row < m_Devices.size(); ++Row) {
    if (m_Devices[Row].sName.compare(sName, Qt::CaseInsensitive) == 0) return Row;
  }
  return -1;
}

int CDeviceDataModel::rowCount(const QModelIndex& Parent) const {
  return Parent.isValid() ? 0 : static_cast<int>(m_Devices.size());
}

int CDeviceDataModel::columnCount(const QModelIndex& Parent) const {
  return Parent.isValid() ? 0 : NUM_COLUMNS;
}

QVariant CDeviceDataModel::Value(const DEVICE_RECORD& Device, int Column) const {
  switch (Column) {
    case COLUMN_MANUFACTURER:
      return Device.sManufacturer;
    case COLUMN_DEVICE:
      return Device.sName;
    case COLUMN_CORE:
      return Device.sCore;
    case COLUMN_NUM_CORES:
      return Device.NumCores;
    case COLUMN_FLASH_SIZE:
      return Device.FlashSize;
    default:
      return Device.RAMSize;
  }
}

QVariant CDeviceDataModel::data(const QModelIndex& Index, int Role) const {
  if (!checkIndex(Index, CheckIndexOption::IndexIsValid)) return {};
  const int Column = Index.column();
  if (Role == Qt::TextAlignmentRole) {
    return static_cast<int>(Qt::AlignVCenter | (IsNumber(Column) ? Qt::AlignRight : Qt::AlignLeft));
  }
  if (Role != Qt::DisplayRole && Role != SORT_ROLE) return {};
  const QVariant Data = Value(m_Devices[Index.row()], Column);
  return Role == Qt::DisplayRole && IsSize(Column) ? SizeText(Data.toUInt()) : Data;
}

QVariant CDeviceDataModel::headerData(int Section, Qt::Orientation Orientation, int Role) const {
  if (Orientation != Qt::Horizontal || Section < 0 || Section >= NUM_COLUMNS) return {};
  if (Role == Qt::DisplayRole) return QLatin1String(TITLES[Section]);
  if (Role == Qt::TextAlignmentRole) {
    return static_cast<int>(Qt::AlignVCenter | (IsNumber(Section) ? Qt::AlignRight : Qt::AlignLeft));
  }
  return {};
}
