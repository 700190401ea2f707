#include "ui/input_dialog.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "shell/look/look.h"
#include "shell/settings/fonts.h"

namespace {
constexpr int INPUT_CHARACTERS = 44;  // width of the input at the start
constexpr int SPACING = 8;            // pixels
}  // namespace

CInputDialog::CInputDialog(QWidget* pParent, const QString& sTitle, const QString& sIcon, const QString& sLabel)
    : CDialog(pParent, QStringLiteral("InputDialog"), QString(sTitle).remove(QLatin1Char('&'))) {
  if (!GetIcon(sIcon).isNull()) setWindowIcon(GetIcon(sIcon));
  auto* const pLayout = new QVBoxLayout(this);
  pLayout->setSpacing(SPACING);
  auto* const pLabel = new QLabel(sLabel, this);
  pLabel->setTextFormat(Qt::PlainText);
  pLayout->addWidget(pLabel);
  const int Width = GetTextWidth(FONT_APP, QString(INPUT_CHARACTERS, QLatin1Char('n')));
  m_pLine = new QLineEdit(this);
  m_pCombo = new QComboBox(this);
  m_pCombo->setInsertPolicy(QComboBox::NoInsert);
  m_pCombo->hide();
  for (QWidget* const pInput : {static_cast<QWidget*>(m_pLine), static_cast<QWidget*>(m_pCombo)}) {
    pInput->setMinimumWidth(Width);
    pLayout->addWidget(pInput);
  }
  m_pButtons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
  m_pButtons->button(QDialogButtonBox::Ok)->setDefault(true);
  pLayout->addStretch();
  pLayout->addWidget(m_pButtons);
  pLabel->setBuddy(m_pLine);
  connect(m_pButtons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(m_pButtons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  connect(m_pLine, &QLineEdit::textChanged, this, &CInputDialog::UpdateButtons);
  connect(m_pCombo, &QComboBox::currentTextChanged, this, &CInputDialog::UpdateButtons);
  SetFixedToContents();
}

void CInputDialog::UseCombo(bool bEditable) {
  m_pLine->hide();
  m_pCombo->setEditable(bEditable);
  if (bEditable) m_pCombo->setCompleter(nullptr);
  m_pCombo->show();
}

void CInputDialog::SetText(const QString& sText) {
  if (m_pCombo->isEditable()) {
    m_pCombo->setEditText(sText);
  } else {
    m_pLine->setText(sText);
  }
}

void CInputDialog::SetHistory(const QStringList& Texts) {
  const QString sText = m_pLine->text();
  UseCombo(true);
  m_pCombo->clear();
  m_pCombo->addItems(Texts);
  m_pCombo->setEditText(sText.isEmpty() ? Texts.value(0) : sText);
}

void CInputDialog::SetChoices(const QStringList& Texts, int Current) {
  UseCombo(false);
  m_pCombo->clear();
  m_pCombo->addItems(Texts);
  m_pCombo->setCurrentIndex(Current);
}

void CInputDialog::SetMandatory(bool bOn) {
  m_bMandatory = bOn;
  UpdateButtons();
}

QString CInputDialog::Text() const {
  return m_pCombo->isHidden() ? m_pLine->text() : m_pCombo->currentText();
}

int CInputDialog::Index() const {
  return m_pCombo->findText(Text(), Qt::MatchFixedString | Qt::MatchCaseSensitive);
}

QStringList CInputDialog::AddToHistory(QStringList History, const QString& sText, int MaxTexts) {
  if (sText.isEmpty()) return History;
  History.removeAll(sText);
  History.prepend(sText);
  return History.mid(0, MaxTexts);
}

void CInputDialog::UpdateButtons() {
  m_pButtons->button(QDialogButtonBox::Ok)->setEnabled(!m_bMandatory || !Text().trimmed().isEmpty());
}

void CInputDialog::showEvent(QShowEvent* pEvent) {
  CDialog::showEvent(pEvent);
  QLineEdit* const pLine = m_pCombo->isHidden() ? m_pLine : m_pCombo->lineEdit();
  if (pLine == nullptr) return m_pCombo->setFocus();
  pLine->setFocus();
  pLine->selectAll();
}
