#include "ui/message_box.h"

#include <QCheckBox>
#include <QDateTime>
#include <QFrame>
#include <QHBoxLayout>

#include "base/stable_hash.h"
#include "shell/look/look.h"
#include "shell/settings/settings_cache.h"
#include "shell/settings/sys_vars.h"
#include "shell/settings/var_ids.h"

namespace {

constexpr quint64 STORED_FOR_THIS_RUN = 0xFFFFFFFF;
constexpr quint64 STORED_FOR_GOOD = 0xFFFFFFFE;
constexpr qint64 MS_PER_HOUR = 3'600'000;
constexpr int MIN_BUTTON_WIDTH = 25;  // pixels
constexpr int BOX_WIDTH = 200;        // pixels
constexpr int ICON_SIZE = 32;         // pixels

const SETTING_GROUP TIMEOUT_GROUP = {QStringLiteral("AppData"), QStringLiteral("MessageTimeouts")};

CMessageBox::RESPONDER& Responder() {
  static CMessageBox::RESPONDER Instance;
  return Instance;
}

QString TimeoutKey(const QString& sText) {
  return QString::number(StableHash32(sText));
}

int ResultOfRole(QDialogButtonBox::ButtonRole Role) {
  switch (Role) {
    case QDialogButtonBox::AcceptRole:
    case QDialogButtonBox::YesRole:
    case QDialogButtonBox::ApplyRole:
      return CMessageBox::ACCEPTED;
    case QDialogButtonBox::NoRole:
      return CMessageBox::DECLINED;
    default:
      return CMessageBox::OTHER;
  }
}

// The button that Return presses: the first that accepts.
int DefaultResult(QDialogButtonBox::StandardButtons Buttons) {
  const QDialogButtonBox::StandardButtons Accepting = QDialogButtonBox::Ok | QDialogButtonBox::Yes |
                                                      QDialogButtonBox::Apply | QDialogButtonBox::Save |
                                                      QDialogButtonBox::Open;
  return Buttons & Accepting ? CMessageBox::ACCEPTED : CMessageBox::OTHER;
}

QString CheckBoxText(int Timeout) {
  if (Timeout < 0) return QStringLiteral("Do not show again");
  if (Timeout == CMessageBox::TODAY) return QStringLiteral("Do not show again today");
  return QStringLiteral("Do not show again for %1 hours").arg(Timeout);
}

}  // namespace

int CMessageBox::Show(const QString& sTitle, const QString& sText, int Timeout, const QString& sIcon,
                      QDialogButtonBox::StandardButtons Buttons) {
  const quint64 Stored = sText.isEmpty() ? 0 : GetSetting(TIMEOUT_GROUP, TimeoutKey(sText), quint64{0}).toULongLong();
  if (Stored == STORED_FOR_GOOD || Stored == STORED_FOR_THIS_RUN) return ACCEPTED;
  if (static_cast<quint64>(QDateTime::currentMSecsSinceEpoch()) < Stored) return DECLINED;
  if (Responder()) return Responder()(sTitle, sText, DefaultResult(Buttons));
  const std::unique_ptr<CMessageBox> pBox(Make(sTitle, sText, Timeout, sIcon, Buttons));
  pBox->exec();
  return pBox->Result();
}

CMessageBox* CMessageBox::Make(const QString& sTitle, const QString& sText, int Timeout, const QString& sIcon,
                               QDialogButtonBox::StandardButtons Buttons) {
  return new CMessageBox(sTitle, sText, Timeout, sIcon, Buttons);
}

void CMessageBox::PurgeSessionTimeouts() {
  for (const QString& sKey : GetSettingKeys(TIMEOUT_GROUP)) {
    const quint64 Stored = GetSetting(TIMEOUT_GROUP, sKey, quint64{0}).toULongLong();
    if ((Stored & 0xFFFFFFFF) == STORED_FOR_THIS_RUN) RemoveSetting(SettingPath(TIMEOUT_GROUP, sKey));
  }
}

void CMessageBox::ResetTimeouts() {
  for (const QString& sKey : GetSettingKeys(TIMEOUT_GROUP)) RemoveSetting(SettingPath(TIMEOUT_GROUP, sKey));
}

void CMessageBox::SetResponder(RESPONDER NewResponder) {
  Responder() = std::move(NewResponder);
}

CMessageBox::CMessageBox(const QString& sTitle, const QString& sText, int Timeout, const QString& sIcon,
                         QDialogButtonBox::StandardButtons Buttons)
    : QDialog(QApplication::activeWindow(), Qt::Dialog | Qt::FramelessWindowHint | Qt::WindowTitleHint),
      m_sText(sText),
      m_Timeout(Timeout) {
  setObjectName(QStringLiteral("MessageBox"));
  setWindowTitle(QStringLiteral("   ") + QString(sTitle).remove(QLatin1Char('&')).trimmed());
  resize(BOX_WIDTH, height());
  auto* const pLayout = new QVBoxLayout(this);

  auto* const pTitle = new QLabel(QString(sTitle).remove(QLatin1Char('&')).trimmed(), this);
  QFont Bold = pTitle->font();
  Bold.setBold(true);
  pTitle->setFont(Bold);
  pLayout->addWidget(pTitle);

  auto* const pBody = new QHBoxLayout;
  auto* const pIcon = new QLabel(this);
  pIcon->setPixmap(GetIcon(sIcon).pixmap(ICON_SIZE));
  pIcon->setVisible(!pIcon->pixmap().isNull());
  pIcon->setAlignment(Qt::AlignTop);
  auto* const pMessage = new QLabel(sText, this);
  pMessage->setObjectName(QStringLiteral("Message"));
  pMessage->setTextInteractionFlags(Qt::TextSelectableByMouse);
  pBody->addWidget(pIcon);
  pBody->addWidget(pMessage, 1);
  pLayout->addLayout(pBody);

  auto* const pFrame = new QFrame(this);
  auto* const pFrameLayout = new QHBoxLayout(pFrame);
  pFrameLayout->setContentsMargins(0, 0, 0, 0);
  m_pCheckBox = new QCheckBox(CheckBoxText(Timeout), pFrame);
  pFrameLayout->addWidget(m_pCheckBox);
  pFrame->setVisible(Timeout != NO_CHECK_BOX && GetVarValue(PREF_DIALOG_SHOW_DNSA) != 0);
  pLayout->addWidget(pFrame);

  m_pButtons = new QDialogButtonBox(Buttons, this);
  pLayout->addWidget(m_pButtons);
  LayOutButtons();
  connect(m_pButtons, &QDialogButtonBox::clicked, this, &CMessageBox::OnButtonClicked);
}

void CMessageBox::LayOutButtons() {
  int Width = MIN_BUTTON_WIDTH;
  for (const QAbstractButton* const pButton : m_pButtons->buttons())
    Width = std::max(Width, pButton->sizeHint().width());
  for (QAbstractButton* const pButton : m_pButtons->buttons()) pButton->setMinimumWidth(Width);
  m_pButtons->setCenterButtons(m_pButtons->buttons().size() < 3);
  QPushButton* const pYes = m_pButtons->button(QDialogButtonBox::Yes);
  QPushButton* const pNo = m_pButtons->button(QDialogButtonBox::No);
  if (pYes) pYes->setShortcut(Qt::Key_Y);
  if (pNo) pNo->setShortcut(Qt::Key_N);
  if (pYes && m_pButtons->button(QDialogButtonBox::Ok)) {
    pYes->setDefault(true);
    pYes->setFocus();
  }
}

void CMessageBox::OnButtonClicked(QAbstractButton* pButton) {
  m_Result = ResultOfRole(m_pButtons->buttonRole(pButton));
  m_Pressed = m_pButtons->standardButton(pButton);
  if (m_Result != OTHER && m_pCheckBox->isChecked()) StoreTimeout();
  done(m_Result);
}

void CMessageBox::StoreTimeout() const {
  if (m_sText.isEmpty() || m_Timeout == NO_CHECK_BOX) return;
  quint64 Value = static_cast<quint64>(QDateTime::currentMSecsSinceEpoch() + m_Timeout * MS_PER_HOUR);
  if (m_Timeout == FOR_THIS_RUN) Value = STORED_FOR_THIS_RUN;
  if (m_Timeout == FOR_GOOD) Value = STORED_FOR_GOOD;
  SetSetting(TIMEOUT_GROUP, TimeoutKey(m_sText), Value);
}
