#include "shell/dialogs/color_box.h"

#include <QColorDialog>
#include <QPainter>
#include <QPushButton>

#include <algorithm>

#include "shell/actions/action_dispatch.h"
#include "shell/actions/action_ids.h"
#include "shell/look/look.h"
#include "shell/settings/colors.h"
#include "shell/settings/fonts.h"

namespace {

constexpr int SWATCH_WIDTH = 48;  // pixels

// The colour as a framed area, so that one that equals the ground can be seen.
QPixmap Swatch(const QColor& Color, const QSize& Size, qreal PixelRatio, const QColor& Frame) {
  QPixmap Pixmap(Size * PixelRatio);
  Pixmap.setDevicePixelRatio(PixelRatio);
  Pixmap.fill(Color);
  QPainter Painter(&Pixmap);
  Painter.setPen(Frame);
  Painter.drawRect(QRect(QPoint(), Size).adjusted(0, 0, -1, -1));
  return Pixmap;
}

QString NameOf(U32 ID) {
  return QLatin1String(GetColorInfo(ID)->sName);
}

}  // namespace

CColorBox::CColorBox(const QList<U32>& IDs, QWidget* pParent) : CAppearanceBox(QStringLiteral("Colors"), pParent) {
  QList<U32> Sorted = IDs;
  std::sort(Sorted.begin(), Sorted.end(), [](U32 a, U32 b) {
    return QString::localeAwareCompare(QLatin1String(GetColorInfo(a)->sDisplayName),
                                       QLatin1String(GetColorInfo(b)->sDisplayName)) < 0;
  });
  for (const U32 ID : Sorted) {
    AddItem(ID, QLatin1String(GetColorInfo(ID)->sDisplayName), QLatin1String(GetColorInfo(ID)->sDescription));
  }
  Refresh();
}

bool CColorBox::IsModified(U32 ID) const {
  return IsColorModified(ID);
}

void CColorBox::ShowValue(U32 ID, QPushButton* pField) const {
  const QSize Size(SWATCH_WIDTH, GetFontHeight(FONT_APP));
  pField->setIconSize(Size);
  pField->setIcon(Swatch(GetColor(ID), Size, devicePixelRatioF(), palette().color(QPalette::WindowText)));
  pField->setText(ColorText(GetColorRgb(ID)));
}

void CColorBox::Choose(U32 ID) {
  const QColor Color = QColorDialog::getColor(GetColor(ID), this, QLatin1String(GetColorInfo(ID)->sDisplayName),
                                              QColorDialog::DontUseNativeDialog);
  if (!Color.isValid()) return;
  SetColorRgb(ID, Color.rgba(), true);
  PerformAction(ACTION_EDIT_COLOR, NameOf(ID), ColorText(Color.rgba()));
}

void CColorBox::Reset(U32 ID) {
  ResetColor(ID);
  PerformAction(ACTION_EDIT_COLOR, NameOf(ID), ColorText(GetColorRgb(ID)));
  // The command set the colour that a role of the palette has at present; the role itself is what follows the theme.
  ResetColor(ID);
}
