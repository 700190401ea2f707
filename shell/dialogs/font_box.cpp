#include "shell/dialogs/font_box.h"

#include <QFontDialog>
#include <QPushButton>

#include "shell/actions/action_dispatch.h"
#include "shell/actions/action_ids.h"
#include "shell/look/look.h"
#include "shell/settings/fonts.h"

CFontBox::CFontBox(const QList<U32>& IDs, QWidget* pParent) : CAppearanceBox(QStringLiteral("Fonts"), pParent) {
  for (const U32 ID : IDs) {
    AddItem(ID, QLatin1String(GetFontInfo(ID)->sDisplayName), QLatin1String(GetFontInfo(ID)->sDescription));
  }
  Refresh();
}

bool CFontBox::IsModified(U32 ID) const {
  return IsFontModified(ID);
}

void CFontBox::ShowValue(U32 ID, QPushButton* pField) const {
  // In its own face, but no larger than the dialog has room for.
  QFont Font = ::GetFont(ID);
  Font.setPointSize(::GetFont(FONT_APP).pointSize());
  pField->setFont(Font);
  pField->setText(FontToText(ID));
  pField->setToolTip(FontToText(ID));
}

void CFontBox::Choose(U32 ID) {
  bool bOk = false;
  const QFont Font = QFontDialog::getFont(&bOk, ::GetFont(ID), this, QLatin1String(GetFontInfo(ID)->sDescription),
                                          QFontDialog::DontUseNativeDialog);
  if (bOk) Apply(ID, Font);
}

void CFontBox::Reset(U32 ID) {
  Apply(ID, GetInheritedFont(ID));
}

void CFontBox::Apply(U32 ID, const QFont& Font) {
  const QString sText = FontToText(Font);
  bool bOk = false;
  const QFont Kept = TextToFont(sText, &bOk);
  if (bOk) ::SetFont(ID, Kept, true);
  // A font that is refused, such as one of 72 points, is told by the command.
  PerformAction(ACTION_EDIT_FONT, QLatin1String(GetFontInfo(ID)->sName), sText);
}
