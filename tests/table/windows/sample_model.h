#pragma once
// A tree of names and numbers whose rows a test makes.

#include <QStandardItem>

#include "ui/table/table_model.h"

class CSampleModel : public CTableModel {
public:
  enum COLUMNS { COLUMN_NAME, COLUMN_COUNT, COLUMN_ADDR, NUM_COLUMNS };
  CSampleModel()
      : CTableModel(QStringLiteral("SampleModel"),
                    {{QStringLiteral("Name"), COLUMN_TEXT, 12, COLUMN_FIXED},
                     {QStringLiteral("Count"), COLUMN_INTEGER, 12, COLUMN_EDITABLE, Qt::AlignRight},
                     {QStringLiteral("Addr"), COLUMN_INTEGER | COLUMN_HEX, 12, COLUMN_VALUE_FONT}}) {}

  bool bAddRow = false;  // the last row is for new items
  bool HasAddRow() const override { return bAddRow; }
  bool IsFlat() const override { return false; }
  bool HasDisplayFormats() const override { return true; }
  int rowCount(const QModelIndex& Parent = QModelIndex()) const override {
    return Parent.column() > 0 ? 0 : RowOf(Parent)->rowCount();
  }
  QModelIndex index(int Row, int Column, const QModelIndex& Parent = QModelIndex()) const override {
    return hasIndex(Row, Column, Parent) ? createIndex(Row, Column, RowOf(Parent)->child(Row)) : QModelIndex();
  }
  QModelIndex parent(const QModelIndex& Index) const override {
    QStandardItem* const pParent = RowOf(Index)->parent();
    return pParent && pParent != &m_Root ? createIndex(pParent->row(), 0, pParent) : QModelIndex();
  }
  QVariant GetItemData(const QModelIndex& Index, int Role) const override {
    const qlonglong Count = RowOf(Index)->data().toLongLong();
    if (Role == Qt::DisplayRole && Index.column() == COLUMN_NAME) return RowOf(Index)->text();
    if (Role == Qt::DisplayRole) return QString::number(Count, Index.column() == COLUMN_ADDR ? 16 : 10);
    if (Role == ROLE_SORT_VALUE && Index.column() != COLUMN_NAME) return Count;
    return {};
  }
  bool SetItemData(const QModelIndex& Index, const QVariant& Value) override {
    RowOf(Index)->setData(Value.toLongLong());
    TellChanged(Index);
    return true;
  }

  void Insert(const QModelIndex& Parent, int Pos, const QString& sName, I64 Count) {
    beginInsertRows(Parent, Pos, Pos);
    RowOf(Parent)->insertRow(Pos, Row(sName, Count));
    endInsertRows();
  }
  void Remove(const QModelIndex& Parent, int First, int Last) {
    beginRemoveRows(Parent, First, Last);
    RowOf(Parent)->removeRows(First, Last - First + 1);
    endRemoveRows();
  }
  // "Name=Count", below a name its children between brackets: "a=1[b=2,c=3],d=4".
  void Fill(const QString& sRows) {
    beginResetModel();
    m_Root.removeRows(0, m_Root.rowCount());
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
  QStandardItem* RowOf(const QModelIndex& Index) const {
    return Index.isValid() ? static_cast<QStandardItem*>(Index.internalPointer()) : &m_Root;
  }
  static QStandardItem* Row(const QString& sName, qlonglong Count) {
    auto* const pRow = new QStandardItem(sName);
    pRow->setData(Count);
    return pRow;
  }
  static void Read(QStandardItem* pParent, const QString& sText, qsizetype* pPos) {
    while (*pPos < sText.size()) {
      const QChar Next = sText[*pPos];
      if (Next == u'[' || Next == u',') {
        ++*pPos;
        if (Next == u'[') Read(pParent->child(pParent->rowCount() - 1), sText, pPos);
        continue;
      }
      if (Next == u']') return void(++*pPos);
      qsizetype End = *pPos;
      while (End < sText.size() && !QStringLiteral("[],").contains(sText[End])) ++End;
      const QString sRow = sText.mid(*pPos, End - *pPos);
      pParent->appendRow(Row(sRow.section(u'=', 0, 0), sRow.section(u'=', 1).toLongLong()));
      *pPos = End;
    }
  }

  mutable QStandardItem m_Root;
};
