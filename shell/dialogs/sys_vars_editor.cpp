#include "shell/dialogs/sys_vars_editor.h"

#include <QActionGroup>
#include <QDialogButtonBox>
#include <QHeaderView>
#include <QKeyEvent>
#include <QPushButton>
#include <QScreen>
#include <QVBoxLayout>

#include "base/text.h"
#include "shell/actions/action_dispatch.h"
#include "shell/actions/action_ids.h"
#include "shell/look/look.h"
#include "shell/settings/fonts.h"
#include "shell/settings/preferences.h"
#include "shell/settings/sys_vars.h"
#include "shell/settings/var_ids.h"
#include "ui/popup_menu.h"
#include "ui/table_widget.h"

namespace {

enum COLUMN : int { COLUMN_NAME, COLUMN_VALUE, COLUMN_ID, NUM_COLUMNS };

constexpr U32 NUM_SYS_VARS = FIRST_PREFERENCE;
constexpr double WIDTH_TO_HEADER = 1.1;
constexpr int CELL_MARGIN = 24;       // pixels beside the widest text
constexpr double MAX_HEIGHT = 0.8;    // of the screen
constexpr int LIGHT_LIGHTNESS = 128;  // of 255

bool IsSelection(U32 ID) {
  return GetVarInfo(ID)->Type == VAR_TYPE_SELECTION;
}

// A value that is none of the entries, such as a speed that a project gave, is still to be seen.
QString ValueText(U32 ID) {
  const QString sText = GetVarText(GetVarInfo(ID));
  return sText.isEmpty() && IsSelection(ID) ? QString::number(GetVarValue(ID)) : sText;
}

int WidestValue(U32 ID) {
  int Width = GetTextWidth(FONT_APP, ValueText(ID));
  for (const QString& sName : GetVarValueNames(GetVarInfo(ID))) {
    Width = std::max(Width, GetTextWidth(FONT_APP, sName));
  }
  return Width;
}

bool IsEditKey(const QKeyEvent& Event) {
  switch (Event.key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_F2:
    case Qt::Key_F4:
    case Qt::Key_Space:
      return true;
    case Qt::Key_Down:
      return Event.modifiers().testFlag(Qt::AltModifier);
    default:
      return false;
  }
}

}  // namespace

CSysVarsEditor::CSysVarsEditor(QWidget* pParent)
    : CDialog(pParent, QStringLiteral("SysVarsEditor"), QStringLiteral("System Variables")),
      m_pTable(new CTableWidget(NUM_SYS_VARS, NUM_COLUMNS, this)) {
  const bool bLightText = palette().color(QPalette::Text).lightness() >= LIGHT_LIGHTNESS;
  setWindowIcon(
      GetIcon(bLightText ? QStringLiteral("edit-mathematics-white.png") : QStringLiteral("edit-mathematics.png")));
  m_pTable->setHorizontalHeaderLabels({QStringLiteral("Name"), QStringLiteral("Value"), QStringLiteral("ID")});
  m_pTable->setColumnHidden(COLUMN_ID, true);
  m_pTable->setSelectionMode(QAbstractItemView::SingleSelection);
  m_pTable->setEditTriggers(QAbstractItemView::AnyKeyPressed | QAbstractItemView::EditKeyPressed);
  m_pTable->setWordWrap(false);
  m_pTable->installEventFilter(this);
  QHeaderView* const pHeader = m_pTable->horizontalHeader();
  pHeader->setSectionsMovable(true);
  pHeader->setStretchLastSection(true);
  pHeader->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);

  auto* const pButtons = new QDialogButtonBox(QDialogButtonBox::Close, this);
  pButtons->button(QDialogButtonBox::Close)->setDefault(true);
  auto* const pLayout = new QVBoxLayout(this);
  pLayout->addWidget(m_pTable, 1);
  pLayout->addWidget(pButtons);
  Fill();
  FitToContents();
  connect(pButtons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  connect(m_pTable, &QTableWidget::cellClicked, this, &CSysVarsEditor::OnCellClicked);
  connect(m_pTable, &QTableWidget::itemChanged, this, &CSysVarsEditor::OnItemChanged);
  m_Listener = AddSysVarListener([this](U32, U32) { Refresh(); });
}

CSysVarsEditor::~CSysVarsEditor() {
  RemoveVarListener(m_Listener);
}

void CSysVarsEditor::Fill() {
  for (U32 ID = 0; ID < NUM_SYS_VARS; ++ID) {
    const int Row = static_cast<int>(ID);
    auto* const pName = new QTableWidgetItem(QLatin1String(GetVarInfo(ID)->sDisplayName));
    pName->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
    pName->setToolTip(GetVarName(ID));
    auto* const pValue = new QTableWidgetItem(ValueText(ID));
    pValue->setFlags(pName->flags() | (IsSelection(ID) ? Qt::NoItemFlags : Qt::ItemIsEditable));
    auto* const pID = new QTableWidgetItem;
    pID->setData(Qt::DisplayRole, ID);
    m_pTable->setItem(Row, COLUMN_NAME, pName);
    m_pTable->setItem(Row, COLUMN_VALUE, pValue);
    m_pTable->setItem(Row, COLUMN_ID, pID);
  }
  m_pTable->sortItems(COLUMN_NAME);
  m_pTable->setCurrentCell(0, COLUMN_VALUE);
  m_pTable->setFocus();
}

void CSysVarsEditor::FitToContents() {
  int NameWidth = 0;
  int ValueWidth = 0;
  for (U32 ID = 0; ID < NUM_SYS_VARS; ++ID) {
    NameWidth = std::max(NameWidth, GetTextWidth(FONT_APP, QLatin1String(GetVarInfo(ID)->sDisplayName)));
    ValueWidth = std::max(ValueWidth, WidestValue(ID));
  }
  QHeaderView* const pHeader = m_pTable->horizontalHeader();
  pHeader->resizeSection(COLUMN_NAME, NameWidth + CELL_MARGIN);
  pHeader->resizeSection(COLUMN_VALUE, ValueWidth + CELL_MARGIN);
  const int Width = static_cast<int>((NameWidth + ValueWidth + 2 * CELL_MARGIN) * WIDTH_TO_HEADER);
  const int Rows = m_pTable->verticalHeader()->length() + pHeader->sizeHint().height() + 2 * m_pTable->frameWidth();
  const int Others = layout()->sizeHint().height() - m_pTable->sizeHint().height();
  resize(Width, std::min(Rows + Others, static_cast<int>(screen()->availableSize().height() * MAX_HEIGHT)));
}

void CSysVarsEditor::Refresh() {
  m_bRefreshing = true;
  for (int Row = 0; Row < m_pTable->rowCount(); ++Row)
    m_pTable->item(Row, COLUMN_VALUE)->setText(ValueText(RowID(Row)));
  m_bRefreshing = false;
}

U32 CSysVarsEditor::RowID(int Row) const {
  return m_pTable->item(Row, COLUMN_ID)->data(Qt::DisplayRole).toUInt();
}

void CSysVarsEditor::OnCellClicked(int Row, int Column) {
  if (Column == COLUMN_VALUE) EditValue(Row);
}

void CSysVarsEditor::EditValue(int Row) {
  if (IsSelection(RowID(Row))) {
    DropDownEntries(Row);
  } else {
    m_pTable->editItem(m_pTable->item(Row, COLUMN_VALUE));
  }
}

void CSysVarsEditor::DropDownEntries(int Row) {
  const U32 ID = RowID(Row);
  const QRect Cell = m_pTable->visualItemRect(m_pTable->item(Row, COLUMN_VALUE));
  CPopupMenu Menu(this);
  Menu.setMinimumWidth(Cell.width());
  QActionGroup Group(&Menu);
  QAction* pCurrent = nullptr;
  for (const QString& sName : GetVarValueNames(GetVarInfo(ID))) {
    QAction* const pEntry = Menu.addAction(MenuText(sName));
    pEntry->setData(sName);
    pEntry->setCheckable(true);
    Group.addAction(pEntry);
    pEntry->setChecked(sName == ValueText(ID));
    if (pEntry->isChecked()) pCurrent = pEntry;
  }
  const QAction* const pChosen = Menu.Run(m_pTable->viewport()->mapToGlobal(Cell.bottomLeft()), pCurrent);
  if (pChosen == nullptr) return;
  PerformAction(ACTION_EDIT_SYS_VAR, GetVarName(ID), pChosen->data());
  Refresh();
}

void CSysVarsEditor::OnItemChanged(QTableWidgetItem* pItem) {
  if (m_bRefreshing || pItem->column() != COLUMN_VALUE) return;
  const U32 ID = RowID(pItem->row());
  if (pItem->text() != ValueText(ID)) ApplyText(ID, pItem->text());
  Refresh();
}

void CSysVarsEditor::ApplyText(U32 ID, const QString& sText) {
  const SYS_VAR* const pVar = GetVarInfo(ID);
  // A text that is refused is told by the command.
  const bool bTaken = SetVarFromText(pVar, sText, 0) >= 0;
  PerformAction(ACTION_EDIT_SYS_VAR, GetVarName(ID), bTaken ? GetVarText(pVar) : sText);
}

bool CSysVarsEditor::eventFilter(QObject* pWatched, QEvent* pEvent) {
  if (pWatched == m_pTable && pEvent->type() == QEvent::KeyPress && m_pTable->currentRow() >= 0 &&
      IsEditKey(*static_cast<QKeyEvent*>(pEvent))) {
    // The key that ends an edit comes here too.
    const int Row = m_pTable->currentRow();
    if (!m_pTable->isPersistentEditorOpen(m_pTable->item(Row, COLUMN_VALUE))) EditValue(Row);
    return true;
  }
  return CDialog::eventFilter(pWatched, pEvent);
}
