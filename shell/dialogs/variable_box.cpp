#include "shell/dialogs/variable_box.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalBlocker>
#include <QVBoxLayout>

#include "shell/actions/action_dispatch.h"
#include "shell/actions/action_ids.h"
#include "shell/settings/sys_vars.h"

namespace {

constexpr int SPACING = 8;            // pixels
constexpr int VALUE_CHARACTERS = 12;  // least width of the list of values

}  // namespace

CVariableBox::CVariableBox(const QList<U32>& IDs, QWidget* pParent) : QWidget(pParent) {
  auto* const pLayout = new QVBoxLayout(this);
  pLayout->setContentsMargins(0, 0, 0, 0);
  pLayout->setSpacing(SPACING);
  for (const U32 ID : IDs) {
    if (IsBoolVar(GetVarInfo(ID))) AddCheckBox(ID);
  }
  for (const U32 ID : IDs) {
    if (!IsBoolVar(GetVarInfo(ID))) AddItem(ID);
  }
  if (m_pItems) ShowValue();
}

void CVariableBox::AddCheckBox(U32 ID) {
  const SYS_VAR* const pVar = GetVarInfo(ID);
  auto* const pBox = new QCheckBox(QLatin1String(pVar->sLabel), this);
  pBox->setObjectName(GetVarName(ID));
  pBox->setToolTip(QLatin1String(pVar->sDisplayName));
  pBox->setChecked(GetVarValue(ID) != 0);
  m_CheckBoxes.insert(pBox, ID);
  layout()->addWidget(pBox);
  connect(pBox, &QCheckBox::stateChanged, this, &CVariableBox::OnCheckBoxStateChanged);
}

void CVariableBox::MakeItemRow() {
  m_pItems = new QComboBox(this);
  m_pItems->setObjectName(QStringLiteral("Items"));
  m_pValue = new QComboBox(this);
  m_pValue->setObjectName(QStringLiteral("Value"));
  m_pValue->setInsertPolicy(QComboBox::NoInsert);
  m_pValue->setMinimumContentsLength(VALUE_CHARACTERS);
  m_pReset = new QPushButton(QStringLiteral("&Reset"), this);
  m_pReset->setObjectName(QStringLiteral("Reset"));
  m_pReset->setToolTip(QStringLiteral("Reset to Default"));
  m_pReset->setAutoDefault(false);
  auto* const pRow = new QHBoxLayout;
  pRow->setSpacing(SPACING);
  pRow->addWidget(m_pItems, 3);
  pRow->addWidget(m_pValue, 2);
  pRow->addWidget(m_pReset);
  static_cast<QVBoxLayout*>(layout())->addLayout(pRow);
  connect(m_pItems, &QComboBox::currentIndexChanged, this, &CVariableBox::OnItemSelected);
  connect(m_pReset, &QPushButton::clicked, this, &CVariableBox::OnButtonResetClicked);
  connect(m_pValue, &QComboBox::currentTextChanged, this, [this] {
    // A text that is being typed counts once it is complete.
    if (!m_pValue->isEditable()) OnComboBoxValueTextChanged();
  });
}

void CVariableBox::AddItem(U32 ID) {
  if (m_pItems == nullptr) MakeItemRow();
  const QSignalBlocker Blocker(m_pItems);
  m_pItems->addItem(QLatin1String(GetVarInfo(ID)->sLabel), ID);
  m_pItems->setItemData(m_pItems->count() - 1, QLatin1String(GetVarInfo(ID)->sDisplayName), Qt::ToolTipRole);
}

int CVariableBox::GetVariableID() const {
  return m_pItems ? m_pItems->currentData().toInt() : -1;
}

void CVariableBox::SetVariableID(int ID) {
  const int Index = m_pItems ? m_pItems->findData(static_cast<U32>(ID)) : -1;
  if (Index >= 0) m_pItems->setCurrentIndex(Index);
}

void CVariableBox::ShowValue() {
  const SYS_VAR* const pVar = GetVarInfo(static_cast<U32>(GetVariableID()));
  const QSignalBlocker Blocker(m_pValue);
  m_pValue->clear();
  m_pValue->addItems(GetVarValueNames(pVar));
  const bool bEditable = pVar->Type != VAR_TYPE_SELECTION;
  if (m_pValue->isEditable() != bEditable) {
    m_pValue->setEditable(bEditable);
    if (bEditable) {
      m_pValue->setCompleter(nullptr);
      connect(m_pValue->lineEdit(), &QLineEdit::editingFinished, this, &CVariableBox::OnComboBoxValueTextChanged);
    }
  }
  m_pValue->setToolTip(bEditable ? GetVarRangeText(pVar) : QLatin1String(pVar->sDisplayName));
  if (bEditable) {
    m_pValue->setEditText(GetVarText(pVar));
  } else {
    m_pValue->setCurrentIndex(m_pValue->findText(GetVarText(pVar)));
  }
}

void CVariableBox::OnItemSelected() {
  ShowValue();
}

void CVariableBox::OnButtonResetClicked() {
  const U32 ID = static_cast<U32>(GetVariableID());
  const QString sDefault = GetVarText(GetVarInfo(ID), GetVarDefault(ID));
  m_pValue->setCurrentText(sDefault);
  if (m_pValue->isEditable()) OnComboBoxValueTextChanged();
}

void CVariableBox::OnComboBoxValueTextChanged() {
  const U32 ID = static_cast<U32>(GetVariableID());
  const QString sText = m_pValue->currentText();
  if (sText != GetVarText(GetVarInfo(ID))) Apply(ID, sText);
  if (m_pValue->isEditable()) ShowValue();
}

void CVariableBox::OnCheckBoxStateChanged() {
  const auto* const pBox = qobject_cast<QCheckBox*>(sender());
  Apply(m_CheckBoxes.value(const_cast<QCheckBox*>(pBox)),
        pBox->isChecked() ? QStringLiteral("yes") : QStringLiteral("no"));
}

void CVariableBox::Apply(U32 ID, const QString& sText) {
  const SYS_VAR* const pVar = GetVarInfo(ID);
  bool bOk = false;
  const U32 Value = ParseVarValue(pVar, sText, &bOk);
  if (bOk) SetVarValue(pVar, Value, 1);
  // A value that is refused is told by the command.
  PerformAction(ACTION_EDIT_PREFERENCE, GetVarName(ID), sText);
  if (bOk) Q_EMIT VariableChanged(static_cast<int>(ID));
}
