#include "shell/dialogs/device_data_proxy_model.h"

#include <QRegularExpression>

#include "base/text.h"

CDeviceDataProxyModel::CDeviceDataProxyModel(QObject* pParent) : QSortFilterProxyModel(pParent) {
  setSortRole(CDeviceDataModel::SORT_ROLE);
  setSortCaseSensitivity(Qt::CaseInsensitive);
}

void CDeviceDataProxyModel::SetFilter(int Column, const QString& sText) {
  const QString sWanted = sText.trimmed();
  const QString sPattern = sWanted.isEmpty() ? QString() : WildcardToRegExp(u'*' + sWanted + u'*');
  m_Filters[static_cast<size_t>(Column)] = QRegularExpression(sPattern, QRegularExpression::CaseInsensitiveOption);
  invalidateFilter();
}

bool CDeviceDataProxyModel::filterAcceptsRow(int SourceRow, const QModelIndex& SourceParent) const {
  for (int Column = 0; Column < CDeviceDataModel::NUM_COLUMNS; ++Column) {
    const QRegularExpression& Filter = m_Filters[static_cast<size_t>(Column)];
    if (Filter.pattern().isEmpty()) continue;
    const QString sText = sourceModel()->index(SourceRow, Column, SourceParent).data().toString();
    if (!Filter.match(sText).hasMatch()) return false;
  }
  return true;
}

bool CDeviceDataProxyModel::lessThan(const QModelIndex& Left, const QModelIndex& Right) const {
  if (Left.data(sortRole()) != Right.data(sortRole())) return QSortFilterProxyModel::lessThan(Left, Right);
  // The names go upwards whichever way the column goes.
  const auto Name = [](const QModelIndex& Index) {
    return Index.siblingAtColumn(CDeviceDataModel::COLUMN_DEVICE).data().toString();
  };
  const int Order = QString::compare(Name(Left), Name(Right), Qt::CaseInsensitive);
  return sortOrder() == Qt::AscendingOrder ? Order < 0 : Order > 0;
}
