#include "ui/table/item_delegate.h"

#include <QLineEdit>
#include <QPainter>

#include "shell/look/look.h"
#include "shell/settings/color_ids.h"
#include "shell/settings/colors.h"
#include "ui/table/table_roles.h"

namespace {

constexpr int ROW_MARGIN = 3;        // pixels
constexpr int MAX_EDIT_TEXT = 8192;  // characters; a limited input keeps Escape for itself
constexpr int MATCH_ALPHA = 48;      // of the ground below a match, of 255

struct LEVEL_COLORS {
  U32 Background;
  U32 Foreground;
};
constexpr LEVEL_COLORS CHANGE_COLORS[] = {{COLOR_CHANGE_LEVEL_1_BG, COLOR_CHANGE_LEVEL_1_FG},
                                          {COLOR_CHANGE_LEVEL_2_BG, COLOR_CHANGE_LEVEL_2_FG},
                                          {COLOR_CHANGE_LEVEL_3_BG, COLOR_CHANGE_LEVEL_3_FG}};

QPixmap PixmapOf(const QString& sText, const QFont& Font, const QColor& Color, int Size, qreal Ratio) {
  QPixmap Pixmap(QSize(Size, Size) * Ratio);
  Pixmap.setDevicePixelRatio(Ratio);
  Pixmap.fill(Qt::transparent);
  QPainter Painter(&Pixmap);
  Painter.setFont(Font);
  Painter.setPen(Color);
  Painter.drawText(QRect(0, 0, Size, Size), Qt::AlignCenter, sText);
  return Pixmap;
}

// The text again over the text that the style has drawn: its marked part.
void DrawMatch(QPainter* pPainter, const QStyleOptionViewItem& Option, const TEXT_MATCH& Match) {
  const QStyle* const pStyle = Option.widget ? Option.widget->style() : QApplication::style();
  const int Margin = pStyle->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, Option.widget) + 1;
  const QRect Room =
      pStyle->subElementRect(QStyle::SE_ItemViewItemText, &Option, Option.widget).adjusted(Margin, 0, -Margin, 0);
  const QFontMetrics Metrics(Option.font);
  const QString sShown = Metrics.elidedText(Option.text, Option.textElideMode, Room.width());
  // Of a text that is cut short, no more than what is seen of the match.
  const qsizetype Seen = sShown == Option.text ? sShown.size() : std::max<qsizetype>(sShown.size() - 1, 0);
  const qsizetype End = std::min(Match.Start + Match.Length, Seen);
  if (End <= Match.Start) return;
  const int Width = Metrics.horizontalAdvance(sShown);
  const QRect Text = QStyle::alignedRect(Option.direction, Option.displayAlignment, QSize(Width, Room.height()), Room);
  const int Left = Text.left() + Metrics.horizontalAdvance(sShown, static_cast<int>(Match.Start));
  const int Right = Text.left() + Metrics.horizontalAdvance(sShown, static_cast<int>(End));
  QColor Ground = GetTextColor(COLOR_TABLE_FILTER_MATCH);
  Ground.setAlpha(MATCH_ALPHA);
  const QRect Marked(Left, Option.rect.top() + 1, Right - Left, Option.rect.height() - 3);
  pPainter->save();
  pPainter->fillRect(Marked, Ground);
  // On the ground of a selected row the colour of matches could not be read.
  if (!(Option.state & QStyle::State_Selected)) {
    pPainter->setClipRect(Marked, Qt::IntersectClip);
    pPainter->setFont(Option.font);
    pPainter->setPen(GetTextColor(COLOR_TABLE_FILTER_MATCH));
    pPainter->drawText(Text, static_cast<int>(Qt::AlignLeft | Qt::AlignVCenter) | Qt::TextSingleLine, sShown);
  }
  pPainter->restore();
}

}  // namespace

CItemDelegate::CItemDelegate(const IItemStyle& Style, QObject* pParent) : QStyledItemDelegate(pParent), m_Style(Style) {
  SetFonts(QFont(), QFont());
}

void CItemDelegate::SetFonts(const QFont& ItemFont, const QFont& ValueFont) {
  m_ItemFont = ItemFont;
  m_ValueFont = ValueFont;
  m_RowHeight = std::max(QFontMetrics(ItemFont).height(), QFontMetrics(ValueFont).height()) + ROW_MARGIN;
}

void CItemDelegate::initStyleOption(QStyleOptionViewItem* pOption, const QModelIndex& Index) const {
  const U32 Flags = Index.model()->headerData(Index.column(), Qt::Horizontal, ROLE_COLUMN_FLAGS).toUInt();
  pOption->font = Flags & COLUMN_VALUE_FONT ? m_ValueFont : m_ItemFont;
  QStyledItemDelegate::initStyleOption(pOption, Index);
  pOption->fontMetrics = QFontMetrics(pOption->font);
  const int IconSize = m_RowHeight - ROW_MARGIN;
  pOption->decorationSize = QSize(IconSize, IconSize);
  const CHANGE_LEVELS Level = m_Style.GetChangeLevel(Index);
  if (Level >= CHANGE_LEVEL_1 && Level <= CHANGE_LEVEL_3) {
    const LEVEL_COLORS& Colors = CHANGE_COLORS[Level - CHANGE_LEVEL_1];
    pOption->backgroundBrush = GetColor(Colors.Background);
    pOption->palette.setColor(QPalette::Text, GetTextColor(Colors.Foreground));
  }
  const QString sIcon = Index.data(ROLE_ICON).toString();
  if (sIcon.isEmpty()) return;
  const QVariant IconFont = Index.data(ROLE_ICON_FONT);
  const qreal Ratio = pOption->widget ? pOption->widget->devicePixelRatioF() : 1.0;
  pOption->features |= QStyleOptionViewItem::HasDecoration;
  pOption->icon = PixmapOf(sIcon, IconFont.isValid() ? IconFont.value<QFont>() : m_ItemFont,
                           pOption->palette.color(QPalette::Text), IconSize, Ratio);
}

void CItemDelegate::paint(QPainter* pPainter, const QStyleOptionViewItem& Option, const QModelIndex& Index) const {
  QStyleOptionViewItem Item = Option;
  initStyleOption(&Item, Index);
  const QStyle* const pStyle = Item.widget ? Item.widget->style() : QApplication::style();
  pStyle->drawControl(QStyle::CE_ItemViewItem, &Item, pPainter, Item.widget);
  const TEXT_MATCH Match = m_Style.GetFilterMatch(Index, Item.text);
  if (Match.Length > 0) DrawMatch(pPainter, Item, Match);
}

QSize CItemDelegate::sizeHint(const QStyleOptionViewItem& Option, const QModelIndex& Index) const {
  return {QStyledItemDelegate::sizeHint(Option, Index).width(), m_RowHeight};
}

QWidget* CItemDelegate::createEditor(QWidget* pParent, const QStyleOptionViewItem& Option,
                                     const QModelIndex& Index) const {
  QWidget* const pEditor = QStyledItemDelegate::createEditor(pParent, Option, Index);
  if (auto* const pInput = qobject_cast<QLineEdit*>(pEditor)) {
    pInput->setMaxLength(MAX_EDIT_TEXT);
    pInput->setFrame(false);
  }
  if (pEditor) pEditor->setFont(m_ItemFont);
  return pEditor;
}

// The whole cell: the style leaves no room for a text of the row's height beside margins of its own.
void CItemDelegate::updateEditorGeometry(QWidget* pEditor, const QStyleOptionViewItem& Option,
                                         const QModelIndex&) const {
  pEditor->setGeometry(Option.rect);
}
