#include "ui/dialog.h"

#include <QDialogButtonBox>
#include <QHeaderView>
#include <QLayout>
#include <QPushButton>
#include <QScreen>
#include <QTableView>

#include "shell/look/look.h"
#include "shell/settings/fonts.h"

namespace {

const QString SIZE_KEY = QStringLiteral("Size");

QString HeaderKey(const QTableView* pTable) {
  return QStringLiteral("TableHeader") + pTable->objectName();
}

CDialog::RESPONDER& Responder() {
  static CDialog::RESPONDER Instance;
  return Instance;
}

}  // namespace

CDialog::CDialog(QWidget* pParent, const QString& sName, const QString& sTitle)
    : m_Group{QStringLiteral("AppData"), sName}, m_pParent(pParent) {
  setObjectName(sName);
  setWindowTitle(sTitle);
  ApplyFont();
}

// Below the main window's style sheet a font doesn't reach widgets that are made later, so that the contents are made
// first.
void CDialog::setVisible(bool bOn) {
  if (bOn && m_pParent && parentWidget() == nullptr) setParent(m_pParent->window(), windowFlags());
  // The style's own pictures can't be made out on every ground.
  for (QDialogButtonBox* const pBox : findChildren<QDialogButtonBox*>()) {
    for (QAbstractButton* const pButton : pBox->buttons()) pButton->setIcon(QIcon());
  }
  QDialog::setVisible(bOn);
}

void CDialog::ApplyFont() {
  setFont(GetFont(FONT_APP));
}

int CDialog::exec() {
  if (!Responder()) return QDialog::exec();
  Responder()(windowTitle());
  setResult(Rejected);
  return Rejected;
}

void CDialog::SetResponder(RESPONDER NewResponder) {
  Responder() = std::move(NewResponder);
}

void CDialog::SetFixedToContents() {
  m_bFixed = true;
  if (layout()) layout()->setSizeConstraint(QLayout::SetFixedSize);
}

QVariant CDialog::Setting(const QString& sKey, const QVariant& Default) const {
  return GetSetting(m_Group, sKey, Default);
}

void CDialog::StoreSetting(const QString& sKey, const QVariant& Value) const {
  SetSetting(m_Group, sKey, Value);
}

void CDialog::RestoreHeaders() {
  for (QTableView* const pTable : findChildren<QTableView*>()) {
    const QByteArray State = Setting(HeaderKey(pTable), QByteArray()).toByteArray();
    if (!State.isEmpty()) pTable->horizontalHeader()->restoreState(State);
  }
  // Once they have been laid out.
  QMetaObject::invokeMethod(
      this,
      [this] {
        m_Headers.clear();
        for (QTableView* const pTable : findChildren<QTableView*>())
          m_Headers.append({pTable, pTable->horizontalHeader()->saveState()});
      },
      Qt::QueuedConnection);
}

// What the user left as it was keeps following the contents and their font.
void CDialog::StoreHeaders() {
  for (const auto& [pTable, Before] : std::as_const(m_Headers)) {
    const QByteArray State = pTable ? pTable->horizontalHeader()->saveState() : Before;
    if (State != Before) StoreSetting(HeaderKey(pTable), State);
  }
}

void CDialog::showEvent(QShowEvent* pEvent) {
  if (!m_bPlaced && !m_bFixed) {
    m_bPlaced = true;
    const QSize Stored = Setting(SIZE_KEY, QSize()).toSize();
    if (Stored.isValid()) resize(Stored.expandedTo(minimumSizeHint()).boundedTo(screen()->availableSize()));
  }
  if (!pEvent->spontaneous()) RestoreHeaders();
  QDialog::showEvent(pEvent);
}

void CDialog::hideEvent(QHideEvent* pEvent) {
  if (!m_bFixed && !pEvent->spontaneous()) StoreSetting(SIZE_KEY, size());
  if (!pEvent->spontaneous()) StoreHeaders();
  QDialog::hideEvent(pEvent);
}
