#include "program/windows/functions_data_model.h"

#include <algorithm>

#include "base/stable_hash.h"
#include "base/text.h"
#include "device/breakpoints/breakpoint_location.h"
#include "program/database/elfapi.h"
#include "program/windows/inst_count.h"
#include "shell/look/look.h"

namespace {

const QString SCOPE = QStringLiteral("::");

QList<TABLE_COLUMN> MakeColumns() {
  return {{QStringLiteral("Name"), COLUMN_TEXT, 22, COLUMN_FIXED},
          {QStringLiteral("Address"), COLUMN_INTEGER | COLUMN_HEX, 11, COLUMN_VALUE_FONT},
          {QStringLiteral("Size"), COLUMN_INTEGER, 8, COLUMN_VALUE_FONT, Qt::AlignRight},
          {QStringLiteral("#Insts"), COLUMN_INTEGER, 8, COLUMN_VALUE_FONT, Qt::AlignRight},
          {QStringLiteral("Class"), COLUMN_TEXT, 20},
          {QStringLiteral("Source"), COLUMN_TEXT, 20}};
}

}  // namespace

struct CFunctionsDataModel::ROW {
  ELF_SYM_HANDLE hFunc = 0;
  ROW* pParent = nullptr;
  int Pos = 0;  // among its siblings
  // Known once they were asked for.
  bool bFilled = false;
  bool bChildrenKnown = false;
  QString sName;
  QString sClass;
  QAddrRanges Ranges;
  U32 NumBytes = 0;
  I64 NumInsts = -1;  // counting decodes the code: only when it is asked for
  CSrcLoc Loc;
  std::vector<std::unique_ptr<ROW>> Children;
};

CFunctionsDataModel::CFunctionsDataModel() : CTableModel(QStringLiteral("FunctionsDataModel"), MakeColumns()) {}

CFunctionsDataModel::~CFunctionsDataModel() = default;

void CFunctionsDataModel::Reload() {
  beginResetModel();
  m_Rows.clear();
  for (const ELF_SYM_HANDLE hFunc : ELFAPI_GetFunctions()) {
    ROW& Row = *m_Rows.emplace_back(std::make_unique<ROW>());
    Row.hFunc = hFunc;
    Row.Pos = static_cast<int>(m_Rows.size()) - 1;
  }
  endResetModel();
}

void CFunctionsDataModel::Clear() {
  if (m_Rows.empty()) return;
  beginResetModel();
  m_Rows.clear();
  endResetModel();
}

void CFunctionsDataModel::SetClassNamesShown(bool bShown) {
  if (bShown == m_bClassNames) return;
  m_bClassNames = bShown;
  TellChanged();
}

void CFunctionsDataModel::SetBreakpoints(QAddrList Addrs) {
  std::ranges::sort(Addrs);
  if (Addrs == m_Breakpoints) return;
  m_Breakpoints = std::move(Addrs);
  if (!m_Rows.empty())
    Q_EMIT dataChanged(index(0, COLUMN_NAME), index(rowCount() - 1, COLUMN_NAME), {Qt::DecorationRole});
}

// ---- Rows

CFunctionsDataModel::ROW* CFunctionsDataModel::RowOf(const QModelIndex& Index) const {
  return static_cast<ROW*>(Index.internalPointer());
}

int CFunctionsDataModel::rowCount(const QModelIndex& Parent) const {
  if (!Parent.isValid()) return static_cast<int>(m_Rows.size());
  if (Parent.column() > 0) return 0;
  FindChildren(*RowOf(Parent));
  return static_cast<int>(RowOf(Parent)->Children.size());
}

QModelIndex CFunctionsDataModel::index(int Row, int Column, const QModelIndex& Parent) const {
  if (Row < 0 || Column < 0 || Column >= columnCount(Parent) || Row >= rowCount(Parent)) return {};
  const auto& Rows = Parent.isValid() ? RowOf(Parent)->Children : m_Rows;
  return createIndex(Row, Column, Rows[static_cast<size_t>(Row)].get());
}

QModelIndex CFunctionsDataModel::parent(const QModelIndex& Index) const {
  ROW* const pParent = Index.isValid() ? RowOf(Index)->pParent : nullptr;
  return pParent ? createIndex(pParent->Pos, 0, pParent) : QModelIndex();
}

void CFunctionsDataModel::FindChildren(ROW& Row) const {
  if (Row.bChildrenKnown) return;
  Row.bChildrenKnown = true;
  if (Row.pParent) return;
  for (const ELF_SYM_HANDLE hInstance : ELFAPI_GetInlinedFuncs(Row.hFunc)) {
    ROW& Child = *Row.Children.emplace_back(std::make_unique<ROW>());
    Child.hFunc = hInstance;
    Child.pParent = &Row;
    Child.Pos = static_cast<int>(Row.Children.size()) - 1;
  }
}

const QString& CFunctionsDataModel::NameOf(ROW& Row) const {
  if (!Row.sName.isNull()) return Row.sName;
  if (ELFAPI_IsInlined(Row.hFunc)) {
    Row.sName = QStringLiteral("inlined in:  ") + ELFAPI_GetName(ELFAPI_GetFunctionOf(Row.hFunc));
  } else {
    Row.sName = ELFAPI_GetName(Row.hFunc);
  }
  if (Row.sName.isNull()) Row.sName = QLatin1String("");
  return Row.sName;
}

void CFunctionsDataModel::Fill(ROW& Row) const {
  if (Row.bFilled) return;
  Row.bFilled = true;
  Row.sClass = ELFAPI_GetScopeName(Row.hFunc);
  Row.Ranges = ELFAPI_GetAddrRanges(Row.hFunc);
  Row.NumBytes = ELFAPI_GetSize(Row.hFunc);
  const U32 Addr = ELFAPI_GetAddr(Row.hFunc);
  if (Row.Ranges.isEmpty() && Addr != INVALID_ADDR && Row.NumBytes > 0) Row.Ranges << CAddrRange{Addr, Row.NumBytes};
  Row.Loc = ELFAPI_IsInlined(Row.hFunc) ? ELFAPI_GetCallLoc(Row.hFunc) : ELFAPI_GetDeclLoc(Row.hFunc);
  if (!Row.Loc.IsValid()) Row.Loc = ELFAPI_GetFirstSrcLoc(Addr);
}

U32 CFunctionsDataModel::NumInstsOf(ROW& Row) {
  if (Row.NumInsts < 0) Row.NumInsts = CountProgramInsts(Row.Ranges);
  return static_cast<U32>(Row.NumInsts);
}

ELF_SYM_HANDLE CFunctionsDataModel::FuncOf(const QModelIndex& Index) const {
  return Index.isValid() ? RowOf(Index)->hFunc : 0;
}

QAddrRanges CFunctionsDataModel::RangesOf(const QModelIndex& Index) const {
  if (!Index.isValid()) return {};
  Fill(*RowOf(Index));
  return RowOf(Index)->Ranges;
}

CSrcLoc CFunctionsDataModel::LocOf(const QModelIndex& Index) const {
  if (!Index.isValid()) return {};
  Fill(*RowOf(Index));
  return RowOf(Index)->Loc;
}

QString CFunctionsDataModel::CommandTextOf(const QModelIndex& Index) const {
  if (!Index.isValid()) return {};
  const ELF_SYM_HANDLE hFunc = RowOf(Index)->hFunc;
  const QString sName = ELFAPI_GetQualifiedName(hFunc);
  if (!ELFAPI_IsInlined(hFunc) && ELFAPI_FindSymbol(sName, true, false, false, true) == hFunc) return sName;
  const U32 Addr = ELFAPI_GetAddr(hFunc);
  const CSrcLoc Loc = ELFAPI_GetFirstSrcLoc(Addr);
  if (Loc.IsValid()) return UniqueLineText(Loc);
  return Addr != INVALID_ADDR ? HexText(Addr) : sName;
}

bool CFunctionsDataModel::HasBreakpoint(const ROW& Row) const {
  return std::ranges::any_of(Row.Ranges, [this](const CAddrRange& Range) {
    const auto it = std::ranges::lower_bound(m_Breakpoints, Range.Start);
    return it != m_Breakpoints.end() && Range.Contains(*it);
  });
}

bool CFunctionsDataModel::HasBreakpoint(const QModelIndex& Index) const {
  if (!Index.isValid()) return false;
  Fill(*RowOf(Index));
  return HasBreakpoint(*RowOf(Index));
}

// ---- Cells

QVariant CFunctionsDataModel::TextOf(ROW& Row, int Column) const {
  if (Column == COLUMN_NAME && !m_bClassNames) return NameOf(Row);
  Fill(Row);
  switch (Column) {
    case COLUMN_NAME:
      return Row.sClass.isEmpty() || Row.pParent ? NameOf(Row) : Row.sClass + SCOPE + NameOf(Row);
    case COLUMN_ADDRESS:
      return Row.Ranges.isEmpty() ? QVariant() : AddrText(ELFAPI_GetAddr(Row.hFunc), true);
    case COLUMN_SIZE:
      return Row.Ranges.isEmpty() ? QVariant() : GroupedText(Row.NumBytes);
    case COLUMN_INSTS:
      return Row.Ranges.isEmpty() ? QVariant() : GroupedText(NumInstsOf(Row));
    case COLUMN_CLASS:
      return Row.sClass;
    default:
      return Row.Loc.IsValid() ? ELFAPI_GetSrcLocText({Row.Loc.File, Row.Loc.Line, 0}) : QVariant();
  }
}

QVariant CFunctionsDataModel::SortValueOf(ROW& Row, int Column) const {
  Fill(Row);
  if (Row.Ranges.isEmpty()) return {};
  switch (Column) {
    case COLUMN_ADDRESS:
      return static_cast<qlonglong>(ELFAPI_GetAddr(Row.hFunc));
    case COLUMN_SIZE:
      return static_cast<qlonglong>(Row.NumBytes);
    case COLUMN_INSTS:
      return static_cast<qlonglong>(NumInstsOf(Row));
    default:
      return {};
  }
}

QVariant CFunctionsDataModel::GetItemData(const QModelIndex& Index, int Role) const {
  ROW& Row = *RowOf(Index);
  const int Column = Index.column();
  const bool bNumber = Column >= COLUMN_ADDRESS && Column <= COLUMN_INSTS;
  switch (Role) {
    case Qt::DisplayRole:
      return TextOf(Row, Column);
    case Qt::DecorationRole:
      if (Column != COLUMN_NAME || m_Breakpoints.isEmpty()) return {};
      Fill(Row);
      return HasBreakpoint(Row) ? GetIcon(QStringLiteral("breakpoint-small.png")) : QVariant();
    case ROLE_SORT_VALUE:
      return bNumber ? SortValueOf(Row, Column) : QVariant();
    case ROLE_HAS_VALUE:
      if (!bNumber) return true;
      Fill(Row);
      return !Row.Ranges.isEmpty();
    case ROLE_ITEM_ID: {
      // Addresses move from build to build; names of one function and another may be the same.
      const QString sName = ELFAPI_GetQualifiedName(Row.hFunc);
      const CSrcLoc Loc = ELFAPI_GetDeclLoc(Row.hFunc);
      return StableHash32(sName + u' ' + NameOf(Row) + u' ' + QString::number(Loc.File));
    }
    default:
      return {};
  }
}
