#pragma once

#include <QStyledItemDelegate>

#include "ui/table/column_filter.h"
#include "ui/table/item_states.h"

// What the drawing of items asks of the window. Indexes are those of the view.
class IItemStyle {
public:
  virtual ~IItemStyle() = default;
  virtual CHANGE_LEVELS GetChangeLevel(const QModelIndex& Index) const = 0;
  // The part of the text that a filter names.
  virtual TEXT_MATCH GetFilterMatch(const QModelIndex& Index, const QString& sText) const = 0;
};

// Draws the items of a table: filter matches marked, changed values in their colours, texts in place of icons. Makes
// editors that keep Escape for themselves.
class CItemDelegate : public QStyledItemDelegate {
  Q_OBJECT

public:
  CItemDelegate(const IItemStyle& Style, QObject* pParent);

  void SetFonts(const QFont& ItemFont, const QFont& ValueFont);
  int RowHeight() const { return m_RowHeight; }

  void paint(QPainter* pPainter, const QStyleOptionViewItem& Option, const QModelIndex& Index) const override;
  QSize sizeHint(const QStyleOptionViewItem& Option, const QModelIndex& Index) const override;
  QWidget* createEditor(QWidget* pParent, const QStyleOptionViewItem& Option, const QModelIndex& Index) const override;
  void updateEditorGeometry(QWidget* pEditor, const QStyleOptionViewItem& Option,
                            const QModelIndex& Index) const override;

protected:
  void initStyleOption(QStyleOptionViewItem* pOption, const QModelIndex& Index) const override;

private:
  const IItemStyle& m_Style;
  QFont m_ItemFont;
  QFont m_ValueFont;
  int m_RowHeight = 0;
};
