#include "ui/table/filter_header_dialog.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLineEdit>
#include <QRegularExpression>

#include "shell/look/look.h"
#include "ui/table/column_filter.h"

namespace {

constexpr int FIELD_WIDTH = 200;  // pixels; the title needs it too

}  // namespace

CFilterHeaderDialog::CFilterHeaderDialog(QWidget* pParent, const QString& sColumn, U32 Kind)
    : CDialog(pParent, QStringLiteral("FilterHeaderDialog"), QStringLiteral("Set Filter: ") + sColumn), m_Kind(Kind) {
  setWindowIcon(GetIcon(QStringLiteral("funnel-small.png")));
  auto* const pLayout = new QVBoxLayout(this);
  auto* const pForm = new QFormLayout;
  m_pMin = new QLineEdit(this);
  m_pMax = new QLineEdit(this);
  pForm->addRow(QStringLiteral("Min:"), m_pMin);
  pForm->addRow(QStringLiteral("Max:"), m_pMax);
  m_pButtons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
  pLayout->addLayout(pForm);
  pLayout->addWidget(m_pButtons);
  for (QLineEdit* const pField : {m_pMin, m_pMax}) {
    pField->setMinimumWidth(FIELD_WIDTH);
    connect(pField, &QLineEdit::textChanged, this, &CFilterHeaderDialog::OnEditBoxTextChanged);
  }
  connect(m_pButtons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(m_pButtons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  SetFixedToContents();
}

bool CFilterHeaderDialog::IsNumber(const QString& sText) const {
  if (sText.trimmed().isEmpty()) return true;
  bool bOk = false;
  if (m_Kind & COLUMN_FLOAT) {
    ParseShownFloat(sText, &bOk);
  } else {
    ParseShownInteger(sText, InputBaseOf(m_Kind), &bOk);
  }
  return bOk;
}

void CFilterHeaderDialog::OnEditBoxTextChanged() {
  const FILTER_INFO Info = CColumnFilter(GetFilter(), m_Kind).Info();
  const bool bRange = GetFilter() == NO_FILTER ||
                      (Info.bValid && (m_Kind & COLUMN_FLOAT ? Info.FloatMin <= Info.FloatMax : Info.Min <= Info.Max));
  m_pButtons->button(QDialogButtonBox::Ok)->setEnabled(IsNumber(m_pMin->text()) && IsNumber(m_pMax->text()) && bRange);
}

// The forms that GetFilter writes; of any other the user starts anew.
void CFilterHeaderDialog::SetFilter(const QString& sFilter) {
  static const QRegularExpression Range(QStringLiteral("^(.+) - (.+)$"));
  const QRegularExpressionMatch Match = Range.match(sFilter);
  if (Match.hasMatch()) {
    m_pMin->setText(Match.captured(1));
    m_pMax->setText(Match.captured(2));
  } else if (sFilter.startsWith(QLatin1String(">="))) {
    m_pMin->setText(sFilter.mid(2).trimmed());
  } else if (sFilter.startsWith(QLatin1String("<="))) {
    m_pMax->setText(sFilter.mid(2).trimmed());
  } else if (sFilter != NO_FILTER && IsNumber(sFilter)) {
    m_pMin->setText(sFilter.trimmed());
    m_pMax->setText(sFilter.trimmed());
  }
}

QString CFilterHeaderDialog::GetFilter() const {
  const QString sMin = m_pMin->text().trimmed();
  const QString sMax = m_pMax->text().trimmed();
  if (sMin.isEmpty() && sMax.isEmpty()) return NO_FILTER;
  if (sMin.isEmpty()) return QStringLiteral("<= ") + sMax;
  if (sMax.isEmpty()) return QStringLiteral(">= ") + sMin;
  return sMin + QStringLiteral(" - ") + sMax;
}
