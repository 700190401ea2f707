#include "shell/dialogs/device_panel.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QScrollBar>
#include <QSpinBox>
#include <QVBoxLayout>

#include "device/device_config.h"
#include "shell/dialogs/device_data_model.h"
#include "shell/look/look.h"
#include "shell/settings/fonts.h"
#include "ui/table/filter_header_view.h"
#include "ui/table/sort_filter.h"
#include "ui/table/table_header.h"
#include "ui/table/tree_view.h"

namespace {

constexpr int SPACING = 8;       // pixels
constexpr int CELL_MARGIN = 28;  // pixels beside the widest text
constexpr int MIN_COLUMN_CHARACTERS = 10;
constexpr int VISIBLE_ROWS = 10;  // at the start
constexpr int MIN_VISIBLE_ROWS = 4;
constexpr int MAX_CORE_INDEX = 255;
constexpr int DEVICE_COLUMN = CDeviceDataModel::COLUMN_DEVICE;

// As high as the rows that are wanted at the start.
class CDeviceTable : public CTreeView {
public:
  using CTreeView::CTreeView;
  QSize sizeHint() const override { return {CTreeView::sizeHint().width(), HeightOf(VISIBLE_ROWS)}; }
  QSize minimumSizeHint() const override { return {CTreeView::minimumSizeHint().width(), HeightOf(MIN_VISIBLE_ROWS)}; }

private:
  int HeightOf(int Rows) const {
    const int RowHeight = static_cast<const CItemDelegate*>(itemDelegate())->RowHeight();
    return Rows * RowHeight + header()->sizeHint().height() + 2 * frameWidth();
  }
};

}  // namespace

CDevicePanel::CDevicePanel(const QList<DEVICE_RECORD>& Devices, bool bDeviceNeeded, QWidget* pParent)
    : CConfigPanel(pParent),
      m_pModel(new CDeviceDataModel(Devices, this)),
      m_pProxy(new CSortFilter(this)),
      m_pTable(new CDeviceTable(this)),
      m_pHeader(new CTableHeader(m_pTable)),
      m_bDeviceNeeded(bDeviceNeeded) {
  m_pProxy->setSourceModel(m_pModel);
  InitTable();
  m_pFilters = new CFilterHeaderView(m_pTable, m_pHeader, m_pProxy, this);
  m_pFilters->SetLive();
  m_pFilters->SetFont(GetFont(FONT_APP));
  m_pFilters->SetShown(true);
  m_pNothing = new QLabel(m_pTable->viewport());
  m_pChosen = new QLabel(this);
  m_pChosen->setTextFormat(Qt::PlainText);
  m_pChosen->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
  m_pChosen->setObjectName(QStringLiteral("ChosenDevice"));
  m_pCoreIndex = new QSpinBox(this);
  m_pCoreIndex->setObjectName(QStringLiteral("CoreIndex"));
  m_pCoreIndex->setRange(0, MAX_CORE_INDEX);
  m_pCoreIndex->setToolTip(QStringLiteral("The core to debug, in a device or on a scan chain with several"));
  m_pEndian = new QComboBox(this);
  m_pEndian->setObjectName(QStringLiteral("Endian"));
  m_pEndian->addItem(QStringLiteral("Little"), ENDIAN_LITTLE);
  m_pEndian->addItem(QStringLiteral("Big"), ENDIAN_BIG);
  LayOut();
  // While rows go, the table may select others on its own: nobody chose those.
  connect(m_pProxy, &QAbstractItemModel::layoutAboutToBeChanged, this, [this] { m_bChanging = true; });
  connect(m_pProxy, &QAbstractItemModel::layoutChanged, this, &CDevicePanel::OnRowsChanged);
  connect(m_pFilters, &CFilterHeaderView::Left, this, &CDevicePanel::OnFilterLeft);
  connect(m_pTable->selectionModel(), &QItemSelectionModel::selectionChanged, this, &CDevicePanel::OnSelected);
  connect(m_pTable, &QTreeView::doubleClicked, this, &CDevicePanel::DeviceActivated);
  connect(m_pCoreIndex, &QSpinBox::valueChanged, this, &CConfigPanel::Changed);
  connect(m_pEndian, &QComboBox::currentIndexChanged, this, &CConfigPanel::Changed);
}

void CDevicePanel::InitTable() {
  m_pTable->setObjectName(QStringLiteral("Devices"));
  m_pTable->setHeader(m_pHeader);
  m_pTable->setModel(m_pProxy);
  m_pTable->setFont(GetFont(FONT_APP));
  m_pTable->SetFlat(true);
  m_pTable->setFrameShape(QFrame::StyledPanel);
  m_pTable->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
  auto* const pDelegate = new CItemDelegate(*this, m_pTable);
  pDelegate->SetFonts(GetFont(FONT_APP), GetFont(FONT_APP));
  m_pTable->setItemDelegate(pDelegate);
  m_pHeader->setFont(GetFont(FONT_TABLE_HEADER));
  m_pHeader->setSortIndicator(CDeviceDataModel::COLUMN_MANUFACTURER, Qt::AscendingOrder);
  m_pTable->setSortingEnabled(true);
  FitColumns();
}

void CDevicePanel::FitColumns() {
  int Width = m_pTable->verticalScrollBar()->sizeHint().width() + 2 * m_pTable->frameWidth();
  for (int Column = 0; Column < CDeviceDataModel::NUM_COLUMNS; ++Column) {
    int TextWidth = GetTextWidth(FONT_APP, QString(MIN_COLUMN_CHARACTERS, QLatin1Char('n')));
    for (int Row = 0; Row < m_pModel->rowCount(); ++Row)
      TextWidth = std::max(TextWidth, GetTextWidth(FONT_APP, m_pModel->index(Row, Column).data().toString()));
    m_pHeader->resizeSection(Column, TextWidth + CELL_MARGIN);
    Width += TextWidth + CELL_MARGIN;
  }
  m_pTable->setMinimumWidth(Width);
  m_pHeader->setStretchLastSection(false);
  m_pHeader->setSectionResizeMode(DEVICE_COLUMN, QHeaderView::Stretch);
}

void CDevicePanel::LayOut() {
  auto* const pHeading = new QLabel(QStringLiteral("&Devices that the V-Node library knows:"), this);
  pHeading->setBuddy(m_pFilters->Cell(DEVICE_COLUMN));
  auto* const pCore = new QLabel(QStringLiteral("&Core Index:"), this);
  pCore->setBuddy(m_pCoreIndex);
  auto* const pEndian = new QLabel(QStringLiteral("&Endianness:"), this);
  pEndian->setBuddy(m_pEndian);
  m_pNothing->setAlignment(Qt::AlignCenter);
  auto* const pCenter = new QVBoxLayout(m_pTable->viewport());
  pCenter->addWidget(m_pNothing);
  auto* const pRow = new QHBoxLayout;
  pRow->setSpacing(SPACING);
  pRow->addWidget(m_pChosen, 1);
  pRow->addWidget(pCore);
  pRow->addWidget(m_pCoreIndex);
  pRow->addSpacing(SPACING);
  pRow->addWidget(pEndian);
  pRow->addWidget(m_pEndian);
  auto* const pTable = new QVBoxLayout;
  pTable->setSpacing(0);
  pTable->addWidget(m_pFilters);
  pTable->addWidget(m_pTable, 1);
  auto* const pLayout = new QVBoxLayout(this);
  pLayout->setContentsMargins(0, 0, 0, 0);
  pLayout->setSpacing(SPACING);
  pLayout->addWidget(pHeading);
  pLayout->addLayout(pTable, 1);
  pLayout->addLayout(pRow);
}

void CDevicePanel::showEvent(QShowEvent* pEvent) {
  CConfigPanel::showEvent(pEvent);
  m_pFilters->EditFilter(DEVICE_COLUMN);
  SelectChosen();
}

void CDevicePanel::ShowConfig(const CDeviceConfig& Config) {
  const int CoreIndex = Config.Value(DCP_CORE_INDEX);
  m_sDevice = QString::fromUtf8(Config.Text(DCP_DEVICE_NAME));
  m_pCoreIndex->setMaximum(std::max(CoreIndex, MAX_CORE_INDEX));
  m_pCoreIndex->setValue(CoreIndex);
  m_pEndian->setCurrentIndex(Config.Value(DCP_ENDIAN) == ENDIAN_BIG ? 1 : 0);
  SelectChosen();
  ShowState();
}

void CDevicePanel::StoreConfig(CDeviceConfig* pConfig) const {
  pConfig->SetText(DCP_DEVICE_NAME, m_sDevice.toUtf8());
  pConfig->SetValue(DCP_CORE_INDEX, m_pCoreIndex->value());
  pConfig->SetValue(DCP_ENDIAN, m_pEndian->currentData().toInt());
}

bool CDevicePanel::IsInputValid() const {
  return !m_bDeviceNeeded || m_pModel->FindDevice(m_sDevice) >= 0;
}

void CDevicePanel::OnSelected() {
  const QModelIndexList Rows = m_pTable->selectionModel()->selectedRows(DEVICE_COLUMN);
  if (m_bChanging || Rows.isEmpty()) return;
  const QString sDevice = Rows.constFirst().data().toString();
  // The library doesn't tell the cases of letters apart: the name stays as a project wrote it.
  if (sDevice.compare(m_sDevice, Qt::CaseInsensitive) == 0) return;
  m_sDevice = sDevice;
  ShowState();
  Q_EMIT Changed();
}

// The chosen device may be hidden by a filter; it stays chosen.
void CDevicePanel::SelectChosen() {
  const int Row = m_pModel->FindDevice(m_sDevice);
  const QModelIndex Index = Row < 0 ? QModelIndex() : m_pProxy->mapFromSource(m_pModel->index(Row, DEVICE_COLUMN));
  if (!Index.isValid()) return m_pTable->selectionModel()->clear();
  m_pTable->setCurrentIndex(Index);
  m_pTable->scrollTo(Index, QAbstractItemView::PositionAtCenter);
}

void CDevicePanel::ShowState() {
  const int Row = m_pModel->FindDevice(m_sDevice);
  QString sChosen = QStringLiteral("No device is chosen");
  if (Row >= 0) {
    sChosen = QStringLiteral("Chosen: %1, %2").arg(m_sDevice, m_pModel->Device(Row).sCore);
  } else if (!m_sDevice.isEmpty()) {
    sChosen = QStringLiteral("Chosen: %1, which the library doesn't know").arg(m_sDevice);
  }
  m_pChosen->setText(sChosen);
  m_pChosen->setToolTip(sChosen);
  m_pNothing->setText(m_pModel->rowCount() == 0 ? QStringLiteral("The V-Node library has no devices")
                                                : QStringLiteral("No device matches the filters"));
  m_pNothing->setVisible(m_pProxy->rowCount() == 0);
}

void CDevicePanel::OnRowsChanged() {
  SelectChosen();
  m_bChanging = false;
  ShowState();
}

TEXT_MATCH CDevicePanel::GetFilterMatch(const QModelIndex& Index, const QString& sText) const {
  return m_pProxy->GetMatch(Index.column(), sText);
}

// From a filter to what it found: to the first row, unless the chosen device is among them.
void CDevicePanel::OnFilterLeft() {
  if (m_pProxy->rowCount() == 0) return;
  m_pTable->setFocus();
  if (!m_pTable->selectionModel()->hasSelection()) m_pTable->setCurrentIndex(m_pProxy->index(0, DEVICE_COLUMN));
}

QList<QWidget*> CDevicePanel::Inputs() const {
  QList<QWidget*> Inputs;
  for (int Column = 0; Column < CDeviceDataModel::NUM_COLUMNS; ++Column) Inputs << m_pFilters->Cell(Column);
  return Inputs << m_pTable << m_pCoreIndex << m_pEndian;
}
