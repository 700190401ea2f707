#include "program/windows/src_files_data_model.h"

#include <QFileInfo>
#include <QLocale>

#include "base/stable_hash.h"
#include "base/text.h"

#include "program/database/elfapi.h"
#include "program/database/file_finder.h"
#include "program/windows/inst_count.h"
#include "shell/actions/action_dispatch.h"
#include "shell/actions/action_ids.h"
#include "shell/look/look.h"

namespace {

QList<TABLE_COLUMN> MakeColumns() {
  return {{QStringLiteral("File"), COLUMN_TEXT, 18, COLUMN_FIXED},
          {QStringLiteral("Status"), COLUMN_TEXT, 9},
          {QStringLiteral("Size"), COLUMN_INTEGER, 9, COLUMN_VALUE_FONT, Qt::AlignRight},
          {QStringLiteral("#Insts"), COLUMN_INTEGER, 8, COLUMN_VALUE_FONT, Qt::AlignRight},
          {QStringLiteral("Path"), COLUMN_TEXT, 40, COLUMN_EDITABLE}};
}

// Of a path of any system.
QString NameOf(QString sPath) {
  return sPath.replace(u'\\', u'/').section(u'/', -1);
}

}  // namespace

CSourceFilesDataModel::CSourceFilesDataModel() : CTableModel(QStringLiteral("SrcFilesDataModel"), MakeColumns()) {}

void CSourceFilesDataModel::Reload() {
  const QHash<U32, QAddrRanges> Code = ELFAPI_GetFileCode();
  beginResetModel();
  m_Items.clear();
  for (const U32 FileNo : ELFAPI_GetFileIds()) {
    FILE_ITEM& Item = m_Items.emplace_back();
    Item.FileNo = FileNo;
    Item.sPath = ELFAPI_GetFilePathOf(FileNo);
    Item.sName = NameOf(Item.sPath);
    Item.Code = Code.value(FileNo);
    for (const CAddrRange& Range : std::as_const(Item.Code)) Item.NumBytes += Range.Size;
  }
  endResetModel();
}

void CSourceFilesDataModel::Clear() {
  if (m_Items.empty()) return;
  beginResetModel();
  m_Items.clear();
  endResetModel();
}

void CSourceFilesDataModel::InvalidateFilePaths() {
  for (FILE_ITEM& Item : m_Items) Item.bResolved = false;
  TellChanged();
}

CSourceFilesDataModel::FILE_ITEM& CSourceFilesDataModel::Resolved(int Row) const {
  FILE_ITEM& Item = m_Items[static_cast<size_t>(Row)];
  if (Item.bResolved) return Item;
  Item.bResolved = true;
  Item.sFound = CFileFinder::Get()->ResolvePath(Item.sPath);
  Item.bExists = QFileInfo(Item.sFound).isFile();
  if (Item.sFound.isEmpty()) Item.sFound = Item.sPath;
  return Item;
}

U32 CSourceFilesDataModel::NumInstsOf(int Row) const {
  FILE_ITEM& Item = m_Items[static_cast<size_t>(Row)];
  if (Item.NumInsts < 0) Item.NumInsts = CountProgramInsts(Item.Code);
  return static_cast<U32>(Item.NumInsts);
}

const CSourceFilesDataModel::FILE_ITEM* CSourceFilesDataModel::ItemOf(const QModelIndex& Index) const {
  if (!Index.isValid()) return nullptr;
  NumInstsOf(Index.row());
  return &Resolved(Index.row());
}

int CSourceFilesDataModel::rowCount(const QModelIndex& Parent) const {
  return Parent.isValid() ? 0 : static_cast<int>(m_Items.size());
}

QVariant CSourceFilesDataModel::TextOf(int Row, int Column) const {
  const FILE_ITEM& Item = m_Items[static_cast<size_t>(Row)];
  switch (Column) {
    case COLUMN_FILE:
      return Item.sName;
    case COLUMN_STATUS:
      return Item.Code.isEmpty() ? QStringLiteral("included") : QStringLiteral("compiled");
    case COLUMN_SIZE:
      return Item.Code.isEmpty() ? QVariant()
                                 : QLocale().formattedDataSize(Item.NumBytes, 1, QLocale::DataSizeTraditionalFormat);
    case COLUMN_INSTS:
      return Item.Code.isEmpty() ? QVariant() : GroupedText(NumInstsOf(Row));
    default:
      return Resolved(Row).sFound;
  }
}

QVariant CSourceFilesDataModel::SortValueOf(int Row, int Column) const {
  const FILE_ITEM& Item = m_Items[static_cast<size_t>(Row)];
  if (Item.Code.isEmpty()) return {};
  if (Column == COLUMN_SIZE) return static_cast<qlonglong>(Item.NumBytes);
  return Column == COLUMN_INSTS ? QVariant(static_cast<qlonglong>(NumInstsOf(Row))) : QVariant();
}

QVariant CSourceFilesDataModel::GetItemData(const QModelIndex& Index, int Role) const {
  const int Row = Index.row();
  const bool bNumber = Index.column() == COLUMN_SIZE || Index.column() == COLUMN_INSTS;
  switch (Role) {
    case Qt::DisplayRole:
      return TextOf(Row, Index.column());
    case Qt::DecorationRole: {
      if (Index.column() != COLUMN_FILE) return {};
      const FILE_ITEM& Item = Resolved(Row);
      const char* const sWithCode = Item.Code.isEmpty() ? "document-empty.png" : "document-binary.png";
      return GetIcon(QLatin1String(Item.bExists ? sWithCode : "document--exclamation.png"));
    }
    case ROLE_SORT_VALUE:
      return SortValueOf(Row, Index.column());
    case ROLE_HAS_VALUE:
      return !bNumber || !m_Items[static_cast<size_t>(Row)].Code.isEmpty();
    case ROLE_ITEM_ID:
      return StableHash32(m_Items[static_cast<size_t>(Row)].sPath);
    default:
      return {};
  }
}

bool CSourceFilesDataModel::SetItemData(const QModelIndex& Index, const QVariant& Value) {
  const QString sOld = Resolved(Index.row()).sFound;
  const QString sNew = Value.toString().trimmed();
  if (Index.column() != COLUMN_PATH || sNew.isEmpty() || sNew == sOld) return false;
  PerformAction(ACTION_PROJ_ADD_FILE_ALIAS, m_Items[static_cast<size_t>(Index.row())].sPath, sNew);
  InvalidateFilePaths();
  return true;
}
