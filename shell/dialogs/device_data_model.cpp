#include "shell/dialogs/device_data_model.h"

namespace {

constexpr U32 BYTES_PER_KB = 1024;
constexpr U32 BYTES_PER_MB = BYTES_PER_KB * 1024;

QList<TABLE_COLUMN> MakeColumns() {
  const auto Number = [](const QString& sTitle) {
    return TABLE_COLUMN{sTitle, COLUMN_INTEGER, 10, COLUMN_TEXT_FILTER, Qt::AlignRight};
  };
  return {{QStringLiteral("Manufacturer")},   {QStringLiteral("Device")},           {QStringLiteral("Core")},
          Number(QStringLiteral("NumCores")), Number(QStringLiteral("Flash Size")), Number(QStringLiteral("RAM Size"))};
}

QString SizeText(U32 NumBytes) {
  if (NumBytes == 0) return QStringLiteral("-");
  if (NumBytes % BYTES_PER_MB == 0) return QStringLiteral("%1 MB").arg(NumBytes / BYTES_PER_MB);
  if (NumBytes % BYTES_PER_KB == 0) return QStringLiteral("%1 KB").arg(NumBytes / BYTES_PER_KB);
  return QStringLiteral("%1 bytes").arg(NumBytes);
}

}  // namespace

CDeviceDataModel::CDeviceDataModel(const QList<DEVICE_RECORD>& Devices, QObject* pParent)
    : CTableModel(QStringLiteral("DeviceDataModel"), MakeColumns(), pParent), m_Devices(Devices) {}

int CDeviceDataModel::FindDevice(const QString& sName) const {
  for (int Row = 0; Row < m_Devices.size(); ++Row) {
    if (m_Devices[Row].sName.compare(sName, Qt::CaseInsensitive) == 0) return Row;
  }
  return -1;
}

int CDeviceDataModel::rowCount(const QModelIndex& Parent) const {
  return Parent.isValid() ? 0 : static_cast<int>(m_Devices.size());
}

QVariant CDeviceDataModel::GetItemData(const QModelIndex& Index, int Role) const {
  if (Role != Qt::DisplayRole && Role != ROLE_SORT_VALUE) return {};
  const DEVICE_RECORD& Device = m_Devices[Index.row()];
  const bool bText = Role == Qt::DisplayRole;
  const auto Answer = [bText](U32 Number, const QString& sText) {
    return bText ? QVariant(sText) : QVariant(static_cast<qlonglong>(Number));
  };
  switch (Index.column()) {
    case COLUMN_MANUFACTURER:
      return bText ? Device.sManufacturer : QVariant();
    case COLUMN_DEVICE:
      return bText ? Device.sName : QVariant();
    case COLUMN_CORE:
      return bText ? Device.sCore : QVariant();
    case COLUMN_NUM_CORES:
      return Answer(static_cast<U32>(Device.NumCores), QString::number(Device.NumCores));
    case COLUMN_FLASH_SIZE:
      return Answer(Device.FlashSize, SizeText(Device.FlashSize));
    default:
      return Answer(Device.RAMSize, SizeText(Device.RAMSize));
  }
}
