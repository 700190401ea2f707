#include "shell/dialogs/column_filter_bar.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QScrollBar>
#include <QTableView>

CColumnFilterBar::CColumnFilterBar(QTableView* pTable, QWidget* pParent) : QWidget(pParent), m_pTable(pTable) {
  const QAbstractItemModel* const pModel = pTable->model();
  for (int Column = 0; Column < pModel->columnCount(); ++Column) {
    auto* const pFilter = new QLineEdit(this);
    const QString sTitle = pModel->headerData(Column, Qt::Horizontal).toString();
    pFilter->setPlaceholderText(QStringLiteral("Filter"));
    pFilter->setAccessibleName(QStringLiteral("Filter of ") + sTitle);
    pFilter->setToolTip(
        QStringLiteral("Shows the rows with this text in \"%1\"; * and ? stand for other characters").arg(sTitle));
    pFilter->setClearButtonEnabled(true);
    pFilter->installEventFilter(this);
    connect(pFilter, &QLineEdit::textChanged, this,
            [this, Column](const QString& sText) { Q_EMIT FilterChanged(Column, sText); });
    m_Filters << pFilter;
  }
  setFixedHeight(m_Filters.constFirst()->sizeHint().height());
  const QHeaderView* const pHeader = pTable->horizontalHeader();
  connect(pHeader, &QHeaderView::sectionResized, this, &CColumnFilterBar::LayOut);
  connect(pHeader, &QHeaderView::sectionMoved, this, &CColumnFilterBar::LayOut);
  connect(pHeader, &QHeaderView::geometriesChanged, this, &CColumnFilterBar::LayOut);
  connect(pTable->horizontalScrollBar(), &QScrollBar::valueChanged, this, &CColumnFilterBar::LayOut);
}

void CColumnFilterBar::LayOut() {
  const QHeaderView* const pHeader = m_pTable->horizontalHeader();
  const int Left = m_pTable->frameWidth();
  for (int Column = 0; Column < m_Filters.size(); ++Column) {
    m_Filters[Column]->setGeometry(Left + pHeader->sectionViewportPosition(Column), 0, pHeader->sectionSize(Column),
                                   height());
  }
}

void CColumnFilterBar::resizeEvent(QResizeEvent* pEvent) {
  QWidget::resizeEvent(pEvent);
  LayOut();
}

bool CColumnFilterBar::eventFilter(QObject* pWatched, QEvent* pEvent) {
  if (pEvent->type() == QEvent::KeyPress) {
    const int Key = static_cast<QKeyEvent*>(pEvent)->key();
    if (Key == Qt::Key_Return || Key == Qt::Key_Enter || Key == Qt::Key_Down) {
      Q_EMIT Left();
      return true;
    }
  }
  return QWidget::eventFilter(pWatched, pEvent);
}
