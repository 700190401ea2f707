#include "shell/dialogs/appearance_box.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QPushButton>
#include <QSignalBlocker>

#include "shell/look/look.h"
#include "shell/settings/fonts.h"

namespace {
constexpr int SPACING = 8;  // pixels
}

CAppearanceBox::CAppearanceBox(const QString& sTitle, QWidget* pParent)
    : QGroupBox(sTitle, pParent),
      m_pItems(new QComboBox(this)),
      m_pField(new QPushButton(this)),
      m_pReset(new QPushButton(QStringLiteral("Reset"), this)) {
  m_pItems->setObjectName(QStringLiteral("Items"));
  m_pField->setObjectName(QStringLiteral("Field"));
  m_pReset->setObjectName(QStringLiteral("Reset"));
  m_pReset->setToolTip(QStringLiteral("Reset to Default"));
  m_pField->setAutoDefault(false);
  m_pReset->setAutoDefault(false);
  auto* const pLayout = new QHBoxLayout(this);
  pLayout->setSpacing(SPACING);
  pLayout->addWidget(m_pItems, 1);
  pLayout->addWidget(m_pField, 1);
  pLayout->addWidget(m_pReset);
  connect(m_pItems, &QComboBox::currentIndexChanged, this, &CAppearanceBox::OnItemSelected);
  connect(m_pField, &QPushButton::clicked, this, &CAppearanceBox::OnFieldClicked);
  connect(m_pReset, &QPushButton::clicked, this, &CAppearanceBox::OnButtonResetClicked);
}

void CAppearanceBox::AddItem(U32 ID, const QString& sName, const QString& sToolTip) {
  const QSignalBlocker Blocker(m_pItems);
  m_pItems->addItem(sName, ID);
  m_pItems->setItemData(m_pItems->count() - 1, sToolTip, Qt::ToolTipRole);
}

U32 CAppearanceBox::GetItemID() const {
  return m_pItems->currentData().toUInt();
}

void CAppearanceBox::SetItemID(U32 ID) {
  const int Index = m_pItems->findData(ID);
  if (Index >= 0) m_pItems->setCurrentIndex(Index);
}

void CAppearanceBox::Refresh() {
  QFont Font = GetFont(FONT_APP);
  for (int i = 0; i < m_pItems->count(); ++i) {
    Font.setBold(IsModified(m_pItems->itemData(i).toUInt()));
    m_pItems->setItemData(i, Font, Qt::FontRole);
  }
  OnItemSelected();
}

void CAppearanceBox::OnItemSelected() {
  const U32 ID = GetItemID();
  m_pItems->setFont(m_pItems->currentData(Qt::FontRole).value<QFont>());
  m_pItems->setToolTip(m_pItems->currentData(Qt::ToolTipRole).toString());
  ShowValue(ID, m_pField);
  m_pReset->setEnabled(IsModified(ID));
}

void CAppearanceBox::OnFieldClicked() {
  Choose(GetItemID());
  Refresh();
}

void CAppearanceBox::OnButtonResetClicked() {
  Reset(GetItemID());
  Refresh();
}
