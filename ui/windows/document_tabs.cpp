#include "ui/windows/document_tabs.h"

#include <QHBoxLayout>
#include <QMouseEvent>
#include <QToolButton>

#include "base/text.h"
#include "shell/look/look.h"
#include "ui/popup_menu.h"

CDocumentTabs::CDocumentTabs(QWidget* pParent)
    : QWidget(pParent), m_pBar(new QTabBar(this)), m_pListButton(new QToolButton(this)) {
  m_pBar->setMovable(true);
  m_pBar->setTabsClosable(true);
  m_pBar->setExpanding(false);
  m_pBar->setDocumentMode(true);
  m_pBar->setDrawBase(false);
  m_pBar->setUsesScrollButtons(true);
  m_pBar->setElideMode(Qt::ElideRight);
  m_pBar->setFocusPolicy(Qt::NoFocus);
  m_pBar->setContextMenuPolicy(Qt::CustomContextMenu);
  m_pBar->installEventFilter(this);
  m_pListButton->setObjectName(QStringLiteral("DocumentList"));
  m_pListButton->setFocusPolicy(Qt::NoFocus);
  m_pListButton->setAutoRaise(true);
  m_pListButton->setToolTip(QStringLiteral("Open documents"));
  UpdateStyle();
  auto* const pLayout = new QHBoxLayout(this);
  pLayout->setContentsMargins(0, 0, 0, 0);
  pLayout->setSpacing(0);
  pLayout->addWidget(m_pBar, 1);
  pLayout->addWidget(m_pListButton);
  connect(m_pListButton, &QToolButton::clicked, this, &CDocumentTabs::ShowList);
  connect(m_pBar, &QTabBar::tabCloseRequested, this, &CDocumentTabs::CloseRequested);
  connect(m_pBar, &QWidget::customContextMenuRequested, this, [this](const QPoint& Pos) {
    const int Index = m_pBar->tabAt(Pos);
    if (Index >= 0) Q_EMIT MenuRequested(Index, m_pBar->mapToGlobal(Pos));
  });
}

void CDocumentTabs::UpdateStyle() {
  m_pListButton->setIcon(GetIcon(QStringLiteral("arrow-down.png")));
  m_pListButton->setStyleSheet(
      QStringLiteral("QToolButton {border:-1px; margin-right:-1px; margin-top:0px; background:transparent} "
                     "QToolButton::menu-indicator {image: none}"));
}

void CDocumentTabs::ShowList() {
  CPopupMenu Menu(this);
  for (int i = 0; i < m_pBar->count(); ++i) {
    QAction* const pAction = Menu.addAction(m_pBar->tabIcon(i), MenuText(m_pBar->tabText(i)));
    pAction->setData(i);
    pAction->setCheckable(true);
    pAction->setChecked(i == m_pBar->currentIndex());
  }
  const QAction* const pChosen = Menu.Run(m_pListButton->mapToGlobal(QPoint(0, m_pListButton->height())));
  if (pChosen) m_pBar->setCurrentIndex(pChosen->data().toInt());
}

// The middle button closes a tab.
bool CDocumentTabs::eventFilter(QObject* pWatched, QEvent* pEvent) {
  if (pWatched == m_pBar && pEvent->type() == QEvent::MouseButtonRelease) {
    const auto* const pMouse = static_cast<QMouseEvent*>(pEvent);
    const int Index = m_pBar->tabAt(pMouse->pos());
    if (pMouse->button() == Qt::MiddleButton && Index >= 0) Q_EMIT CloseRequested(Index);
  }
  return QWidget::eventFilter(pWatched, pEvent);
}
