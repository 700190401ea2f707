#pragma once
// A tree of names and numbers whose rows a test makes.

#include "ui/table/table_model.h"

class CSampleModel : public CTableModel {
public:
  enum COLUMNS { COLUMN_NAME, COLUMN_COUNT, COLUMN_ADDR, NUM_COLUMNS };
  struct ROW {
    QString sName;
    I64 Count = 0;
    std::vector<std::unique_ptr<ROW>> Children;
    ROW* pParent = nullptr;
  };

  CSampleModel()
      : CTableModel(QStringLiteral("SampleModel"),
                    {{QStringLiteral("Name"), COLUMN_TEXT, 12, COLUMN_FIXED},
                     {QStringLiteral("Count"), COLUMN_INTEGER, 12, COLUMN_EDITABLE, Qt::AlignRight},
                     {QStringLiteral("Addr"), COLUMN_INTEGER | COLUMN_HEX, 12, COLUMN_VALUE_FONT}}) {}

  bool IsFlat() const override { return false; }
  bool HasDisplayFormats() const override { return true; }
  int rowCount(const QModelIndex& Parent = QModelIndex()) const override {
    return Parent.column() > 0 ? 0 : static_cast<int>(RowOf(Parent)->Children.size());
  }
  QModelIndex index(int Row, int Column, const QModelIndex& Parent = QModelIndex()) const override {
    if (!hasIndex(Row, Column, Parent)) return {};
    return createIndex(Row, Column, RowOf(Parent)->Children[static_cast<size_t>(Row)].get());
  }
  QModelIndex parent(const QModelIndex& Index) const override {
    return Index.isValid() ? IndexOf(RowOf(Index)->pParent) : QModelIndex();
  }
  QVariant GetItemData(const QModelIndex& Index, int Role) const override {
    const ROW& Row = *RowOf(Index);
    if (Role == Qt::DisplayRole && Index.column() == COLUMN_NAME) return Row.sName;
    if (Role == Qt::DisplayRole) return QString::number(Row.Count, Index.column() == COLUMN_ADDR ? 16 : 10);
    if (Role == ROLE_SORT_VALUE && Index.column() != COLUMN_NAME) return Row.Count;
    return {};
  }
  bool SetItemData(const QModelIndex& Index, const QVariant& Value) override {
    RowOf(Index)->Count = Value.toLongLong();
    TellChanged(Index);
    return true;
  }

  void Insert(const QModelIndex& Parent, int Pos, const QString& sName, I64 Count) {
    ROW* const pParent = RowOf(Parent);
    beginInsertRows(Parent, Pos, Pos);
    auto pRow = std::make_unique<ROW>();
    pRow->sName = sName;
    pRow->Count = Count;
    pRow->pParent = pParent;
    pParent->Children.insert(pParent->Children.begin() + Pos, std::move(pRow));
    endInsertRows();
  }
  void Remove(const QModelIndex& Parent, int First, int Last) {
    auto& Children = RowOf(Parent)->Children;
    beginRemoveRows(Parent, First, Last);
    Children.erase(Children.begin() + First, Children.begin() + Last + 1);
    endRemoveRows();
  }
  // "Name=Count", below a name its children between brackets: "a=1[b=2,c=3],d=4".
  void Fill(const QString& sRows) {
    beginResetModel();
    m_Root.Children.clear();
    qsizetype Pos = 0;
    Read(&m_Root, sRows, &Pos);
    endResetModel();
  }
  QModelIndex Find(const QString& sName) const {
    const QModelIndexList Found =
        match(index(0, 0), Qt::DisplayRole, sName, 1, Qt::MatchExactly | Qt::MatchRecursive | Qt::MatchCaseSensitive);
    return Found.value(0);
  }

private:
  ROW* RowOf(const QModelIndex& Index) const {
    return Index.isValid() ? static_cast<ROW*>(Index.internalPointer()) : const_cast<ROW*>(&m_Root);
  }
  QModelIndex IndexOf(ROW* pRow) const {
    if (pRow == &m_Root) return {};
    const auto& Siblings = pRow->pParent->Children;
    const auto it = std::ranges::find_if(Siblings, [pRow](const auto& pOther) { return pOther.get() == pRow; });
    return createIndex(static_cast<int>(it - Siblings.begin()), 0, pRow);
  }
  static void Read(ROW* pParent, const QString& sText, qsizetype* pPos) {
    while (*pPos < sText.size()) {
      const QChar Next = sText[*pPos];
      if (Next == u'[' || Next == u',') {
        ++*pPos;
        if (Next == u'[') Read(pParent->Children.back().get(), sText, pPos);
        continue;
      }
      if (Next == u']') return void(++*pPos);
      qsizetype End = *pPos;
      while (End < sText.size() && !QStringLiteral("[],").contains(sText[End])) ++End;
      const QString sRow = sText.mid(*pPos, End - *pPos);
      auto& pRow = pParent->Children.emplace_back(std::make_unique<ROW>());
      pRow->sName = sRow.section(u'=', 0, 0);
      pRow->Count = sRow.section(u'=', 1).toLongLong();
      pRow->pParent = pParent;
      *pPos = End;
    }
  }

  ROW m_Root;
};
