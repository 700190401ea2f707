#pragma once

#include <array>

#include <QSortFilterProxyModel>

#include "shell/dialogs/device_data_model.h"

// The devices that every column's filter lets through, sorted by a column and within it by the device's name.
class CDeviceDataProxyModel : public QSortFilterProxyModel {
  Q_OBJECT

public:
  explicit CDeviceDataProxyModel(QObject* pParent);

  // Rows whose column contains the text remain, whatever the case; "*" and "?" stand for other characters. An empty
  // text lets all through.
  void SetFilter(int Column, const QString& sText);

protected:
  bool filterAcceptsRow(int SourceRow, const QModelIndex& SourceParent) const override;
  bool lessThan(const QModelIndex& Left, const QModelIndex& Right) const override;

private:
  std::array<QRegularExpression, CDeviceDataModel::NUM_COLUMNS> m_Filters;
};
